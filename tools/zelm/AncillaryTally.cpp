#include "AncillaryTally.h"

namespace Zelm {

namespace {

/// A broken file may have any number of kinds; those beyond share a row behind the others.
constexpr std::size_t mostRows = 4096;
constexpr std::uint32_t furtherKey = ~std::uint32_t{0};

/// Orders rows as they are printed.
std::uint32_t rowKey(AncillaryPacket const& packet) {
    auto const& stored = packet.found.stored;
    auto const& content = packet.content.packet;
    if (packet.track.isANC())
        return std::uint32_t{content.did} << 8 | (content.isType1() ? 0u : content.sdid);
    return stored.line() << 12 | stored.field() << 8 | static_cast<std::uint32_t>(stored.coding);
}

} // namespace

void TalliedPackets::add(AncillaryPacket const& packet) {
    if (packets.count == 0) {
        identifier = identifierText(packet);
        name = identifierNameText(packet);
        did = packet.content.packet.did;
        sdid = packet.content.packet.sdid;
    }
    packets.add(packet.unit);
    if (lines.size() <= mostLinesKept)
        lines.insert(packet.found.stored.line());
    for (auto& [what, detail] : contentFacts(packet)) {
        auto fact = facts.find(what);
        if (fact == facts.end()) {
            if (facts.size() == mostFacts)
                continue;
            fact = facts.emplace(what, Fact()).first;
            fact->second.firstDetail = detail;
        }
        fact->second.add(packet.unit);
        fact->second.lastDetail = std::move(detail);
    }
}

void TalliedTrack::add(AncillaryPacket const& packet) {
    ++packets;
    auto const key = rowKey(packet);
    bool const isKept = rows.size() < mostRows || rows.contains(key);
    auto& row = rows[isKept ? key : furtherKey];
    row.add(packet);
    if (!isKept)
        row.identifier = row.name = "others";
    for (auto const* const text : faultTexts(packet))
        add(packet.unit, {(track->isANC() ? "a packet " : "a line ") + std::string(text), packet.offset});
}

void TalliedTrack::add(std::int64_t unit, Fault const& fault) {
    auto& row = faults[fault.message];
    if (row.count == 0)
        row.offset = fault.offset;
    row.add(unit);
}

} // namespace Zelm
