/// Makes the index table of essence while it is wrapped (SMPTE 377M).
///
///     IndexTableBuilder builder(rate);
///     for (each edit unit, in stored order)
///         builder.appendIndexEntry(offset, index);
///     builder.finalize(count);
///     for (auto& segment : builder.takeSegments()) …
///
/// An entry is packed as it comes and becomes final once the picture that is shown at its place has been
/// stored, since the TemporalOffset of an entry leads from the place of showing to the place of storage:
///
///     stored           I0 P3 B1 B2 …      what comes: display - stored    0 +2 -1 -1
///     TemporalOffset    0 +1 +1 -2 …      what is written, by place of showing
#pragma once

#include "MXF/Zelm/GenericContainer/EditUnit.h"
#include "MXF/Zelm/GenericContainer/Source.h"

#include <array>
#include <optional>
#include <span>
#include <utility>

namespace MXF::Zelm::GenericContainer::Multiplexer {

class MXFZELM_EXPORT IndexTableBuilder : public Platform::Allocated {
public:
    using SegmentPtr = Source::SegmentPtr;

    /// `editRate` in edit units a second.
    explicit IndexTableBuilder(Templates::Rational<int> const& editRate);
    IndexTableBuilder(IndexTableBuilder const&) = delete;
    IndexTableBuilder& operator=(IndexTableBuilder const&) = delete;
    virtual ~IndexTableBuilder();

    /// Every edit unit has `bytes` bytes: there is one segment and no entries. To be called before the first
    /// entry.
    void editUnitByteCount(std::uint32_t bytes) { editUnitByteCount_ = bytes; }

    /// The edit units are stored in another order than shown. To be called before the first entry.
    void reordered(bool isReordered) { isReordered_ = isReordered; }

    /// Slice offsets (NSL) and position table entries (NPE) of each index entry.
    std::uint8_t sliceCount() const { return sliceCount_; }
    std::uint8_t posTableCount() const { return 0; }

    /// The next edit unit, in stored order: its bytes begin `streamOffset` bytes behind the start of the
    /// container, its slices 1 to NSL at `sliceOffsets` from there. Offsets that an entry cannot hold, or
    /// that lead out of the table, set the entry's flag OffsetOutOfRange.
    void appendIndexEntry(std::uint64_t streamOffset, EditUnitIndex const& index,
                          std::span<std::uint32_t const> sliceOffsets = {});

    /// No edit unit follows; there were `duration`.
    void finalize(std::int64_t duration);

    /// The segments made of final entries, as Source::takeIndexSegments gives them.
    Templates::vector<SegmentPtr> takeSegments();

protected:
    void addDeltaEntry(IndexTables::DeltaEntry const& entry) { deltas_.append(entry); }
    void clearDeltaEntries() { deltas_ = {}; }
    void sliceCount(std::uint8_t count) { sliceCount_ = count; }

private:
    /// Display positions whose picture may have come while their entries are not final: an Int8 reaches 128
    /// entries back and 127 ahead.
    static constexpr std::size_t window = 256;

    std::uint32_t entrySize() const {
        return IndexTables::IndexEntry::wireSize(sliceCount_, posTableCount());
    }
    std::size_t mostEntries() const { return (0xFFFF - 8) / entrySize(); }
    std::optional<std::int8_t>& shownAt(std::int64_t position) {
        return shown_[static_cast<std::uint64_t>(position) % window];
    }
    unsigned char* entryAt(std::int64_t position) {
        return bytes_.data() + static_cast<std::size_t>(position - first_) * entrySize();
    }
    void noteShown(std::int32_t temporalOffset);
    void makeFinal(std::int64_t position);
    void finalizeComing();
    bool isKeyFrame(std::size_t entry) const;
    std::size_t splitPoint() const;
    void finalizePreviousSegment(std::size_t entries);
    void finalizeFullSegments();
    SegmentPtr makeSegment(std::int64_t start, std::int64_t duration) const;
    void takeConstantSegment();

    Templates::Rational<int> editRate_;
    std::uint32_t editUnitByteCount_ = 0;
    bool isReordered_ = false;
    std::uint8_t sliceCount_ = 0;
    IndexTables::DeltaEntryArray deltas_;

    std::vector<unsigned char> bytes_; // entries first_ to next_ - 1, as they are written
    std::int64_t first_ = 0;           // the first entry that is in no segment yet
    std::int64_t final_ = 0;           // the first entry that is not final
    std::int64_t next_ = 0;            // the next entry to come
    std::array<std::optional<std::int8_t>, window> shown_;

    std::optional<std::int64_t> duration_; // known when all is final
    bool isConstantGiven_ = false;
    Templates::vector<SegmentPtr> ready_;
};

} // namespace MXF::Zelm::GenericContainer::Multiplexer
