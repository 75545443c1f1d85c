/// Index table segments, compared item by item:
///
///     key       16
///     length        BER
///     items         tag (2), length (2), value
#include "Alignment.h"
#include "BodyWalk.h"
#include "ClassTree.h"
#include "Diff.h"
#include "Text.h"
#include "ValueText.h"

#include <MXF/Zelm/ByteCoders/BigEndian.h>

#include <map>
#include <tuple>

namespace Zelm {

using namespace MXF::Zelm;
using ByteCoders::decodeInteger;

namespace {

using Bytes = std::vector<unsigned char>;
using Items = std::map<std::uint16_t, Bytes>;

/// A segment has up to a few hundred items of up to 64 KiB; of one that is longer only the length is
/// compared.
constexpr std::uint64_t largestSegment = std::uint64_t{1} << 26;
constexpr std::size_t mostBytesShown = 16;

constexpr std::uint16_t instanceUIDTag = 0x3C0A;
constexpr std::uint16_t indexSIDTag = 0x3F06;
constexpr std::uint16_t bodySIDTag = 0x3F07;
constexpr std::uint16_t deltaEntryArrayTag = 0x3F09;
constexpr std::uint16_t indexEntryArrayTag = 0x3F0A;
constexpr std::uint16_t editRateTag = 0x3F0B;
constexpr std::uint16_t startPositionTag = 0x3F0C;

struct Segment {
    KlvWalk::Packet packet;
    std::uint32_t indexSID = 0;
    std::uint32_t bodySID = 0;
    std::int64_t start = 0;

