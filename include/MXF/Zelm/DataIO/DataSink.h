/// Byte sinks. Not locked: one sink, one thread.
#pragma once

#include "MXF/Zelm/DataIO/RandomAccessible.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

#include <cstdint>

namespace MXF::Zelm::DataIO {

/// A stream of bytes that is written forwards.
class MXFZELM_EXPORT DataSink : public Platform::Allocated {
public:
    virtual ~DataSink();

    /// Writes all `size` bytes, or throws.
    virtual void write(const unsigned char* buffer, std::uint64_t size) = 0;

    /// Bytes written so far; in a sink that can seek, the position of the next byte.
    virtual std::uint64_t absoluteOffset() const = 0;
};

/// A sink that can also seek: a file.
class MXFZELM_EXPORT RandomAccessDataSink : public virtual RandomAccessible, public virtual DataSink {
public:
    ~RandomAccessDataSink() override;
};

} // namespace MXF::Zelm::DataIO
