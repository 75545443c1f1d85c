/// Index table segments for tests.
#pragma once

#include "MXF/Zelm/IndexTables/IndexTableSegment.h"

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

/// What a segment has; no entries and no byte count unless they are given.
struct Rows {
    std::int64_t start = 0;
    std::int64_t duration = 0;
    std::uint32_t byteCount = 0;
    std::vector<IndexTables::IndexEntry> entries = {};
    std::vector<IndexTables::DeltaEntry> deltas = {};
    std::uint32_t indexSID = 2;
    std::uint32_t bodySID = 1;
};

inline std::unique_ptr<IndexTables::IndexTableSegment> makeSegment(Rows const& rows) {
    auto segment = std::make_unique<IndexTables::IndexTableSegment>(std::uint8_t{4});
    segment->indexEditRate(Types::Rational(25, 1));
    segment->indexStartPosition(Types::Position(rows.start));
    segment->indexDuration(Types::Length(rows.duration));
    segment->indexSID(Types::UInt32(rows.indexSID));
    segment->bodySID(Types::UInt32(rows.bodySID));
    if (rows.byteCount != 0)
        segment->editUnitByteCount(Types::UInt32(rows.byteCount));
    if (!rows.entries.empty())
        segment->sliceCount(Types::UInt8(static_cast<std::uint8_t>(rows.entries[0].sliceOffsetCount())));
    for (auto const& entry : rows.entries)
        segment->addIndexEntry(segment->indexEntryCount(), entry);
    for (auto const& delta : rows.deltas)
        segment->addDeltaEntry(segment->deltaEntryCount(), delta);
    return segment;
}

/// Entries with these stream offsets.
inline std::vector<IndexTables::IndexEntry> entriesAt(std::initializer_list<std::uint64_t> offsets) {
    std::vector<IndexTables::IndexEntry> entries;
    for (auto const offset : offsets)
        entries.emplace_back(offset);
    return entries;
}

} // namespace MXF::Zelm::Test
