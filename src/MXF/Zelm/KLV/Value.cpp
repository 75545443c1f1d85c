#include "MXF/Zelm/KLV/Value.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <limits>
#include <string>

namespace MXF::Zelm::KLV {

namespace {

/// Bytes that `readRemaining` asks for at first; it doubles as long as the source delivers.
constexpr std::uint64_t firstPiece = 64 * 1024;

} // namespace

Value::Value(DataIO::DataSource& source, std::uint64_t length)
    : source_(&source), totalLength_(length), start_(source.absoluteOffset()) {}

Value::~Value() = default;

std::uint64_t Value::absoluteOffset() const { return source_->absoluteOffset(); }

bool Value::endOfStream() const { return remaining() == 0; }

std::uint64_t Value::read(unsigned char* buffer, std::uint64_t size) {
    return source_->read(buffer, std::min(size, remaining()));
}

std::uint64_t Value::skip(std::uint64_t size) { return source_->skip(std::min(size, remaining())); }

std::uint64_t Value::remaining() const {
    std::uint64_t const offset = source_->absoluteOffset();
    if (offset < start_) // the source was moved back before the value
        return totalLength_ +
               std::min(start_ - offset, std::numeric_limits<std::uint64_t>::max() - totalLength_);
    std::uint64_t const passed = offset - start_;
    return passed < totalLength_ ? totalLength_ - passed : 0;
}

void Value::discard() { skip(remaining()); }

void Value::readValue(unsigned char* buffer, std::uint64_t count) {
    std::uint64_t done = 0;
    while (done < count) {
        std::uint64_t const got = read(buffer + done, count - done);
        if (got == 0)
            throw Exceptions::at(absoluteOffset(), Exceptions::InvalidLength("Invalid data size in Value",
                                                                             {buffer, buffer + done}));
        done += got;
    }
}

std::vector<unsigned char> Value::readRemaining() {
    std::vector<unsigned char> bytes;
    for (std::uint64_t left = remaining(); left != 0; left = remaining()) {
        auto const piece = Templates::safeCast<std::size_t>(
            std::min(left, std::max<std::uint64_t>(firstPiece, bytes.size())));
        std::size_t const before = bytes.size();
        bytes.resize(before + piece);
        auto const got = static_cast<std::size_t>(read(bytes.data() + before, piece));
        bytes.resize(before + got);
        if (got == 0)
            throw Exceptions::at(absoluteOffset(),
                                 Exceptions::InvalidLength("Invalid data size in Value", std::move(bytes)));
    }
    return bytes;
}

void Value::requireItems(std::uint64_t count, std::uint64_t itemSize) const {
    std::uint64_t const left = remaining();
    if (count == 0 || (itemSize != 0 && count <= left / itemSize))
        return;
    std::string const need = itemSize == 0 ? "have no size"
                             : count > std::numeric_limits<std::uint64_t>::max() / itemSize
                                 ? "need more than any file holds"
                                 : "need " + std::to_string(count * itemSize);
    throw Exceptions::at(absoluteOffset(),
                         Exceptions::InvalidLength(std::to_string(count) + " entries of " +
                                                   std::to_string(itemSize) + " bytes " + need + ", " +
                                                   std::to_string(left) + " left"));
}

} // namespace MXF::Zelm::KLV
