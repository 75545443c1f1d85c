#include "WrapStreams.h"

#include <MXF/Zelm/Essence/AES3/S302M/Source.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <cmath>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::AES3::S302M::Header;
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

/// The size of a packet whose head stands at `bytes`, 0 when there is none.
std::size_t packetSize(const unsigned char* bytes) {
    constexpr std::size_t pairSizes[] = {5, 6, 7}; // for 16, 20 and 24 bits
    constexpr unsigned char alignment = 0x0F;
    std::size_t const bits = bytes[3] >> 4 & 3u;
    std::size_t const payload = Header(bytes).audioPacketSize();
    if ((bytes[3] & alignment) != 0 || bits == 3 || payload == 0 ||
        payload % (pairSizes[bits] * (Header(bytes).numberOfChannels() / 2u)) != 0)
        return 0;
    return Header::size() + payload;
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
    auto const format = formatOf(name, *openPackets(opening, making.blocks));
    return soundInput(
        name, [opening](InputHead::Blocks const& blocks) { return openPackets(opening, blocks); }, format,
        shift, making);
}

/// Each packet tells where the next one is: three in a row are no chance, nor are fewer that fill the file.
bool isS302M(InputHead const& head, TrackMaking const&) {
    constexpr std::size_t enough = 3;
    std::size_t at = 0, count = 0;
    for (; count < enough && head.bytes.size() - at >= Header::size(); ++count) {
        auto const size = packetSize(head.bytes.data() + at);
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
