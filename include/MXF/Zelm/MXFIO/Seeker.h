/// Finds the edit units of an essence container that is wrapped by edit units: by its index table, by
/// arithmetic where all have the same size, or by a walk.
#pragma once

#include "MXF/Zelm/GenericContainer/Demultiplexer.h"
#include "MXF/Zelm/IndexTables/EditUnitLocator.h"
#include "MXF/Zelm/MXFIO/WalkedIndex.h"

namespace MXF::Zelm::MXFIO {

class IndexTableGatherer;

/// Gathers the index table when it is asked for the first time, and walks only where the table does not
/// reach. Without one it walks over the first edit units alone where all seem to have their size: some places
/// all over the stream are looked at, and the rest is arithmetic.
///
/// An index may say anything: where it leads is looked at, and one that leads where no edit unit begins, or
/// back to an earlier one, is used no more.
class MXFZELM_EXPORT Seeker : public Platform::Allocated {
public:
    /// `reader` and `stream` are not owned and must outlive the seeker, which moves them. `indexSID` is that
    /// of the index table that the metadata names, 0 for none: it counts where the file has several. The
    /// table comes from `gatherer`, if null from one of the seeker's own.
    Seeker(Reader2& reader, BodyStream& stream, std::uint32_t indexSID = 0,
           Templates::SharedPtr<IndexTableGatherer> gatherer = nullptr);
    Seeker(Seeker const&) = delete;
    Seeker& operator=(Seeker const&) = delete;
    ~Seeker();

    /// Is told of walks and may stop them; what is behind then counts as not there. Empty for none.
    void progress(WalkedIndex::Progress progress) { progress_ = std::move(progress); }

    /// Where edit unit `position` begins in the stream; absent when the container has none. Throws what the
    /// walk does.
    std::optional<std::uint64_t> find(std::int64_t position);

    /// Behind the last whole edit unit; absent when a walk was stopped before. Throws what the walk does.
    std::optional<std::int64_t> end();

    /// The index of the file, null when it has none that can be used. Valid until `refresh`, though it may
    /// turn out before that it leads astray.
    IndexTables::EditUnitLocator const* index();

    /// Its table, null and valid likewise.
    IndexTables::IndexTable const* table();

    /// What the walk found behind the index, or behind what arithmetic tells.
    WalkedIndex const& walkedIndex();

    /// The packets of the first content package; of an open-ended stream that ends with it, as far as they
    /// are there. Throws as `BodyStream::peekPacket` does.
    GenericContainer::PackageBoundary const& firstPackage();

    /// To be called when the stream has grown.
    void refresh();

private:
    void gather();
    void tryConstant(std::int64_t position);
    std::optional<std::uint64_t> calculated(std::int64_t position);
    bool isSound(std::int64_t position, std::uint64_t streamOffset);
    bool isInOrder(std::int64_t position, std::uint64_t streamOffset);
    bool isPackageStart(std::uint64_t streamOffset);
    void reject();
    WalkedIndex& walked();
    std::int64_t lastIndexed();

    Reader2& reader_;
    BodyStream& stream_;
    std::uint32_t indexSID_;
    Templates::SharedPtr<IndexTableGatherer> gatherer_; // null for one of its own
    WalkedIndex::Progress progress_;
    bool gathered_ = false;
    bool rejected_ = false; // neither the index nor arithmetic is used
    Templates::SharedPtr<IndexTables::IndexTable const, Templates::LockedCounter> table_;
    std::optional<IndexTables::EditUnitLocator> index_;
    std::optional<std::int64_t> lastIndexed_;
    Templates::auto_ptr<WalkedIndex> walked_;
    bool triedConstant_ = false;
    std::uint64_t unitSize_ = 0; // of the edit units before the walk; 0 when they are not known to have one
    GenericContainer::PackageBoundary first_; // the first content package
    std::uint64_t firstOffset_ = 0;
    bool firstIsFinal_ = false; // another one follows it
};

} // namespace MXF::Zelm::MXFIO
