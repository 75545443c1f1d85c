#include "Extraction.h"

#include "ExtractPumps.h"
#include "Interruption.h"
#include "MetadataChoice.h"
#include "PartitionSurvey.h"
#include "Progress.h"

#include <MXF/Zelm/DataIO/File/FileFunctions.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/IndexTableGatherer.h>
#include <MXF/Zelm/MXFIO/SequentialReader.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::Wrapping;
using MXFIO::EssenceReader;
using MXFIO::EssenceUnit;

namespace {

/// Edit units a second in which sound from a pipe is cut that was wrapped as a clip: its own are often
/// single samples.
constexpr EditRate coarseRate{25, 1};

void makeFolder(std::string const& name) {
    std::error_code fault;
    std::filesystem::path const path(std::u8string(name.begin(), name.end()));
    std::filesystem::create_directories(path, fault);
    if (fault && !std::filesystem::is_directory(path))
        throw Exceptions::SystemError(name, "cannot make the folder", fault.value());
}

std::string listed(std::vector<std::string> const& names) {
    std::string text;
    for (auto const& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

} // namespace

Extraction::Extraction(ExtractOptions options)
    : options_(std::move(options)), tracks_(options_.tracks, info_, options_.whenComplete) {
    result_.tracks = &tracks_.tracks();
}

Extraction::~Extraction() = default;

void Extraction::note(Exceptions::BaseException const& fault) {
    result_.faults.push_back({fault.message(), fault.offset().value_or(0)});
}

bool Extraction::isChosen(Document const& document) const {
    auto const& chosen = options_.tracks.chosen;
    return chosen.empty() ? !options_.tracks.toStandardOutput
                          : std::any_of(chosen.begin(), chosen.end(), [&](std::string const& choice) {
                                return choice == "g" || choice == document.name;
                            });
}

void Extraction::checkChoices() const {
    std::vector<std::string> unmatched = tracks_.unmatched();
    std::erase_if(unmatched, [&](std::string const& choice) {
        return std::any_of(result_.documents.begin(), result_.documents.end(),
                           [&](auto const& each) { return choice == "g" || choice == each.name; });
    });
    if (!unmatched.empty())
        throw CannotExtract("there is no track " + listed(unmatched) + " (--list shows what there is)");
    std::size_t const count = tracks_.tracks().size() + result_.documents.size();
    if (options_.tracks.toStandardOutput && count > 1)
        throw CannotExtract("standard output takes one track: choose one by --track (--list shows them)");
}

void Extraction::checkFree() const {
    auto existing = tracks_.existing();
    if (!options_.tracks.output.force && !options_.tracks.toStandardOutput)
        for (auto const& document : result_.documents)
            for (auto const& name : {document.file, document.file + ".part"})
                if (DataIO::File::exists(name))
                    existing.push_back(name);
    if (!existing.empty())
        throw CannotExtract("there already: " + listed(existing) + " (--force replaces files)");
}

void Extraction::openNew(std::optional<std::uint64_t> dataBytes) {
    tracks_.plan();
    if (options_.listOnly)
        return;
    checkFree();
    if (!options_.folder.empty())
        makeFolder(options_.folder);
    tracks_.open(dataBytes);
}

void Extraction::abandon(ExtractTrack& track) {
    try {
        if (track.output)
            track.output->abandon(result_.parts);
    } catch (Exceptions::BaseException const&) {
        // It is a part all the same, and the first failure is the one that is told.
    }
    track.output.reset();
}

void Extraction::abandon() {
    for (auto& track : tracks_.tracks())
        abandon(track);
}

void Extraction::complete() {
    for (auto& track : tracks_.tracks())
        if (track.output) {
            track.output->complete();
            track.output.reset();
        }
}

// From a file.

Extraction::Metadata Extraction::findMetadata(Input& input) {
    auto const choice = chooseFinal(input, false);
    for (auto const& fault : choice.faults)
        result_.faults.push_back({fault.message, fault.offset.value_or(0)});
    try {
        auto metadata = choice.partition->metadata();
        if (metadata)
            gatherPackages(*metadata, info_);
        return metadata;
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& fault) {
        note(fault);
        return {};
    }
}

/// The containers of the metadata, and those of which only the partitions know.
void Extraction::findContainers(Input& input) {
    auto const metadata = findMetadata(input);
    auto known = MXFIO::essenceContainers(metadata);
    tracks_.name(known);
    std::set<std::uint32_t> streams = {0};
    for (auto& container : known) {
        streams.insert(container.bodySID);
        containers_.push_back(std::move(container));
    }
    for (auto const& each : PartitionSurveyor(input, false).survey().partitions)
        if (!each.partition->isGenericStream() && streams.insert(each.pack().bodySID()).second) {
            containers_.emplace_back();
            containers_.back().bodySID = each.pack().bodySID();
        }
    prepareDocuments(input, metadata);
}

void Extraction::prepareDocuments(Input& input, Metadata const& metadata) {
    try {
        for (auto& document : findDocuments(input, metadata.get(), options_.tracks.base))
            if (isChosen(document))
                result_.documents.push_back(std::move(document));
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& fault) {
        note(fault);
    }
}

/// A clip that is one edit unit is taken whole. Throws CannotExtract when a range begins behind the end.
void Extraction::requireUnits(EssenceReader& reader, WantedUnits const& wanted, bool isClip) const {
    if (options_.range.isAll())
        return;
    EssenceUnit unit;
    std::int64_t const count = isClip ? reader.end().value_or(0) : 0;
    bool const isThere =
        isClip ? count <= 1 || wanted.others.first < count : reader.read(wanted.others.first, unit);
    if (!isThere)
        throw CannotExtract("the essence has no edit unit " + std::to_string(wanted.others.first));
}

/// Finds out what a container holds and which part of it is wanted.
void Extraction::prepare(Input& input, MXFIO::EssenceContainer const& container,
                         SharedGatherer const& gatherer) {
    EssenceReader reader(input.reader, container, moderateOptions(gatherer));
    bool const isClip = reader.wrapping() == Wrapping::Clip;
    EssenceUnit unit;
    if (isClip)
        unit = clipElements(reader);
    else
        reader.read(0, unit);
    tracks_.meet(unit, &container);
    std::vector<ExtractTrack*> tracks;
    std::string suffix;
    for (auto& track : tracks_.tracks())
        if (track.bodySID == container.bodySID) {
            tracks.push_back(&track);
            suffix = track.kind() == 'v' ? track.form.suffix : suffix;
        }
    if (tracks.empty() && !unit.package.elements.empty())
        return; // none is chosen
    auto const wanted = options_.range.wanted(info_, reader, suffix);
    requireUnits(reader, wanted, isClip);
    for (auto* const track : tracks)
        track->wanted = wanted;
    if (isClip)
        std::erase_if(tracks, [&](ExtractTrack* track) {
            bool const isByUnits = track->form.shape == EssenceForm::Shape::Frames;
            if (!isByUnits)
                pumps_.push_back(makeClipPump(input, container, *track, gatherer));
            return !isByUnits;
        });
    if (!isClip || !tracks.empty()) {
        bool const isAll = !isClip && tracks.size() == unit.package.elements.size();
        pumps_.push_back(makeUnitPump(input, container, tracks_, wanted,
                                      isAll ? std::vector<ExtractTrack*>() : tracks, gatherer));
    }
}

/// False at the end of the pump, also when what it reads is at fault: its files then stay parts.
bool Extraction::step(ExtractPump& pump) {
    InterruptionGuard::check();
    try {
        return pump.step();
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& fault) {
        note(fault);
    }
    for (auto& track : tracks_.tracks())
        if (pump.serves(track) || options_.tracks.mix)
            abandon(track);
    return false;
}

/// One after the other, or by turns where several go into one file.
void Extraction::pumpAll(std::uint64_t size) {
    Progress progress("extracting", size);
    std::vector<ExtractPump*> active;
    for (auto const& pump : pumps_)
        active.push_back(pump.get());
    while (!active.empty()) {
        std::size_t const turns = options_.tracks.mix ? active.size() : 1;
        for (std::size_t i = 0; i < turns; ++i) {
            progress.update(active[i]->place());
            if (step(*active[i]))
                continue;
            if (auto const text = active[i]->shortfall(); !text.empty())
                result_.early.push_back(text);
            active[i] = nullptr;
        }
        std::erase(active, nullptr);
    }
}

void Extraction::writeDocuments() {
    for (auto& document : result_.documents) {
        InterruptionGuard::check();
        OutputFile file(options_.tracks.toStandardOutput ? OutputFile::standardOutput : document.file,
                        options_.tracks.output);
        try {
            writeDocument(document, file);
            file.complete();
            options_.whenComplete(file);
        } catch (Exceptions::SystemError const&) {
            result_.parts.push_back(file.partName());
            throw;
        } catch (Exceptions::BaseException const& fault) {
            file.abandon();
            result_.parts.push_back(file.partName());
            note(fault);
        }
    }
}

void Extraction::run(Input& input) {
    InterruptionGuard const guard;
    findContainers(input);
    auto const gatherer = std::make_shared<MXFIO::IndexTableGatherer>(input.reader);
    for (auto const& container : containers_) {
        if (!tracks_.wants(container))
            continue;
        try {
            prepare(input, container, gatherer);
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::InvalidValue const& refusal) {
            throw CannotExtract(refusal.message());
        } catch (Exceptions::InvalidFormat const& refusal) {
            throw CannotExtract(refusal.message());
        } catch (Exceptions::BaseException const& fault) {
            note(fault);
        }
    }
    checkChoices();
    openNew(pumps_.size() == 1 ? pumps_.front()->length() : std::nullopt);
    if (options_.listOnly)
        return;
    pumpAll(input.source.size());
    complete();
    writeDocuments();
}

// From a source that cannot seek.

/// Opens the files of tracks that come for the first time.
void Extraction::meetInSequence(EssenceUnit const& unit,
                                Templates::vector<MXFIO::EssenceContainer> const& known) {
    bool const isKnown =
        std::all_of(unit.package.elements.begin(), unit.package.elements.end(),
                    [&](auto const& each) { return tracks_.knows(unit.bodySID, each.elementKey()); });
    if (isKnown)
        return;
    auto const found = std::find_if(known.begin(), known.end(),
                                    [&](auto const& each) { return each.bodySID == unit.bodySID; });
    if (found != known.end())
        containers_.push_back(*found);
    auto const* const container = found != known.end() ? &containers_.back() : nullptr;
    std::size_t const before = tracks_.tracks().size();
    tracks_.meet(unit, container);
    WantedUnits wanted;
    if (container != nullptr && !options_.range.isAll())
        wanted.pictures = wanted.others = options_.range.units(info_, container->editRate());
    for (std::size_t i = before; i < tracks_.tracks().size(); ++i)
        tracks_.tracks()[i].wanted = wanted;
    if (options_.tracks.toStandardOutput && tracks_.tracks().size() > 1)
        checkChoices();
    openNew(std::nullopt);
}

/// True when no track wants edit unit `position` or one behind it.
bool Extraction::isBehindRange(std::int64_t position) const {
    auto const& tracks = tracks_.tracks();
    return !options_.range.isAll() && std::all_of(tracks.begin(), tracks.end(), [&](auto const& each) {
        return each.wanted.last() <= position;
    });
}

void Extraction::run(DataIO::DataSource& source, SharedDictionary const& dictionary) {
    InterruptionGuard const guard;
    MXFIO::EssenceOptions options;
    if (options_.range.isAll())
        options.editRate = coarseRate;
    MXFIO::SequentialReader reader(source, dictionary, searchLimit, options);
    EssenceUnit unit;
    bool isNamed = false, isEnough = false, continues = false;
    try {
        while (!isEnough && reader.next(unit)) {
            InterruptionGuard::check();
            if (!isNamed && reader.metadata()) {
                gatherPackages(*reader.metadata(), info_);
                tracks_.name(reader.containers());
            }
            isNamed = true;
            meetInSequence(unit, reader.containers());
            giveUnit(unit, tracks_, nullptr, continues);
            continues = unit.isContinued;
            auto const& tracks = tracks_.tracks();
            isEnough = options_.listOnly || (!options_.range.isAll() && reader.containers().size() <= 1 &&
                                             std::all_of(tracks.begin(), tracks.end(), [&](auto const& each) {
                                                 return each.wanted.last() <= unit.position + 1;
                                             }));
        }
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& fault) {
        if (!isNamed)
            throw;
        note(fault);
        abandon();
    }
    checkChoices();
    auto const& tracks = tracks_.tracks();
    if (!options_.listOnly && !options_.range.isAll() &&
        std::all_of(tracks.begin(), tracks.end(), [](auto const& each) { return each.units == 0; }))
        result_.early.push_back("the essence has no edit unit in the range");
    auto const* const last = reader.partitionPack();
    bool const isWhole = last != nullptr && last->partitionKind() == Packs::PartitionPack::Footer;
    if (!isEnough && !isWhole)
        result_.early.push_back("the file ends early, without a footer partition");
    complete();
}

} // namespace Zelm
