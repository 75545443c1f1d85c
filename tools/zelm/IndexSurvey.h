/// The index tables of a file as its segments stand there, repeats included, and how far they reach.
#pragma once

#include "PartitionSurvey.h"
#include "UnitRange.h"

#include <MXF/Zelm/IndexTables/EditUnitLocator.h>
#include <MXF/Zelm/MXFIO/PartitionMap.h>

#include <map>
#include <memory>
#include <tuple>

namespace Zelm {

/// What one segment says, and where it stands.
struct FoundSegment {
    std::uint64_t offset = 0;  ///< in the file
    std::size_t partition = 0; ///< its number, from 0 in the order of the file
    std::uint32_t indexSID = 0;
    std::uint32_t bodySID = 0;
    EditRate editRate;
    std::int64_t start = 0;
    std::int64_t duration = 0;
    std::uint32_t editUnitByteCount = 0; ///< 0 when it differs
    std::size_t entries = 0;
    std::size_t deltaEntries = 0;
    std::uint8_t sliceCount = 0;
    std::uint8_t posTableCount = 0;
    std::optional<std::size_t> repeatOf;                                ///< the segment that it repeats
    bool sameAsRepeated = true;                                         ///< its entries and byte count
    MXF::Zelm::IndexTables::IndexTableSegment const* segment = nullptr; ///< null for a repeat
};

/// One index table, and the essence that it is about.
struct FoundTable {
    using Locator = MXF::Zelm::IndexTables::EditUnitLocator;

    std::unique_ptr<MXF::Zelm::IndexTables::IndexTable> table;
    std::vector<FoundSegment> segments; ///< in the order of the file
    bool isRebuilt = false;             ///< made by a walk: its segments stand nowhere in the file

    std::unique_ptr<MXF::Zelm::MXFIO::PartitionMap> map; ///< null when the partitions cannot be read
    std::optional<std::uint64_t> essenceBytes;           ///< none when the file has no such essence
    std::optional<Fault> fault;                          ///< why the essence could not be looked at

    /// Bytes of key and length when the essence is wrapped as one clip and the rate is constant, else 0.
    std::uint64_t clipStart = 0;
    std::uint64_t clipEnd = 0; ///< in the stream, 0 as above

    /// The edit units that can be found by the table, joined and in order: none beyond the entries or, at a
    /// constant rate, beyond the essence.
    std::vector<UnitRange> covered;

    /// What lies between them, and before the first if that is not 0.
    std::vector<UnitRange> gaps() const;

    MXF::Zelm::IndexTables::EssenceExtent extent() const {
        return {clipStart != 0 ? clipEnd : essenceBytes, clipStart};
    }

    /// "IndexSID 2, BodySID 1".
    std::string name() const;
};

struct IndexSurvey {
    PartitionSurvey partitions;
    std::vector<FoundTable> tables; ///< by index SID and body SID
    std::vector<Fault> faults;      ///< segments that cannot be read, and what stopped the search
};

/// Reads all segments that stand in the index area of a partition or follow it, and with `everywhere` those
/// amid essence too, for which all keys of the file are read. Throws Exceptions::SystemError.
IndexSurvey surveyIndex(Input& input, bool everywhere);

/// Fills in what follows from the segments of a table that is not in the file, and from the essence. Throws
/// Exceptions::SystemError.
void completeTable(Input& input, FoundTable& table);

} // namespace Zelm
