#include "MXF/Zelm/MXFIO/PassThroughSource.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/SystemMetadataPack.h"
#include "MXF/Zelm/MXFIO/FutureUpdater.h"
#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Templates/SafeCast.h"
#include "MXF/Zelm/Utils/Align.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::MXFIO {

namespace {

using GenericContainer::ElementKey;
using GenericContainer::Wrapping;
using GenericContainer::Multiplexer::FrameIndexTableBuilder;
using IndexTables::IndexTableSegment;

/// Of a clip, what is handed out at once.
constexpr std::uint64_t clipPiece = std::uint64_t{1} << 20;

constexpr std::uint32_t smallestFill = 20;

/// Pictures are stored no farther from where they are shown than an Int8 tells.
constexpr std::int64_t farthestReorder = 256;

bool isPicture(ElementKey key) {
    return key.itemType() == ElementKey::Picture || key.itemType() == ElementKey::CPPicture ||
           key.itemType() == ElementKey::Compound;
}

/// What the first byte of a system metadata pack says of an item type (SMPTE 385M); 0 for none.
unsigned char packBit(ElementKey key) {
    switch (key.itemType()) {
    case ElementKey::Picture:
    case ElementKey::CPPicture:
        return 0x08;
    case ElementKey::Sound:
    case ElementKey::CPSound:
        return 0x04;
    case ElementKey::Data:
    case ElementKey::CPData:
        return 0x02;
    default:
        return 0;
    }
}

std::uint32_t gridOf(Reader2& reader, std::uint32_t bodySID) {
    for (auto* partition = reader.headerPartition(); partition != nullptr;
         partition = reader.nextPartition(partition))
        if (partition->partitionPack().bodySID() == bodySID)
            return std::max<std::uint32_t>(partition->partitionPack().kagSize(), 1);
    return 1;
}

/// Of whatever version.
bool isSystemPack(PacketHead const& head) {
    auto key = head.key;
    key[7] = GenericContainer::SystemMetadataPack::key()[7];
    return key == GenericContainer::SystemMetadataPack::key() &&
           head.length == GenericContainer::SystemMetadataPack::valueSize;
}

/// The label of the package's descriptor, else that of the first track.
Types::UniversalLabel labelOf(EssenceContainer const& container) {
    auto const* const whole =
        container.package != nullptr
            ? dynamic_cast<Metadata::Structural::FileDescriptor const*>(container.package->descriptor())
            : nullptr;
    if (whole != nullptr && whole->essenceContainer() != nullptr)
        return *whole->essenceContainer();
    for (auto const& track : container.tracks)
        if (track.descriptor != nullptr && track.descriptor->essenceContainer() != nullptr)
            return *track.descriptor->essenceContainer();
    return {};
}

/// Bytes of each edit unit where the table has one segment and no entries, else 0.
std::uint32_t constantSizeOf(IndexTables::IndexTable const* table) {
    if (table == nullptr || table->size() != 1)
        return 0;
    auto const* const bytes = table->begin()->second->editUnitByteCount();
    return bytes != nullptr ? bytes->value() : 0;
}

} // namespace

/// Puts the length of a clip right that was not handed out to its end.
class PassThroughSource::ClipLength : public FutureUpdater {
public:
    /// The value begins `value` bytes behind the start of the container.
    ClipLength(std::uint64_t value, unsigned char berLength, std::uint64_t length)
        : value_(value), berLength_(berLength), length_(length) {}

    /// Bytes of the value: of what is wanted, and, once it is handed out, of what was.
    std::uint64_t length() const { return std::min(length_, handedOut_); }
    void length(std::uint64_t bytes) { length_ = bytes; }
    void handedOut(std::uint64_t bytes) { handedOut_ += bytes; }

    /// The bytes before the value with the wanted length.
    DataIO::Chain applied(DataIO::Chain head) const {
        auto result = head.splitFront(value_ - berLength_);
        result.append(DataIO::Slice::adopt(coded(length_)));
        return result;
    }

    void written(std::uint64_t fileOffset) override { offset_ = fileOffset; }
    bool isRequired() const override { return false; }
    std::vector<FileUpdate> updates() override {
        if (handedOut_ >= length_)
            return {};
        return {{offset_ + value_ - berLength_, coded(handedOut_)}};
    }

private:
    std::vector<unsigned char> coded(std::uint64_t length) const {
        std::vector<unsigned char> bytes(berLength_);
        ByteCoders::codeBER(length, berLength_, bytes.data());
        return bytes;
    }

