/// Keys and labels of SMPTE 377M that the header metadata needs to know of itself.
#pragma once

#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata {

using namespace KLV::Literals;

inline constexpr KLV::Key prefaceKey = "060E2B34.02530101.0D010101.01012F00"_key;

inline constexpr KLV::Key instanceUIDLabel = "060E2B34.01010101.01011502.00000000"_key;
inline constexpr KLV::Key generationUIDLabel = "060E2B34.01010102.05200701.08000000"_key;
inline constexpr KLV::Key lastModifiedDateLabel = "060E2B34.01010102.07020110.02040000"_key;
inline constexpr KLV::Key packageModifiedDateLabel = "060E2B34.01010102.07020110.02050000"_key;
inline constexpr KLV::Key contentStorageLabel = "060E2B34.01010102.06010104.02010000"_key;
inline constexpr KLV::Key packagesLabel = "060E2B34.01010102.06010104.05010000"_key;

} // namespace MXF::Zelm::Metadata
