/// `zelm index --rebuild`: index tables made by walking over the essence, and how the file's own differ.
#pragma once

#include "IndexSurvey.h"

#include <string>
#include <vector>

namespace Zelm {

/// One kind of difference between a file's own table and the rebuilt one.
struct IndexDifference {
    struct Case {
        std::int64_t position; ///< the edit unit; of slices the first one of the segment
        std::string own, rebuilt;
    };

    const char* kind; ///< "offsets", …
    std::uint64_t count = 0;
    std::vector<Case> first = {}; ///< some of them
};

/// How the file's own table compares.
struct IndexComparison {
    bool hasOwn = false; ///< the file has a table of this essence
    std::uint64_t units = 0;
    std::vector<IndexDifference> differences; ///< of the kinds that there are
    std::vector<std::string> notes;           ///< what was not compared, and why

    bool isEqual() const { return hasOwn && differences.empty(); }
};

/// The tables that the essence gives, in the order of the body SIDs, and for each how the file's own
/// compares.
struct RebuiltIndex {
    IndexSurvey survey;
    std::vector<IndexComparison> comparisons;
    std::vector<std::string> notes; ///< of essence that gives no table, why
};

/// Walks over all essence of the file. `own` are the tables that it has; `metadata` may be null. Tells of its
/// progress. Faults of the essence end up in the survey: the table then reaches up to there. Throws
/// Exceptions::SystemError.
RebuiltIndex rebuildIndex(Input& input, IndexSurvey const& own,
                          MXF::Zelm::MXFIO::Partition::MetadataPtr const& metadata);

/// What differs between the table of a file and the rebuilt one. `flagsKnown` says whether the walk read the
/// pictures.
IndexComparison compareIndex(FoundTable const& own, FoundTable const& rebuilt, bool flagsKnown);

} // namespace Zelm
