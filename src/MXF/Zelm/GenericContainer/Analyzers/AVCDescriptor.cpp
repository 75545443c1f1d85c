#include "MXF/Zelm/GenericContainer/Analyzers/AVCDescriptor.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Analyzers/PictureFacts.h"
#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorKeys.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;
using Essence::AVC::AccessUnit;
using Essence::AVC::SequenceParameterSet;
using Metadata::MetadataSet;
using Metadata::Structural::CDCIEssenceDescriptor;
using Metadata::Structural::Property;
using Metadata::Structural::put;

namespace Rows {

constexpr Property<Types::Boolean> constantBPictures{"060E2B34.0101010E.04010606.01030000"_key};
constexpr Property<Types::UInt8> contentKind{"060E2B34.0101010E.04010606.01040000"_key};
constexpr Property<Types::Boolean> closedGOP{"060E2B34.0101010E.04010606.01060000"_key};
constexpr Property<Types::Boolean> identicalGOP{"060E2B34.0101010E.04010606.01070000"_key};
constexpr Property<Types::UInt16> maximumGOP{"060E2B34.0101010E.04010606.01080000"_key};
constexpr Property<Types::UInt16> maximumBPictures{"060E2B34.0101010E.04010606.01090000"_key};
constexpr Property<Types::UInt8> profile{"060E2B34.0101010E.04010606.010A0000"_key};
constexpr Property<Types::UInt32> maximumBitRate{"060E2B34.0101010E.04010606.010B0000"_key};
constexpr Property<Types::UInt8> profileConstraint{"060E2B34.0101010E.04010606.010C0000"_key};
constexpr Property<Types::UInt8> level{"060E2B34.0101010E.04010606.010D0000"_key};
constexpr Property<Types::UInt8> decodingDelay{"060E2B34.0101010E.04010606.010E0000"_key};
constexpr Property<Types::UInt8> maximumReferences{"060E2B34.0101010E.04010606.010F0000"_key};
constexpr Property<Types::UInt32> averageBitRate{"060E2B34.0101010E.04010606.01140000"_key};

} // namespace Rows

/// Values of the kind of content.
enum ContentKind : std::uint8_t { progressive = 1, fields, interlacedFrames, framesAndFields };

/// Reduced; 0/0 when no Int32 can tell it.
Templates::Rational<int> reduced(std::uint64_t numerator, std::uint64_t denominator) {
    auto const divisor = std::gcd(numerator, denominator);
    if (divisor == 0)
        return {};
    constexpr std::uint64_t most = std::numeric_limits<int>::max();
    numerator /= divisor;
    denominator /= divisor;
    if (numerator == 0 || numerator > most || denominator > most)
        return {};
    return {static_cast<int>(numerator), static_cast<int>(denominator)};
}

/// Samples are square where it is not told.
Templates::Rational<int> aspectRatioOf(SequenceParameterSet const& sequence) {
    auto sample = sequence.usability ? sequence.usability->sampleAspectRatio : Templates::Rational<int>{};
    if (sample.numerator <= 0 || sample.denominator <= 0)
        sample = {1, 1};
    return reduced(std::uint64_t{sequence.width()} * static_cast<unsigned>(sample.numerator),
                   std::uint64_t{sequence.height()} * static_cast<unsigned>(sample.denominator));
}

bool isTopFirst(AccessUnit const& unit) {
    auto const structure = unit.timing ? unit.timing->structure : std::nullopt;
    if (structure && *structure >= 3 && *structure <= 6)
        return *structure % 2 != 0;
    return unit.slice->isField ? !unit.slice->isBottomField : unit.slice->deltaBottom >= 0;
}

std::uint8_t sitingOf(SequenceParameterSet const& sequence) {
    switch (sequence.chromaFormat) {
    case 1:
        return CDCIEssenceDescriptor::verticalMidpoint;
    case 2:
        return CDCIEssenceDescriptor::rec601;
    default:
        return CDCIEssenceDescriptor::cositing;
    }
}

MetadataSet* subDescriptorOf(CDCIEssenceDescriptor const& descriptor) {
    for (auto* const each : descriptor.subDescriptors())
        if (each->key() == Metadata::Structural::DescriptorKeys::avcSubDescriptor)
            return each;
    return nullptr;
}

MetadataSet* makeSubDescriptor(Metadata::PartitionMetadata& metadata, CDCIEssenceDescriptor& descriptor) {
    try {
        auto& made = metadata.createMetadataSet(Metadata::Structural::DescriptorKeys::avcSubDescriptor);
        descriptor.addSubDescriptor(made);
        return &made;
    } catch (Exceptions::InvalidMetadataSet const&) {
        return nullptr; // the dictionary does not know it
    }
}

