#include "WrapFiles.h"

#include "Faults.h"
#include "TimeText.h"
#include "WrapPresets.h"
#include "WrapVerify.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/Multiplexer/SystemItemGenerator.h>
#include <MXF/Zelm/Metadata/Structural/Building.h>
#include <MXF/Zelm/Metadata/Structural/DataDefinitions.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/OPBuilders/OPAtomBuilder.h>

#include <algorithm>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;
using GenericContainer::Multiplexer::Mux;
using GenericContainer::Multiplexer::SystemItemGenerator;
using OPBuilders::GenericOPBuilder;
namespace Definitions = Metadata::Structural::DataDefinitions;

namespace {

constexpr auto multipleWrappings = "060E2B34.04010103.0D010301.027F0100"_key;

/// The first essence track of a multiplexer or clip wrapper.
constexpr std::uint32_t firstTrackID = 256;

KLV::Key dataDefinitionOf(WrapTrack const& track) {
    return track.kind == 'v'   ? Definitions::picture
           : track.kind == 'a' ? Definitions::sound
                               : Definitions::data;
}

/// The identities of packages that several files refer to.
struct Identities {
    Types::UMID32 material = Types::UMID32::generate(Types::UMIDMaterialType::NotIdentified);
    std::vector<Types::UMID32> packages; // of each file
};

class FileBuilder {
public:
    FileBuilder(WrapTask const& task, WrapFile const& file, Identities const& identities, std::size_t number)
        : task_(task), file_(file), identities_(identities), number_(number) {
        auto options = task.layout.builderOptions(task.plan.timecodeRate(), task.plan.start(0).value);
        options.materialUID = identities.material;
        if (hasFollowers())
            options.layout.interleaving = MXFIO::CreatorSettings::Interleaving::None;
        if (task.layout.isAtom())
            builder_ = std::make_unique<OPBuilders::OPAtomBuilder>(task.dictionary, std::move(options));
        else
            builder_ = std::make_unique<GenericOPBuilder>(task.dictionary, std::move(options));
    }

    Templates::auto_ptr<MXFIO::Creator> creator(DataIO::DataSink& sink) {
        for (std::size_t i = 0; i < file_.items.size(); ++i)
            addItem(file_.items[i], i);
        if (task_.layout.isOneFilePerTrack())
            addOtherFiles();
        auto made = builder_->creator(sink);
        checkPattern();
        return made;
    }

    Metadata::PartitionMetadata& metadata() const { return *builder_->metadata(); }

private:
    using SourcePackage = GenericOPBuilder::SourcePackage;

    /// Containers that are known to end with another one only when that has been written.
    bool hasFollowers() const {
        return std::any_of(file_.items.begin(), file_.items.end(),
                           [](auto const& item) { return item.size() > 1; });
    }

    void addItem(WrapItem const& item, std::size_t index) {
        bool const isAlternative = task_.layout.pattern().packages == 3;
        if (isAlternative && index > 0)
            builder_->addMaterialPackage();
        Templates::vector<OPBuilders::ItemPart> parts;
        for (auto const& container : item) {
            parts.push_back({&addContainer(container, task_.plan.start(index).value)});
            if (index < task_.options.plays.size())
                setPart(parts.back(), task_.options.plays[index]);
        }
        if (isAlternative || task_.layout.isPlaylist())
            builder_->addItem(std::move(parts));
    }

    static void setPart(OPBuilders::ItemPart& part, UnitRange const& range) {
        part.start = range.first;
        if (range.last != std::numeric_limits<std::int64_t>::max())
            part.length = range.last - range.first;
    }

