/// The kinds of input that `zelm wrap` knows: one row each, which recognises it by its first bytes and makes
/// its tracks. A further kind is a further row.
#pragma once

#include "WrapTracks.h"

#include <functional>

namespace Zelm {

/// An input as recognisers see it: a file, or a stream inside of one.
struct InputHead {
    static constexpr std::size_t size = std::size_t{1} << 16;

    using Source = MXF::Zelm::Templates::SharedPtr<MXF::Zelm::DataIO::SliceSource>;
    using Blocks = std::shared_ptr<MXF::Zelm::DataIO::BlockFactory>;

    /// Gives the bytes from the first one on, each time anew.
    using Opening = std::function<Source(Blocks const&)>;

    std::string name;               ///< for people; of a file its path
    std::uint64_t fileSize = 0;     ///< 0 of a stream inside of a file
    MXF::Zelm::DataIO::Slice bytes; ///< the first ones
    std::string as;                 ///< the name of its kind, where that is told; else its bytes tell
    MXF::Zelm::Essence::Wave::WaveFormat pcm = {}; ///< of samples and nothing else

    /// The channel status that the channels of `pcm` came with; empty when they came with none.
    std::vector<MXF::Zelm::Essence::AES3::ChannelStatus> channelStatus = {};

    /// Of packets and frames of sound, instants by which they begin behind the pictures.
    std::int64_t shift = 0;

    /// Of a stream in packets: what is found to be wrong with them while it is read; else null.
    std::shared_ptr<StreamDamage> damage = nullptr;

    /// By which a program stream knows a sound, C0 to DF; 0 where there is none.
    std::uint8_t streamId = 0;

    /// Of a sequence of files, which are one input, their names in order; else empty.
    std::vector<std::string> sequence = {};

    /// A file. Throws Exceptions::SystemError.
    explicit InputHead(std::string const& file);

    /// A stream. Throws what its source throws.
    InputHead(std::string streamName, Opening opening);

    /// The files that a pattern such as "frame%05d.j2c" names, one after the other; `first` is the number to
    /// begin with, absent for the first that is there. Throws CannotWrap when one is missing.
    static InputHead ofSequence(std::string const& pattern, std::optional<std::uint64_t> first);

    Source open(TrackMaking const& making) const { return opening_(making.blocks); }
    Source open(Blocks const& blocks) const { return opening_(blocks); }

    /// Whether it is a file, which can be opened by its name.
    bool isFile() const { return isFile_; }

private:
    Opening opening_;
    bool isFile_ = false;

    void readStart();
};

struct InputKind {
    const char* name;        ///< for --as
    const char* description; ///< for people

    /// Looks at the first bytes; may look further into the input. Null: only when it is told that the input
    /// is of this kind.
    bool (*recognises)(InputHead const& head, TrackMaking const& making);

    /// Its edit rate is in the input, and rules that of the content packages.
    bool hasRate;

    /// Opens the input once more and appends its tracks. Throws CannotWrap, and what analyzers throw.
    void (*addTracks)(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);

    /// Instead, of what holds streams of other kinds: the streams, in the order of their tracks.
    std::vector<InputHead> (*streams)(InputHead const& head, TrackMaking& making) = nullptr;
};

/// The kind of an input. Throws CannotWrap when nobody knows it.
InputKind const& kindOf(InputHead const& head, TrackMaking const& making);

/// The names of all kinds, for --as.
std::vector<std::string> inputKindNames();

/// Appends a track. `kind` is v, a or d; `source` the number of the source that it is read from.
void addTrack(std::vector<WrapTrack>& tracks, char kind, InputHead const& head, const char* essence,
              MXF::Zelm::GenericContainer::EssenceAnalyzerPtr analyzer, std::size_t source,
              std::shared_ptr<void> keeps = nullptr);

} // namespace Zelm
