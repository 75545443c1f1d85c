#include "MXF/Zelm/Essence/AVC/NalUnit.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <string>
#include <utility>

namespace MXF::Zelm::Essence::AVC {

namespace {

constexpr std::size_t prefixSize = sizeof DataIO::startCodePrefix;
constexpr unsigned longestLength = 4;

/// A byte stream begins with zeros and a one; as a length that would be a unit of one byte.
unsigned guessLengthSize(DataIO::Chain const& bytes) {
    unsigned char first[4] = {};
    bytes.copyTo(first, sizeof first);
    bool const isStartCode =
        first[0] == 0 && first[1] == 0 && (first[2] == 1 || (first[2] == 0 && first[3] <= 1));
    return isStartCode ? 0 : longestLength;
}

} // namespace

DataIO::Slice NalUnit::bytes(std::size_t limit) const {
    std::vector<unsigned char> bytes(
        static_cast<std::size_t>(std::min<std::uint64_t>(limit, payload.size())));
    payload.copyTo(bytes.data(), bytes.size());
    std::size_t kept = 0, zeros = 0;
    for (auto const byte : bytes) {
        bool const isPrevention = byte == 3 && zeros >= 2;
        zeros = byte == 0 ? zeros + 1 : 0;
        if (!isPrevention)
            bytes[kept++] = byte;
    }
    bytes.resize(kept);
    return DataIO::Slice::adopt(std::move(bytes));
}

NalReader::NalReader(DataIO::Chain bytes, unsigned lengthSize)
    : bytes_(std::move(bytes)), lengthSize_(lengthSize), finder_(DataIO::startCodePrefix) {
    if (lengthSize > longestLength)
        throw Exceptions::InvalidValue("Lengths of " + std::to_string(lengthSize) +
                                       " bytes before the units of AVC, at most 4 are read");
    if (lengthSize_ != 0) {
        start_ = 0;
        return;
    }
    finder_.push(bytes_);
    if (auto const position = finder_.next())
        start_ = *position + prefixSize;
}

NalReader::NalReader(DataIO::Chain const& bytes) : NalReader(bytes, guessLengthSize(bytes)) {}

bool NalReader::nextPrefixed(std::uint64_t& from, std::uint64_t& to) {
    unsigned char field[longestLength] = {};
    if (bytes_.copyTo(field, lengthSize_, *start_) != lengthSize_)
        return false;
    std::uint64_t length = 0;
    for (unsigned i = 0; i < lengthSize_; ++i)
        length = length << 8 | field[i];
    from = *start_ + lengthSize_;
    to = from + std::min(length, bytes_.size() - from);
    start_ = to;
    return true;
}

/// From the header byte to the next start code, zeros before it included.
bool NalReader::nextRange(std::uint64_t& from, std::uint64_t& to) {
    if (!start_)
        return false;
    if (lengthSize_ != 0)
        return nextPrefixed(from, to);
    from = *start_;
    auto const position = finder_.next();
    to = position ? std::max(*position, from) : bytes_.size();
    start_ = position ? std::optional(*position + prefixSize) : std::nullopt;
    return true;
}

std::optional<NalUnit> NalReader::unit(std::uint64_t from, std::uint64_t to) const {
    unsigned char header = 0;
    if (from >= to || bytes_.copyTo(&header, 1, from) != 1)
        return std::nullopt;
    NalUnit unit;
    unit.type = static_cast<NalType>(header & 0x1F);
    unit.referenceIDC = static_cast<std::uint8_t>(header >> 5 & 3);
    unit.offset = from;
    unit.payload = bytes_.part(from + 1, to - from - 1);
    return unit;
}

std::optional<NalUnit> NalReader::next() {
    std::uint64_t from = 0, to = 0;
    while (nextRange(from, to))
        if (auto found = unit(from, to))
            return found;
    return std::nullopt;
}

} // namespace MXF::Zelm::Essence::AVC
