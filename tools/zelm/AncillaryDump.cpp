/// `zelm ancillary --dump`: each packet, with its bytes.
#include "AncillaryContent.h"
#include "AncillaryRows.h"
#include "AncillaryStored.h"
#include "Text.h"
#include "TimeText.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>

namespace Zelm {

using namespace MXF::Zelm;
using namespace GenericContainer::S436M;

namespace {

std::string payloadText(StoredPacket const& stored) {
    return ByteCoders::toHexadecimal(stored.payload.data(), stored.payload.size());
}

/// "12 10:00:00:12".
std::string unitText(AncillaryTrack const& track, std::int64_t unit) {
    auto const timecode = track.timecodeText(unit);
    return std::to_string(unit) + (timecode ? " " + *timecode : "");
}

std::string joined(std::vector<const char*> const& texts) {
    std::string all;
    for (auto const* const text : texts)
        all += (all.empty() ? "" : ", ") + std::string(text);
    return all;
}

std::string lineOf(AncillaryPacket const& packet, std::vector<const char*> const& faults) {
    auto const& stored = packet.found.stored;
    bool const isANC = packet.track.isANC();
    std::string text = unitText(packet.track, packet.unit) + "  " + packet.track.kindText() + " line " +
                       std::to_string(stored.line()) + ", " + textOf(stored.wrapping) + ", " +
                       textOf(stored.coding);
    if (isANC)
        text += "  " + identifierText(packet) + " " + identifierNameText(packet);
    text += "  " + std::to_string(isANC ? packet.content.packet.userData.size() : stored.sampleCount) + ": " +
            bytesText(packet);
    if (auto const content = contentText(packet); !content.empty())
        text += "  " + content;
    if (!faults.empty())
        text += "  ! " + joined(faults);
    return text;
}

Json jsonOf(AncillaryPacket const& packet, std::vector<const char*> const& faults) {
    auto const& stored = packet.found.stored;
    auto const& content = packet.content;
    bool const isANC = packet.track.isANC();
    Json json{{"edit_unit", packet.unit},
              {"timecode", orNull(packet.track.timecodeText(packet.unit))},
              {"kind", packet.track.kindText()},
              {"body_sid", packet.track.bodySID},
              {"track_id", orNull(packet.track.id)},
              {"offset", packet.offset},
              {"line", stored.line()},
              {"field", stored.field()},
              {"wrapping", static_cast<unsigned>(stored.wrapping)},
              {"coding", static_cast<unsigned>(stored.coding)},
              {"field_mark", (stored.lineNumber & StoredPacket::field2Mark) != 0},
              {"samples", stored.sampleCount}};
    if (isANC) {
        json["did"] = content.packet.did;
        json["sdid"] = content.packet.sdid;
        json["name"] = identifierNameText(packet);
        json["data_count"] = content.dataCount;
        json["checksum"] = orNull(content.checksum);
        json["content"] = contentText(packet);
        json["payload"] = isTold(stored, content) ? Json() : Json(payloadText(stored));
    }
    json["data"] = bytesText(packet);
    json["faults"] = faults;
    return json;
}

Json jsonOf(AncillaryTrack const& track, std::uint64_t units) {
    return {{"kind", track.kindText()},
            {"body_sid", track.bodySID},
            {"track_id", orNull(track.id)},
            {"edit_rate", orNull(track.editRateText())},
            {"edit_units", units}};
}

class Dump : public AncillaryPrinter {
public:
    explicit Dump(bool asJson) : rows_("packets", asJson) {}

    void begin(std::string const& file) override { rows_.begin(file); }

    void track(AncillaryTrack const& track) override { units_.emplace_back(&track, 0); }

    void element(AncillaryTrack const& track, std::int64_t) override {
        for (auto& [each, count] : units_)
            if (each == &track)
                ++count;
    }

    void packet(AncillaryPacket const& packet) override {
        auto const faults = faultTexts(packet);
        found_ = found_ || !faults.empty();
        if (rows_.isJson())
            rows_.add(jsonOf(packet, faults));
        else
            rows_.add(lineOf(packet, faults));
    }

    void fault(AncillaryTrack const& track, std::int64_t unit, Fault const& fault) override {
        found_ = true;
        if (rows_.isJson())
            rows_.add(Json{{"edit_unit", unit},
                           {"timecode", orNull(track.timecodeText(unit))},
                           {"kind", track.kindText()},
                           {"body_sid", track.bodySID},
                           {"track_id", orNull(track.id)},
                           {"offset", fault.offset},
                           {"faults", {fault.message}}});
        else
            rows_.add(unitText(track, unit) + "  " + track.kindText() + " ! " +
                      faultText(fault.message, fault.offset));
    }

    void end(std::vector<Fault> const& faults) override {
        Json tracks = Json::array();
        for (auto const& [track, count] : units_)
            tracks.push_back(jsonOf(*track, count));
        rows_.end(faults, {{"tracks", tracks}});
    }
    bool foundFaults() const override { return found_; }

private:
    AncillaryRows rows_;
    std::vector<std::pair<AncillaryTrack const*, std::uint64_t>>
        units_; // tracks, and elements that were read
    bool found_ = false;
};

} // namespace

std::unique_ptr<AncillaryPrinter> makeAncillaryDump(bool asJson) { return std::make_unique<Dump>(asJson); }

} // namespace Zelm
