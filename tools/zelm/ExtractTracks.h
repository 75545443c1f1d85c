/// The tracks that `zelm extract` finds in a file, what they are called, and where their essence goes.
#pragma once

#include "ExtractRange.h"
#include "TrackOutput.h"

#include <MXF/Zelm/MXFIO/EssenceUnit.h>

#include <deque>
#include <map>
#include <stdexcept>

namespace Zelm {

/// The options cannot be followed: the message says why.
struct CannotExtract : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ExtractedFile {
    std::string name;
    std::string md5;
};

/// One track that is extracted.
struct ExtractTrack {
    std::string name; ///< "v1"
    std::uint32_t bodySID = 0;
    MXF::Zelm::GenericContainer::ElementKey element;
    MXF::Zelm::MXFIO::EssenceContainer const* container = nullptr; ///< null when the metadata knows none
    MXF::Zelm::MXFIO::EssenceTrack const* track = nullptr;         ///< the same
    EssenceForm form;
    std::string file; ///< its name; of frames with "%08d" for the number of the edit unit

    WantedUnits wanted;
    std::unique_ptr<TrackOutput> output; ///< null while nothing is written

    bool isUncut = false; ///< all of it is written, since nobody knows where its edit units are

    std::int64_t firstUnit = -1; ///< the first edit unit that was written
    std::uint64_t units = 0;     ///< edit units that were written
    std::uint64_t bytes = 0;     ///< essence in them, as it stands in the file

    char kind() const { return name.front(); }
};

/// Has tracks written otherwise than they stand in the file.
class TrackConversion {
public:
    virtual ~TrackConversion() = default;

    /// Sets the form in which a track is written; `element` is the first one of it, of a clip the first
    /// bytes. Returns why it cannot be, or nothing.
    virtual std::string choose(ExtractTrack& track, MXF::Zelm::GenericContainer::Element const& element) = 0;

    /// What takes the essence; `names` are those of its file. Null for what would take it without a
    /// conversion.
    virtual std::unique_ptr<TrackOutput> open(ExtractTrack const& track, OutputNames const& names) = 0;
};

struct TrackOptions {
    std::vector<std::string> chosen; ///< by name, ID or number; all when empty
    bool mix = false;
    std::string base; ///< folder and stem of all names
    bool toStandardOutput = false;
    OutputOptions output = {};
    std::shared_ptr<TrackConversion> conversion = nullptr; ///< null for none
};

/// Owns the tracks; they stay where they are.
class ExtractTracks {
public:
    using FileListener = std::function<void(OutputFile const&)>;

    /// `info` is not owned. `listener` is told of files that are whole.
    ExtractTracks(TrackOptions options, FileInfo const& info, FileListener listener);

    /// Gives the tracks of the metadata their names.
    void name(MXF::Zelm::Templates::vector<MXF::Zelm::MXFIO::EssenceContainer> const& containers);

    /// True when a track of the container is chosen, or may be.
    bool wants(MXF::Zelm::MXFIO::EssenceContainer const& container) const;

    /// Takes the tracks of the elements of an edit unit that are not known yet. `container` is null or lives
    /// as long as this. Throws Exceptions::InvalidStructure for more tracks than anybody wants files of.
    void meet(MXF::Zelm::MXFIO::EssenceUnit const& unit, MXF::Zelm::MXFIO::EssenceContainer const* container);

    /// The track of an element, null when it is not extracted.
    ExtractTrack* find(std::uint32_t bodySID, MXF::Zelm::GenericContainer::ElementKey element);

    /// True when `meet` took an element like this one.
    bool knows(std::uint32_t bodySID, MXF::Zelm::GenericContainer::ElementKey element) const;

    /// Decides into which files the tracks go that have none yet.
    void plan();

    /// Names of those files that are there already, or are left from an earlier run; none when they may be
    /// replaced.
    std::vector<std::string> existing() const;

    /// Opens the files that were planned. `dataBytes` are those of samples, where they are known before.
    void open(std::optional<std::uint64_t> dataBytes = std::nullopt);

    /// Choices to which no track belongs.
    std::vector<std::string> unmatched() const;

    /// Why tracks were left out that cannot be converted.
    std::vector<std::string> const& refusals() const { return refusals_; }

    std::deque<ExtractTrack>& tracks() { return tracks_; }
    std::deque<ExtractTrack> const& tracks() const { return tracks_; }

private:
    using Key = std::pair<std::uint32_t, std::uint32_t>; // body SID, track number without its count

    static Key keyOf(std::uint32_t bodySID, MXF::Zelm::GenericContainer::ElementKey element);
    bool isChosen(std::string const& name, MXF::Zelm::MXFIO::EssenceTrack const* track,
                  MXF::Zelm::GenericContainer::ElementKey element) const;
    std::string nextName(char kind);
    std::string nameOf(ExtractTrack const& track);
    OutputNames namesOf(ExtractTrack const& track) const;
    WaveSetup waveSetup(ExtractTrack const& track) const;
    struct Planned {
        std::vector<ExtractTrack*> tracks; ///< several for sounds that are mixed
        OutputNames names;
    };
    void planMixes(std::vector<ExtractTrack*> const& sounds);
    void openMix(Planned const& planned);
    void openSingle(Planned const& planned, std::optional<std::uint64_t> dataBytes);

    TrackOptions options_;
    FileInfo const& info_;
    FileListener listener_;
    std::map<Key, std::string> names_;
    std::map<char, unsigned> counts_;
    unsigned mixes_ = 0;
    std::vector<std::string> refusals_;
    std::vector<Planned> planned_;
    std::deque<ExtractTrack> tracks_;
    std::map<Key, ExtractTrack*> byKey_;
};

} // namespace Zelm
