/// Fill items in chains (SMPTE 377M, KLV fill).
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"

namespace MXF::Zelm::Utils {

/// Makes fill of any size out of one block of zeros, to which its slices refer again and again.
class MXFZELM_EXPORT Padding : public Platform::Allocated {
public:
    /// With a block of `blockSize` zero bytes, at least 1.
    explicit Padding(std::size_t blockSize = std::size_t{64} << 10);

    /// Appends `size` zero bytes.
    void appendZeros(DataIO::Chain& chain, std::uint64_t size) const;

    /// Appends a fill item of `size` bytes in all, key and length included, with a length of `berLength`
    /// bytes (1 to 9). Throws Exceptions::InvalidLength, and appends nothing, when it is smaller than key and
    /// length, or its length does not fit in its bytes.
    void appendFillItem(DataIO::Chain& chain, std::uint64_t size, unsigned char berLength = 4) const;

private:
    DataIO::Slice zeros_;
};

} // namespace MXF::Zelm::Utils
