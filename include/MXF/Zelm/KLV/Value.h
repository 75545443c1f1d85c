/// The value of a KLV packet: a bounded view on the source that it stands in. It caches nothing, so that
/// reading one packet's value moves the source for everyone, and it must not outlive the source.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/Platform/Export.h"

#include <vector>

namespace MXF::Zelm::KLV {

class MXFZELM_EXPORT Value : public DataIO::BoundedDataSource {
public:
    /// The next `length` bytes of `source`, which is not owned.
    Value(DataIO::DataSource& source, std::uint64_t length);
    ~Value() override;

    /// The source's own position.
    std::uint64_t absoluteOffset() const override;
    bool endOfStream() const override;

    /// Reads up to `size` bytes, never beyond the value.
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;

    /// Skips up to `size` bytes, never beyond the value.
    std::uint64_t skip(std::uint64_t size) override;

    /// Bytes of the value that the source has not passed yet.
    std::uint64_t remaining() const override;
    void discard() override;

    /// Bytes of the value in all.
    std::uint64_t totalLength() const { return totalLength_; }

    /// Reads exactly `count` bytes. Throws Exceptions::InvalidLength with "Invalid data size in Value", which
    /// carries the bytes that were there, when value or source end before.
    void readValue(unsigned char* buffer, std::uint64_t count);

    /// Everything that remains, in memory that grows with what the source really holds, whatever the length
    /// says. Throws as `readValue` does when the source ends before the value.
    std::vector<unsigned char> readRemaining();

    /// Proves, before anything is allocated, that `count` items of `itemSize` bytes fit in what remains.
    /// Throws Exceptions::InvalidLength with counts and offset when they do not.
    void requireItems(std::uint64_t count, std::uint64_t itemSize) const;

private:
    DataIO::DataSource* source_;
    std::uint64_t totalLength_;
    std::uint64_t start_;
};

} // namespace MXF::Zelm::KLV
