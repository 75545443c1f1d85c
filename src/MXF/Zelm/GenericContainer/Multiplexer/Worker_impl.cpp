#include "MXF/Zelm/GenericContainer/Multiplexer/Worker_impl.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/GenericContainer/ExactTime.h"
#include "MXF/Zelm/Templates/SafeCast.h"
#include "MXF/Zelm/Utils/Align.h"

#include <algorithm>

namespace MXF::Zelm::GenericContainer::Multiplexer {

namespace {

using Structure = Exceptions::InvalidStructure;
using Format = Exceptions::InvalidFormat;

template <class Exception>
void require(bool condition, const char* text, const char* message,
             Exceptions::SourceLocation where = Exceptions::SourceLocation::current()) {
    if (!condition)
        throw Exception(Exceptions::Condition{text}, message, where);
}

/// The entry whose edit units tell how the pictures depend on each other: those that are stored in another
/// order, else the first pictures, else the first essence.
std::size_t rulingEntry(Templates::vector<AnalyzerEntry> const& entries) {
    auto const rank = [](AnalyzerEntry const& entry) {
        if (entry.analyzer->containsTemporalDependencies())
            return 0;
        if (entry.kind() == EssenceAnalyzer::PictureAnalyzer)
            return 1;
        return entry.isSystem() ? 3 : 2;
    };
    auto const ruling = std::min_element(entries.begin(), entries.end(),
                                         [&](auto const& a, auto const& b) { return rank(a) < rank(b); });
    return static_cast<std::size_t>(ruling - entries.begin());
}

} // namespace

Worker_impl::Worker_impl(std::unique_ptr<MuxData> data, std::unique_ptr<TimecodeTrack> timecodeTrack)
    : data_(std::move(data)),
      timecodeTrack_(std::move(timecodeTrack)),
      ruling_(rulingEntry(data_->entries)),
      hasEssence_(std::any_of(data_->entries.begin(), data_->entries.end(),
                              [](auto const& entry) { return !entry.isSystem(); })) {
    makeIndex();
}

Worker_impl::~Worker_impl() = default;

/// A container whose packages have one size needs no entries, unless its pictures are reordered.
void Worker_impl::makeIndex() {
    index_ = std::make_unique<FrameIndexTableBuilder>(data_->packageRate, indexedElements(),
                                                      data_->indexFillPackets,
                                                      Templates::safeCast<std::uint32_t>(packageSize()));
}

std::vector<IndexedElement> Worker_impl::indexedElements() const {
    std::vector<IndexedElement> elements;
    std::uint64_t ofItem = 0; // bytes of the item so far; unknown behind an element that varies
    bool isItemKnown = true;
    for (auto const& entry : data_->entries) {
        auto const itemSize = static_cast<std::uint64_t>(std::max(data_->itemSizes[entry.kind()], 0));
        std::uint64_t size = entry.entryByteCount;
        if (entry.padsToItem)
            size = isItemKnown && itemSize > ofItem ? itemSize - ofItem : 0;
        isItemKnown = entry.padsToItem || (isItemKnown && size != 0);
        ofItem = entry.padsToItem ? 0 : ofItem + size;
        elements.push_back({.byteCount = size,
                            .isReordered = entry.analyzer->containsTemporalDependencies(),
                            .rules = elements.size() == ruling_});
    }
    return elements;
}

bool Worker_impl::checkCBE() const {
    return std::all_of(data_->entries.begin(), data_->entries.end(),
                       [](auto const& entry) { return entry.entryByteCount != 0; });
}

/// Of items that are filled out, those count that are there.
std::uint64_t Worker_impl::checkPaddedCBE() const {
    if (data_->editUnitSize > 0)
        return static_cast<std::uint64_t>(data_->editUnitSize);
    auto const& sizes = data_->itemSizes;
    if (std::any_of(sizes.begin(), sizes.end(), [](auto size) { return size < 0; }))
        return 0;
    std::uint64_t sum = 0;
    for (auto const& entry : data_->entries)
        if (entry.padsToItem)
            sum += static_cast<std::uint64_t>(sizes[entry.kind()]);
    return sum;
}

std::uint64_t Worker_impl::packageSize() const {
    auto const& entries = data_->entries;
    if (entries.empty() || entries[ruling_].analyzer->containsTemporalDependencies())
        return 0;
    if (std::uint64_t const padded = checkPaddedCBE())
        return padded;
    std::uint64_t sum = 0;
    for (auto const& entry : entries)
        sum += entry.entryByteCount;
    return checkCBE() ? sum : 0;
}

/// Whether there are packages as long as this stream has edit units: a system item goes along with the
/// essence.
bool Worker_impl::drives(AnalyzerEntry const& entry) const { return !(hasEssence_ && entry.isSystem()); }

bool Worker_impl::done() const {
    return isFinalized_ ||
           std::all_of(data_->entries.begin(), data_->entries.end(), [this](auto const& entry) {
               return !drives(entry) || entry.hasEnded || entry.analyzer->done();
           });
}

bool Worker_impl::next(DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
                       Templates::Rational<std::int64_t>& position) {
    out.clear();
    updater.reset();
    mayStartPartition = false;
    if (done() || !doNextContentPackage(out, position))
        return false;
    mayStartPartition = data_->entries[ruling_].index.keyFrameOffset == 0;
    return true;
}

bool Worker_impl::doNextContentPackage(DataIO::Chain& out, Templates::Rational<std::int64_t>& position) {
    auto const& rate = data_->packageRate;
    Seconds const start = {packageCount_ * rate.denominator, rate.numerator};
    packageEnd_ = {start.numerator + rate.denominator, rate.numerator};
    if (!readDrivers() && done())
        return false;
    sliceOffset_ = lastItemSliceOffset_ = 0;
    index_->startIndexEntry(streamOffset_);
    for (std::size_t i = 0; i < data_->entries.size(); ++i)
        processAnalyzer(i, out);
    index_->appendIndexEntry();
    streamOffset_ += out.size();
    ++packageCount_;
    position = start;
    return true;
}

/// Reads the streams that make packages; false when none of them had anything.
bool Worker_impl::readDrivers() {
    bool hasAny = false;
    for (std::size_t i = 0; i < data_->entries.size(); ++i)
        if (drives(data_->entries[i]))
            hasAny = readItemFromAnalyzer(i) || hasAny;
    return hasAny;
}

/// Reads edit units until they reach the end of the package; false when there was none.
bool Worker_impl::readItemFromAnalyzer(std::size_t number) {
    auto& entry = data_->entries[number];
    entry.wasRead = false;
    entry.index = {};
    entry.timecode.reset();
    while (!entry.hasEnded && isBefore(entry.position, packageEnd_)) {
        unit_.clear();
        if (entry.analyzer->nextEditUnit(unit_))
            takeEditUnit(number);
        else
            entry.hasEnded = true;
    }
    return entry.wasRead;
}

/// An edit unit without a duration lasts as long as the package.
void Worker_impl::takeEditUnit(std::size_t number) {
    auto& entry = data_->entries[number];
    if (!entry.wasRead) {
        entry.index = index_->preProcessAnalyzerIndexEntry(number, unit_.index);
        entry.timecode = std::move(unit_.timecode);
    }
    entry.wasRead = true;
    entry.data.append(std::move(unit_.data));
    bool const isTimed = unit_.duration.denominator > 0 && unit_.duration.numerator >= 0;
    entry.position = isTimed ? sumOf(entry.position, unit_.duration) : packageEnd_;
}

void Worker_impl::processAnalyzer(std::size_t number, DataIO::Chain& out) {
    auto& entry = data_->entries[number];
    if (!drives(entry))
        readItemFromAnalyzer(number);
    if (entry.isTimecodeSource && entry.timecode && timecodeTrack_)
        timecodeTrack_->checkTimeCode(packageCount_, *entry.timecode);
    index_->processAnalyzerIndexEntrySliceOffset(number, sliceOffset_);
    std::uint64_t const elementSize = appendElement(entry, out);
    index_->processFillSliceOffset(number, sliceOffset_ + elementSize);
    std::uint64_t const fill = fillSize(number, elementSize);
    if (fill != 0) {
        require<Structure>(fill >= MuxData::fillKLLength, "editUnitFillItemSize >= klLength_",
                           "Not enough size to create filler in essence.");
        padding_.appendFillItem(out, fill, MuxData::fillKLLength - KLV::Key::size());
    }
    index_->processAnalyzerIndexEntry(number, entry.index);
}

/// The key and length that are put before an element of `length` bytes.
DataIO::Slice Worker_impl::keyAndLength(AnalyzerEntry const& entry, std::uint64_t length) {
    constexpr unsigned char wide = ByteCoders::maximumBERSize;
    unsigned char const berLength =
        ByteCoders::calculateBERSize(length) > entry.berLength ? wide : entry.berLength;
    unsigned char bytes[KLV::Key::size() + wide];
    std::copy_n(entry.key.rawBuffer(), KLV::Key::size(), bytes);
    ByteCoders::codeBER(length, berLength, bytes + KLV::Key::size());
    return heads_.copyOf(bytes, KLV::Key::size() + berLength);
}

/// Appends what was read, if anything, and returns its bytes, key and length included.
std::uint64_t Worker_impl::appendElement(AnalyzerEntry& entry, DataIO::Chain& out) {
    if (!entry.wasRead)
        return 0;
    std::uint64_t const before = out.size();
    if (!entry.isSystem())
        out.append(keyAndLength(entry, entry.data.size()));
    out.append(std::move(entry.data));
    entry.data.clear();
    return out.size() - before;
}

/// Bytes of fill behind an element, which the package then has grown by as well.
std::uint64_t Worker_impl::fillSize(std::size_t number, std::uint64_t elementSize) {
    auto const& entry = data_->entries[number];
    std::uint64_t fill = fillOfEntry(entry, elementSize);
    sliceOffset_ += elementSize + fill;
    if (entry.padsToItem)
        fill += fillToItem(entry);
    if (number + 1 == data_->entries.size() && data_->editUnitSize > 0)
        fill += fillToEditUnit();
    return fill;
}

std::uint64_t Worker_impl::fillOfEntry(AnalyzerEntry const& entry, std::uint64_t elementSize) const {
    if (entry.entryByteCount == 0)
        return Utils::alignBytes(data_->kagSize, elementSize, MuxData::fillKLLength);
    auto const editUnitCurrentSize = elementSize;
    auto const analyzerBytesPerEntry = entry.entryByteCount;
    require<Format>(editUnitCurrentSize <= analyzerBytesPerEntry,
                    "editUnitCurrentSize <= analyzerBytesPerEntry",
                    "One analyzer (CBE) has produced an edit unit larger than expected");
    return analyzerBytesPerEntry - editUnitCurrentSize;
}

/// The item is full before the fill that brings it to its size; there must be some.
std::uint64_t Worker_impl::fillToItem(AnalyzerEntry const& entry) {
    auto const itemSize = static_cast<std::uint64_t>(std::max(data_->itemSizes[entry.kind()], 0));
    std::uint64_t const used = sliceOffset_ - lastItemSliceOffset_;
    require<Structure>(itemSize > used, "itemSize > sliceOffset_ - lastItemSliceOffset_",
                       "Trying to store more data in the Generic Container then the edit unit can hold.");
    lastItemSliceOffset_ += itemSize;
    sliceOffset_ = lastItemSliceOffset_;
    return itemSize - used;
}

std::uint64_t Worker_impl::fillToEditUnit() {
    auto const editUnitSize = static_cast<std::uint64_t>(data_->editUnitSize);
    std::uint64_t const used = sliceOffset_;
    require<Structure>(editUnitSize >= used, "editUnitSize >= sliceOffset_",
                       "Trying to store more data in the Generic Container then the edit unit can hold.");
    sliceOffset_ = editUnitSize;
    return editUnitSize - used;
}

void Worker_impl::finalize() {
    if (isFinalized_)
        return;
    isFinalized_ = true;
    for (auto& entry : data_->entries)
        entry.analyzer->finalize();
    index_->finalize(packageCount_);
    if (data_->builder)
        data_->builder->finish(packageCount_, data_->packageRate);
    if (timecodeTrack_)
        timecodeTrack_->finish(packageCount_);
}

} // namespace MXF::Zelm::GenericContainer::Multiplexer