    SourcePackage& addContainer(WrapContainer const& container, Utils::TimeCode const& start) {
        for (auto const* const track : container.tracks)
            for (auto const& stream : track->streams)
                builder_->addGenericStream(stream);
        OPBuilders::FilePackageOptions package;
        package.startTimecode = start;
        if (task_.layout.isOneFilePerTrack())
            package.uid = identities_.packages[number_];
        if (container.isClip()) {
            OPBuilders::ClipWrapping wrapping;
            wrapping.analyzer = container.tracks.front()->tap;
            wrapping.kagSize = task_.layout.kagSize();
            if (container.tracks.front()->tap->isLengthOpen())
                wrapping.configure = [](GenericContainer::ClipWrapper::Wrap& wrap) { wrap.mayEndEarly(); };
            return builder_->addClipWrapped(wrapping, package);
        }
        OPBuilders::FrameWrapping wrapping;
        wrapping.packageRate = task_.plan.rate();
        wrapping.kagSize = task_.layout.kagSize();
        for (auto const* const track : container.tracks)
            wrapping.analyzers.push_back(track->tap);
        if (task_.layout.systemItem())
            wrapping.configure = [&](Mux& mux) { addSystemItem(container, start, mux); };
        return builder_->addFrameWrapped(wrapping, package);
    }

    void addSystemItem(WrapContainer const& container, Utils::TimeCode const& start, Mux& mux) const {
        Types::UniversalLabel label = container.tracks.front()->tap->universalLabel();
        for (auto const* const track : container.tracks)
            if (track->tap->universalLabel() != label)
                label = multipleWrappings;
        mux.addAnalyzer(std::make_shared<SystemItemGenerator>(task_.plan.rate(), start, label), true, {0, 1});
    }

    /// The material package plays the tracks in the other files too.
    void addOtherFiles() {
        auto const& files = task_.plan.files();
        for (std::size_t i = 0; i < files.size(); ++i) {
            auto const& other = *files[i].items.front().front().tracks.front();
            auto const rate = other.tap->editRate().isKnown() ? other.tap->editRate() : task_.plan.rate();
            if (i != number_ && task_.layout.isAtom())
                builder_->addForeignTrack(
                    {identities_.packages[i], firstTrackID, dataDefinitionOf(other), rate, {}});
        }
    }

    /// The builder labels a file as what it is.
    void checkPattern() const {
        auto const label = Metadata::Structural::operationalPattern(metadata());
        auto const& wanted = task_.layout.pattern();
        auto const* const bytes = label.rawBuffer();
        if (bytes[12] != wanted.items || (!task_.layout.isAtom() && bytes[13] != wanted.packages))
            throw CannotWrap("--pattern " + std::string(wanted.name) + ": these inputs make op" +
                             std::to_string(bytes[12]) + static_cast<char>('a' + bytes[13] - 1));
    }

    WrapTask const& task_;
    WrapFile const& file_;
    Identities const& identities_;
    std::size_t number_;
    std::unique_ptr<GenericOPBuilder> builder_;
};

/// "0.52 s"
std::string secondsText(double seconds) {
    char text[32];
    bool const isShort = seconds < 0.01;
    std::snprintf(text, sizeof text, "%.2f %s", isShort ? seconds * 1000 : seconds, isShort ? "ms" : "s");
    return text;
}

/// How much longer a track is than the sound that it was made of, in seconds; below 0 when some of the sound
/// was left.
double secondsOfSilence(WrapTrack const& track) {
    double const ofFile = static_cast<double>(track.tap->units()) / track.tap->editRate().toDouble();
    double const perSecond = static_cast<double>(track.format.blockAlign()) * track.format.samplingRate;
    double const ofSound = static_cast<double>(track.tail->soundBytes()) / perSecond;
    return ofFile - ofSound;
}

/// Notes what does not end with the file, each input once.
void noteEnds(WrapResult& result) {
    std::set<std::string> noted;
    for (auto const* const track : result.tracks) {
        if (!track->tap->fault().empty())
            result.notes.push_back(track->input + ": " + track->tap->fault());
        double const aSample = 0.5 / 192000;
        double const silence = track->tail ? secondsOfSilence(*track) : 0;
        bool const isLonger =
            track->tail ? !track->tail->isExhausted() || silence < -aSample
                        : track->tap->wasCut() && !(track->openEnd && track->openEnd->isExhausted());
        if ((!isLonger && silence <= aSample) || !noted.insert(track->input).second)
            continue;
        result.notes.push_back(track->input + (isLonger ? ": is longer than the file: the rest was left out"
                                                        : ": is shorter than the file: silence was added, " +
                                                              secondsText(silence)));
    }
}

WrapResult resultOf(WrapTask const& task, WrapFile const& file) {
    WrapResult result;
    result.file = file.name;
    result.pattern = task.layout.pattern().name;
    result.start = task.plan.start(0);
    for (auto const& item : file.items)
        for (auto const& container : item)
            result.tracks.insert(result.tracks.end(), container.tracks.begin(), container.tracks.end());
    return result;
}

class FileWriting {
public:
    FileWriting(WrapTask const& task, WrapFile const& file, Identities const& identities, std::size_t number)
        : task_(task), file_(file), builder_(task, file, identities, number), result_(resultOf(task, file)) {}

