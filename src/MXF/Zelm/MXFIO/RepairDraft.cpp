#include "MXF/Zelm/MXFIO/RepairDraft.h"

#include "MXF/Zelm/MXFIO/CutClip.h"
#include "MXF/Zelm/MXFIO/NewPartitions.h"
#include "MXF/Zelm/MXFIO/WrittenBytes.h"
#include "MXF/Zelm/Utils/Align.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using GenericContainer::Wrapping;
using Packs::PartitionPack;

namespace {

/// The largest KLV alignment grid (SMPTE 377M).
constexpr std::uint64_t largestGrid = 1 << 20;

std::uint32_t gridOf(WalkedPartition const& partition) {
    auto const grid = partition.pack.get(PackFields::kagSize);
    return grid >= 1 && grid <= largestGrid ? static_cast<std::uint32_t>(grid) : 1;
}

void append(Bytes& bytes, Bytes const& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

std::string unitsText(std::int64_t units) {
    return std::to_string(units) + (units == 1 ? " edit unit" : " edit units");
}

} // namespace

RepairDraft::RepairDraft(DataIO::RandomAccessDataSource& source, Reader::DictionaryPtr dictionary,
                         std::uint64_t searchLimit, FileWalk const& walk, bool withoutFooter,
                         RepairMetadata& metadata, FileWalk::Progress const& progress)
    : source_(source),
      dictionary_(std::move(dictionary)),
      searchLimit_(searchLimit),
      walk_(walk),
      view_(source, walk.fileSize()),
      kept_(walk, withoutFooter, view_, findings_),
      metadata_(metadata) {
    kept_.checkPacks();
    if (!metadata.edited)
        loadMetadata(metadata);
    essence_ = essenceContainers(metadata.edited);
    dropFirstPackage();
    repairClip();
    kept_.dropEmpty();
    kept_.checkTail();
    padToGrid();
    measure(progress);
    needsFooter_ = !kept_.isFinished() || !indices_.empty() || !fitsEverywhere();
    checkRandomIndex();
    kept_.checkFooterOffsets();
}

void RepairDraft::find(Code code, std::optional<std::uint64_t> offset, std::string message) {
    findings_.push_back({code, offset, std::move(message)});
}

// Metadata.

void RepairDraft::loadMetadata(RepairMetadata& metadata) {
    auto const last = std::find_if(kept_.all().rbegin(), kept_.all().rend(),
                                   [](WalkedPartition const& partition) { return partition.hasMetadata; });
    auto const& chosen = kept_.all().front().pack.isOpen() ? *last : kept_.all().front();
    for (auto* const loaded : {&metadata.edited, &metadata.original}) {
        Reader2 reader(view_, dictionary_, searchLimit_);
        reader.headerPartition();
        auto* const partition = reader.partitionAtOffset(kept_.relative(chosen.offset));
        if (partition == nullptr || partition->partitionAbsoluteOffset() != chosen.offset)
            cannotRepair(chosen.offset, "its header metadata cannot be read");
        *loaded = partition->metadata();
    }
    metadata.area.emplace(view_, chosen.leadEnd, chosen.headerByteCount());
}

/// The container whose essence stands last; null when it is not known.
EssenceContainer const* RepairDraft::lastContainer() const {
    auto const sid = kept_.last().pack.sid(PackFields::bodySID);
    auto const found = std::find_if(essence_.begin(), essence_.end(),
                                    [&](EssenceContainer const& known) { return known.bodySID == sid; });
    return found != essence_.end() ? &*found : nullptr;
}

/// A first content package has no other to be held against: it lacks elements when there are more tracks.
void RepairDraft::dropFirstPackage() {
    auto const only = walk_.onlyPackage();
    auto const* const container = lastContainer();
    if (kept_.isFinished() || !only || container == nullptr || container->wrapping() == Wrapping::Clip ||
        only->elements >= container->tracks.size() || only->start < kept_.last().offset)
        return;
    kept_.endAt(only->start, false);
}

void RepairDraft::repairClip() {
    auto const* const container = lastContainer();
    if (kept_.isFinished() || container == nullptr)
        return;
    cutClip_ = findCutClip(source_, walk_, *container);
    if (!cutClip_)
        return;
    auto const& head = cutClip_->head;
    std::uint64_t const length = cutClip_->length;
    cutSID_ = container->bodySID;
    find(Code::ClipLength, head.fileOffset,
         "the length of the clip is " + std::to_string(head.length) + ", the file has " +
             std::to_string(length) + " bytes of it");
    auto field = lengthField(head, length);
    if (!field)
        cannotRepair(head.fileOffset,
                     "the length field of the clip has no room for " + std::to_string(length) + " bytes");
    view_.patch(head.fileOffset + KLV::Key::size(), std::move(*field));
    kept_.endAt(head.fileOffset + head.headLength + length, true);
}

/// Fill that was cut off behind the last element, where content packages stand on the grid.
void RepairDraft::padToGrid() {
    auto const& last = kept_.last();
    auto const start = walk_.lastPackage();
    std::uint32_t const grid = gridOf(last);
    if (kept_.isFinished() || grid == 1 || !start || *start < last.offset ||
        (*start - last.offset) % grid != 0)
        return;
    padding_ = fillOf(Utils::alignBytes(grid, kept_.end() - last.offset, smallestWrittenFill));
}

// Essence.

void RepairDraft::measure(FileWalk::Progress const& progress) {
    Bytes end = padding_;
    append(end, kept_.randomIndex({}));
    std::uint64_t const said = kept_.all().front().pack.get(PackFields::footerPartition);
    kept_.put(0, PackFields::footerPartition, kept_.isFinished() ? kept_.relative(kept_.last().offset) : 0);
    view_.finish(kept_.end(), std::move(end));
    Reader2 reader(view_, dictionary_, searchLimit_);
    Templates::vector<ContainerUnits> units;
    for (auto const& container : essence_) {
        bool const isCut = cutClip_ && container.bodySID == cutSID_;
        ContainerMeasurer measurer(view_, reader, container, !kept_.wasFinished(),
                                   isCut ? &*cutClip_ : nullptr);
        auto measured = measurer.measure(progress);
        bool const isHere = measured.units && (*measured.units != 0 || !kept_.wasFinished());
        if (isHere)
            units.push_back({&container, *measured.units});
        judge(container, std::move(measured));
    }
    kept_.put(0, PackFields::footerPartition, said); // it is judged later
    setDurations(*metadata_.edited, essence_, units,
                 kept_.wasFinished() ? DurationRule::UnknownOrBeyond : DurationRule::All);
    changes_ = compareMetadata(*metadata_.original, *metadata_.edited);
    if (!changes_.empty())
        find(Code::Duration, std::nullopt,
             std::to_string(changes_.size()) + " durations in the header metadata are not known or not those "
                                               "of the essence");
}

void RepairDraft::judge(EssenceContainer const& container, MeasuredContainer measured) {
    using Index = MeasuredContainer::Index;
    std::string const name = "of BodySID " + std::to_string(container.bodySID);
    containers_.push_back(
        {container.bodySID, container.indexSID, measured.units, measured.good, measured.made});
    if (measured.index == Index::Missing)
        find(Code::NoIndex, std::nullopt, "there is no index table of the essence " + name);
    else if (measured.index == Index::Short)
        find(Code::ShortIndex, std::nullopt,
             "the index table " + name + " has " + unitsText(measured.good) + " of " +
                 std::to_string(measured.units.value_or(0)));
    else if (measured.index == Index::Wrong)
        find(Code::WrongIndex, std::nullopt, "the index table " + name + " does not fit the essence");
    if (measured.index == Index::Wrong)
        dropIndex(container.indexSID);
    if (!measured.segments.empty())
        indices_.push_back({container.indexSID, std::move(measured.segments)});
}

/// Makes index tables fill that belongs to the header metadata before it, or to the pack.
void RepairDraft::dropIndex(std::uint32_t indexSID) {
    for (std::size_t i = 0; i < kept_.size(); ++i) {
        auto& partition = kept_[i];
        std::uint64_t const size = partition.indexByteCount();
        if (!partition.hasIndex || partition.pack.sid(PackFields::indexSID) != indexSID ||
            (partition.pack.isFooter() && kept_.isFinished()) || size < smallestFill)
            continue;
        view_.patch(partition.metadataEnd, fillHeader(KLV::fillItemKey(), size));
        if (partition.hasMetadata)
            kept_.put(i, PackFields::headerByteCount, partition.headerByteCount() + size);
        kept_.put(i, PackFields::indexByteCount, 0);
        kept_.put(i, PackFields::indexSID, 0);
        partition.hasIndex = false;
    }
}

// The end of the file.

void RepairDraft::checkRandomIndex() {
    auto const& found = walk_.randomIndex();
    bool const isThere = found && kept_.isFinished() && found->offset == kept_.end();
    needsRandomIndex_ = needsFooter_ || !isThere || found->offset + found->length != walk_.fileSize() ||
                        !kept_.isRandomIndex(readBytes(source_, found->offset, found->length));
    if (!needsRandomIndex_)
        kept_.keepAll();
    if (!found)
        find(Code::NoRandomIndex, std::nullopt, "there is no random index pack");
    else if (isThere && !needsFooter_ && needsRandomIndex_)
        find(Code::WrongRandomIndex, found->offset,
             "the random index pack does not list the partitions as they stand");
}

bool RepairDraft::hasSameMetadata(WalkedPartition const& partition) const {
    auto const& area = *metadata_.area;
    return partition.hasMetadata && partition.headerByteCount() >= area.content().size() &&
           readBytes(source_, partition.leadEnd, area.content().size()) == area.content();
}

/// Whether the changed metadata can stand where it stood, in a partition that readers go by.
bool RepairDraft::fitsEverywhere() const {
    if (changes_.empty())
        return true;
    auto const& area = *metadata_.area;
    auto const content = area.contentFor(*metadata_.edited, *metadata_.original);
    return area.whyNot(area.fitted(content).size()).empty();
}

void RepairDraft::putMetadata(WalkedPartition const& partition) {
    MetadataArea const area(view_, partition.leadEnd, partition.headerByteCount());
    auto const fitted = area.fitted(metadata_.area->contentFor(*metadata_.edited, *metadata_.original));
    if (area.whyNot(fitted.size()).empty())
        view_.patch(partition.leadEnd, area.image(fitted, area.fillKey().value_or(KLV::fillItemKey())));
}

PatchedSource& RepairDraft::complete(std::uint64_t least) {
    if (findings_.empty())
        return view_;
    metadata_.edited->generateLocalTags();
    Templates::vector<Metadata::Element*> unknown;
    metadata_.edited->openElements(unknown);
    metadata_.edited->incompleteElements(unknown);
    status_ = unknown.empty() ? PartitionPack::ClosedComplete : PartitionPack::ClosedIncomplete;
    std::uint64_t footerOffset = kept_.relative(kept_.last().offset);
    auto tail = makeTail(least, footerOffset);
    bool const fits = fitsEverywhere();
    for (std::size_t i = 0; i < kept_.size(); ++i) {
        bool const isSame = hasSameMetadata(kept_[i]);
        if (isSame && fits && !changes_.empty())
            putMetadata(kept_[i]);
        if (needsFooter_ && (!kept_[i].hasMetadata || (isSame && fits)))
            kept_.close(i, status_);
        kept_.put(i, PackFields::footerPartition, footerOffset);
    }
    view_.finish(kept_.end(), std::move(tail));
    return view_;
}

// What is made.

PartitionFormat RepairDraft::format() {
    Reader2 reader(view_, dictionary_, searchLimit_);
    auto const& pack = reader.headerPartition()->partitionPack();
    PartitionFormat format{.majorVersion = pack.majorVersion(),
                           .minorVersion = pack.minorVersion(),
                           .kagSize = gridOf(kept_.all().front()),
                           .operationalPattern = pack.operationalPattern()};
    for (std::size_t i = 0; i < pack.essenceContainers().count(); ++i)
        format.essenceContainers.push_back(pack.essenceContainers().at<Types::UniversalLabel>(i));
    return format;
}

/// Tells where the footer is to stand if it is new.
Bytes RepairDraft::makeTail(std::uint64_t least, std::uint64_t& footerOffset) {
    if (needsFooter_) {
        NewPartitions partitions(kept_, indices_, padding_, format(), status_, *metadata_.edited);
        auto tail = partitions.make(least);
        footerOffset = partitions.footerOffset();
        return tail;
    }
    if (!needsRandomIndex_)
        return {};
    Bytes const pack = kept_.randomIndex({});
    Bytes tail = fillOf(least > pack.size() ? std::max(least - pack.size(), smallestFill) : 0);
    append(tail, pack);
    return tail;
}

} // namespace MXF::Zelm::MXFIO
