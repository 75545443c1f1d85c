/// A source of wrapped essence on its way into the partitions of a file: which stream it becomes, how far it
/// has been written, and the content package that was fetched ahead, which decides where a partition ends.
#pragma once

#include "MXF/Zelm/GenericContainer/Source.h"
#include "MXF/Zelm/MXFIO/FutureUpdater.h"

namespace MXF::Zelm::MXFIO {

/// Not locked: one source, one thread.
class MXFZELM_EXPORT BodySource : public Platform::Allocated {
public:
    using SegmentPtr = GenericContainer::Source::SegmentPtr;

    /// `bodySID` names the stream of the essence, `indexSID` that of its index table, 0 for none. Without
    /// `canUpdate` bytes cannot be changed once they are written.
    BodySource(Templates::auto_ptr<GenericContainer::Source> source, std::uint32_t bodySID,
               std::uint32_t indexSID, bool canUpdate);
    ~BodySource();
    BodySource(BodySource const&) = delete;
    BodySource& operator=(BodySource const&) = delete;

    GenericContainer::Source& source() { return *source_; }
    GenericContainer::Source const& source() const { return *source_; }
    std::uint32_t bodySID() const { return bodySID_; }
    std::uint32_t indexSID() const { return indexSID_; }

    /// Makes sure that a package is at hand; false at the end, where the source is finalized. Throws what the
    /// source throws, and Exceptions::InvalidStructure when the package has to be changed later and cannot.
    bool fetch();

    /// Of the package at hand: whether a partition may begin with it, its time in seconds.
    bool mayStartPartition() const { return mayStartPartition_; }
    Templates::Rational<std::int64_t> const& position() const { return position_; }

    /// Hands the package at hand out; it will stand at `fileOffset`, run-in included.
    DataIO::Chain take(std::uint64_t fileOffset);

    /// No package is to follow the one at hand.
    void stop() { stopped_ = true; }

    /// Packages and bytes handed out so far.
    std::uint64_t packages() const { return packages_; }
    std::uint64_t streamOffset() const { return streamOffset_; }

    /// The index table segments for the packages handed out so far, as far as they are final; each once.
    /// None without an index SID.
    Templates::vector<SegmentPtr> takeIndexSegments();

    /// What the source wants changed in what it gave. Behind the end only.
    Templates::vector<FileUpdate> updates() const;

private:
    void requireChangeable() const;
    void complete(IndexTables::IndexTableSegment& segment) const;
    void prependHeldBack(Templates::vector<SegmentPtr>& segments);
    void holdBack(Templates::vector<SegmentPtr>& segments);

    Templates::auto_ptr<GenericContainer::Source> source_;
    std::uint32_t bodySID_;
    std::uint32_t indexSID_;
    bool canUpdate_;
    bool stopped_ = false;
    bool finalized_ = false;

    bool atHand_ = false;
    DataIO::Chain package_;
    bool mayStartPartition_ = false;
    GenericContainer::Source::FutureUpdaterPtr updater_;
    Templates::Rational<std::int64_t> position_ = {};

    std::uint64_t packages_ = 0;
    std::uint64_t streamOffset_ = 0;
    Templates::vector<GenericContainer::Source::FutureUpdaterPtr> updaters_; // of what was handed out
    SegmentPtr heldBack_; // the index entry of the package at hand
};

} // namespace MXF::Zelm::MXFIO
