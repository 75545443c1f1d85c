#include "WrapStreams.h"

#include <MXF/Zelm/Essence/AES3/S302M/Source.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/Analyzers/S302MAnalyzer.h>

#include <cmath>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::AES3::ChannelStatus;
using Essence::AES3::S302M::Header;
using Essence::AES3::S302M::PacketCutter;
using Essence::Wave::WaveFormat;
using S302MSource = Essence::AES3::S302M::Source;

namespace {

constexpr double longestShift = 60; // seconds

Templates::SharedPtr<S302MSource> openPackets(InputHead::Opening const& opening,
                                              InputHead::Blocks const& blocks) {
    return std::make_shared<S302MSource>(opening(blocks), S302MSource::TwentyBits::In24Bits);
}

/// Throws CannotWrap for a stream without packets.
WaveFormat formatOf(std::string const& name, S302MSource& packets) {
    if (!packets.preload())
        throw CannotWrap(name + ": has no packets of SMPTE 302M");
    auto const& info = packets.info();
    WaveFormat format;
    format.channels = static_cast<std::uint16_t>(info.channels);
    format.samplingRate = static_cast<std::uint32_t>(info.samplingRate.numerator);
    format.sampleBytes = info.bitsPerSample == 16 ? 2 : 3;
    format.validBits = static_cast<std::uint16_t>(info.bitsPerSample);
    return format;
}

/// What comes with the channels among the first samples, which have room for several blocks of it.
std::vector<ChannelStatus> channelStatusOf(S302MSource& packets) {
    constexpr std::uint64_t searched = 4000; // instants
    try {
        DataIO::Chain samples;
        packets.readSamples(searched, samples);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        // Who reads the sound itself tells.
    }
    std::vector<ChannelStatus> found(packets.info().channels);
    for (unsigned channel = 0; channel < found.size(); ++channel)
        if (auto const* const status = packets.channelStatus(channel))
            found[channel] = *status;
    return found;
}

} // namespace

std::optional<std::int64_t> instantsBetween(double from, double to, std::uint32_t samplingRate) {
    if (!(std::abs(to - from) <= longestShift))
        return std::nullopt;
    return std::llround((to - from) * samplingRate);
}

InputHead soundInput(std::string const& name, InputHead::Opening const& opening, WaveFormat const& format,
                     std::int64_t shift, TrackMaking const& making) {
    auto const note = [name, notes = making.notes](std::string const& text) {
        notes->insert(name + ": " + text);
    };
    InputHead head(name, [=](InputHead::Blocks const& blocks) {
        return std::make_shared<StreamSound>(opening(blocks), format, shift, note);
    });
    head.as = "samples";
    head.pcm = format;
    return head;
}

InputHead s302mInput(std::string const& name, InputHead::Opening const& opening, std::int64_t shift,
                     TrackMaking const& making) {
    if (making.options.packets) {
        InputHead head(name, opening);
        head.as = s302mPackets;
        head.shift = shift;
        return head;
    }
    auto const packets = openPackets(opening, making.blocks);
    auto const format = formatOf(name, *packets);
    auto head = soundInput(
        name, [opening](InputHead::Blocks const& blocks) { return openPackets(opening, blocks); }, format,
        shift, making);
    head.channelStatus = channelStatusOf(*packets);
    return head;
}

void addS302MPackets(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    auto const analyzer = std::make_shared<GenericContainer::S302MAnalyzer>(head.open(making), head.shift);
    analyzer->editRate(making.rate);
    if (!analyzer->preload())
        throw CannotWrap(head.name + ": has no packets of SMPTE 302M");
    addTrack(tracks, 'a', head, "SMPTE 302M packets", analyzer, making.sources++);
    making.hasPackets = true;
}

/// Each packet tells where the next one is: three in a row are no chance, nor are fewer that fill the file.
bool isS302M(InputHead const& head, TrackMaking const&) {
    constexpr std::size_t enough = 3;
    std::size_t at = 0, count = 0;
    for (; count < enough && head.bytes.size() - at >= Header::size(); ++count) {
        auto const size = PacketCutter::sizeOf(head.bytes.data() + at);
        if (size == 0)
            return false;
        if (size > head.bytes.size() - at)
            return count != 0 && head.bytes.size() == InputHead::size;
        at += size;
    }
    return count == enough || (count != 0 && at == head.bytes.size());
}

std::vector<InputHead> s302mStreams(InputHead const& head, TrackMaking& making) {
    auto const opening = [head](InputHead::Blocks const& blocks) { return head.open(blocks); };
    return {s302mInput(head.name, opening, 0, making)};
}

} // namespace Zelm
