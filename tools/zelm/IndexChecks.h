/// Holds the index tables of a file against each other, the essence and the header metadata (SMPTE 377M).
#pragma once

#include "IndexSurvey.h"

namespace Zelm {

struct IndexDisagreement {
    std::optional<std::uint32_t> indexSID, bodySID;
    std::optional<std::uint64_t> offset; ///< of the segment in the file; none when it is about a whole table
    std::string message;
};

/// What does not agree, table by table. `metadata` may be null. Throws Exceptions::SystemError.
std::vector<IndexDisagreement> checkIndex(Input& input, IndexSurvey const& survey,
                                          MXF::Zelm::Metadata::PartitionMetadata const* metadata);

} // namespace Zelm
