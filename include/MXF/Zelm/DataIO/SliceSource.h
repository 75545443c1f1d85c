/// Sources of slices: what essence is read from.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"

namespace MXF::Zelm::DataIO {

/// A stream of bytes that is read forwards, in slices of the blocks that it was read into. Slices live on
/// without the source. A block stays in memory while one slice refers to it: who keeps a few bytes for long
/// copies them
/// (`Slice::copyOf`). Not locked: one source, one thread.
class MXFZELM_EXPORT SliceSource : public Platform::Allocated {
public:
    virtual ~SliceSource();

    /// Position of the next byte, counted from the start of the stream.
    virtual std::uint64_t absoluteOffset() const = 0;

    /// True when no byte is left.
    virtual bool endOfStream() const = 0;

    /// Appends up to `size` bytes to `chain` and returns how many; fewer only at the end. When it throws, the
    /// chain holds what was read before, and the next read goes on behind it.
    virtual std::uint64_t read(std::uint64_t size, Chain& chain) = 0;

    /// Passes over up to `size` bytes and returns how many; fewer only at the end.
    virtual std::uint64_t skip(std::uint64_t size) = 0;
};

} // namespace MXF::Zelm::DataIO
