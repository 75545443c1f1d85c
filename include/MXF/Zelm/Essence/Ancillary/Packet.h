/// Ancillary data packets: what travels in the blanking of a serial video interface (SMPTE 291M).
///
///     000 3FF 3FF   DID   SDID or DBN   DC   user data words, DC of them   CS
///     data flag     \_______________ summed up in the checksum ________/
///
/// A word has 10 bits. Values of 8 bits stand in bits 7 to 0, even parity of these in bit 8 and its opposite
/// in bit 9; user data may use all 10. What stores packets leaves the data flag out, often also the checksum,
/// and often keeps the low 8 bits of each word alone.
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Templates/Containers.h"

#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <span>

namespace MXF::Zelm::Essence::Ancillary {

/// 10 bits, the upper ones of the type being 0.
using Word = std::uint16_t;

/// The word of a value of 8 bits.
constexpr Word withParity(unsigned char value) {
    return static_cast<Word>(value | (std::popcount(value) % 2 != 0 ? 0x100 : 0x200));
}

/// Whether bits 9 and 8 are those of a value of 8 bits.
constexpr bool hasParity(Word word) { return word == withParity(static_cast<unsigned char>(word & 0xFF)); }

/// The checksum of the words from the DID to the last of the user data: their low 9 bits summed up, and the
/// opposite of bit 8 in bit 9.
MXFZELM_EXPORT Word checksum(std::span<Word const> words);

/// A packet. A value.
struct MXFZELM_EXPORT Packet {
    static constexpr std::size_t mostUserData = 255;

    /// Data identifier; 0 is undefined, 80 marks a packet that was deleted.
    unsigned char did = 0;

    /// Secondary data identifier of a packet of type 2, data block number of one of type 1.
    unsigned char sdid = 0;

    /// Words of 10 bits, up to `mostUserData`.
    Templates::vector<Word> userData = {};

    /// With user data of 8 bits.
    static Packet ofBytes(unsigned char did, unsigned char sdid, std::span<unsigned char const> userData);

    bool isType1() const { return (did & 0x80) != 0; }

    /// The low 8 bits of the user data.
    Templates::vector<unsigned char> bytes() const;

    friend bool operator==(Packet const&, Packet const&) = default;
};

/// Bits kept of each word.
enum class Precision { Bits8, Bits10 };

/// The words from the DID on, with the checksum when it is wanted. Of `Bits8` each is below 0x100. Throws
/// Exceptions::InvalidLength for more user data than a packet holds.
MXFZELM_EXPORT Templates::vector<Word> wordsOf(Packet const& packet, Precision precision, bool withChecksum);

/// A packet as it was found, with as much of its user data as there is.
struct MXFZELM_EXPORT ReadPacket {
    /// What may be wrong; a bit each.
    enum Fault : unsigned {
        TooShort = 0x01,      ///< not even DID, SDID and data count are there
        CountTooLarge = 0x02, ///< the data count tells of more words than there are
        WrongChecksum = 0x04,
        WrongParity = 0x08, ///< of DID, SDID or data count
        WordsBehind = 0x10, ///< there are more words than the data count tells of
    };

    static constexpr auto everyFault() {
        return std::array{TooShort, CountTooLarge, WrongChecksum, WrongParity, WordsBehind};
    }

    /// A fault in words.
    static const char* faultText(Fault fault);

    Packet packet = {};

    /// User data words that the packet claims to have.
    unsigned dataCount = 0;

    /// As it was found; absent when it is not stored. Of `Bits8` its low 8 bits.
    std::optional<Word> checksum = std::nullopt;

    /// Bits of `Fault`.
    unsigned faults = 0;
};

/// Reads a packet from its words: from the DID on, or with the data flag before it; with the checksum or
/// without. Of `Bits8` the low 8 bits count, and user data gets its parity. Zeros that fill up to a multiple
/// of four words are no fault. Throws nothing.
MXFZELM_EXPORT ReadPacket readPacket(std::span<Word const> words, Precision precision);

} // namespace MXF::Zelm::Essence::Ancillary