    std::uint64_t value_;
    unsigned char berLength_;
    std::uint64_t length_;
    std::uint64_t handedOut_ = 0;
    std::uint64_t offset_ = 0;
};

PassThroughSource::PassThroughSource(Reader2& reader, EssenceContainer container,
                                     PassThroughSourceOptions const& options)
    : options_(options),
      essence_(reader, std::move(container)),
      wrapping_(essence_.wrapping()),
      label_(labelOf(essence_.container())),
      packageRate_(essence_.container().editRate()),
      kagSize_(options.kagSize.value_or(gridOf(reader, essence_.container().bodySID))) {
    if (isClip() && (options_.kagSize || !options_.tracks.empty() || !options_.keepsSystemItem))
        throw Exceptions::InvalidStructure("A clip can only be handed out as it is");
    findLostItems();
    findIndex();
    findRange();
    findStart();
    if (!isClip())
        readAhead();
    makeBuilder();
}

PassThroughSource::~PassThroughSource() = default;

/// The file's own index when it covers the essence, else one made by a walk.
void PassThroughSource::findIndex() {
    auto& seeker = essence_.seeker();
    index_ = seeker.index();
    table_ = seeker.table();
    auto const end = isClip() ? std::nullopt : essence_.end();
    if (isClip() || (index_ != nullptr && index_->end().value_or(0) >= end.value_or(0) && seeker.index()))
        return;
    WalkedIndex walk(essence_.stream(), 0, 0, WalkedIndex::Learn::Pictures);
    walk.walk();
    walkedTable_ = walk.table(essence_.container().indexSID, packageRate_);
    walked_ = std::make_unique<IndexTables::EditUnitLocator>(
        *walkedTable_, IndexTables::EssenceExtent{essence_.stream().length()});
    table_ = walkedTable_.get();
    index_ = walked_.get();
}

void PassThroughSource::findRange() {
    auto const end = essence_.end().value_or(0);
    first_ = std::clamp<std::int64_t>(options_.first, 0, end);
    end_ = std::clamp<std::int64_t>(options_.end, first_, end);
    bool const isWhole = first_ == 0 && end_ == end;
    std::int64_t const shown = first_;
    if (!isWhole && !isClip() && index_ != nullptr && first_ < end_)
        findStored(first_, end_);
    preCharge_ = shown - first_;
    position_ = first_;
    isClipPart_ = isClip() && !isWhole;
}

/// Sound stands where it is heard; pictures may be stored before and behind.
void PassThroughSource::findStored(std::int64_t shownFirst, std::int64_t shownEnd) {
    if (auto const decoded = index_->decodingRange(shownFirst))
        first_ = std::min(first_, std::max<std::int64_t>(decoded->first, 0));
    auto const take = [&](std::int64_t shown) {
        if (auto const stored = index_->storedPosition(shown)) {
            first_ = std::min(first_, std::max<std::int64_t>(index_->keyFrame(*stored).value_or(*stored), 0));
            end_ = std::max(end_, *stored + 1);
        }
    };
    for (std::int64_t shown = shownFirst; shown < std::min(shownEnd, shownFirst + farthestReorder); ++shown)
        take(shown);
    for (std::int64_t shown = std::max(shownFirst, shownEnd - farthestReorder); shown < shownEnd; ++shown)
        take(shown);
}

void PassThroughSource::findStart() {
    if (isClip()) {
        openClip();
        return;
    }
    auto const start =
        first_ == 0 || first_ == end_ ? std::optional<std::uint64_t>(0) : essence_.seeker().find(first_);
    if (!start)
        throw Exceptions::InvalidStructure("Edit unit " + std::to_string(first_) + " cannot be found");
    essence_.stream().seek(*start);
}

