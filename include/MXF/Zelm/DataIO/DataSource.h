/// Byte sources. Sources clamp and report: reading, skipping or seeking past the end does what it can and
/// says how much; a caller that needs exactly n bytes compares and raises its own error. Not locked: one
/// source, one thread.
#pragma once

#include "MXF/Zelm/DataIO/RandomAccessible.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

#include <cstdint>

namespace MXF::Zelm::DataIO {

/// A stream of bytes that is read forwards.
class MXFZELM_EXPORT DataSource : public Platform::Allocated {
public:
    virtual ~DataSource();

    /// Position of the next byte, counted from the start of the stream.
    virtual std::uint64_t absoluteOffset() const = 0;

    /// True when no byte is left.
    virtual bool endOfStream() const = 0;

    /// Reads up to `size` bytes into `buffer` and returns how many; fewer only at the end.
    virtual std::uint64_t read(unsigned char* buffer, std::uint64_t size) = 0;

    /// Passes over up to `size` bytes and returns how many; fewer only at the end.
    virtual std::uint64_t skip(std::uint64_t size) = 0;
};

/// A source that knows where it ends.
class MXFZELM_EXPORT BoundedDataSource : public DataSource {
public:
    ~BoundedDataSource() override;

    std::uint64_t absoluteOffset() const override = 0;
    bool endOfStream() const override = 0;
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override = 0;
    std::uint64_t skip(std::uint64_t size) override = 0;

    /// Bytes left before the end.
    virtual std::uint64_t remaining() const = 0;

    /// Passes over everything that remains.
    virtual void discard() = 0;
};

/// A bounded source that can also seek: a file, a memory block.
class MXFZELM_EXPORT RandomAccessDataSource : public virtual RandomAccessible,
                                              public virtual BoundedDataSource {
public:
    ~RandomAccessDataSource() override;
};

} // namespace MXF::Zelm::DataIO
