/// A source whose every buffer is a whole number of units.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/Templates/Memory.h"

namespace MXF::Zelm::DataIO {

/// Gives the data of another source in buffers whose sizes are multiples of an alignment: whole sample frames
/// for whoever converts audio, whole sectors for whoever writes past the system's cache. No unit is torn
/// between two reads, and data that ends within a unit is filled up with padding.
///
///     the other source   | unit | unit | un|
///     this one           | unit | unit | un00|      read(buffer, 2 units + 1 byte) gives 2 units
class MXFZELM_EXPORT BufferAlignDataSource : public DataSource {
public:
    /// `alignment` in bytes; 0 counts as 1. `padding` is what fills up the last unit.
    BufferAlignDataSource(Templates::SharedPtr<DataSource> source, std::uint32_t alignment,
                          unsigned char padding = 0);
    ~BufferAlignDataSource() override;

    /// The other source's position, padding counted.
    std::uint64_t absoluteOffset() const override;
    bool endOfStream() const override;

    /// Reads as many whole units as `size` has room for, fewer only at the end. Throws
    /// Exceptions::InvalidLength, and reads nothing, when that is none although `size` is not 0: a caller
    /// that takes 0 for the end must not stop.
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;

    /// Passes over whole units, under the same rules.
    std::uint64_t skip(std::uint64_t size) override;

    std::uint32_t alignment() const { return alignment_; }

    /// Bytes of padding given so far: 0 before the end.
    std::uint64_t paddingBytes() const { return padded_; }

private:
    std::uint64_t wholeUnits(std::uint64_t size) const;
    std::uint64_t missing(std::uint64_t count) const;

    Templates::SharedPtr<DataSource> source_;
    std::uint32_t alignment_;
    unsigned char padding_;
    std::uint64_t padded_ = 0;
};

} // namespace MXF::Zelm::DataIO
