#include "Rewrap.h"

#include "CopiedTracks.h"
#include "CopySource.h"
#include "CopyTime.h"
#include "Faults.h"
#include "Likeness.h"
#include "MetadataChoice.h"
#include "PatternLabel.h"
#include "PlayedAsOne.h"
#include "SourceLayout.h"
#include "TrackChoice.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Preface.h>
#include <MXF/Zelm/OPBuilders/OPAtomBuilder.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
namespace Structural = Metadata::Structural;

namespace {

MXFIO::Partition::MetadataPtr finalMetadata(Input& input) {
    auto const metadata = chooseFinal(input, false).partition->metadata();
    if (!metadata || metadata->size() == 0)
        throw Exceptions::InvalidStructure("the file has no header metadata");
    return metadata;
}

/// The same package in the metadata that is written.
Structural::SourcePackage* packageFor(Metadata::PartitionMetadata const& metadata,
                                      EssenceContainer const& container) {
    for (auto* const set : metadata.packages())
        if (auto* const package = dynamic_cast<Structural::SourcePackage*>(set);
            package != nullptr && container.package != nullptr && package->packageUID() != nullptr &&
            *package->packageUID() == *container.package->packageUID())
            return package;
    throw Exceptions::InvalidStructure("an essence container belongs to no file package");
}

CopiedEssence allOf(Input& input, EssenceContainer const& container) {
    CopiedEssence essence{&input, std::make_shared<EssenceContainer const>(container), {}};
    for (auto const& track : essence.container->tracks)
        essence.tracks.push_back({&track, track.trackID});
    return essence;
}

bool isInterleaved(MXFIO::CreatorSettings const& settings) {
    auto const& limits = settings.partitions;
    return settings.interleaving == MXFIO::CreatorSettings::Interleaving::ByTime &&
           (limits.packages != 0 || limits.bytes != 0 || limits.seconds.numerator != 0);
}

} // namespace

Rewrap::Rewrap(std::vector<std::string> const& files, SharedDictionary const& dictionary,
               RewrapOptions const& options)
    : dictionary_(dictionary), options_(options) {
    open(files);
    auto const labels = containerLabels(*metadata_);
    chooseLayout();
    if (options_.isPlaylist)
        openPlaylist();
    choosePackages();
    makeSources();
    renamePackages();
    updateContainerLabels(*metadata_, labels);
    setPattern();
    addGeneration(*metadata_);
    unused_ = Layout(options_.layout).apply(*metadata_, dictionary_);
    report();
}

Rewrap::~Rewrap() = default;

void Rewrap::open(std::vector<std::string> const& files) {
    for (auto const& file : files)
        openInput(file);
    containers_ = MXFIO::essenceContainers(sources_.front());
    written_ = std::make_unique<Input>(files.front(), dictionary_);
    metadata_ = finalMetadata(*written_);
    for (auto const& container : containers_)
        copies_.push_back({.essence = allOf(input(), container),
                           .bodySID = container.bodySID,
                           .indexSID = container.indexSID,
                           .package = packageFor(*metadata_, container)});
    isOther_ = inputs_.size() > 1;
    isOneBehindAnother_ = isOther_ && !options_.isPlaylist;
    if (isOneBehindAnother_)
        requireOneAfterAnother(*metadata_, files.front());
    for (std::size_t i = 1; i < inputs_.size() && isOneBehindAnother_; ++i)
        openFollowing(i, MXFIO::essenceContainers(sources_[i]));
}

void Rewrap::openInput(std::string const& file) {
    try {
        inputs_.push_back(std::make_unique<Input>(file, dictionary_));
        sources_.push_back(finalMetadata(*inputs_.back()));
        haveFooter_.push_back(hasFooter(*inputs_.back()));
    } catch (Exceptions::SystemError const&) {
        throw; // names the file
    } catch (Exceptions::BaseException const& fault) {
        throw FaultyInput{file, fault};
    }
}

void Rewrap::openFollowing(std::size_t index, std::vector<EssenceContainer> const& containers) {
    auto& follower = *inputs_[index];
    requireAlike(containers_, input().name, containers, follower.name);
    requireOneAfterAnother(*sources_[index], follower.name);
    std::size_t next = 0;
    for (auto& copy : copies_)
        copy.following.push_back(allOf(follower, containers[next++]));
}

