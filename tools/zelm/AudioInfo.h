/// What `zelm audio` tells of a file: gathered once, then printed as text or as JSON, or drawn.
#pragma once

#include "Faults.h"
#include "FileInfo.h"

#include <MXF/Zelm/Essence/AES3/ChannelStatus.h>
#include <MXF/Zelm/Essence/Wave/LevelMeter.h>

#include <deque>
#include <memory>

namespace Zelm {

/// One sound of the file: a track of an MXF file, a stream of an AVI file, the samples of a Wave file.
struct AudioTrack {
    using WaveFormat = MXF::Zelm::Essence::Wave::WaveFormat;
    using ChannelStatus = MXF::Zelm::Essence::AES3::ChannelStatus;

    std::string name;                      ///< "a1"
    std::optional<std::uint32_t> id;       ///< of the track, or the stream's number
    std::string coding;                    ///< "PCM", or what else it is
    std::string wrapping;                  ///< "frame", "clip", "AES3 element"; empty outside of MXF
    WaveFormat format = {};                ///< no channels where the samples cannot be read
    std::optional<std::uint64_t> instants; ///< that the file says it has
    std::uint64_t tolerance = 0;           ///< instants that it may have more or less
    unsigned live = 0;                     ///< channels that AES3 elements flag; 0 for no others than all
    SoundInfo sound;                       ///< labels, and what a descriptor says
    std::vector<ChannelStatus> statuses;   ///< of the first channels

    /// What disagrees.
    std::vector<std::string> odd;

    /// Null when levels were not wanted, or the samples cannot be read.
    std::shared_ptr<MXF::Zelm::Essence::Wave::LevelMeter> levels;

    /// "L", "LFE"; empty when channel `channel`, from 0, has no label.
    std::string labelOf(unsigned channel) const;

    /// Instants that were read, else those that the file says it has.
    std::optional<std::uint64_t> length() const;
};

struct AudioChunk {
    std::string id;
    std::uint64_t size = 0;
};

struct AudioFile {
    std::string file;
    std::string kind; ///< "MXF", "RIFF", "RF64", "BW64", "AVI"
    std::uint64_t size = 0;
    std::optional<MXF::Zelm::Essence::Wave::BroadcastExtension> broadcast;
    std::vector<AudioChunk> chunks; ///< of a Wave file, besides samples and sizes
    std::deque<AudioTrack> tracks;
    std::vector<std::string> odd;   ///< what disagrees in the file as a whole
    std::vector<std::string> notes; ///< what a person should know besides
    std::vector<Fault> faults;      ///< what could not be read
    FileInfo mxf;                   ///< of an MXF file

    bool isOdd() const;
};

struct AudioOptions {
    bool levels = true;
    MXF::Zelm::Essence::Wave::LevelMeter::Options meter;
};

/// Reads a file. Throws Exceptions::SystemError, Interrupted, and what the readers of formats throw for a
/// file that is none of them.
AudioFile readAudio(std::string const& name, AudioOptions const& options, SharedDictionary const& dictionary);

/// The parts of `readAudio`.
void readMxfAudio(AudioFile& file, AudioOptions const& options, SharedDictionary const& dictionary);
void readWaveAudio(AudioFile& file, AudioOptions const& options);
void readAviAudio(AudioFile& file, AudioOptions const& options);

/// "professional, PCM, 48000 Hz, 24 bits".
std::string statusText(MXF::Zelm::Essence::AES3::ChannelStatus const& status);

/// Notes where the labels, the channel status and the figures of a track disagree with its format.
void findOddities(AudioTrack& track);

} // namespace Zelm
