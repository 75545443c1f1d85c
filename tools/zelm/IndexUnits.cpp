/// Single edit units for `zelm index`: where each lies, and what it depends on.
#include "IndexReport.h"
#include "Text.h"

#include <algorithm>
#include <iomanip>
#include <iostream>

namespace Zelm {

using namespace MXF::Zelm;
using IndexTables::IndexEntry;

namespace {

struct FlagRow {
    IndexEntry::Flag flag;
    const char* name;
};

constexpr FlagRow flagRows[] = {
    {IndexEntry::RandomAccess, "random access"},
    {IndexEntry::SequenceHeader, "sequence header"},
    {IndexEntry::ForwardPrediction, "forward prediction"},
    {IndexEntry::BackwardPrediction, "backward prediction"},
    {IndexEntry::OffsetOutOfRange, "offset out of range"},
};

std::string flagNames(unsigned flags) {
    std::string text;
    for (auto const& row : flagRows)
        if ((flags & row.flag) != 0)
            text += (text.empty() ? "" : ", ") + std::string(row.name);
    return text;
}

/// What the table tells of one edit unit. Everything that it may not tell is optional.
struct Unit {
    std::int64_t position = 0;
    std::optional<std::int64_t> display, keyFrame;
    std::optional<int> temporalOffset, keyFrameOffset;
    std::optional<unsigned> flags;
    std::optional<std::uint64_t> streamOffset, length, fileOffset;
};

class UnitFinder {
public:
    explicit UnitFinder(FoundTable const& table) : table_(table), locator_(*table.table, table.extent()) {}

    FoundTable::Locator const& locator() const { return locator_; }

    std::optional<std::uint64_t> fileOffset(std::uint64_t streamOffset) const {
        auto const extent = table_.map ? table_.map->find(streamOffset) : std::nullopt;
        return extent ? std::optional(extent->fileOffset) : std::nullopt;
    }

    std::optional<Unit> find(UnitQuery const& query) const {
        auto const stored = query.display ? locator_.storedPosition(query.position) : query.position;
        if (!stored || locator_.elementCount(*stored) == 0)
            return std::nullopt;
        Unit unit;
        unit.position = *stored;
        unit.display = query.display ? query.position : locator_.displayPosition(*stored);
        unit.keyFrame = locator_.keyFrame(*stored);
        if (auto const place = locator_.locate(*stored))
            take(*place, unit);
        return unit.streamOffset ? std::optional(unit) : std::nullopt;
    }

private:
    void take(IndexTables::EditUnitLocation const& place, Unit& unit) const {
        unit.streamOffset = place.streamOffset;
        unit.length = place.length;
        unit.fileOffset = fileOffset(place.streamOffset);
        if (!place.entry)
            return;
        auto const* const entries = place.segment->indexEntryArray();
        unit.temporalOffset = entries->temporalOffset(*place.entry);
        unit.keyFrameOffset = entries->keyFrameOffset(*place.entry);
        unit.flags = entries->flags(*place.entry);
    }

    FoundTable const& table_;
    FoundTable::Locator locator_;
};

Json rowJson(FoundTable const& table, Unit const& unit) {
    return {{"index_sid", table.table->indexSID()},
            {"body_sid", table.table->bodySID()},
            {"edit_unit", unit.position},
            {"display", orNull(unit.display)},
            {"key_frame", orNull(unit.keyFrame)},
            {"temporal_offset", orNull(unit.temporalOffset)},
            {"key_frame_offset", orNull(unit.keyFrameOffset)},
            {"flags", orNull(unit.flags)},
            {"stream_offset", orNull(unit.streamOffset)},
            {"length", orNull(unit.length)},
            {"offset", orNull(unit.fileOffset)}};
}

Json elementsJson(UnitFinder const& finder, Unit const& unit) {
    Json elements = Json::array();
    for (std::size_t i = 0; i < finder.locator().elementCount(unit.position); ++i) {
        auto const element = finder.locator().locateElement(unit.position, i);
        if (!element)
            elements.push_back(nullptr);
        else
            elements.push_back({{"stream_offset", element->streamOffset},
                                {"length", orNull(element->length)},
                                {"offset", orNull(finder.fileOffset(element->streamOffset))},
                                {"pos_table_index", element->posTableIndex}});
    }
    return elements;
}

Json extentsJson(FoundTable const& table, Unit const& unit) {
    Json pieces = Json::array();
    if (table.map && unit.length)
        for (auto const& piece : table.map->extents(*unit.streamOffset, *unit.length))
            pieces.push_back({{"offset", piece.fileOffset}, {"length", piece.length}});
    return pieces;
}

template <class T>
std::string textOf(std::optional<T> const& value) {
    return value ? std::to_string(*value) : "-";
}

std::string hexOf(std::optional<std::uint64_t> const& value) { return value ? hex(*value) : "-"; }

void printElements(UnitFinder const& finder, Unit const& unit) {
    constexpr auto right = Table::Align::Right;
    Table rows({{"element", right}, {"stream offset", right}, {"file offset", right}, {"bytes", right}});
    for (std::size_t i = 0; i < finder.locator().elementCount(unit.position); ++i) {
        auto const element = finder.locator().locateElement(unit.position, i);
        rows.add({std::to_string(i), element ? hex(element->streamOffset) : "-",
                  element ? hexOf(finder.fileOffset(element->streamOffset)) : "-",
                  element && element->length ? grouped(*element->length) : "-"});
    }
    rows.print(std::cout);
}

void printRowText(Unit const& unit) {
    std::cout << std::setw(10) << unit.position << std::setw(10) << textOf(unit.display) << std::setw(10)
              << textOf(unit.keyFrame) << std::setw(9) << textOf(unit.temporalOffset) << std::setw(7)
              << (unit.flags ? hex(*unit.flags) : "-") << std::setw(16) << hexOf(unit.streamOffset)
              << std::setw(16) << hexOf(unit.fileOffset) << std::setw(12)
              << (unit.length ? grouped(*unit.length) : "-") << "\n";
}

void printRowCsv(FoundTable const& table, Unit const& unit) {
    std::string line;
    Json const row = rowJson(table, unit);
    for (auto const& [name, value] : row.items())
        line += (line.empty() ? "" : ",") + (value.is_null() ? std::string() : value.dump());
    std::cout << line << "\n";
}

/// Writes rows as they come: none is kept.
class RowPrinter {
public:
    RowPrinter(std::string const& file, IndexFormat format) : format_(format) {
        if (format_ == IndexFormat::AsJson)
            std::cout << "{\n  \"schema_version\": " << jsonSchemaVersion
                      << ",\n  \"file\": " << dump(Json(file)) << ",\n  \"edit_units\": [";
        else if (format_ == IndexFormat::AsCsv)
            std::cout << "index_sid,body_sid,edit_unit,display,key_frame,temporal_offset,key_frame_offset,"
                         "flags,stream_offset,length,offset\n";
    }

