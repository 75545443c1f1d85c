#include "ExtractReport.h"

#include "Json.h"
#include "Text.h"

#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

std::string formText(EssenceForm const& form) {
    if (!form.isWave())
        return form.suffix;
    return std::to_string(form.wave.channels) + (form.wave.channels == 1 ? " channel, " : " channels, ") +
           std::to_string(form.wave.samplingRate) + " Hz, " + std::to_string(form.wave.validBits) + " bit";
}

/// "15010500"
std::string numberText(ExtractTrack const& track) {
    std::string text = hex(track.element.trackNumber()).substr(2);
    return std::string(text.size() < 8 ? 8 - text.size() : 0, '0') + text;
}

std::string notesOf(ExtractTrack const& track) {
    if (track.isUncut)
        return "all of it: its edit units are not known";
    std::int64_t const before = track.kind() == 'v' ? track.wanted.preCharge : 0;
    return before != 0 ? std::to_string(before) + " of pre-charge before edit unit " +
                             std::to_string(track.wanted.pictures.first + before)
                       : "";
}

Json waveJson(EssenceForm const& form) {
    if (!form.isWave())
        return nullptr;
    return {{"channels", form.wave.channels},
            {"sampling_rate", form.wave.samplingRate},
            {"bits", form.wave.validBits},
            {"sample_bytes", form.wave.sampleBytes}};
}

Json trackJson(ExtractTrack const& track, bool listOnly) {
    Json object = {{"track", track.name},
                   {"file", track.file},
                   {"body_sid", track.bodySID},
                   {"track_number", numberText(track)},
                   {"track_id", track.track != nullptr ? Json(track.track->trackID) : Json(nullptr)},
                   {"wave", waveJson(track.form)},
                   {"pre_charge", track.kind() == 'v' ? track.wanted.preCharge : 0},
                   {"uncut", track.isUncut}};
    if (!listOnly) {
        object["first_edit_unit"] = track.firstUnit < 0 ? Json(nullptr) : Json(track.firstUnit);
        object["edit_units"] = track.units;
        object["bytes"] = track.bytes;
    }
    return object;
}

Json documentJson(Document const& document, bool listOnly) {
    Json object = {{"stream", document.name},
                   {"file", document.file},
                   {"stream_id", document.streamID},
                   {"mime_type", document.mimeType.empty() ? Json(nullptr) : Json(document.mimeType)},
                   {"resource_id", document.resourceID.empty() ? Json(nullptr) : Json(document.resourceID)}};
    if (!listOnly)
        object["bytes"] = document.bytes;
    return object;
}

} // namespace

void printExtractText(ExtractReport const& report) {
    constexpr auto right = Table::Align::Right;
    Table table({{"track"}, {"number"}, {"form"}, {"edit units", right}, {"bytes", right}, {"file"}});
    for (auto const& track : *report.result.tracks)
        table.add({track.name, numberText(track), formText(track.form),
                   report.listOnly ? "" : grouped(track.units), report.listOnly ? "" : grouped(track.bytes),
                   printable(track.file)});
    for (auto const& document : report.result.documents)
        table.add({document.name, "", printable(document.mimeType), "",
                   report.listOnly ? "" : grouped(document.bytes), printable(document.file)});
    if (report.result.tracks->empty() && report.result.documents.empty())
        std::cout << "no essence\n";
    else
        table.print(std::cout);
    for (auto const& track : *report.result.tracks)
        if (auto const notes = notesOf(track); !notes.empty())
            std::cout << track.name << ": " << notes << "\n";
}

void printExtractJson(ExtractReport const& report) {
    Json object = jsonReport();
    object["file"] = report.file;
    object["tracks"] = Json::array();
    for (auto const& track : *report.result.tracks)
        object["tracks"].push_back(trackJson(track, report.listOnly));
    object["documents"] = Json::array();
    for (auto const& document : report.result.documents)
        object["documents"].push_back(documentJson(document, report.listOnly));
    object["files"] = Json::array();
    for (auto const& file : report.files)
        object["files"].push_back({{"file", file.name}, {"md5", file.md5}});
    object["ends_early"] = report.result.early;
    object["partial_files"] = report.result.parts;
    object["faults"] = Json::array();
    for (auto const& fault : report.result.faults)
        object["faults"].push_back(toJson(std::optional(fault)));
    print(object);
}

} // namespace Zelm
