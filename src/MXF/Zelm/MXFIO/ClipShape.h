/// How large the edit units in a clip are, as far as anything tells: for clips without an index table, of
/// files that were cut off.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/MXFIO/EssenceContainer.h"

namespace MXF::Zelm::MXFIO {

/// Edit units of one size in a clip.
struct ClipUnitSize {
    std::uint64_t bytes = 0; ///< 0 when it is not known
    Templates::Rational<int> rate = {};
};

/// The value of an element, which may be a clip.
struct ElementPlace {
    KLV::Key key = {};
    std::uint64_t offset = 0;   ///< of its first byte, in the source
    std::uint64_t length = 0;   ///< bytes that are there
    std::uint64_t declared = 0; ///< bytes that it was to have
};

/// The size of the edit units in a clip, for an index table: by its samples; by the bytes that it was to have
/// and the track's duration; or because what stands at its start comes again at even distances. Reads some
/// MiB at most.
ClipUnitSize clipUnitSize(DataIO::RandomAccessDataSource& source, EssenceContainer const& container,
                          ElementPlace const& clip);

/// Whether an element that is labelled as an edit unit is a clip of several: by its key (SMPTE 379M and the
/// mappings), by its samples, or by itself, as above.
bool holdsSeveralUnits(DataIO::RandomAccessDataSource& source, EssenceContainer const& container,
                       ElementPlace const& element);

} // namespace MXF::Zelm::MXFIO
