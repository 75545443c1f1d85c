#include "MXF/Zelm/GenericContainer/Analyzers/D10SoundAnalyzer.h"

#include "MXF/Zelm/Essence/AES3/EightChannelWriter.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::AES3::EightChannelWriter;
using Metadata::Structural::GenericSoundEssenceDescriptor;

constexpr unsigned char eightChannelAES3 = 0x10;
constexpr int samplingRate = 48000;

/// Puts the channels of one sound into an element, from channel `first` on.
void writeChannels(DataIO::Slice const& samples, Essence::Wave::WaveFormat const& format, unsigned first,
                   EightChannelWriter& element) {
    std::size_t const step = format.blockAlign(), count = samples.size() / step;
    for (unsigned channel = 0; channel < format.channels; ++channel)
        element.write(first + channel, samples.data() + std::size_t{channel} * format.sampleBytes, count,
                      format.sampleBytes, step);
}

} // namespace

D10SoundAnalyzer::D10SoundAnalyzer(Templates::vector<Input> inputs, D10Format const& format,
                                   unsigned declaredChannels)
    : inputs_(std::move(inputs)), format_(format), cadence_(samplingRate, format.rate()) {
    for (auto const& input : inputs_) {
        if (input.format.samplingRate != std::uint32_t{samplingRate} || input.format.sampleBytes < 2 ||
            input.format.sampleBytes > 4)
            throw Exceptions::InvalidValue("D-10 has sound of 16 to 24 bits at 48000 Hz, not of " +
                                           std::to_string(input.format.validBits) + " bits at " +
                                           std::to_string(input.format.samplingRate) + " Hz");
        channels_ += input.format.channels;
        bits_ = std::max(bits_, std::min<unsigned>(input.format.validBits, 24));
    }
    if (channels_ == 0 || channels_ > EightChannelWriter::channelCount)
        throw Exceptions::InvalidValue("D-10 has sound of 1 to 8 channels, not of " +
                                       std::to_string(channels_));
    declaredChannels_ = declaredChannels != 0 ? declaredChannels : channels_ > 4 ? 8 : 4;
}

D10SoundAnalyzer::~D10SoundAnalyzer() = default;

Templates::Rational<int> D10SoundAnalyzer::editRate() const { return format_.rate(); }
Types::UniversalLabel D10SoundAnalyzer::universalLabel() const { return format_.containerLabel(); }
unsigned char D10SoundAnalyzer::itemTypeIdentifier() const { return ElementKey::CPSound; }
unsigned char D10SoundAnalyzer::essenceElementType() const { return eightChannelAES3; }
unsigned int D10SoundAnalyzer::requiredKAGSize() const { return d10KAGSize; }
bool D10SoundAnalyzer::isCBE() const { return true; }

unsigned int D10SoundAnalyzer::boundedEditUnitSize() const {
    return static_cast<unsigned int>(
        EightChannelWriter::size(Templates::safeCast<std::size_t>(cadence_.mostSamples())));
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
    return descriptor;
}

bool D10SoundAnalyzer::hasMore() const {
    return std::any_of(inputs_.begin(), inputs_.end(),
                       [](auto const& input) { return !input.samples->endOfStream(); });
}

std::uint64_t D10SoundAnalyzer::read(EditUnit& unit) {
    std::uint64_t const samples = cadence_.samplesOf(unitsGiven());
    unsigned const sequenceCount =
        cadence_.isConstant() ? 0 : static_cast<unsigned>(unitsGiven() % cadence_.cycle() + 1);
    EightChannelWriter element(Templates::safeCast<std::size_t>(samples), sequenceCount);
    unsigned first = 0;
    for (auto const& input : inputs_) {
        DataIO::Chain bytes;
        input.samples->read(samples * input.format.blockAlign(), bytes);
        writeChannels(bytes.contiguous(), input.format, first, element);
        first += input.format.channels;
    }
    unit.data.append(element.take());
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
