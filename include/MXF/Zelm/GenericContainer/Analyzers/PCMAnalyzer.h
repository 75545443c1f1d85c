/// Uncompressed sound as in a Wave file, wrapped by frames or as a clip (SMPTE 382M).
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"
#include "MXF/Zelm/Essence/Wave/WaveReader.h"
#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/GenericContainer/Analyzers/WaveOrigin.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"
#include "MXF/Zelm/Metadata/Structural/ChannelMap.h"
#include "MXF/Zelm/Utils/SampleCadence.h"

#include <optional>

namespace MXF::Zelm::GenericContainer {

struct MXFZELM_EXPORT PCMOptions {
    /// Broadcast Wave, or AES3 words with their channel status in the descriptor; the bytes are the same.
    enum class Mapping { BroadcastWave, AES3 };

    Mapping mapping = Mapping::BroadcastWave;
    Wrapping wrapping = Wrapping::Frame;

    /// Edit units a second when wrapped by frames; a multiplexer sets it.
    Templates::Rational<int> editRate = {};

    /// Where the edit rate does not divide the sampling rate: fills the smaller edit units up to the size of
    /// the largest, so that the size is constant, as RDD 9 has it. Asks for a grid of 512 bytes, on which the
    /// few bytes' difference leaves room for a fill item. Else the size varies.
    bool hasConstantSize = false;

    /// Instants from midnight to the first sample, for timecode; none when it is not known.
    std::optional<std::uint64_t> timeReference = std::nullopt;

    /// Of AES3, the channel status that each channel came with, for the descriptor. A block that is all zero
    /// says nothing: channels that have one, or none at all, get one that tells of their format.
    Templates::vector<Essence::AES3::ChannelStatus> channelStatus = {};

    /// How channels are assigned, for the descriptor.
    std::optional<Types::UniversalLabel> channelAssignment = std::nullopt;

    /// What the channels are, null when it is not known: they are labelled as those of the map from
    /// `firstChannel` on, and are assigned by SMPTE 377-4 unless `channelAssignment` says otherwise.
    Templates::SharedPtr<Metadata::Structural::ChannelMap const> channelMap = nullptr;
    std::size_t firstChannel = 0;

    /// The Wave file that the samples come from, for a source package behind the track's; null for none.
    Templates::SharedPtr<WaveOrigin const> origin = nullptr;

    /// Whole instants that are to come, if it is known; fewer are a fault.
    std::optional<std::uint64_t> sampleCount = std::nullopt;
};

/// Samples stay as they are. Wrapped by frames, an edit unit has the samples of its frame, by the cadence of
/// `Utils::SampleCadence` from its start (sequence offset 0); the last one may have fewer, and gets silence
/// where the size is constant and so little is missing that no fill item fits in. Wrapped as a clip, edit
/// units are single instants, of which each call of `nextEditUnit` gives many: its duration says how many.
class MXFZELM_EXPORT PCMAnalyzer : public BasicAnalyzer<SoundAnalyzer> {
public:
    /// `samples` in `format`, from where the source stands. Throws Exceptions::InvalidValue for a format
    /// without channels, samples or rate.
    PCMAnalyzer(Templates::SharedPtr<DataIO::SliceSource> samples, Essence::Wave::WaveFormat const& format,
                PCMOptions options = {});
    ~PCMAnalyzer() override;

    Essence::Wave::WaveFormat const& format() const { return format_; }

    /// Of a clip the sampling rate, whatever is set.
    Templates::Rational<int> editRate() const override;
    void editRate(Templates::Rational<int> const& rate) override;

    bool setMetadata(Metadata::PartitionMetadata& metadata, Metadata::Structural::SourcePackage* package,
                     unsigned int trackNumber, unsigned int trackID) override;

    /// Throws Exceptions::InvalidValue for an edit rate at which samples cannot be shared out.
    bool preload() override;

    Types::UniversalLabel universalLabel() const override;
    bool isCBE() const override;
    using BasicAnalyzer::boundedEditUnitSize;

    /// Bytes of the largest edit unit, or more when more was set.
    unsigned int boundedEditUnitSize() const override;
    Utils::TimeCode currentTimeCode() const override;
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;
    unsigned int requiredKAGSize() const override;
    std::string fault() const override;

    /// Of a clip, when the number of samples is known.
    std::optional<std::uint64_t> byteCount() const override;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    bool hasMore() const override;
    std::uint64_t read(EditUnit& unit) override;

private:
    bool isClip() const { return options_.wrapping == Wrapping::Clip; }
    bool isAES3() const { return options_.mapping == PCMOptions::Mapping::AES3; }
    Utils::SampleCadence const& cadence() const;
    std::uint64_t samplesWanted() const;
    void describeChannels(Metadata::PartitionMetadata& metadata,
                          Metadata::Structural::WAVEAudioEssenceDescriptor& descriptor) const;
    void fillSmallGap(std::uint64_t samples, EditUnit& unit) const;

    Templates::SharedPtr<DataIO::SliceSource> samples_;
    Essence::Wave::WaveFormat format_;
    PCMOptions options_;
    std::optional<Utils::SampleCadence> cadence_;
    Utils::TimeCode timecode_; // of the next edit unit
    std::uint64_t samplesGiven_ = 0;
    std::string fault_;
};

/// Analyzers for the channels of one sound, `channelsPerTrack` in each (0 for all in one; the last one may
/// have fewer). The sound is read once; the analyzers must then be read in turn, as a multiplexer does (see
/// Essence::Converters::ChannelSplitter). Clips that are written one after the other want a source each.
MXFZELM_EXPORT Templates::vector<Templates::SharedPtr<PCMAnalyzer>>
makePCMAnalyzers(Templates::SharedPtr<DataIO::SliceSource> samples, Essence::Wave::WaveFormat const& format,
                 unsigned channelsPerTrack, PCMOptions const& options);

/// The same of a Wave file, whose length and time reference are taken over where the options have none.
MXFZELM_EXPORT Templates::vector<Templates::SharedPtr<PCMAnalyzer>>
makePCMAnalyzers(Essence::Wave::WaveReader const& wave, unsigned channelsPerTrack, PCMOptions options);

} // namespace MXF::Zelm::GenericContainer
