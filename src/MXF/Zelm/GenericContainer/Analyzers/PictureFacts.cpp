#include "MXF/Zelm/GenericContainer/Analyzers/PictureFacts.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;
using Metadata::Structural::CDCIEssenceDescriptor;
using Metadata::Structural::GenericPictureEssenceDescriptor;

/// What the number of lines tells.
struct Raster {
    std::uint32_t lines;
    bool isProgressive;
    std::int32_t firstLine[2]; // of field 1 and 2, or of the frame
    std::uint8_t signalStandard;
};

constexpr std::uint8_t bt601 = 1, smpte274 = 4, smpte296 = 5;

constexpr Raster rasters[] = {
    {1080, false, {21, 584}, smpte274}, {1080, true, {42, 0}, smpte274}, {720, true, {26, 0}, smpte296},
    {608, false, {7, 320}, bt601},      {576, false, {23, 336}, bt601},  {512, false, {7, 270}, bt601},
    {486, false, {21, 283}, bt601},     {480, false, {23, 286}, bt601},
};

Raster const* rasterOf(PictureFacts const& facts) {
    auto const* const found = std::find_if(std::begin(rasters), std::end(rasters), [&](Raster const& raster) {
        return raster.lines == facts.height && raster.isProgressive == facts.isProgressive;
    });
    return found != std::end(rasters) ? found : nullptr;
}

struct ColourLabel {
    std::uint8_t code;
    KLV::Key label;
};

constexpr ColourLabel primaries[] = {
    {1, "060E2B34.04010106.04010101.03030000"_key},  // BT.709
    {5, "060E2B34.04010106.04010101.03020000"_key},  // BT.470, 625 lines
    {6, "060E2B34.04010106.04010101.03010000"_key},  // SMPTE 170M
    {7, "060E2B34.04010106.04010101.03010000"_key},  // SMPTE 240M: the same
    {9, "060E2B34.0401010D.04010101.03040000"_key},  // BT.2020
    {12, "060E2B34.0401010D.04010101.03060000"_key}, // P3 with the white of D65
};

constexpr ColourLabel transfers[] = {
    {1, "060E2B34.04010101.04010101.01020000"_key},  // BT.709
    {5, "060E2B34.04010101.04010101.01010000"_key},  // BT.470, gamma 2.8
    {6, "060E2B34.04010101.04010101.01020000"_key},  // SMPTE 170M: the curve of BT.709
    {7, "060E2B34.04010101.04010101.01030000"_key},  // SMPTE 240M
    {8, "060E2B34.04010106.04010101.01060000"_key},  // linear
    {11, "060E2B34.0401010D.04010101.01080000"_key}, // IEC 61966-2-4
    {12, "060E2B34.04010106.04010101.01050000"_key}, // BT.1361
    {13, "060E2B34.0401010D.04010101.010D0000"_key}, // sRGB
    {14, "060E2B34.0401010E.04010101.01090000"_key}, // BT.2020, 10 bits
    {15, "060E2B34.0401010E.04010101.01090000"_key}, // BT.2020, 12 bits
    {16, "060E2B34.0401010D.04010101.010A0000"_key}, // SMPTE 2084
    {17, "060E2B34.04010108.04010101.01070000"_key}, // SMPTE 428-1
    {18, "060E2B34.0401010D.04010101.010B0000"_key}, // BT.2100, hybrid log-gamma
};

constexpr ColourLabel matrices[] = {
    {0, "060E2B34.0401010D.04010101.02050000"_key},  // GBR
    {1, "060E2B34.04010101.04010101.02020000"_key},  // BT.709
    {5, "060E2B34.04010101.04010101.02010000"_key},  // BT.470, 625 lines: BT.601
    {6, "060E2B34.04010101.04010101.02010000"_key},  // SMPTE 170M: BT.601
    {7, "060E2B34.04010106.04010101.02030000"_key},  // SMPTE 240M
    {8, "060E2B34.0401010D.04010101.02040000"_key},  // YCgCo
    {9, "060E2B34.0401010D.04010101.02060000"_key},  // BT.2020, not constant luminance
    {14, "060E2B34.0401010D.04010101.02070000"_key}, // BT.2100, ICtCp
};

