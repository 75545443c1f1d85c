/// One index table segment: the local set of SMPTE 377M that tells where the edit units of a range begin in
/// an essence container.
///
///     key     16    06 0E 2B 34 02 53 01 01 0D 01 02 01 01 10 01 00
///     length        BER
///     value         items: tag (2), length (2), value, in the order of the properties below
///
/// Where every edit unit has the same number of bytes, EditUnitByteCount gives it and there are no entries.
/// Otherwise the index entry array has one entry for each edit unit. An item cannot have more than 65535
/// bytes, so that long tables have several segments.
#pragma once

#include "MXF/Zelm/IndexTables/DeltaEntryArray.h"
#include "MXF/Zelm/IndexTables/IndexEntryArray.h"
#include "MXF/Zelm/KLV/Packet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/LocalTag.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/UUID.h"

namespace MXF::Zelm::IndexTables {

class IndexTableSegment;

/// Who is told of the changes of a segment.
class MXFZELM_EXPORT IndexTableSegmentListener {
public:
    virtual ~IndexTableSegmentListener();

    /// `segment` was changed; what it writes may have another size now.
    virtual void segmentChanged(IndexTableSegment const& segment) = 0;
};

/// Optional properties are null while they are absent. A setter that throws changes nothing.
class MXFZELM_EXPORT IndexTableSegment : public Platform::Allocated {
public:
    /// An item whose tag is none of a segment's.
    class UnknownElement {
    public:
        UnknownElement(Types::LocalTag const& tag, std::vector<unsigned char> bytes)
            : localTag_(tag), bytes_(std::move(bytes)) {}

        Types::LocalTag const& localTag() const { return localTag_; }

        /// The item's value.
        std::vector<unsigned char> const& bytes() const { return bytes_; }

    private:
        Types::LocalTag localTag_;
        std::vector<unsigned char> bytes_;
    };

    /// The key that is written.
    static KLV::Key const& key();

    /// True for the key of a packet that is a segment: the one that is written, or the same with byte 14 as
    /// 00.
    static bool isSegmentKey(KLV::Key const& key);

    /// An empty segment for writing: a null instance UID, the edit rate 0/0, start, duration and body SID 0.
    /// `berLength` (1 to 9) is the number of bytes of its length field.
    explicit IndexTableSegment(unsigned char berLength);

    /// Reads a segment. The counts of slices and position tables may stand behind the index entry array, and
    /// any property may be missing: it then has the value that it has in an empty segment. An array without
    /// entries may give them any size; one that is longer than an item's length can say is read where that
    /// has the low 16 bits of the true length and the set has as many bytes. `listener` is told of later
    /// changes; null for none, not owned. Throws Exceptions::InvalidKey with "Trying to load a Index Segment
    /// with an invalid key", Exceptions::InvalidIndexSegment with "Invalid MXF Index Segment set (local tag
    /// should be 2 bytes and length field 2 bytes.)", and Exceptions::InvalidLength, with the bytes at fault,
    /// where an item does not have the size of its type or an array that of its entries.
    IndexTableSegment(KLV::Packet& packet, IndexTableSegmentListener* listener);

    /// The copy has no listener.
    IndexTableSegment(IndexTableSegment const& other);
    IndexTableSegment& operator=(IndexTableSegment const&) = delete;
    virtual ~IndexTableSegment();

    /// Null for none. Not owned.
    void listener(IndexTableSegmentListener* listener) { listener_ = listener; }

    /// Bytes of the length field, 1 to 9: as it was read, or given to the constructor.
    unsigned char berLength() const;

    Types::UUID const& instanceUID() const;
    void instanceUID(Types::UUID const& uid);

    /// Edit units a second. Some writers leave it 0/0.
    Types::Rational const& indexEditRate() const;
    void indexEditRate(Types::Rational const& rate);

    /// The first edit unit of the segment.
    Types::Position const& indexStartPosition() const;
    void indexStartPosition(Types::Position const& position);

    /// Number of edit units. At a constant rate 0 stands for all from the start position on.
    Types::Length const& indexDuration() const;
    void indexDuration(Types::Length const& duration);

