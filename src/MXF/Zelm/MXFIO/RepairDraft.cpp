#include "MXF/Zelm/MXFIO/RepairDraft.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/ClipUnits.h"
#include "MXF/Zelm/MXFIO/WrittenBytes.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"
#include "MXF/Zelm/Utils/Align.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using GenericContainer::Wrapping;
using Packs::PartitionPack;

namespace {

/// The largest KLV alignment grid (SMPTE 377M).
constexpr std::uint64_t largestGrid = 1 << 20;

std::string hexOf(std::uint64_t offset) { return "0x" + ByteCoders::toHexadecimal(offset); }

std::uint32_t gridOf(WalkedPartition const& partition) {
    auto const grid = partition.pack.get(PackFields::kagSize);
    return grid >= 1 && grid <= largestGrid ? static_cast<std::uint32_t>(grid) : 1;
}

Bytes fillOf(std::uint64_t size) {
    if (size == 0)
        return {};
    Bytes fill = fillHeader(KLV::fillItemKey(), size);
    fill.resize(static_cast<std::size_t>(size));
    return fill;
}

void append(Bytes& bytes, Bytes const& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

[[noreturn]] void cannotRepair(std::uint64_t offset, std::string const& what) {
    throw Exceptions::at(offset, Exceptions::InvalidStructure(what));
}

bool isEmpty(WalkedPartition const& partition) {
    return !partition.hasMetadata && !partition.hasIndex && !partition.hasBody;
}

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
      kept_(walk.partitions()),
      view_(source, walk.fileSize()),
      metadata_(&metadata) {
    chooseKept(withoutFooter);
    checkPacks();
    if (!metadata.edited)
        loadMetadata(metadata);
    essence_ = essenceContainers(metadata.edited);
    dropFirstPackage();
    repairClip();
    dropEmptyPartitions();
    checkTail();
    padToGrid();
    measure(progress);
    needsFooter_ = !isFinished_ || !indices_.empty() || !fitsEverywhere();
    checkRandomIndex();
    checkFooterOffsets();
}

void RepairDraft::find(Code code, std::optional<std::uint64_t> offset, std::string message) {
    findings_.push_back({code, offset, std::move(message)});
}

// What is kept.

void RepairDraft::chooseKept(bool withoutFooter) {
    auto const& header = kept_.front();
    if (!header.hasMetadata)
        cannotRepair(header.leadEnd,
                     "The file cannot be repaired: it has no header metadata, which would say "
                     "what the essence is");
    if (header.pack.get(PackFields::headerByteCount) > header.end - header.leadEnd && kept_.size() == 1 &&
        !header.hasIndex && !header.hasBody)
        cannotRepair(header.leadEnd, "The file cannot be repaired: it ends amid the header metadata");
    keptEnd_ = walk_.randomIndex() ? walk_.randomIndex()->offset : walk_.packageEnd();
    auto const drop = [&] {
        keptEnd_ = std::min(keptEnd_, kept_.back().offset);
        kept_.pop_back();
    };
    while (kept_.size() > 1 &&
           (kept_.back().offset >= keptEnd_ || (kept_.back().isTorn && !kept_.back().hasBody)))
        drop();
    wasFinished_ = isFinished_ = kept_.size() > 1 && kept_.back().pack.isFooter();
    if (withoutFooter && isFinished_) {
        drop();
        isFinished_ = false;
    } else if (isFinished_ && !walk_.randomIndex()) {
        keptEnd_ = std::min(keptEnd_, std::max(kept_.back().indexEnd, kept_.back().contentEnd));
    }
    kept_.back().end = std::min(kept_.back().end, keptEnd_);
}

/// Of a file that was cut off behind a pack.
void RepairDraft::dropEmptyPartitions() {
    for (; kept_.size() > 1 && !isFinished_ && isEmpty(kept_.back()); kept_.pop_back())
        keptEnd_ = kept_.back().offset;
}

void RepairDraft::checkTail() {
    std::uint64_t const end = walk_.randomIndex() && keptEnd_ == walk_.randomIndex()->offset
                                  ? keptEnd_ + walk_.randomIndex()->length
                                  : keptEnd_;
    if (end < walk_.fileSize())
        find(Code::TornTail, end,
             std::to_string(walk_.fileSize() - end) +
                 (isFinished_ ? " bytes at the end of the file belong to no partition"
                              : " bytes at the end of the file make no whole packet or content package"));
    if (!isFinished_)
        find(Code::NoFooter, std::nullopt,
             kept_.size() < walk_.partitions().size() && walk_.partitions().back().pack.isFooter()
                 ? "the footer partition is cut off"
                 : "there is no footer partition");
}

// Packs.

void RepairDraft::put(std::size_t index, PackFields::Field field, std::uint64_t value) {
    auto& pack = kept_[index].pack;
    if (pack.get(field) == value)
        return;
    pack.set(field, value);
    view_.patch(kept_[index].offset, pack.bytes());
}

/// Where the body of a partition begins in its stream: behind those before it, or where the pack says when it
/// leaves out no more than the fill at the end of the body before.
std::uint64_t RepairDraft::bodyOffsetOf(std::size_t index,
                                        std::map<std::uint32_t, std::uint64_t>& streams) const {
    auto const& partition = kept_[index];
    auto const sid = partition.pack.sid(PackFields::bodySID);
    std::uint64_t const said = partition.pack.get(PackFields::bodyOffset);
    if (sid == 0 || partition.pack.isGenericStream())
        return said;
    std::uint64_t offset = streams[sid];
    for (std::size_t i = index; i-- > 0;)
        if (kept_[i].pack.sid(PackFields::bodySID) == sid) {
            auto const& before = kept_[i];
            std::uint64_t const fill = before.end - std::max(before.contentEnd, before.indexEnd);
            if (said < offset && offset - said <= fill)
                offset = said;
            break;
        }
    streams[sid] = offset + (partition.end - std::min(partition.end, partition.indexEnd));
    return offset;
}

void RepairDraft::checkPacks() {
    std::map<std::uint32_t, std::uint64_t> streams;
    for (std::size_t i = 0; i < kept_.size(); ++i)
        checkPack(i, bodyOffsetOf(i, streams));
}

void RepairDraft::checkPack(std::size_t index, std::uint64_t bodyOffset) {
    auto const& partition = kept_[index];
    auto const check = [&](PackFields::Field field, std::uint64_t value, const char* name, Code code) {
        std::uint64_t const said = partition.pack.get(field);
        if (said == value)
            return;
        bool const isCount = code == Code::WrongByteCount;
        find(code, partition.offset,
             std::string(name) + " is " + (isCount ? std::to_string(said) : hexOf(said)) + " instead of " +
                 (isCount ? std::to_string(value) : hexOf(value)));
        put(index, field, value);
    };
    check(PackFields::thisPartition, relative(partition.offset), "ThisPartition", Code::WrongOffset);
    check(PackFields::previousPartition, index == 0 ? 0 : relative(kept_[index - 1].offset),
          "PreviousPartition", Code::WrongOffset);
    check(PackFields::headerByteCount, partition.headerByteCount(), "HeaderByteCount", Code::WrongByteCount);
    check(PackFields::indexByteCount, partition.indexByteCount(), "IndexByteCount", Code::WrongByteCount);
    check(PackFields::bodyOffset, bodyOffset, "BodyOffset", Code::WrongOffset);
}

// Metadata.

void RepairDraft::loadMetadata(RepairMetadata& metadata) {
    auto const last = std::find_if(kept_.rbegin(), kept_.rend(),
                                   [](WalkedPartition const& partition) { return partition.hasMetadata; });
    auto const& chosen = kept_.front().pack.isOpen() ? *last : kept_.front();
    for (auto* const loaded : {&metadata.edited, &metadata.original}) {
        Reader2 reader(view_, dictionary_, searchLimit_);
        reader.headerPartition();
        auto* const partition = reader.partitionAtOffset(relative(chosen.offset));
        if (partition == nullptr || partition->partitionAbsoluteOffset() != chosen.offset)
            cannotRepair(chosen.offset, "The file cannot be repaired: its header metadata cannot be read");
        *loaded = partition->metadata();
    }
    metadata.area.emplace(view_, chosen.leadEnd, chosen.headerByteCount());
}

/// The container whose essence stands last; null when it is not known.
EssenceContainer const* RepairDraft::lastContainer() const {
    auto const sid = kept_.back().pack.sid(PackFields::bodySID);
    auto const found = std::find_if(essence_.begin(), essence_.end(),
                                    [&](EssenceContainer const& known) { return known.bodySID == sid; });
    return found != essence_.end() ? &*found : nullptr;
}

/// A first content package has no other to be held against: it lacks elements when there are more tracks.
void RepairDraft::dropFirstPackage() {
    auto const only = walk_.onlyPackage();
    auto const* const container = lastContainer();
    if (isFinished_ || !only || container == nullptr || container->wrapping() == Wrapping::Clip ||
        only->elements >= container->tracks.size() || only->start < kept_.back().offset)
        return;
    keptEnd_ = kept_.back().end = kept_.back().contentEnd = only->start;
    kept_.back().hasBody = false;
}

// Clips.

/// By the label, or by what the only element shows where the label tells nothing or of edit units, as some
/// writers have it: its length was to be set at the end, its key is that of a clip (SMPTE 379M), or it holds
/// several edit units.
bool RepairDraft::isClip(PacketHead const& cut, EssenceContainer const& container) {
    using GenericContainer::ElementKey;
    ElementKey const key(cut.key);
    if (container.wrapping() == Wrapping::Clip)
        return true;
    if (!walk_.isCutFirst())
        return false;
    constexpr unsigned char clipOfPictures = 0x06, clipOfWave = 0x02, clipOfAES3 = 0x04;
    bool const isPicture = key.itemType() == ElementKey::Picture;
    bool const hasClipKey = isPicture
                                ? key.elementType() == clipOfPictures
                                : key.itemType() == ElementKey::Sound &&
                                      (key.elementType() == clipOfWave || key.elementType() == clipOfAES3);
    auto const* const track = container.trackByNumber(key.trackNumber());
    SampleGrid const grid =
        track != nullptr ? SampleGrid(track->samples, container.editRate()) : SampleGrid();
    if (grid.isKnown())
        return cut.length == 0 || hasClipKey || cut.length >= grid.offset(2);
    std::uint64_t const value = cut.fileOffset + cut.headLength;
    return cut.length == 0 || hasClipKey || repeatedUnitSize(source_, value, walk_.fileSize() - value) != 0;
}

/// A clip that was not finished gets the bytes that there are, whole edit units or samples where their size
/// is known.
void RepairDraft::repairClip() {
    auto const& cut = walk_.cutPacket();
    auto const* const container = lastContainer();
    if (!cut || isFinished_ || container == nullptr || cut->fileOffset != walk_.wholeEnd() ||
        !GenericContainer::ElementKey::isContent(cut->key))
        return;
    if (!isClip(*cut, *container))
        return;
    std::uint64_t const value = cut->fileOffset + cut->headLength;
    std::uint64_t length = walk_.fileSize() - value;
    auto const* const track = container->trackByNumber(GenericContainer::ElementKey(cut->key).trackNumber());
    if (track != nullptr)
        clip_ = clipUnitSize(*track, cut->length);
    if (clip_.bytes == 0)
        clip_ = {repeatedUnitSize(source_, value, length), container->editRate()};
    std::uint64_t const grain =
        track != nullptr && track->samples.bytes != 0 ? track->samples.bytes : clip_.bytes;
    length -= grain != 0 ? length % grain : 0;
    if (length == 0)
        return;
    // What is labelled as edit units and holds only one is one.
    if (container->wrapping() != Wrapping::Frame || clip_.bytes == 0 || length / clip_.bytes > 1)
        clipSID_ = container->bodySID;
    find(Code::ClipLength, cut->fileOffset,
         "the length of the clip is " + std::to_string(cut->length) + ", the file has " +
             std::to_string(length) + " bytes of it");
    if (!setClipLength(*cut, length))
        cannotRepair(cut->fileOffset, "The file cannot be repaired: the length field of the clip has no room "
                                      "for " +
                                          std::to_string(length) + " bytes");
    keptEnd_ = value + length;
    kept_.back().end = kept_.back().contentEnd = keptEnd_;
    kept_.back().hasBody = true;
}

bool RepairDraft::setClipLength(PacketHead const& head, std::uint64_t length) {
    auto const size = static_cast<unsigned char>(head.headLength - KLV::Key::size());
    if (size < ByteCoders::calculateBERSize(length))
        return false;
    Bytes field(size);
    ByteCoders::codeBER(length, size, field.data());
    view_.patch(head.fileOffset + KLV::Key::size(), std::move(field));
    return true;
}

/// Fill that was cut off behind the last element, where content packages stand on the grid.
void RepairDraft::padToGrid() {
    auto const& last = kept_.back();
    auto const start = walk_.lastPackage();
    std::uint32_t const grid = gridOf(last);
    if (isFinished_ || grid == 1 || !start || *start < last.offset || (*start - last.offset) % grid != 0)
        return;
    padding_ = fillOf(Utils::alignBytes(grid, keptEnd_ - last.offset, smallestWrittenFill));
}

// Essence.

void RepairDraft::measure(FileWalk::Progress const& progress) {
    Bytes end = padding_;
    append(end, randomIndex({}));
    std::uint64_t const header = kept_.front().pack.get(PackFields::footerPartition);
    put(0, PackFields::footerPartition, isFinished_ ? relative(kept_.back().offset) : 0);
    view_.finish(keptEnd_, std::move(end));
    Reader2 reader(view_, dictionary_, searchLimit_);
    Templates::vector<ContainerUnits> units;
    for (auto const& container : essence_) {
        bool const isClip = container.bodySID == clipSID_;
        ContainerMeasurer measurer(reader, container, !wasFinished_, isClip ? &clip_ : nullptr);
        auto measured = measurer.measure(progress);
        bool const isHere = measured.units && (*measured.units != 0 || !wasFinished_);
        if (isHere)
            units.push_back({&container, *measured.units});
        judge(container, std::move(measured));
    }
    kept_.front().pack.set(PackFields::footerPartition, header);
    view_.patch(kept_.front().offset, kept_.front().pack.bytes());
    setDurations(*metadata_->edited, essence_, units,
                 wasFinished_ ? DurationRule::UnknownOrBeyond : DurationRule::All);
    changes_ = compareMetadata(*metadata_->original, *metadata_->edited);
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
            (partition.pack.isFooter() && isFinished_) || size < smallestFill)
            continue;
        view_.patch(partition.metadataEnd, fillHeader(KLV::fillItemKey(), size));
        if (partition.hasMetadata)
            put(i, PackFields::headerByteCount, partition.headerByteCount() + size);
        put(i, PackFields::indexByteCount, 0);
        put(i, PackFields::indexSID, 0);
        partition.hasIndex = false;
    }
}

