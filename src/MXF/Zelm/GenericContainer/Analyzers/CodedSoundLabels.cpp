#include "MXF/Zelm/GenericContainer/Analyzers/CodedSoundLabels.h"

namespace MXF::Zelm::GenericContainer {

using namespace KLV::Literals;
using Essence::CodedSound::Coding;

namespace {

/// By the numbers of Coding.
constexpr KLV::Key compressions[] = {
    "060E2B34.0401010D.04020202.04010100"_key, // MPEG-1 layer I
    "060E2B34.0401010D.04020202.04010200"_key, // MPEG-1 layer II
    "060E2B34.0401010D.04020202.04010300"_key, // MPEG-1 layer III
    "060E2B34.0401010D.04020202.04020100"_key, // MPEG-2 layer I
    "060E2B34.0401010D.04020202.04020200"_key, // MPEG-2 layer II
    "060E2B34.0401010D.04020202.04020300"_key, // MPEG-2 layer III
    "060E2B34.04010101.04020202.03020100"_key, // AC-3
    "060E2B34.04010103.04020202.03030100"_key, // MPEG-2 AAC
    "060E2B34.04010103.04020202.03030100"_key, // MPEG-4 AAC: that of MPEG-2, by which readers know AAC
};

constexpr int streamByte = 14, wrappingByte = 15;

} // namespace

Types::UniversalLabel codedSoundContainer(Coding coding, std::uint8_t streamId, Wrapping wrapping) {
    constexpr KLV::Key elementaryStream = "060E2B34.04010102.0D010301.02044001"_key, // SMPTE 381M
        adts = "060E2B34.0401010D.0D010301.02170100"_key;                            // SMPTE 381-4
    constexpr unsigned char frames = 1, clip = 2, privateStream1 = 0xBD, idMask = 0x7F;
    bool const isAAC = coding >= Coding::MPEG2AAC;
    KLV::Key label = isAAC ? adts : elementaryStream;
    label[isAAC ? streamByte : wrappingByte] = wrapping == Wrapping::Clip ? clip : frames;
    if (!isAAC)
        label[streamByte] = (coding == Coding::AC3 ? privateStream1 : streamId) & idMask;
    return label;
}

Types::UniversalLabel codedSoundCompression(Coding coding) {
    return compressions[static_cast<std::size_t>(coding)];
}

} // namespace MXF::Zelm::GenericContainer
