#include "MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h"

#include "MXF/Zelm/Essence/MPEG/VideoCutter.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Analyzers/MPEGDescriptor.h"
#include "MXF/Zelm/GenericContainer/Analyzers/MPEGLabels.h"
#include "MXF/Zelm/GenericContainer/Analyzers/PictureIndexer.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"

#include <algorithm>
#include <deque>

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::MPEG::VideoCutter;
using Metadata::Structural::FileDescriptor;
using Metadata::Structural::MPEG2VideoDescriptor;

constexpr unsigned char frameWrappedMPEG = 0x05, clipWrappedMPEG = 0x06;

/// As many intra pictures in a row make a stream of intra pictures alone.
constexpr std::size_t lookAhead = 8;

/// B pictures in a row that are told apart from more.
constexpr std::size_t mostBPictures = 64;

bool isPredicted(VideoCutter::Unit const& unit) { return !isIntra(unit.headers); }

/// Undefined when the header has none that a clock shows.
Utils::TimeCode timecodeOf(Essence::MPEG::GroupHeader const& group, Templates::Rational<int> const& rate) {
    auto const frames = Utils::TimeBase::ofEditRate(rate, false).framesPerSecond();
    Utils::TimeBase const base(frames, group.dropFrame && Utils::TimeBase::canDrop(frames));
    Utils::TimeAddress const address{group.hours, group.minutes, group.seconds, group.pictures};
    return Utils::TimeCode::isValid(base, address) ? Utils::TimeCode(base, address) : Utils::TimeCode();
}

} // namespace

struct MPEG2VideoAnalyzer::State : Platform::Allocated {
    State(Templates::SharedPtr<DataIO::SliceSource> source, Wrapping wrappingToUse)
        : cutter(std::move(source)), wrapping(wrappingToUse) {}

    bool fetch();
    std::size_t followingB();
    bool hasPredictedAhead() const;

    VideoCutter cutter;
    Wrapping wrapping;
    std::deque<VideoCutter::Unit> ahead;                   // not given yet: never empty while there are more
    std::optional<Essence::MPEG::SequenceHeader> sequence; // the first
    Essence::MPEG::PictureHeader firstPicture;
    bool isIntraOnly = false;
    PictureIndexer indexer;
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

/// B pictures between the first unit ahead and the next one that is none.
std::size_t MPEG2VideoAnalyzer::State::followingB() {
    std::size_t count = 0;
    while (count < mostBPictures && (ahead.size() > count + 1 || fetch()) && isB(ahead[count + 1].headers))
        ++count;
    return count;
}

bool MPEG2VideoAnalyzer::State::hasPredictedAhead() const {
    return std::any_of(ahead.begin(), ahead.end(), isPredicted);
}

MPEG2VideoAnalyzer::MPEG2VideoAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, Wrapping wrapping)
    : state_(std::make_unique<State>(std::move(source), wrapping)) {}

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

Types::UniversalLabel MPEG2VideoAnalyzer::universalLabel() const { return mpegLabel(state_->wrapping); }

bool MPEG2VideoAnalyzer::containsTemporalDependencies() const {
    return !state_->isIntraOnly && !(sequence().extension && sequence().extension->lowDelay);
}

bool MPEG2VideoAnalyzer::isIntraOnly() const { return state_->isIntraOnly; }
std::size_t MPEG2VideoAnalyzer::longestGroup() const { return state_->groups.longest(); }
Utils::TimeCode MPEG2VideoAnalyzer::currentTimeCode() const { return state_->timecode; }
unsigned char MPEG2VideoAnalyzer::itemTypeIdentifier() const { return ElementKey::Picture; }
unsigned char MPEG2VideoAnalyzer::essenceElementType() const {
    return state_->wrapping == Wrapping::Clip ? clipWrappedMPEG : frameWrappedMPEG;
}
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
    auto& state = *state_;
    std::size_t const followingB = state.followingB();
    auto const& current = state.ahead.front();
    if (!containsTemporalDependencies() && isB(current.headers))
        throw Exceptions::at(current.offset,
                             Exceptions::InvalidFormat("A B picture in a stream that began as one without"));
    unit.index = state.indexer.add(current.headers, followingB);
    state.groups.add(current.headers);
    state.timecode = current.headers.group ? timecodeOf(*current.headers.group, editRate())
                                           : Utils::TimeCode(state.timecode) += 1;
    if (state.timecode.isDefined())
        unit.timecode = std::make_shared<Utils::TimeCode>(state.timecode);
    unit.data = std::move(state.ahead.front().data);
    state.ahead.pop_front();
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
