/// Fields of a header that are shorter than a byte, or stand across bytes.
#pragma once

#include "MXF/Zelm/DataIO/BitSliceReader.h"

namespace MXF::Zelm::Essence::MPEG {

/// Up to 64 bits that are read at once, and taken apart from the front. Taking more of them than were read
/// gives zeros.
class BitFields {
public:
    /// Throws Exceptions::InvalidLength when fewer than `count` bits, 1 to 64, are left.
    BitFields(DataIO::BitSliceReader& bits, unsigned count) : rest_(bits.read(count) << (size - count)) {}

    /// The next `count` bits, 1 to 64.
    template <class Integer>
    Integer take(unsigned count) {
        auto const value = static_cast<Integer>(rest_ >> (size - count));
        pass(count);
        return value;
    }

    bool takeFlag() { return take<unsigned>(1) != 0; }

    void pass(unsigned count) { rest_ = count < size ? rest_ << count : 0; }

private:
    static constexpr unsigned size = 64;

    std::uint64_t rest_;
};

} // namespace MXF::Zelm::Essence::MPEG
