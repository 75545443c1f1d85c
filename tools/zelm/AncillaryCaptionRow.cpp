#include "AncillaryCaptionRow.h"

#include "LayoutOptions.h"

#include <MXF/Zelm/Essence/Ancillary/CaptionPacket.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>

namespace Zelm {

using namespace MXF::Zelm;
using namespace Essence::Ancillary;

namespace {

constexpr std::uint64_t mostSequence = 0xFFFF;

CaptionData dataOf(AncillaryRow const& row) {
    auto const bytes = row.bytes("bytes");
    if (bytes.size() != 2)
        throw BadAncillaryText("\"bytes\" of captions are not two");
    return {row.isTrueOr("valid", true),
            static_cast<CaptionData::Type>(row.number("type", 3)),
            {bytes[0], bytes[1]}};
}

CaptionService serviceOf(AncillaryRow const& row) {
    return {static_cast<unsigned>(row.number("number", 63)), row.isTrueOr("digital", true),
            row.text("language"), row.isTrueOr("easy_reader", false), row.isTrueOr("wide", false)};
}

template <class Part>
void takeEach(AncillaryRow const& row, const char* member, Templates::vector<Part>& parts,
              Part (*partOf)(AncillaryRow const&)) {
    auto const* const list = row.find(member);
    if (list == nullptr)
        return;
    if (!list->is_array())
        throw BadAncillaryText("\"" + std::string(member) + "\" is no list");
    for (auto const& each : *list) {
        if (!each.is_object())
            throw BadAncillaryText("\"" + std::string(member) + "\" holds something that is no object");
        parts.push_back(partOf(AncillaryRow(each)));
    }
}

Utils::TimeCode timecodeOf(AncillaryRow const& row, EditRate const& rate) {
    auto const base = Utils::TimeBase::ofEditRate(rate, false).framesPerSecond();
    return Utils::TimeCode::fromText(Platform::toUtf16(row.text("timecode")), base);
}

CaptionPacket captionsOf(AncillaryRow const& row, std::uint64_t unit) {
    CaptionPacket packet;
    packet.frameRate = parseRate(row.text("frame_rate"));
    packet.sequence =
        static_cast<std::uint16_t>(row.numberOr("sequence", mostSequence, unit % (mostSequence + 1)));
    packet.isCaptionServiceActive = row.isTrueOr("active", true);
    if (row.find("timecode") != nullptr)
        packet.timecode = timecodeOf(row, packet.frameRate);
    takeEach(row, "data", packet.data, dataOf);
    takeEach(row, "services", packet.services, serviceOf);
    return packet;
}

} // namespace

Packet captionPacketOf(AncillaryRow const& row) {
    auto const* const captions = row.find("captions");
    if (captions == nullptr || !captions->is_object())
        throw BadAncillaryText("\"captions\" is no object");
    try {
        auto const packet = captionsOf(AncillaryRow(*captions), row.number("edit_unit", ~std::uint64_t{0}));
        return Packet::ofBytes(captionDID, captionSDID, packet.bytes());
    } catch (Exceptions::BaseException const& failure) {
        throw BadAncillaryText(failure.message());
    }
}

} // namespace Zelm
