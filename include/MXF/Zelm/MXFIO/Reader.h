/// Opens an MXF file and gives access to its partitions (SMPTE 377M).
///
/// Offsets in packs count from the first byte of the header partition pack; before it a file may have a
/// run-in. File offsets are those plus the run-in's length. Partitions are found lazily, never read twice,
/// and kept until the reader is destroyed: the pointers handed out are valid that long.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/KLV/Reader.h"
#include "MXF/Zelm/MXFIO/Partition.h"
#include "MXF/Zelm/MetaMetadata/Dictionary.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

namespace MXF::Zelm::MXFIO {

class MXFZELM_EXPORT Reader : public Platform::Allocated {
public:
    using DictionaryPtr = Templates::SharedPtr<MetaMetadata::Dictionary, Templates::LockedCounter>;
    using RIPPtr = Templates::SharedPtr<Packs::RandomIndexPack const, Templates::LockedCounter>;

    /// `source` is not owned and must outlive the reader. `searchLimit` is the most bytes passed over while
    /// searching for a key; SMPTE 377M allows a run-in of less than 64 KiB. Throws Exceptions::InvalidLicense
    /// when the licence manager refuses "MXFIO.Reader".
    Reader(DataIO::RandomAccessDataSource& source, DictionaryPtr dictionary, std::uint64_t searchLimit);
    virtual ~Reader();
    Reader(Reader const&) = delete;
    Reader& operator=(Reader const&) = delete;

    /// The first partition, null when none begins within the search limit.
    Partition* headerPartition();

    /// The partition whose header metadata is to be used, found by reading forwards: the first that is closed
    /// and has metadata, else the last that has metadata, else the header partition. Throws
    /// Exceptions::InvalidStructure with "No header partition found".
    Partition* firstPartitionWithFinalMetadata();

    /// The following partition, null after the last. Throws Exceptions::InvalidStructure with "The Partition
    /// Pack has an invalid PreviousPartition value".
    Partition* nextPartition(Partition* current);

    /// The preceding partition, null before the header. Throws Exceptions::InvalidStructure with "A Partition
    /// has an invalid PreviousPartition value" or "Partitions have inconsistent ThisPartition values".
    Partition* previousPartition(Partition* current);

    /// The nearest following or preceding partition whose body SID is `bodySID`, null when there is none.
    Partition* nextPartition(Partition* current, std::uint32_t bodySID);
    Partition* previousPartition(Partition* current, std::uint32_t bodySID);

    /// The same for the index SID.
    Partition* nextIndexPartition(Partition* current, std::uint32_t indexSID);
    Partition* previousIndexPartition(Partition* current, std::uint32_t indexSID);

    /// The first following partition that is complete, null when there is none.
    Partition* nextCompletePartition(Partition* current);

    /// The first following partition that is not open, null when there is none.
    Partition* nextClosedPartition(Partition* current);

    /// Loads the random index pack from the end of the source; false when there is none that can be read.
    bool loadRIP();

    /// The random index pack, empty until it was loaded.
    RIPPtr rip() const;

    /// The run-in, null when there is none. The source is moved to its first byte.
    KLV::Value* runIn();

    /// Bytes of the run-in; 0 until the header partition was found.
    std::uint64_t runInLength() const;

    DictionaryPtr const& dictionary() const;
    DataIO::RandomAccessDataSource& source() const;
    KLV::Reader& klvReader() const;
    std::uint64_t searchLimit() const;

    /// The known partition with the highest offset, null while none is known.
    Partition* lastLoadedPartition() const;

protected:
    /// Reads on from the source's position to the next partition pack and returns its partition; null when
    /// the source ends (also amid a packet) or `limit`, the most bytes to pass over, is used up (only the
    /// bytes before each key count if `unlimited`). `skipped` receives the bytes passed over; `essenceSeen`
    /// is set when an essence element was among them.
    Partition* readPartition(std::int64_t limit, bool unlimited, std::uint64_t& skipped, bool& essenceSeen);

    /// The known partition at an absolute offset, null when there is none.
    Partition* find(std::uint64_t absoluteOffset) const;

    /// Moves the source to where the reading for the partition after `partition` begins.
    void positionSource(Partition* partition);

    /// Reads the partition at a pack-relative offset; null when there is none within the search limit.
    Partition* readPartitionAt(std::uint64_t packOffset);

    /// `packOffset` and the run-in; the largest offset there is when that overflows.
    std::uint64_t absoluteOffset(std::uint64_t packOffset) const;

    /// The header partition. Throws Exceptions::InvalidStructure with "No header partition found".
    Partition& requireHeaderPartition();

private:
    Partition* readPeekedPartition();

    struct State;
    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::MXFIO
