#include "Rewrap.h"

#include "FrameContainers.h"
#include "JoinedSource.h"
#include "Likeness.h"
#include "MetadataChoice.h"
#include "MetadataParts.h"
#include "PatternLabel.h"
#include "SourceLayout.h"
#include "TrackChoice.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/ClipWrapper/Wrap.h>
#include <MXF/Zelm/GenericContainer/Multiplexer/Mux.h>
#include <MXF/Zelm/MXFIO/PassThroughAnalyzer.h>
#include <MXF/Zelm/Metadata/Structural/Building.h>
#include <MXF/Zelm/Metadata/Structural/ContentStorage.h>
#include <MXF/Zelm/Metadata/Structural/EssenceContainerData.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>
#include <MXF/Zelm/OPBuilders/OPAtomBuilder.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
using GenericContainer::ElementKey;
using GenericContainer::Wrapping;
namespace Structural = Metadata::Structural;

namespace {

using TrackChange = MXFIO::PassThroughSourceOptions::TrackChange;

/// Above this, edit units are samples.
constexpr double fastestFrames = 300;

std::uint32_t withCount(std::uint32_t trackNumber, std::size_t count) {
    return (trackNumber & 0xFF00FFFFu) | static_cast<std::uint32_t>(count & 0x7F) << 16;
}

std::int64_t inRate(std::int64_t units, EditRate const& from, EditRate const& to) {
    return from == to ? units : Utils::secondsToFrames(Utils::framesToSeconds(units, from), to);
}

std::vector<Structural::FileDescriptor*> descriptorsOf(Structural::SourcePackage const& package) {
    std::vector<Structural::FileDescriptor*> found;
    auto* const first = dynamic_cast<Structural::FileDescriptor*>(package.descriptor());
    if (first == nullptr)
        return found;
    found.push_back(first);
    if (auto* const several = dynamic_cast<Structural::MultipleDescriptor*>(first))
        for (auto* const part : several->fileDescriptors())
            found.push_back(part);
    return found;
}

bool isPicture(MXFIO::EssenceTrack const& track) { return trackKind(track) == 'v'; }

} // namespace

Rewrap::Rewrap(std::vector<std::string> const& files, SharedDictionary const& dictionary,
               RewrapOptions const& options)
    : dictionary_(dictionary), options_(options) {
    open(files);
    auto const labels = containerLabels(*metadata_);
    chooseLayout();
    chooseTracks();
    makeSources();
    cutToRange();
    if (inputs_.size() > 1)
        forgetLengths();
    renamePackages();
    updateContainerLabels(*metadata_, labels);
    setPattern();
    addGeneration(*metadata_);
    unused_ = Layout(options_.layout).apply(*metadata_, dictionary_);
}

Rewrap::~Rewrap() = default;

void Rewrap::open(std::vector<std::string> const& files) {
    for (auto const& file : files)
        inputs_.push_back(std::make_unique<Input>(file, dictionary_));
    auto const metadataOf = [](Input& of) {
        auto const metadata = chooseFinal(of, false).partition->metadata();
        if (!metadata || metadata->size() == 0)
            throw Exceptions::InvalidStructure("the file has no header metadata");
        return metadata;
    };
    containers_ = MXFIO::essenceContainers(metadataOf(input()));
    written_ = std::make_unique<Input>(files.front(), dictionary_);
    metadata_ = metadataOf(*written_);
    for (auto const& container : containers_)
        kept_.push_back({.container = container, .package = packageFor(container)});
    for (std::size_t i = 1; i < inputs_.size(); ++i) {
        auto const others = MXFIO::essenceContainers(metadataOf(*inputs_[i]));
        requireAlike(containers_, files.front(), others, files[i]);
        std::size_t index = 0;
        for (auto& kept : kept_)
            kept.more.push_back(others[index++]);
    }
}

/// The same package in the metadata that is written.
Structural::SourcePackage* Rewrap::packageFor(EssenceContainer const& container) const {
    for (auto* const set : metadata_->packages())
        if (auto* const package = dynamic_cast<SourcePackage*>(set);
            package != nullptr && container.package != nullptr && package->packageUID() != nullptr &&
            *package->packageUID() == *container.package->packageUID())
            return package;
    throw Exceptions::InvalidStructure("an essence container belongs to no file package");
}

// Layout.

