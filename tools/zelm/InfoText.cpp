/// The text of `zelm info`: a line for each thing, the names of the things in a column of their own.
#include "InfoReport.h"
#include "Text.h"
#include "TimeText.h"

#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

constexpr std::size_t nameWidth = 14;

void line(std::string const& name, std::string const& value) {
    if (value.empty())
        return;
    std::string padded = name;
    padded.resize(std::max(nameWidth, name.size()), ' ');
    std::cout << "  " << padded << "  " << printable(value) << "\n";
}

std::string labelText(NamedLabel const& label) {
    return label.name.empty() ? Platform::toUtf8(label.label.toString()) : label.name;
}

std::string labelText(std::optional<NamedLabel> const& label) {
    return label ? labelText(*label) : std::string();
}

/// The parts that are not empty, with commas between them.
std::string joined(std::vector<std::string> const& parts, std::string const& separator = ", ") {
    std::string text;
    for (auto const& part : parts)
        if (!part.empty())
            text += (text.empty() ? "" : separator) + part;
    return text;
}

std::string labelsText(std::vector<NamedLabel> const& labels) {
    std::vector<std::string> names;
    for (auto const& label : labels)
        if (auto name = labelText(label); std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(std::move(name));
    return joined(names, "; ");
}

std::string sizeText(std::optional<std::uint32_t> width, std::optional<std::uint32_t> height) {
    return width && height ? std::to_string(*width) + "x" + std::to_string(*height) : std::string();
}

std::string pictureText(PictureInfo const& picture) {
    std::string const stored = sizeText(picture.storedWidth, picture.storedHeight);
    std::string const sampled = sizeText(picture.sampledWidth, picture.sampledHeight);
    std::string const display = sizeText(picture.displayWidth, picture.displayHeight);
    std::string size = stored;
    if (!sampled.empty() && sampled != stored)
        size += " stored, " + sampled + " sampled";
    if (!display.empty() && display != (sampled.empty() ? stored : sampled))
        size += (size.find(' ') == std::string::npos ? " stored, " : ", ") + display + " displayed";
    std::string const aspect = picture.aspect ? std::to_string(picture.aspect->numerator) + ":" +
                                                    std::to_string(picture.aspect->denominator)
                                              : std::string();
    std::string const depth = picture.bitDepth ? std::to_string(*picture.bitDepth) + " bit" : std::string();
    return joined({size, aspect, joined({picture.chroma, depth}, " "), picture.scan,
                   labelText(picture.transferCharacteristic), labelText(picture.colorPrimaries)});
}

std::string channelLabelsText(std::vector<ChannelLabel> const& labels) {
    std::vector<std::string> channels, groups;
    for (auto const& label : labels) {
        std::string const name = label.name.empty() ? label.symbol : label.name;
        (label.kind == "channel" ? channels : groups).push_back(name);
    }
    std::string const text = joined(channels, " ");
    return groups.empty() ? text : joined(groups) + (text.empty() ? "" : ": " + text);
}

std::string soundText(SoundInfo const& sound) {
    std::string const rate = sound.samplingRate ? rateText(*sound.samplingRate) + " Hz" : std::string();
    std::string channels;
    if (sound.channels && *sound.channels != 0)
        channels = *sound.channels == 1 ? "1 channel" : std::to_string(*sound.channels) + " channels";
    std::string const bits =
        sound.bits && *sound.bits != 0 ? std::to_string(*sound.bits) + " bit" : std::string();
    return joined({rate, channels, bits, channelLabelsText(sound.labels)});
}

/// The coding in words; sound without a coding is PCM.
std::string codingText(DescriptorInfo const& descriptor) {
    if (descriptor.coding)
        return labelText(*descriptor.coding);
    return descriptor.sound && descriptor.className != "IABEssenceDescriptor" ? "uncompressed PCM"
                                                                              : std::string();
}

void printDescriptor(DescriptorInfo const& descriptor, std::string const& indent) {
    std::string what =
        joined({codingText(descriptor), descriptor.picture ? pictureText(*descriptor.picture) : "",
                descriptor.sound ? soundText(*descriptor.sound) : "", descriptor.mimeType});
    if (what.empty())
        what = descriptor.container ? labelText(descriptor.container) : descriptor.className;
    std::cout << indent << printable(what) << "\n";
    for (auto const& locator : descriptor.locators)
        std::cout << indent << "essence at " << printable(locator) << "\n";
}

/// The descriptor of a track: the one linked to it, or the only one there is.
DescriptorInfo const* descriptorOf(TrackInfo const& track, PackageInfo const& package) {
    if (!package.descriptor || (track.kind != "picture" && track.kind != "sound" && track.kind != "data"))
        return nullptr;
    auto const& members = package.descriptor->descriptors;
    if (members.empty())
        return &*package.descriptor;
    auto const linked = std::find_if(members.begin(), members.end(), [&track](DescriptorInfo const& member) {
        return member.linkedTrack && member.linkedTrack == track.id;
    });
    return linked != members.end() ? &*linked : nullptr;
}

std::string editUnitsText(std::int64_t count) {
    return grouped(static_cast<std::uint64_t>(std::max<std::int64_t>(count, 0))) +
           (count == 1 ? " edit unit" : " edit units");
}

std::string trackTimeText(TrackInfo const& track) {
    std::string text;
    if (track.timecode)
        text = "from " + timecodeText(*track.timecode) + " at " + std::to_string(track.timecode->base) +
               " frames/s" + (track.timecode->dropFrame ? " drop frame" : "");
    if (track.duration) {
        std::string const time =
            track.editRate ? durationText(*track.duration, *track.editRate) : std::string();
        text +=
            (text.empty() ? "" : ", ") + editUnitsText(*track.duration) + (time.empty() ? "" : " = " + time);
    }
    if (track.origin && *track.origin != 0)
        text += ", origin " + std::to_string(*track.origin);
    return text;
}

void printTrack(TrackInfo const& track, PackageInfo const& package) {
    char number[16] = "";
    if (track.number && *track.number != 0)
        std::snprintf(number, sizeof number, "%08X", static_cast<unsigned>(*track.number));
    std::cout << "    Track " << (track.id ? std::to_string(*track.id) : "?") << "  "
              << printable(joined(
                     {track.kind, track.name.empty() ? "" : "\"" + track.name + "\"",
                      *number != 0 ? "number " + std::string(number) : "",
                      track.editRate && track.kind != "timecode" ? rateText(*track.editRate) + "/s" : "",
                      trackTimeText(track), track.segments > 1 ? grouped(track.segments) + " segments" : ""}))
              << "\n";
    if (auto const* const descriptor = descriptorOf(track, package);
        descriptor != nullptr && package.kind == "file")
        printDescriptor(*descriptor, "      ");
}

void printPackage(PackageInfo const& package) {
    std::string const title = package.kind == "material" ? "Material package"
                              : package.kind == "file"   ? "File package"
                                                         : "Source package";
    std::cout << "  " << title << (package.name.empty() ? "" : " \"" + printable(package.name) + "\"")
              << "\n";
    if (package.uid)
        std::cout << "    " << Platform::toUtf8(package.uid->toString()) << "\n";
    if (!package.created.empty() && package.created != "unknown")
        std::cout << "    created " << package.created
                  << (package.modified != package.created && !package.modified.empty()
                          ? ", modified " + package.modified
                          : "")
                  << "\n";
    for (auto const& track : package.tracks)
        printTrack(track, package);
    if (package.kind == "physical source" && package.descriptor)
        printDescriptor(*package.descriptor, "    ");
}

/// A date, empty when the file says that it is not known.
std::string knownDate(std::string const& date) { return date == "unknown" ? std::string() : date; }

std::string writerText(WriterInfo const& writer) {
    return joined({joined({writer.company, writer.product, writer.version}, " "),
                   writer.platform.empty() ? "" : "on " + writer.platform, knownDate(writer.date)});
}

std::string partitionsText(FileInfo const& info) {
    auto const& summary = info.partitions;
    return joined({summary.count ? grouped(*summary.count) + " by the random index pack" : "",
                   "header " + summary.header,
                   summary.footerOffset ? "footer at " + hex(*summary.footerOffset) : "no footer",
                   summary.kagSize > 1 ? "KAG " + grouped(summary.kagSize) : ""});
}

void printHead(FileInfo const& info) {
    line("Format", "MXF " + info.version + ", " + labelText(info.operationalPattern));
    line("Essence", labelsText(info.essenceContainers));
    line("Descriptive", labelsText(info.descriptiveSchemes));
    line("Size", humanSize(info.size) + (info.size >= 1000 ? " (" + grouped(info.size) + " bytes)" : ""));
    if (info.runIn != 0)
        line("Run-in", grouped(info.runIn) + " bytes");
    if (info.duration && info.editRate) {
        std::string const time = durationText(*info.duration, *info.editRate);
        line("Duration",
             joined({time, editUnitsText(*info.duration) + " at " + rateText(*info.editRate) + "/s"}));
    }
    if (info.startTimecode)
        line("Starts at", timecodeText(*info.startTimecode));
    for (std::size_t i = 0; i < info.writers.size(); ++i)
        line(i == 0 ? "Written by" : "Changed by", writerText(info.writers[i]));
    line("Modified", knownDate(info.modified));
    line("Partitions", partitionsText(info));
    line("Metadata", "of the " + info.metadataPartition +
                         (info.metadataOffset ? " at " + hex(*info.metadataOffset) : ""));
    line("Complete", info.complete ? "yes" : "no");
}

} // namespace

void printInfoText(FileInfo const& info) {
    std::cout << printable(info.file) << "\n";
    printHead(info);
    for (auto const& package : info.packages)
        printPackage(package);
    for (auto const& text : info.odd)
        std::cout << "  ! " << printable(text) << "\n";
}

} // namespace Zelm
