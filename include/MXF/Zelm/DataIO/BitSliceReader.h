/// The bits of slices.
#pragma once

#include "MXF/Zelm/DataIO/SliceReader.h"

namespace MXF::Zelm::DataIO {

/// Reads a chain bit by bit, the most significant bit of each byte first, as the headers of essence formats
/// are written. Not more than 64 bits at a time.
///
///     byte      | 7 6 5 4 3 2 1 0 | 7 6 5 4 3 2 1 0 |
///     read(3)     ^^^^^
///     read(7)           ^^^^^^^^^   ^^^
class MXFZELM_EXPORT BitSliceReader : public Platform::Allocated {
public:
    static constexpr unsigned largestRead = 64;

    /// Reads a chain or a slice.
    explicit BitSliceReader(Chain chain);

    /// The next `bits` bits, 0 to 64, as an unsigned number. Throws Exceptions::InvalidValue for more, and
    /// Exceptions::InvalidLength with the offset of the byte when fewer are left; nothing is read then.
    std::uint64_t read(unsigned bits) {
        auto const* const bytes = bytes_.adjacent(8);
        if (bytes == nullptr || bits == 0 || bit_ + bits > largestRead)
            return readSlowly(bits);
        auto const value = ByteCoders::decodeInteger<std::uint64_t>(bytes) << bit_ >> (largestRead - bits);
        pass(bits);
        return value;
    }

    /// One bit. Throws as `read` does.
    bool readFlag() { return read(1) != 0; }

    /// The next `bits` bits, 0 to 64, without moving on; those behind the end are 0. Throws
    /// Exceptions::InvalidValue for more. For codes whose length shows in their first bits.
    std::uint64_t peek(unsigned bits) const;

    /// Passes over exactly so many bits. Throws Exceptions::InvalidLength, and passes over none, when fewer
    /// are left.
    void skip(std::uint64_t bits);

    /// Moves on to the next whole byte, unless it stands at one.
    void align();
    bool aligned() const { return bit_ == 0; }

    /// Bits read so far, and bits left.
    std::uint64_t position() const { return bytes_.absoluteOffset() * 8 + bit_; }
    std::uint64_t remaining() const { return bytes_.remaining() * 8 - bit_; }

private:
    void requireBits(std::uint64_t bits) const;
    std::uint64_t readSlowly(unsigned bits);

    /// Passes over bits that are there.
    void pass(std::uint64_t bits) {
        bytes_.skip(bits / 8 + (bit_ + bits % 8) / 8);
        bit_ = static_cast<unsigned>((bit_ + bits) % 8);
    }

    SliceReader bytes_; // stands at the byte of the next bit
    unsigned bit_ = 0;  // bits of that byte that are passed
};

} // namespace MXF::Zelm::DataIO
