#include "MXF/Zelm/IndexTables/IndexTableLocalTag.h"

namespace MXF::Zelm::IndexTables {

using Types::LocalTag;

namespace {

/// One tag, made at the first call.
template <std::uint16_t Number>
LocalTag const& tag() {
    static LocalTag const made(Number);
    return made;
}

} // namespace

LocalTag const& IndexTableLocalTag::instanceID() { return tag<0x3C0A>(); }
LocalTag const& IndexTableLocalTag::editUnitByteCount() { return tag<0x3F05>(); }
LocalTag const& IndexTableLocalTag::indexSID() { return tag<0x3F06>(); }
LocalTag const& IndexTableLocalTag::bodySID() { return tag<0x3F07>(); }
LocalTag const& IndexTableLocalTag::sliceCount() { return tag<0x3F08>(); }
LocalTag const& IndexTableLocalTag::deltaEntryArray() { return tag<0x3F09>(); }
LocalTag const& IndexTableLocalTag::indexEntryArray() { return tag<0x3F0A>(); }
LocalTag const& IndexTableLocalTag::indexEditRate() { return tag<0x3F0B>(); }
LocalTag const& IndexTableLocalTag::indexStartPosition() { return tag<0x3F0C>(); }
LocalTag const& IndexTableLocalTag::indexDuration() { return tag<0x3F0D>(); }
LocalTag const& IndexTableLocalTag::posTableCount() { return tag<0x3F0E>(); }

} // namespace MXF::Zelm::IndexTables
