#include "WaveForm.h"

#include "SetValues.h"

#include <MXF/Zelm/Metadata/Structural/DescriptorKeys.h>
#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/SoundDescriptors.h>

#include <algorithm>
#include <cmath>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::AES3::ChannelStatus;
using Essence::Wave::WaveFormat;
namespace Structural = Metadata::Structural;

namespace {

struct SpeakerRow {
    const char* symbol; // SMPTE ST 377-4
    std::uint32_t mask;
};

constexpr SpeakerRow speakerRows[] = {{"chL", 0x1},    {"chR", 0x2},    {"chC", 0x4},     {"chLFE", 0x8},
                                      {"chLrs", 0x10}, {"chRrs", 0x20}, {"chLc", 0x40},   {"chRc", 0x80},
                                      {"chCs", 0x100}, {"chLs", 0x200}, {"chLss", 0x200}, {"chRs", 0x400},
                                      {"chRss", 0x400}};

/// The mask of channels that are labelled, if their order is that of the mask's bits; else 0.
std::uint32_t channelMask(std::vector<ChannelLabel> const& labels, std::uint32_t channels) {
    std::uint32_t mask = 0, count = 0;
    for (auto const& label : labels) {
        if (label.kind != "channel")
            continue;
        auto const row = std::find_if(std::begin(speakerRows), std::end(speakerRows),
                                      [&](SpeakerRow const& each) { return label.symbol == each.symbol; });
        if (row == std::end(speakerRows) || row->mask <= mask)
            return 0;
        mask |= row->mask;
        ++count;
    }
    return count == channels ? mask : 0;
}

/// How many bytes a sample has: by the bytes of an instant, where they can be those of these channels.
void chooseSampleBytes(WaveFormat& format, std::uint32_t blockAlign) {
    auto const least = static_cast<std::uint16_t>((format.validBits + 7) / 8);
    format.sampleBytes = least;
    if (blockAlign == 0 || blockAlign == format.blockAlign())
        return;
    if (blockAlign % format.channels == 0 && blockAlign / format.channels >= least &&
        blockAlign / format.channels <= 4)
        format.sampleBytes = static_cast<std::uint16_t>(blockAlign / format.channels);
    else if (blockAlign % least == 0 && blockAlign <= 0xFFFF)
        format.channels = static_cast<std::uint16_t>(blockAlign / least);
}

std::uint32_t rounded(EditRate const& rate) {
    double const value = rate.toDouble();
    return value >= 1 && value < 1e9 ? static_cast<std::uint32_t>(std::lround(value)) : 0;
}

/// The first timecode track of the material package.
TrackInfo const* timecodeTrack(FileInfo const& info) {
    for (auto const& package : info.packages)
        if (package.kind == "material")
            for (auto const& track : package.tracks)
                if (track.timecode)
                    return &track;
    return nullptr;
}

long double seconds(std::int64_t units, EditRate const& rate) {
    return rate.numerator > 0 && rate.denominator > 0
               ? static_cast<long double>(units) * rate.denominator / rate.numerator
               : 0;
}

std::uint64_t timeReference(FileInfo const& info, MXFIO::EssenceTrack const& track, std::int64_t position,
                            std::uint32_t samplingRate) {
    constexpr long double day = 86400;
    auto const* const timecodes = timecodeTrack(info);
    long double from = timecodes != nullptr && timecodes->timecode->start >= 0
                           ? seconds(timecodes->timecode->start,
                                     timecodes->editRate.value_or(EditRate{timecodes->timecode->base, 1}))
                           : 0;
    from += seconds(position, track.editRate) - seconds(track.origin, track.editRate);
    if (from < 0)
        from += day;
    return from >= 0 && from < 1000 * day ? static_cast<std::uint64_t>(std::llround(from * samplingRate)) : 0;
}

/// What is not ASCII, or controls, becomes '?'.
std::string ascii(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char letter) { return letter < ' ' || letter > '~'; }, '?');
    return text;
}

} // namespace

std::optional<WaveFormat> waveFormat(MXFIO::EssenceTrack const& track, bool eightChannels) {
    auto const* const sound =
        dynamic_cast<Structural::GenericSoundEssenceDescriptor const*>(track.descriptor);
    if (sound == nullptr)
        return std::nullopt;
    auto const channels = count(sound->channelCount()).value_or(0);
    auto const bits = count(sound->quantizationBits()).value_or(0);
    WaveFormat format;
    format.samplingRate = rounded(rational(sound->audioSamplingRate()).value_or(EditRate{}));
    if (channels == 0 || channels > 0x3FFF || bits == 0 || bits > 32 || format.samplingRate == 0)
        return std::nullopt;
    format.channels = static_cast<std::uint16_t>(channels);
    format.validBits = static_cast<std::uint16_t>(bits);
    if (eightChannels) {
        format.channels = std::min<std::uint16_t>(format.channels, 8);
        format.validBits = std::min<std::uint16_t>(format.validBits, 24);
        format.sampleBytes = bits <= 16 ? 2 : 3;
    } else {
        chooseSampleBytes(format, track.samples.bytes);
    }
    if (format.sampleBytes == 1)
        format.validBits = 8;
    format.channelMask = channelMask(gatherDescriptor(*sound).sound->labels, format.channels);
    return format.blockAlign() <= 0xFFFF ? std::optional(format) : std::nullopt;
}

bool hasOtherAuxiliaryBits(MXFIO::EssenceTrack const& track) {
    constexpr unsigned coordinationSignal = 2, userDefined = 3;
    auto const* const aes3 = dynamic_cast<Structural::AES3AudioEssenceDescriptor const*>(track.descriptor);
    auto const mode = aes3 != nullptr ? count(aes3->auxBitsMode()).value_or(0) : 0;
    return mode == coordinationSignal || mode == userDefined;
}

std::vector<ChannelStatus> channelStatuses(MXFIO::EssenceTrack const& track) {
    auto const* const aes3 = dynamic_cast<Structural::AES3AudioEssenceDescriptor const*>(track.descriptor);
    auto const* const data = aes3 != nullptr ? aes3->fixedChannelStatusData() : nullptr;
    std::vector<ChannelStatus> statuses;
    if (data == nullptr || data->subType() != Types::Identifiers::UInt8)
        return statuses;
    for (std::size_t at = 0; at + ChannelStatus::blockSize <= data->count(); at += ChannelStatus::blockSize) {
        unsigned char bytes[ChannelStatus::blockSize];
        for (std::size_t i = 0; i < sizeof bytes; ++i)
            bytes[i] = data->at<Types::UInt8>(at + i).value();
        statuses.emplace_back(bytes);
    }
    return statuses;
}

Essence::Wave::BroadcastExtension broadcastExtension(FileInfo const& info,
                                                     MXFIO::EssenceContainer const& container,
                                                     MXFIO::EssenceTrack const& track, std::int64_t position,
                                                     std::uint32_t samplingRate) {
    Essence::Wave::BroadcastExtension broadcast;
    broadcast.originator = "zelm";
    broadcast.timeReference = timeReference(info, track, position, samplingRate);
    if (container.package == nullptr)
        return broadcast;
    broadcast.description = ascii(text(container.package->name()));
    // "2020-02-21T22:40:42.000Z"
    std::string const created = text(container.package->packageCreationDate());
    if (created.size() >= 19) {
        broadcast.date = ascii(created.substr(0, 10));
        broadcast.time = ascii(created.substr(11, 8));
    }
    if (auto const* const uid = container.package->packageUID())
        std::copy_n(uid->rawBuffer(), 32, broadcast.umid.begin());
    return broadcast;
}

} // namespace Zelm
