#include "MXF/Zelm/Essence/MPEG/VideoCutter.h"

#include <algorithm>
#include <sstream>

namespace MXF::Zelm::Essence::MPEG {

namespace {

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
    : reader_(std::move(source), "MPEG video") {}

VideoCutter::~VideoCutter() = default;

bool VideoCutter::findStart(std::uint64_t maximumToSkip) {
    pending_ = reader_.find([](std::uint8_t code) { return code == SequenceHeaderStart; }, maximumToSkip);
    return pending_.has_value();
}

bool VideoCutter::next(Unit& unit) {
    unit = {};
    State state;
    if (pending_)
        takeInto(state, *pending_);
    pending_.reset();
    while (auto const code = reader_.next()) {
        if (beginsUnitAt(state, *code)) {
            auto const offset = reader_.start();
            cut(state, reader_.cut(code->position), offset, unit);
            pending_ = code;
            return true;
        }
        takeInto(state, *code);
    }
    if (reader_.bytes().empty())
        return false;
    if (!isWhole(state))
        return endAmidPicture();
    auto const offset = reader_.start();
    cut(state, reader_.cutRest(), offset, unit);
    return true;
}

void VideoCutter::takeInto(State& state, Code const& code) {
    if (!state.hasSlices && headerCodes_.size() < mostHeaders)
        headerCodes_.push_back(code.position - reader_.start());
    if (code.value == PictureStart) {
        state.hasSecondField = state.hasSlices;
        state.hasPicture = true;
        state.lastSlice = 0;
    } else if (isSlice(code.value) && state.hasPicture) {
        if (!state.hasSlices)
            readHeaders(state, code.position - reader_.start() + StartCodeReader::codeSize);
        state.hasSlices = true;
        state.lastSlice = code.value;
    }
}

/// The headers of the first `end` bytes. Of more start codes than are kept, all are searched for once more.
void VideoCutter::readHeaders(State& state, std::uint64_t end) {
    // A few bytes more, so that all of the last header can be read eight bytes at a time.
    auto const& all = reader_.bytes();
    auto const bytes = all.part(0, std::min(end + sizeof(std::uint64_t), all.size()));
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
    auto const headers = VideoUnit::read(reader_.read(position, pictureHeaderSize));
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

void VideoCutter::cut(State& state, DataIO::Chain data, std::uint64_t offset, Unit& unit) {
    unit.offset = offset;
    unit.data = std::move(data);
    unit.headers = std::move(state.headers);
    if (unit.headers.sequence)
        sequence_ = unit.headers.sequence;
    headerCodes_.clear();
}

bool VideoCutter::endAmidPicture() {
    fault_ = "The video ends amid the picture that begins at " + hexadecimal(reader_.start());
    reader_.cutRest();
    return false;
}

} // namespace MXF::Zelm::Essence::MPEG
