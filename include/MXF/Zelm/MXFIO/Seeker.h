/// Finds the edit units of an essence container that is wrapped by edit units: by its index table, by
/// arithmetic where all have the same size, or by a walk.
#pragma once

#include "MXF/Zelm/IndexTables/EditUnitLocator.h"
#include "MXF/Zelm/MXFIO/WalkedIndex.h"

namespace MXF::Zelm::MXFIO {

/// Gathers the index table when it is asked for the first time, and walks only where the table does not
/// reach. Without one it walks over the first edit units alone where all seem to have their size: some places
/// all over the stream are looked at, and the rest is arithmetic.
class MXFZELM_EXPORT Seeker : public Platform::Allocated {
public:
    /// `reader` and `stream` are not owned and must outlive the seeker, which moves them.
    Seeker(Reader2& reader, BodyStream& stream);
    Seeker(Seeker const&) = delete;
    Seeker& operator=(Seeker const&) = delete;
    ~Seeker();

    /// Is told of walks and may stop them; what is behind then counts as not there. Empty for none.
    void progress(WalkedIndex::Progress progress) { progress_ = std::move(progress); }

    /// Where edit unit `position` begins in the stream; absent when the container has none. Throws what the
    /// walk does.
    std::optional<std::uint64_t> find(std::int64_t position);

    /// Behind the last whole edit unit; absent when a walk was stopped before.
    std::optional<std::int64_t> end();

    /// The index of the file, null when it has none that can be used.
    IndexTables::EditUnitLocator const* index();

    /// Its table, null likewise.
    IndexTables::IndexTable const* table();

    /// What the walk found behind the index, or behind what arithmetic tells.
    WalkedIndex const& walkedIndex();

    /// Whether edit units are found by an index or by arithmetic, which may lead astray.
    bool isUnproven() { return index() != nullptr || unitSize_ != 0; }

    /// Uses the file's index and arithmetic no more: it leads where no edit unit begins.
    void rejectIndex();

    /// To be called when the stream has grown.
    void refresh();

private:
    void gather();
    void tryConstant(std::int64_t position);
    WalkedIndex& walked();
    std::int64_t lastIndexed();

    Reader2& reader_;
    BodyStream& stream_;
    WalkedIndex::Progress progress_;
    bool gathered_ = false;
    Templates::SharedPtr<IndexTables::IndexTable const, Templates::LockedCounter> table_;
    std::optional<IndexTables::EditUnitLocator> index_;
    std::optional<std::int64_t> lastIndexed_;
    Templates::auto_ptr<WalkedIndex> walked_;
    bool triedConstant_ = false;
    std::uint64_t unitSize_ = 0; // of the edit units before the walk; 0 when they are not known to have one
};

} // namespace MXF::Zelm::MXFIO
