/// The next bytes of a source side by side in memory.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

namespace MXF::Zelm::Essence {

/// Looks ahead in a source as far as it is asked to.
class ByteWindow {
public:
    explicit ByteWindow(Templates::SharedPtr<DataIO::SliceSource> source);

    /// Reads on until `count` bytes are there; false when the source ends before. Pointers into the window
    /// are void then.
    bool require(std::size_t count);

    const unsigned char* data() const { return bytes_.data() + passed_; }
    std::size_t size() const { return bytes_.size() - passed_; }

    /// The first `count` bytes of the window, which live on without it.
    DataIO::Slice front(std::size_t count) const { return bytes_.part(passed_, count); }

    /// Passes over `count` bytes of the window.
    void advance(std::size_t count) { passed_ += count; }

    /// Position of the first byte of the window in the source.
    std::uint64_t offset() const { return start_ + passed_; }

private:
    Templates::SharedPtr<DataIO::SliceSource> source_;
    DataIO::Slice bytes_;
    std::size_t passed_ = 0;
    std::uint64_t start_; // of bytes_ in the source
};

} // namespace MXF::Zelm::Essence
