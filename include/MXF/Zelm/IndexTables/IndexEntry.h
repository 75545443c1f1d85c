/// One row of an index table segment's index entry array: where an edit unit begins in the essence container
/// and how it is decoded (SMPTE 377M). Entries stand in stored order.
///
///     1        temporal offset     from the display position with this entry's number to the stored position
///     1        key frame offset    from this edit unit to the one where decoding must begin, 0 or less
///     1        flags
///     8        stream offset       from the first byte of the essence container
///     4 NSL    slice offsets       from the edit unit's first byte to its slices 1 to NSL
///     8 NPE    position table      temporal offsets of elements in edit units, as rationals
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/KLV/Value.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <vector>

namespace MXF::Zelm::IndexTables {

class MXFZELM_EXPORT IndexEntry : public Platform::Allocated {
public:
    /// Bytes without slice offsets and position table.
    static constexpr std::uint32_t fixedSize = 11;

    /// Bytes of an entry with `sliceCount` (NSL) slice offsets and `posTableCount` (NPE) position table
    /// entries.
    static constexpr std::uint32_t wireSize(std::uint8_t sliceCount, std::uint8_t posTableCount) {
        return fixedSize + 4u * sliceCount + 8u * posTableCount;
    }

    /// The bits of `flags`.
    enum Flag : std::uint8_t {
        RandomAccess = 0x80,
        SequenceHeader = 0x40,
        ForwardPrediction = 0x20,
        BackwardPrediction = 0x10,
        OffsetOutOfRange = 0x08 // an offset of this entry does not fit or leads out of the table
    };

    IndexEntry(std::int8_t temporalOffset, std::int8_t keyFrameOffset, bool randomAccess, bool sequenceHeader,
               bool forwardPrediction, bool backwardPrediction, std::uint64_t streamOffset);

    /// All but the stream offset is 0.
    explicit IndexEntry(std::uint64_t streamOffset);

    /// Reads `wireSize(sliceCount, posTableCount)` bytes. Throws Exceptions::InvalidLength when fewer are
    /// left.
    IndexEntry(KLV::Value& value, std::uint8_t sliceCount, std::uint8_t posTableCount);

    /// Decodes the `wireSize(sliceCount, posTableCount)` bytes at `bytes`.
    IndexEntry(const unsigned char* bytes, std::uint8_t sliceCount, std::uint8_t posTableCount);

    IndexEntry(IndexEntry const&) = default;
    IndexEntry(IndexEntry&&) noexcept = default;
    IndexEntry& operator=(IndexEntry const&) = default;
    IndexEntry& operator=(IndexEntry&&) noexcept = default;
    virtual ~IndexEntry();

    /// In edit units.
    std::int8_t temporalOffset() const { return temporalOffset_; }
    void temporalOffset(std::int8_t offset) { temporalOffset_ = offset; }

    /// In edit units.
    std::int8_t keyFrameOffset() const { return keyFrameOffset_; }
    void keyFrameOffset(std::int8_t offset) { keyFrameOffset_ = offset; }

    std::uint8_t flags() const { return flags_; }
    void flags(std::uint8_t flags) { flags_ = flags; }

    /// Decoding may begin here.
    bool randomAccess() const { return flag(RandomAccess); }
    void randomAccess(bool set) { flag(RandomAccess, set); }

    /// The edit unit has a sequence header.
    bool sequenceHeader() const { return flag(SequenceHeader); }
    void sequenceHeader(bool set) { flag(SequenceHeader, set); }

    /// Predicted from an earlier picture.
    bool forwardPrediction() const { return flag(ForwardPrediction); }
    void forwardPrediction(bool set) { flag(ForwardPrediction, set); }

    /// Predicted from a later picture.
    bool backwardPrediction() const { return flag(BackwardPrediction); }
    void backwardPrediction(bool set) { flag(BackwardPrediction, set); }

    /// In bytes.
    std::uint64_t streamOffset() const { return streamOffset_; }
    void streamOffset(std::uint64_t offset) { streamOffset_ = offset; }

    std::size_t sliceOffsetCount() const { return sliceOffsets_.size(); }

    /// In bytes; index 0 is that of slice 1. This and the following throw Exceptions::BaseException with
    /// "Trying to access a element beyond the end of data." for an index out of range.
    std::uint32_t sliceOffset(std::size_t index) const;
    void addSliceOffset(std::size_t index, std::uint32_t offset);
    void removeSliceOffset(std::size_t index);

    std::size_t posTableCount() const { return posTable_.size(); }
    Templates::Rational<int> posTable(std::size_t index) const;
    void addPosTable(std::size_t index, Templates::Rational<int> const& offset);
    void removePosTable(std::size_t index);

    virtual void serialize(DataIO::DataSink& sink) const;
    virtual std::uint64_t serializedSize() const;

private:
    bool flag(Flag bit) const { return (flags_ & bit) != 0; }
    void flag(Flag bit, bool set) { flags_ = static_cast<std::uint8_t>(set ? flags_ | bit : flags_ & ~bit); }

    std::int8_t temporalOffset_ = 0;
    std::int8_t keyFrameOffset_ = 0;
    std::uint8_t flags_ = 0;
    std::uint64_t streamOffset_ = 0;
    std::vector<std::uint32_t> sliceOffsets_;
    std::vector<Templates::Rational<int>> posTable_;
};

} // namespace MXF::Zelm::IndexTables