void Rewrap::chooseLayout() {
    auto const& given = options_.layout;
    settings_ = layoutOf(input(), containers_);
    Layout const wanted(given);
    EditRate const rate = containers_.empty() || !containers_.front().editRate().isKnown()
                              ? EditRate{25, 1}
                              : containers_.front().editRate();
    auto const fromOptions = wanted.builderOptions(rate).layout;
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
    auto const& limits = settings_.partitions;
    bool const isInterleaved = limits.packages != 0 || limits.bytes != 0 || limits.seconds.numerator != 0;
    auto const* const wanted =
        options_.layout.pattern.empty() ? nullptr : findPattern(options_.layout.pattern);
    auto const label = patternLabel(*metadata_, wanted, isInterleaved);
    auto& preface = Structural::findPreface(*metadata_);
    if (preface.operationalPattern() == nullptr || *preface.operationalPattern() != label)
        preface.operationalPattern(label);
}

Types::UniversalLabel Rewrap::pattern() const { return Structural::operationalPattern(*metadata_); }

// Tracks.

bool Rewrap::isChosen(EssenceContainer const& container, MXFIO::EssenceTrack const& track) const {
    auto const isNamed = [&](std::vector<std::string> const& names) {
        return std::any_of(names.begin(), names.end(), [&](std::string const& name) {
            auto const found = Zelm::chooseTracks(containers_, name);
            return std::any_of(found.begin(), found.end(), [&](FoundTrack const& one) {
                return one.container->bodySID == container.bodySID && one.track->trackID == track.trackID;
            });
        });
    };
    return (options_.tracks.empty() || isNamed(options_.tracks)) && !isNamed(options_.without);
}

void Rewrap::chooseTracks() {
    for (auto const* const names : {&options_.tracks, &options_.without})
        for (auto const& name : *names)
            if (Zelm::chooseTracks(containers_, name).empty())
                throw InvalidValue("there is no essence track " + name +
                                   "; the tracks are: " + trackNames(containers_));
    for (auto kept = kept_.begin(); kept != kept_.end();) {
        keepTracks(*kept);
        bool const isEmpty = kept->tracks.empty() && !kept->container.tracks.empty();
        if (isEmpty)
            leaveOut(kept->container);
        kept = isEmpty ? kept_.erase(kept) : std::next(kept);
    }
    if (kept_.empty() && !containers_.empty())
        throw InvalidValue("no essence track is left; the tracks are: " + trackNames(containers_));
}

/// The element count in the keys is that of the elements that are left.
void Rewrap::keepTracks(Kept& kept) {
    auto const& tracks = kept.container.tracks;
    for (auto const& track : tracks)
        if (isChosen(kept.container, track))
            kept.tracks.push_back(&track);
    if (kept.tracks.size() == tracks.size())
        return;
    isLess_ = true;
    for (auto const& track : tracks) {
        auto const itemType = ElementKey(track.trackNumber).itemType();
        auto const left = std::count_if(kept.tracks.begin(), kept.tracks.end(), [&](auto const* other) {
            return ElementKey(other->trackNumber).itemType() == itemType;
        });
        bool const isLeft = std::find(kept.tracks.begin(), kept.tracks.end(), &track) != kept.tracks.end();
        auto const number = isLeft ? withCount(track.trackNumber, static_cast<std::size_t>(left)) : 0;
        kept.changes.push_back({track.trackNumber, number});
        if (!isLeft && !kept.tracks.empty())
            removeTrack(*metadata_, *kept.package, track.trackID);
    }
    for (auto* const track : kept.package->tracks())
        for (auto const& change : kept.changes)
            if (change.newNumber != 0 && track->trackNumber() != nullptr &&
                *track->trackNumber() == change.trackNumber)
                track->trackNumber(Types::UInt32(change.newNumber));
}

/// The file package goes with its container.
void Rewrap::leaveOut(EssenceContainer const& container) {
    auto& package = *packageFor(container);
    for (auto const& track : container.tracks)
        removeTrack(*metadata_, package, track.trackID);
    auto* const storage = Structural::findPreface(*metadata_).contentStorage();
    for (auto* const data : storage->essenceContainerData())
        if (data->bodySID() != nullptr && *data->bodySID() == container.bodySID) {
            storage->removeEssenceContainerData(*data);
            removeWithOwned(*metadata_, *data);
        }
    storage->removePackage(package);
    removeWithOwned(*metadata_, package);
}

// Essence.

Rewrap::Kept& Rewrap::rangeHolder() {
    for (auto& kept : kept_)
        if (std::any_of(kept.tracks.begin(), kept.tracks.end(), [](auto const* t) { return isPicture(*t); }))
            return kept;
    return kept_.front();
}