    WrapResult run() {
        NewMxfFile output(file_.name, task_.newFile);
        auto const creator = prepare(output);
        try {
            output.write(*creator);
            take(output);
            output.complete();
        } catch (Exceptions::BaseException const& failure) {
            output.abandon();
            bool const bySystem = dynamic_cast<Exceptions::SystemError const*>(&failure) != nullptr;
            throw WritingFailed(bySystem ? file_.name : blamed(), output.partName(),
                                faultText(failure.message(), failure.offset()), bySystem);
        }
        if (task_.options.verify && !result_.discarded && !output.isStandardOutput()) {
            result_.differences = verify(file_, task_.dictionary, task_.plan.rate());
            result_.verified = true;
        }
        return std::move(result_);
    }

private:
    /// The input whose essence cannot be read, else the file.
    std::string const& blamed() const {
        for (auto const* const track : result_.tracks)
            if (track->tap->hasThrown())
                return track->input;
        return file_.name;
    }

    /// Until bytes have been written, a refusal leaves nothing behind.
    Templates::auto_ptr<MXFIO::Creator> prepare(NewMxfFile& output) {
        try {
            auto creator = builder_.creator(output.sink());
            for (auto const& label : task_.layout.apply(builder_.metadata(), task_.dictionary))
                result_.notes.push_back("--track-label " + label + ": there is no such track");
            return creator;
        } catch (...) {
            output.discard();
            throw;
        }
    }

    void take(NewMxfFile const& output) {
        result_.bytes = output.bytes();
        result_.seconds = output.seconds();
        result_.interrupted = output.wasInterrupted();
        result_.discarded = output.wasDiscarded();
        for (auto const* const track : result_.tracks)
            checkGroups(task_.layout, *track);
        auto& notes = task_.plan.notes();
        result_.notes.insert(result_.notes.end(), notes.begin(), notes.end());
        notes.clear();
        if (!result_.interrupted)
            noteEnds(result_);
        if (output.hasOpenHeader())
            result_.notes.push_back(file_.name + ": " + NewMxfFile::openHeaderNote);
        if (task_.options.md5)
            for (auto* const track : result_.tracks)
                result_.md5.push_back(track->tap->md5());
    }

    WrapTask const& task_;
    WrapFile const& file_;
    FileBuilder builder_;
    WrapResult result_;
};

} // namespace

void writeFiles(WrapTask const& task, std::vector<WrapResult>& results) {
    Identities identities;
    auto const& files = task.plan.files();
    for (auto const& file : files) {
        checkNewName(file.name, task.newFile);
        identities.packages.push_back(Types::UMID32::generate(Types::UMIDMaterialType::NotIdentified));
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        results.push_back(FileWriting(task, files[i], identities, i).run());
        if (results.back().interrupted)
            return;
    }
}

} // namespace Zelm
