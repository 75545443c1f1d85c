/// The sound of D-10: an element of eight AES3 channels (SMPTE 331M, 386M).
#pragma once

#include "MXF/Zelm/Essence/AES3/EightChannelWriter.h"
#include "MXF/Zelm/Essence/Converters/ChannelMerger.h"
#include "MXF/Zelm/Essence/Wave/WaveFormat.h"
#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/GenericContainer/Analyzers/D10Format.h"
#include "MXF/Zelm/Metadata/Structural/ChannelMap.h"

#include <utility>

namespace MXF::Zelm::GenericContainer {

/// Puts up to eight channels of PCM at 48 kHz, of one or more sounds that begin together, into elements of
/// one size: 1920 samples at 25 edit units a second; 1602 or 1601 at 30000/1001, whose place in the sequence
/// of five the element counts from 1. It ends with the longest of the sounds; the others, and the last edit
/// unit, are filled up with silence. The key ends in 06 01 10 00 when it is the package's only sound.
class MXFZELM_EXPORT D10SoundAnalyzer : public BasicAnalyzer<SoundAnalyzer> {
public:
    struct Input {
        Templates::SharedPtr<DataIO::SliceSource> samples;
        Essence::Wave::WaveFormat format;

        /// The channel status that the channels came with, for the words of the element; empty for none.
        Templates::vector<Essence::AES3::ChannelStatus> channelStatus = {};
    };

    /// `format` is that of the pictures. `declaredChannels` for the descriptor; 0 for what D-10 knows, 4
    /// or 8. Throws Exceptions::InvalidValue for no channel or more than eight, another sampling rate,
    /// samples of one byte.
    D10SoundAnalyzer(Templates::vector<Input> const& inputs, D10Format const& format,
                     unsigned declaredChannels = 0);
    ~D10SoundAnalyzer() override;

    /// Has the descriptor label the channels of the inputs (SMPTE 377-4), if it has no labels yet; those that
    /// are declared beyond them get none.
    void channelMap(Templates::SharedPtr<Metadata::Structural::ChannelMap const> map) {
        channelMap_ = std::move(map);
    }

    using BasicAnalyzer::editRate;

    /// That of the pictures.
    Templates::Rational<int> editRate() const override;

    Types::UniversalLabel universalLabel() const override;
    bool isCBE() const override;
    using BasicAnalyzer::boundedEditUnitSize;
    unsigned int boundedEditUnitSize() const override;
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;
    unsigned int requiredKAGSize() const override;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    bool hasMore() const override;
    std::uint64_t read(EditUnit& unit) override;

private:
    void takeChannelStatus(Templates::vector<Input> const& inputs);

    D10Format format_;
    Essence::Converters::ChannelMerger sound_;
    Essence::AES3::EightChannelWriter writer_;
    unsigned declaredChannels_;
    unsigned bits_ = 0;
    Templates::SharedPtr<Metadata::Structural::ChannelMap const> channelMap_;
};

} // namespace MXF::Zelm::GenericContainer