template <class Integer>
Integer capped(std::uint64_t value) {
    return static_cast<Integer>(std::min<std::uint64_t>(value, std::numeric_limits<Integer>::max()));
}

std::uint8_t contentKindOf(AVCStatistics const& statistics) {
    if (!statistics.groups.hasInterlaced())
        return progressive;
    if (statistics.hasFields && statistics.hasFrames)
        return framesAndFields;
    return statistics.hasFields ? fields : interlacedFrames;
}

} // namespace

bool isProgressive(AccessUnit const& unit) {
    if (unit.sequence->frameMacroblocksOnly || unit.slice->isField)
        return unit.sequence->frameMacroblocksOnly;
    return unit.timing && unit.timing->isFrame();
}

Templates::Rational<int> frameRateOf(SequenceParameterSet const& sequence) {
    auto const rate = sequence.frameRate();
    if (!rate.isKnown())
        return {};
    return reduced(static_cast<std::uint64_t>(rate.numerator), static_cast<std::uint64_t>(rate.denominator));
}

void describeAVCPictures(CDCIEssenceDescriptor& descriptor, AccessUnit const& first) {
    auto const& sequence = *first.sequence;
    PictureFacts facts;
    facts.isProgressive = isProgressive(first);
    facts.width = sequence.width();
    facts.height = sequence.height();
    facts.codedWidth = sequence.codedWidth;
    facts.codedHeight = sequence.codedHeight;
    facts.chromaFormat = sequence.chromaFormat;
    facts.bits = sequence.lumaBits;
    facts.colorSiting = sitingOf(sequence);
    facts.aspectRatio = aspectRatioOf(sequence);
    if (!facts.isProgressive)
        facts.isTopFirst = isTopFirst(first);
    if (auto const& usability = sequence.usability) {
        facts.isFullRange = usability->fullRange;
        facts.colours = {usability->colourPrimaries, usability->transferCharacteristics,
                         usability->matrixCoefficients};
    }
    describePictureFacts(descriptor, facts);
}

void describeAVCSequence(Metadata::PartitionMetadata& metadata, CDCIEssenceDescriptor& descriptor,
                         AccessUnit const& first) {
    auto* const present = subDescriptorOf(descriptor);
    auto* const sub = present != nullptr ? present : makeSubDescriptor(metadata, descriptor);
    if (sub == nullptr)
        return;
    auto const& sequence = *first.sequence;
    put(*sub, Rows::profile, Types::UInt8(sequence.profile));
    put(*sub, Rows::profileConstraint, Types::UInt8(sequence.constraints));
    put(*sub, Rows::level, Types::UInt8(sequence.level));
    put(*sub, Rows::decodingDelay, Types::UInt8(static_cast<std::uint8_t>(sequence.mostReordered())));
    put(*sub, Rows::maximumReferences, Types::UInt8(sequence.referenceFrames));
    if (sequence.usability && sequence.usability->maximumBitRate != 0)
        put(*sub, Rows::maximumBitRate,
            Types::UInt32(capped<std::uint32_t>(sequence.usability->maximumBitRate)));
}

void describeAVCGroups(CDCIEssenceDescriptor& descriptor, AVCStatistics const& statistics) {
    auto* const sub = subDescriptorOf(descriptor);
    auto const& groups = statistics.groups;
    if (sub == nullptr || groups.pictures() == 0)
        return;
    put(*sub, Rows::constantBPictures, Types::Boolean(groups.hasConstantBPictures()));
    put(*sub, Rows::contentKind, Types::UInt8(contentKindOf(statistics)));
    put(*sub, Rows::closedGOP, Types::Boolean(groups.areClosed()));
    put(*sub, Rows::identicalGOP, Types::Boolean(groups.areIdentical()));
    put(*sub, Rows::maximumGOP, Types::UInt16(capped<std::uint16_t>(groups.longest())));
    put(*sub, Rows::maximumBPictures, Types::UInt16(capped<std::uint16_t>(groups.mostBPictures())));
    auto const average =
        static_cast<std::uint64_t>(static_cast<double>(statistics.sizes.total()) * 8 *
                                   statistics.rate.toDouble() / static_cast<double>(groups.pictures()));
    put(*sub, Rows::averageBitRate, Types::UInt32(capped<std::uint32_t>(average)));
    auto const most = std::max(average, statistics.sizes.mostInSecond() * 8); // of less than a second too
    if (sub->findElement(Rows::maximumBitRate.label) == nullptr)
        put(*sub, Rows::maximumBitRate, Types::UInt32(capped<std::uint32_t>(most)));
}

} // namespace MXF::Zelm::GenericContainer