// The end of the file.

/// Whether a random index pack lists the partitions that are kept; its length field may have any size.
bool RepairDraft::isRight(Bytes const& found) const {
    Bytes const right = randomIndex({});
    std::uint64_t const head = KLV::Key::size() + ByteCoders::decodeBERSize(right[KLV::Key::size()]);
    std::uint64_t const value = right.size() - head - sizeof(std::uint32_t);
    std::uint64_t const foundHead = KLV::Key::size() + ByteCoders::decodeBERSize(found[KLV::Key::size()]);
    return found.size() - foundHead == right.size() - head &&
           std::equal(right.begin() + static_cast<std::ptrdiff_t>(head), right.end() - 4,
                      found.begin() + static_cast<std::ptrdiff_t>(foundHead)) &&
           ByteCoders::decodeInteger<std::uint32_t>(&found[static_cast<std::size_t>(foundHead + value)]) ==
               found.size();
}

void RepairDraft::checkRandomIndex() {
    auto const& found = walk_.randomIndex();
    bool const isThere = found && isFinished_ && found->offset == keptEnd_;
    needsRandomIndex_ = needsFooter_ || !isThere || found->offset + found->length != walk_.fileSize() ||
                        !isRight(readBytes(source_, found->offset, found->length));
    if (!needsRandomIndex_)
        keptEnd_ = walk_.fileSize();
    if (!found)
        find(Code::NoRandomIndex, std::nullopt, "there is no random index pack");
    else if (isThere && !needsFooter_ && needsRandomIndex_)
        find(Code::WrongRandomIndex, found->offset,
             "the random index pack does not list the partitions as they stand");
}

