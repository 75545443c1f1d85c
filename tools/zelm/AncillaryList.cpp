#include "AncillaryList.h"

#include "AncillaryCaptionRow.h"
#include "AncillaryStored.h"
#include "Json.h"
#include "LayoutOptions.h"

#include <MXF/Zelm/GenericContainer/S436M/ANCPacket.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using namespace Essence::Ancillary;
using namespace GenericContainer::S436M;

namespace {

/// A day of 120 frames a second: what is further away is no edit unit.
constexpr std::uint64_t mostFrames = std::uint64_t{24} * 60 * 60 * 120;

constexpr std::uint64_t mostByte = 0xFF, mostWord = AncillaryRow::mostWord, mostCount = 0xFFFF;

/// User data of 8 bits in two digits; of 10 bits in three, which the data count tells.
Packet packetOf(AncillaryRow const& row) {
    if (row.find("captions") != nullptr && row.find("data") == nullptr)
        return captionPacketOf(row);
    auto const did = static_cast<unsigned char>(row.number("did", mostByte));
    auto const sdid = static_cast<unsigned char>(row.number("sdid", mostByte));
    auto const digits = row.text("data").size();
    auto const count = row.numberOr("data_count", mostByte, digits / 2);
    if (digits / 2 > Packet::mostUserData && digits != count * 3)
        throw BadAncillaryText("\"data\" has more than 255 words");
    if (digits == count * 2)
        return Packet::ofBytes(did, sdid, row.bytes("data"));
    auto const words = row.values("data", 3);
    return {did, sdid, {words.begin(), words.end()}};
}

StoredPacket ancOf(AncillaryRow const& row, SampleCoding coding) {
    if (!isKnown(coding, ElementKind::ANC))
        throw BadAncillaryText("\"coding\" is none of ancillary data");
    auto const packet = packetOf(row);
    if (!row.has("checksum"))
        return storeANC(packet, 0, {}, coding);
    std::optional<Word> checksum;
    if (row.find("checksum") != nullptr)
        checksum = static_cast<Word>(row.number("checksum", mostWord));
    return storeWithChecksum(packet, coding, checksum);
}

/// A payload as it was found.
StoredPacket asFound(AncillaryRow const& row, const char* member) {
    StoredPacket stored;
    stored.payload = DataIO::Slice::adopt(row.bytes(member));
    stored.sampleCount = static_cast<std::uint16_t>(row.number("samples", mostCount));
    return stored;
}

StoredPacket storedOf(AncillaryRow const& row, AncillaryList::Kind kind) {
    auto const coding = static_cast<SampleCoding>(
        row.numberOr("coding", mostByte, static_cast<unsigned>(SampleCoding::Luma8)));
    auto stored = kind == ElementKind::VBI         ? asFound(row, "data")
                  : row.find("payload") != nullptr ? asFound(row, "payload")
                                                   : ancOf(row, coding);
    stored.coding = coding;
    stored.wrapping = static_cast<WrappingType>(
        row.numberOr("wrapping", mostByte, static_cast<unsigned>(WrappingType::ProgressiveFrame)));
    stored.lineNumber = static_cast<std::uint16_t>(row.numberOr("line", mostCount, 0));
    if (row.isTrueOr("field_mark", false))
        stored.lineNumber |= StoredPacket::field2Mark;
    return stored;
}

class Parser {
public:
    AncillaryList parse(std::string_view text) {
        try {
            auto const rest =
                Json::parse(text.begin(), text.end(), [this](int depth, auto event, Json& value) {
                    return keeps(depth, event, value);
                });
            takeTracks(rest);
        } catch (Json::exception const&) {
            throw BadAncillaryText("is no JSON" +
                                   (rows_ != 0 ? " behind packet " + std::to_string(rows_) : ""));
        }
        return std::move(list_);
    }

private:
    using Event = Json::parse_event_t;

    static constexpr int deepest = 16;                              // packets are 2 deep
    static constexpr std::size_t mostBeside = std::size_t{1} << 14; // values that are in no packet

