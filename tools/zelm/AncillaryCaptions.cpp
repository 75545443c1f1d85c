/// `zelm ancillary --captions`: the text of CEA-608 captions, in caption distribution packets and in packets
/// of their own.
#include "AncillaryRows.h"
#include "Text.h"

#include <MXF/Zelm/Essence/Ancillary/CaptionPacket.h>
#include <MXF/Zelm/Essence/Ancillary/LineCaptions.h>
#include <MXF/Zelm/Platform/Text.h>

#include <map>

namespace Zelm {

using namespace MXF::Zelm;
using namespace Essence::Ancillary;

namespace {

/// Of a packet 61/02: a byte with the field in its top bit, then a pair (SMPTE 334M). (The standard's text
/// was not at hand: 1 is taken for field 1, 0 for field 2.)
constexpr unsigned char pairSDID = 0x02;
constexpr unsigned char field1Flag = 0x80;
constexpr std::size_t pairSize = 3;

class Captions : public AncillaryPrinter {
public:
    Captions(bool asJson, TextSink sink) : rows_("captions", asJson, std::move(sink)) {}

    void begin(std::string const& file) override { rows_.begin(file); }

    void packet(AncillaryPacket const& packet) override {
        if (!packet.track.isANC() || packet.content.packet.did != captionDID)
            return;
        auto& state = tracks_[&packet.track];
        state.unit = packet.unit;
        auto const bytes = packet.content.packet.bytes();
        if (packet.content.packet.sdid == captionSDID)
            takeDistribution(readCaptionPacket(bytes), state);
        else if (packet.content.packet.sdid == pairSDID && bytes.size() >= pairSize)
            state.decoder.take((bytes[0] & field1Flag) != 0 ? 1 : 2, {bytes[1], bytes[2]}, shown_);
        print(packet.track, state);
    }

    void end(std::vector<Fault> const& faults) override {
        for (auto& [track, state] : tracks_) {
            state.decoder.finish(shown_);
            print(*track, state);
        }
        rows_.end(faults);
    }

    bool foundFaults() const override { return false; }

private:
    struct State {
        LineCaptions decoder = {};
        std::int64_t unit = 0;
    };

    /// Of one with a wrong checksum, too: bytes with wrong parity show as blocks.
    void takeDistribution(CaptionPacket const& captions, State& state) {
        for (auto const& data : captions.data)
            if (data.isValid && data.type < CaptionData::DTVCCContinues)
                state.decoder.take(data.type == CaptionData::Field1 ? 1 : 2, data.bytes, shown_);
    }

    void print(AncillaryTrack const& track, State const& state) {
        auto const timecode = track.timecodeText(state.unit);
        for (auto const& row : shown_) {
            std::string const channel = "CC" + std::to_string(row.channel), text = Platform::toUtf8(row.text);
            if (rows_.isJson())
                rows_.add(Json{{"edit_unit", state.unit},
                               {"timecode", orNull(timecode)},
                               {"track_id", orNull(track.id)},
                               {"channel", channel},
                               {"text", text}});
            else
                rows_.add(std::to_string(state.unit) + (timecode ? " " + *timecode : "") + "  " + channel +
                          "  " + text);
        }
        shown_.clear();
    }

    AncillaryRows rows_;
    std::map<AncillaryTrack const*, State> tracks_;
    Templates::vector<CaptionRow> shown_;
};

} // namespace

std::unique_ptr<AncillaryPrinter> makeAncillaryCaptions(bool asJson, TextSink sink) {
    return std::make_unique<Captions>(asJson, std::move(sink));
}

} // namespace Zelm