/// What is to be shown of a container, counted as MXFIO::PassThroughSourceOptions wants it.
UnitRange Rewrap::unitsFor(Kept const& kept) const {
    UnitRange range{0, everyUnit.last};
    if (!range_)
        return range;
    auto const& holder = const_cast<Rewrap*>(this)->rangeHolder();
    auto const rate = holder.container.editRate();
    auto const origin = kept.container.tracks.empty() ? 0 : kept.container.tracks.front().origin;
    auto const place = [&](std::int64_t unit) {
        return unit == everyUnit.last
                   ? unit
                   : inRate(unit - holder.origin, rate, kept.container.editRate()) + origin;
    };
    return {place(range_->first), place(range_->last)};
}

Wrapping Rewrap::wantedWrapping(Kept const& kept, Wrapping present) const {
    auto const& given = options_.layout;
    Wrapping const wanted = given.frame ? Wrapping::Frame : given.clip ? Wrapping::Clip : present;
    bool const isOneSound = kept.tracks.size() == 1 && kept.tracks.front()->samples.bytes != 0;
    if (wanted != present && present != Wrapping::Unknown && !isOneSound)
        throw InvalidValue(std::string(given.clip ? "--clip" : "--frame") +
                           ": only sound that is alone in its container can be wrapped otherwise (--track "
                           "chooses one)");
    return wanted;
}

void Rewrap::makeSources() {
    if (options_.range && !kept_.empty()) {
        auto& holder = rangeHolder();
        holder.origin = holder.container.tracks.empty() ? 0 : holder.container.tracks.front().origin;
        UnitTimecodes const timecodes(packagesOf(holder.container.metadata), holder.container.editRate(),
                                      holder.origin);
        range_ = timecodes.units(*options_.range);
        range_->first = std::max(range_->first, holder.origin);
        isLess_ = true;
    }
    for (auto& kept : kept_) {
        MXFIO::EssenceReader essence(input().reader, kept.container);
        kept.origin = kept.container.tracks.empty() ? 0 : kept.container.tracks.front().origin;
        auto const present = essence.wrapping();
        auto const wanted = wantedWrapping(kept, present);
        kept.isConverted = wanted != present && present != Wrapping::Unknown;
        kept.isConverted ? convert(kept, wanted) : passThrough(kept);
        report_.push_back({kept.container.bodySID, kept.tracks.size(),
                           wanted == Wrapping::Clip ? "clip" : "frame", kept.preCharge, kept.units,
                           kept.rate});
    }
}

void Rewrap::passThrough(Kept& kept) {
    auto const units = unitsFor(kept);
    MXFIO::PassThroughSourceOptions options{.first = units.first,
                                            .end = units.last,
                                            .kagSize = std::nullopt,
                                            .tracks = kept.changes,
                                            .trustsSizes = options_.trustsSizes};
    auto source = std::make_unique<MXFIO::PassThroughSource>(input().reader, kept.container, options);
    bool const isFrame = source->wrapping() != Wrapping::Clip;
    if (options_.layout.kagSize && isFrame && *options_.layout.kagSize != source->kagSize()) {
        options.kagSize = options_.layout.kagSize;
        source = std::make_unique<MXFIO::PassThroughSource>(input().reader, kept.container, options);
    }
    kept.preCharge = source->preCharge();
    kept.rate = kept.container.editRate();
    if (kept.more.empty()) {
        kept.units = [&source = *source] { return source.units(); };
        kept.knowsUnits = [&source = *source] { return source.knowsUnits(); };
        kept.source = std::move(source);
        return;
    }
    auto joined = std::make_unique<JoinedSource>();
    joined->add(std::move(source));
    options.trustsSizes = false;
    for (std::size_t i = 0; i < kept.more.size(); ++i)
        joined->add(
            std::make_unique<MXFIO::PassThroughSource>(inputs_[i + 1]->reader, kept.more[i], options));
    kept.units = [&joined = *joined] { return joined.units(); };
    kept.knowsUnits = [] { return true; };
    kept.source = std::move(joined);
}

/// The rate at which a clip of sound is cut.
EditRate Rewrap::frameRate(Kept const& kept) const {
    if (!options_.layout.rate.empty())
        return parseRate(options_.layout.rate);
    if (auto const rate = kept.container.editRate(); rate.toDouble() < fastestFrames)
        return rate;
    for (auto const* const set : metadata_->packages())
        if (auto const* const package = dynamic_cast<Structural::GenericPackage const*>(set))
            if (auto const* const timecode = Structural::getTimecodeTrack(*package);
                timecode != nullptr && editRateOf(*timecode).isKnown() &&
                editRateOf(*timecode).toDouble() < fastestFrames)
                return editRateOf(*timecode);
    throw InvalidValue("--frame: --rate says in which edit units the sound is to be cut");
}

