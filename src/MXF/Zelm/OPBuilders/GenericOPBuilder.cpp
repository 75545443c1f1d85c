#include "MXF/Zelm/OPBuilders/GenericOPBuilder.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "MXF/Zelm/OPBuilders/MaterialPlan.h"

#include <algorithm>
#include <list>
#include <utility>

namespace MXF::Zelm::OPBuilders {

using namespace Metadata::Structural;
using OperationalPatterns::Items;
using OperationalPatterns::Packages;

namespace {

/// A file package, and the stream of its essence if it is in this file.
struct BuiltPackage {
    SourcePackage* package = nullptr;
    std::uint32_t bodySID = 0;
    std::uint32_t indexSID = 0;
    Templates::auto_ptr<GenericContainer::Source> source = nullptr;
    bool hasSource = false;
    TimelineTrack* timecode = nullptr;
};

constexpr unsigned int trackIDStep = 256;

void fail(std::string const& what) { throw Exceptions::InvalidStructure(what); }

/// The longest essence track, in edit units of `rate`.
void setTimecodeLength(BuiltPackage const& built) {
    auto const seconds = packageDurationInSeconds(*built.package);
    if (built.timecode == nullptr || built.timecode->sequence() == nullptr || !seconds.isKnown() ||
        built.timecode->sequence()->structuralComponents().size() != 1)
        return;
    setTrackLength(*built.timecode,
                   static_cast<std::uint64_t>(Utils::secondsToFrames(seconds, editRateOf(*built.timecode))));
}

Packages packagesOf(Templates::vector<MaterialPlan> const& plans) {
    if (plans.size() > 1)
        return Packages::Alternate;
    auto const& items = plans.front().items();
    bool const isGanged =
        std::any_of(items.begin(), items.end(), [](auto const& item) { return item.size() > 1; });
    return isGanged ? Packages::Ganged : Packages::Single;
}

Items itemsOf(Templates::vector<MaterialPlan> const& plans) {
    auto most = Items::Single;
    for (auto const& plan : plans)
        for (auto const& item : plan.items()) {
            if (std::any_of(item.begin(), item.end(), [](ItemPart const& part) { return !part.isWhole(); }))
                return Items::Edit;
            if (plan.items().size() > 1)
                most = Items::Playlist;
        }
    return most;
}

/// Containers go on in turns, so that all can be played while the file arrives.
bool isInterleaved(MXFIO::CreatorSettings const& layout) {
    auto const& limits = layout.partitions;
    return layout.interleaving == MXFIO::CreatorSettings::Interleaving::ByTime &&
           (limits.packages != 0 || limits.bytes != 0 || limits.seconds.numerator != 0);
}

} // namespace

struct GenericOPBuilder::State {
    State(DictionaryPtr dictionary, BuilderOptions given)
        : options(std::move(given)), metadata(createPartitionMetadata(std::move(dictionary))) {}

    BuiltPackage& find(SourcePackage const* package);
    std::uint32_t sid(std::uint32_t wanted);
    unsigned int trackIDs(std::size_t count);
    void playAllAtOnce();
    void setLengths();

