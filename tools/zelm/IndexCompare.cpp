#include "IndexRebuild.h"
#include "Text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace Zelm {

using namespace MXF::Zelm;
using IndexTables::IndexEntry;
using Locator = FoundTable::Locator;

namespace {

constexpr std::size_t casesKept = 5;

/// Bits 7 to 4. Bit 3 depends on where segments end; bits 1 and 0 are the picture's type; bit 2 is reserved.
constexpr unsigned comparedFlags = 0xF0;
constexpr unsigned pictureType = 0x03;
constexpr unsigned predicted = IndexEntry::ForwardPrediction | IndexEntry::BackwardPrediction;

enum Kind {
    Units,
    Offsets,
    TemporalOffsets,
    KeyFrameOffsets,
    KeyFrames,
    Flags,
    Types,
    Slices,
    Elements,
    Kinds
};

constexpr const char* kindNames[Kinds] = {"edit units",        "offsets",    "temporal offsets",
                                          "key frame offsets", "key frames", "flags",
                                          "picture types",     "slices",     "element offsets"};

/// What an entry says beside offsets in bytes; at a constant rate nothing is shifted.
struct EntryValues {
    bool hasEntry = false;
    int temporalOffset = 0, keyFrameOffset = 0;
    unsigned flags = 0;

    bool isKeyFrame() const { return keyFrameOffset == 0 && (flags & predicted) == 0; }
    bool isOutOfRange() const { return (flags & IndexEntry::OffsetOutOfRange) != 0; }
};

EntryValues valuesOf(IndexTables::EditUnitLocation const& place) {
    if (!place.entry)
        return {};
    auto const* const entries = place.segment->indexEntryArray();
    return {true, entries->temporalOffset(*place.entry), entries->keyFrameOffset(*place.entry),
            entries->flags(*place.entry)};
}

std::string yesOrNo(bool value) { return value ? "yes" : "no"; }

class TableComparison {
public:
    TableComparison(FoundTable const& own, FoundTable const& rebuilt, bool flagsKnown)
        : own_(own),
          rebuilt_(rebuilt),
          ownLocator_(*own.table, own.extent()),
          rebuiltLocator_(*rebuilt.table, rebuilt.extent()),
          flagsKnown_(flagsKnown) {
        result_.hasOwn = true;
        for (std::size_t i = 0; i < Kinds; ++i)
            differences_[i].kind = kindNames[i];
    }

    IndexComparison run() {
        chooseWhatToCompare();
        std::int64_t const end = lastUnit(rebuilt_);
        result_.units = static_cast<std::uint64_t>(end);
        for (std::int64_t at = 0; at < (isSameConstant() ? std::min<std::int64_t>(end, 1) : end); ++at)
            compareUnit(at);
        for (auto const& range : own_.covered)
            addSurplus({range.first, std::min(range.last, std::int64_t{0})});
        for (auto const& range : own_.covered)
            addSurplus({std::max(range.first, end), range.last});
        if (elementsKnown_)
            compareSlices();
        for (auto& difference : differences_)
            if (difference.count != 0)
                result_.differences.push_back(std::move(difference));
        return std::move(result_);
    }

private:
    static std::int64_t lastUnit(FoundTable const& table) {
        return table.covered.empty() ? 0 : table.covered.back().last;
    }
    void chooseWhatToCompare();
    bool isSameConstant() const;
    void addSurplus(UnitRange const& range);
    void compareUnit(std::int64_t at);
    void compareEntries(std::int64_t at, EntryValues const& own, EntryValues const& rebuilt);
    void compareElements(std::int64_t at);
    void compareSlices();

    void add(Kind kind, std::int64_t at, std::string own, std::string rebuilt) {
        auto& difference = differences_[kind];
        if (++difference.count <= casesKept)
            difference.first.push_back({at, std::move(own), std::move(rebuilt)});
    }
    void compare(Kind kind, std::int64_t at, int own, int rebuilt) {
        if (own != rebuilt)
            add(kind, at, std::to_string(own), std::to_string(rebuilt));
    }