template <std::size_t count, class Use>
void withLabel(ColourLabel const (&labels)[count], std::uint8_t code, Use use) {
    for (auto const& row : labels)
        if (row.code == code)
            use(Types::UniversalLabel(row.label));
}

void describeColours(CDCIEssenceDescriptor& descriptor, ColourCodes const& codes) {
    withLabel(primaries, codes.primaries, [&](auto const& label) { descriptor.colorPrimaries(label); });
    withLabel(transfers, codes.transfer,
              [&](auto const& label) { descriptor.transferCharacteristic(label); });
    withLabel(matrices, codes.matrix, [&](auto const& label) { descriptor.codingEquations(label); });
}

std::uint32_t roundedUp(std::uint32_t value, std::uint32_t unit) { return (value + unit - 1) / unit * unit; }

void describeSizes(CDCIEssenceDescriptor& descriptor, PictureFacts const& facts) {
    std::uint32_t const fields = facts.isProgressive ? 1 : 2;
    std::uint32_t const sampled = facts.height / fields;
    descriptor.frameLayout(Types::UInt8(facts.isProgressive
                                            ? GenericPictureEssenceDescriptor::fullFrame
                                            : GenericPictureEssenceDescriptor::separateFields));
    descriptor.storedWidth(Types::UInt32(roundedUp(facts.codedWidth, facts.macroblock)));
    descriptor.storedHeight(Types::UInt32(roundedUp(facts.codedHeight, facts.macroblock * fields) / fields));
    descriptor.sampledWidth(Types::UInt32(facts.width));
    descriptor.sampledHeight(Types::UInt32(sampled));
    descriptor.sampledXOffset(Types::Int32(0));
    descriptor.sampledYOffset(Types::Int32(0));
    descriptor.displayWidth(Types::UInt32(facts.width));
    descriptor.displayHeight(Types::UInt32(sampled - facts.linesAbove));
    descriptor.displayXOffset(Types::Int32(0));
    descriptor.displayYOffset(Types::Int32(static_cast<std::int32_t>(facts.linesAbove)));
}

void describeSampling(CDCIEssenceDescriptor& descriptor, PictureFacts const& facts) {
    std::uint32_t const unit = std::uint32_t{1} << (facts.bits - 8);
    descriptor.componentDepth(Types::UInt32(facts.bits));
    descriptor.horizontalSubsampling(Types::UInt32(facts.chromaFormat == 3 ? 1 : 2));
    descriptor.verticalSubsampling(Types::UInt32(facts.chromaFormat == 1 ? 2 : 1));
    descriptor.colorSiting(Types::UInt8(facts.colorSiting));
    descriptor.blackRefLevel(Types::UInt32(facts.isFullRange ? 0 : 16 * unit));
    descriptor.whiteRefLevel(Types::UInt32(facts.isFullRange ? 256 * unit - 1 : 235 * unit));
    descriptor.colorRange(Types::UInt32(facts.isFullRange ? 256 * unit : 224 * unit + 1));
}

/// The field that is shown first is field 1. Where that is the bottom one, the other begins a line above it.
/// Fields without a signal begin with their first lines: that the numbers are one even, one odd, or not,
/// tells which is first.
void describeRaster(CDCIEssenceDescriptor& descriptor, PictureFacts const& facts) {
    auto const* const raster = rasterOf(facts);
    std::int32_t const above = facts.isTopFirst.value_or(true) ? 0 : 1;
    std::int32_t const first = facts.isTopFirst ? 1 : 0;
    descriptor.videoLineMap(raster != nullptr ? raster->firstLine[0] : first,
                            (raster != nullptr ? raster->firstLine[1] : 2 * first) - above);
    if (raster != nullptr)
        descriptor.signalStandard(Types::SignalStandard(raster->signalStandard));
    if (facts.isTopFirst)
        descriptor.fieldDominance(Types::UInt8(1));
}

} // namespace

void describePictureFacts(CDCIEssenceDescriptor& descriptor, PictureFacts const& facts) {
    describeSizes(descriptor, facts);
    describeSampling(descriptor, facts);
    descriptor.aspectRatio(Types::Rational(facts.aspectRatio));
    describeRaster(descriptor, facts);
    describeColours(descriptor, facts.colours);
}

} // namespace MXF::Zelm::GenericContainer