    /// What has been read stays in memory, up to a bound, but for packets: they are taken out of the text.
    bool keeps(int depth, Event event, Json& value) {
        if (depth > deepest)
            throw BadAncillaryText("has values more than " + std::to_string(deepest) + " deep");
        if (event == Event::object_start || event == Event::array_start)
            before_.push_back(kept_);
        if (event != Event::object_end && event != Event::array_end) {
            if (++kept_ > mostBeside)
                throw BadAncillaryText("has too much that is no packet");
            return true;
        }
        auto const before = before_.back();
        before_.pop_back();
        bool const isPacket = event == Event::object_end && take(value);
        kept_ = isPacket ? before : kept_;
        return !isPacket;
    }

    /// Takes an object that is a packet, so that the text is never held as a whole; false for another one.
    bool take(Json const& value) {
        if (!value.is_object() || !value.contains("edit_unit"))
            return false;
        ++rows_;
        try {
            takePacket(AncillaryRow(value));
        } catch (std::runtime_error const& failure) {
            throw BadAncillaryText("packet " + std::to_string(rows_) + ": " + failure.what());
        }
        return true;
    }

    void takePacket(AncillaryRow const& row) {
        auto const kind = kindOf(row);
        auto* const track = trackOf(kind, row);
        if (track == nullptr || (!row.has("data") && !row.has("captions"))) {
            ++list_.leftOut;
            return;
        }
        track->frames->add(row.number("edit_unit", mostFrames), storedOf(row, kind));
    }

    static AncillaryList::Kind kindOf(AncillaryRow const& row) {
        auto const text = row.find("kind") != nullptr ? row.text("kind") : "ANC";
        if (text != "ANC" && text != "VBI")
            throw BadAncillaryText("\"kind\" is neither ANC nor VBI");
        return text == "ANC" ? ElementKind::ANC : ElementKind::VBI;
    }

    /// The first one of its kind; null for others.
    AncillaryList::Track* trackOf(AncillaryList::Kind kind, AncillaryRow const& row) {
        std::string name;
        for (auto const* const member : {"body_sid", "track_id"})
            if (auto const* const value = row.find(member))
                name += dump(*value) + " ";
        auto const [found, isNew] = list_.tracks.try_emplace(kind);
        if (isNew)
            found->second.name = name;
        return found->second.name == name ? &found->second : nullptr;
    }

    /// What is told of the tracks as a whole.
    void takeTracks(Json const& rest) {
        if (!rest.is_object() || !rest.contains("tracks") || !rest["tracks"].is_array())
            return;
        for (auto const& value : rest["tracks"]) {
            if (!value.is_object())
                continue;
            AncillaryRow const row(value);
            auto* const track = trackOf(kindOf(row), row);
            if (track == nullptr)
                continue;
            track->frames->reach(row.numberOr("edit_units", mostFrames, 0));
            if (row.find("edit_rate") != nullptr)
                track->editRate = parseRate(row.text("edit_rate"));
        }
    }

    AncillaryList list_;
    std::uint64_t rows_ = 0;
    std::size_t kept_ = 0;            // values
    std::vector<std::size_t> before_; // the same, where each open value began
};

} // namespace

bool AncillaryFrames::nextFrame(Templates::vector<StoredPacket>& packets) {
    if (next_ >= frames_ && !isEndless_)
        return false;
    if (auto const found = packets_.find(next_++); found != packets_.end()) {
        packets = std::move(found->second);
        packets_.erase(found);
    }
    return true;
}

void AncillaryFrames::add(std::uint64_t frame, StoredPacket packet) {
    packets_[frame].push_back(std::move(packet));
    reach(frame + 1);
}

void AncillaryFrames::reach(std::uint64_t frames) { frames_ = std::max(frames_, frames); }

AncillaryList readAncillary(std::string_view text) { return Parser().parse(text); }

} // namespace Zelm