/// Of a finished file: open partitions may leave it open where the footer is.
void RepairDraft::checkFooterOffsets() {
    for (auto const& partition : kept_) {
        std::uint64_t const said = partition.pack.get(PackFields::footerPartition);
        bool const mayBeOpen =
            said == 0 && (!isFinished_ || partition.pack.isOpen() || partition.pack.isGenericStream());
        bool const isRight = isFinished_ && said == relative(kept_.back().offset);
        if (!mayBeOpen && !isRight)
            find(Code::WrongOffset, partition.offset,
                 "FooterPartition is " + hexOf(said) +
                     (isFinished_ ? " instead of " + hexOf(relative(kept_.back().offset))
                                  : ", where no footer partition is"));
    }
}

bool RepairDraft::hasSameMetadata(WalkedPartition const& partition) const {
    auto const& area = *metadata_->area;
    return partition.hasMetadata && partition.headerByteCount() >= area.content().size() &&
           readBytes(source_, partition.leadEnd, area.content().size()) == area.content();
}

/// Whether the changed metadata can stand where it stood, in a partition that readers go by.
bool RepairDraft::fitsEverywhere() const {
    if (changes_.empty())
        return true;
    auto const& area = *metadata_->area;
    auto const content = area.contentFor(*metadata_->edited, *metadata_->original);
    return area.whyNot(area.fitted(content).size()).empty();
}

