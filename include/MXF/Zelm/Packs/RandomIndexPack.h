/// The random index pack (SMPTE 377M): where each partition begins, as the last packet of a file.
///
///     key      16
///     length         BER
///     value    12    each partition: body SID (4), byte offset (8)
///               4    bytes of the whole packet, so that a reader finds it from the end of the file
///
/// Offsets count from the first byte of the header partition pack.
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/KLV/Packet.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Templates/Memory.h"

namespace MXF::Zelm::Packs {

class MXFZELM_EXPORT RandomIndexPack : public Platform::Allocated {
public:
    using OffsetIndexedMap = Templates::map<std::uint64_t, std::uint32_t>;
    using SidIndexedMap = Templates::multimap<std::uint32_t, std::uint64_t>;

    static KLV::Key const& key();

    /// Empty, with a 4-byte length field.
    RandomIndexPack();

    /// Reads a pack; the final length word is not compared. Throws Exceptions::InvalidKey for another packet
    /// ("Trying to create a RIP from a KLV with a invalid RIP Key."), Exceptions::InvalidLength when the
    /// value ends without the final length ("Not enough data to read Pack") or amid an entry.
    explicit RandomIndexPack(KLV::Packet& packet);

    RandomIndexPack(RandomIndexPack const& other);
    RandomIndexPack& operator=(RandomIndexPack const& other);
    ~RandomIndexPack();

    /// Enters a partition into both maps. In `offsetIndexedMap`, which is what is written, an offset keeps
    /// the SID that it was first entered with.
    void add(std::uint32_t bodySID, std::uint64_t byteOffset);

    /// The offsets of all partitions of a body SID.
    Templates::vector<std::uint64_t> find(std::uint32_t bodySID) const;

    /// Number of partitions.
    std::size_t size() const;

    /// Bytes of the value: 12 for each partition and 4.
    std::uint64_t valueLength() const;

    OffsetIndexedMap const& offsetIndexedMap() const;
    SidIndexedMap const& sidIndexedMap() const;

    /// Bytes of the length field, 1 to 9.
    unsigned char berLength() const;
    void berLength(unsigned char size);

    void serialize(DataIO::DataSink& sink) const;
    std::uint64_t serializedSize() const;

private:
    struct State;
    Templates::ValuePtr<State> state_;
};

} // namespace MXF::Zelm::Packs
