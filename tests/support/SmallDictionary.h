/// A dictionary of four classes, for tests of header metadata.
///
///     label              tag      name       type                                        class
///     instanceUID        3C.0A    InstanceUID  UUID                                      all
///     modified           3B.02    Modified     Timestamp                                 Preface
///     storage            3B.03    Storage      strong reference to Storage, required     Preface
///     packages           19.01    Packages     batch of strong references to Thing       Storage
///     title              dynamic  Title        UTF16String                               Thing
///     lines              dynamic  Lines        array of Int32, 2 to 3 members            Thing
///     next               dynamic  Next         strong reference to any class             Thing
///     friends            dynamic  Friends      batch of weak references to Thing         Thing
///     stranger           dynamic  Stranger     UInt8                                     none
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

using namespace KLV::Literals;

inline constexpr KLV::Key prefaceKey = "060E2B34.02530101.0D010101.01012F00"_key;
inline constexpr KLV::Key storageKey = "060E2B34.02530101.0D010101.01011800"_key;
inline constexpr KLV::Key thingKey = "060E2B34.02530101.0D010101.01013600"_key;
inline constexpr KLV::Key byteTagsKey = "060E2B34.02230101.0D010101.01013700"_key; // 1-byte tags and lengths
inline constexpr KLV::Key unknownKey = "060E2B34.02530101.0D010101.01017F00"_key;

inline constexpr KLV::Key instanceUID = "060E2B34.01010101.01011502.00000000"_key;
inline constexpr KLV::Key modified = "060E2B34.01010102.07020110.02040000"_key;
inline constexpr KLV::Key storage = "060E2B34.01010102.06010104.02010000"_key;
inline constexpr KLV::Key packages = "060E2B34.01010102.06010104.05010000"_key;
inline constexpr KLV::Key title = "060E2B34.01010103.01070102.01000000"_key;
inline constexpr KLV::Key lines = "060E2B34.01010102.04010302.05000000"_key;
inline constexpr KLV::Key next = "060E2B34.01010102.06010104.06070000"_key;
inline constexpr KLV::Key friends = "060E2B34.01010104.06010103.0B000000"_key;
inline constexpr KLV::Key stranger = "060E2B34.01010105.0E0B0102.01010000"_key;

Metadata::PartitionDictionary::DictionaryPtr smallDictionary();

/// Empty header metadata over that dictionary. Its primer holds the dynamic labels from tag 80.01 on, in the
/// order of the table.
std::unique_ptr<Metadata::PartitionMetadata>
emptyMetadata(Metadata::PartitionDictionary::DictionaryPtr const& dictionary = smallDictionary());

/// A UUID whose last byte tells it apart.
inline Types::UUID uid(unsigned char last) {
    Types::UUID uuid(hex("00112233 44554677 8899AABB CCDDEE00").data());
    uuid[15] = last;
    return uuid;
}

/// An item of a set: tag, 2-byte length, value.
Bytes item(std::uint16_t tag, Bytes const& value);

/// The item that gives a set the instance UID `uid(last)`.
Bytes uidItem(unsigned char last);

/// Loads one packet; null when it was kept dark.
Metadata::MetadataSet* load(Metadata::PartitionMetadata& metadata, Bytes const& packet);

} // namespace MXF::Zelm::Test
