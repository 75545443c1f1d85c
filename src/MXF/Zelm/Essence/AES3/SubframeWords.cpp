#include "MXF/Zelm/Essence/AES3/SubframeWords.h"

#include "MXF/Zelm/Essence/Converters/Words.h"

#include <cstring>

namespace MXF::Zelm::Essence::AES3 {

namespace {

using Converters::LittleWord;
using Subframe = LittleWord<subframeSize>;

constexpr std::uint32_t blockStartBit = 1u << 3, statusBit = 1u << 30, parityBit = 1u << 31;

/// The upper 24 of 32 bits are the sample's.
constexpr std::uint32_t sampleBits = 0xFFFFFF00;

template <class PCMWord>
void packChannel(const unsigned char* pcm, std::size_t step, std::size_t instants, std::size_t wordStep,
                 std::uint32_t channel, unsigned char* words) {
    for (std::size_t i = 0; i < instants; ++i)
        Subframe::store((PCMWord::load(pcm + i * step) & sampleBits) >> 4 | channel, words + i * wordStep);
}

template <class PCMWord>
void unpackChannel(const unsigned char* words, std::size_t wordStep, std::size_t instants, std::size_t step,
                   std::uint32_t mask, unsigned char* pcm) {
    for (std::size_t i = 0; i < instants; ++i)
        PCMWord::store(Subframe::load(words + i * wordStep) << 4 & mask, pcm + i * step);
}

/// Whether an odd number of bits is set.
bool isOdd(std::uint32_t value) {
    value ^= value >> 16;
    value ^= value >> 8;
    value ^= value >> 4;
    return (0x6996u >> (value & 15u) & 1u) != 0;
}

} // namespace

void packSubframes(PCMFormat const& format, const unsigned char* pcm, std::size_t instants,
                   unsigned wordChannels, unsigned char* words) {
    auto const pack = format.sampleSize() == 2 ? packChannel<LittleWord<2>> : packChannel<LittleWord<3>>;
    std::size_t const wordStep = wordChannels * subframeSize;
    for (unsigned channel = 0; channel < wordChannels; ++channel) {
        auto* const to = words + channel * subframeSize;
        if (channel < format.channels)
            pack(pcm + channel * format.sampleSize(), format.instantSize(), instants, wordStep, channel & 7u,
                 to);
        else
            for (std::size_t i = 0; i < instants; ++i)
                Subframe::store(channel & 7u, to + i * wordStep);
    }
}

void unpackSubframes(PCMFormat const& format, const unsigned char* words, std::size_t instants,
                     unsigned wordChannels, unsigned char* pcm) {
    auto const unpack =
        format.sampleSize() == 2 ? unpackChannel<LittleWord<2>> : unpackChannel<LittleWord<3>>;
    std::uint32_t const mask = ~std::uint32_t{0} << (32 - format.bitsPerSample);
    for (unsigned channel = 0; channel < format.channels; ++channel)
        unpack(words + channel * subframeSize, wordChannels * subframeSize, instants, format.instantSize(),
               mask, pcm + channel * format.sampleSize());
}

void unpackElement(PCMFormat const& format, const unsigned char* words, std::size_t instants, unsigned flags,
                   unsigned char* pcm) {
    unpackSubframes(format, words, instants, elementChannels, pcm);
    for (unsigned channel = 0; flags != 0 && channel < format.channels; ++channel) {
        if ((flags >> channel & 1u) != 0)
            continue;
        auto* sample = pcm + channel * format.sampleSize();
        for (std::size_t i = 0; i < instants; ++i, sample += format.instantSize())
            std::memset(sample, 0, format.sampleSize());
    }
}

unsigned setSubframeFlags(std::vector<ChannelStatus> const& statuses, unsigned blockPosition,
                          unsigned char* words, std::size_t instants) {
    for (std::size_t i = 0; i < instants; ++i) {
        std::uint32_t const start = blockPosition == 0 ? blockStartBit : 0;
        for (auto const& status : statuses) {
            std::uint32_t word = Subframe::load(words);
            word |= start | (status.bit(blockPosition) ? statusBit : 0);
            Subframe::store(word | (isOdd(word >> 4) ? parityBit : 0), words);
            words += subframeSize;
        }
        blockPosition = (blockPosition + 1) % ChannelStatus::blockBits;
    }
    return blockPosition;
}

} // namespace MXF::Zelm::Essence::AES3
