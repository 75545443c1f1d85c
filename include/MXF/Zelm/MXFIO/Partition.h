/// One partition as it was found in a file: its pack, where its areas lie, and its header metadata, loaded on
/// demand.
///
///     partition pack
///     fill                 so that what follows starts on the KLV alignment grid; counted nowhere
///     header metadata      HeaderByteCount bytes: primer pack, sets, fill
///     index table          IndexByteCount bytes: segments, fill
///     body                 essence elements and their fill, up to the next partition pack
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/KLV/Reader.h"
#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Packs/PartitionPack.h"

namespace MXF::Zelm::MXFIO {

class Partition;
class Reader;

/// Who is told when the reading of a partition's body meets its end.
class MXFZELM_EXPORT PartitionListener {
public:
    virtual ~PartitionListener();
    virtual void partitionEnded(Partition& partition) = 0;
};

/// Made and owned by the reader; works on the reader's source, which it moves.
class MXFZELM_EXPORT Partition : public Platform::Allocated {
public:
    using MetadataPtr = Templates::SharedPtr<Metadata::PartitionMetadata, Templates::LockedCounter>;

    virtual ~Partition();
    Partition(Partition const&) = delete;
    Partition& operator=(Partition const&) = delete;

    /// The header metadata, loaded at the first call and then shared; empty when the partition has none. Sets
    /// that cannot be read are kept dark, and whatever else is wrong is listed in its `faults()`. Throws
    /// Exceptions::BaseException with "This partition (0x…) does not have a primer pack at the beginning of
    /// the metadata.".
    virtual MetadataPtr metadata();

    virtual Packs::PartitionPack const& partitionPack() const;

    /// True after the reading of the body has met the partition's end.
    virtual bool partitionEnded() const;

    /// True for a generic stream partition (SMPTE 410M). Its pack's key has the status byte 0x11: neither
    /// open nor complete.
    bool isGenericStream() const;

    /// Where the pack's key stands in the source. All offsets here count from the source's start, run-in
    /// included.
    std::uint64_t partitionAbsoluteOffset() const { return offset_; }

    /// Bytes of the pack's KLV.
    std::uint64_t partitionPackLength() const { return packLength_; }

    /// Where the pack ends.
    std::uint64_t metadataAbsoluteOffset() const { return offset_ + packLength_; }

    /// Bytes of the fill items that follow the pack.
    std::uint64_t leadingFillLength() const { return leadingFill_; }

    /// Where the header metadata ends, by the pack's byte count.
    std::uint64_t indexTableAbsoluteOffset() const;

    /// Where the index table ends, by the pack's byte count.
    std::uint64_t bodyAbsoluteOffset() const;

    /// Moves to the start of the body.
    void rewind();

    /// Moves to a position in the essence stream of the pack's body SID, on the scale of its body offset.
    /// Throws Exceptions::InvalidPosition with "Trying to seek to 0x… but partition (0x…) body starts at …"
    /// for one before it.
    void gotoBodyRelativePosition(std::uint64_t position);

    /// The next KLV of the index area, fill passed over; empty at its end or when the partition has no index.
    /// The first call starts at the area's beginning. The packet is valid until the source is used for
    /// something else.
    Templates::auto_ptr<KLV::Packet> nextIndexTableSegmentsKLV();

    /// The next KLV of the body, fill items included; empty at the body's end: at the next partition pack,
    /// the random index pack, or the end of the source. At most `maxLength` stray bytes are passed over
    /// before a key. Throws what the KLV reader does.
    Templates::auto_ptr<KLV::Packet> nextBodyKLV(std::uint64_t maxLength);

    /// Null for none.
    void setPartitionListener(Templates::SharedPtr<PartitionListener, Templates::LockedCounter> listener);

private:
    friend class Reader;

    enum class ReadState { Ready, Ended };

    Partition(Reader& reader, KLV::Packet& packet, Packs::PartitionPack pack);
    void measureLeadingFill();
    MetadataPtr loadMetadata();
    void loadSets(Metadata::PartitionMetadata& metadata, std::uint64_t end);
    bool loadNextSet(Metadata::PartitionMetadata& metadata, std::uint64_t end);
    void endBody();

    DataIO::RandomAccessDataSource& source_;
    KLV::Reader& klvReader_;
    Metadata::PartitionDictionary::DictionaryPtr dictionary_;
    Packs::PartitionPack pack_;
    std::uint64_t offset_;
    std::uint64_t packLength_;
    std::uint64_t leadingFill_ = 0;
    MetadataPtr metadata_;
    ReadState state_ = ReadState::Ready;
    std::uint64_t nextIndex_; // where the next KLV of the index area stands
    std::uint64_t nextBody_;  // where the next KLV of the body stands
    Templates::SharedPtr<PartitionListener, Templates::LockedCounter> listener_;
};

} // namespace MXF::Zelm::MXFIO
