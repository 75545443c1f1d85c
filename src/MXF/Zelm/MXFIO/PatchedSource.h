/// A file as it is to become: the first bytes of another source, some of them replaced, and new bytes behind.
///
///     source    |----------------------------|~~~~~~~ (left out)
///     patches        |--|         |-----|
///     tail                                   |=========|
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/MXFIO/MetadataArea.h"

#include <map>

namespace MXF::Zelm::MXFIO {

class PatchedSource : public DataIO::RandomAccessDataSource {
public:
    /// Patches by their offsets; they do not overlap.
    using Patches = std::map<std::uint64_t, Bytes>;

    /// The first `length` bytes of `source`, which is not owned and must have as many.
    PatchedSource(DataIO::RandomAccessDataSource& source, std::uint64_t length);

    /// Puts `bytes` over those at `offset`; all within the first `length`.
    void patch(std::uint64_t offset, Bytes bytes);

    /// Has `tail` follow the first `length` bytes, in place of what followed them before; patches of that are
    /// forgotten.
    void finish(std::uint64_t length, Bytes tail);

    Patches const& patches() const { return patches_; }
    std::uint64_t length() const { return length_; }
    Bytes const& tail() const { return tail_; }
    std::uint64_t size() const { return length_ + tail_.size(); }

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return position_ >= size(); }
    std::uint64_t remaining() const override { return size() - position_; }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;
    std::uint64_t skip(std::uint64_t size) override;
    std::uint64_t seek(std::uint64_t position) override;
    void discard() override { position_ = size(); }

private:
    std::uint64_t readSource(unsigned char* buffer, std::uint64_t size);

    DataIO::RandomAccessDataSource& source_;
    std::uint64_t length_;
    Patches patches_;
    Bytes tail_;
    std::uint64_t position_ = 0;
};

} // namespace MXF::Zelm::MXFIO