void RepairDraft::putMetadata(WalkedPartition const& partition) {
    MetadataArea const area(view_, partition.leadEnd, partition.headerByteCount());
    auto const fitted = area.fitted(metadata_->area->contentFor(*metadata_->edited, *metadata_->original));
    if (area.whyNot(fitted.size()).empty())
        view_.patch(partition.leadEnd, area.image(fitted, area.fillKey().value_or(KLV::fillItemKey())));
}

void RepairDraft::close(std::size_t index) {
    auto& partition = kept_[index];
    if (partition.pack.isGenericStream() || partition.pack.isFooter())
        return;
    partition.pack.status(status_);
    view_.patch(partition.offset, partition.pack.bytes());
}

PatchedSource& RepairDraft::complete(std::uint64_t least) {
    if (findings_.empty())
        return view_;
    metadata_->edited->generateLocalTags();
    Templates::vector<Metadata::Element*> unknown;
    metadata_->edited->openElements(unknown);
    metadata_->edited->incompleteElements(unknown);
    status_ = unknown.empty() ? PartitionPack::ClosedComplete : PartitionPack::ClosedIncomplete;
    format_ = format();
    footerOffset_ = relative(kept_.back().offset);
    auto tail = makeTail(least);
    bool const fits = fitsEverywhere();
    for (std::size_t i = 0; i < kept_.size(); ++i) {
        bool const isSame = hasSameMetadata(kept_[i]);
        if (isSame && fits && !changes_.empty())
            putMetadata(kept_[i]);
        if (needsFooter_ && (!kept_[i].hasMetadata || (isSame && fits)))
            close(i);
        put(i, PackFields::footerPartition, footerOffset_);
    }
    view_.finish(keptEnd_, std::move(tail));
    return view_;
}

