/// Makes a new MXF file of the essence of another, or of several that go on with each other or are played one
/// after another. The header metadata is that of the (first) file, changed where what is written differs from
/// it.
#pragma once

#include "ContainerCopy.h"
#include "GangedPackages.h"
#include "LayoutOptions.h"
#include "Playlist.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/Creator.h>

#include <deque>

namespace Zelm {

struct RewrapOptions {
    LayoutOptions layout = {};                ///< what is empty or absent stays as it is
    std::vector<std::string> tracks, without; ///< by name: all when both are empty
    std::optional<RangeChoice> range = std::nullopt;
    bool isPlaylist = false; ///< files keep their packages
    enum class UIDs { AsNeeded, New, Kept } uids = UIDs::AsNeeded;
    bool trustsSizes = true; ///< as MXFIO::PassThroughSourceOptions
};

/// What becomes of one essence container.
struct RewrappedContainer {
    std::uint32_t bodySID = 0;
    std::size_t tracks = 0;
    bool isClip = false;
    std::int64_t preCharge = 0;
    std::function<std::int64_t()> units = {}; ///< in the file, so far
    EditRate rate = {};
};

/// What a file lacks of what it says it has, or what of its header metadata cannot be read and was kept as it
/// is.
struct Shortage {
    std::string file, what;
};
using Shortages = std::vector<Shortage>;

/// An input cannot be opened.
struct FaultyInput {
    std::string file;
    MXF::Zelm::Exceptions::BaseException fault;
};

class Rewrap {
public:
    /// Files that go on with each other need containers and tracks that are alike. Throws FaultyInput,
    /// Exceptions::InvalidValue for what cannot be done with the file, and what reading throws.
    Rewrap(std::vector<std::string> const& files, SharedDictionary const& dictionary,
           RewrapOptions const& options);
    ~Rewrap();

    /// Once only.
    std::unique_ptr<MXF::Zelm::MXFIO::Creator> creator(MXF::Zelm::DataIO::DataSink& sink);

    /// The label of the pattern that is written.
    MXF::Zelm::Types::UniversalLabel pattern() const;
    std::vector<RewrappedContainer> const& containers() const { return report_; }

    /// When all is written.
    Shortages shortages() const;

    /// Track labels that were given for tracks that are not there.
    std::vector<std::string> const& unused() const { return unused_; }

    /// Bytes of the inputs.
    std::uint64_t inputBytes() const;

private:
    using EssenceContainer = MXF::Zelm::MXFIO::EssenceContainer;
    using MetadataPtr = MXF::Zelm::MXFIO::Partition::MetadataPtr;

    Input& input() { return *inputs_.front(); }
    void open(std::vector<std::string> const& files);
    void openInput(std::string const& file);
    void openFollowing(std::size_t index, std::vector<EssenceContainer> const& containers);
    void openPlaylist();
    void takeStreamIDs();
    PatternRow const* wantedPattern() const;
    void chooseLayout();
    void choosePackages();
    void joinPackages();
    void makeSources();
    void renamePackages();
    void setPattern();
    void report();

    SharedDictionary dictionary_;
    RewrapOptions options_;
    std::vector<std::unique_ptr<Input>> inputs_;
    std::vector<MetadataPtr> sources_; // the final metadata of each
    std::vector<bool> haveFooter_;     // the same
    std::unique_ptr<Input> written_;   // the first once more: its metadata is changed
    MetadataPtr metadata_;
    std::vector<EssenceContainer> containers_; // of the first
    ContainerCopies copies_;
    StreamIDs streams_;
    std::vector<MovedStreams> movedStreams_; // of the inputs behind the first
    MXF::Zelm::MXFIO::CreatorSettings settings_;
    std::optional<TimeSpan> shown_;   // on the material packages, when a range is wanted
    bool isOther_ = false;            // the packages hold other essence than before
    bool isOneBehindAnother_ = false; // essence goes on with that of another package or file
    std::vector<RewrappedContainer> report_;
    std::vector<std::string> unused_;
};

} // namespace Zelm