void Rewrap::openPlaylist() {
    takeStreamIDs();
    Playlist playlist(*metadata_, copies_, streams_, input().name);
    for (std::size_t i = 1; i < inputs_.size(); ++i) {
        PlayedFile file{inputs_[i].get(), sources_[i].get(), {}};
        for (auto const& container : MXFIO::essenceContainers(sources_[i]))
            file.containers.push_back(std::make_shared<EssenceContainer const>(container));
        movedStreams_.push_back(playlist.append(file));
    }
    settings_.interleaving = MXFIO::CreatorSettings::Interleaving::None;
}

void Rewrap::takeStreamIDs() {
    for (auto const& container : containers_) {
        streams_.take(container.bodySID);
        streams_.take(container.indexSID);
    }
    for (auto const& stream : genericStreamsOf(input()))
        streams_.take(stream.sid);
}

// Layout.

PatternRow const* Rewrap::wantedPattern() const {
    return options_.layout.pattern.empty() ? nullptr : findPattern(options_.layout.pattern);
}

void Rewrap::chooseLayout() {
    auto const& given = options_.layout;
    settings_ = layoutOf(input(), containers_);
    Layout const wanted(given);
    EditRate const rate = containers_.empty() || !containers_.front().editRate().isKnown()
                              ? EditRate{25, 1}
                              : containers_.front().editRate();
    auto const fromOptions = wanted.builderOptions(rate, {}).layout;
    if (!given.index.empty())
        settings_.index = fromOptions.index;
    if (!given.partitionEvery.empty() ||
        (settings_.index == Layout::Index::Body && settings_.partitions.packages == 0))
        settings_.partitions = fromOptions.partitions;
    if (given.kagSize)
        settings_.kagSize = *given.kagSize;
    if (given.reserve)
        settings_.metadataReserve = *given.reserve;
    if (!given.pattern.empty() && wanted.isAtom()) {
        settings_.index = Layout::Index::Footer;
        settings_.partitions = {};
        settings_.essenceInHeader = false;
        settings_.runIn.clear();
        settings_.metadataReserve =
            std::max(settings_.metadataReserve, OPBuilders::OPAtomBuilder::smallestReserve);
    }
}

void Rewrap::setPattern() {
    if (playsPlaylist(*metadata_))
        settings_.interleaving = MXFIO::CreatorSettings::Interleaving::None;
    auto const label = patternLabel(*metadata_, wantedPattern(), isInterleaved(settings_));
    auto& preface = Structural::findPreface(*metadata_);
    if (preface.operationalPattern() == nullptr || *preface.operationalPattern() != label)
        preface.operationalPattern(label);
}

Types::UniversalLabel Rewrap::pattern() const { return Structural::operationalPattern(*metadata_); }

// Essence.

/// The tracks, and the packages that they are in.
void Rewrap::choosePackages() {
    if (keepChosenTracks(*metadata_, copies_, options_.tracks, options_.without))
        isOther_ = true;
    auto const* const wanted = wantedPattern();
    bool const isGanged = wanted != nullptr && wanted->packages == 2;
    bool const isSingle = wanted != nullptr && wanted->items == 1 && wanted->packages == 1;
    if (isGanged)
        takeStreamIDs();
    if (isGanged && splitPackages(*metadata_, copies_, streams_))
        isOther_ = true;
    if (isSingle && playsPlaylist(*metadata_))
        joinPackages();
    else if (isSingle && mergePackages(*metadata_, copies_))
        isOther_ = true;
}

void Rewrap::joinPackages() {
    if (options_.range)
        throw InvalidValue("--range: not while packages that are played one after another become one");
    playAsOne(*metadata_, copies_, input().name);
    isOther_ = isOneBehindAnother_ = true;
}

