#include "WrapReport.h"

#include "Json.h"
#include "Text.h"
#include "TimeText.h"

#include <MXF/Zelm/Platform/Text.h>

#include <iostream>

namespace Zelm {

namespace {

EditRate rateOf(WrapTrack const& track) { return track.tap->editRate(); }

std::string wrappingName(WrapTrack const& track) {
    return track.wrapping == MXF::Zelm::GenericContainer::Wrapping::Clip ? "clip" : "frame";
}

std::string timecodeText(WrapResult const& result) {
    return MXF::Zelm::Platform::toUtf8(result.start.value.toString());
}

Json trackJson(WrapResult const& result, std::size_t i) {
    auto const& track = *result.tracks[i];
    auto const rate = rateOf(track);
    Json object = {{"track", track.name},
                   {"input", track.input},
                   {"essence", track.essence},
                   {"wrapping", wrappingName(track)},
                   {"edit_rate", std::to_string(rate.numerator) + "/" + std::to_string(rate.denominator)},
                   {"edit_units", track.tap->units()},
                   {"bytes", track.tap->bytes()}};
    if (!result.md5.empty())
        object["md5"] = result.md5[i];
    return object;
}

Json resultJson(WrapResult const& result) {
    Json tracks = Json::array();
    for (std::size_t i = 0; i < result.tracks.size(); ++i)
        tracks.push_back(trackJson(result, i));
    return {{"file", result.file},
            {"written", !result.discarded},
            {"interrupted", result.interrupted},
            {"operational_pattern", result.pattern},
            {"bytes", result.bytes},
            {"seconds", result.seconds},
            {"start_timecode", timecodeText(result)},
            {"timecode_from", result.start.from.empty() ? Json(nullptr) : Json(result.start.from)},
            {"tracks", tracks},
            {"notes", result.notes},
            {"verified", result.verified ? Json(result.differences.empty()) : Json(nullptr)},
            {"differences", result.differences}};
}

std::string speedText(WrapResult const& result) {
    if (result.seconds < 0.01)
        return "";
    auto const speed = static_cast<double>(result.bytes) / result.seconds;
    return ", " + humanSize(static_cast<std::uint64_t>(speed)) + "/s";
}

void printTracks(std::ostream& out, WrapResult const& result) {
    using Align = Table::Align;
    std::vector<Table::Column> columns{{"TRACK"},
                                       {"ESSENCE"},
                                       {"WRAPPING"},
                                       {"DURATION"},
                                       {"EDIT UNITS", Align::Right},
                                       {"BYTES", Align::Right}};
    if (!result.md5.empty())
        columns.push_back({"MD5"});
    columns.push_back({"INPUT"});
    Table table(columns);
    for (std::size_t i = 0; i < result.tracks.size(); ++i) {
        auto const& track = *result.tracks[i];
        std::vector<std::string> cells{
            track.name,
            track.essence,
            wrappingName(track),
            durationText(static_cast<std::int64_t>(track.tap->units()), rateOf(track)),
            grouped(track.tap->units()),
            grouped(track.tap->bytes())};
        if (!result.md5.empty())
            cells.push_back(result.md5[i]);
        cells.push_back(printable(track.input));
        table.add(std::move(cells));
    }
    table.print(out);
}

} // namespace

void printWrapText(std::ostream& out, std::vector<WrapResult> const& results) {
    for (auto const& result : results) {
        if (result.discarded)
            continue;
        out << printable(result.file) << ": " << result.pattern << ", " << humanSize(result.bytes)
            << speedText(result) << (result.interrupted ? ", ended early" : "")
            << (result.verified && result.differences.empty() ? ", verified" : "") << "\n";
        if (!result.start.from.empty())
            out << "  starts at " << timecodeText(result) << ", told by " << printable(result.start.from)
                << "\n";
        printTracks(out, result);
    }
}

void printWrapJson(std::vector<WrapResult> const& results) {
    Json files = Json::array();
    for (auto const& result : results)
        files.push_back(resultJson(result));
    Json report = jsonReport();
    report["files"] = files;
    print(report);
}

} // namespace Zelm