void Rewrap::convert(Kept& kept, Wrapping wanted) {
    auto const units = unitsFor(kept);
    auto const rate = kept.container.editRate();
    MXFIO::PassThroughOptions options{.wrapping = wanted};
    if (wanted == Wrapping::Frame)
        options.editRate = frameRate(kept);
    auto const cutRate = wanted == Wrapping::Frame ? options.editRate : rate;
    options.first = inRate(units.first, rate, cutRate);
    if (units.last != everyUnit.last)
        options.end = inRate(units.last, rate, cutRate);
    auto reader = std::make_shared<MXFIO::PassThroughReader>(input().reader, kept.container, options);
    auto analyzer =
        std::make_shared<MXFIO::PassThroughAnalyzer>(std::move(reader), kept.tracks.front()->trackNumber);
    std::uint32_t const grid = std::max<std::uint32_t>(settings_.kagSize, 1);
    if (wanted == Wrapping::Frame) {
        GenericContainer::Multiplexer::Mux mux(static_cast<SourcePackage*>(nullptr), {}, options.editRate);
        mux.kagSize(grid);
        mux.addAnalyzer(analyzer, false, {0, 1});
        kept.source = mux.commit();
    } else {
        GenericContainer::ClipWrapper::Wrap wrap(nullptr, {}, analyzer, kept.tracks.front()->samples.rate);
        wrap.kagSize(grid);
        kept.source = wrap.commit();
    }
    kept.rate = analyzer->editRate();
    kept.knowsUnits = [] { return true; };
    kept.units = [analyzer] { return static_cast<std::int64_t>(analyzer->unitsGiven()); };
    describeConverted(kept, *analyzer);
}

void Rewrap::describeConverted(Kept& kept, GenericContainer::EssenceAnalyzer& analyzer) {
    auto const& source = *kept.tracks.front();
    for (auto* const candidate : kept.package->tracks()) {
        auto* const track = dynamic_cast<Structural::TimelineTrack*>(candidate);
        if (track == nullptr || track->trackID() == nullptr || *track->trackID() != source.trackID)
            continue;
        track->trackNumber(Types::UInt32(
            Structural::makeTrackNumber(analyzer.itemTypeIdentifier(), 1, analyzer.essenceElementType(), 0)));
        auto const old = editRateOf(*track);
        track->editRate(Types::Rational(kept.rate));
        if (track->origin() != nullptr && old.isKnown())
            track->origin(Types::Position(inRate(track->origin()->value(), old, kept.rate)));
        kept.origin = track->origin() != nullptr ? track->origin()->value() : 0;
        setLength(*track, -1);
    }
    for (auto* const descriptor : descriptorsOf(*kept.package)) {
        descriptor->essenceContainer(analyzer.universalLabel());
        descriptor->sampleRate(Types::Rational(kept.rate));
        descriptor->containerDuration(Types::Length(-1));
    }
}

// Time.

/// Packages that are cut have other tracks now; what they show is what is in the file.
void Rewrap::cutToRange() {
    if (!range_)
        return;
    auto const& holder = rangeHolder();
    auto const rate = holder.container.editRate();
    Seconds const from = Utils::framesToSeconds(range_->first - holder.container.tracks.front().origin, rate);
    bool const isOpen = range_->last == everyUnit.last;
    Seconds const to =
        isOpen ? Seconds{std::int64_t{1} << 30, 1}
               : Utils::framesToSeconds(range_->last - holder.container.tracks.front().origin, rate);
    std::vector<Types::UMID32> cut;
    for (auto const& kept : kept_)
        cut.push_back(*kept.package->packageUID());
    for (auto* const set : metadata_->packages()) {
        auto* const package = dynamic_cast<Structural::GenericPackage*>(set);
        bool const isOurs = dynamic_cast<Structural::MaterialPackage*>(package) != nullptr ||
                            std::any_of(kept_.begin(), kept_.end(),
                                        [&](Kept const& kept) { return kept.package == package; });
        if (isOurs)
            cutTracks(*metadata_, *package, from, to, cut);
    }
    for (auto& kept : kept_) {
        kept.origin = kept.preCharge;
        for (auto* const candidate : kept.package->tracks())
            if (auto* const track = dynamic_cast<Structural::TimelineTrack*>(candidate);
                track != nullptr && track->origin() != nullptr && Structural::isEssenceTrack(track))
                track->origin(Types::Position(inRate(kept.preCharge, kept.rate, editRateOf(*track))));
        for (auto* const descriptor : descriptorsOf(*kept.package))
            if (descriptor->containerDuration() != nullptr)
                descriptor->containerDuration(Types::Length(-1));
    }
}

