#include "MXF/Zelm/GenericContainer/Analyzers/WaveOrigin.h"

#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>
#include <set>

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::Wave::KeptChunk;
using Essence::Wave::WaveReader;
using namespace Metadata::Structural;

/// Of the file's layout and its samples, which a new file has of its own.
constexpr const char* ownChunks[] = {"fmt ", "data", "ds64", "fact", "JUNK", "junk", "PAD ", "FLLR"};

/// Bytes that a property can hold: its length has 16 bits.
constexpr std::size_t largestValue = 0xFFFF;

std::uint32_t idOf(std::string const& text) {
    std::uint32_t id = 0;
    for (std::size_t i = 0; i < 4; ++i)
        id = id << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0x20u);
    return id;
}

std::string textOf(std::uint32_t id) {
    std::string text;
    for (unsigned shift = 32; shift != 0;)
        text += static_cast<char>(id >> (shift -= 8) & 0xFFu);
    return text;
}

/// The only clip of a track; null when it has another number of them.
SourceClip* clipOf(SourcePackage const& package, unsigned trackID) {
    for (auto* const track : package.tracks()) {
        auto const* const sequence =
            track->trackID() != nullptr && *track->trackID() == trackID ? track->sequence() : nullptr;
        if (sequence != nullptr && sequence->structuralComponents().size() == 1)
            return dynamic_cast<SourceClip*>(sequence->structuralComponents().front());
    }
    return nullptr;
}

SourcePackage* sourcePackage(Metadata::PartitionMetadata const& metadata, Types::UMID32 const& uid) {
    for (auto* const set : metadata.packages()) {
        auto* const package = dynamic_cast<SourcePackage*>(set);
        if (package != nullptr && package->packageUID() != nullptr && *package->packageUID() == uid)
            return package;
    }
    return nullptr;
}

void addChunk(Metadata::PartitionMetadata& metadata, WAVEAudioPhysicalDescriptor& descriptor,
              KeptChunk const& chunk) {
    for (std::size_t at = 0; at == 0 || at < chunk.content.size(); at += largestValue) {
        auto const from = chunk.content.begin() + static_cast<std::ptrdiff_t>(at);
        auto const size = static_cast<std::ptrdiff_t>(std::min(largestValue, chunk.content.size() - at));
        auto& set = create<UnknownChunkSet>(metadata);
        set.chunkID(Types::UInt32(idOf(chunk.id)));
        set.chunkLength(Types::UInt32(static_cast<std::uint32_t>(chunk.content.size())));
        set.chunkData(Types::DataStream(std::vector<unsigned char>(from, from + size)));
        descriptor.addUnknownBWFChunk(set);
    }
}

/// At the rate of the file that the sound goes into.
void addTimeReference(Metadata::PartitionMetadata& metadata, SourcePackage& package, WaveOrigin const& origin,
                      Templates::Rational<int> const& rate) {
    std::uint64_t length = unknownLength;
    if (origin.sampleCount && *origin.sampleCount < std::uint64_t{1} << 40)
        length = static_cast<std::uint64_t>(static_cast<double>(*origin.sampleCount) /
                                            origin.format.samplingRate * rate.toDouble());
    addTimecodeTrack(metadata, package, origin.startTimecode(rate), rate, length);
}

SourcePackage& createOrigin(Metadata::PartitionMetadata& metadata, WaveOrigin const& origin,
                            Templates::Rational<int> const& rate) {
    auto& package = createFilePackage(metadata, {.uid = origin.packageUID});
    auto& descriptor = create<WAVEAudioPhysicalDescriptor>(metadata);
    package.descriptor(descriptor);
    for (auto const& chunk : origin.chunks)
        addChunk(metadata, descriptor, chunk);
    Templates::Rational<int> const soundRate = {static_cast<int>(origin.format.samplingRate), 1};
    auto& track = createTimelineTrack(metadata, package, DataDefinitions::sound, 0, 0, soundRate);
    addSourceClip(metadata, track.sequence(), DataDefinitions::sound,
                  origin.sampleCount.value_or(unknownLength), 0);
    if (!origin.broadcast)
        return package;
    auto const history = Platform::toUtf16(origin.broadcast->codingHistory);
    descriptor.bextCodingHistory(Types::UTF16String(history.substr(0, largestValue / sizeof history[0])));
    if (rate.isKnown())
        addTimeReference(metadata, package, origin, rate);
    return package;
}

