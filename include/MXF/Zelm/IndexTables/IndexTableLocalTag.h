/// The local tags of an index table segment's properties. They are fixed by SMPTE 377M: no primer is asked.
#pragma once

#include "MXF/Zelm/Types/LocalTag.h"

namespace MXF::Zelm::IndexTables {

class MXFZELM_EXPORT IndexTableLocalTag {
public:
    static Types::LocalTag const& instanceID();         // 3C.0A
    static Types::LocalTag const& editUnitByteCount();  // 3F.05
    static Types::LocalTag const& indexSID();           // 3F.06
    static Types::LocalTag const& bodySID();            // 3F.07
    static Types::LocalTag const& sliceCount();         // 3F.08
    static Types::LocalTag const& deltaEntryArray();    // 3F.09
    static Types::LocalTag const& indexEntryArray();    // 3F.0A
    static Types::LocalTag const& indexEditRate();      // 3F.0B
    static Types::LocalTag const& indexStartPosition(); // 3F.0C
    static Types::LocalTag const& indexDuration();      // 3F.0D
    static Types::LocalTag const& posTableCount();      // 3F.0E
};

} // namespace MXF::Zelm::IndexTables
