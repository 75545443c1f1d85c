#include "MXF/Zelm/Essence/AES3/AES3Info.h"

#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"

#include <cstdint>
#include <tuple>

namespace MXF::Zelm::Essence::AES3 {

namespace {

/// Below, by value; an unknown rate is below all others.
bool isLess(Templates::Rational<int> const& a, Templates::Rational<int> const& b) {
    if (!a.isKnown() || !b.isKnown())
        return std::tuple(a.isKnown(), a.numerator) < std::tuple(b.isKnown(), b.numerator);
    bool const turned = (a.denominator < 0) != (b.denominator < 0);
    auto const left = std::int64_t{a.numerator} * b.denominator;
    auto const right = std::int64_t{b.numerator} * a.denominator;
    return turned ? right < left : left < right;
}

} // namespace

void AES3Info::read(ChannelStatus const& status) {
    if (auto const rate = status.samplingFrequency(); rate.isKnown())
        samplingRate = rate;
    if (auto const bits = status.sourceWordLength(); bits != 0)
        bitsPerSample = bits;
}

ChannelStatus AES3Info::channelStatus() const {
    ChannelStatus status;
    status.isProfessional(true);
    status.audioSignalEmphasis(ChannelStatus::NoEmphasis);
    status.samplingFrequency(samplingRate);
    status.channelMode(ChannelStatus::TwoChannel);
    status.sourceWordLength(static_cast<unsigned char>(bitsPerSample > 255 ? 255 : bitsPerSample));
    status.updateCRC();
    return status;
}

bool operator==(AES3Info const& a, AES3Info const& b) {
    return a.channels == b.channels && a.bitsPerSample == b.bitsPerSample && a.samplingRate == b.samplingRate;
}

bool operator<(AES3Info const& a, AES3Info const& b) {
    if (std::tie(a.channels, a.bitsPerSample) != std::tie(b.channels, b.bitsPerSample))
        return std::tie(a.channels, a.bitsPerSample) < std::tie(b.channels, b.bitsPerSample);
    return isLess(a.samplingRate, b.samplingRate);
}

} // namespace MXF::Zelm::Essence::AES3