Track const* soundTrackOf(SourcePackage const& package) {
    for (auto const* const track : package.tracks())
        if (auto const* const definition = dataDefinitionOf(*track);
            definition != nullptr && *definition == DataDefinitions::sound)
            return track;
    return nullptr;
}

} // namespace

WaveOrigin::WaveOrigin(WaveReader& wave)
    : format(wave.format()), broadcast(wave.broadcast()), sampleCount(wave.sampleCount()) {
    wave.readRest();
    for (auto const& chunk : wave.chunks()) {
        if (std::find(std::begin(ownChunks), std::end(ownChunks), chunk.id) != std::end(ownChunks))
            continue;
        if (chunk.content.size() < chunk.size) {
            leftOut.push_back(chunk.id);
            continue;
        }
        chunks.push_back({chunk.id, {chunk.content.begin(), chunk.content.end()}});
    }
}

Utils::TimeCode WaveOrigin::startTimecode(Templates::Rational<int> const& rate) const {
    constexpr std::uint64_t secondsOfDay = 86400;
    if (!broadcast || format.samplingRate == 0)
        return {};
    std::uint64_t const instant = broadcast->timeReference % (secondsOfDay * format.samplingRate);
    Templates::Rational<std::int64_t> const seconds = {static_cast<std::int64_t>(instant),
                                                       std::int64_t{format.samplingRate}};
    return {Utils::TimeBase::ofEditRate(rate), Utils::secondsToFrames(seconds, rate)};
}

void linkOrigin(Metadata::PartitionMetadata& metadata, SourcePackage const& package, unsigned trackID,
                WaveOrigin const& origin, Templates::Rational<int> const& rate) {
    auto* const clip = clipOf(package, trackID);
    bool const isLinked =
        clip != nullptr && clip->sourcePackageID() != nullptr && *clip->sourcePackageID() != Types::UMID32();
    if (clip == nullptr || isLinked)
        return;
    auto const* const present = sourcePackage(metadata, origin.packageUID);
    auto const& source = present != nullptr ? *present : createOrigin(metadata, origin, rate);
    if (auto const* const track = soundTrackOf(source))
        linkSourceClip(*clip, source, *track);
}

std::vector<KeptChunk> originChunks(Metadata::PartitionMetadata const& metadata, SourcePackage const& package,
                                    unsigned trackID) {
    std::vector<KeptChunk> chunks;
    auto const* const clip = clipOf(package, trackID);
    auto const* const source = clip != nullptr && clip->sourcePackageID() != nullptr
                                   ? sourcePackage(metadata, *clip->sourcePackageID())
                                   : nullptr;
    auto const* const descriptor =
        source != nullptr ? dynamic_cast<WAVEAudioPhysicalDescriptor const*>(source->descriptor()) : nullptr;
    if (descriptor == nullptr)
        return chunks;
    std::size_t missing = 0;               // of the last chunk
    std::set<UnknownChunkSet const*> seen; // a file may refer to one set thousands of times
    for (auto const* const set : descriptor->unknownBWFChunks()) {
        if (set->chunkID() == nullptr || set->chunkData() == nullptr || !seen.insert(set).second)
            continue;
        auto const& data = set->chunkData()->bytes();
        std::string const id = textOf(set->chunkID()->value());
        std::size_t const length = set->chunkLength() != nullptr ? set->chunkLength()->value() : data.size();
        if (missing == 0 || chunks.back().id != id) {
            chunks.push_back({id, data});
            missing = length > data.size() ? length - data.size() : 0;
            continue;
        }
        chunks.back().content.insert(chunks.back().content.end(), data.begin(), data.end());
        missing -= std::min(missing, data.size());
    }
    return chunks;
}

} // namespace MXF::Zelm::GenericContainer
