#include "MXF/Zelm/Essence/Converters/SampleConverters.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>

namespace MXF::Zelm::Essence::Converters {

void appendWithoutAuxiliaryBits(DataIO::Chain const& samples, std::vector<unsigned char>& result) {
    constexpr std::size_t sampleBytes = 3;
    std::size_t const before = result.size();
    for (auto const& slice : samples)
        result.insert(result.end(), slice.begin(), slice.end());
    for (std::size_t i = before; result.size() - i >= sampleBytes; i += sampleBytes)
        result[i] &= 0xF0;
}

Interleaver::Interleaver(std::vector<std::uint32_t> instantSizes) {
    for (std::uint32_t const size : instantSizes) {
        if (size == 0)
            throw Exceptions::InvalidValue("A sound without channels cannot be mixed");
        sounds_.push_back({size, {}});
        instantSize_ += size;
    }
}

Interleaver::~Interleaver() = default;

void Interleaver::add(std::size_t sound, DataIO::Chain samples) {
    sounds_.at(sound).samples.append(std::move(samples));
}

void Interleaver::takeInto(std::vector<unsigned char>& result) {
    std::uint64_t instants = ~std::uint64_t{0};
    for (auto const& sound : sounds_)
        instants = std::min(instants, sound.samples.size() / sound.instantSize);
    if (sounds_.empty() || instants == 0)
        return;
    std::size_t const before = result.size();
    result.resize(before + Templates::safeCast<std::size_t>(instants * instantSize_));
    std::size_t column = before;
    for (auto& sound : sounds_) {
        auto const samples = sound.samples.splitFront(instants * sound.instantSize);
        std::size_t to = column;
        std::uint32_t within = 0;
        for (auto const& slice : samples)
            for (unsigned char const byte : slice) {
                result[to + within] = byte;
                if (++within == sound.instantSize) {
                    within = 0;
                    to += instantSize_;
                }
            }
        column += sound.instantSize;
    }
}

void Interleaver::fill(unsigned char silence) {
    std::uint64_t instants = 0;
    for (auto const& sound : sounds_)
        instants = std::max(instants, sound.samples.size() / sound.instantSize);
    auto const blockSize = Templates::safeCast<std::size_t>(
        std::min<std::uint64_t>(instants * instantSize_, std::uint64_t{1} << 16));
    auto const block = DataIO::Slice::adopt(std::vector<unsigned char>(blockSize, silence));
    for (auto& sound : sounds_)
        while (sound.samples.size() < instants * sound.instantSize) {
            std::uint64_t const missing = instants * sound.instantSize - sound.samples.size();
            sound.samples.append(
                block.part(0, static_cast<std::size_t>(std::min<std::uint64_t>(missing, blockSize))));
        }
}

std::uint64_t Interleaver::waiting() const {
    std::uint64_t bytes = 0;
    for (auto const& sound : sounds_)
        bytes += sound.samples.size();
    return bytes;
}

} // namespace MXF::Zelm::Essence::Converters
