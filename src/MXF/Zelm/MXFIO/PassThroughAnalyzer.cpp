#include "MXF/Zelm/MXFIO/PassThroughAnalyzer.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/SetCopy.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Utils/SampleCadence.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

using GenericContainer::ElementKey;
using GenericContainer::Wrapping;
using Metadata::Structural::FileDescriptor;

/// Where mapping and wrapping stand in the labels of SMPTE 382M: 1 Wave frame, 2 Wave clip, 3 AES3 frame, 4
/// AES3 clip. The element types are the same.
constexpr std::size_t wrappingByte = 14;

std::uint8_t converted(std::uint8_t code, Wrapping wanted) {
    return static_cast<std::uint8_t>(wanted == Wrapping::Clip ? (code + 1) / 2 * 2 : (code - 1) / 2 * 2 + 1);
}

/// Whether the essence is wrapped by one of those.
bool canConvert(EssenceTrack const& track) {
    std::uint8_t const type = ElementKey(track.trackNumber).elementType();
    return track.samples.bytes != 0 && track.samples.rate.isKnown() && type >= 1 && type <= 4 &&
           ElementKey(track.trackNumber).itemType() == ElementKey::Sound;
}

/// Where in a cadence such as 1602, 1601, … edit unit `first` stands.
std::uint64_t placeInCadence(SampleFormat const& samples, Templates::Rational<int> const& editRate,
                             std::int64_t first) {
    try {
        Utils::SampleCadence const cadence(samples.rate, editRate);
        return (samples.sequenceOffset + static_cast<std::uint64_t>(first)) % cadence.cycle();
    } catch (Exceptions::InvalidValue const&) {
        return samples.sequenceOffset; // at such rates there is none
    }
}

/// Sound that begins later than in the file may begin elsewhere in the cadence.
void describeCadence(FileDescriptor& descriptor, SampleFormat const& samples,
                     PassThroughReader const& reader) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint8_t>::max();
    auto* const wave = dynamic_cast<Metadata::Structural::WAVEAudioEssenceDescriptor*>(&descriptor);
    std::int64_t const first = reader.options().first;
    if (wave == nullptr || first <= 0)
        return;
    auto const place = placeInCadence(samples, reader.editRate(), first);
    if (place != samples.sequenceOffset && place <= most)
        wave->sequenceOffset(Types::UInt8(static_cast<std::uint8_t>(place)));
}

} // namespace

PassThroughAnalyzer::PassThroughAnalyzer(Templates::SharedPtr<PassThroughReader> reader,
                                         std::uint32_t trackNumber)
    : reader_(std::move(reader)),
      track_(reader_->container().trackByNumber(trackNumber)),
      wanted_(reader_->options().wrapping == Wrapping::Unknown ? reader_->wrapping()
                                                               : reader_->options().wrapping) {
    if (track_ == nullptr)
        throw Exceptions::InvalidStructure("The essence container has no track with the number " +
                                           std::to_string(trackNumber));
    if (isConverted() && !canConvert(*track_))
        throw Exceptions::InvalidStructure("Only sound whose samples have one size can be wrapped otherwise");
    queue_ = &reader_->add(trackNumber);
}

PassThroughAnalyzer::~PassThroughAnalyzer() = default;

bool PassThroughAnalyzer::isConverted() const { return wanted_ != reader_->wrapping(); }

/// Whether edit units are single samples, of which many are given at once.
bool PassThroughAnalyzer::givesSamples() const { return wanted_ == Wrapping::Clip && canConvert(*track_); }

bool PassThroughAnalyzer::isPicture() const { return essenceAnalyzerType() == PictureAnalyzer; }

Templates::Rational<int> PassThroughAnalyzer::editRate() const {
    return givesSamples() ? track_->samples.rate : reader_->editRate();
}

bool PassThroughAnalyzer::preload() {
    if (reader_->fill(*queue_))
        sourceKey_ = queue_->items.front().key;
    if (isConverted())
        return true;
    isReordered_ = isPicture() && isReordered();
    constantSize_ = isReordered_ ? 0 : reader_->constantSize(*queue_);
    return true;
}

/// Whether any picture that is handed out is shown elsewhere than it is stored.
bool PassThroughAnalyzer::isReordered() const {
    auto const* const index = reader_->index();
    std::int64_t const end =
        index != nullptr ? std::min(index->end().value_or(0), reader_->options().end) : 0;
    for (std::int64_t position = reader_->options().first; position < end; ++position)
        if (index->displayPosition(position).value_or(position) != position)
            return true;
    return false;
}

