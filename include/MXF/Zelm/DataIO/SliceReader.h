/// The bytes of slices as numbers and fields.
#pragma once

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/DataIO/DataSource.h"

namespace MXF::Zelm::DataIO {

/// Reads a chain from its front, wherever it is cut. It is a source like any other, over which packets and
/// values can be read, and gives integers, slices and chains besides. Functions that give up to so many bytes
/// clamp as every source does; their partners whose names say exactly what they give throw
/// Exceptions::InvalidLength, with the offset, when there is less, and then read nothing.
///
///     up to      | exactly
///     -----------+-----------------------------------
///     read       | readExactly, readInteger
///     skip       | skipExactly
///     peek       | peekInteger
///     read chain | readChain
///
/// The reader has a share in the slices. What it gives lives on without it.
class MXFZELM_EXPORT SliceReader : public RandomAccessDataSource {
public:
    /// Reads a chain or a slice.
    explicit SliceReader(Chain chain);
    ~SliceReader() override;

    /// Bytes read so far.
    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return position_ == chain_.size(); }
    std::uint64_t remaining() const override { return chain_.size() - position_; }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;
    std::uint64_t skip(std::uint64_t size) override { return advance(size); }
    void discard() override { skip(remaining()); }
    std::uint64_t seek(std::uint64_t position) override;

    /// Appends up to `size` bytes to `chain`, without copying them, and returns how many.
    std::uint64_t read(std::uint64_t size, Chain& chain);

    /// Copies up to `size` bytes without moving on, and returns how many.
    std::uint64_t peek(unsigned char* buffer, std::uint64_t size) const;

    /// The next `size` bytes where they stand in memory; null when they do not stand side by side, or are not
    /// there. Valid as long as the reader.
    const unsigned char* adjacent(std::uint64_t size) const {
        return size != 0 && size <= restOfSlice() ? chain_.slices()[slice_].data() + within_ : nullptr;
    }

    void readExactly(unsigned char* buffer, std::uint64_t size);
    void skipExactly(std::uint64_t size);
    Chain readChain(std::uint64_t size);

    /// Up to `size` bytes side by side: copied only where a border between slices is in between. Throws
    /// Exceptions::BaseException with "Type size exceeded" when they do not fit in memory.
    Templates::auto_ptr<Slice> readAligned(std::uint64_t size);

    /// A big-endian integer of `bytes` bytes: all that the type has, or fewer for one of 24 bits, say, which
    /// is unsigned.
    template <class Integer, std::size_t bytes = sizeof(Integer)>
    Integer readInteger() {
        Integer const value = peekInteger<Integer, bytes>();
        advance(bytes);
        return value;
    }

    /// The same without moving on.
    template <class Integer, std::size_t bytes = sizeof(Integer)>
    Integer peekInteger() const {
        static_assert(bytes >= 1 && bytes <= sizeof(Integer));
        if (auto const* const place = adjacent(bytes); place != nullptr && bytes == sizeof(Integer))
            return ByteCoders::decodeInteger<Integer>(place);
        unsigned char buffer[sizeof(Integer)] = {};
        requireBytes(bytes);
        peek(buffer + sizeof(Integer) - bytes, bytes);
        return ByteCoders::decodeInteger<Integer>(buffer);
    }

private:
    void requireBytes(std::uint64_t size) const;
    std::size_t restOfSlice() const {
        return slice_ < chain_.slices().size() ? chain_.slices()[slice_].size() - within_ : 0;
    }

    /// Moves on by up to `size` bytes and returns by how many.
    std::uint64_t advance(std::uint64_t size) {
        if (size >= restOfSlice())
            return advanceFar(size);
        within_ += static_cast<std::size_t>(size);
        position_ += size;
        return size;
    }
    std::uint64_t advanceFar(std::uint64_t size);

    template <class Use>
    std::uint64_t forPieces(std::uint64_t size, Use use) const;

    Chain chain_;
    std::uint64_t position_ = 0;
    std::size_t slice_ = 0;  // the slice that the next byte stands in
    std::size_t within_ = 0; // bytes of it that are passed
};

} // namespace MXF::Zelm::DataIO