void Rewrap::makeSources() {
    if (options_.range && !copies_.empty()) {
        shown_ = chooseSpans(*metadata_, copies_, *options_.range);
        isOther_ = true;
    }
    CopySourceOptions options{.frame = options_.layout.frame,
                              .clip = options_.layout.clip,
                              .systemItem = options_.layout.systemItem,
                              .rate = options_.layout.rate,
                              .kagSize = options_.layout.kagSize,
                              .usualGrid = settings_.kagSize,
                              .trustsSizes = options_.trustsSizes};
    options.leavesOthers = std::any_of(copies_.begin(), copies_.end(), isOneSound);
    for (auto& copy : copies_)
        openSource(*metadata_, copy, options);
    if (shown_)
        cutPackages(*metadata_, copies_, *shown_);
    if (isOneBehindAnother_)
        forgetLengths(*metadata_, copies_);
}

/// What holds other essence is another package. In a playlist only the material package is.
void Rewrap::renamePackages() {
    if (options_.uids == RewrapOptions::UIDs::Kept ||
        (options_.uids == RewrapOptions::UIDs::AsNeeded && !isOther_))
        return;
    bool const isMaterialOnly = options_.isPlaylist && options_.uids == RewrapOptions::UIDs::AsNeeded;
    for (auto* const set : metadata_->packages()) {
        auto* const package = dynamic_cast<Structural::GenericPackage*>(set);
        auto const* const uid = package != nullptr ? package->packageUID() : nullptr;
        bool const isMaterial = dynamic_cast<Structural::MaterialPackage*>(package) != nullptr;
        if (uid == nullptr || (!isMaterial && (isMaterialOnly || copyInto(copies_, uid) == nullptr)))
            continue;
        Types::UMID32 const old = *uid;
        renamePackage(*metadata_, old, Types::UMID32::generate(old.materialType()));
    }
}

void Rewrap::report() {
    for (auto const& copy : copies_) {
        auto tracks = copy.essence.tracks.size();
        for (auto const& other : copy.beside)
            tracks += other.tracks.size();
        report_.push_back({copy.bodySID, tracks, copy.isClip, copy.preCharge, copy.units, copy.rate});
    }
}

Shortages Rewrap::shortages() const {
    Shortages found;
    bool isEnough = options_.range.has_value();
    for (auto const& copy : copies_) {
        std::int64_t const there = copy.units();
        bool const isShort = copy.expected && there < *copy.expected && (copy.knowsUnits() || there == 0);
        isEnough = isEnough && copy.expected && !isShort;
        if (isShort)
            found.push_back({copy.essence.input->name,
                             "the essence of BodySID " + std::to_string(copy.container().bodySID) +
                                 " ends early, after " + std::to_string(there) + " of " +
                                 std::to_string(*copy.expected) + " edit units"});
    }
    for (std::size_t i = 0; i < inputs_.size(); ++i) {
        if (!isEnough && !haveFooter_[i])
            found.push_back({inputs_[i]->name, "the file ends early, without a footer partition"});
        for (auto const& fault : sources_[i]->faults())
            found.push_back({inputs_[i]->name, faultText(fault.message, fault.offset)});
    }
    return found;
}

// Writing.

std::uint64_t Rewrap::inputBytes() const {
    std::uint64_t bytes = 0;
    for (auto const& one : inputs_)
        bytes += one->source.size();
    return bytes;
}

std::unique_ptr<MXFIO::Creator> Rewrap::creator(DataIO::DataSink& sink) {
    bool const isOneSize = copies_.size() == 1 && copies_.front().source->isCBE();
    if (settings_.index == Layout::Index::Header && !isOneSize && options_.layout.index.empty())
        settings_.index = Layout::Index::Footer;
    settings_.beforeFinalMetadata = [this] { finishLengths(*metadata_, copies_); };
    auto made = std::make_unique<MXFIO::Creator>(sink, metadata_, settings_);
    for (auto& copy : copies_)
        made->addSource(std::move(copy.source), copy.bodySID, copy.indexSID);
    for (auto& stream : genericStreamsOf(input()))
        made->addGenericStream(std::move(stream));
    for (std::size_t i = 0; i < movedStreams_.size(); ++i)
        for (auto& stream : genericStreamsOf(*inputs_[i + 1]))
            if (auto const moved = movedStreams_[i].find(stream.sid); moved != movedStreams_[i].end()) {
                stream.sid = moved->second;
                made->addGenericStream(std::move(stream));
            }
    return made;
}

} // namespace Zelm
