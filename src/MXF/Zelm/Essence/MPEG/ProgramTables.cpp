#include "MXF/Zelm/Essence/MPEG/ProgramTables.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

#include <algorithm>

namespace MXF::Zelm::Essence::MPEG {

namespace {

constexpr std::size_t headSize = 3, commonSize = 8, crcSize = 4;
constexpr std::uint8_t associationTable = 0, mapTable = 2, stuffing = 0xFF, registrationTag = 5;

std::uint16_t number(const unsigned char* bytes) { return ByteCoders::decodeInteger<std::uint16_t>(bytes); }

/// The lower 13 or 12 bits of a field.
std::uint16_t identifier(const unsigned char* bytes) { return number(bytes) & 0x1FFF; }
std::size_t length(const unsigned char* bytes) { return number(bytes) & 0xFFFu; }

/// x^32 + x^26 + x^23 + … + 1, preset to ones: 0 over a section with its CRC.
std::uint32_t crc(std::vector<unsigned char> const& bytes) {
    std::uint32_t value = 0xFFFFFFFF;
    for (unsigned char const byte : bytes) {
        value ^= std::uint32_t{byte} << 24;
        for (int i = 0; i < 8; ++i)
            value = value << 1 ^ ((value & 0x80000000u) != 0 ? 0x04C11DB7u : 0u);
    }
    return value;
}

/// Whether it is the table that is in force.
bool isTable(std::vector<unsigned char> const& section, std::uint8_t table, std::size_t smallest) {
    return section.size() >= smallest + crcSize && section[0] == table && (section[5] & 1u) != 0;
}

/// The identifier of a registration among descriptors, 0 for none.
std::uint32_t registration(const unsigned char* bytes, std::size_t size) {
    for (std::size_t at = 0; at + 2 <= size; at += 2 + std::size_t{bytes[at + 1]})
        if (bytes[at] == registrationTag && bytes[at + 1] >= 4 && size - at >= 6)
            return ByteCoders::decodeInteger<std::uint32_t>(bytes + at + 2);
    return 0;
}

} // namespace

std::vector<std::vector<unsigned char>> SectionCollector::push(const unsigned char* payload, std::size_t size,
                                                               bool beginsSection) {
    Sections sections;
    if (beginsSection && size > 0) {
        std::size_t const pointer = std::min<std::size_t>(payload[0], size - 1);
        add(payload + 1, pointer, sections);
        payload += 1 + pointer;
        size -= 1 + pointer;
        bytes_.clear();
        isRunning_ = true;
    }
    add(payload, size, sections);
    return sections;
}

void SectionCollector::add(const unsigned char* bytes, std::size_t size, Sections& sections) {
    if (!isRunning_)
        return;
    bytes_.insert(bytes_.end(), bytes, bytes + size);
    std::size_t at = 0;
    while (bytes_.size() - at >= headSize && bytes_[at] != stuffing) {
        std::size_t const whole = headSize + length(bytes_.data() + at + 1);
        if (bytes_.size() - at < whole)
            break;
        auto const begin = bytes_.begin() + static_cast<std::ptrdiff_t>(at);
        sections.emplace_back(begin, begin + static_cast<std::ptrdiff_t>(whole));
        if (crc(sections.back()) != 0)
            sections.pop_back();
        at += whole;
    }
    bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(at));
    isRunning_ = bytes_.empty() || bytes_.front() != stuffing;
}

std::vector<ProgramEntry> readAssociation(std::vector<unsigned char> const& section) {
    std::vector<ProgramEntry> entries;
    if (!isTable(section, associationTable, commonSize))
        return entries;
    for (std::size_t at = commonSize; at + 4 <= section.size() - crcSize; at += 4)
        if (number(&section[at]) != 0) // 0 is the network's
            entries.push_back({number(&section[at]), identifier(&section[at + 2])});
    return entries;
}

std::optional<ProgramMap> readProgramMap(std::vector<unsigned char> const& section) {
    constexpr std::size_t infoLengthAt = 10, entrySize = 5;
    if (!isTable(section, mapTable, infoLengthAt + 2))
        return std::nullopt;
    ProgramMap map = {number(&section[3])};
    std::size_t const end = section.size() - crcSize;
    std::size_t at = infoLengthAt + 2 + length(&section[infoLengthAt]);
    while (at + entrySize <= end) {
        StreamInfo info;
        info.streamType = section[at];
        info.id = identifier(&section[at + 1]);
        std::size_t const infoSize = std::min(length(&section[at + 3]), end - at - entrySize);
        info.registration = registration(section.data() + at + entrySize, infoSize);
        info.coding = codingOf(info.streamType, info.registration);
        map.streams.push_back(info);
        at += entrySize + infoSize;
    }
    return map;
}

} // namespace MXF::Zelm::Essence::MPEG
