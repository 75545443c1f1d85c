#include "MXF/Zelm/GenericContainer/Analyzers/AVCLabels.h"

#include "MXF/Zelm/KLV/Key.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;
using Essence::AVC::SequenceParameterSet;

struct Profile {
    std::uint8_t profile;
    KLV::Key label;
};

constexpr Profile profiles[] = {
    {66, "060E2B34.0401010D.04010202.01311001"_key},  // baseline
    {77, "060E2B34.0401010D.04010202.01312001"_key},  // main
    {88, "060E2B34.0401010D.04010202.01313001"_key},  // extended
    {100, "060E2B34.0401010D.04010202.01314001"_key}, // high
    {110, "060E2B34.0401010D.04010202.01315001"_key}, // high 10
    {122, "060E2B34.0401010D.04010202.01316001"_key}, // high 4:2:2
    {244, "060E2B34.0401010D.04010202.01317001"_key}, // high 4:4:4 predictive
};

constexpr Profile intraProfiles[] = {
    {110, "060E2B34.0401010A.04010202.01322001"_key}, // high 10 intra
    {122, "060E2B34.0401010A.04010202.01323001"_key}, // high 4:2:2 intra
};

/// The last byte of a label tells the raster.
struct IntraClass {
    std::uint64_t megabits; // a second, up to a fifth more
    std::uint8_t chromaFormat;
    KLV::Key label;
};

constexpr IntraClass classes[] = {
    {50, 1, "060E2B34.0401010A.04010202.01322100"_key},
    {100, 2, "060E2B34.0401010A.04010202.01323100"_key},
    {200, 2, "060E2B34.0401010D.04010202.01323200"_key},
};

struct Raster {
    std::uint32_t height;
    bool isProgressive;
    Templates::Rational<int> rate;
    std::uint8_t code;
};

constexpr Raster rasters[] = {
    {1080, false, {30000, 1001}, 1}, {1080, false, {25, 1}, 2},     {1080, true, {30000, 1001}, 3},
    {1080, true, {25, 1}, 4},        {720, true, {60000, 1001}, 8}, {720, true, {50, 1}, 9},
};

IntraClass const* classOf(SequenceParameterSet const& sequence, AVCIntraFacts const& facts) {
    if (!facts.isIntra || facts.pictureSize == 0 || sequence.lumaBits != 10 || facts.rate.denominator <= 0)
        return nullptr;
    std::uint64_t const bits = facts.pictureSize * 8 * static_cast<std::uint64_t>(facts.rate.numerator) /
                               static_cast<std::uint64_t>(facts.rate.denominator);
    auto const* const found =
        std::find_if(std::begin(classes), std::end(classes), [&](IntraClass const& each) {
            return each.chromaFormat == sequence.chromaFormat && bits >= each.megabits * 1'000'000 &&
                   bits <= each.megabits * 1'200'000;
        });
    return found != std::end(classes) ? found : nullptr;
}

Raster const* rasterOf(SequenceParameterSet const& sequence, AVCIntraFacts const& facts) {
    auto const* const found = std::find_if(std::begin(rasters), std::end(rasters), [&](Raster const& raster) {
        return raster.height == sequence.height() && raster.isProgressive == facts.isProgressive &&
               raster.rate == facts.rate;
    });
    return found != std::end(rasters) ? found : nullptr;
}

template <std::size_t count>
KLV::Key const* labelOf(Profile const (&rows)[count], std::uint8_t profile) {
    auto const* const found = std::find_if(std::begin(rows), std::end(rows),
                                           [&](Profile const& row) { return row.profile == profile; });
    return found != std::end(rows) ? &found->label : nullptr;
}

} // namespace

Types::UniversalLabel avcLabel(Wrapping wrapping) {
    return wrapping == Wrapping::Clip ? "060E2B34.0401010A.0D010301.02106002"_key
                                      : "060E2B34.0401010A.0D010301.02106001"_key;
}

Types::UniversalLabel avcCodingLabel(SequenceParameterSet const& sequence, AVCIntraFacts const& facts) {
    auto const* const intraClass = classOf(sequence, facts);
    auto const* const raster = rasterOf(sequence, facts);
    if (intraClass != nullptr && raster != nullptr) {
        KLV::Key label = intraClass->label;
        label[15] = raster->code;
        return label;
    }
    auto const* const intra = sequence.isIntraProfile() ? labelOf(intraProfiles, sequence.profile) : nullptr;
    auto const* const any = labelOf(profiles, sequence.profile);
    return intra != nullptr ? *intra : any != nullptr ? *any : std::end(profiles)[-1].label;
}

} // namespace MXF::Zelm::GenericContainer
