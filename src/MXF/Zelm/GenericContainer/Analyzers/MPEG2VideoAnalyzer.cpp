#include "MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h"

#include "MXF/Zelm/Essence/MPEG/VideoCutter.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Analyzers/MPEGDescriptor.h"
#include "MXF/Zelm/GenericContainer/Analyzers/MPEGLabels.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"

#include <deque>

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::MPEG::PictureType;
using Essence::MPEG::VideoCutter;
using Metadata::Structural::FileDescriptor;
using Metadata::Structural::MPEG2VideoDescriptor;

constexpr unsigned char frameWrappedMPEG = 0x05;

/// As many intra pictures in a row make a stream of intra pictures alone.
constexpr std::size_t lookAhead = 8;

bool isPredicted(VideoCutter::Unit const& unit) {
    return unit.headers.picture->type == PictureType::P || unit.headers.picture->type == PictureType::B;
}

/// Undefined when the header has none that a clock shows.
Utils::TimeCode timecodeOf(Essence::MPEG::GroupHeader const& group, Templates::Rational<int> const& rate) {
    auto const frames = Utils::TimeBase::ofEditRate(rate, false).framesPerSecond();
    Utils::TimeBase const base(frames, group.dropFrame && Utils::TimeBase::canDrop(frames));
    Utils::TimeAddress const address{group.hours, group.minutes, group.seconds, group.pictures};
    return Utils::TimeCode::isValid(base, address) ? Utils::TimeCode(base, address) : Utils::TimeCode();
}

} // namespace

struct MPEG2VideoAnalyzer::State : Platform::Allocated {
    explicit State(Templates::SharedPtr<DataIO::SliceSource> source) : cutter(std::move(source)) {}

    bool fetch();
    bool hasPredictedAhead() const;

    VideoCutter cutter;
    std::deque<VideoCutter::Unit> ahead; // one more than was given, as long as there are more
    std::optional<Essence::MPEG::SequenceHeader> sequence; // the first
    Essence::MPEG::PictureHeader firstPicture;
    bool isIntraOnly = false;
    PictureOrder order;
    GroupStatistics groups;
    Utils::TimeCode timecode;
};

/// Reads one unit ahead; false at the end.
bool MPEG2VideoAnalyzer::State::fetch() {
    VideoCutter::Unit unit;
    if (!cutter.next(unit))
        return false;
    ahead.push_back(std::move(unit));
    return true;
}

bool MPEG2VideoAnalyzer::State::hasPredictedAhead() const {
    return std::any_of(ahead.begin(), ahead.end(), isPredicted);
}

MPEG2VideoAnalyzer::MPEG2VideoAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source)
    : state_(std::make_unique<State>(std::move(source))) {}

MPEG2VideoAnalyzer::~MPEG2VideoAnalyzer() = default;

bool MPEG2VideoAnalyzer::preload() {
    if (state_->sequence)
        return true;
    if (!state_->cutter.findStart(maximumToSkip()) || !state_->fetch())
        return false;
    auto const& first = state_->ahead.front().headers;
    if (!first.sequence || !first.sequence->frameRate().isKnown() || first.sequence->width() == 0 ||
        first.sequence->height() == 0)
        return false;
    state_->sequence = first.sequence;
    state_->firstPicture = *first.picture;
    while (state_->ahead.size() < lookAhead && !state_->hasPredictedAhead() && state_->fetch())
        continue;
    state_->isIntraOnly = !state_->hasPredictedAhead();
    return true;
}

Essence::MPEG::SequenceHeader const& MPEG2VideoAnalyzer::sequence() const {
    if (!state_->sequence)
        throw Exceptions::InvalidStructure("The video has not been looked at yet");
    return *state_->sequence;
}

Templates::Rational<int> MPEG2VideoAnalyzer::editRate() const {
    return state_->sequence ? state_->sequence->frameRate() : Templates::Rational<int>{};
}

Types::UniversalLabel MPEG2VideoAnalyzer::universalLabel() const { return mpegFrameWrappedLabel(); }

bool MPEG2VideoAnalyzer::containsTemporalDependencies() const {
    return !state_->isIntraOnly && !(sequence().extension && sequence().extension->lowDelay);
}

Utils::TimeCode MPEG2VideoAnalyzer::currentTimeCode() const { return state_->timecode; }
unsigned char MPEG2VideoAnalyzer::itemTypeIdentifier() const { return ElementKey::Picture; }
unsigned char MPEG2VideoAnalyzer::essenceElementType() const { return frameWrappedMPEG; }
std::string MPEG2VideoAnalyzer::fault() const { return state_->cutter.fault(); }

void MPEG2VideoAnalyzer::describePictures(Metadata::Structural::CDCIEssenceDescriptor& descriptor) const {
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    descriptor.pictureEssenceCoding(mpegCodingLabel(sequence(), state_->isIntraOnly));
    describeMPEGPictures(descriptor, sequence(), state_->firstPicture);
}

FileDescriptor& MPEG2VideoAnalyzer::describe(Metadata::PartitionMetadata& metadata, FileDescriptor* present) {
    auto& descriptor = presentOrNew<MPEG2VideoDescriptor>(metadata, present);
    describePictures(descriptor);
    describeMPEGSequence(descriptor, sequence());
    return descriptor;
}

void MPEG2VideoAnalyzer::complete(FileDescriptor& descriptor) {
    if (auto* const mpeg = dynamic_cast<MPEG2VideoDescriptor*>(&descriptor)) {
        describeMPEGGroups(*mpeg, state_->groups);
        mpeg->pictureEssenceCoding(mpegCodingLabel(sequence(), state_->groups.isIntraOnly()));
    }
}

bool MPEG2VideoAnalyzer::hasMore() const { return !state_->ahead.empty(); }

std::uint64_t MPEG2VideoAnalyzer::read(EditUnit& unit) {
    if (state_->ahead.size() < 2)
        state_->fetch();
    auto const& current = state_->ahead.front();
    auto const* const next = state_->ahead.size() > 1 ? &state_->ahead[1].headers : nullptr;
    if (!containsTemporalDependencies() && current.headers.picture->type == PictureType::B)
        throw Exceptions::at(current.offset,
                             Exceptions::InvalidFormat("A B picture in a stream that began as one without"));
    unit.index =
        state_->order.add(current.headers, next, {state_->isIntraOnly, containsTemporalDependencies()});
    state_->groups.add(current.headers);
    if (current.headers.group)
        state_->timecode = timecodeOf(*current.headers.group, editRate());
    else
        ++state_->timecode;
    if (state_->timecode.isDefined())
        unit.timecode = std::make_shared<Utils::TimeCode>(state_->timecode);
    unit.data = std::move(state_->ahead.front().data);
    state_->ahead.pop_front();
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
