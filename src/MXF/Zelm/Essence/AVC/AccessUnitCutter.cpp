#include "MXF/Zelm/Essence/AVC/AccessUnitCutter.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::Essence::AVC {

namespace {

constexpr std::size_t mostHeld = 4096; // more units in a row without a picture are no video

NalType typeOf(std::uint8_t code) { return static_cast<NalType>(code & 0x1F); }

/// What comes before the slices of a frame, of those that tell something.
bool isHead(std::uint8_t code) {
    auto const type = typeOf(code);
    return (code & 0x80) == 0 && type >= NalType::SEI && type <= NalType::AccessUnitDelimiter;
}

/// A unit of this type between slices may be the first one of another picture.
bool mayBeginPicture(NalType type) {
    constexpr int firstReserved = 14, lastReserved = 18;
    return (type >= NalType::SEI && type <= NalType::AccessUnitDelimiter) ||
           (static_cast<int>(type) >= firstReserved && static_cast<int>(type) <= lastReserved);
}

std::optional<SliceHeader> headerOf(NalUnit const& slice, ParameterSets const& sets) {
    try {
        return SliceHeader::read(slice, sets);
    } catch (Exceptions::BaseException const&) {
        return std::nullopt; // nothing can be said of it
    }
}

} // namespace

AccessUnitCutter::AccessUnitCutter(Templates::SharedPtr<DataIO::SliceSource> source)
    : reader_(std::move(source), "AVC") {}

bool AccessUnitCutter::findStart(std::uint64_t maximumToSkip, Unit& unit) {
    std::uint64_t const from = reader_.start();
    pending_ = reader_.find(isHead, maximumToSkip, true);
    while (pending_ && reader_.start() - from <= maximumToSkip && next(unit))
        if (unit.headers.slice)
            return true;
    return false;
}

std::optional<AccessUnitCutter::Nal> AccessUnitCutter::nextNal() {
    auto const code = pending_ ? pending_ : reader_.next();
    pending_.reset();
    if (!code)
        return std::nullopt;
    pending_ = reader_.next();
    std::uint64_t const from = code->position + StartCodeReader::codeSize - reader_.start();
    std::uint64_t const to = (pending_ ? pending_->position - reader_.start() : reader_.bytes().size());
    Nal nal{{}, reader_.zeroBefore(code->position)};
    nal.unit.type = typeOf(code->value);
    nal.unit.referenceIDC = static_cast<std::uint8_t>(code->value >> 5 & 3);
    nal.unit.offset = from - 1;
    nal.unit.payload = reader_.bytes().part(from, to > from ? to - from : 0);
    return nal;
}

/// Whether the slice is neither of the picture before nor of the second field of its frame.
bool AccessUnitCutter::beginsFrame(AccessUnit const& headers, NalUnit const& slice) {
    auto const header = headerOf(slice, sets_);
    if (!last_ || !header)
        return !held_.empty();
    bool const isOther = last_->isOfOtherPicture(*header);
    bool const isSecondField = isOther && !headers.secondField && last_->isFirstFieldOf(*header);
    last_ = header;
    return isOther && !isSecondField;
}

/// Sets count from here on; the picture before has its own.
void AccessUnitCutter::hold(Nal nal) {
    AccessUnit sets;
    if (!nal.unit.isSlice())
        sets.take(nal.unit, sets_);
    if (held_.size() >= mostHeld)
        throw Exceptions::at(nal.begin, Exceptions::InvalidFormat("AVC without a picture"));
    held_.push_back(std::move(nal));
}

void AccessUnitCutter::takeHeld(AccessUnit& headers) {
    for (auto const& nal : held_)
        headers.take(nal.unit, sets_);
    held_.clear();
}

bool AccessUnitCutter::next(Unit& unit) {
    unit = {};
    takeHeld(unit.headers);
    last_ = unit.headers.slice;
    while (auto nal = nextNal()) {
        bool const isSlice = nal->unit.isSlice();
        if (isSlice && unit.headers.reachesSlices && beginsFrame(unit.headers, nal->unit)) {
            std::uint64_t const end = held_.empty() ? nal->begin : held_.front().begin;
            hold(std::move(*nal));
            unit.offset = reader_.start();
            unit.data = reader_.cut(end);
            return true;
        }
        if (unit.headers.reachesSlices && !isSlice && (!held_.empty() || mayBeginPicture(nal->unit.type))) {
            hold(std::move(*nal));
            continue;
        }
        takeHeld(unit.headers);
        unit.headers.take(nal->unit, sets_);
        last_ = isSlice && !last_ ? unit.headers.slice : last_;
    }
    takeHeld(unit.headers);
    unit.offset = reader_.start();
    unit.data = reader_.cutRest();
    return !unit.data.empty();
}

} // namespace MXF::Zelm::Essence::AVC
