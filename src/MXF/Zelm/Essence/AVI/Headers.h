/// The header list of an AVI file.
#pragma once

#include "MXF/Zelm/Essence/AVI/RIFFFile.h"

namespace MXF::Zelm::Essence::AVI {

/// A stream's headers, and where its super index is.
struct StreamEntry {
    StreamHeader header = {};
    std::optional<Range> superIndex = {};
};

struct Headers {
    MainHeader main = {};
    std::vector<StreamEntry> streams = {};
};

/// Reads the list in `range`. At most 100 streams, as chunks have two digits for them.
Headers readHeaders(RIFFFile const& file, Range const& range);

} // namespace MXF::Zelm::Essence::AVI
