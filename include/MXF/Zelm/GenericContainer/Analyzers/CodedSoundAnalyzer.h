/// Sound in coded frames, such as MPEG audio, AC-3 and AAC, wrapped by frames or as a clip (SMPTE 381M; AAC
/// SMPTE 381-4). Frames stay as they are.
///
///     element of an edit unit    frame | frame | …      the frames that begin within it, maybe none
#pragma once

#include "MXF/Zelm/Essence/CodedSound/FrameCutter.h"
#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"
#include "MXF/Zelm/Utils/SampleCadence.h"

#include <optional>

namespace MXF::Zelm::GenericContainer {

struct CodedSoundOptions {
    Wrapping wrapping = Wrapping::Frame;

    /// By which MPEG systems know a stream of MPEG audio, C0 to DF: the label has it. AC-3 is in private
    /// stream 1, whatever is told here.
    std::uint8_t streamId = 0xC0;

    /// The first frame begins so many samples behind the first edit unit; below 0 before it. A frame of which
    /// more than half is before it is left out.
    std::int64_t start = 0;

    /// Of bytes that are no frames, in which the next one is looked for.
    std::uint64_t mostSearched = Essence::CodedSound::FrameCutter::defaultMostSearched;
};

/// At an edit rate that was set, an edit unit has the frames whose first sample lies within it, so that their
/// number varies. Without one, and in a clip, each frame is an edit unit of its own.
class MXFZELM_EXPORT CodedSoundAnalyzer : public BasicAnalyzer<SoundAnalyzer> {
public:
    using FrameHeader = Essence::CodedSound::FrameHeader;

    CodedSoundAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source,
                       Essence::CodedSound::Format const& format, CodedSoundOptions options = {});
    ~CodedSoundAnalyzer() override;

    /// Of the first frame; all zero before `preload`.
    FrameHeader const& header() const { return frames_.first(); }

    /// Frames a second. Throws Exceptions::InvalidStructure before `preload`.
    Templates::Rational<int> frameRate() const;

    /// Edit units go on behind the last frame, without content.
    void goOn() { goesOn_ = true; }

    /// All frames were given.
    bool isExhausted() const { return isLoaded_ && !ahead_; }

    void editRate(Templates::Rational<int> const& rate) override;
    Templates::Rational<int> editRate() const override;

    /// False when there is no frame.
    bool preload() override;

    Types::UniversalLabel universalLabel() const override;
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;

    /// Bytes that are no frames, and a number of channels that changes.
    std::string fault() const override;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    bool hasMore() const override { return ahead_.has_value() || goesOn_; }
    std::uint64_t read(EditUnit& unit) override;

private:
    void advance();
    bool belongsTo(std::uint64_t unit) const;
    bool isByFrames() const { return options_.wrapping == Wrapping::Clip || !cadence_; }

    Essence::CodedSound::Format const& format_;
    Essence::CodedSound::FrameCutter frames_;
    CodedSoundOptions options_;
    std::optional<Essence::CodedSound::Frame> ahead_; // none at the end
    std::int64_t begin_;                              // of the frame ahead, in samples
    std::optional<Utils::SampleCadence> cadence_;     // of edit units that are no frames
    std::string change_;                              // of the channels
    bool isLoaded_ = false, goesOn_ = false;
};

} // namespace MXF::Zelm::GenericContainer
