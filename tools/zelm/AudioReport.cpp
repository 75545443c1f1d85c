#include "AudioReport.h"

#include "Json.h"
#include "Text.h"
#include "TimeText.h"

#include <cmath>
#include <cstdio>
#include <iostream>
#include <limits>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::Wave::decibels;
using Essence::Wave::LevelMeter;

namespace {

/// "-20.1", "-inf".
std::string decibelText(double magnitude) {
    double const value = decibels(magnitude);
    if (std::isinf(value))
        return "-inf";
    char text[32];
    double const rounded = std::round(value * 100) / 100;
    std::snprintf(text, sizeof text, "%.2f", rounded == 0 ? 0.0 : rounded);
    return text;
}

std::string timeOf(std::uint64_t instants, std::uint32_t rate) {
    return durationText(static_cast<std::int64_t>(
                            std::min<std::uint64_t>(instants, std::numeric_limits<std::int64_t>::max())),
                        {static_cast<int>(rate), 1});
}

/// "all", "00:00:03.200 in 2".
std::string silenceText(LevelMeter const& levels, LevelMeter::Channel const& channel) {
    if (channel.silent == 0)
        return "-";
    if (channel.silent == levels.instants())
        return "all";
    return timeOf(channel.silent, levels.format().samplingRate) + " in " +
           std::to_string(channel.stretches.size()) +
           (channel.stretches.size() == LevelMeter::mostStretches ? " or more" : "");
}

std::string kindText(AudioFile const& file) {
    if (file.kind == "MXF" || file.kind == "AVI")
        return file.kind;
    return "Wave (" + file.kind + ")";
}

std::string countText(std::size_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

void addRows(AudioTrack const& track, Table& table) {
    auto const& format = track.format;
    for (unsigned channel = 0; channel < format.channels; ++channel) {
        std::vector<std::string> cells = {
            channel == 0 ? track.name : "",
            std::to_string(channel + 1),
            printable(track.labelOf(channel)),
            std::to_string(format.validBits),
            std::to_string(format.samplingRate),
            track.length() ? timeOf(*track.length(), format.samplingRate) : "-"};
        if (track.levels) {
            auto const& levels = track.levels->channels()[channel];
            cells.insert(cells.end(), {decibelText(levels.all.peak()), decibelText(levels.all.rms()),
                                       levels.all.clipped == 0 ? "-" : grouped(levels.all.clipped),
                                       silenceText(*track.levels, levels)});
        } else {
            cells.insert(cells.end(), 4, "");
        }
        table.add(std::move(cells));
    }
}

/// Groups of channels, the scheme of their assignment, how the track is wrapped, and channel status.
std::string factsOf(AudioTrack const& track) {
    std::string text = track.coding;
    if (!track.wrapping.empty())
        text += ", " + track.wrapping + (track.wrapping == "AES3 element" ? "" : " wrapped");
    if (track.live != 0 && track.live < track.format.channels)
        text += ", " + std::to_string(track.live) + " of " + countText(track.format.channels, "channel") +
                " in use";
    for (auto const& label : track.sound.labels)
        if (label.kind != "channel")
            text += ", " + (label.name.empty() ? label.symbol : label.name) +
                    (label.language.empty() ? "" : " (" + label.language + ")");
    if (track.sound.channelAssignment && !track.sound.channelAssignment->name.empty())
        text += ", " + track.sound.channelAssignment->name;
    if (track.sound.locked)
        text += *track.sound.locked ? ", locked" : ", not locked";
    return text;
}

void printStatuses(AudioTrack const& track) {
    for (std::size_t first = 0; first < track.statuses.size();) {
        std::size_t last = first + 1;
        while (last < track.statuses.size() && track.statuses[last] == track.statuses[first])
            ++last;
        std::cout << "  " << track.name << " channel status of "
                  << (last - first == 1 ? "channel " : "channels ") << first + 1;
        if (last - first > 1)
            std::cout << " to " << last;
        std::cout << ": " << statusText(track.statuses[first]) << "\n";
        first = last;
    }
}

void printChunks(AudioFile const& file) {
    std::string chunks;
    for (auto const& chunk : file.chunks)
        chunks += (chunks.empty() ? "" : ", ") + chunk.id + " " + std::to_string(chunk.size);
    if (!chunks.empty())
        std::cout << "  chunks: " << printable(chunks) << "\n";
    if (!file.broadcast)
        return;
    auto const& broadcast = *file.broadcast;
    std::string text;
    for (auto const& part :
         {broadcast.originator, broadcast.description, broadcast.date + " " + broadcast.time})
        text += part.empty() || part == " " ? "" : (text.empty() ? "" : ", ") + part;
    if (!file.tracks.empty() && file.tracks.front().format.samplingRate != 0)
        text += (text.empty() ? "" : ", ") + std::string("begins at ") +
                timeOf(broadcast.timeReference, file.tracks.front().format.samplingRate);
    std::cout << "  bext: " << printable(text) << "\n";
}

/// Null for silence, which has none.
Json decibelJson(double magnitude) {
    double const value = decibels(magnitude);
    return std::isinf(value) ? Json(nullptr) : Json(std::round(value * 1000) / 1000);
}

Json channelJson(AudioTrack const& track, unsigned channel) {
    std::string const label = track.labelOf(channel);
    Json json{{"channel", channel + 1},
              {"label", label.empty() ? Json(nullptr) : Json(label)},
              {"status",
               channel < track.statuses.size() ? Json(statusText(track.statuses[channel])) : Json(nullptr)}};
    if (!track.levels)
        return json;
    auto const& levels = track.levels->channels()[channel];
    json["peak_dbfs"] = decibelJson(levels.all.peak());
    json["rms_dbfs"] = decibelJson(levels.all.rms());
    json["clipped_samples"] = levels.all.clipped;
    json["silent_samples"] = levels.silent;
    json["silence"] = Json::array();
    for (auto const& stretch : levels.stretches)
        json["silence"].push_back({{"first", stretch.first}, {"samples", stretch.count}});
    return json;
}

Json trackJson(AudioTrack const& track) {
    Json json{{"track", track.name},
              {"id", orNull(track.id)},
              {"coding", track.coding},
              {"wrapping", track.wrapping.empty() ? Json(nullptr) : Json(track.wrapping)},
              {"channel_count", track.format.channels},
              {"bits", track.format.validBits},
              {"sample_bytes", track.format.sampleBytes},
              {"sampling_rate", track.format.samplingRate},
              {"samples", orNull(track.length())},
              {"live_channels", track.live != 0 ? Json(track.live) : Json(nullptr)},
              {"groups", Json::array()},
              {"channels", Json::array()},
              {"disagreements", track.odd}};
    for (auto const& label : track.sound.labels)
        if (label.kind != "channel")
            json["groups"].push_back({{"symbol", label.symbol}, {"name", label.name}});
    for (unsigned channel = 0; channel < track.format.channels; ++channel)
        json["channels"].push_back(channelJson(track, channel));
    return json;
}

Json fileJson(AudioFile const& file) {
    Json json{{"file", file.file},         {"kind", file.kind},       {"bytes", file.size},
              {"bext", nullptr},           {"chunks", Json::array()}, {"tracks", Json::array()},
              {"disagreements", file.odd}, {"notes", file.notes},     {"faults", Json::array()}};
    if (file.broadcast)
        json["bext"] = {{"description", file.broadcast->description},
                        {"originator", file.broadcast->originator},
                        {"date", file.broadcast->date},
                        {"time", file.broadcast->time},
                        {"time_reference", file.broadcast->timeReference}};
    for (auto const& chunk : file.chunks)
        json["chunks"].push_back({{"id", chunk.id}, {"bytes", chunk.size}});
    for (auto const& track : file.tracks)
        json["tracks"].push_back(trackJson(track));
    for (auto const& fault : file.faults)
        json["faults"].push_back(toJson(std::optional(fault)));
    return json;
}

} // namespace

void printAudioText(AudioFile const& file) {
    using Align = Table::Align;
    std::size_t channels = 0;
    for (auto const& track : file.tracks)
        channels += track.format.channels;
    std::cout << printable(file.file) << ": " << kindText(file) << ", "
              << (file.tracks.empty() ? std::string("no sound")
                                      : countText(file.tracks.size(), "track") + ", " +
                                            (channels != 0 ? countText(channels, "channel")
                                                           : std::string("no samples that can be read")))
              << "\n";
    Table table({{"Track"},
                 {"Channel", Align::Right},
                 {"Label"},
                 {"Bits", Align::Right},
                 {"Rate", Align::Right},
                 {"Duration"},
                 {"Peak dBFS", Align::Right},
                 {"RMS dBFS", Align::Right},
                 {"Clipped", Align::Right},
                 {"Silence"}});
    for (auto const& track : file.tracks)
        addRows(track, table);
    if (channels != 0)
        table.print(std::cout);
    for (auto const& track : file.tracks) {
        std::cout << "  " << track.name << ": " << printable(factsOf(track)) << "\n";
        printStatuses(track);
    }
    printChunks(file);
    for (auto const& track : file.tracks)
        for (auto const& odd : track.odd)
            std::cout << "  ! " << track.name << ": " << printable(odd) << "\n";
    for (auto const& note : file.notes)
        std::cout << "  " << printable(note) << "\n";
    for (auto const& odd : file.odd)
        std::cout << "  ! " << printable(odd) << "\n";
}

void printAudioJson(std::vector<AudioFile> const& files) {
    Json report = jsonReport();
    report["files"] = Json::array();
    for (auto const& file : files)
        report["files"].push_back(fileJson(file));
    print(report);
}

} // namespace Zelm
