#include "CopySource.h"

#include "CopyTime.h"
#include "JoinedSource.h"
#include "LayoutOptions.h"
#include "RemadePackages.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/ClipWrapper/Wrap.h>
#include <MXF/Zelm/MXFIO/PassThroughAnalyzer.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Metadata/Structural/Tracks.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
using GenericContainer::Wrapping;
using MXFIO::PassThroughSource;
namespace Structural = Metadata::Structural;

namespace {

/// Above this, edit units are samples.
constexpr double fastestFrames = 300;

Wrapping wrappingOf(CopiedEssence const& essence) {
    return MXFIO::EssenceReader(essence.input->reader, *essence.container).wrapping();
}

bool hasSystemItem(CopiedEssence const& essence) {
    MXFIO::EssenceOptions options;
    options.largestElement = 0;
    MXFIO::EssenceReader reader(essence.input->reader, *essence.container, options);
    MXFIO::EssenceUnit unit;
    return reader.wrapping() != Wrapping::Clip && reader.next(unit) && !unit.package.systemItems.empty();
}

class SourceMaker {
public:
    SourceMaker(Metadata::PartitionMetadata const& metadata, ContainerCopy& copy,
                CopySourceOptions const& options)
        : metadata_(metadata), copy_(copy), options_(options), present_(wrappingOf(copy.essence)) {}

    void make() {
        auto const wanted = wantedWrapping();
        bool const isConverted = wanted != present_ && present_ != Wrapping::Unknown;
        copy_.isClip = wanted == Wrapping::Clip;
        if (isConverted && copy_.isClip)
            wrapClip();
        else if (isConverted || !copy_.beside.empty() || lacksSystemItem())
            remake();
        else if (copy_.following.empty())
            passThrough();
        else
            join();
    }

private:
    Wrapping wantedWrapping() const {
        if (!copy_.beside.empty())
            return Wrapping::Frame;
        Wrapping const wanted = options_.frame ? Wrapping::Frame : options_.clip ? Wrapping::Clip : present_;
        if (wanted == present_ || present_ == Wrapping::Unknown || isOneSound(copy_))
            return wanted;
        if (options_.leavesOthers)
            return present_;
        throw InvalidValue(std::string(options_.clip ? "--clip" : "--frame") +
                           ": only sound that is alone in its container can be wrapped otherwise (--track "
                           "chooses one, --pattern op1b gives each track a container)");
    }

    bool lacksSystemItem() const {
        return options_.systemItem && copy_.hasSystemItem && !copy_.isClip && !hasSystemItem(copy_.essence);
    }

    MXFIO::PassThroughSourceOptions passOptions() const {
        auto const wanted = copy_.wanted();
        return {.first = wanted.first,
                .end = wanted.last,
                .kagSize = std::nullopt,
                .tracks = copy_.changes,
                .keepsSystemItem = copy_.hasSystemItem,
                .trustsSizes = options_.trustsSizes};
    }

    /// Laid out anew where another grid is asked for.
    std::unique_ptr<PassThroughSource> openAsItStands(MXFIO::PassThroughSourceOptions& options) {
        auto& reader = copy_.essence.input->reader;
        auto source = std::make_unique<PassThroughSource>(reader, copy_.container(), options);
        if (options_.kagSize && source->wrapping() != Wrapping::Clip &&
            *options_.kagSize != source->kagSize()) {
            options.kagSize = options_.kagSize;
            source = std::make_unique<PassThroughSource>(reader, copy_.container(), options);
        }
        copy_.preCharge = source->preCharge();
        copy_.rate = copy_.container().editRate();
        return source;
    }

    void passThrough() {
        auto options = passOptions();
        auto source = openAsItStands(options);
        copy_.units = [&source = *source] { return source.units(); };
        copy_.knowsUnits = [&source = *source] { return source.knowsUnits(); };
        copy_.source = std::move(source);
    }

    void join() {
        auto options = passOptions();
        auto joined = std::make_unique<JoinedSource>();
        joined->add(openAsItStands(options));
        options.trustsSizes = false;
        for (auto const& more : copy_.following)
            joined->add(std::make_unique<PassThroughSource>(more.input->reader, *more.container, options));
        copy_.units = [&joined = *joined] { return joined.units(); };
        copy_.knowsUnits = [] { return true; };
        copy_.source = std::move(joined);
    }

