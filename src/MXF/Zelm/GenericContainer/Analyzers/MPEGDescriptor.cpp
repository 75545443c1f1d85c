#include "MXF/Zelm/GenericContainer/Analyzers/MPEGDescriptor.h"

#include "MXF/Zelm/GenericContainer/Analyzers/PictureFacts.h"

#include <algorithm>
#include <limits>

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::MPEG::SequenceHeader;
using Metadata::Structural::CDCIEssenceDescriptor;

/// The lines of the vertical interval that D-10 pictures begin with.
std::uint32_t linesAbove(std::uint32_t height) { return height == 608 ? 16 : height == 512 ? 13 : 0; }

std::uint8_t sitingOf(SequenceHeader const& sequence) {
    return sequence.chromaFormat() != 1 ? CDCIEssenceDescriptor::rec601
           : sequence.isMPEG1()         ? CDCIEssenceDescriptor::quincunx
                                        : CDCIEssenceDescriptor::verticalMidpoint;
}

bool isTopFirst(Essence::MPEG::PictureHeader const& first) {
    return first.isField() ? first.coding->structure == Essence::MPEG::PictureStructure::TopField
                           : first.coding->topFieldFirst;
}

} // namespace

/// Of 1088 lines the rows below line 1080 are not meant.
void describeMPEGPictures(CDCIEssenceDescriptor& descriptor, SequenceHeader const& sequence,
                          Essence::MPEG::PictureHeader const& first) {
    PictureFacts facts;
    facts.isProgressive = sequence.isProgressive();
    facts.width = facts.codedWidth = sequence.width();
    facts.codedHeight = sequence.height();
    facts.height = sequence.height() == 1088 ? 1080 : sequence.height();
    facts.linesAbove = linesAbove(sequence.height());
    facts.chromaFormat = sequence.chromaFormat();
    facts.colorSiting = sitingOf(sequence);
    facts.aspectRatio = sequence.aspectRatio();
    if (!facts.isProgressive && first.coding)
        facts.isTopFirst = isTopFirst(first);
    if (sequence.display)
        facts.colours = {sequence.display->colourPrimaries, sequence.display->transferCharacteristics,
                         sequence.display->matrixCoefficients};
    describePictureFacts(descriptor, facts);
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
