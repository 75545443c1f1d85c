#include "MXF/Zelm/Essence/StartCodeReader.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::Essence {

namespace {

/// Read at once. More costs memory, less system calls.
constexpr std::uint64_t readSize = std::uint64_t{256} << 10;

/// 0 behind the end.
std::uint8_t byteAt(DataIO::Chain const& chain, std::uint64_t offset) {
    for (auto const& slice : chain) {
        if (offset < slice.size())
            return slice.data()[static_cast<std::size_t>(offset)];
        offset -= slice.size();
    }
    return 0;
}

} // namespace

StartCodeReader::StartCodeReader(Templates::SharedPtr<DataIO::SliceSource> source, std::string essence)
    : source_(std::move(source)),
      essence_(std::move(essence)),
      finder_(DataIO::startCodePrefix, source_->absoluteOffset()),
      start_(source_->absoluteOffset()) {}

bool StartCodeReader::readMore() {
    DataIO::Chain piece;
    if (source_->read(readSize, piece) == 0)
        return false;
    finder_.push(piece);
    bytes_.append(std::move(piece));
    return true;
}

/// Reads until the byte before `end` is there; false when the stream ends before.
bool StartCodeReader::require(std::uint64_t end) {
    while (start_ + bytes_.size() < end)
        if (!readMore())
            return false;
    return true;
}

/// Absent where the stream ends behind the prefix.
std::optional<StartCodeReader::Code> StartCodeReader::codeAt(std::uint64_t position) {
    if (!require(position + codeSize))
        return std::nullopt;
    return Code{position, byteAt(bytes_, position - start_ + codeSize - 1)};
}

std::optional<StartCodeReader::Code> StartCodeReader::next() {
    for (;;) {
        if (auto const position = finder_.next())
            return codeAt(*position);
        if (bytes_.size() > largestUnit)
            throw Exceptions::at(start_,
                                 Exceptions::InvalidFormat("No picture of " + essence_ + " ends within " +
                                                           std::to_string(largestUnit) + " bytes"));
        if (!readMore())
            return std::nullopt;
    }
}

std::uint64_t StartCodeReader::zeroBefore(std::uint64_t position) const {
    unsigned char before = 1;
    if (position > start_)
        bytes_.copyTo(&before, 1, position - 1 - start_);
    return before == 0 ? position - 1 : position;
}

std::optional<StartCodeReader::Code> StartCodeReader::find(bool (*begins)(std::uint8_t code),
                                                           std::uint64_t maximumToSkip, bool takesZero) {
    std::uint64_t const from = start_;
    while (finder_.searchedTo() - from <= maximumToSkip) {
        if (auto const position = finder_.next()) {
            auto const code = codeAt(*position);
            if (!code)
                return std::nullopt;
            if (!begins(code->value))
                continue;
            cut(takesZero ? zeroBefore(*position) : *position);
            return start_ - from <= maximumToSkip ? code : std::nullopt;
        }
        if (finder_.searchedTo() > start_)
            cut(finder_.searchedTo() - 1); // which may be the zero
        if (!readMore())
            return std::nullopt;
    }
    return std::nullopt;
}

DataIO::Chain StartCodeReader::read(std::uint64_t position, std::uint64_t size) {
    require(position + size);
    std::uint64_t const from = std::min(position - start_, bytes_.size());
    return bytes_.part(from, std::min(size, bytes_.size() - from));
}

DataIO::Chain StartCodeReader::cut(std::uint64_t end) {
    std::uint64_t const size = std::min(end - start_, bytes_.size());
    start_ += size;
    return bytes_.splitFront(size);
}

} // namespace MXF::Zelm::Essence