/// What stands before the value is handed out as it is, but for the length of a part, or of a clip that is
/// cut off.
void PassThroughSource::openClip() {
    auto& stream = essence_.stream();
    auto const& tracks = essence_.container().tracks;
    bool const isSameRate = table_ != nullptr && table_->editRate() == packageRate_;
    clipUnit_ = isSameRate ? constantSizeOf(table_) : 0;
    if (clipUnit_ == 0 && tracks.size() == 1 && tracks.front().samples.rate == tracks.front().editRate)
        clipUnit_ = tracks.front().samples.bytes;
    stream.seek(0);
    auto head = stream.nextCutPacket();
    while (head && !ElementKey::isContent(head->key))
        head = stream.nextCutPacket();
    if (isClipPart_ && (!head || clipUnit_ == 0))
        throw Exceptions::InvalidStructure(
            "A part can only be taken of a clip whose edit units have one size");
    std::uint64_t const value = head ? head->streamOffset + head->headLength : 0;
    stream.seek(0);
    stream.read(value, clipHead_);
    clipBytes_ = stream.length() - value;
    if (!head)
        return;
    clipLength_ =
        std::make_shared<ClipLength>(value, static_cast<unsigned char>(head->headLength - KLV::Key::size()),
                                     std::min(head->length, clipBytes_));
    bool const isCutOff = head->length > clipBytes_;
    if (isClipPart_)
        clipBytes_ = std::min(clipBytes_, static_cast<std::uint64_t>(end_ - first_) * clipUnit_);
    else if (isCutOff && clipUnit_ != 0)
        clipBytes_ -= clipBytes_ % clipUnit_;
    if (!isClipPart_ && !isCutOff)
        return;
    clipLength_->length(clipBytes_);
    clipHead_ = clipLength_->applied(clipHead_);
    if (isClipPart_)
        stream.skip(static_cast<std::uint64_t>(first_) * clipUnit_);
}

bool PassThroughSource::isReorderedBy(IndexTableSegment const* segment) const {
    auto const* const deltas = segment != nullptr ? segment->deltaEntryArray() : nullptr;
    for (std::size_t i = 0; deltas != nullptr && i < deltas->size(); ++i)
        if (deltas->at(i).posTableIndex() == -1)
            return true;
    std::int64_t const end = std::min(end_, first_ + farthestReorder);
    for (std::int64_t unit = first_; index_ != nullptr && unit < end; ++unit)
        if (index_->displayPosition(unit).value_or(unit) != unit)
            return true;
    return false;
}

/// The elements are those of the first package; sizes are constant where the delta entries say so.
void PassThroughSource::makeBuilder() {
    if (isClip())
        return;
    layout_ = parts_;
    auto const* const segment =
        table_ != nullptr && table_->size() != 0 ? table_->begin()->second.get() : nullptr;
    auto const* const deltas = segment != nullptr ? segment->deltaEntryArray() : nullptr;
    bool const isKnown = options_.trustsSizes && deltas != nullptr && options_.tracks.empty() &&
                         deltas->size() == layout_.size();
    isReordered_ = isReorderedBy(segment);
    auto const picture =
        std::find_if(layout_.begin(), layout_.end(), [](Part const& p) { return isPicture(p.key); });
    auto const essence =
        std::find_if(layout_.begin(), layout_.end(), [](Part const& part) { return !part.key.isSystem(); });
    auto const ruling = picture != layout_.end() ? picture : essence;
    bool const isConstant = options_.trustsSizes && constantSizeOf(table_) != 0 && !isReordered_;
    for (std::size_t i = 0; i < layout_.size(); ++i) {
        bool const rules = layout_.begin() + static_cast<std::ptrdiff_t>(i) == ruling;
        bool const keepsSize = isConstant || (isKnown && i + 1 < layout_.size() &&
                                              deltas->at(i + 1).slice() == deltas->at(i).slice());
        elements_.push_back({keepsSize ? partSize(i) : 0, rules && isReordered_, rules});
    }
    if (isConstant && package_.size() <= std::numeric_limits<std::uint32_t>::max())
        packageSize_ = static_cast<std::uint32_t>(package_.size());
    builder_ = std::make_unique<FrameIndexTableBuilder>(packageRate_, elements_, false, packageSize_);
}

// Reading.

void PassThroughSource::readAhead() {
    if (!hasAhead_ && position_ < end_)
        hasAhead_ = readPackage();
}

bool PassThroughSource::readPackage() {
    package_.clear();
    parts_.clear();
    leavesOut_ = false;
    GenericContainer::PackageBoundary boundary;
    auto& stream = essence_.stream();
    while (auto const head = stream.peekPacket()) {
        if (ElementKey::isContent(head->key)) {
            ElementKey const key(head->key);
            if (boundary.startsNext(key))
                break;
            boundary.add(key);
        }
        take(*head);
    }
    return !boundary.empty();
}

PassThroughSourceOptions::TrackChange const* PassThroughSource::changeOf(ElementKey key) const {
    for (auto const& change : options_.tracks)
        if (key.isSameElement(ElementKey(change.trackNumber)))
            return &change;
    return nullptr;
}

