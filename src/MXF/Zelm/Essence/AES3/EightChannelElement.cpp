#include "MXF/Zelm/Essence/AES3/EightChannelElement.h"

#include "MXF/Zelm/Essence/LittleEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::Essence::AES3 {

namespace {

constexpr std::size_t headSize = 4, wordSize = 4;
constexpr std::size_t instantSize = wordSize * EightChannelElement::channelCount;

/// As many samples as there can be, and their head.
constexpr std::uint64_t largestElement = headSize + 0xFFFF * instantSize;

constexpr unsigned sampleBit = 4, sampleBits = 24;

} // namespace

EightChannelElement::EightChannelElement(DataIO::Chain const& value)
    : bytes_(value.part(0, std::min(value.size(), largestElement)).contiguous()), sampleCount_(0) {
    if (bytes_.size() < headSize)
        throw Exceptions::InvalidLength("An AES3 element of eight channels has " +
                                        std::to_string(bytes_.size()) + " bytes");
    sampleCount_ = littleEndian<std::uint16_t>(bytes_.data() + 1);
    if ((bytes_.size() - headSize) / instantSize < sampleCount_)
        throw Exceptions::InvalidLength("An AES3 element of eight channels has " +
                                        std::to_string(bytes_.size()) + " bytes: its " +
                                        std::to_string(sampleCount_) + " samples need " +
                                        std::to_string(headSize + std::size_t{sampleCount_} * instantSize));
}

void EightChannelElement::appendSamples(unsigned channels, unsigned sampleBytes,
                                        std::vector<unsigned char>& samples) const {
    if (channels < 1 || channels > channelCount || sampleBytes < 2 || sampleBytes > 3)
        throw Exceptions::InvalidValue("An AES3 element of eight channels cannot give " +
                                       std::to_string(channels) + " channels of " +
                                       std::to_string(sampleBytes) + " bytes");
    std::uint32_t masks[channelCount];
    for (unsigned channel = 0; channel < channelCount; ++channel) {
        bool const isThere = channelFlags() == 0 || (channelFlags() >> channel & 1u) != 0;
        masks[channel] = isThere ? ~std::uint32_t{0} : 0;
    }
    std::size_t const before = samples.size();
    samples.resize(before + std::size_t{sampleCount_} * channels * sampleBytes);
    unsigned char* to = samples.data() + before;
    unsigned const shift = sampleBit + sampleBits - 8 * sampleBytes;
    for (std::size_t i = 0; i < sampleCount_; ++i)
        for (unsigned channel = 0; channel < channels; ++channel) {
            auto const* const word = bytes_.data() + headSize + i * instantSize + channel * wordSize;
            std::uint32_t const sample = (littleEndian<std::uint32_t>(word) & masks[channel]) >> shift;
            for (unsigned byte = 0; byte < sampleBytes; ++byte)
                *to++ = static_cast<unsigned char>(sample >> (8 * byte) & 0xFF);
        }
}

} // namespace MXF::Zelm::Essence::AES3
