/// The JSON of `zelm info`.
#include "InfoReport.h"
#include "TimeText.h"

#include <MXF/Zelm/Platform/Text.h>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

Json textOrNull(std::string const& text) { return text.empty() ? Json(nullptr) : Json(text); }

Json labelJson(NamedLabel const& label) {
    return {{"label", Platform::toUtf8(label.label.toString())}, {"name", textOrNull(label.name)}};
}

Json labelJson(std::optional<NamedLabel> const& label) { return label ? labelJson(*label) : Json(nullptr); }

Json labelsJson(std::vector<NamedLabel> const& labels) {
    Json json = Json::array();
    for (auto const& label : labels)
        json.push_back(labelJson(label));
    return json;
}

Json rateJson(std::optional<EditRate> const& rate) {
    return rate ? Json(std::to_string(rate->numerator) + "/" + std::to_string(rate->denominator))
                : Json(nullptr);
}

Json timecodeJson(std::optional<TimecodeInfo> const& timecode) {
    if (!timecode)
        return nullptr;
    return {{"text", timecodeText(*timecode)},
            {"frames", timecode->start},
            {"frames_per_second", timecode->base},
            {"drop_frame", timecode->dropFrame}};
}

Json durationTextJson(std::optional<std::int64_t> duration, std::optional<EditRate> const& rate) {
    return duration && rate ? textOrNull(durationText(*duration, *rate)) : Json(nullptr);
}

Json pictureJson(PictureInfo const& picture) {
    Json json;
    json["stored_width"] = orNull(picture.storedWidth);
    json["stored_height"] = orNull(picture.storedHeight);
    json["sampled_width"] = orNull(picture.sampledWidth);
    json["sampled_height"] = orNull(picture.sampledHeight);
    json["display_width"] = orNull(picture.displayWidth);
    json["display_height"] = orNull(picture.displayHeight);
    json["aspect_ratio"] = rateJson(picture.aspect);
    json["scan"] = textOrNull(picture.scan);
    json["chroma"] = textOrNull(picture.chroma);
    json["bit_depth"] = orNull(picture.bitDepth);
    json["transfer_characteristic"] = labelJson(picture.transferCharacteristic);
    json["coding_equations"] = labelJson(picture.codingEquations);
    json["color_primaries"] = labelJson(picture.colorPrimaries);
    return json;
}

Json soundJson(SoundInfo const& sound) {
    Json json;
    json["sampling_rate"] = rateJson(sound.samplingRate);
    json["channels"] = orNull(sound.channels);
    json["bits"] = orNull(sound.bits);
    json["locked"] = orNull(sound.locked);
    json["channel_assignment"] = labelJson(sound.channelAssignment);
    json["labels"] = Json::array();
    for (auto const& label : sound.labels)
        json["labels"].push_back({{"kind", label.kind},
                                  {"symbol", textOrNull(label.symbol)},
                                  {"name", textOrNull(label.name)},
                                  {"channel", orNull(label.channel)},
                                  {"language", textOrNull(label.language)}});
    return json;
}

/// Members of a multiple descriptor are no multiple descriptors: their own members stay out.
Json descriptorJson(DescriptorInfo const& descriptor, bool withMembers) {
    Json json;
    json["class"] = descriptor.className;
    json["linked_track_id"] = orNull(descriptor.linkedTrack);
    json["sample_rate"] = rateJson(descriptor.sampleRate);
    json["duration"] = orNull(descriptor.duration);
    json["container"] = labelJson(descriptor.container);
    json["coding"] = labelJson(descriptor.coding);
    json["picture"] = descriptor.picture ? pictureJson(*descriptor.picture) : Json(nullptr);
    json["sound"] = descriptor.sound ? soundJson(*descriptor.sound) : Json(nullptr);
    json["mime_type"] = textOrNull(descriptor.mimeType);
    json["locators"] = descriptor.locators;
    if (withMembers) {
        json["descriptors"] = Json::array();
        for (auto const& member : descriptor.descriptors)
            json["descriptors"].push_back(descriptorJson(member, false));
    }
    return json;
}

Json trackJson(TrackInfo const& track) {
    Json json;
    json["class"] = track.className;
    json["track_id"] = orNull(track.id);
    json["track_number"] = orNull(track.number);
    json["kind"] = track.kind;
    json["name"] = textOrNull(track.name);
    json["edit_rate"] = rateJson(track.editRate);
    json["duration"] = orNull(track.duration);
    json["duration_time"] = durationTextJson(track.duration, track.editRate);
    json["origin"] = orNull(track.origin);
    json["start_timecode"] = timecodeJson(track.timecode);
    json["segments"] = track.segments;
    return json;
}

Json packageJson(PackageInfo const& package) {
    Json json;
    json["kind"] = package.kind;
    json["name"] = textOrNull(package.name);
    json["package_uid"] = package.uid ? Json(Platform::toUtf8(package.uid->toString())) : Json(nullptr);
    json["created"] = textOrNull(package.created);
    json["modified"] = textOrNull(package.modified);
    json["tracks"] = Json::array();
    for (auto const& track : package.tracks)
        json["tracks"].push_back(trackJson(track));
    json["descriptor"] = package.descriptor ? descriptorJson(*package.descriptor, true) : Json(nullptr);
    return json;
}

Json writersJson(std::vector<WriterInfo> const& writers) {
    Json json = Json::array();
    for (auto const& writer : writers)
        json.push_back({{"company", textOrNull(writer.company)},
                        {"product", textOrNull(writer.product)},
                        {"version", textOrNull(writer.version)},
                        {"platform", textOrNull(writer.platform)},
                        {"date", textOrNull(writer.date)}});
    return json;
}

} // namespace

Json infoJson(FileInfo const& info) {
    Json json;
    json["file"] = info.file;
    json["size"] = info.size;
    json["run_in"] = info.runIn;
    json["version"] = info.version;
    json["operational_pattern"] = labelJson(info.operationalPattern);
    json["essence_containers"] = labelsJson(info.essenceContainers);
    json["descriptive_schemes"] = labelsJson(info.descriptiveSchemes);
    json["identifications"] = writersJson(info.writers);
    json["modified"] = textOrNull(info.modified);
    json["partitions"] = {{"count", orNull(info.partitions.count)},
                          {"header_status", info.partitions.header},
                          {"footer_offset", orNull(info.partitions.footerOffset)},
                          {"random_index_pack", info.partitions.hasRandomIndexPack},
                          {"kag_size", info.partitions.kagSize}};
    json["metadata"] = {{"offset", orNull(info.metadataOffset)}, {"partition", info.metadataPartition}};
    json["complete"] = info.complete;
    json["edit_rate"] = rateJson(info.editRate);
    json["duration"] = orNull(info.duration);
    json["duration_time"] = durationTextJson(info.duration, info.editRate);
    json["start_timecode"] = timecodeJson(info.startTimecode);
    json["packages"] = Json::array();
    for (auto const& package : info.packages)
        json["packages"].push_back(packageJson(package));
    json["odd"] = info.odd;
    json["faults"] = Json::array();
    for (auto const& fault : info.faults)
        json["faults"].push_back({{"message", fault.message}, {"offset", orNull(fault.offset)}});
    return json;
}

} // namespace Zelm