    void begin(FoundTable const& table) {
        if (format_ == IndexFormat::AsText)
            std::cout << (any_ ? "\n" : "") << table.name() << "\n"
                      << " edit unit   display key frame temporal  flags   stream offset     file offset"
                         "       bytes\n";
        any_ = true;
    }

    void print(FoundTable const& table, Unit const& unit) {
        if (format_ == IndexFormat::AsText)
            return printRowText(unit);
        if (format_ == IndexFormat::AsCsv)
            return printRowCsv(table, unit);
        std::cout << (rows_ ? ",\n    " : "\n    ") << dump(rowJson(table, unit));
        rows_ = true;
    }

    void end() {
        if (format_ == IndexFormat::AsJson)
            std::cout << (rows_ ? "\n  ]\n}\n" : "]\n}\n");
    }

private:
    IndexFormat format_;
    bool any_ = false, rows_ = false;
};

} // namespace

std::optional<UnitQuery> unitAtFileOffset(FoundTable const& table, std::uint64_t fileOffset) {
    auto const streamOffset = table.map ? table.map->streamOffset(fileOffset) : std::nullopt;
    if (!streamOffset)
        return std::nullopt;
    auto const position = FoundTable::Locator(*table.table, table.extent()).positionAt(*streamOffset);
    return position ? std::optional(UnitQuery{*position, false}) : std::nullopt;
}

bool printUnitText(FoundTable const& table, UnitQuery const& query) {
    UnitFinder const finder(table);
    auto const unit = finder.find(query);
    if (!unit)
        return false;
    std::cout << "index table           " << table.name() << "\nedit unit             " << unit->position
              << "\nshown at              " << textOf(unit->display) << "\nkey frame             "
              << textOf(unit->keyFrame) << "\ntemporal offset       " << textOf(unit->temporalOffset)
              << "\nflags                 " << (unit->flags ? hex(*unit->flags) : "-");
    if (unit->flags && *unit->flags != 0)
        std::cout << " (" << flagNames(*unit->flags) << ")";
    std::cout << "\nbytes of the essence  from " << hexOf(unit->streamOffset);
    if (unit->length)
        std::cout << " to before " << hex(*unit->streamOffset + *unit->length) << ", "
                  << grouped(*unit->length);
    std::cout << "\n";
    if (table.map && unit->length)
        for (auto const& piece : table.map->extents(*unit->streamOffset, *unit->length))
            std::cout << "bytes of the file     from " << hex(piece.fileOffset) << " to before "
                      << hex(piece.fileOffset + piece.length) << ", " << grouped(piece.length) << "\n";
    printElements(finder, *unit);
    return true;
}

Json unitJson(FoundTable const& table, UnitQuery const& query) {
    UnitFinder const finder(table);
    auto const unit = finder.find(query);
    if (!unit)
        return nullptr;
    Json json = rowJson(table, *unit);
    json["extents"] = extentsJson(table, *unit);
    json["elements"] = elementsJson(finder, *unit);
    return json;
}

void listUnits(std::string const& file, IndexSurvey const& survey, UnitRange const& range, bool display,
               IndexFormat format) {
    RowPrinter rows(file, format);
    for (auto const& table : survey.tables) {
        rows.begin(table);
        UnitFinder const finder(table);
        for (auto const& covered : table.covered)
            for (auto at = std::max(range.first, covered.first); at < std::min(range.last, covered.last);
                 ++at)
                if (auto const unit = finder.find({at, display}))
                    rows.print(table, *unit);
    }
    rows.end();
}

} // namespace Zelm
