/// The tracks that `zelm wrap` makes of its inputs.
#pragma once

#include "LayoutOptions.h"
#include "SilentTail.h"
#include "TrackTap.h"

#include <MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h>
#include <MXF/Zelm/Essence/AES3/ChannelStatus.h>
#include <MXF/Zelm/MXFIO/GenericStreamPartitionWriter.h>
#include <MXF/Zelm/Metadata/Structural/ChannelMap.h>

#include <deque>
#include <set>
#include <stdexcept>

namespace Zelm {

class StreamDamage;

/// The inputs or options do not go together: the message says why.
struct CannotWrap : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Data that can go on behind its end, without content.
class OpenEnd {
public:
    virtual ~OpenEnd() = default;

    /// To be called before anything is read.
    virtual void goOn() = 0;

    /// All of the content was read.
    virtual bool isExhausted() const = 0;
};

struct WrapTrack {
    std::string name;    ///< "v1", "a2", "d1" within its file
    char kind = 'd';     ///< picture, sound or data: v, a, d
    std::string input;   ///< the file that it comes from
    std::string essence; ///< what it is, for people: "MPEG-2 video"
    std::shared_ptr<TrackTap> tap;
    MXF::Zelm::GenericContainer::Wrapping wrapping = MXF::Zelm::GenericContainer::Wrapping::Frame;
    std::size_t source = 0; ///< tracks with the same number are read from one source

    /// Of sound, which goes on in silence behind its end; null for all else.
    std::shared_ptr<SilentTail> tail = nullptr;
    MXF::Zelm::Essence::Wave::WaveFormat format = {};    ///< the same, of the input
    std::optional<std::uint64_t> samples = std::nullopt; ///< of the input, if it tells
    std::vector<MXF::Zelm::Essence::AES3::ChannelStatus> channelStatus =
        {}; ///< of each channel, if it has one

    /// Of its first edit unit, where the input tells and its analyzer does not.
    MXF::Zelm::Utils::TimeCode timecode = {};

    std::shared_ptr<OpenEnd> openEnd = nullptr; ///< of data that has one

    /// Of a stream in packets, what was wrong with them as far as it was read.
    std::shared_ptr<StreamDamage> damage = nullptr;

    /// Of a sequence of files, the one that was opened last.
    std::shared_ptr<std::string const> current = nullptr;

    std::shared_ptr<void> keeps = nullptr; ///< what the analyzer reads from

    /// What belongs to the essence besides, each for a partition of its own.
    std::vector<MXF::Zelm::MXFIO::GenericStream> streams = {};
};

/// How the tracks are to be made.
struct TrackOptionsOfWrap {
    std::optional<unsigned> channels; ///< of a track of sound; 0 for all of a file

    /// What the channels of all sounds are, null when that is not known.
    std::shared_ptr<MXF::Zelm::Metadata::Structural::ChannelMap const> channelMap = nullptr;
    MXF::Zelm::Essence::Wave::WaveFormat pcm = {};     ///< of inputs that are samples and nothing else
    std::string as;                                    ///< the name of the kind that all inputs are of
    std::uint16_t program = 0;                         ///< of transport streams; 0 for the first one
    bool aes3 = false;                                 ///< sound is wrapped as AES3, with its channel status
    bool packets = false;                              ///< SMPTE 302M stays in its packets
    std::optional<std::uint64_t> first = std::nullopt; ///< number of a sequence of files
    std::string scan;                                  ///< of JPEG 2000; empty when that is not told
    std::vector<std::string> resources = {};           ///< of timed text: [UUID=][TYPE=]FILE
};

/// What makers of tracks know and what they make.
struct TrackMaking {
    Layout const& layout;
    TrackOptionsOfWrap const& options;
    SharedDictionary dictionary;

    /// Content packages a second; not known while inputs with a rate of their own are being opened.
    EditRate rate = {};
    bool isRateTold = false; ///< by an input or an option; else it is the usual one

    /// Of all inputs together, so that one's spare blocks serve another.
    std::shared_ptr<MXF::Zelm::DataIO::BlockFactory> blocks =
        std::make_shared<MXF::Zelm::DataIO::Memory::MemoryBlockFactory>();

    std::size_t sources = 0;
    std::size_t sequences = 0; ///< inputs that are sequences of files
    bool hasPrograms = false;  ///< an input is a transport stream
    bool hasScans = false;     ///< an input is JPEG 2000
    std::uint32_t streams = 0; ///< generic streams so far
    bool hasResources = false; ///< an MXF file has some, which keep their numbers
    std::size_t channels = 0;  ///< of sounds so far
    bool hasPackets = false;   ///< of SMPTE 302M, kept as they are
    bool isAlone = false;      ///< there is one stream, and that follows others
    bool isByFrames = false;   ///< `rate` is that of coded frames of sound
    unsigned codedSounds = 0;  ///< of MPEG audio so far
    std::shared_ptr<std::vector<std::string>> dataFiles = nullptr; ///< edit units of the data track

    /// What a person should know; sources add to them while they are read.
    std::shared_ptr<std::set<std::string>> notes = std::make_shared<std::set<std::string>>();

    bool isPreset(std::string_view name) const { return layout.isPreset(name); }

    /// How a track of sound is to be wrapped.
    MXF::Zelm::GenericContainer::Wrapping soundWrapping() const;
    unsigned channelsPerTrack() const;

    /// Tracks of one input are written one after the other, so that each wants a source of its own.
    bool wantsOwnSources() const;
};

} // namespace Zelm