GenericContainer::EssenceAnalyzer::EssenceAnalyzerType PassThroughAnalyzer::essenceAnalyzerType() const {
    switch (ElementKey(track_->trackNumber).itemType()) {
    case ElementKey::Picture:
    case ElementKey::CPPicture:
        return PictureAnalyzer;
    case ElementKey::Sound:
    case ElementKey::CPSound:
        return SoundAnalyzer;
    case ElementKey::Compound:
        return CompoundAnalyzer;
    default:
        return DataAnalyzer;
    }
}

Types::UniversalLabel PassThroughAnalyzer::universalLabel() const {
    auto const* const label =
        track_->descriptor != nullptr ? track_->descriptor->essenceContainer() : nullptr;
    KLV::Key key = label != nullptr ? KLV::Key(label->rawBuffer()) : KLV::Key();
    if (isConverted() && label != nullptr)
        key.rawBuffer()[wrappingByte] = converted(key[wrappingByte], wanted_);
    return key;
}

unsigned char PassThroughAnalyzer::itemTypeIdentifier() const {
    return ElementKey(track_->trackNumber).itemType();
}

unsigned char PassThroughAnalyzer::essenceElementType() const {
    auto const type = ElementKey(track_->trackNumber).elementType();
    return isConverted() ? converted(type, wanted_) : type;
}

bool PassThroughAnalyzer::isCBE() const { return boundedEditUnitSize() != 0; }

unsigned int PassThroughAnalyzer::boundedEditUnitSize() const {
    if (givesSamples())
        return track_->samples.bytes;
    return std::max(constantSize_, BasicAnalyzer::boundedEditUnitSize());
}

bool PassThroughAnalyzer::containsTemporalDependencies() const { return isReordered_; }

KLV::Key PassThroughAnalyzer::proposeKey(KLV::Key const& key) const {
    if (!ElementKey::isContent(sourceKey_))
        return key;
    KLV::Key proposed = sourceKey_;
    std::copy_n(key.rawBuffer() + 12, 4, proposed.rawBuffer() + 12);
    return proposed;
}

FileDescriptor& PassThroughAnalyzer::describe(Metadata::PartitionMetadata& metadata,
                                              FileDescriptor* present) {
    auto* descriptor = present;
    if (descriptor == nullptr && track_->descriptor != nullptr)
        descriptor = dynamic_cast<FileDescriptor*>(
            Metadata::copyWithReferenced(*track_->descriptor, *reader_->container().metadata, metadata));
    bool const isNew = descriptor == nullptr;
    if (isNew)
        descriptor = &Metadata::Structural::create<FileDescriptor>(metadata);
    if (isNew || isConverted() || descriptor->sampleRate() == nullptr)
        descriptor->sampleRate(Types::Rational(editRate()));
    descriptor->essenceContainer(universalLabel());
    descriptor->containerDuration(Types::Length(-1));
    describeCadence(*descriptor, track_->samples, *reader_);
    return *descriptor;
}

bool PassThroughAnalyzer::hasMore() const { return reader_->fill(*queue_); }

GenericContainer::EditUnitIndex PassThroughAnalyzer::indexOf(std::int64_t position) const {
    GenericContainer::EditUnitIndex found;
    auto const* const index = isPicture() ? reader_->index() : nullptr;
    if (index == nullptr)
        return found;
    found.flags = index->flags(position).value_or(0);
    found.keyFrameOffset = static_cast<std::int32_t>(index->keyFrame(position).value_or(position) - position);
    if (isReordered_)
        found.temporalOffset =
            static_cast<std::int32_t>(index->displayPosition(position).value_or(position) - position);
    return found;
}

std::uint64_t PassThroughAnalyzer::read(GenericContainer::EditUnit& unit) {
    auto item = reader_->pop(*queue_);
    unit.data = std::move(item.data);
    unit.index = indexOf(item.position);
    if (givesSamples())
        return unit.data.size() / track_->samples.bytes;
    if (auto const timecode = reader_->container().timecode.editRate.isKnown()
                                  ? reader_->essence().timecode(item.position)
                                  : Utils::TimeCode();
        timecode.isDefined())
        unit.timecode = std::make_shared<Utils::TimeCode>(timecode);
    return 1;
}

} // namespace MXF::Zelm::MXFIO
