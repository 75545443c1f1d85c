#include "MXF/Zelm/GenericContainer/Analyzers/PCMAnalyzer.h"

#include "MXF/Zelm/Essence/Converters/ChannelSplitter.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/Metadata/Structural/BuildingDescriptors.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;
using Essence::AES3::ChannelStatus;
using Essence::Wave::WaveFormat;
using Metadata::Structural::AES3AudioEssenceDescriptor;
using Metadata::Structural::FileDescriptor;
using Metadata::Structural::WAVEAudioEssenceDescriptor;

/// Values of ElectroSpatialFormulation, ChannelStatusMode and AuxBitsMode.
constexpr std::uint8_t singleChannel = 2, severalChannels = 15, fixedStatus = 3, auxiliaryBitsAreAudio = 1;

/// Channels are assigned by labels (SMPTE 377-4, as SMPTE 2067-2 applies it).
constexpr auto assignedByLabels = "060E2B34.0401010D.04020210.04010000"_key;

/// The grid of RDD 9.
constexpr unsigned int constantSizeGrid = 512;

/// Bytes of a clip that are given at once.
constexpr std::uint64_t clipPart = std::uint64_t{1} << 20;

/// What label and key say of mapping and wrapping: 1 Wave frame, 2 Wave clip, 3 AES3 frame, 4 AES3 clip.
std::uint8_t mappingCode(bool isAES3, bool isClip) {
    return static_cast<std::uint8_t>((isAES3 ? 3 : 1) + (isClip ? 1 : 0));
}

/// Linear PCM without emphasis at a locked rate. Channel mode and origin are not indicated, nor are rate and
/// length where the status has no code for them.
ChannelStatus channelStatusOf(WaveFormat const& format) {
    ChannelStatus status;
    status.isProfessional(true);
    status.audioSignalEmphasis(ChannelStatus::NoEmphasis);
    if (Templates::Rational<int> const rate = {static_cast<int>(format.samplingRate), 1};
        ChannelStatus::hasCode(rate))
        status.samplingFrequency(rate);
    if (format.validBits >= 16 && format.validBits <= 24)
        status.sourceWordLength(static_cast<unsigned char>(format.validBits));
    status.updateCRC();
    return status;
}

/// Three bits of channel status as the enumerations of descriptors hold them: the first to travel is the most
/// significant one.
std::uint8_t inReadingOrder(unsigned bits) {
    return static_cast<std::uint8_t>((bits & 1u) << 2 | (bits & 2u) | bits >> 2);
}

/// What descriptors say once for all channels is taken from the first.
void describeChannelStatus(AES3AudioEssenceDescriptor& descriptor, WaveFormat const& format,
                           Templates::vector<ChannelStatus> const& found) {
    auto const made = channelStatusOf(format);
    auto const statusOf = [&](std::size_t channel) {
        return channel < found.size() && !(found[channel] == ChannelStatus()) ? found[channel] : made;
    };
    Types::Array modes(Types::Identifiers::UInt8), bytes(Types::Identifiers::UInt8);
    for (unsigned channel = 0; channel < format.channels; ++channel) {
        modes.add(Types::UInt8(fixedStatus));
        auto const status = statusOf(channel);
        for (std::size_t i = 0; i < ChannelStatus::serializedSize(); ++i)
            bytes.add(Types::UInt8(status.rawBuffer()[i]));
    }
    bool const isMade = statusOf(0) == made;
    descriptor.emphasis(Types::UInt8(inReadingOrder(statusOf(0).audioSignalEmphasis())));
    descriptor.blockStartOffset(Types::UInt16(0));
    descriptor.auxBitsMode(Types::UInt8(isMade ? (format.validBits > 20 ? auxiliaryBitsAreAudio : 0)
                                               : inReadingOrder(statusOf(0).useOfAuxiliarySampleBits())));
    descriptor.channelStatusMode(modes);
    descriptor.fixedChannelStatusData(bytes);
}

/// The timecode that a clock shows at an instant.
Utils::TimeCode timecodeAt(std::uint64_t instant, std::uint32_t samplingRate,
                           Templates::Rational<int> const& rate) {
    std::uint64_t const day = std::uint64_t{24} * 60 * 60 * samplingRate;
    Templates::Rational<std::int64_t> const seconds = {static_cast<std::int64_t>(instant % day),
                                                       std::int64_t{samplingRate}};
    return {Utils::TimeBase::ofEditRate(rate), Utils::secondsToFrames(seconds, rate)};
}

} // namespace