    FoundTable const& own_;
    FoundTable const& rebuilt_;
    Locator ownLocator_, rebuiltLocator_;
    bool flagsKnown_, elementsKnown_ = false;
    std::array<IndexDifference, Kinds> differences_ = {};
    IndexComparison result_;
};

void TableComparison::chooseWhatToCompare() {
    auto const hasEntries = [](FoundSegment const& segment) { return segment.entries != 0; };
    auto const hasDeltas = [](FoundSegment const& segment) { return segment.deltaEntries != 0; };
    auto const& own = own_.segments;
    auto const& rebuilt = rebuilt_.segments;
    if (!flagsKnown_ && std::any_of(own.begin(), own.end(), hasEntries))
        result_.notes.push_back(std::string("flags, temporal and key frame offsets are not compared: ") +
                                (rebuilt_.clipStart != 0 ? "the essence is one clip"
                                                         : "no MPEG video or AVC was found in the essence"));
    bool const ownKnows = std::any_of(own.begin(), own.end(), hasDeltas);
    elementsKnown_ = ownKnows && std::any_of(rebuilt.begin(), rebuilt.end(), hasDeltas);
    if (!ownKnows)
        result_.notes.push_back("element offsets are not compared: the file's own table has none");
    else if (!elementsKnown_)
        result_.notes.push_back(
            rebuilt_.clipStart != 0
                ? "element offsets are not compared: the essence is one clip"
                : "element offsets are not compared: the edit units have different elements");
}

/// One size for all edit units, and the same in both: where the first agree, all do.
bool TableComparison::isSameConstant() const {
    if (own_.table->size() != 1 || rebuilt_.table->size() != 1 || own_.covered.size() != 1 ||
        own_.covered.front().first != 0 || own_.covered.front().last < lastUnit(rebuilt_))
        return false;
    auto const& own = own_.segments.front();
    auto const& rebuilt = rebuilt_.segments.front();
    return own.entries == 0 && rebuilt.entries == 0 && own.start == 0 &&
           own.editUnitByteCount == rebuilt.editUnitByteCount;
}

/// Edit units of the file's own table that the essence does not have.
void TableComparison::addSurplus(UnitRange const& range) {
    auto& difference = differences_[Units];
    std::int64_t at = range.first;
    for (; at < range.last && difference.first.size() < casesKept; ++at)
        add(Units, at, "there", "missing");
    difference.count += at < range.last ? UnitRange{at, range.last}.count() : 0;
}

void TableComparison::compareUnit(std::int64_t at) {
    auto const own = ownLocator_.locate(at);
    auto const rebuilt = rebuiltLocator_.locate(at);
    if (!own || !rebuilt) {
        if (own || rebuilt)
            add(Units, at, own ? "there" : "missing", rebuilt ? "there" : "missing");
        return;
    }
    if (own->streamOffset != rebuilt->streamOffset)
        add(Offsets, at, hex(own->streamOffset), hex(rebuilt->streamOffset));
    if (flagsKnown_)
        compareEntries(at, valuesOf(*own), valuesOf(*rebuilt));
    if (elementsKnown_)
        compareElements(at);
}

void TableComparison::compareEntries(std::int64_t at, EntryValues const& own, EntryValues const& rebuilt) {
    if (!own.isOutOfRange() && !rebuilt.isOutOfRange()) {
        compare(TemporalOffsets, at, own.temporalOffset, rebuilt.temporalOffset);
        compare(KeyFrameOffsets, at, own.keyFrameOffset, rebuilt.keyFrameOffset);
        if (own.isKeyFrame() != rebuilt.isKeyFrame())
            add(KeyFrames, at, yesOrNo(own.isKeyFrame()), yesOrNo(rebuilt.isKeyFrame()));
    }
    if (!own.hasEntry || !rebuilt.hasEntry)
        return;
    if (((own.flags ^ rebuilt.flags) & comparedFlags) != 0)
        add(Flags, at, hex(own.flags & comparedFlags), hex(rebuilt.flags & comparedFlags));
    if (((own.flags ^ rebuilt.flags) & pictureType) != 0)
        add(Types, at, hex(own.flags & pictureType), hex(rebuilt.flags & pictureType));
}

void TableComparison::compareElements(std::int64_t at) {
    std::size_t const own = ownLocator_.elementCount(at), rebuilt = rebuiltLocator_.elementCount(at);
    if (own != rebuilt)
        return add(Elements, at, std::to_string(own) + " elements", std::to_string(rebuilt) + " elements");
    for (std::size_t i = 0; i < own; ++i) {
        auto const ours = ownLocator_.locateElement(at, i), theirs = rebuiltLocator_.locateElement(at, i);
        if (ours && theirs && ours->streamOffset == theirs->streamOffset)
            continue;
        std::string const element = "element " + std::to_string(i) + " at ";
        return add(Elements, at, ours ? element + hex(ours->streamOffset) : element + "no place",
                   theirs ? element + hex(theirs->streamOffset) : element + "no place");
    }
}

/// The slices of a segment's elements: "0 0 1".
std::vector<unsigned> slicesOf(FoundSegment const& segment) {
    std::vector<unsigned> slices;
    for (std::size_t i = 0; i < segment.deltaEntries; ++i)
        slices.push_back(segment.segment->deltaEntry(i).slice());
    return slices;
}

std::string textOf(std::vector<unsigned> const& slices) {
    std::string text;
    for (unsigned const slice : slices)
        text += (text.empty() ? "" : " ") + std::to_string(slice);
    return text;
}

/// Whether slices begin wherever `needed` says; more of them do no harm.
bool hasSlices(std::vector<unsigned> const& slices, std::vector<unsigned> const& needed) {
    for (std::size_t i = 1; i < std::min(slices.size(), needed.size()); ++i)
        if (needed[i] != needed[i - 1] && slices[i] == slices[i - 1])
            return false;
    return true;
}

void TableComparison::compareSlices() {
    auto const needed = slicesOf(rebuilt_.segments.front());
    bool isNoted = false;
    for (auto const& segment : own_.segments) {
        if (segment.repeatOf || segment.deltaEntries == 0)
            continue;
        auto const slices = slicesOf(segment);
        if (!hasSlices(slices, needed)) {
            add(Slices, segment.start, textOf(slices), textOf(needed));
        } else if (slices != needed && !isNoted) {
            result_.notes.push_back("the elements are in slices " + textOf(slices) + ", for their sizes " +
                                    textOf(needed) + " would do");
            isNoted = true;
        }
    }
}

} // namespace

IndexComparison compareIndex(FoundTable const& own, FoundTable const& rebuilt, bool flagsKnown) {
    return TableComparison(own, rebuilt, flagsKnown).run();
}

} // namespace Zelm
