/// What `zelm info` tells of a file: gathered once, then printed as text or as JSON. Everything that a file
/// may leave out is optional; texts are empty instead.
#pragma once

#include "Input.h"

#include <MXF/Zelm/Templates/Rational.h>
#include <MXF/Zelm/Types/UMID.h>
#include <MXF/Zelm/Types/UniversalLabel.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace MXF::Zelm::Metadata::Structural {
class GenericDescriptor;
}

namespace Zelm {

using EditRate = MXF::Zelm::Templates::Rational<int>;

/// A label and what the registers call it.
struct NamedLabel {
    MXF::Zelm::Types::UniversalLabel label;
    std::string name;
};

/// One entry of the file's history: a product that wrote or changed it.
struct WriterInfo {
    std::string company;
    std::string product;
    std::string version;
    std::string platform;
    std::string date;
};

/// A channel or soundfield group label of a sound descriptor.
struct ChannelLabel {
    std::string kind;                     ///< "channel", "soundfield group", "group of soundfield groups"
    std::string symbol;                   ///< "chL"
    std::string name;                     ///< "Left"
    std::optional<std::uint32_t> channel; ///< counted from 1
    std::string language;
};

struct PictureInfo {
    std::optional<std::uint32_t> storedWidth,
        storedHeight; ///< of a frame: both fields where they are stored apart
    std::optional<std::uint32_t> sampledWidth, sampledHeight; ///< the same
    std::optional<std::uint32_t> displayWidth, displayHeight; ///< the same
    std::optional<EditRate> aspect;
    std::string scan;   ///< "progressive", "interlaced (separate fields)", …
    std::string chroma; ///< "4:2:2", or the components of an RGBA picture
    std::optional<std::uint32_t> bitDepth;
    std::optional<NamedLabel> transferCharacteristic, codingEquations, colorPrimaries;
};

struct SoundInfo {
    std::optional<EditRate> samplingRate; ///< Hz
    std::optional<std::uint32_t> channels;
    std::optional<std::uint32_t> bits;
    std::optional<bool> locked;
    std::optional<NamedLabel> channelAssignment;
    std::vector<ChannelLabel> labels;
};

/// An essence descriptor.
struct DescriptorInfo {
    std::string className;
    std::optional<std::uint32_t> linkedTrack;
    std::optional<EditRate> sampleRate;
    std::optional<std::int64_t> duration; ///< in units of the sample rate
    std::optional<NamedLabel> container;
    std::optional<NamedLabel> coding;
    std::optional<PictureInfo> picture;
    std::optional<SoundInfo> sound;
    std::string mimeType;                    ///< of timed text
    std::vector<std::string> locators;       ///< where external essence lies
    std::vector<DescriptorInfo> descriptors; ///< of a multiple descriptor
};

/// A timecode component.
struct TimecodeInfo {
    std::int64_t start = 0; ///< frames since midnight
    std::uint16_t base = 0; ///< frames a second, rounded
    bool dropFrame = false;
};

struct TrackInfo {
    std::string className;
    std::string kind; ///< "picture", "sound", "data", "timecode", "descriptive metadata", or the data
                      ///< definition's name
    std::string name;
    std::optional<std::uint32_t> id, number;
    std::optional<EditRate> editRate;
    std::optional<std::int64_t> duration; ///< edit units
    std::optional<std::int64_t> origin;   ///< edit units
    std::optional<TimecodeInfo> timecode; ///< the first timecode component
    std::size_t segments = 0;             ///< components of the track's sequence
};

struct PackageInfo {
    std::string kind; ///< "material", "file", "physical source"
    std::string name;
    std::optional<MXF::Zelm::Types::UMID32> uid;
    std::string created, modified;
    std::vector<TrackInfo> tracks;
    std::optional<DescriptorInfo> descriptor;
};

struct PartitionSummary {
    std::optional<std::size_t> count; ///< by the random index pack
    std::string header;               ///< "closed and complete"
    std::optional<std::uint64_t> footerOffset;
    bool hasRandomIndexPack = false;
    std::uint32_t kagSize = 0;
};

struct FileInfo {
    std::string file;
    std::uint64_t size = 0;
    std::uint64_t runIn = 0;
    std::string version; ///< of the file format: "1.3"
    std::optional<NamedLabel> operationalPattern;
    std::vector<NamedLabel> essenceContainers;
    std::vector<NamedLabel> descriptiveSchemes;
    std::vector<WriterInfo> writers; ///< oldest first
    std::string modified;
    PartitionSummary partitions;
    std::optional<std::uint64_t> metadataOffset; ///< of the partition whose metadata is shown
    std::string metadataPartition;               ///< its kind and status in words
    bool complete = false;
    std::optional<TimecodeInfo> startTimecode; ///< of the material package
    std::optional<EditRate> editRate;          ///< of the material package's first essence track
    std::optional<std::int64_t> duration;      ///< the same
    std::vector<PackageInfo> packages;
    std::vector<std::string> odd;                   ///< what a person should know
    std::vector<MXF::Zelm::Metadata::Fault> faults; ///< what could not be read
};

/// Gathers what there is to know of a file without walking it. Faults on the way are recorded. Throws
/// InvalidStructure when it is no MXF file.
FileInfo gatherInfo(Input& input);

/// Packages, tracks and descriptors of `metadata` go to `info`.
void gatherPackages(MXF::Zelm::Metadata::PartitionMetadata const& metadata, FileInfo& info);

/// An essence descriptor and those below it.
DescriptorInfo gatherDescriptor(MXF::Zelm::Metadata::Structural::GenericDescriptor const& set);

} // namespace Zelm
