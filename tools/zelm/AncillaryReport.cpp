/// The report of `zelm ancillary`.
#include "AncillaryReport.h"

#include "AncillaryTally.h"
#include "Json.h"
#include "Text.h"
#include "TimeText.h"

#include <algorithm>
#include <deque>
#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// Counts, and prints at the end.
class Report : public AncillaryPrinter {
public:
    void begin(std::string const& file) override { file_ = file; }

    void track(AncillaryTrack const& track) override {
        tracks_.emplace_back();
        tracks_.back().track = &track;
    }

    void element(AncillaryTrack const& track, std::int64_t) override { ++of(track).elements; }
    void packet(AncillaryPacket const& packet) override { of(packet.track).add(packet); }
    void fault(AncillaryTrack const& track, std::int64_t unit, Fault const& fault) override {
        of(track).add(unit, fault);
    }

    bool foundFaults() const override {
        return std::any_of(tracks_.begin(), tracks_.end(),
                           [](auto const& track) { return !track.faults.empty(); });
    }

protected:
    TalliedTrack& of(AncillaryTrack const& track) {
        return *std::find_if(tracks_.begin(), tracks_.end(),
                             [&](auto const& tallied) { return tallied.track == &track; });
    }

    std::string file_;
    std::deque<TalliedTrack> tracks_;
};

std::string unitText(AncillaryTrack const& track, std::int64_t unit) {
    auto const timecode = track.timecodeText(unit);
    return grouped(static_cast<std::uint64_t>(unit)) + (timecode ? " (" + *timecode + ")" : "");
}

std::string countText(std::uint64_t count, const char* what) {
    return grouped(count) + " " + what + (count == 1 ? "" : "s");
}

class TextReport : public Report {
public:
    void end(std::vector<Fault> const&) override {
        bool isFirst = true;
        for (auto const& track : tracks_)
            if (track.track->id || track.elements != 0) {
                std::cout << (isFirst ? "" : "\n");
                print(track);
                isFirst = false;
            }
        if (isFirst)
            std::cout << "no VBI or ancillary data\n";
    }

private:
    static void print(TalliedTrack const& tallied) {
        auto const& track = *tallied.track;
        std::cout << track.kindText() << (track.id ? ", track " + std::to_string(*track.id) : "")
                  << ", body SID " << track.bodySID;
        if (track.editRate.denominator != 0)
            std::cout << ", " << rateText(track.editRate) << " edit units a second";
        std::cout << ": " << countText(tallied.elements, "edit unit") << ", "
                  << countText(tallied.packets, track.isANC() ? "packet" : "line") << "\n";
        if (!tallied.rows.empty())
            table(tallied).print(std::cout);
        for (auto const& [message, fault] : tallied.faults)
            std::cout << "! " << message << ": " << grouped(fault.count) << ", first in edit unit "
                      << unitText(track, fault.first) << " at " << hex(fault.offset) << "\n";
    }

    static Table table(TalliedTrack const& tallied) {
        auto const& track = *tallied.track;
        constexpr auto left = Table::Align::Left, right = Table::Align::Right;
        Table rows({{track.isANC() ? "packet" : "line", left},
                    {"what it is", left},
                    {"count", right},
                    {track.isANC() ? "on line" : "", left},
                    {"first in edit unit", left},
                    {"last in edit unit", left}});
        auto const add = [&](std::string const& what, std::string const& name, Occurrence const& occurrence,
                             std::string const& lines) {
            rows.add({what, name, grouped(occurrence.count), lines, unitText(track, occurrence.first),
                      unitText(track, occurrence.last)});
        };
        for (auto const& [key, row] : tallied.rows) {
            add(row.identifier, row.name, row.packets, track.isANC() ? linesText(row) : "");
            for (auto const& [what, fact] : row.facts)
                add("", "  " + what + detailText(fact), fact, "");
        }
        return rows;
    }

    static std::string linesText(TalliedPackets const& row) {
        std::string text;
        for (unsigned const line : row.lines)
            text += (text.empty() ? "" : ", ") + (line != 0 ? std::to_string(line) : "not given");
        constexpr std::size_t mostShown = 6;
        if (row.lines.size() <= mostShown)
            return text;
        return (row.lines.size() > TalliedPackets::mostLinesKept ? "many"
                                                                 : std::to_string(row.lines.size())) +
               " from " + std::to_string(*row.lines.begin()) + " to " + std::to_string(*row.lines.rbegin());
    }

    static std::string detailText(TalliedPackets::Fact const& fact) {
        if (fact.firstDetail.empty())
            return {};
        return " " + fact.firstDetail + (fact.count > 1 ? " to " + fact.lastDetail : "");
    }
};

Json unitJson(AncillaryTrack const& track, std::int64_t unit) {
    return {{"edit_unit", unit}, {"timecode", orNull(track.timecodeText(unit))}};
}

void appendOccurrence(AncillaryTrack const& track, Occurrence const& occurrence, Json& json) {
    json["count"] = occurrence.count;
    json["first"] = unitJson(track, occurrence.first);
    json["last"] = unitJson(track, occurrence.last);
}

class JsonReport : public Report {
public:
    void end(std::vector<Fault> const& faults) override {
        Json report = jsonReport();
        report["file"] = file_;
        report["tracks"] = Json::array();
        for (auto const& track : tracks_)
            if (track.track->id || track.elements != 0)
                report["tracks"].push_back(toJson(track));
        report["faults"] = Json::array();
        for (auto const& fault : faults)
            report["faults"].push_back(Zelm::toJson(std::optional(fault)));
        print(report);
    }

private:
    static Json toJson(TalliedTrack const& tallied) {
        auto const& track = *tallied.track;
        Json json{{"kind", track.kindText()},
                  {"body_sid", track.bodySID},
                  {"track_id", orNull(track.id)},
                  {"track_number", track.number},
                  {"edit_rate", orNull(track.editRateText())},
                  {"edit_units", tallied.elements},
                  {"packets", tallied.packets},
                  {"identifiers", Json::array()},
                  {"faults", Json::array()}};
        for (auto const& [key, row] : tallied.rows)
            json["identifiers"].push_back(toJson(track, row));
        for (auto const& [message, fault] : tallied.faults) {
            json["faults"].push_back({{"message", message}, {"offset", fault.offset}});
            appendOccurrence(track, fault, json["faults"].back());
        }
        return json;
    }

    static Json toJson(AncillaryTrack const& track, TalliedPackets const& row) {
        Json json{{"did", track.isANC() ? Json(row.did) : Json(nullptr)},
                  {"sdid", track.isANC() && row.did < 0x80 ? Json(row.sdid) : Json(nullptr)},
                  {"name", row.name},
                  {"lines", row.lines}};
        appendOccurrence(track, row.packets, json);
        json["content"] = Json::array();
        for (auto const& [what, fact] : row.facts) {
            json["content"].push_back({{"text", what}});
            auto& content = json["content"].back();
            appendOccurrence(track, fact, content);
            if (fact.firstDetail.empty())
                continue;
            content["first"]["detail"] = fact.firstDetail;
            content["last"]["detail"] = fact.lastDetail;
        }
        return json;
    }
};

} // namespace

std::unique_ptr<AncillaryPrinter> makeAncillaryReport(bool asJson) {
    if (asJson)
        return std::make_unique<JsonReport>();
    return std::make_unique<TextReport>();
}

} // namespace Zelm
