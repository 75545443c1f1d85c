/// What `zelm index` prints.
#pragma once

#include "IndexChecks.h"
#include "IndexRebuild.h"
#include "Json.h"

#include <string>

namespace Zelm {

enum class IndexFormat { AsText, AsJson, AsCsv };

/// The tables: CSV has one row for each segment.
void printIndexReport(std::string const& file, IndexSurvey const& survey,
                      std::vector<IndexDisagreement> const& disagreements, IndexFormat format);

/// The rebuilt tables in the same form, and how the file's own compare.
void printRebuiltReport(std::string const& file, RebuiltIndex const& rebuilt, IndexFormat format);

/// Edit unit `position` of a table; with `display` the one that is shown there.
struct UnitQuery {
    std::int64_t position = 0;
    bool display = false;
};

/// The edit unit that holds byte `fileOffset` of the file; absent when the table knows none.
std::optional<UnitQuery> unitAtFileOffset(FoundTable const& table, std::uint64_t fileOffset);

/// One edit unit as text. False when the table does not lead to it.
bool printUnitText(FoundTable const& table, UnitQuery const& query);

/// The same as an object of docs/json.md; null when the table does not lead to it.
Json unitJson(FoundTable const& table, UnitQuery const& query);

/// The edit units from `range.first` to before `range.last` that the tables cover, row by row.
void listUnits(std::string const& file, IndexSurvey const& survey, UnitRange const& range, bool display,
               IndexFormat format);

} // namespace Zelm
