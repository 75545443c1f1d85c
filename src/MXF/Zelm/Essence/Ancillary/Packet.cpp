#include "MXF/Zelm/Essence/Ancillary/Packet.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <numeric>
#include <string>

namespace MXF::Zelm::Essence::Ancillary {

namespace {

constexpr std::size_t headWords = 3; // DID, SDID, data count

unsigned char low8(Word word) { return static_cast<unsigned char>(word & 0xFF); }

/// Words of packets begin with a DID, and that is never 0.
std::span<Word const> withoutDataFlag(std::span<Word const> words) {
    bool const isFlag =
        words.size() >= 3 && low8(words[0]) == 0 && low8(words[1]) == 0xFF && low8(words[2]) == 0xFF;
    return isFlag ? words.subspan(3) : words;
}

/// Zeros that some writers count as samples.
bool isPadding(std::span<Word const> words) {
    return words.size() < 4 && std::all_of(words.begin(), words.end(), [](Word word) { return word == 0; });
}

/// What stands behind the user data, which ought to be `expected`.
void readEnd(std::span<Word const> rest, Word expected, ReadPacket& found) {
    if (rest.empty() || (rest.front() != expected && isPadding(rest)))
        return;
    found.checksum = rest.front();
    if (rest.front() != expected)
        found.faults |= ReadPacket::WrongChecksum;
    if (!isPadding(rest.subspan(1)))
        found.faults |= ReadPacket::WordsBehind;
}

} // namespace

Word checksum(std::span<Word const> words) {
    auto const sum = std::accumulate(words.begin(), words.end(), 0u,
                                     [](unsigned total, Word word) { return (total + word) & 0x1FF; });
    return static_cast<Word>(sum | ((sum & 0x100) != 0 ? 0 : 0x200));
}

Packet Packet::ofBytes(unsigned char did, unsigned char sdid, std::span<unsigned char const> userData) {
    Packet packet{did, sdid, Templates::vector<Word>(userData.size())};
    std::transform(userData.begin(), userData.end(), packet.userData.begin(), withParity);
    return packet;
}

Templates::vector<unsigned char> Packet::bytes() const {
    Templates::vector<unsigned char> values(userData.size());
    std::transform(userData.begin(), userData.end(), values.begin(), low8);
    return values;
}

Templates::vector<Word> wordsOf(Packet const& packet, Precision precision, bool withChecksum) {
    if (packet.userData.size() > Packet::mostUserData)
        throw Exceptions::InvalidLength("An ancillary data packet holds 255 user data words at most, not " +
                                        std::to_string(packet.userData.size()));
    Templates::vector<Word> words{withParity(packet.did), withParity(packet.sdid),
                                  withParity(static_cast<unsigned char>(packet.userData.size()))};
    words.insert(words.end(), packet.userData.begin(), packet.userData.end());
    if (withChecksum)
        words.push_back(checksum(words));
    if (precision == Precision::Bits8)
        std::transform(words.begin(), words.end(), words.begin(), low8);
    return words;
}

const char* ReadPacket::faultText(Fault fault) {
    switch (fault) {
    case TooShort:
        return "is too short for a packet";
    case CountTooLarge:
        return "has fewer user data words than its data count says";
    case WrongChecksum:
        return "has a wrong checksum";
    case WrongParity:
        return "has wrong parity in DID, SDID or data count";
    case WordsBehind:
        return "has more user data words than its data count says";
    }
    return "";
}

ReadPacket readPacket(std::span<Word const> words, Precision precision) {
    ReadPacket found;
    words = withoutDataFlag(words);
    if (words.size() < headWords) {
        found.packet.did = words.empty() ? 0 : low8(words[0]);
        found.packet.sdid = words.size() < 2 ? 0 : low8(words[1]);
        found.faults = ReadPacket::TooShort;
        return found;
    }
    found.packet.did = low8(words[0]);
    found.packet.sdid = low8(words[1]);
    found.dataCount = low8(words[2]);
    if (precision == Precision::Bits10 && !std::all_of(words.begin(), words.begin() + headWords, hasParity))
        found.faults |= ReadPacket::WrongParity;
    std::size_t const count = std::min<std::size_t>(found.dataCount, words.size() - headWords);
    if (found.dataCount > count)
        found.faults |= ReadPacket::CountTooLarge;
    for (Word const word : words.subspan(headWords, count))
        found.packet.userData.push_back(precision == Precision::Bits8 ? withParity(low8(word)) : word);
    Word const expected = precision == Precision::Bits8 ? wordsOf(found.packet, precision, true).back()
                                                        : checksum(words.first(headWords + count));
    readEnd(words.subspan(headWords + count), expected, found);
    return found;
}

} // namespace MXF::Zelm::Essence::Ancillary
