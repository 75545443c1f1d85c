#include "MXF/Zelm/Essence/Ancillary/CaptionPacket.h"

#include "MXF/Zelm/Utils/TimeCodeExtended.h"

#include <algorithm>
#include <numeric>

namespace MXF::Zelm::Essence::Ancillary {

namespace {

using Bytes = std::span<unsigned char const>;

constexpr unsigned identifier = 0x9669;
constexpr std::size_t headerSize = 7, footerSize = 3;
constexpr unsigned char serviceActiveFlag = 0x02;

/// By the code in the header; 0 and those behind the last are reserved.
constexpr Templates::Rational<int> frameRates[] = {
    {}, {24000, 1001}, {24, 1}, {25, 1}, {30000, 1001}, {30, 1}, {50, 1}, {60000, 1001}, {60, 1},
};

unsigned readUInt16(Bytes bytes) { return unsigned{bytes[0]} << 8 | bytes[1]; }

/// Reads sections up to the end of the packet; one that goes beyond it ends the reading.
class PacketParser {
public:
    PacketParser(Bytes bytes, CaptionPacket& packet) : rest_(bytes), packet_(packet) {}

    void parse() {
        auto const header = take(headerSize);
        if (header.empty())
            return;
        if (unsigned const code = header[3] >> 4; code < std::size(frameRates))
            packet_.frameRate = frameRates[code];
        packet_.isCaptionServiceActive = (header[4] & serviceActiveFlag) != 0;
        packet_.sequence = static_cast<std::uint16_t>(readUInt16(header.subspan(5)));
        while (!hasFooter_ && packet_.faults == 0 && !rest_.empty())
            parseSection(take(1).front());
        if (!hasFooter_ && packet_.faults == 0)
            packet_.faults |= CaptionPacket::NoFooter;
    }

private:
    /// The next bytes; none, which is a fault, when there are fewer.
    Bytes take(std::size_t size) {
        if (size > rest_.size()) {
            packet_.faults |= CaptionPacket::CutOff;
            return rest_ = {};
        }
        auto const taken = rest_.first(size);
        rest_ = rest_.subspan(size);
        return taken;
    }

    void parseSection(unsigned char id) {
        switch (id) {
        case 0x71:
            return parseTimecode(take(4));
        case 0x72:
            return parseEach(0x1F, 3, &PacketParser::parseData);
        case 0x73:
            return parseEach(0x0F, 7, &PacketParser::parseService);
        case 0x74:
            return parseFooter(take(footerSize));
        default:
            return passOver(id);
        }
    }

    /// A count in the bits of `mask`, then so many parts of `size` bytes.
    void parseEach(unsigned char mask, std::size_t size, void (PacketParser::*parsePart)(Bytes)) {
        auto const head = take(1);
        std::size_t const count = head.empty() ? 0 : head[0] & mask;
        for (std::size_t i = 0; i < count; ++i)
            if (auto const part = take(size); !part.empty())
                (this->*parsePart)(part);
    }

    /// The packed form of SMPTE 331M from its last byte to its first, but for the places of the drop-frame
    /// flag and the field mark.
    void parseTimecode(Bytes bytes) {
        auto const rate = packet_.frameRate;
        if (bytes.empty() || !rate.isKnown())
            return;
        auto const base = Utils::TimeBase::ofEditRate(rate, false).framesPerSecond();
        bool const dropFrame = (bytes[3] & 0x80) != 0, fieldMark = (bytes[2] & 0x80) != 0;
        unsigned char packed[4] = {static_cast<unsigned char>((bytes[3] & 0x3F) | (dropFrame ? 0x40 : 0)),
                                   static_cast<unsigned char>(bytes[2] & 0x7F),
                                   static_cast<unsigned char>(bytes[1] & 0x7F),
                                   static_cast<unsigned char>(bytes[0] & 0x3F)};
        if (fieldMark)
            packed[base % 25 == 0 ? 3 : 1] |= 0x80;
        packet_.timecode = Utils::TimeCodeExtended::fromPacked(packed, base);
    }

    void parseData(Bytes bytes) {
        packet_.data.push_back(
            {(bytes[0] & 0x04) != 0, static_cast<CaptionData::Type>(bytes[0] & 0x03), {bytes[1], bytes[2]}});
    }

    /// A number, then what the caption service descriptor of CEA-708 says of the service.
    void parseService(Bytes bytes) {
        CaptionService service;
        service.isDigital = (bytes[4] & 0x80) != 0;
        service.number = service.isDigital ? bytes[4] & 0x3Fu : (bytes[4] & 0x01u) + 1;
        service.language.assign(bytes.begin() + 1, bytes.begin() + 4);
        service.isEasyReader = (bytes[5] & 0x80) != 0;
        service.isWide = (bytes[5] & 0x40) != 0;
        packet_.services.push_back(std::move(service));
    }

    void parseFooter(Bytes bytes) {
        hasFooter_ = true;
        if (!bytes.empty() && readUInt16(bytes) != packet_.sequence)
            packet_.faults |= CaptionPacket::OtherSequence;
    }

    void passOver(unsigned char id) {
        if (id < 0x75 || id > 0xEF)
            packet_.faults |= CaptionPacket::UnknownSection;
        else if (auto const length = take(1); !length.empty())
            take(length.front());
    }

    Bytes rest_;
    CaptionPacket& packet_;
    bool hasFooter_ = false;
};

} // namespace

const char* CaptionPacket::faultText(Fault fault) {
    switch (fault) {
    case NotCaptions:
        return "holds no captions";
    case WrongLength:
        return "holds captions of another length than these say";
    case CutOff:
        return "holds captions with a section that is cut off";
    case UnknownSection:
        return "holds captions with an unknown section";
    case WrongChecksum:
        return "holds captions with a wrong checksum";
    case OtherSequence:
        return "holds captions with two different sequence counters";
    case NoFooter:
        return "holds captions without an end";
    }
    return "";
}

CaptionPacket readCaptionPacket(Bytes userData) {
    CaptionPacket packet;
    if (userData.size() < headerSize || readUInt16(userData) != identifier) {
        packet.faults = CaptionPacket::NotCaptions;
        return packet;
    }
    std::size_t const length = userData[2];
    auto const bytes = userData.first(std::min(length, userData.size()));
    PacketParser(bytes, packet).parse();
    if (length != userData.size())
        packet.faults |= CaptionPacket::WrongLength;
    if (std::accumulate(bytes.begin(), bytes.end(), 0u) % 256 != 0)
        packet.faults |= CaptionPacket::WrongChecksum;
    return packet;
}

} // namespace MXF::Zelm::Essence::Ancillary