/// Of files that go on with each other the sums are known at the end.
void Rewrap::forgetLengths() {
    for (auto* const set : metadata_->packages())
        if (auto* const package = dynamic_cast<Structural::GenericPackage*>(set))
            for (auto* const track : package->tracks())
                if (auto* const timeline = dynamic_cast<Structural::TimelineTrack*>(track))
                    setLength(*timeline, -1);
    for (auto const& kept : kept_)
        for (auto* const descriptor : descriptorsOf(*kept.package))
            if (descriptor->containerDuration() != nullptr)
                descriptor->containerDuration(Types::Length(-1));
}

/// What holds other essence is another package.
void Rewrap::renamePackages() {
    bool const isOther = isLess_ || inputs_.size() > 1;
    if (options_.uids == RewrapOptions::UIDs::Kept ||
        (options_.uids == RewrapOptions::UIDs::AsNeeded && !isOther))
        return;
    for (auto* const set : metadata_->packages()) {
        auto* const package = dynamic_cast<Structural::GenericPackage*>(set);
        bool const isOurs = dynamic_cast<Structural::MaterialPackage*>(package) != nullptr ||
                            std::any_of(kept_.begin(), kept_.end(),
                                        [&](Kept const& kept) { return kept.package == package; });
        if (!isOurs || package->packageUID() == nullptr)
            continue;
        Types::UMID32 const old = *package->packageUID();
        renamePackage(*metadata_, old, Types::UMID32::generate(old.materialType()));
    }
}

/// Lengths that were not known, or were more than there is.
void Rewrap::finishLengths() {
    Seconds longest = {0, 1};
    for (auto const& kept : kept_) {
        if (!kept.knowsUnits())
            continue;
        finishLengths(kept);
        auto const seconds =
            Utils::framesToSeconds(std::max<std::int64_t>(kept.units() - kept.origin, 0), kept.rate);
        if (seconds.toDouble() > longest.toDouble())
            longest = seconds;
    }
    if (longest.numerator == 0)
        return;
    for (auto* const set : metadata_->packages())
        if (auto* const package = dynamic_cast<Structural::MaterialPackage*>(set))
            for (auto* const candidate : package->tracks())
                if (auto* const track = dynamic_cast<Structural::TimelineTrack*>(candidate);
                    track != nullptr && editRateOf(*track).isKnown())
                    limitLength(*track, Utils::secondsToFrames(longest, editRateOf(*track)));
}

void Rewrap::finishLengths(Kept const& kept) {
    std::int64_t const units = kept.units();
    auto const seconds = Utils::framesToSeconds(std::max<std::int64_t>(units - kept.origin, 0), kept.rate);
    for (auto* const candidate : kept.package->tracks())
        if (auto* const track = dynamic_cast<Structural::TimelineTrack*>(candidate);
            track != nullptr && editRateOf(*track).isKnown())
            limitLength(*track, Utils::secondsToFrames(seconds, editRateOf(*track)));
    for (auto* const descriptor : descriptorsOf(*kept.package)) {
        auto const* const length = descriptor->containerDuration();
        auto const* const rate = descriptor->sampleRate();
        if (length == nullptr || rate == nullptr || rate->value().denominator <= 0 ||
            rate->value().numerator <= 0)
            continue;
        std::int64_t const whole = inRate(units, kept.rate, rate->value());
        if (length->value() < 0 || length->value() > whole)
            descriptor->containerDuration(Types::Length(whole));
    }
}

// Writing.

std::uint64_t Rewrap::inputBytes() const {
    std::uint64_t bytes = 0;
    for (auto const& one : inputs_)
        bytes += one->source.size();
    return bytes;
}

std::unique_ptr<MXFIO::Creator> Rewrap::creator(DataIO::DataSink& sink) {
    bool const isOneSize = kept_.size() == 1 && kept_.front().source->isCBE();
    if (settings_.index == Layout::Index::Header && !isOneSize && options_.layout.index.empty())
        settings_.index = Layout::Index::Footer;
    settings_.beforeFinalMetadata = [this] { finishLengths(); };
    auto made = std::make_unique<MXFIO::Creator>(sink, metadata_, settings_);
    for (auto& kept : kept_)
        made->addSource(std::move(kept.source), kept.container.bodySID, kept.container.indexSID);
    for (auto& stream : genericStreamsOf(input()))
        made->addGenericStream(std::move(stream));
    return made;
}

} // namespace Zelm
