#include "MXF/Zelm/GenericContainer/Analyzers/MPEGDescriptor.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;
using Essence::MPEG::SequenceDisplayExtension;
using Essence::MPEG::SequenceHeader;
using Metadata::Structural::CDCIEssenceDescriptor;
using Metadata::Structural::GenericPictureEssenceDescriptor;

/// What the number of lines tells.
struct Raster {
    std::uint32_t lines; // of the coded picture
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

Raster const* rasterOf(SequenceHeader const& sequence) {
    std::uint32_t const lines = sequence.height() == 1088 ? 1080 : sequence.height();
    auto const* const found = std::find_if(std::begin(rasters), std::end(rasters), [&](Raster const& raster) {
        return raster.lines == lines && raster.isProgressive == sequence.isProgressive();
    });
    return found != std::end(rasters) ? found : nullptr;
}

/// By the codes of the sequence display extension; null for those without a label.
struct ColourLabel {
    std::uint8_t code;
    KLV::Key label;
};

constexpr ColourLabel primaries[] = {
    {1, "060E2B34.04010106.04010101.03030000"_key}, // BT.709
    {5, "060E2B34.04010106.04010101.03020000"_key}, // BT.470, 625 lines
    {6, "060E2B34.04010106.04010101.03010000"_key}, // SMPTE 170M
    {7, "060E2B34.04010106.04010101.03010000"_key}, // SMPTE 240M: the same
};

constexpr ColourLabel transfers[] = {
    {1, "060E2B34.04010101.04010101.01020000"_key}, // BT.709
    {5, "060E2B34.04010101.04010101.01010000"_key}, // BT.470, gamma 2.8
    {6, "060E2B34.04010101.04010101.01020000"_key}, // SMPTE 170M: the curve of BT.709
    {7, "060E2B34.04010101.04010101.01030000"_key}, // SMPTE 240M
};

constexpr ColourLabel matrices[] = {
    {1, "060E2B34.04010101.04010101.02020000"_key}, // BT.709
    {5, "060E2B34.04010101.04010101.02010000"_key}, // BT.470, 625 lines: BT.601
    {6, "060E2B34.04010101.04010101.02010000"_key}, // SMPTE 170M: BT.601
    {7, "060E2B34.04010106.04010101.02030000"_key}, // SMPTE 240M
};

template <std::size_t count, class Use>
void withLabel(ColourLabel const (&labels)[count], std::uint8_t code, Use use) {
    for (auto const& row : labels)
        if (row.code == code)
            use(Types::UniversalLabel(row.label));
}

void describeColours(CDCIEssenceDescriptor& descriptor, SequenceDisplayExtension const& display) {
    withLabel(primaries, display.colourPrimaries,
              [&](auto const& label) { descriptor.colorPrimaries(label); });
    withLabel(transfers, display.transferCharacteristics,
              [&](auto const& label) { descriptor.transferCharacteristic(label); });
    withLabel(matrices, display.matrixCoefficients,
              [&](auto const& label) { descriptor.codingEquations(label); });
}

std::uint32_t roundedUp(std::uint32_t value, std::uint32_t unit) { return (value + unit - 1) / unit * unit; }

/// Coded sizes are whole macroblocks of 16 x 16 samples, in both fields where there are two.
void describeSizes(CDCIEssenceDescriptor& descriptor, SequenceHeader const& sequence) {
    bool const isProgressive = sequence.isProgressive();
    std::uint32_t const fields = isProgressive ? 1 : 2;
    std::uint32_t const width = sequence.width(), height = sequence.height();
    bool const isCodedAsShown = height == 1088; // the rows below line 1080 are not meant
    std::uint32_t const sampled = (isCodedAsShown ? 1080 : height) / fields;
    descriptor.frameLayout(Types::UInt8(isProgressive ? GenericPictureEssenceDescriptor::fullFrame
                                                      : GenericPictureEssenceDescriptor::separateFields));
    descriptor.storedWidth(Types::UInt32(roundedUp(width, 16)));
    descriptor.storedHeight(Types::UInt32(roundedUp(height, 16 * fields) / fields));
    descriptor.sampledWidth(Types::UInt32(width));
    descriptor.sampledHeight(Types::UInt32(sampled));
    descriptor.sampledXOffset(Types::Int32(0));
    descriptor.sampledYOffset(Types::Int32(0));
    descriptor.displayWidth(Types::UInt32(width));
    descriptor.displayHeight(Types::UInt32(sampled));
    descriptor.displayXOffset(Types::Int32(0));
    descriptor.displayYOffset(Types::Int32(0));
}

/// The lines of the vertical interval that D-10 pictures begin with.
std::uint32_t linesAbove(std::uint32_t height) { return height == 608 ? 16 : height == 512 ? 13 : 0; }

void describeDisplay(CDCIEssenceDescriptor& descriptor, SequenceHeader const& sequence) {
    auto const above = linesAbove(sequence.height());
    if (above != 0) {
        descriptor.displayHeight(Types::UInt32(sequence.height() / 2 - above));
        descriptor.displayYOffset(Types::Int32(static_cast<std::int32_t>(above)));
    }
}

void describeSampling(CDCIEssenceDescriptor& descriptor, SequenceHeader const& sequence) {
    bool const is420 = sequence.chromaFormat() == 1, is444 = sequence.chromaFormat() == 3;
    descriptor.componentDepth(Types::UInt32(8));
    descriptor.horizontalSubsampling(Types::UInt32(is444 ? 1 : 2));
    descriptor.verticalSubsampling(Types::UInt32(is420 ? 2 : 1));
    descriptor.colorSiting(Types::UInt8(!is420               ? CDCIEssenceDescriptor::rec601
                                        : sequence.isMPEG1() ? CDCIEssenceDescriptor::quincunx
                                                             : CDCIEssenceDescriptor::verticalMidpoint));
    descriptor.blackRefLevel(Types::UInt32(16));
    descriptor.whiteRefLevel(Types::UInt32(235));
    descriptor.colorRange(Types::UInt32(225));
}

} // namespace

