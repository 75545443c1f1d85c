/// The diagnosis of a file, and the file as it is to become.
///
///     kept                          E
///     | header | body … packages …  | footer: pack, fill, metadata, index | random index pack
///
/// What follows E in the old file is written over, or covered by the fill behind the first new pack, which no
/// byte count and no essence container includes.
#pragma once

#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/MXFIO/MeasuredContainer.h"
#include "MXF/Zelm/MXFIO/NewPartitions.h"

namespace MXF::Zelm::MXFIO {

/// The metadata that is put right, and as it was. Shared by the drafts of one file.
struct RepairMetadata {
    Partition::MetadataPtr edited, original;
    std::optional<MetadataArea> area; ///< where it was read from
};

class RepairDraft {
public:
    /// `walk` is of the source and is not changed by it; neither is owned. `withoutFooter` has a whole footer
    /// made anew, with the metadata as `metadata` has it; without it `metadata` is filled in.
    RepairDraft(DataIO::RandomAccessDataSource& source, Reader::DictionaryPtr dictionary,
                std::uint64_t searchLimit, FileWalk const& walk, bool withoutFooter, RepairMetadata& metadata,
                FileWalk::Progress const& progress);

    std::vector<RepairFinding> const& findings() const { return findings_; }
    std::vector<RepairedContainer> const& containers() const { return containers_; }
    std::vector<MetadataChange> const& changes() const { return changes_; }

    /// The footer is whole, but cannot say what it should.
    bool needsNewFooter() const { return needsFooter_ && kept_.isFinished(); }

    /// What is kept of the file.
    std::uint64_t keptEnd() const { return kept_.end(); }

    /// Makes the repaired file, of which at least `least` bytes follow the kept ones: new partitions and the
    /// random index pack.
    PatchedSource& complete(std::uint64_t least);

private:
    using Code = RepairFinding::Code;

    void loadMetadata(RepairMetadata& metadata);
    EssenceContainer const* lastContainer() const;
    void dropFirstPackage();
    void repairClip();
    void padToGrid();
    void measure(FileWalk::Progress const& progress);
    void judge(EssenceContainer const& container, MeasuredContainer measured);
    void dropIndex(std::uint32_t indexSID);
    void checkRandomIndex();
    bool fitsEverywhere() const;
    void putMetadata(WalkedPartition const& partition);
    bool hasSameMetadata(WalkedPartition const& partition) const;
    PartitionFormat format();
    Bytes makeTail(std::uint64_t least, std::uint64_t& footerOffset);
    void find(Code code, std::optional<std::uint64_t> offset, std::string message);

    DataIO::RandomAccessDataSource& source_;
    Reader::DictionaryPtr dictionary_;
    std::uint64_t searchLimit_;
    FileWalk const& walk_;
    std::vector<RepairFinding> findings_;
    PatchedSource view_;
    KeptPartitions kept_;
    RepairMetadata& metadata_;
    bool needsFooter_ = true;
    bool needsRandomIndex_ = true;
    Bytes padding_; // to the grid behind what is kept
    Templates::vector<EssenceContainer> essence_;
    std::optional<CutClip> cutClip_;
    std::uint32_t cutSID_ = 0; // of the container that it stands in
    std::vector<NewIndex> indices_;
    Packs::PartitionPack::PartitionStatus status_ = Packs::PartitionPack::ClosedComplete;
    std::vector<RepairedContainer> containers_;
    std::vector<MetadataChange> changes_;
};

} // namespace MXF::Zelm::MXFIO
