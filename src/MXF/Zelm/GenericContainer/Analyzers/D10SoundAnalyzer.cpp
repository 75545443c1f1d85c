#include "MXF/Zelm/GenericContainer/Analyzers/D10SoundAnalyzer.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"

#include <algorithm>
#include <string>
#include <vector>

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::AES3::EightChannelWriter;
using Essence::Converters::ChannelMerger;
using Metadata::Structural::GenericSoundEssenceDescriptor;

constexpr unsigned char eightChannelAES3 = 0x10;
constexpr int samplingRate = 48000;
constexpr unsigned mostBits = 24;

void requireSound(Essence::Wave::WaveFormat const& format) {
    if (format.samplingRate != std::uint32_t{samplingRate} || format.sampleBytes < 2 ||
        format.sampleBytes > 4)
        throw Exceptions::InvalidValue("D-10 has sound of 16 to 24 bits at 48000 Hz, not of " +
                                       std::to_string(format.validBits) + " bits at " +
                                       std::to_string(format.samplingRate) + " Hz");
}

std::vector<ChannelMerger::Part> partsOf(Templates::vector<D10SoundAnalyzer::Input> const& inputs) {
    std::vector<ChannelMerger::Part> parts;
    unsigned channels = 0;
    for (auto const& input : inputs) {
        requireSound(input.format);
        parts.push_back({input.samples, input.format.pcmFormat()});
        channels += input.format.channels;
    }
    if (channels == 0 || channels > EightChannelWriter::channelCount)
        throw Exceptions::InvalidValue("D-10 has sound of 1 to 8 channels, not of " +
                                       std::to_string(channels));
    return parts;
}

} // namespace

D10SoundAnalyzer::D10SoundAnalyzer(Templates::vector<Input> const& inputs, D10Format const& format,
                                   unsigned declaredChannels)
    : format_(format),
      sound_(partsOf(inputs), mostBits),
      writer_(sound_.format(), format.rate(), {samplingRate, 1}),
      declaredChannels_(declaredChannels) {
    if (declaredChannels_ == 0)
        declaredChannels_ = sound_.format().channels > 4 ? 8 : 4;
    for (auto const& input : inputs)
        bits_ = std::max(bits_, std::min<unsigned>(input.format.validBits, mostBits));
    takeChannelStatus(inputs);
}

/// Blocks that are all zero say nothing, not even that there is channel status.
void D10SoundAnalyzer::takeChannelStatus(Templates::vector<Input> const& inputs) {
    unsigned first = 0;
    for (auto const& input : inputs) {
        auto const count = std::min<std::size_t>(input.channelStatus.size(), input.format.channels);
        for (unsigned i = 0; i < count; ++i)
            if (!(input.channelStatus[i] == Essence::AES3::ChannelStatus()))
                writer_.channelStatus(first + i, input.channelStatus[i]);
        first += input.format.channels;
    }
}

D10SoundAnalyzer::~D10SoundAnalyzer() = default;

Templates::Rational<int> D10SoundAnalyzer::editRate() const { return format_.rate(); }
Types::UniversalLabel D10SoundAnalyzer::universalLabel() const { return format_.containerLabel(); }
unsigned char D10SoundAnalyzer::itemTypeIdentifier() const { return ElementKey::CPSound; }
unsigned char D10SoundAnalyzer::essenceElementType() const { return eightChannelAES3; }
unsigned int D10SoundAnalyzer::requiredKAGSize() const { return d10KAGSize; }
bool D10SoundAnalyzer::isCBE() const { return true; }

unsigned int D10SoundAnalyzer::boundedEditUnitSize() const {
    return static_cast<unsigned int>(writer_.largestElement());
}

Metadata::Structural::FileDescriptor&
D10SoundAnalyzer::describe(Metadata::PartitionMetadata& metadata,
                           Metadata::Structural::FileDescriptor* present) {
    auto& descriptor = presentOrNew<GenericSoundEssenceDescriptor>(metadata, present);
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    descriptor.audioSamplingRate(Types::Rational(Templates::Rational<int>{samplingRate, 1}));
    descriptor.locked(Types::Boolean(true));
    descriptor.channelCount(Types::UInt32(declaredChannels_));
    descriptor.quantizationBits(Types::UInt32(bits_));
    if (channelMap_ && descriptor.subDescriptors().empty())
        channelMap_->label(metadata, descriptor, 0, sound_.format().channels);
    return descriptor;
}

bool D10SoundAnalyzer::hasMore() const { return !sound_.endOfStream(); }

std::uint64_t D10SoundAnalyzer::read(EditUnit& unit) {
    std::size_t const size = writer_.nextSampleCount() * writer_.format().instantSize();
    DataIO::Chain samples;
    std::uint64_t const count = sound_.read(size, samples);
    if (count == 0)
        return 0;
    if (count < size)
        samples.append(
            DataIO::Slice::adopt(std::vector<unsigned char>(static_cast<std::size_t>(size - count))));
    unit.data.append(writer_.element(samples));
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