// What is made.

PartitionFormat RepairDraft::format() {
    Reader2 reader(view_, dictionary_, searchLimit_);
    auto const& pack = reader.headerPartition()->partitionPack();
    PartitionFormat format{.majorVersion = pack.majorVersion(),
                           .minorVersion = pack.minorVersion(),
                           .kagSize = gridOf(kept_.front()),
                           .operationalPattern = pack.operationalPattern()};
    for (std::size_t i = 0; i < pack.essenceContainers().count(); ++i)
        format.essenceContainers.push_back(pack.essenceContainers().at<Types::UniversalLabel>(i));
    return format;
}

/// A body partition for each index table but the last, and the footer.
std::size_t RepairDraft::newPartitions() const { return std::max<std::size_t>(indices_.size(), 1); }

/// `offsets` are those of all new partitions.
RepairDraft::NewPartition RepairDraft::newPartition(std::size_t number, Offsets const& offsets) {
    bool const isFooter = number + 1 == newPartitions();
    CommonPartitionWriter writer(format_, isFooter ? PartitionPack::Footer : PartitionPack::Body, status_);
    if (isFooter)
        writer.metadata(*metadata_->edited, 0);
    if (number < indices_.size())
        writer.index(indices_[number].indexSID, indices_[number].segments);
    writer.place(offsets[number], number == 0 ? relative(kept_.back().offset) : offsets[number - 1]);
    writer.footerPartition(offsets.back());
    NewPartition made;
    for (DataIO::Chain chain; writer.next(chain);)
        for (auto const& slice : chain)
            made.bytes.insert(made.bytes.end(), slice.data(), slice.data() + slice.size());
    made.packSize = writer.partitionPack().serializedSize();
    made.leadSize = writer.leadLength();
    return made;
}

