#include "MXF/Zelm/Essence/AES3/EightChannelWriter.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <cstring>
#include <string>

namespace MXF::Zelm::Essence::AES3 {

namespace {

constexpr std::size_t headSize = 4, wordSize = 4;
constexpr std::size_t instantSize = EightChannelWriter::channelCount * wordSize;

void putWord(std::uint32_t word, unsigned char* to) {
    for (unsigned i = 0; i < wordSize; ++i)
        to[i] = static_cast<unsigned char>(word >> (8 * i) & 0xFF);
}

/// The samples of a channel into words: channel in bits 0 to 2, sample in bits 4 to 27.
template <unsigned sampleBytes>
void putSamples(const unsigned char* from, std::size_t step, std::size_t count, unsigned channel,
                unsigned char* to) {
    for (std::size_t i = 0; i < count; ++i, from += step, to += instantSize) {
        std::uint32_t sample = 0; // 24 bits
        for (unsigned byte = 0; byte < sampleBytes; ++byte)
            if (int const shift = 24 - 8 * static_cast<int>(sampleBytes - byte); shift >= 0)
                sample |= std::uint32_t{from[byte]} << shift;
        putWord(sample << 4 | channel, to);
    }
}

} // namespace

EightChannelWriter::EightChannelWriter(std::size_t samples, unsigned sequenceCount) : samples_(samples) {
    if (samples > mostSamples)
        throw Exceptions::InvalidValue("An element of eight channels cannot have " + std::to_string(samples) +
                                       " samples");
    block_ = DataIO::Block::make(size(samples));
    auto* to = block_->bytes();
    to[0] = static_cast<unsigned char>(sequenceCount & 7);
    to[1] = static_cast<unsigned char>(samples & 0xFF);
    to[2] = static_cast<unsigned char>(samples >> 8);
    to[3] = 0;
    to += headSize;
    for (std::size_t i = 0; i < samples; ++i)
        for (unsigned channel = 0; channel < channelCount; ++channel, to += wordSize)
            putWord(channel, to);
}

void EightChannelWriter::write(unsigned channel, const unsigned char* samples, std::size_t count,
                               unsigned sampleBytes, std::size_t step) {
    if (channel >= channelCount || count > samples_ || sampleBytes < 2 || sampleBytes > 4)
        throw Exceptions::InvalidValue("Channel " + std::to_string(channel) + " with " +
                                       std::to_string(count) + " samples of " + std::to_string(sampleBytes) +
                                       " bytes does not fit in an element of eight channels");
    auto* const to = block_->bytes() + headSize + channel * wordSize;
    if (sampleBytes == 2)
        putSamples<2>(samples, step, count, channel, to);
    else if (sampleBytes == 3)
        putSamples<3>(samples, step, count, channel, to);
    else
        putSamples<4>(samples, step, count, channel, to);
    block_->bytes()[3] = static_cast<unsigned char>(block_->bytes()[3] | 1u << channel);
}

} // namespace MXF::Zelm::Essence::AES3
