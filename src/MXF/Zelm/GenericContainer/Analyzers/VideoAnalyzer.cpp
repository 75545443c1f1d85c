#include "MXF/Zelm/GenericContainer/Analyzers/VideoAnalyzer.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Analyzers/GroupStatistics.h"
#include "MXF/Zelm/GenericContainer/Analyzers/SizeStatistics.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace MXF::Zelm::GenericContainer {

namespace {

constexpr unsigned char frameWrappedMPEG = 0x05, clipWrappedMPEG = 0x06;

/// As many intra pictures in a row make a stream of intra pictures alone.
constexpr std::size_t lookAhead = 8;

/// Rates above count as this one.
constexpr double mostPerSecond = 1000;

bool isPredicted(CodedPicture const& coded) { return coded.picture.type != Essence::Picture::Type::I; }

} // namespace

struct VideoAnalyzer::State : Platform::Allocated {
    bool isOpen = false, isIntraOnly = false, isReordered = false, hasEnded = false;
    std::deque<CodedPicture> ahead; // not given yet: never empty while there are more
    std::size_t ordered = 0;        // of them, those that `order` has taken
    Essence::PictureOrder order;
    GroupStatistics groups;
    SizeStatistics sizes;
    Utils::TimeCode timecode;
};

VideoAnalyzer::VideoAnalyzer(Wrapping wrapping) : wrapping_(wrapping), state_(std::make_unique<State>()) {}
VideoAnalyzer::~VideoAnalyzer() = default;

/// Reads one picture ahead; false at the end.
bool VideoAnalyzer::fetch() {
    CodedPicture picture;
    if (state_->hasEnded || !take(picture)) {
        state_->hasEnded = true;
        return false;
    }
    state_->sizes.add(picture.data.size());
    state_->ahead.push_back(std::move(picture));
    return true;
}

bool VideoAnalyzer::preload() {
    auto& state = *state_;
    if (state.isOpen)
        return true;
    if (!open() || !editRate().isKnown() || editRate().numerator <= 0)
        return false;
    state.sizes.picturesInSecond(
        static_cast<std::size_t>(std::lround(std::clamp(editRate().toDouble(), 1.0, mostPerSecond))));
    if (!fetch())
        return false;
    auto const& ahead = state.ahead;
    auto const hasPredicted = [&] { return std::any_of(ahead.begin(), ahead.end(), isPredicted); };
    while (ahead.size() < lookAhead && !hasPredicted() && fetch())
        continue;
    state.isIntraOnly = !hasPredicted();
    state.isReordered = !state.isIntraOnly && ahead.front().mostReordered != 0;
    state.isOpen = true;
    return true;
}

Templates::Rational<int> VideoAnalyzer::editRate() const {
    auto const rate = streamRate();
    return rate.isKnown() ? rate : BasicAnalyzer::editRate();
}

bool VideoAnalyzer::containsTemporalDependencies() const { return state_->isReordered; }
bool VideoAnalyzer::isIntraOnly() const { return state_->isIntraOnly; }
GroupStatistics const& VideoAnalyzer::groups() const { return state_->groups; }
SizeStatistics const& VideoAnalyzer::sizes() const { return state_->sizes; }
unsigned char VideoAnalyzer::itemTypeIdentifier() const { return ElementKey::Picture; }
unsigned char VideoAnalyzer::essenceElementType() const {
    return wrapping_ == Wrapping::Clip ? clipWrappedMPEG : frameWrappedMPEG;
}

/// That of the first edit unit is known before it is given, unless pictures behind the first are shown before
/// it.
Utils::TimeCode VideoAnalyzer::currentTimeCode() const {
    auto const& ahead = state_->ahead;
    if (unitsGiven() != 0 || ahead.empty())
        return state_->timecode;
    auto const& first = ahead.front();
    bool const isOfPlace = first.isTimecodeOfGroup || !state_->isReordered || first.picture.isClosed;
    return isOfPlace ? first.timecode : Utils::TimeCode();
}

bool VideoAnalyzer::hasMore() const { return !state_->ahead.empty(); }

/// Finds out where the first picture ahead is shown, which those behind it may tell.
void VideoAnalyzer::place(EditUnit& unit) {
    auto& state = *state_;
    auto placed = state.order.next();
    while (!placed) {
        if (state.ordered < state.ahead.size() || fetch()) {
            auto const& next = state.ahead[state.ordered++];
            state.order.mostReordered(state.isReordered ? next.mostReordered : 0);
            state.order.add(next.picture);
        } else {
            state.order.finish();
        }
        placed = state.order.next();
    }
    --state.ordered;
    unit.index = {placed->shownLater, placed->keyFrameOffset, placed->flags};
}

std::uint64_t VideoAnalyzer::read(EditUnit& unit) {
    auto& state = *state_;
    place(unit);
    if (state.ahead.size() == 1) // never empty while there are more
        fetch();
    auto& current = state.ahead.front();
    if (!state.isReordered && current.picture.type == Essence::Picture::Type::B && current.mostReordered != 0)
        throw Exceptions::at(current.offset,
                             Exceptions::InvalidFormat("A B picture in a stream that began as one without"));
    state.groups.add(current);
    bool const isOfPlace = current.isTimecodeOfGroup || unit.index.temporalOffset == 0;
    state.timecode =
        current.timecode.isDefined() && isOfPlace ? current.timecode : Utils::TimeCode(state.timecode) += 1;
    if (state.timecode.isDefined())
        unit.timecode = std::make_shared<Utils::TimeCode>(state.timecode);
    unit.data = std::move(current.data);
    state.ahead.pop_front();
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
