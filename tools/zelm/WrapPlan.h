/// What `zelm wrap` is going to write: tracks, the containers that they go into, and the files of those.
///
///     file      one, or one for each track
///      item     what plays at once; items follow one another, or are alternatives (OP1c)
///       container     one file package: its tracks frame by frame, or one clip
#pragma once

#include "UnitRange.h"
#include "WrapTimecode.h"

namespace Zelm {

struct InputHead;

struct WrapOptions {
    /// Names of inputs; "," stands between those that play one after the other, or instead of each other.
    std::vector<std::string> inputs;
    std::string output;
    TrackOptionsOfWrap tracks;
    std::vector<UnitRange> plays; ///< of items, in edit units
    bool md5 = false, verify = false;
};

struct WrapContainer {
    std::vector<WrapTrack*> tracks;
    MXF::Zelm::GenericContainer::Wrapping wrapping = MXF::Zelm::GenericContainer::Wrapping::Frame;

    bool isClip() const { return wrapping == MXF::Zelm::GenericContainer::Wrapping::Clip; }
};

using WrapItem = std::vector<WrapContainer>;

struct WrapFile {
    std::string name;
    std::vector<WrapItem> items;
};

class WrapPlan {
public:
    /// Opens the inputs. Throws CannotWrap when inputs, options and preset do not go together, and what
    /// analyzers throw.
    WrapPlan(Layout const& layout, WrapOptions const& options, SharedDictionary dictionary);

    /// Content packages a second.
    EditRate rate() const { return rate_; }

    /// Of timecode: the same, unless that is one at which nothing is counted.
    EditRate timecodeRate() const { return timecodeRate_; }

    /// Where the timecode of an item begins.
    StartTimecode const& start(std::size_t item) const { return starts_.at(item); }

    std::deque<WrapTrack> const& tracks() const { return tracks_; }
    std::deque<WrapTrack>& tracks() { return tracks_; }
    std::vector<WrapFile>& files() { return files_; }

    /// Bytes of all inputs.
    std::uint64_t inputBytes() const { return inputBytes_; }
    std::vector<std::string> const& inputs() const { return inputs_; }

    /// What a person should know of the inputs; more may come while they are read.
    std::set<std::string>& notes() { return *notes_; }

    /// Throws CannotWrap when the tracks of a container do not go together.
    void checkContainers() const;

    /// Bytes of essence that went by.
    std::uint64_t bytesTaken() const;

private:
    using Items = std::vector<std::vector<WrapTrack*>>;

    /// The tracks of each input, or of the comma that stands for it.
    using Opened = std::vector<std::vector<WrapTrack>>;

    /// An input that follows the rate of others.
    struct Waiting;

    Items openInputs(WrapOptions const& options, SharedDictionary dictionary);
    void checkTracks(TrackMaking const& making, WrapOptions const& options) const;
    void openInput(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks,
                   std::vector<Waiting>& waiting, unsigned depth = 0) const;
    bool findRate(Opened const& opened);
    void requireWrapping(WrapTrack const& track) const;
    void nameTracks(Items const& items);
    Items gather(Opened opened, WrapOptions const& options);
    void arrange(Items const& items, WrapOptions const& options);
    WrapItem containersOf(std::vector<WrapTrack*> const& item) const;

    Layout const& layout_;
    EditRate rate_ = {}, timecodeRate_ = {};
    std::deque<WrapTrack> tracks_; // stay where they are
    std::vector<WrapFile> files_;
    std::vector<StartTimecode> starts_; // of the items
    std::vector<std::string> inputs_;
    std::uint64_t inputBytes_ = 0;
    std::shared_ptr<std::set<std::string>> notes_; // of all makers of tracks
};

} // namespace Zelm
