/// The keys of descriptors and sub-descriptors of the registers that have no class of their own: to make such
/// a set, or to tell one. Their properties are reached by name (MetadataSet::findElement,
/// MetadataSet::labelOf).
#pragma once

#include "MXF/Zelm/KLV/Key.h"

namespace MXF::Zelm::Metadata::Structural::DescriptorKeys {

using namespace KLV::Literals;

// File descriptors
inline constexpr KLV::Key dcTimedTextDescriptor = "060E2B34.02530101.0D010101.01016400"_key;
inline constexpr KLV::Key iabEssenceDescriptor = "060E2B34.02530101.0D010101.01017B00"_key;

// Sub-descriptors: codings of pictures
inline constexpr KLV::Key mpeg4VisualSubDescriptor = "060E2B34.02530101.0D010101.01016800"_key;
inline constexpr KLV::Key avcSubDescriptor = "060E2B34.02530101.0D010101.01016E00"_key;
inline constexpr KLV::Key hevcSubDescriptor = "060E2B34.02530101.0D010101.01018101"_key;
inline constexpr KLV::Key vc2SubDescriptor = "060E2B34.02530101.0D010101.01017400"_key;
inline constexpr KLV::Key vc5BayerPictureEssenceSubDescriptor = "060E2B34.02530101.0D010101.01017600"_key;
inline constexpr KLV::Key vc5CDCIPictureEssenceSubDescriptor = "060E2B34.02530101.0D010101.01017700"_key;
inline constexpr KLV::Key jpegXSSubDescriptor = "060E2B34.02530101.0D010101.01018102"_key;
inline constexpr KLV::Key ffv1PictureSubDescriptor = "060E2B34.02530101.0D010101.01018103"_key;
inline constexpr KLV::Key acesPictureSubDescriptor = "060E2B34.02530101.0D010101.01017900"_key;

// Sub-descriptors: labels of channels and soundfields (SMPTE 377-4)
inline constexpr KLV::Key audioChannelLabelSubDescriptor = "060E2B34.02530101.0D010101.01016B00"_key;
inline constexpr KLV::Key soundfieldGroupLabelSubDescriptor = "060E2B34.02530101.0D010101.01016C00"_key;
inline constexpr KLV::Key groupOfSoundfieldGroupsLabelSubDescriptor =
    "060E2B34.02530101.0D010101.01016D00"_key;
inline constexpr KLV::Key iabSoundfieldLabelSubDescriptor = "060E2B34.02530101.0D010101.01017C00"_key;

// Sub-descriptors: others
inline constexpr KLV::Key dcTimedTextResourceSubDescriptor = "060E2B34.02530101.0D010101.01016500"_key;
inline constexpr KLV::Key containerConstraintsSubDescriptor = "060E2B34.02530101.0D010101.01016700"_key;

} // namespace MXF::Zelm::Metadata::Structural::DescriptorKeys
