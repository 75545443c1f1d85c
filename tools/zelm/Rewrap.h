/// Makes a new MXF file of the essence of another, or of several that go on with each other. The header
/// metadata is that of the (first) file, changed where what is written differs from it.
#pragma once

#include "Input.h"
#include "LayoutOptions.h"
#include "UnitRange.h"

#include <MXF/Zelm/MXFIO/Creator.h>
#include <MXF/Zelm/MXFIO/EssenceContainer.h>
#include <MXF/Zelm/MXFIO/PassThroughSource.h>
#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>

#include <deque>
#include <functional>
#include <list>
#include <memory>

namespace Zelm {

struct RewrapOptions {
    LayoutOptions layout = {};                ///< what is empty or absent stays as it is
    std::vector<std::string> tracks, without; ///< by name: all when both are empty
    std::optional<RangeChoice> range = std::nullopt;
    enum class UIDs { AsNeeded, New, Kept } uids = UIDs::AsNeeded;
    bool trustsSizes = true; ///< as MXFIO::PassThroughSourceOptions
};

/// What became of one essence container.
struct RewrappedContainer {
    std::uint32_t bodySID = 0;
    std::size_t tracks = 0;
    std::string wrapping;
    std::int64_t preCharge = 0;
    std::function<std::int64_t()> units = {}; ///< in the file, so far
    EditRate rate = {};
};

class Rewrap {
public:
    /// Files that go on with each other need containers and tracks that are alike. Throws
    /// Exceptions::InvalidValue for what cannot be done with the file, and what reading throws.
    Rewrap(std::vector<std::string> const& files, SharedDictionary const& dictionary,
           RewrapOptions const& options);
    ~Rewrap();

    /// Once only.
    std::unique_ptr<MXF::Zelm::MXFIO::Creator> creator(MXF::Zelm::DataIO::DataSink& sink);

    /// The label of the pattern that is written.
    MXF::Zelm::Types::UniversalLabel pattern() const;
    std::vector<RewrappedContainer> const& containers() const { return report_; }

    /// Track labels that were given for tracks that are not there.
    std::vector<std::string> const& unused() const { return unused_; }

    /// Bytes of the inputs.
    std::uint64_t inputBytes() const;

private:
    using EssenceContainer = MXF::Zelm::MXFIO::EssenceContainer;
    using SourcePackage = MXF::Zelm::Metadata::Structural::SourcePackage;
    using Wrapping = MXF::Zelm::GenericContainer::Wrapping;

    /// One container on its way.
    struct Kept {
        EssenceContainer container;              // of the first input
        std::vector<EssenceContainer> more = {}; // of the others
        SourcePackage* package = nullptr;        // in the metadata that is written
        std::vector<MXF::Zelm::MXFIO::PassThroughSourceOptions::TrackChange> changes = {};
        std::vector<MXF::Zelm::MXFIO::EssenceTrack const*> tracks = {};
        std::unique_ptr<MXF::Zelm::GenericContainer::Source> source = nullptr;
        std::function<std::int64_t()> units = {};
        std::function<bool()> knowsUnits = {};
        EditRate rate = {};
        std::int64_t preCharge = 0;
        std::int64_t origin = 0;
        bool isConverted = false;
    };

    Input& input() { return *inputs_.front(); }
    void open(std::vector<std::string> const& files);
    bool isChosen(EssenceContainer const& container, MXF::Zelm::MXFIO::EssenceTrack const& track) const;
    void chooseTracks();
    void keepTracks(Kept& kept);
    void leaveOut(EssenceContainer const& container);
    SourcePackage* packageFor(EssenceContainer const& container) const;
    void chooseLayout();
    void makeSources();
    Wrapping wantedWrapping(Kept const& kept, Wrapping present) const;
    void passThrough(Kept& kept);
    void convert(Kept& kept, Wrapping wanted);
    void describeConverted(Kept& kept, MXF::Zelm::GenericContainer::EssenceAnalyzer& analyzer);
    EditRate frameRate(Kept const& kept) const;
    void cutToRange();
    UnitRange unitsFor(Kept const& kept) const;
    Kept& rangeHolder();
    void forgetLengths();
    void renamePackages();
    void setPattern();
    void finishLengths();
    void finishLengths(Kept const& kept);

    SharedDictionary dictionary_;
    RewrapOptions options_;
    std::vector<std::unique_ptr<Input>> inputs_;
    std::unique_ptr<Input> written_; // the first once more: its metadata is changed
    MXF::Zelm::MXFIO::Partition::MetadataPtr metadata_;
    std::vector<EssenceContainer> containers_;
    std::list<Kept> kept_;
    std::deque<std::uint32_t> chosen_; // not used when all tracks are
    MXF::Zelm::MXFIO::CreatorSettings settings_;
    std::optional<UnitRange> range_; // in edit units of the holder's container
    bool isLess_ = false;            // than the input has
    std::vector<RewrappedContainer> report_;
    std::vector<std::string> unused_;
};

} // namespace Zelm
