#include "MXF/Zelm/Essence/AES3/EightChannelElement.h"

#include "MXF/Zelm/Essence/AES3/SubframeWords.h"
#include "MXF/Zelm/Essence/LittleEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::Essence::AES3 {

namespace {

constexpr std::size_t headSize = 4;
constexpr std::size_t instantSize = subframeSize * EightChannelElement::channelCount;

/// As many samples as there can be, and their head.
constexpr std::uint64_t largestElement = headSize + 0xFFFF * instantSize;

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
    PCMFormat const format = {channels, 8 * sampleBytes};
    std::size_t const before = samples.size();
    samples.resize(before + sampleCount_ * format.instantSize());
    if (sampleCount_ != 0)
        unpackElement(format, bytes_.data() + headSize, sampleCount_, channelFlags(),
                      samples.data() + before);
}

} // namespace MXF::Zelm::Essence::AES3
