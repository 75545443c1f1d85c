/// A source over bytes in memory, of which it keeps a copy.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"

#include <vector>

namespace MXF::Zelm::DataIO::Memory {

class MXFZELM_EXPORT MemoryDataSource : public RandomAccessDataSource {
public:
    /// Copies `size` bytes from `buffer`, which may be released afterwards. Throws Exceptions::BaseException
    /// with "Type size exceeded" when the size does not fit in 32 bits.
    MemoryDataSource(const unsigned char* buffer, std::uint64_t size);

    /// Takes the bytes over without copying them.
    explicit MemoryDataSource(std::vector<unsigned char> bytes);

    ~MemoryDataSource() override;

    std::uint64_t absoluteOffset() const override;
    bool endOfStream() const override;

    /// Throws "Type size exceeded", and reads nothing, when count or position do not fit in 32 bits.
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override;
    std::uint64_t skip(std::uint64_t size) override;
    std::uint64_t remaining() const override;
    void discard() override;
    std::uint64_t seek(std::uint64_t position) override;

private:
    std::vector<unsigned char> bytes_;
    std::uint64_t position_ = 0;
};

} // namespace MXF::Zelm::DataIO::Memory
