/// The codes of variable length in the headers of AVC (ISO/IEC 14496-10, 9.1).
#pragma once

#include "MXF/Zelm/DataIO/BitSliceReader.h"

namespace MXF::Zelm::Essence::AVC {

/// ue(v). Throws Exceptions::InvalidValue for more than `most`, which is the standard's limit of the field,
/// and Exceptions::InvalidLength.
std::uint32_t readUnsigned(DataIO::BitSliceReader& bits, std::uint32_t most);

/// se(v), of any value that 32 bits hold. Throws as `readUnsigned` does.
std::int32_t readSigned(DataIO::BitSliceReader& bits);

} // namespace MXF::Zelm::Essence::AVC
