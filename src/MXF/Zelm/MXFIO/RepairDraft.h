/// The diagnosis of a file, and the file as it is to become.
///
///     kept                          E
///     | header | body … packages …  | footer: pack, fill, metadata, index | random index pack
///
/// What follows E in the old file is written over, or covered by the fill behind the first new pack, which no
/// byte count and no essence container includes.
#pragma once

#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/MXFIO/FileWalk.h"
#include "MXF/Zelm/MXFIO/MeasuredContainer.h"
#include "MXF/Zelm/MXFIO/PatchedSource.h"
#include "MXF/Zelm/MXFIO/Repairer.h"

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
    bool needsNewFooter() const { return needsFooter_ && isFinished_; }

    /// What is kept of the file.
    std::uint64_t keptEnd() const { return keptEnd_; }

    /// Makes the repaired file, of which at least `least` bytes follow the kept ones: new partitions and the
    /// random index pack.
    PatchedSource& complete(std::uint64_t least);

private:
    struct NewIndex {
        std::uint32_t indexSID = 0;
        Templates::vector<CommonPartitionWriter::SegmentPtr> segments;
    };

    /// A partition that is made, offsets as packs have them.
    struct NewPartition {
        Bytes bytes;
        std::uint64_t packSize = 0;
        std::uint64_t leadSize = 0; ///< the pack and the fill behind it
    };
    using Code = RepairFinding::Code;
    using Offsets = std::vector<std::uint64_t>;

    void chooseKept(bool withoutFooter);
    void dropEmptyPartitions();
    void checkTail();
    void checkPacks();
    void checkPack(std::size_t index, std::uint64_t bodyOffset);
    std::uint64_t bodyOffsetOf(std::size_t index, std::map<std::uint32_t, std::uint64_t>& streams) const;
    void put(std::size_t index, PackFields::Field field, std::uint64_t value);
    void loadMetadata(RepairMetadata& metadata);
    EssenceContainer const* lastContainer() const;
    void dropFirstPackage();
    bool isClip(PacketHead const& cut, EssenceContainer const& container);
    void repairClip();
    bool setClipLength(PacketHead const& head, std::uint64_t length);
    void padToGrid();
    void measure(FileWalk::Progress const& progress);
    void judge(EssenceContainer const& container, MeasuredContainer measured);
    void dropIndex(std::uint32_t indexSID);
    bool isRight(Bytes const& found) const;
    void checkRandomIndex();
    void checkFooterOffsets();
    bool fitsEverywhere() const;
    void putMetadata(WalkedPartition const& partition);
    bool hasSameMetadata(WalkedPartition const& partition) const;
    void close(std::size_t index);
    PartitionFormat format();
    NewPartition newPartition(std::size_t number, Offsets const& offsets);
    std::size_t newPartitions() const;
    Bytes makeTail(std::uint64_t least);
    Bytes makePartitions(std::uint64_t least);
    Bytes randomIndex(Offsets const& fresh) const;
    void find(Code code, std::optional<std::uint64_t> offset, std::string message);
    std::uint64_t relative(std::uint64_t offset) const { return offset - walk_.start(); }

    DataIO::RandomAccessDataSource& source_;
    Reader::DictionaryPtr dictionary_;
    std::uint64_t searchLimit_;
    FileWalk const& walk_;
    std::vector<WalkedPartition> kept_;
    bool wasFinished_ = false; // a whole footer is there
    bool isFinished_ = false;  // and is kept
    bool needsFooter_ = true;
    bool needsRandomIndex_ = true;
    std::uint64_t keptEnd_ = 0;
    Bytes padding_; // to the grid behind what is kept
    PatchedSource view_;
    RepairMetadata* metadata_ = nullptr;
    Templates::vector<EssenceContainer> essence_;
    ClipUnitSize clip_;
    std::uint32_t clipSID_ = 0; // of the clip that was cut off
    std::vector<NewIndex> indices_;
    PartitionFormat format_;
    std::uint64_t footerOffset_ = 0; // as packs have it
    Packs::PartitionPack::PartitionStatus status_ = Packs::PartitionPack::ClosedComplete;
    std::vector<RepairFinding> findings_;
    std::vector<RepairedContainer> containers_;
    std::vector<MetadataChange> changes_;
};

} // namespace MXF::Zelm::MXFIO
