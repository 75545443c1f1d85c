/// Packets of VBI and ANC counted by what they are. Memory does not grow with the file beyond the number of
/// different packets.
#pragma once

#include "AncillaryContent.h"

#include <map>
#include <set>

namespace Zelm {

/// How often something occurs, and in which edit units.
struct Occurrence {
    std::uint64_t count = 0;
    std::int64_t first = 0, last = 0;

    void add(std::int64_t unit) {
        first = count++ == 0 ? unit : first;
        last = unit;
    }
};

/// Packets with one DID and SDID (of type 1 one DID), or one VBI line sampled in one way.
struct TalliedPackets {
    struct Fact : Occurrence {
        std::string firstDetail, lastDetail;
    };

    /// Lines, formats and services beyond so many are not told apart.
    static constexpr std::size_t mostLinesKept = 32, mostFacts = 32;

    std::string identifier, name;
    std::uint8_t did = 0, sdid = 0; ///< of ANC
    Occurrence packets;
    std::set<unsigned> lines; ///< one more than `mostLinesKept` at most
    std::map<std::string, Fact> facts;

    void add(AncillaryPacket const& packet);
};

struct TalliedFault : Occurrence {
    std::uint64_t offset = 0; ///< of the first, in the file
};

struct TalliedTrack {
    AncillaryTrack const* track = nullptr;
    std::uint64_t elements = 0, packets = 0;
    std::map<std::uint32_t, TalliedPackets> rows; ///< by DID and SDID, or by line and coding
    std::map<std::string, TalliedFault> faults;

    void add(AncillaryPacket const& packet);
    void add(std::int64_t unit, Fault const& fault);
};

} // namespace Zelm
