/// The pack that every partition begins with (SMPTE 377M).
///
///     key      16    06 0E 2B 34 02 05 01 01 0D 01 02 01 01, kind, status, 00
///     length         BER, in as many bytes as it was read with; 4 in a new pack
///     value     2    major version               8    header byte count
///               2    minor version               8    index byte count
///               4    KAG size                    4    index SID
///               8    this partition              8    body offset
///               8    previous partition          4    body SID
///               8    footer partition           16    operational pattern
///                                                     batch of essence container labels
///
/// All offsets count from the first byte of the header partition pack.
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/KLV/Packet.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Packs {

class MXFZELM_EXPORT PartitionPack : public Platform::Allocated {
public:
    /// Key byte 13.
    enum PartitionKind : unsigned char { Header = 2, Body = 3, Footer = 4 };

    /// Key byte 14.
    enum PartitionStatus : unsigned char {
        OpenIncomplete = 1,
        ClosedIncomplete = 2,
        OpenComplete = 3,
        ClosedComplete = 4
    };

    /// Reads a pack; what stands behind the batch stays unread. Throws Exceptions::InvalidKey ("The key is
    /// not a PartitionPack key"), InvalidPartitionKind or InvalidPartitionStatus for a wrong key,
    /// Exceptions::InvalidLength when the value is too short.
    explicit PartitionPack(KLV::Packet& packet);

    /// A new pack of version 1.2 with a 4-byte length field; what is not given is 0. `kagSize` in bytes, 1
    /// for none. Throws as above for a wrong key.
    PartitionPack(KLV::Key const& key, std::uint32_t kagSize, std::uint64_t thisPartition,
                  std::uint64_t bodyOffset, Types::UniversalLabel const& operationalPattern,
                  Templates::auto_ptr<Types::Batch> essenceContainers);

    PartitionPack(PartitionPack const& other);
    PartitionPack& operator=(PartitionPack const& other);
    ~PartitionPack();

    KLV::Key const& key() const;

    /// Not validated: a kind that is not known then reads as `Footer`, a status as neither open nor complete.
    void key(KLV::Key const& key);

    /// Bytes of the length field, 1 to 9.
    unsigned char berLength() const;
    void berLength(unsigned char size);

    std::uint16_t majorVersion() const;
    void majorVersion(std::uint16_t version);
    std::uint16_t minorVersion() const;
    void minorVersion(std::uint16_t version);

    /// KLV alignment grid in bytes.
    std::uint32_t kagSize() const;
    void kagSize(std::uint32_t size);

    std::uint64_t thisPartition() const;
    void thisPartition(std::uint64_t offset);
    std::uint64_t previousPartition() const;
    void previousPartition(std::uint64_t offset);

    /// 0 while it is not known.
    std::uint64_t footerPartition() const;
    void footerPartition(std::uint64_t offset);

    /// Bytes of header metadata, from the primer to the end of the fill after the last set.
    std::uint64_t headerByteCount() const;
    void headerByteCount(std::uint64_t count);

    /// Bytes of index table segments and their fill.
    std::uint64_t indexByteCount() const;
    void indexByteCount(std::uint64_t count);

    /// 0 when the partition holds no index.
    std::uint32_t indexSID() const;
    void indexSID(std::uint32_t sid);

    /// Position of the partition's first essence byte in the essence container.
    std::uint64_t bodyOffset() const;
    void bodyOffset(std::uint64_t offset);

    /// 0 when the partition holds no essence.
    std::uint32_t bodySID() const;
    void bodySID(std::uint32_t sid);

    Types::UniversalLabel const& operationalPattern() const;
    void operationalPattern(Types::UniversalLabel const& label);

    Types::Batch const& essenceContainers() const;

    /// Takes a batch of labels over.
    void essenceContainers(Templates::auto_ptr<Types::Batch> labels);

    PartitionKind partitionKind() const;
    bool isOpen() const;
    bool isComplete() const;

    void serialize(DataIO::DataSink& sink) const;

    /// Bytes that `serialize` writes.
    std::uint64_t serializedSize() const;

private:
    struct State;
    Templates::ValuePtr<State> state_;
};

/// The key of a partition pack.
MXFZELM_EXPORT KLV::Key buildPartitionPackKey(PartitionPack::PartitionKind kind,
                                              PartitionPack::PartitionStatus status);
MXFZELM_EXPORT KLV::Key buildPartitionPackKey(PartitionPack::PartitionKind kind, bool open, bool complete);

/// True for the key of a partition pack of a known kind, whatever its status byte says. (Primer and random
/// index packs share the first 13 bytes.)
MXFZELM_EXPORT bool isPartitionPack(KLV::Key const& key);

/// True for the key of a generic stream partition (SMPTE 410M): kind body, status byte 0x11.
MXFZELM_EXPORT bool isGenericStreamPartitionPack(KLV::Key const& key);

} // namespace MXF::Zelm::Packs
