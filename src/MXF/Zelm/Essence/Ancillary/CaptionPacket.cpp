#include "MXF/Zelm/Essence/Ancillary/CaptionPacket.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Utils/TimeCodeExtended.h"

#include <algorithm>
#include <initializer_list>
#include <numeric>
#include <string>
#include <utility>

namespace MXF::Zelm::Essence::Ancillary {

namespace {

using Bytes = std::span<unsigned char const>;

constexpr unsigned identifier = 0x9669;
constexpr std::size_t headerSize = 7, footerSize = 3;
constexpr unsigned char serviceActiveFlag = 0x02;
constexpr unsigned char timecodeId = 0x71, dataId = 0x72, servicesId = 0x73, footerId = 0x74;

/// Where the packed form of a timecode has the field mark.
std::size_t fieldMarkByte(unsigned framesPerSecond) { return framesPerSecond % 25 == 0 ? 3 : 1; }

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
        case timecodeId:
            return parseTimecode(take(4));
        case dataId:
            return parseEach(0x1F, 3, &PacketParser::parseData);
        case servicesId:
            return parseEach(0x0F, 7, &PacketParser::parseService);
        case footerId:
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
            packed[fieldMarkByte(base)] |= 0x80;
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

/// Makes the sections of a packet; the header is completed and the footer added at the end.
class PacketMaker {
public:
    explicit PacketMaker(CaptionPacket const& packet) : packet_(packet), bytes_(headerSize) {}

    Templates::vector<unsigned char> make() {
        unsigned flags = reservedFlag | dataFlag | (packet_.isCaptionServiceActive ? serviceActiveFlag : 0u);
        if (packet_.timecode.isDefined()) {
            flags |= timecodeFlag;
            addTimecode();
        }
        addData();
        if (!packet_.services.empty()) {
            flags |= servicesFlag | wholeServicesFlags;
            addServices();
        }
        add({footerId, unsigned{packet_.sequence} >> 8, packet_.sequence, 0});
        completeHeader(flags);
        bytes_.back() = static_cast<unsigned char>(0u - std::accumulate(bytes_.begin(), bytes_.end(), 0u));
        return std::move(bytes_);
    }

private:
    static constexpr unsigned timecodeFlag = 0x80, dataFlag = 0x40, servicesFlag = 0x20,
                              wholeServicesFlags = 0x14, // they begin here and are complete
        reservedFlag = 0x01;

    static void require(bool isRight, const char* what) {
        if (!isRight)
            throw Exceptions::InvalidValue("A caption packet cannot have " + std::string(what));
    }

    void add(std::initializer_list<unsigned> bytes) {
        for (unsigned const byte : bytes)
            bytes_.push_back(static_cast<unsigned char>(byte & 0xFF));
    }

    void addTimecode() {
        auto const base = packet_.timecode.base().framesPerSecond();
        require(packet_.frameRate.isKnown() &&
                    base == Utils::TimeBase::ofEditRate(packet_.frameRate, false).framesPerSecond(),
                "a timecode of another frame rate");
        auto const packed = packet_.timecode.packed();
        unsigned const dropFrame = (packed[0] & 0x40u) << 1u, mark = packed[fieldMarkByte(base)] & 0x80u;
        add({timecodeId, 0xC0u | (packed[3] & 0x3Fu), 0x80u | (packed[2] & 0x7Fu), mark | (packed[1] & 0x7Fu),
             dropFrame | (packed[0] & 0x3Fu)});
    }

    void addData() {
        require(packet_.data.size() <= CaptionPacket::mostData, "more than 31 pairs of bytes");
        add({dataId, 0xE0u | static_cast<unsigned>(packet_.data.size())});
        for (auto const& data : packet_.data)
            add({0xF8u | (data.isValid ? 0x04u : 0u) | (data.type & 0x03u), data.bytes[0], data.bytes[1]});
    }

    void addServices() {
        require(packet_.services.size() <= CaptionPacket::mostServices, "more than 15 services");
        add({servicesId, 0xD0u | static_cast<unsigned>(packet_.services.size())});
        for (auto const& service : packet_.services)
            addService(service);
    }

    /// Numbers above 31 have six bits, which bit 6 tells. Services of CEA-608 have none, but a field.
    void addService(CaptionService const& service) {
        unsigned const number = service.isDigital ? service.number : 0;
        require(service.number >= 1 && service.number <= (service.isDigital ? 63u : 2u),
                "a service of this number");
        require(service.language.size() == 3, "a language that has not three letters");
        add({number > 31 ? 0xC0u | number : 0xA0u | number});
        for (char const letter : service.language)
            add({static_cast<unsigned char>(letter)});
        add({service.isDigital ? 0xC0u | number : 0x7Eu | (service.number - 1),
             (service.isEasyReader ? 0x80u : 0u) | (service.isWide ? 0x40u : 0u) | 0x3Fu, 0xFF});
    }

    void completeHeader(unsigned flags) {
        auto const code = std::find(std::begin(frameRates) + 1, std::end(frameRates), packet_.frameRate);
        require(code != std::end(frameRates), "this frame rate");
        require(bytes_.size() <= 0xFF, "more than 255 bytes");
        auto const rate = static_cast<unsigned>(code - std::begin(frameRates));
        auto const made = std::exchange(bytes_, {});
        add({identifier >> 8, identifier, static_cast<unsigned>(made.size()), rate << 4u | 0x0Fu, flags,
             unsigned{packet_.sequence} >> 8, packet_.sequence});
        bytes_.insert(bytes_.end(), made.begin() + static_cast<std::ptrdiff_t>(headerSize), made.end());
    }

    CaptionPacket const& packet_;
    Templates::vector<unsigned char> bytes_;
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

Templates::vector<unsigned char> CaptionPacket::bytes() const { return PacketMaker(*this).make(); }

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