    auto role() const { return std::tuple(indexSID, bodySID, start); }
};

/// A big-endian integer of up to 8 bytes.
std::uint64_t integerOf(Bytes const& bytes) {
    std::uint64_t value = 0;
    for (auto const byte : bytes)
        value = value << 8 | byte;
    return value;
}

/// The items of a segment; of a repeated tag the first. What is no item stands under the tag 0.
Items readItems(DiffSide& side, KlvWalk::Packet const& packet) {
    constexpr std::size_t headSize = 4;
    Items items;
    if (packet.present > largestSegment)
        return items;
    side.input.source.seek(packet.valueOffset());
    KLV::Value value(side.input.source, packet.present);
    auto const bytes = value.readRemaining();
    std::size_t at = 0;
    while (bytes.size() - at >= headSize) {
        auto const tag = decodeInteger<std::uint16_t>(bytes.data() + at);
        std::size_t const size = decodeInteger<std::uint16_t>(bytes.data() + at + 2);
        if (bytes.size() - at - headSize < size)
            break;
        auto const first = bytes.begin() + static_cast<std::ptrdiff_t>(at + headSize);
        items.emplace(tag, Bytes(first, first + static_cast<std::ptrdiff_t>(size)));
        at += headSize + size;
    }
    if (at < bytes.size())
        items[0] = Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end());
    return items;
}

std::uint64_t integerItem(Items const& items, std::uint16_t tag) {
    auto const found = items.find(tag);
    return found != items.end() && found->second.size() <= 8 ? integerOf(found->second) : 0;
}

std::vector<Segment> segmentsOf(DiffSide& side) {
    std::vector<Segment> segments;
    BodyWalk walk(side.input, side.survey, BodyWalk::Kind::IndexSegments);
    KlvWalk::Packet packet;
    while (walk.next(packet)) {
        auto const items = readItems(side, packet);
        segments.push_back({packet, static_cast<std::uint32_t>(integerItem(items, indexSIDTag)),
                            static_cast<std::uint32_t>(integerItem(items, bodySIDTag)),
                            static_cast<std::int64_t>(integerItem(items, startPositionTag))});
    }
    if (walk.fault() && !side.survey.fault)
        side.faults.push_back(*walk.fault());
    return segments;
}

std::string itemName(std::uint16_t tag, MetaMetadata::Dictionary const& dictionary) {
    Types::LocalTag const localTag(tag);
    if (auto const* const label = dictionary.find(localTag))
        if (auto const* const element = dictionary.findMetaElement(*label))
            return preferredName(*element);
    return tag == 0 ? "bytes that are no item" : "tag " + hex(tag);
}

/// An array: a 4-byte count, a 4-byte entry size, the entries.
std::string arrayText(Bytes const& bytes, Bytes const& other) {
    constexpr std::size_t headSize = 8;
    if (bytes.size() < headSize)
        return bytesText(bytes.data(), bytes.size(), mostBytesShown);
    auto const size = decodeInteger<std::uint32_t>(bytes.data() + 4);
    std::string const text =
        grouped(decodeInteger<std::uint32_t>(bytes.data())) + " entries of " + grouped(size) + " bytes";
    auto const differs = std::mismatch(bytes.begin(), bytes.end(), other.begin(), other.end()).first;
    auto const place = static_cast<std::size_t>(differs - bytes.begin());
    if (place < headSize || size == 0 || place == bytes.size())
        return text;
    std::size_t const entry = (place - headSize) / size, start = headSize + entry * size;
    return text + ", entry " + grouped(entry) + " " +
           bytesText(bytes.data() + start, std::min<std::size_t>(size, bytes.size() - start), mostBytesShown);
}

std::string itemText(std::uint16_t tag, Bytes const& bytes, Bytes const& other) {
    if (tag == deltaEntryArrayTag || tag == indexEntryArrayTag)
        return arrayText(bytes, other);
    if (tag == editRateTag && bytes.size() == 8)
        return std::to_string(decodeInteger<std::int32_t>(bytes.data())) + "/" +
               std::to_string(decodeInteger<std::int32_t>(bytes.data() + 4));
    bool const integer = tag >> 8 == 0x3F && !bytes.empty() && bytes.size() <= 8;
    return integer ? grouped(integerOf(bytes)) : bytesText(bytes.data(), bytes.size(), mostBytesShown);
}

std::string segmentText(Segment const& segment) {
    return "IndexSID " + std::to_string(segment.indexSID) + ", BodySID " + std::to_string(segment.bodySID) +
           ", from edit unit " + std::to_string(segment.start) + ", at " + hex(segment.packet.offset);
}

void compareSegments(DiffSide& a, Segment const& segmentA, DiffSide& b, Segment const& segmentB,
                     std::string const& place, DiffFindings& findings) {
    auto const itemsA = readItems(a, segmentA.packet), itemsB = readItems(b, segmentB.packet);
    auto all = itemsA;
    all.insert(itemsB.begin(), itemsB.end());
    if (itemsA == itemsB)
        findings.compare(DiffArea::Index, place + "/length", grouped(segmentA.packet.length),
                         grouped(segmentB.packet.length));
    for (auto const& [tag, bytes] : all) {
        auto const inA = itemsA.find(tag), inB = itemsB.find(tag);
        bool const hasA = inA != itemsA.end(), hasB = inB != itemsB.end();
        if ((hasA && hasB && inA->second == inB->second) ||
            (tag == instanceUIDTag && !findings.options().identifiers))
            continue;
        std::optional<DiffValue> valueA, valueB;
        if (hasA)
            valueA = itemText(tag, inA->second, hasB ? inB->second : Bytes());
        if (hasB)
            valueB = itemText(tag, inB->second, hasA ? inA->second : Bytes());
        findings.add(DiffArea::Index, place + "/" + itemName(tag, *a.input.reader.dictionary()),
                     std::move(valueA), std::move(valueB));
    }
}

} // namespace

void diffIndex(DiffSide& a, DiffSide& b, DiffFindings& findings) {
    auto const inA = segmentsOf(a), inB = segmentsOf(b);
    auto const same = [&](std::size_t i, std::size_t j) { return inA[i].role() == inB[j].role(); };
    auto const alike = [](std::size_t, std::size_t) { return true; };
    for (auto const& pair : align(inA.size(), inB.size(), same, alike)) {
        bool const onlyB = pair.a == AlignedPair::none;
        std::string const place = "segment " + std::to_string(onlyB ? pair.b : pair.a);
        if (pair.isWhole())
            compareSegments(a, inA[pair.a], b, inB[pair.b], place, findings);
        else if (onlyB)
            findings.add(DiffArea::Index, place, std::nullopt, DiffValue(segmentText(inB[pair.b])));
        else
            findings.add(DiffArea::Index, place, DiffValue(segmentText(inA[pair.a])), std::nullopt);
    }
}

} // namespace Zelm