    /// The rate at which a clip of sound is cut.
    EditRate frameRate() const {
        if (!options_.rate.empty())
            return parseRate(options_.rate);
        if (auto const rate = copy_.container().editRate(); rate.toDouble() < fastestFrames)
            return rate;
        for (auto const* const set : metadata_.packages())
            if (auto const* const package = dynamic_cast<Structural::GenericPackage const*>(set))
                if (auto const* const timecode = Structural::getTimecodeTrack(*package);
                    timecode != nullptr && editRateOf(*timecode).isKnown() &&
                    editRateOf(*timecode).toDouble() < fastestFrames)
                    return editRateOf(*timecode);
        throw InvalidValue("--frame: --rate says in which edit units the sound is to be cut");
    }

    /// In stored order, in edit units of the container; pictures that others need are among them.
    UnitRange storedUnits() {
        auto const wanted = copy_.wanted();
        if (present_ != Wrapping::Frame)
            return wanted;
        PassThroughSource const source(copy_.essence.input->reader, copy_.container(), passOptions());
        copy_.preCharge = source.preCharge();
        bool const isOpen = wanted.last == everyUnit.last;
        return {source.firstUnit(), isOpen ? wanted.last : source.endUnit()};
    }

    static UnitRange inOtherRate(UnitRange const& units, EditRate const& from, EditRate const& to) {
        return {inRate(units.first, from, to),
                units.last == everyUnit.last ? units.last : inRate(units.last, from, to)};
    }

    void remake() {
        EditRate const own = copy_.container().editRate();
        EditRate const rate = present_ == Wrapping::Clip ? frameRate() : own;
        auto const units = inOtherRate(storedUnits(), own, rate);
        RemadePackages remade(copy_, rate, units);
        remade.add(copy_.essence);
        for (auto const& other : copy_.beside)
            remade.add(other);
        bool const hadSystemItem = present_ == Wrapping::Frame && hasSystemItem(copy_.essence);
        if (copy_.hasSystemItem && (options_.systemItem || hadSystemItem))
            remade.addSystemItem(metadata_);
        remade.commit(options_.kagSize.value_or(options_.usualGrid));
    }

    void wrapClip() {
        auto const units = copy_.wanted();
        MXFIO::PassThroughOptions options{.wrapping = Wrapping::Clip};
        options.first = units.first;
        options.end = units.last;
        auto const& track = copy_.essence.tracks.front();
        auto reader = std::make_shared<MXFIO::PassThroughReader>(copy_.essence.input->reader,
                                                                 copy_.container(), options);
        auto const analyzer =
            std::make_shared<MXFIO::PassThroughAnalyzer>(std::move(reader), track.source->trackNumber);
        GenericContainer::ClipWrapper::Wrap wrap(nullptr, {}, analyzer, track.source->samples.rate);
        wrap.kagSize(std::max<std::uint32_t>(options_.usualGrid, 1));
        copy_.source = wrap.commit();
        copy_.rate = analyzer->editRate();
        copy_.knowsUnits = [] { return true; };
        copy_.units = [analyzer] { return static_cast<std::int64_t>(analyzer->unitsGiven()); };
        describeRemade(*copy_.package, track.trackID, *analyzer, {1, 0}, copy_.rate);
        findOrigin(copy_);
    }

    Metadata::PartitionMetadata const& metadata_;
    ContainerCopy& copy_;
    CopySourceOptions const& options_;
    Wrapping present_;
};

} // namespace

bool isOneSound(ContainerCopy const& copy) {
    auto const& tracks = copy.essence.tracks;
    return copy.beside.empty() && tracks.size() == 1 && tracks.front().source->samples.bytes != 0;
}

void openSource(Metadata::PartitionMetadata const& metadata, ContainerCopy& copy,
                CopySourceOptions const& options) {
    copy.origin = copy.essence.origin();
    SourceMaker(metadata, copy, options).make();
    copy.expected = expectedUnits(copy);
}

} // namespace Zelm
