/// The properties of the structural sets (SMPTE 377M), grouped by the class that brings them in. Include this
/// for labels: to ask an index of values, or to reach a property of a plain set.
#pragma once

#include "MXF/Zelm/Metadata/Structural/Property.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UUID.h"
#include "MXF/Zelm/Types/Versions.h"

namespace MXF::Zelm::Metadata::Structural::Properties {

using namespace KLV::Literals;

// InterchangeObject
inline constexpr Property<Types::UUID> instanceUID{"060E2B34.01010101.01011502.00000000"_key};
inline constexpr Property<Types::UUID> generationUID{"060E2B34.01010102.05200701.08000000"_key};

// Identification
inline constexpr Property<Types::UTF16String> companyName{"060E2B34.01010102.05200701.02010000"_key};
inline constexpr Property<Types::UTF16String> productName{"060E2B34.01010102.05200701.03010000"_key};
inline constexpr Property<Types::ProductVersion> productVersion{"060E2B34.01010102.05200701.04000000"_key};
inline constexpr Property<Types::UTF16String> versionString{"060E2B34.01010102.05200701.05010000"_key};
inline constexpr Property<Types::UUID> productUID{"060E2B34.01010102.05200701.07000000"_key};
inline constexpr Property<Types::Timestamp> modificationDate{"060E2B34.01010102.07020110.02030000"_key};
inline constexpr Property<Types::ProductVersion> toolkitVersion{"060E2B34.01010102.05200701.0A000000"_key};
inline constexpr Property<Types::UTF16String> platform{"060E2B34.01010102.05200701.06010000"_key};
inline constexpr Property<Types::UUID> thisGenerationUID{"060E2B34.01010102.05200701.01000000"_key};

} // namespace MXF::Zelm::Metadata::Structural::Properties