/// Twice, since the packs say where the partitions stand, and their sizes where that is.
Bytes RepairDraft::makePartitions(std::uint64_t least) {
    Offsets offsets(newPartitions());
    std::vector<NewPartition> made;
    std::uint64_t size = padding_.size() + randomIndex(offsets).size(), lead = 0;
    for (int round = 0; round < 2; ++round) {
        made.clear();
        for (std::size_t i = 0; i < offsets.size(); ++i)
            made.push_back(newPartition(i, offsets));
        auto const& first = made.front();
        if (round == 0) {
            for (auto const& partition : made)
                size += partition.bytes.size();
            lead = least <= size
                       ? first.leadSize
                       : areaSizeFor(first.packSize, first.leadSize - first.packSize + (least - size),
                                     first.leadSize, format_.kagSize);
        }
        std::uint64_t at = relative(keptEnd_) + padding_.size();
        for (std::size_t i = 0; i < offsets.size(); ++i) {
            offsets[i] = at;
            at += made[i].bytes.size() + (i == 0 ? lead - first.leadSize : 0);
        }
    }
    Bytes all = padding_;
    for (auto const& partition : made) {
        bool const isFirst = &partition == &made.front();
        auto const place = [&](std::uint64_t at) {
            return partition.bytes.begin() + static_cast<std::ptrdiff_t>(at);
        };
        all.insert(all.end(), place(0), place(partition.packSize));
        append(all, fillOf((isFirst ? lead : partition.leadSize) - partition.packSize));
        all.insert(all.end(), place(partition.leadSize), partition.bytes.end());
    }
    footerOffset_ = offsets.back();
    append(all, randomIndex(offsets));
    return all;
}

Bytes RepairDraft::makeTail(std::uint64_t least) {
    if (needsFooter_)
        return makePartitions(least);
    if (!needsRandomIndex_)
        return {};
    Bytes const pack = randomIndex({});
    Bytes tail = fillOf(least > pack.size() ? std::max(least - pack.size(), smallestFill) : 0);
    append(tail, pack);
    return tail;
}

Bytes RepairDraft::randomIndex(Offsets const& fresh) const {
    Packs::RandomIndexPack pack;
    for (auto const& partition : kept_)
        pack.add(partition.pack.sid(PackFields::bodySID), relative(partition.offset));
    // Offsets that are not known yet stand for themselves: the pack has an entry for each.
    std::uint64_t unknown = UINT64_MAX;
    for (auto const offset : fresh)
        pack.add(0, offset != 0 ? offset : unknown--);
    return bytesOf(pack);
}

} // namespace MXF::Zelm::MXFIO
