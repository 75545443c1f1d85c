/// One row of an index table segment's delta entry array: where an element begins inside each edit unit
/// (SMPTE 377M).
///
///     1    PosTableIndex    -1 temporally reordered, 0 no offset, n the edit unit's position table entry n
///     1    slice            0 to the segment's SliceCount
///     4    element delta    bytes from the start of the slice
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/KLV/Value.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

namespace MXF::Zelm::IndexTables {

class MXFZELM_EXPORT DeltaEntry : public Platform::Allocated {
public:
    static constexpr std::uint32_t wireSize = 6;

    /// All zero: the first element of an edit unit.
    DeltaEntry() = default;
    DeltaEntry(std::int8_t posTableIndex, std::uint8_t slice, std::uint32_t elementDelta);

    /// Reads 6 bytes. Throws Exceptions::InvalidLength when fewer are left.
    explicit DeltaEntry(KLV::Value& value);

    /// Decodes the `wireSize` bytes at `bytes`.
    explicit DeltaEntry(const unsigned char* bytes);

    DeltaEntry(DeltaEntry const&) = default;
    DeltaEntry& operator=(DeltaEntry const&) = default;
    virtual ~DeltaEntry();

    std::int8_t posTableIndex() const { return posTableIndex_; }
    void posTableIndex(std::int8_t index) { posTableIndex_ = index; }

    std::uint8_t slice() const { return slice_; }
    void slice(std::uint8_t slice) { slice_ = slice; }

    /// Bytes from the start of the slice to the element's key.
    std::uint32_t elementDelta() const { return elementDelta_; }
    void elementDelta(std::uint32_t delta) { elementDelta_ = delta; }

    /// False for a PosTableIndex below -1, which has no meaning.
    bool isValid() const { return posTableIndex_ >= -1; }

    virtual void serialize(DataIO::DataSink& sink) const;
    virtual std::uint64_t serializedSize() const;

    friend bool operator==(DeltaEntry const& a, DeltaEntry const& b) {
        return a.posTableIndex_ == b.posTableIndex_ && a.slice_ == b.slice_ &&
               a.elementDelta_ == b.elementDelta_;
    }

private:
    std::int8_t posTableIndex_ = 0;
    std::uint8_t slice_ = 0;
    std::uint32_t elementDelta_ = 0;
};

} // namespace MXF::Zelm::IndexTables
