/// A sink that gathers its bytes in memory.
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"

#include <vector>

namespace MXF::Zelm::DataIO::Memory {

class MXFZELM_EXPORT MemoryDataSink : public DataSink {
public:
    MemoryDataSink();

    /// With room reserved for `capacity` bytes. Throws Exceptions::BaseException with "Type size exceeded"
    /// when it does not fit in 32 bits.
    explicit MemoryDataSink(std::uint64_t capacity);

    ~MemoryDataSink() override;

    /// Appends `size` bytes. Throws "Type size exceeded", and appends nothing, when the new total does not
    /// fit in 32 bits.
    void write(const unsigned char* buffer, std::uint64_t size) override;
    std::uint64_t absoluteOffset() const override;

    /// Bytes written so far.
    std::uint64_t serializedSize() const;

    /// The bytes written, in order; valid until the next `write`.
    const unsigned char* rawBuffer() const;

private:
    std::vector<unsigned char> bytes_;
};

} // namespace MXF::Zelm::DataIO::Memory