    /// Bytes of each edit unit; 0 or absent when they differ. Optional.
    Types::UInt32 const* editUnitByteCount() const;
    void editUnitByteCount(Types::UInt32 const& count);
    void resetEditUnitByteCount();

    /// Names the index table. Optional.
    Types::UInt32 const* indexSID() const;
    void indexSID(Types::UInt32 const& sid);
    void resetIndexSID();

    /// Names the essence container.
    Types::UInt32 const& bodySID() const;
    void bodySID(Types::UInt32 const& sid);

    /// Number of slices minus 1 (NSL). Optional. Throws Exceptions::BaseException with "IndexEntryArray still
    /// contains value. Please empty IndexEntryArray before setting sliceCount".
    Types::UInt8 const* sliceCount() const;
    void sliceCount(Types::UInt8 const& count);

    /// Number of position table entries in each index entry (NPE). Optional. Throws Exceptions::BaseException
    /// with "IndexEntryArray still contains value. Please empty IndexEntryArray before setting
    /// posTableCount".
    Types::UInt8 const* posTableCount() const;
    void posTableCount(Types::UInt8 const& count);

    /// The elements of an edit unit. Optional.
    DeltaEntryArray const* deltaEntryArray() const;
    void deltaEntryArray(DeltaEntryArray const& entries);
    void resetDeltaEntryArray();

    /// The edit units from the start position on. Optional. The setter throws as `addIndexEntry` does.
    IndexEntryArray const* indexEntryArray() const;
    void indexEntryArray(IndexEntryArray const& entries);
    void resetIndexEntryArray();

    /// Number of entries, 0 without an array.
    std::size_t deltaEntryCount() const;
    std::size_t indexEntryCount() const;

    /// Entry `index`, decoded. Throws Exceptions::BaseException with "IndexTableSegment::deltaEntry
    /// IndexOutOfBounds" or "IndexTableSegment::indexEntry IndexOutOfBounds".
    DeltaEntry deltaEntry(std::size_t index) const;
    IndexEntry indexEntry(std::size_t index) const;

    /// Puts an entry before entry `position`; makes the array when there is none. Throws as
    /// `DeltaEntryArray::insertAt` does.
    void addDeltaEntry(std::size_t position, DeltaEntry const& entry);

    /// Throws Exceptions::BaseException with "Trying to remove element from empty deltaEntryArray." when
    /// there is no array, and as `EntryArray::remove` does.
    void removeDeltaEntry(std::size_t position);

    /// Puts an entry before entry `position`; makes the array when there is none. Throws as
    /// `IndexEntryArray::insertAt` does and, when the array is to be made for an entry with other counts than
    /// the segment's, Exceptions::BaseException with "Error: NSL in segment has value: … while IndexEntry has
    /// NSL: …Error: NPE in segment has value: … while IndexEntry has NPE: …".
    void addIndexEntry(std::size_t position, IndexEntry const& entry);

    /// Throws Exceptions::BaseException with "Trying to remove element from empty indexEntryArray." when
    /// there is no array, and as `EntryArray::remove` does.
    void removeIndexEntry(std::size_t position);

    /// The items that were read and not understood, in their order. They are not written.
    Templates::vector<UnknownElement> const& unknownElements() const;

    /// Writes the segment. Throws Exceptions::InvalidElementLength when an array has more than 65535 bytes or
    /// the length of all items does not fit in the length field.
    void serialize(DataIO::DataSink& sink) const;

    /// Bytes that `serialize` writes.
    virtual std::uint64_t serializedSize() const;

private:
    struct State;
    void readItem(KLV::Value& value);
    void readValue(Types::LocalTag const& tag, KLV::Value& item);
    void readLongArray(Types::LocalTag const& tag, std::uint16_t declared, KLV::Value& set);
    void settleEntries();
    void requireCounts(std::size_t sliceOffsets, std::size_t posTables) const;
    void changed();

    /// Number of bytes of all items.
    std::uint64_t valueLength() const;

    Templates::ValuePtr<State> state_;
    IndexTableSegmentListener* listener_ = nullptr;
};

} // namespace MXF::Zelm::IndexTables