PCMAnalyzer::PCMAnalyzer(Templates::SharedPtr<DataIO::SliceSource> samples, WaveFormat const& format,
                         PCMOptions options)
    : samples_(std::move(samples)), format_(format), options_(std::move(options)) {
    if (format_.blockAlign() == 0 || format_.samplingRate == 0)
        throw Exceptions::InvalidValue("Sound without channels, samples or a rate");
    Templates::safeCast<int>(format_.samplingRate);
    BasicAnalyzer::editRate(options_.editRate);
}

PCMAnalyzer::~PCMAnalyzer() = default;

Templates::Rational<int> PCMAnalyzer::editRate() const {
    return isClip() ? Templates::Rational<int>{static_cast<int>(format_.samplingRate), 1}
                    : BasicAnalyzer::editRate();
}

void PCMAnalyzer::editRate(Templates::Rational<int> const& rate) {
    BasicAnalyzer::editRate(rate);
    cadence_.reset();
}

bool PCMAnalyzer::setMetadata(Metadata::PartitionMetadata& metadata,
                              Metadata::Structural::SourcePackage* package, unsigned int trackNumber,
                              unsigned int trackID) {
    if (!BasicAnalyzer::setMetadata(metadata, package, trackNumber, trackID))
        return false;
    if (options_.origin)
        linkOrigin(metadata, *package, trackID, *options_.origin, BasicAnalyzer::editRate());
    return true;
}

bool PCMAnalyzer::preload() {
    if (cadence_)
        return true;
    cadence_.emplace(format_.samplingRate, editRate());
    if (options_.timeReference && !isClip())
        timecode_ = timecodeAt(*options_.timeReference, format_.samplingRate, editRate());
    return true;
}

Utils::SampleCadence const& PCMAnalyzer::cadence() const {
    if (!cadence_)
        throw Exceptions::InvalidStructure("The sound has not been looked at yet");
    return *cadence_;
}

Types::UniversalLabel PCMAnalyzer::universalLabel() const {
    auto label = "060E2B34.04010101.0D010301.02060000"_key;
    label.rawBuffer()[14] = mappingCode(isAES3(), isClip());
    return label;
}

unsigned char PCMAnalyzer::itemTypeIdentifier() const { return ElementKey::Sound; }
unsigned char PCMAnalyzer::essenceElementType() const { return mappingCode(isAES3(), isClip()); }
Utils::TimeCode PCMAnalyzer::currentTimeCode() const { return timecode_; }
std::string PCMAnalyzer::fault() const { return fault_; }

bool PCMAnalyzer::isCBE() const {
    return cadence().isConstant() || options_.hasConstantSize || BasicAnalyzer::boundedEditUnitSize() != 0;
}

unsigned int PCMAnalyzer::boundedEditUnitSize() const {
    auto const needed = Templates::safeCast<unsigned int>(cadence().mostSamples() * format_.blockAlign());
    return std::max(needed, BasicAnalyzer::boundedEditUnitSize());
}

unsigned int PCMAnalyzer::requiredKAGSize() const {
    if (!options_.hasConstantSize)
        return 1;
    // A multiplexer asks before it sets its rate: one that is not known may need the grid.
    bool const isKnown = cadence_ || editRate().isKnown();
    bool const isEven =
        isKnown &&
        (cadence_ ? *cadence_ : Utils::SampleCadence(format_.samplingRate, editRate())).isConstant();
    return isEven ? 1 : constantSizeGrid;
}

FileDescriptor& PCMAnalyzer::describe(Metadata::PartitionMetadata& metadata, FileDescriptor* present) {
    auto& descriptor = isAES3() ? presentOrNew<AES3AudioEssenceDescriptor>(metadata, present)
                                : presentOrNew<WAVEAudioEssenceDescriptor>(metadata, present);
    Metadata::Structural::describeSound(descriptor,
                                        {.essenceContainer = universalLabel(),
                                         .editRate = editRate(),
                                         .channels = format_.channels,
                                         .bits = format_.sampleBytes * 8u,
                                         .samplingRate = {static_cast<int>(format_.samplingRate), 1}});
    descriptor.quantizationBits(Types::UInt32(format_.validBits));
    if (!cadence().isConstant())
        descriptor.sequenceOffset(Types::UInt8(0));
    if (format_.channels == 1)
        descriptor.electrospatialFormulation(Types::UInt8(singleChannel));
    if (options_.channelAssignment)
        descriptor.channelAssignment(*options_.channelAssignment);
    describeChannels(metadata, descriptor);
    if (auto* const aes3 = dynamic_cast<AES3AudioEssenceDescriptor*>(&descriptor))
        describeChannelStatus(*aes3, format_, options_.channelStatus);
    return descriptor;
}