void describeMPEGPictures(CDCIEssenceDescriptor& descriptor, SequenceHeader const& sequence,
                          Essence::MPEG::PictureHeader const& first) {
    describeSizes(descriptor, sequence);
    describeDisplay(descriptor, sequence);
    describeSampling(descriptor, sequence);
    descriptor.aspectRatio(Types::Rational(sequence.aspectRatio()));
    auto const* const raster = rasterOf(sequence);
    descriptor.videoLineMap(raster != nullptr ? raster->firstLine[0] : 0,
                            raster != nullptr ? raster->firstLine[1] : 0);
    if (raster != nullptr)
        descriptor.signalStandard(Types::SignalStandard(raster->signalStandard));
    if (!sequence.isProgressive() && first.coding) {
        bool const isTopFirst = first.isField()
                                    ? first.coding->structure == Essence::MPEG::PictureStructure::TopField
                                    : first.coding->topFieldFirst;
        descriptor.fieldDominance(Types::UInt8(isTopFirst ? 1 : 2));
    }
    if (sequence.display)
        describeColours(descriptor, *sequence.display);
}

void describeMPEGSequence(Metadata::Structural::MPEG2VideoDescriptor& descriptor,
                          SequenceHeader const& sequence) {
    descriptor.codedContentType(Types::UInt8(sequence.isProgressive() ? 1 : 2));
    if (sequence.extension) {
        descriptor.lowDelay(Types::Boolean(sequence.extension->lowDelay));
        descriptor.profileAndLevel(Types::UInt8(sequence.extension->profileAndLevel));
    }
    auto const bitRate = sequence.bitRate();
    if (bitRate && *bitRate <= std::numeric_limits<std::uint32_t>::max())
        descriptor.bitRate(Types::UInt32(static_cast<std::uint32_t>(*bitRate)));
}

void describeMPEGGroups(Metadata::Structural::MPEG2VideoDescriptor& descriptor,
                        GroupStatistics const& groups) {
    auto const count = [](std::size_t pictures) {
        return Types::UInt16(static_cast<std::uint16_t>(
            std::min<std::size_t>(pictures, std::numeric_limits<std::uint16_t>::max())));
    };
    descriptor.singleSequence(Types::Boolean(groups.sequenceHeaders() == 1));
    descriptor.constantBFrames(Types::Boolean(groups.hasConstantBPictures()));
    descriptor.closedGOP(Types::Boolean(groups.areClosed()));
    descriptor.identicalGOP(Types::Boolean(groups.areIdentical()));
    descriptor.maxGOP(count(groups.longest()));
    descriptor.bPictureCount(count(groups.mostBPictures()));
    if (groups.hasProgressive() && groups.hasInterlaced())
        descriptor.codedContentType(Types::UInt8(3));
}

} // namespace MXF::Zelm::GenericContainer