bool PassThroughSource::isLeftOut(ElementKey key) const {
    auto const* const change = changeOf(key);
    return (change != nullptr && change->newNumber == 0) || (key.isSystem() && !options_.keepsSystemItem);
}

/// The kinds of tracks of which none is left.
void PassThroughSource::findLostItems() {
    unsigned char lost = 0, kept = 0;
    for (auto const& track : essence_.container().tracks) {
        ElementKey const key(track.trackNumber);
        (isLeftOut(key) ? lost : kept) |= packBit(key);
    }
    lostItems_ = static_cast<unsigned char>(lost & ~kept);
}

/// Fill belongs to what stands before it.
void PassThroughSource::take(PacketHead const& head) {
    if (KLV::isFillItem(head.key)) {
        if (options_.kagSize || leavesOut_)
            essence_.stream().seek(head.end());
        else
            append(head);
        return;
    }
    bool const isContent = ElementKey::isContent(head.key);
    ElementKey const key(head.key);
    leavesOut_ = isContent && isLeftOut(key);
    if (leavesOut_) {
        essence_.stream().seek(head.end());
        return;
    }
    if (isContent && !(key.isSystem() && !parts_.empty() && parts_.back().key.isSystem()))
        parts_.push_back({key, package_.size()});
    append(head);
}

void PassThroughSource::append(PacketHead const& head) {
    std::uint64_t const before = package_.size();
    auto const* const change = ElementKey::isContent(head.key) ? changeOf(ElementKey(head.key)) : nullptr;
    auto& stream = essence_.stream();
    std::uint64_t const size = head.headLength + head.length;
    std::uint64_t wanted = size;
    if (change != nullptr && change->newNumber != change->trackNumber) {
        KLV::Key key = head.key;
        for (int i = 0; i < 4; ++i)
            key[12 + i] = static_cast<unsigned char>(change->newNumber >> (24 - 8 * i));
        package_.append(DataIO::Slice::copyOf(key.rawBuffer(), KLV::Key::size()));
        stream.seek(head.streamOffset + KLV::Key::size());
        wanted -= KLV::Key::size();
    } else if (lostItems_ != 0 && isSystemPack(head)) {
        package_.append(changedPack(head));
        wanted = 0;
    }
    if (stream.read(wanted, package_) != wanted)
        throw Exceptions::at(head.fileOffset, Exceptions::InvalidLength("The source ends amid an element"));
    if (options_.kagSize)
        if (auto const fill = Utils::alignBytes(*options_.kagSize, package_.size() - before, smallestFill))
            padding_.appendFillItem(package_, fill);
}

/// The system metadata pack without the items that are lost.
DataIO::Slice PassThroughSource::changedPack(PacketHead const& head) {
    DataIO::Chain pack;
    if (essence_.stream().read(head.headLength + head.length, pack) != head.headLength + head.length)
        throw Exceptions::at(head.fileOffset, Exceptions::InvalidLength("The source ends amid an element"));
    std::vector<unsigned char> bytes(Templates::safeCast<std::size_t>(pack.size()));
    pack.copyTo(bytes.data(), bytes.size());
    bytes[head.headLength] = static_cast<unsigned char>(bytes[head.headLength] & ~lostItems_);
    return DataIO::Slice::adopt(std::move(bytes));
}

/// Up to the next part.
std::uint64_t PassThroughSource::partSize(std::size_t part) const {
    return (part + 1 < parts_.size() ? parts_[part + 1].offset : package_.size()) - parts_[part].offset;
}

// Handing out.

bool PassThroughSource::done() const { return isFinalized_ || (isClip() ? clipBytes_ == 0 : !hasAhead_); }

bool PassThroughSource::next(DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
                             Templates::Rational<std::int64_t>& position) {
    out.clear();
    updater.reset();
    mayStartPartition = isClip() ? !hasBegun_ : hasAhead_ && unitIndex().keyFrameOffset == 0;
    hasBegun_ = true;
    bool const isMore = doNextContentPackage(out, position);
    if (isMore && !isFinalized_)
        updater = std::exchange(pendingUpdater_, nullptr);
    return isMore;
}

bool PassThroughSource::doNextContentPackage(DataIO::Chain& out,
                                             Templates::Rational<std::int64_t>& position) {
    position = {(position_ - first_) * packageRate_.denominator, packageRate_.numerator};
    if (isClip())
        return nextOfClip(out, pendingUpdater_);
    if (!hasAhead_)
        return false;
    note();
    out = std::move(package_);
    hasAhead_ = false;
    streamOffset_ += out.size();
    ++position_;
    readAhead();
    return true;
}