void PCMAnalyzer::describeChannels(Metadata::PartitionMetadata& metadata,
                                   WAVEAudioEssenceDescriptor& descriptor) const {
    if (!options_.channelMap || !descriptor.subDescriptors().empty())
        return;
    options_.channelMap->label(metadata, descriptor, options_.firstChannel, format_.channels);
    if (!options_.channelAssignment)
        descriptor.channelAssignment(Types::UniversalLabel(assignedByLabels));
    if (format_.channels > 2)
        descriptor.electrospatialFormulation(Types::UInt8(severalChannels));
}

bool PCMAnalyzer::hasMore() const { return !samples_->endOfStream(); }

/// Instants that the next call is to give.
std::uint64_t PCMAnalyzer::samplesWanted() const {
    if (!isClip())
        return cadence().samplesOf(unitsGiven());
    std::uint64_t const part = std::max<std::uint64_t>(clipPart / format_.blockAlign(), 1);
    return std::min(part, limit() - unitsGiven());
}

std::uint64_t PCMAnalyzer::read(EditUnit& unit) {
    std::uint64_t const wanted = samplesWanted();
    samples_->read(wanted * format_.blockAlign(), unit.data);
    std::uint64_t const samples = unit.data.size() / format_.blockAlign();
    samplesGiven_ += samples;
    if (std::uint64_t const rest = unit.data.size() % format_.blockAlign(); rest != 0) {
        unit.data = unit.data.part(0, unit.data.size() - rest);
        fault_ = "The sound ends amid a sample";
    } else if (samples < wanted && options_.sampleCount && samplesGiven_ < *options_.sampleCount) {
        fault_ = "The sound ends after " + std::to_string(samplesGiven_) + " of " +
                 std::to_string(*options_.sampleCount) + " samples";
    }
    if (samples != 0 && samples < wanted && !isClip())
        fillSmallGap(wanted, unit);
    if (samples != 0 && timecode_.isDefined()) {
        unit.timecode = std::make_shared<Utils::TimeCode>(timecode_);
        ++timecode_;
    }
    return isClip() ? samples : std::min<std::uint64_t>(samples, 1);
}

/// An edit unit at the end that misses fewer bytes of a constant size than a fill item has gets silence.
void PCMAnalyzer::fillSmallGap(std::uint64_t samples, EditUnit& unit) const {
    constexpr std::uint64_t smallestFill = 20;
    std::uint64_t const gap = samples * format_.blockAlign() - unit.data.size();
    unsigned char const silence = format_.sampleBytes == 1 ? 0x80 : 0x00;
    if (isCBE() && gap < smallestFill)
        unit.data.append(
            DataIO::Slice::adopt(std::vector<unsigned char>(static_cast<std::size_t>(gap), silence)));
}

std::optional<std::uint64_t> PCMAnalyzer::byteCount() const {
    if (!options_.sampleCount || !isClip())
        return std::nullopt;
    return std::min(*options_.sampleCount, limit()) * format_.blockAlign();
}

Templates::vector<Templates::SharedPtr<PCMAnalyzer>>
makePCMAnalyzers(Templates::SharedPtr<DataIO::SliceSource> samples, WaveFormat const& format,
                 unsigned channelsPerTrack, PCMOptions const& options) {
    Templates::vector<Templates::SharedPtr<PCMAnalyzer>> analyzers;
    if (channelsPerTrack == 0 || channelsPerTrack >= format.channels) {
        analyzers.push_back(std::make_shared<PCMAnalyzer>(std::move(samples), format, options));
        return analyzers;
    }
    Essence::Converters::ChannelSplitter splitter(std::move(samples), format.channels, format.sampleBytes);
    for (unsigned first = 0; first < format.channels; first += channelsPerTrack) {
        WaveFormat part = format;
        part.channels = static_cast<std::uint16_t>(std::min(channelsPerTrack, format.channels - first));
        part.channelMask = 0;
        analyzers.push_back(
            std::make_shared<PCMAnalyzer>(splitter.range(first, part.channels), part, options));
    }
    return analyzers;
}

Templates::vector<Templates::SharedPtr<PCMAnalyzer>>
makePCMAnalyzers(Essence::Wave::WaveReader const& wave, unsigned channelsPerTrack, PCMOptions options) {
    if (!options.sampleCount)
        options.sampleCount = wave.sampleCount();
    if (!options.timeReference && wave.broadcast())
        options.timeReference = wave.broadcast()->timeReference;
    return makePCMAnalyzers(wave.samples(), wave.format(), channelsPerTrack, options);
}

} // namespace MXF::Zelm::GenericContainer
