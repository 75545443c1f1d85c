#include "FrameList.h"

#include "FrameContainers.h"
#include "FrameMaker.h"
#include "MetadataChoice.h"
#include "PartitionSurvey.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/IndexTableGatherer.h>

#include <algorithm>
#include <set>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::Wrapping;
using MXFIO::EssenceReader;
using MXFIO::EssenceUnit;

namespace {

/// One container of a file, or one track of it.
class ContainerList {
public:
    ContainerList(EssenceReader& reader, FrameMaker const& maker, FramePrinter& printer)
        : reader_(reader), maker_(maker), printer_(printer) {}

    /// These are false when the essence ends early, within the range.
    bool inStoredOrder(UnitRange const& range);
    bool inDisplayOrder(UnitRange const& range);

private:
    bool isClip() { return reader_.wrapping() == Wrapping::Clip; }
    bool next(EssenceUnit& unit);
    bool isWhole();
    bool isShort(std::int64_t found);

    EssenceReader& reader_;
    FrameMaker const& maker_;
    FramePrinter& printer_;
    std::uint64_t end_ = 0; // behind the last edit unit in the stream, if it is frame wrapped
};

/// Does not ask for what can only be behind the end: without an index the reader would walk there again.
bool ContainerList::next(EssenceUnit& unit) {
    if (end_ >= reader_.stream().length() || !reader_.next(unit))
        return false;
    if (!isClip())
        end_ = reader_.stream().absoluteOffset();
    return true;
}

bool ContainerList::inStoredOrder(UnitRange const& range) {
    reader_.seek(std::max<std::int64_t>(range.first, 0));
    EssenceUnit unit;
    while (reader_.position() < range.last) {
        if (!next(unit))
            return isWhole();
        printer_.frame(maker_.make(unit));
    }
    return true;
}

bool ContainerList::inDisplayOrder(UnitRange const& range) {
    std::int64_t const end = reader_.end().value_or(0);
    bool isWhole = range.last <= end || !isShort(end);
    EssenceUnit unit;
    for (auto at = std::max<std::int64_t>(range.first, 0); at < std::min(range.last, end); ++at) {
        if (reader_.read(maker_.facts().stored(at), unit))
            printer_.frame(maker_.make(unit));
        else
            isWhole = false;
    }
    return isWhole;
}

/// At the end of the essence: whether all is there that should be.
bool ContainerList::isWhole() {
    if (isShort(reader_.position()))
        return false;
    auto& stream = reader_.stream();
    stream.seek(end_);
    while (auto const head = stream.nextCutPacket())
        if (isClip() ? head->end() > stream.length()
                     : end_ != 0 && GenericContainer::ElementKey::isContent(head->key))
            return false;
    return !stream.isOpenEnded() || stream.endOfStream();
}

/// Fewer edit units than the metadata or the index says. A clip need not be cut into edit units: its length
/// tells.
bool ContainerList::isShort(std::int64_t found) {
    if (reader_.stream().length() != 0 && isClip())
        return false;
    auto const* const index = reader_.seeker().index();
    std::int64_t const indexed = index != nullptr ? index->end().value_or(0) : 0;
    return found < std::max(declaredUnits(reader_.container()), indexed);
}

class FileList {
public:
    FileList(FrameRequest const& request, FramePrinter& printer)
        : request_(request), printer_(printer), input_(request.file, loadDictionary(request.dictionaries)) {}

    FrameListEnd list();

private:
    std::vector<EssenceContainer> containers();
    void listContainer(FoundTrack const& chosen, bool isOnly);
    void takeFault(Exceptions::BaseException const& failure);

    FrameRequest const& request_;
    FramePrinter& printer_;
    Input input_;
    std::shared_ptr<MXFIO::IndexTableGatherer> gatherer_ =
        std::make_shared<MXFIO::IndexTableGatherer>(input_.reader); // for all containers
    FileInfo info_;
    FrameListEnd end_;
};

FrameListEnd FileList::list() {
    auto const found = containers();
    auto const chosen = chooseFrames(found, request_.track);
    printer_.begin(request_.file);
    for (auto const& each : chosen)
        listContainer(each, chosen.size() == 1);
    printer_.end(end_);
    return end_;
}

void FileList::takeFault(Exceptions::BaseException const& failure) {
    if (dynamic_cast<Exceptions::SystemError const*>(&failure) != nullptr)
        throw;
    if (!end_.fault)
        end_.fault = Fault{failure.message(), failure.offset().value_or(0)};
}

/// Those of the metadata; of a file without, those whose essence is in its partitions.
std::vector<EssenceContainer> FileList::containers() {
    std::vector<EssenceContainer> found;
    try {
        auto const metadata = chooseFinal(input_, false).partition->metadata();
        info_ = packagesOf(metadata);
        found = MXFIO::essenceContainers(metadata);
    } catch (Exceptions::BaseException const& failure) {
        takeFault(failure);
    }
    if (!found.empty())
        return found;
    std::set<std::uint32_t> bodySIDs;
    for (auto const& partition : PartitionSurveyor(input_, false).survey().partitions)
        if (!partition.partition->isGenericStream() && partition.pack().bodySID() != 0)
            bodySIDs.insert(partition.pack().bodySID());
    for (std::uint32_t const bodySID : bodySIDs)
        found.emplace_back().bodySID = bodySID;
    return found;
}

void FileList::listContainer(FoundTrack const& chosen, bool isOnly) {
    UnitTimecodes const timecodes = FrameMaker(info_, *chosen.container, chosen.track, nullptr).timecodes();
    UnitRange const range = timecodes.units(request_.range);
    auto section = sectionOf(*chosen.container, isOnly);
    section.fileSize = input_.source.size();
    printer_.section(section);
    try {
        auto options = withoutValues(chosen.track);
        options.gatherer = gatherer_;
        EssenceReader reader(input_.reader, *chosen.container, options);
        FrameMaker const maker(info_, *chosen.container, chosen.track, &reader.seeker());
        ContainerList list(reader, maker, printer_);
        if (!(request_.display ? list.inDisplayOrder(range) : list.inStoredOrder(range)))
            end_.endsEarly = true;
    } catch (Exceptions::BaseException const& failure) {
        takeFault(failure);
    }
}

} // namespace

FrameListEnd listFrames(FrameRequest const& request, FramePrinter& printer) {
    return FileList(request, printer).list();
}

} // namespace Zelm
