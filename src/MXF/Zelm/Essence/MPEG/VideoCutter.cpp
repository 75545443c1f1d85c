#include "MXF/Zelm/Essence/MPEG/VideoCutter.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <sstream>

namespace MXF::Zelm::Essence::MPEG {

namespace {

constexpr std::uint64_t startCodeSize = 4;

/// Read at once. More costs memory, less system calls.
constexpr std::uint64_t readSize = std::uint64_t{256} << 10;

/// A picture header with its coding extension, user data before it being rare, and small.
constexpr std::uint64_t pictureHeaderSize = 256;

/// Start codes before the first slice that are kept: more than streams have.
constexpr std::size_t mostHeaders = 64;

constexpr std::uint32_t macroblock = 16;

/// From this height on, the rows of macroblocks do not fit in a start code.
constexpr std::uint32_t tallPicture = 2800;

std::string hexadecimal(std::uint64_t offset) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << offset;
    return text.str();
}

bool areFieldsOfOneFrame(PictureHeader const& first, PictureHeader const& second) {
    return first.isField() && second.isField() && first.coding->structure != second.coding->structure &&
           first.temporalReference == second.temporalReference;
}

/// The start code of the last row of macroblocks of a picture; 0 where it cannot be told, as in MPEG-1, whose
/// slices may go on over rows.
std::uint32_t lastRow(SequenceHeader const& sequence, bool isField) {
    if (sequence.isMPEG1() || sequence.height() > tallPicture)
        return 0;
    std::uint32_t const pair = 2 * macroblock;
    if (isField)
        return (sequence.height() + pair - 1) / pair;
    return sequence.isProgressive() ? (sequence.height() + macroblock - 1) / macroblock
                                    : (sequence.height() + pair - 1) / pair * 2;
}

} // namespace

VideoCutter::VideoCutter(Templates::SharedPtr<DataIO::SliceSource> source)
    : source_(std::move(source)),
      finder_(DataIO::startCodePrefix, source_->absoluteOffset()),
      start_(source_->absoluteOffset()) {}

VideoCutter::~VideoCutter() = default;

bool VideoCutter::readMore() {
    DataIO::Chain piece;
    if (source_->read(readSize, piece) == 0)
        return false;
    finder_.push(piece);
    bytes_.append(std::move(piece));
    return true;
}

/// Reads until the byte before `end` is there; false when the stream ends before.
bool VideoCutter::require(std::uint64_t end) {
    while (start_ + bytes_.size() < end)
        if (!readMore())
            return false;
    return true;
}

/// The next start code, absent at the end of the stream.
std::optional<VideoCutter::Code> VideoCutter::nextCode() {
    for (;;) {
        if (auto const position = finder_.next()) {
            if (!require(*position + startCodeSize))
                return std::nullopt;
            Code code{*position, 0};
            bytes_.copyTo(&code.value, 1, *position - start_ + startCodeSize - 1);
            return code;
        }
        if (bytes_.size() > largestUnit)
            throw Exceptions::at(start_, Exceptions::InvalidFormat("No picture of MPEG video ends within " +
                                                                   std::to_string(largestUnit) + " bytes"));
        if (!readMore())
            return std::nullopt;
    }
}

bool VideoCutter::findStart(std::uint64_t maximumToSkip) {
    std::uint64_t const from = start_;
    while (finder_.searchedTo() - from <= maximumToSkip) {
        if (auto const position = finder_.next()) {
            std::uint8_t code = 0;
            if (!require(*position + startCodeSize))
                return false;
            bytes_.copyTo(&code, 1, *position - start_ + startCodeSize - 1);
            if (code != SequenceHeaderStart)
                continue;
            bytes_.splitFront(*position - start_);
            start_ = *position;
            pending_ = Code{*position, code};
            return start_ - from <= maximumToSkip;
        }
        bytes_.splitFront(finder_.searchedTo() - start_);
        start_ = finder_.searchedTo();
        if (!readMore())
            return false;
    }
    return false;
}

bool VideoCutter::next(Unit& unit) {
    unit = {};
    State state;
    if (pending_)
        takeInto(state, *pending_);
    pending_.reset();
    while (auto const code = nextCode()) {
        if (beginsUnitAt(state, *code)) {
            cut(state, code->position, unit);
            pending_ = code;
            return true;
        }
        takeInto(state, *code);
    }
    if (bytes_.empty())
        return false;
    if (!isWhole(state))
        return endAmidPicture();
    cut(state, start_ + bytes_.size(), unit);
    return true;
}

void VideoCutter::takeInto(State& state, Code const& code) {
    if (!state.hasSlices && headerCodes_.size() < mostHeaders)
        headerCodes_.push_back(code.position - start_);
    if (code.value == PictureStart) {
        state.hasSecondField = state.hasSlices;
        state.hasPicture = true;
        state.lastSlice = 0;
    } else if (isSlice(code.value) && state.hasPicture) {
        if (!state.hasSlices)
            readHeaders(state, code.position - start_ + startCodeSize);
        state.hasSlices = true;
        state.lastSlice = code.value;
    }
}

/// The headers of the first `end` bytes. Of more start codes than are kept, all are searched for once more.
void VideoCutter::readHeaders(State& state, std::uint64_t end) {
    // A few bytes more, so that all of the last header can be read eight bytes at a time.
    auto const bytes = bytes_.part(0, std::min(end + sizeof(std::uint64_t), bytes_.size()));
    state.headers = headerCodes_.size() < mostHeaders ? VideoUnit::read(bytes, headerCodes_)
                                                      : VideoUnit::read(bytes, VideoUnit::Part::Head);
}

bool VideoCutter::beginsUnitAt(State const& state, Code const& code) {
    return state.hasSlices && beginsUnit(code.value) &&
           !(code.value == PictureStart && isSecondField(state, code.position));
}

bool VideoCutter::isSecondField(State const& state, std::uint64_t position) {
    if (state.hasSecondField || !state.headers.picture || !state.headers.picture->isField())
        return false;
    require(position + pictureHeaderSize);
    std::uint64_t const from = position - start_;
    auto const headers =
        VideoUnit::read(bytes_.part(from, std::min(pictureHeaderSize, bytes_.size() - from)));
    return headers.picture && areFieldsOfOneFrame(*state.headers.picture, *headers.picture);
}

/// Whether the last picture of the stream has all its slices; of the last one nobody knows.
bool VideoCutter::isWhole(State const& state) const {
    auto const& sequence = state.headers.sequence ? state.headers.sequence : sequence_;
    if (!state.hasSlices || !sequence || !state.headers.picture)
        return false;
    bool const isField = state.headers.picture->isField();
    return isField <= state.hasSecondField && state.lastSlice >= lastRow(*sequence, isField);
}

void VideoCutter::cut(State& state, std::uint64_t end, Unit& unit) {
    unit.offset = start_;
    unit.data = bytes_.splitFront(end - start_);
    unit.headers = std::move(state.headers);
    if (unit.headers.sequence)
        sequence_ = unit.headers.sequence;
    start_ = end;
    headerCodes_.clear();
}

bool VideoCutter::endAmidPicture() {
    fault_ = "The video ends amid the picture that begins at " + hexadecimal(start_);
    start_ += bytes_.size();
    bytes_.clear();
    return false;
}

} // namespace MXF::Zelm::Essence::MPEG
