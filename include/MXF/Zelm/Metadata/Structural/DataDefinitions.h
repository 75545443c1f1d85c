/// The labels that tell what a track and its components hold (SMPTE 377M, data definitions; RP 224).
#pragma once

#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {

namespace DataDefinitions {

using namespace KLV::Literals;

inline constexpr KLV::Key timecode = "060E2B34.04010101.01030201.01000000"_key;
inline constexpr KLV::Key timecodeWithUserBits = "060E2B34.04010101.01030201.02000000"_key;
inline constexpr KLV::Key dateTimecode = "060E2B34.04010101.01030201.03000000"_key; ///< SMPTE 309M
inline constexpr KLV::Key descriptiveMetadata = "060E2B34.04010101.01030201.10000000"_key;
inline constexpr KLV::Key picture = "060E2B34.04010101.01030202.01000000"_key;
inline constexpr KLV::Key sound = "060E2B34.04010101.01030202.02000000"_key;
inline constexpr KLV::Key data = "060E2B34.04010101.01030202.03000000"_key;

/// What some older files carry instead; only for reading.
inline constexpr KLV::Key legacyPicture = "807D0060.08143E6F.6F3C8CE1.6CEF11D2"_key;
inline constexpr KLV::Key legacySound = "807D0060.08143E6F.78E1EBE1.6CEF11D2"_key;
inline constexpr KLV::Key legacyTimecode = "807F0060.08143E6F.7F275E81.77E511D2"_key;

} // namespace DataDefinitions

/// Picture, sound or data, whatever the version (byte 7).
MXFZELM_EXPORT bool isEssenceDataDefinition(Types::UniversalLabel const& label);

/// Any of the kinds of timecode, whatever the version.
MXFZELM_EXPORT bool isTimecodeDataDefinition(Types::UniversalLabel const& label);

} // namespace MXF::Zelm::Metadata::Structural
