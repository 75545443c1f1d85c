#include "MXF/Zelm/DataIO/SliceReader.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace MXF::Zelm::DataIO {

SliceReader::SliceReader(Chain chain) : chain_(std::move(chain)) {}

SliceReader::~SliceReader() = default;

/// Calls `use(slice, offset in it, count)` for the pieces of up to the next `size` bytes and returns their
/// size.
template <class Use>
std::uint64_t SliceReader::forPieces(std::uint64_t size, Use use) const {
    size = std::min(size, remaining());
    std::size_t from = within_;
    auto const* slice = chain_.begin() + slice_;
    for (std::uint64_t done = 0; done < size; ++slice, from = 0) {
        auto const count =
            static_cast<std::size_t>(std::min<std::uint64_t>(slice->size() - from, size - done));
        use(*slice, from, count);
        done += count;
    }
    return size;
}

std::uint64_t SliceReader::advanceFar(std::uint64_t size) {
    size = std::min(size, remaining());
    position_ += size;
    for (std::uint64_t left = size; left != 0;) {
        std::size_t const rest = restOfSlice();
        if (left < rest) {
            within_ += static_cast<std::size_t>(left);
            break;
        }
        left -= rest;
        ++slice_;
        within_ = 0;
    }
    return size;
}

void SliceReader::requireBytes(std::uint64_t size) const {
    if (size > remaining())
        throw Exceptions::at(position_, Exceptions::InvalidLength(std::to_string(size) + " bytes wanted, " +
                                                                  std::to_string(remaining()) + " left"));
}

std::uint64_t SliceReader::peek(unsigned char* buffer, std::uint64_t size) const {
    return forPieces(size, [&buffer](Slice const& slice, std::size_t from, std::size_t count) {
        std::memcpy(buffer, slice.data() + from, count);
        buffer += count;
    });
}

std::uint64_t SliceReader::read(unsigned char* buffer, std::uint64_t size) {
    return advance(peek(buffer, size));
}

std::uint64_t SliceReader::read(std::uint64_t size, Chain& chain) {
    return advance(forPieces(size, [&chain](Slice const& slice, std::size_t from, std::size_t count) {
        chain.append(slice.part(from, count));
    }));
}

std::uint64_t SliceReader::seek(std::uint64_t position) {
    if (position < position_)
        position_ = slice_ = within_ = 0;
    advance(position - position_);
    return position_;
}

void SliceReader::readExactly(unsigned char* buffer, std::uint64_t size) {
    requireBytes(size);
    read(buffer, size);
}

void SliceReader::skipExactly(std::uint64_t size) {
    requireBytes(size);
    advance(size);
}

Chain SliceReader::readChain(std::uint64_t size) {
    requireBytes(size);
    Chain result;
    read(size, result);
    return result;
}

Templates::auto_ptr<Slice> SliceReader::readAligned(std::uint64_t size) {
    auto const chain = readChain(std::min(size, remaining()));
    return std::make_unique<Slice>(chain.contiguous());
}

} // namespace MXF::Zelm::DataIO