bool PassThroughSource::nextOfClip(DataIO::Chain& out, FutureUpdaterPtr& updater) {
    if (!clipHead_.empty())
        updater = clipLength_;
    out = std::move(clipHead_);
    clipHead_.clear();
    std::uint64_t const piece =
        clipUnit_ != 0 ? std::max<std::uint64_t>(clipPiece / clipUnit_, 1) * clipUnit_ : clipPiece;
    std::uint64_t const wanted = std::min(piece, clipBytes_);
    std::uint64_t const before = out.size();
    if (essence_.stream().read(wanted, out) != wanted)
        throw Exceptions::InvalidLength("The source ends amid a clip");
    clipBytes_ -= out.size() - before;
    if (clipLength_)
        clipLength_->handedOut(out.size() - before);
    if (clipUnit_ != 0 && clipLength_)
        position_ =
            first_ + std::min(end_ - first_, static_cast<std::int64_t>(clipLength_->length() / clipUnit_));
    else if (clipBytes_ == 0)
        position_ = end_;
    return !out.empty();
}

GenericContainer::EditUnitIndex PassThroughSource::unitIndex() const {
    GenericContainer::EditUnitIndex found;
    found.flags = IndexTables::IndexEntry::RandomAccess;
    if (index_ == nullptr)
        return found;
    found.flags = index_->flags(position_).value_or(found.flags) & ~IndexTables::IndexEntry::OffsetOutOfRange;
    found.keyFrameOffset = static_cast<std::int32_t>(
        std::max(index_->keyFrame(position_).value_or(position_), first_) - position_);
    if (isReordered_)
        found.temporalOffset =
            static_cast<std::int32_t>(index_->displayPosition(position_).value_or(position_) - position_);
    return found;
}

/// Enters the package at hand into the index. An element that it lacks counts as one without bytes.
void PassThroughSource::note() {
    if (packageSize_ != 0 && package_.size() != packageSize_)
        throw Irregular("Edit unit " + std::to_string(position_) + " has " + std::to_string(package_.size()) +
                        " bytes, the index says " + std::to_string(packageSize_));
    auto const unit = unitIndex();
    builder_->startIndexEntry(streamOffset_);
    std::size_t part = 0;
    for (std::size_t i = 0; i < layout_.size(); ++i) {
        bool const isThere = part < parts_.size() && parts_[part].key.isSameElement(layout_[i].key);
        std::uint64_t const size = isThere ? partSize(part) : 0;
        if (packageSize_ == 0 && elements_[i].byteCount != 0 && elements_[i].byteCount != size)
            throw Irregular("An element of edit unit " + std::to_string(position_) + " has " +
                            std::to_string(size) + " bytes, the index says " +
                            std::to_string(elements_[i].byteCount));
        builder_->processAnalyzerIndexEntrySliceOffset(i, part < parts_.size() ? parts_[part].offset
                                                                               : package_.size());
        builder_->processAnalyzerIndexEntry(i, builder_->preProcessAnalyzerIndexEntry(i, unit));
        part += isThere ? 1 : 0;
    }
    builder_->appendIndexEntry();
}

std::uint32_t PassThroughSource::kagSize() const { return kagSize_; }

// The index.

void PassThroughSource::finalize() {
    if (!isFinalized_ && builder_)
        builder_->finalize(position_ - first_);
    isFinalized_ = true;
}

/// A clip stays where it was in its container, and its index with it. Samples of one size get one if they
/// have none.
Templates::vector<PassThroughSource::SegmentPtr> PassThroughSource::takeIndexSegments() {
    if (builder_)
        return builder_->takeSegments();
    Templates::vector<SegmentPtr> segments;
    bool const canTell = table_ != nullptr || (clipUnit_ != 0 && units() != 0);
    if (isClipIndexGiven_ || !canTell || !isFinalized_)
        return segments;
    isClipIndexGiven_ = true;
    if (table_ == nullptr) {
        FrameIndexTableBuilder samples(packageRate_, {{clipUnit_, false, true}}, false, clipUnit_);
        samples.finalize(units());
        return samples.takeSegments();
    }
    for (auto const& [start, segment] : *table_)
        segments.push_back(std::make_shared<IndexTableSegment>(*segment));
    if (isClipPart_ && segments.size() == 1) {
        segments.front()->indexStartPosition(Types::Position(0));
        segments.front()->indexDuration(Types::Length(units()));
    }
    return segments;
}

} // namespace MXF::Zelm::MXFIO