    BuilderOptions options;
    MetadataPtr metadata;
    std::list<BuiltPackage> packages = {};
    Templates::vector<MaterialPlan> plans = {};
    Templates::vector<MXFIO::GenericStream> streams = {};
    std::uint32_t nextSID = 1;
    unsigned int nextTrackID = trackIDStep;
    bool isPrepared = false;
};

BuiltPackage& GenericOPBuilder::State::find(SourcePackage const* package) {
    auto const found = std::find_if(packages.begin(), packages.end(),
                                    [&](BuiltPackage const& built) { return built.package == package; });
    if (found == packages.end())
        fail("The file package is none that the builder made");
    return *found;
}

/// The wanted one, or one above all that were given so far.
std::uint32_t GenericOPBuilder::State::sid(std::uint32_t wanted) {
    std::uint32_t const given = wanted != 0 ? wanted : nextSID;
    nextSID = std::max(nextSID, given + 1);
    return given;
}

/// The first ID of so many essence tracks. No two of a file share one: there are readers that tell tracks of
/// several file packages apart by nothing else.
unsigned int GenericOPBuilder::State::trackIDs(std::size_t count) {
    return std::exchange(nextTrackID, nextTrackID + static_cast<unsigned int>(count) * trackIDStep);
}

void GenericOPBuilder::State::playAllAtOnce() {
    Templates::vector<ItemPart> all;
    for (auto const& built : packages)
        all.push_back({built.package});
    for (auto& plan : plans)
        if (plan.items().empty())
            plan.add(all);
}

void GenericOPBuilder::State::setLengths() {
    for (auto const& built : packages)
        setTimecodeLength(built);
    for (auto const& plan : plans)
        plan.setLengths();
}

GenericOPBuilder::GenericOPBuilder(DictionaryPtr dictionary, BuilderOptions options)
    : state_(std::make_shared<State>(std::move(dictionary), std::move(options))) {
    auto const& given = state_->options;
    createPreface(*state_->metadata,
                  {.operationalPattern = OperationalPatterns::op1a({}), // until there is more to tell
                   .product = given.product,
                   .date = given.date,
                   .version = given.version});
    addMaterialPackage({.uid = given.materialUID, .date = given.date, .name = given.materialName});
}

GenericOPBuilder::~GenericOPBuilder() = default;

GenericOPBuilder::MetadataPtr const& GenericOPBuilder::metadata() const { return state_->metadata; }

MaterialPackage& GenericOPBuilder::addMaterialPackage(PackageOptions const& options) {
    auto& package = createMaterialPackage(*state_->metadata, options);
    state_->plans.emplace_back(package);
    return package;
}

SourcePackage& GenericOPBuilder::addFilePackage(FilePackageOptions const& options) {
    BuiltPackage built;
    if (!options.isExternal) {
        built.bodySID = state_->sid(options.bodySID);
        built.indexSID = options.hasIndex ? state_->sid(options.indexSID) : 0;
    }
    built.package = &createFilePackage(*state_->metadata, {.uid = options.uid,
                                                           .date = state_->options.date,
                                                           .name = options.name,
                                                           .bodySID = built.bodySID,
                                                           .indexSID = built.indexSID});
    auto const& given = state_->options;
    auto const& start = options.startTimecode.isDefined() ? options.startTimecode : given.startTimecode;
    if (start.isDefined() && given.timecodeRate.isKnown())
        built.timecode = &addTimecodeTrack(*state_->metadata, *built.package, start, given.timecodeRate);
    state_->packages.push_back(std::move(built));
    return *state_->packages.back().package;
}

void GenericOPBuilder::addSource(SourcePackage const& package,
                                 Templates::auto_ptr<GenericContainer::Source> source) {
    auto& built = state_->find(&package);
    if (built.bodySID == 0 || built.hasSource)
        fail(built.bodySID == 0 ? "The essence of the file package is not in this file"
                                : "The file package has essence already");
    built.source = std::move(source);
    built.hasSource = true;
}

SourcePackage& GenericOPBuilder::addFrameWrapped(FrameWrapping const& wrapping,
                                                 FilePackageOptions const& options) {
    auto& package = addFilePackage(options);
    GenericContainer::Multiplexer::Mux mux(&package, wrapping.label, wrapping.packageRate);
    mux.kagSize(wrapping.kagSize);
    mux.trackID(state_->trackIDs(wrapping.analyzers.size()));
    for (auto const& analyzer : wrapping.analyzers)
        mux.addAnalyzer(analyzer, false, {0, 1});
    if (wrapping.configure)
        wrapping.configure(mux);
    addSource(package, mux.commit());
    return package;
}

SourcePackage& GenericOPBuilder::addClipWrapped(ClipWrapping const& wrapping,
                                                FilePackageOptions const& options) {
    auto& package = addFilePackage(options);
    GenericContainer::ClipWrapper::Wrap wrap(&package, wrapping.label, wrapping.analyzer, wrapping.editRate);
    wrap.kagSize(wrapping.kagSize);
    wrap.trackID(state_->trackIDs(1));
    if (wrapping.configure)
        wrapping.configure(wrap);
    addSource(package, wrap.commit());
    return package;
}

void GenericOPBuilder::addForeignTrack(ForeignTrack const& track) { state_->plans.back().add(track); }

void GenericOPBuilder::addGenericStream(MXFIO::GenericStream stream) {
    state_->streams.push_back(std::move(stream));
}

void GenericOPBuilder::addItem(Templates::vector<ItemPart> parts) {
    if (parts.empty())
        fail("An item has to play a package");
    for (auto const& part : parts) {
        state_->find(part.package);
        if (part.start < 0 || part.length.value_or(0) < 0)
            throw Exceptions::InvalidValue("A part cannot have a negative start or length");
    }
    state_->plans.back().add(std::move(parts));
}

Types::UniversalLabel GenericOPBuilder::pattern() const {
    OperationalPatterns::Qualifiers qualifiers;
    qualifiers.externalEssence = hasExternalEssence(*state_->metadata);
    for (auto const& built : state_->packages)
        if (built.bodySID != 0 && essenceTracks(*built.package).size() > 1)
            qualifiers.multiTrack = true;
    auto const packages = packagesOf(state_->plans);
    auto const& layout = state_->options.layout;
    qualifiers.streamFile = packages == Packages::Single || isInterleaved(layout);
    return OperationalPatterns::generalized(itemsOf(state_->plans), packages, qualifiers);
}

MXFIO::CreatorSettings GenericOPBuilder::prepare() {
    if (state_->isPrepared)
        throw Exceptions::InvalidChange("The builder has made its file already");
    if (state_->packages.empty())
        fail("A file has at least one file package");
    for (auto const& built : state_->packages)
        if (built.bodySID != 0 && !built.hasSource)
            fail("A file package has no essence, which is to be in this file");
    state_->isPrepared = true;
    state_->playAllAtOnce();
    if (itemsOf(state_->plans) != Items::Single)
        state_->options.layout.interleaving =
            MXFIO::CreatorSettings::Interleaving::None; // as they are played
    for (auto& plan : state_->plans)
        plan.makeTracks(*state_->metadata, state_->options.startTimecode, state_->options.timecodeRate);
    findPreface(*state_->metadata).operationalPattern(pattern());
    auto layout = state_->options.layout;
    layout.beforeFinalMetadata = [state = state_, next = layout.beforeFinalMetadata] {
        state->setLengths();
        if (next)
            next();
    };
    return layout;
}

template <class AnyCreator>
void GenericOPBuilder::handOver(AnyCreator& creator) {
    for (auto& built : state_->packages)
        if (built.source)
            creator.addSource(std::move(built.source), built.bodySID, built.indexSID);
    for (auto& stream : state_->streams)
        creator.addGenericStream(std::move(stream));
}

Templates::auto_ptr<MXFIO::Creator> GenericOPBuilder::creator(DataIO::DataSink& sink) {
    auto made = std::make_unique<MXFIO::Creator>(sink, state_->metadata, prepare());
    handOver(*made);
    return made;
}

Templates::auto_ptr<MXFIO::PullCreator> GenericOPBuilder::pullCreator() {
    auto made = std::make_unique<MXFIO::PullCreator>(state_->metadata, prepare());
    handOver(*made);
    return made;
}

} // namespace MXF::Zelm::OPBuilders
