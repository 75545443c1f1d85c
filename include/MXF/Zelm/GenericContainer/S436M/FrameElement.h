/// The element of SMPTE 436M that holds the lines (VBI) or packets (ANC) of one frame:
///
///     2    number of packets
///     for each packet:
///     2    line number
///     1    wrapping type
///     1    sample coding
///     2    samples that count
///     4    payload: number of items, always bytes
///     4    payload: size of an item, 1
///     n    payload, filled up to a multiple of 4 bytes
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/GenericContainer/S436M/StoredPacket.h"
#include "MXF/Zelm/KLV/Key.h"

#include <array>

namespace MXF::Zelm::GenericContainer::S436M {

using namespace KLV::Literals;

/// Essence container labels, and track numbers: bytes 12 to 15 of the keys of the elements, which the
/// register of keys fixes.
inline constexpr KLV::Key vbiContainer = "060E2B34.04010109.0D010301.020D0000"_key;
inline constexpr KLV::Key ancContainer = "060E2B34.04010109.0D010301.020E0000"_key;
inline constexpr std::uint32_t vbiTrackNumber = 0x17010101;
inline constexpr std::uint32_t ancTrackNumber = 0x17010201;

/// A packet as it was found.
struct MXFZELM_EXPORT FoundPacket {
    /// What may be wrong; a bit each.
    enum Fault : unsigned {
        UnknownWrapping = 0x01,
        UnknownCoding = 0x02,
        LineOutOfRange = 0x04,
        WrongItemSize = 0x08,   ///< items of another size than one byte
        PayloadTooLarge = 0x10, ///< the payload claims more bytes than the element has left
        TooManySamples = 0x20,  ///< there are more samples than the payload has room for
        CutOff = 0x40,          ///< the element ends within the packet's head
    };

    static constexpr auto everyFault() {
        return std::array{UnknownWrapping, UnknownCoding,  LineOutOfRange, WrongItemSize,
                          PayloadTooLarge, TooManySamples, CutOff};
    }

    /// A fault in words.
    static const char* faultText(Fault fault);

    StoredPacket stored = {};

    /// Of its head in the element's value.
    std::uint64_t offset = 0;

    /// Bits of `Fault`.
    unsigned faults = 0;
};

struct MXFZELM_EXPORT FrameElement {
    Templates::vector<FoundPacket> packets = {};

    /// Packets that the element claims to have; more than `packets` when it ends before.
    unsigned packetCount = 0;

    /// Bytes behind the last packet; 0 when all of them are 0, with which some writers fill up the element.
    std::uint64_t bytesBehind = 0;
};

/// More lines than an interface has, blanking included.
inline constexpr unsigned mostLines = 4500;

/// Reads the value of an element. No packet goes beyond it: one that claims to is given what there is, or,
/// where its samples say how much that should be, just that, and packets behind it are read. Bytes that fill
/// up to a multiple of four behind a payload, not counted in it, are passed over. `lines` is the number of
/// lines of the interface (1125 for HD), beyond which line numbers are a fault. Throws nothing but
/// std::bad_alloc.
MXFZELM_EXPORT FrameElement readFrameElement(ElementKind kind, DataIO::Chain const& value,
                                             unsigned lines = mostLines);

/// The value of an element; each payload is filled up with zeros to a multiple of four bytes. Throws
/// Exceptions::InvalidLength for more packets, or a larger payload, than the fields can tell of.
MXFZELM_EXPORT DataIO::Chain writeFrameElement(std::span<StoredPacket const> packets);

} // namespace MXF::Zelm::GenericContainer::S436M
