/// The caption distribution packet in an ancillary data packet, DID 61, SDID 01 (SMPTE 334M): captions of one
/// frame, of CEA-608 and CEA-708.
///
///     9669, length, frame rate, flags, sequence counter          header
///     71, timecode
///     72, count, count times: valid and type, two bytes          caption data
///     73, count, count times: number, language, flags            caption services
///     75 to EF, length, …                                        further sections, passed over
///     74, sequence counter, checksum                             footer
#pragma once

#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Utils/TimeCode.h"

#include <array>
#include <optional>
#include <span>
#include <string>

namespace MXF::Zelm::Essence::Ancillary {

inline constexpr unsigned char captionDID = 0x61, captionSDID = 0x01;

/// Two bytes of captions.
struct CaptionData {
    enum Type : unsigned char {
        Field1 = 0,         ///< a pair of CEA-608, with parity
        Field2 = 1,         ///< the same, of the second field
        DTVCCContinues = 2, ///< of a packet of CEA-708
        DTVCCStarts = 3,
    };

    bool isValid = false;
    Type type = Field1;
    std::array<unsigned char, 2> bytes = {};

    friend bool operator==(CaptionData const&, CaptionData const&) = default;
};

/// A caption service that the packet announces.
struct CaptionService {
    /// Of a service of CEA-708, 1 to 63; of CEA-608, the field: 1 or 2.
    unsigned number = 0;
    bool isDigital = false; ///< of CEA-708

    /// Three letters (ISO 639-2), control characters as they are.
    std::string language = {};
    bool isEasyReader = false;
    bool isWide = false; ///< made for 16:9

    friend bool operator==(CaptionService const&, CaptionService const&) = default;
};

/// A packet as it was found, with as much of it as can be read. A value.
struct MXFZELM_EXPORT CaptionPacket {
    /// What may be wrong; a bit each.
    enum Fault : unsigned {
        NotCaptions = 0x01, ///< it does not begin with 9669
        WrongLength = 0x02, ///< it has another number of bytes than it says
        CutOff = 0x04,      ///< a section goes beyond the end
        UnknownSection = 0x08,
        WrongChecksum = 0x10,
        OtherSequence = 0x20, ///< footer and header have different sequence counters
        NoFooter = 0x40,
    };

    static constexpr auto everyFault() {
        return std::array{NotCaptions,   WrongLength,   CutOff,  UnknownSection,
                          WrongChecksum, OtherSequence, NoFooter};
    }

    static const char* faultText(Fault fault);

    /// Frames a second; not known for a code that is reserved.
    Templates::Rational<int> frameRate = {};
    bool isCaptionServiceActive = false;
    std::uint16_t sequence = 0;

    /// Undefined when the packet has none, or one that no frame has.
    Utils::TimeCode timecode = {};

    Templates::vector<CaptionData> data = {};
    Templates::vector<CaptionService> services = {};

    /// Bits of `Fault`.
    unsigned faults = 0;

    static constexpr std::size_t mostData = 31, mostServices = 15;

    /// The user data of a packet with this content, checksum included; `faults` are passed over. The timecode
    /// is left out when it is undefined, a section of services when there are none. Services are told whole,
    /// in one packet. Throws Exceptions::InvalidValue for a frame rate that has no code, a timecode of
    /// another rate, more data or services than a packet holds, and a service that cannot be told.
    Templates::vector<unsigned char> bytes() const;
};

/// Reads the user data of a packet. Throws nothing.
MXFZELM_EXPORT CaptionPacket readCaptionPacket(std::span<unsigned char const> userData);

} // namespace MXF::Zelm::Essence::Ancillary
