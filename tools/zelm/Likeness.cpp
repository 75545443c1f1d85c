#include "Likeness.h"

#include "TrackChoice.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/GenericDescriptor.h>
#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <array>
#include <map>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;
using MXFIO::EssenceTrack;

namespace {

/// By their names in SMPTE 377M or the registers: what tells of the file or its packages alone, or of what
/// the stream happens to do.
constexpr std::array ownProperties = {"InstanceID",
                                      "InstanceUID",
                                      "GenerationID",
                                      "GenerationUID",
                                      "LinkedTrackID",
                                      "ContainerDuration",
                                      "EssenceLength",
                                      "BitRate",
                                      "MaximumGOPSize",
                                      "MaxGOP",
                                      "MaximumBPictureCount",
                                      "BPictureCount",
                                      "ClosedGOP",
                                      "IdenticalGOP",
                                      "SingleSequence",
                                      "AverageBytesPerSecond",
                                      "AvgBps",
                                      "PeakEnvelope",
                                      "PeakEnvelopeData",
                                      "PeakEnvelopeTimestamp",
                                      "SequenceOffset",
                                      "LowDelay",
                                      "ConstantBPictureFlag",
                                      "AVCMaximumBitRate",
                                      "AVCAverageBitRate",
                                      "MCALinkID",
                                      "BlockStartOffset"};

struct Names {
    std::string a, b;
};

std::string textOf(Types::BaseType const* value) {
    return value != nullptr ? Platform::toUtf8(value->toString()) : "absent";
}

[[noreturn]] void refuse(std::string const& what, Names const& names, std::string const& a,
                         std::string const& b) {
    throw Exceptions::InvalidValue(what + " is " + a + " in " + names.a + ", " + b + " in " + names.b);
}

std::string textOf(Templates::Rational<int> const& rate) {
    return std::to_string(rate.numerator) + "/" + std::to_string(rate.denominator);
}

std::string hexOf(std::uint32_t number) {
    constexpr const char* digits = "0123456789ABCDEF";
    std::string text;
    for (int shift = 28; shift >= 0; shift -= 4)
        text += digits[number >> shift & 0xF];
    return text;
}

bool isOwn(Metadata::Element const& element) {
    if (dynamic_cast<Metadata::ReferenceHolder const*>(&element) != nullptr)
        return true; // sub-descriptors are compared by themselves, locators do not matter
    auto const name = Platform::toUtf8(element.name());
    return std::any_of(ownProperties.begin(), ownProperties.end(),
                       [&](const char* own) { return name == own; });
}

/// Both ways, so that what only one of them has is found.
void compareSets(std::string const& track, MetadataSet const& a, MetadataSet const& b, Names const& names) {
    if (a.key() != b.key())
        refuse(track + ": the descriptor", names, Platform::toUtf8(a.name()), Platform::toUtf8(b.name()));
    auto const compare = [&](MetadataSet const& one, MetadataSet const& other) {
        for (auto const& element : one) {
            auto const* const counterpart = other.findElement(*element->universalLabel());
            if (isOwn(*element) || (counterpart != nullptr && element->baseValue() != nullptr &&
                                    counterpart->baseValue() != nullptr &&
                                    element->baseValue()->equals(*counterpart->baseValue())))
                continue;
            auto const* const inA = a.findElement(*element->universalLabel());
            auto const* const inB = b.findElement(*element->universalLabel());
            refuse(track + ": " + Platform::toUtf8(element->name()), names,
                   textOf(inA != nullptr ? inA->baseValue() : nullptr),
                   textOf(inB != nullptr ? inB->baseValue() : nullptr));
        }
    };
    compare(a, b);
    compare(b, a);
}

void compareDescriptors(std::string const& track, EssenceTrack const& a, EssenceTrack const& b,
                        Names const& names) {
    if (a.descriptor == nullptr || b.descriptor == nullptr) {
        if (a.descriptor != b.descriptor)
            refuse(track + ": the descriptor", names, a.descriptor != nullptr ? "there" : "absent",
                   b.descriptor != nullptr ? "there" : "absent");
        return;
    }
    compareSets(track, *a.descriptor, *b.descriptor, names);
    auto const partsA = a.descriptor->subDescriptors(), partsB = b.descriptor->subDescriptors();
    if (partsA.size() != partsB.size())
        refuse(track + ": the number of sub-descriptors", names, std::to_string(partsA.size()),
               std::to_string(partsB.size()));
    for (std::size_t i = 0; i < partsA.size(); ++i)
        compareSets(track, *partsA[i], *partsB[i], names);
}

void compareTracks(std::string const& track, EssenceTrack const& a, EssenceTrack const& b,
                   Names const& names) {
    if (a.trackNumber != b.trackNumber)
        refuse(track + ": the track number", names, hexOf(a.trackNumber), hexOf(b.trackNumber));
    if (a.editRate != b.editRate)
        refuse(track + ": the edit rate", names, textOf(a.editRate), textOf(b.editRate));
    if (b.origin != 0)
        refuse(track + ": the origin", names, std::to_string(a.origin), std::to_string(b.origin));
    compareDescriptors(track, a, b, names);
}

} // namespace

void requireAlike(std::vector<EssenceContainer> const& a, std::string const& nameA,
                  std::vector<EssenceContainer> const& b, std::string const& nameB) {
    Names const names{nameA, nameB};
    if (a.size() != b.size())
        refuse("the number of essence containers", names, std::to_string(a.size()), std::to_string(b.size()));
    std::map<char, int> counts;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i].tracks.size() != b[i].tracks.size())
            refuse("the number of essence tracks", names, std::to_string(a[i].tracks.size()),
                   std::to_string(b[i].tracks.size()));
        for (std::size_t track = 0; track < a[i].tracks.size(); ++track) {
            char const kind = trackKind(a[i].tracks[track]);
            compareTracks(std::string(1, kind) + std::to_string(++counts[kind]), a[i].tracks[track],
                          b[i].tracks[track], names);
        }
    }
}

} // namespace Zelm
