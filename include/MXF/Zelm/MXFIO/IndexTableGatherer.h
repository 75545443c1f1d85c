/// Collects the index tables of a file, wherever their segments stand: before or after their essence, in
/// header, body, footer or partitions of their own, repeated or not.
///
///     IndexTableGatherer gatherer(reader);
///     if (auto const table = gatherer.table(1)) {
///         PartitionMap const map(reader, 1);
///         IndexTables::EditUnitLocator const locator(*table, {map.streamLength()});
///         auto const unit = locator.locate(250);
///         auto const pieces = map.extents(unit->streamOffset, *unit->length);
///     }
#pragma once

#include "MXF/Zelm/MXFIO/IndexTableCompleteCache.h"
#include "MXF/Zelm/MXFIO/Reader2.h"

#include <optional>

namespace MXF::Zelm::MXFIO {

/// Reads nothing before it is asked, and then partition after partition: the last one first, where finished
/// files have most of their index, then from the header on.
class MXFZELM_EXPORT IndexTableGatherer : public Platform::Allocated {
public:
    using CachePtr = Templates::SharedPtr<IndexTableCompleteCache, Templates::LockedCounter>;

    /// By index SID and body SID. A segment without an index SID counts for that of its partition's pack.
    using Caches = Templates::map<Templates::pair<std::uint32_t, std::uint32_t>, CachePtr>;

    enum class Search {
        /// The index area of each partition, and the segments that follow it where the pack's byte count says
        /// less than there is. Reads little else.
        Declared,

        /// All packets of each partition: also segments amid essence, or where a pack's byte counts are far
        /// off. Reads the keys of the whole file.
        Everywhere
    };

    /// A segment that cannot be read.
    struct Fault {
        std::optional<std::uint64_t> offset; // in the source
        std::string message;
    };

    /// `reader` is not owned and must outlive the gatherer.
    explicit IndexTableGatherer(Reader2& reader, Search search = Search::Declared);
    IndexTableGatherer(IndexTableGatherer const&) = delete;
    IndexTableGatherer& operator=(IndexTableGatherer const&) = delete;
    ~IndexTableGatherer();

    /// Reads the segments of one more partition; false when all have been read, and then every table is
    /// complete.
    bool readNext();

    /// Reads all that have not been read.
    void readAll();

    /// What was read so far.
    Caches const& caches() const { return caches_; }

    /// The whole index table of an essence container, empty when there is none. Reads all. Where a container
    /// has several tables, it is the one with `indexSID`, or if there is none such the one with the lowest.
    IndexTableCompleteCache::TablePtr table(std::uint32_t bodySID, std::uint32_t indexSID = 0);

    /// A segment that covers edit unit `position` of an essence container, empty when there is none. Reads
    /// partitions until there is one.
    IndexTableProvider::SegmentPtr segment(std::uint32_t bodySID, std::int64_t position);

    /// The segments that were passed over, in the order in which they were met.
    Templates::vector<Fault> const& faults() const { return faults_; }

private:
    struct Span { // a partition and its end
        Partition* partition;
        std::uint64_t end;
    };
    void start();
    void readPartition(Span const& span);
    void keep(KLV::Packet& packet, Span const& span);
    IndexTableProvider::SegmentPtr knownSegment(std::uint32_t bodySID, std::int64_t position) const;

    Reader2& reader_;
    Search search_;
    bool started_ = false;
    Templates::vector<Span> partitions_; // in the order in which they are read
    std::size_t done_ = 0;
    Caches caches_;
    Templates::vector<Fault> faults_;
};

} // namespace MXF::Zelm::MXFIO
