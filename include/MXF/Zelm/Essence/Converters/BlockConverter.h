/// What converters of streams with units of constant size have in common.
#pragma once

#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/Essence/PieceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

namespace MXF::Zelm::Essence::Converters {

/// Makes units of one size out of as many of another, a block of them at a time. Bytes behind the last whole
/// unit are left out.
class MXFZELM_EXPORT BlockConverter : public PieceSource {
public:
    ~BlockConverter() override;

    /// Once all is read, the bytes at the end of the source that are no whole unit.
    std::uint64_t leftOver() const { return input_.size(); }

protected:
    /// Reads units of `inSize` bytes from `source` and gives units of `outSize`.
    BlockConverter(Templates::SharedPtr<DataIO::SliceSource> source, std::size_t inSize, std::size_t outSize);

    /// Converts `units` units.
    virtual void convert(const unsigned char* in, std::size_t units, unsigned char* out) = 0;

private:
    bool produce(DataIO::Chain& chain) override;
    bool nothingLeft() const override { return source_->endOfStream(); }

    Templates::SharedPtr<DataIO::SliceSource> source_;
    DataIO::Memory::MemoryBlockFactory blocks_;
    std::size_t inSize_, outSize_;
    DataIO::Chain input_; // read and not converted
};

} // namespace MXF::Zelm::Essence::Converters
