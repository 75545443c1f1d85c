/// Hands the content packages of another MXF file out as they stand there: essence of any kind, system items
/// and elements that nobody knows included. What is known about their edit units (key frames, the order in
/// which they are shown) comes from the file's index table, or from a walk over its pictures.
///
///     auto source = std::make_unique<PassThroughSource>(reader, container);
///     creator.addSource(std::move(source), 1, 2);
///
/// Packages may be laid out anew on another alignment grid, and tracks left out. The metadata is the host's
/// business. Sound that is to be wrapped in another way takes a PassThroughAnalyzer.
#pragma once

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/FrameIndexTableBuilder.h"
#include "MXF/Zelm/MXFIO/EssenceReader.h"
#include "MXF/Zelm/Utils/Padding.h"

#include <limits>

namespace MXF::Zelm::MXFIO {

struct MXFZELM_EXPORT PassThroughSourceOptions {
    /// The elements of a track get another number, and so bytes 12 to 15 of their keys; 0 leaves them out.
    struct TrackChange {
        std::uint32_t trackNumber = 0;
        std::uint32_t newNumber = 0;
    };

    /// What is to be shown: the edit units from `first` to before `end`, in the order of showing, counted
    /// from the start of the container. The pictures that decoding needs before come with them, and those
    /// between that are shown behind. Of a clip only where its edit units have one size.
    std::int64_t first = 0;
    std::int64_t end = std::numeric_limits<std::int64_t>::max();

    /// Lays packages out on this grid, in bytes, 1 for no fill at all. Absent: fill stays as it is. Not for
    /// clips.
    std::optional<std::uint32_t> kagSize = std::nullopt;

    Templates::vector<TrackChange> tracks = {};

    /// Packs and sets of the system item go along. The pack tells of items without tracks left no longer.
    bool keepsSystemItem = true;

    /// Elements have the constant sizes that the file's index claims.
    bool trustsSizes = true;
};

class MXFZELM_EXPORT PassThroughSource : public GenericContainer::Source {
public:
    /// A package is not as long as the index of the file claims. Without `trustsSizes` it does no harm.
    class MXFZELM_EXPORT Irregular : public Exceptions::InvalidStructure {
    public:
        using InvalidStructure::InvalidStructure;
    };

    /// `reader` is not owned and must outlive the source, which moves its source of bytes. Reads the index of
    /// the file; walks over the essence when that has none, or not all of it. Throws
    /// Exceptions::InvalidStructure for changes that are asked of a clip, and what reading throws.
    PassThroughSource(Reader2& reader, EssenceContainer container,
                      PassThroughSourceOptions const& options = {});
    ~PassThroughSource() override;

    /// How the essence is wrapped; a container without essence is taken for one that is wrapped by frames.
    GenericContainer::Wrapping wrapping() const { return wrapping_; }

    /// The index that tells of the edit units; null when there is none.
    IndexTables::EditUnitLocator const* index() const { return index_; }

    /// Throws Irregular, and what reading throws.
    bool next(DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
              Templates::Rational<std::int64_t>& position) override;
    bool done() const override;

    /// That of the options, else that of the file's first partition with the essence.
    std::uint32_t kagSize() const override;
    Templates::vector<SegmentPtr> takeIndexSegments() override;
    void finalize() override;

    /// Null.
    Metadata::Structural::SourcePackage* sourcePackage() const override { return nullptr; }
    Types::UniversalLabel const& essenceContainerUL() const override { return label_; }
    Templates::Rational<int> packageRate() const override { return packageRate_; }
    bool isCBE() const override { return packageSize_ != 0; }

    /// Edit units handed out so far.
    std::int64_t units() const { return position_ - first_; }

    /// Whether that number is certain: not for clips whose edit units are told by nothing, and where there is
    /// no essence.
    bool knowsUnits() const { return isClip() ? clipUnit_ != 0 : units() != 0; }

    /// Edit units that stand before the first that is to be shown.
    std::int64_t preCharge() const { return preCharge_; }

    /// The edit units that are handed out, in stored order: from the first to before the end.
    std::int64_t firstUnit() const { return first_; }
    std::int64_t endUnit() const { return end_; }

protected:
    bool doNextContentPackage(DataIO::Chain& out, Templates::Rational<std::int64_t>& position) override;

private:
    /// An element of a package, or the system item.
    struct Part {
        GenericContainer::ElementKey key;
        std::uint64_t offset; // from the start of the package
    };

    bool isClip() const { return wrapping_ == GenericContainer::Wrapping::Clip; }
    void findIndex();
    void findRange();
    void findStored(std::int64_t shownFirst, std::int64_t shownEnd);
    void findStart();
    void openClip();
    void makeBuilder();
    bool isReorderedBy(IndexTables::IndexTableSegment const* segment) const;
    void readAhead();
    bool readPackage();
    void take(PacketHead const& head);
    void append(PacketHead const& head);
    bool isLeftOut(GenericContainer::ElementKey key) const;
    void findLostItems();
    DataIO::Slice changedPack(PacketHead const& head);
    PassThroughSourceOptions::TrackChange const* changeOf(GenericContainer::ElementKey key) const;
    std::uint64_t partSize(std::size_t part) const;
    void note();
    GenericContainer::EditUnitIndex unitIndex() const;
    bool nextOfClip(DataIO::Chain& out, FutureUpdaterPtr& updater);

    PassThroughSourceOptions options_;
    EssenceReader essence_;
    GenericContainer::Wrapping wrapping_;
    Types::UniversalLabel label_;
    Templates::Rational<int> packageRate_ = {};
    std::uint32_t kagSize_ = 1;
    std::int64_t first_ = 0;
    std::int64_t end_ = 0;
    std::int64_t position_ = 0;
    std::int64_t preCharge_ = 0;

    Templates::auto_ptr<IndexTables::IndexTable> walkedTable_;
    Templates::auto_ptr<IndexTables::EditUnitLocator> walked_;
    IndexTables::EditUnitLocator const* index_ = nullptr;
    IndexTables::IndexTable const* table_ = nullptr;

    Utils::Padding padding_;
    bool hasAhead_ = false;
    bool leavesOut_ = false;      // what follows belongs to a track that is left out
    unsigned char lostItems_ = 0; // bits of the system metadata pack
    DataIO::Chain package_;       // read ahead, with its parts
    std::vector<Part> parts_;
    std::vector<Part> layout_; // of the first package
    std::vector<GenericContainer::Multiplexer::IndexedElement> elements_;
    std::uint32_t packageSize_ = 0;
    bool isReordered_ = false;
    std::uint64_t streamOffset_ = 0;
    Templates::auto_ptr<GenericContainer::Multiplexer::FrameIndexTableBuilder> builder_;
    bool hasBegun_ = false;
    FutureUpdaterPtr pendingUpdater_ = nullptr;
    bool isFinalized_ = false;

    // Of a clip.
    class ClipLength;
    DataIO::Chain clipHead_; // up to its value
    Templates::SharedPtr<ClipLength> clipLength_;
    std::uint64_t clipBytes_ = 0; // of value and fill, to be handed out behind
    std::uint32_t clipUnit_ = 0;  // bytes of an edit unit where all have the same size
    bool isClipPart_ = false;
    bool isClipIndexGiven_ = false;
};

} // namespace MXF::Zelm::MXFIO
