#include "MXF/Zelm/GenericContainer/Analyzers/MPEGLabels.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;

struct Coding {
    std::uint8_t profileAndLevel;
    KLV::Key intra;
    KLV::Key predicted;
};

// Of profile and level codes, lower ones are the larger levels (ISO/IEC 13818-2, table 8-2 and following).
constexpr Coding codings[] = {
    {0x48, "060E2B34.04010103.04010202.01011000"_key, "060E2B34.04010103.04010202.01011100"_key}, // MP@ML
    {0x46, "060E2B34.04010108.04010202.01050200"_key, "060E2B34.04010108.04010202.01050300"_key}, // MP@H-14
    {0x44, "060E2B34.04010103.04010202.01030200"_key, "060E2B34.04010103.04010202.01030300"_key}, // MP@HL
    {0x18, "060E2B34.04010109.04010202.01060200"_key, "060E2B34.04010109.04010202.01060300"_key}, // HP@ML
    {0x16, "060E2B34.04010109.04010202.01080200"_key, "060E2B34.04010109.04010202.01080300"_key}, // HP@H-14
    {0x14, "060E2B34.04010109.04010202.01070200"_key, "060E2B34.04010109.04010202.01070300"_key}, // HP@HL
    {0x85, "060E2B34.04010103.04010202.01020200"_key, "060E2B34.04010103.04010202.01020300"_key}, // 422P@ML
    {0x82, "060E2B34.04010103.04010202.01040200"_key, "060E2B34.04010103.04010202.01040300"_key}, // 422P@HL
};

constexpr KLV::Key mpeg1 = "060E2B34.04010103.04010202.01100200"_key;
constexpr KLV::Key mpeg1Constrained = "060E2B34.04010103.04010202.01100100"_key;

} // namespace

Types::UniversalLabel mpegLabel(Wrapping wrapping) {
    return wrapping == Wrapping::Clip ? "060E2B34.04010102.0D010301.02046002"_key
                                      : "060E2B34.04010102.0D010301.02046001"_key;
}

Types::UniversalLabel mpegCodingLabel(Essence::MPEG::SequenceHeader const& sequence, bool isIntraOnly) {
    if (sequence.isMPEG1())
        return sequence.constrainedParameters ? mpeg1Constrained : mpeg1;
    auto const* const found = std::find_if(std::begin(codings), std::end(codings), [&](Coding const& coding) {
        return coding.profileAndLevel == sequence.extension->profileAndLevel;
    });
    auto const& coding = found != std::end(codings) ? *found : codings[0];
    return isIntraOnly ? coding.intra : coding.predicted;
}

} // namespace MXF::Zelm::GenericContainer
