// The standard dictionary against facts of SMPTE 377M and the registers, and its inner consistency.
#include "MXF/ZelmDictionary/Dictionary.h"

#include "MXF/Zelm/Types/Integers.h"

#include <gtest/gtest.h>

namespace {

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;
using MetaMetadata::AttributeRequiredStatus;
using MetaMetadata::Dictionary;
namespace Identifiers = Types::Identifiers;

Dictionary const& dictionary() {
    static auto const standard = MXF::ZelmDictionary::standard();
    return *standard;
}

struct Fact {
    KLV::Key set;
    KLV::Key element;
    const char16_t* name;
    Identifiers::Identifier type;
    Identifiers::Identifier memberType; ///< Unknown where there are no members
    std::uint16_t tag;                  ///< 0: dynamic
    AttributeRequiredStatus::Status status;
    const char16_t* distinguished; ///< null: none
};

using enum AttributeRequiredStatus::Status;

constexpr auto preface = "060E2B34.02530101.0D010101.01012F00"_key;
constexpr auto identification = "060E2B34.02530101.0D010101.01013000"_key;
constexpr auto contentStorage = "060E2B34.02530101.0D010101.01011800"_key;
constexpr auto sourcePackage = "060E2B34.02530101.0D010101.01013700"_key;
constexpr auto sequence = "060E2B34.02530101.0D010101.01010F00"_key;
constexpr auto sourceClip = "060E2B34.02530101.0D010101.01011100"_key;
constexpr auto cdci = "060E2B34.02530101.0D010101.01012800"_key;
constexpr auto rgba = "060E2B34.02530101.0D010101.01012900"_key;
constexpr auto mpeg = "060E2B34.02530101.0D010101.01015100"_key;
constexpr auto wave = "060E2B34.02530101.0D010101.01014800"_key;
constexpr auto aes3 = "060E2B34.02530101.0D010101.01014700"_key;
constexpr auto jpeg2000 = "060E2B34.02530101.0D010101.01015A00"_key;
constexpr auto channelLabel = "060E2B34.02530101.0D010101.01016B00"_key;
constexpr auto indexSegment = "060E2B34.02530101.0D010201.01100100"_key;
constexpr auto titles = "060E2B34.02530101.0D010401.01100100"_key;

constexpr auto none = Identifiers::Unknown;

Fact const facts[] = {
    {preface, "060E2B34.01010101.01011502.00000000"_key, u"InstanceID", Identifiers::UUID, none, 0x3C0A,
     Required, nullptr},
    {preface, "060E2B34.01010102.07020110.02040000"_key, u"FileLastModified", Identifiers::Timestamp, none,
     0x3B02, Required, nullptr},
    {preface, "060E2B34.01010102.06010104.02010000"_key, u"ContentStorageObject",
     Identifiers::StrongReference, none, 0x3B03, Required, nullptr},
    {preface, "060E2B34.01010102.03010201.05000000"_key, u"FormatVersion", Identifiers::VersionType, none,
     0x3B05, Required, nullptr},
    {preface, "060E2B34.01010102.06010104.06040000"_key, u"IdentificationList", Identifiers::Array,
     Identifiers::StrongReference, 0x3B06, EncoderRequired, nullptr},
    {preface, "060E2B34.01010104.06010104.01080000"_key, u"PrimaryPackage", Identifiers::WeakReference, none,
     0x3B08, Optional, nullptr},
    {preface, "060E2B34.01010105.01020210.02010000"_key, u"EssenceContainers", Identifiers::Batch,
     Identifiers::UniversalLabel, 0x3B0A, Required, nullptr},
    {identification, "060E2B34.01010102.05200701.01000000"_key, u"GenerationID", Identifiers::UUID, none,
     0x3C09, Required, nullptr},
    {identification, "060E2B34.01010102.05200701.0A000000"_key, u"ToolkitVersion",
     Identifiers::ProductVersion, none, 0x3C07, Optional, nullptr},
    {contentStorage, "060E2B34.01010102.06010104.05010000"_key, u"Packages", Identifiers::Batch,
     Identifiers::StrongReference, 0x1901, Required, nullptr},
    {sourcePackage, "060E2B34.01010101.01011510.00000000"_key, u"PackageID", Identifiers::UMID32, none,
     0x4401, Required, nullptr},
    {sourcePackage, "060E2B34.01010102.06010104.02030000"_key, u"EssenceDescription",
     Identifiers::StrongReference, none, 0x4701, DecoderRequired, nullptr},
    {sequence, "060E2B34.01010102.04070100.00000000"_key, u"ComponentDataDefinition",
     Identifiers::UniversalLabel, none, 0x0201, Required, nullptr},
    {sequence, "060E2B34.01010102.07020201.01030000"_key, u"ComponentLength", Identifiers::Length, none,
     0x0202, BestEffort, u"-1"},
    {sourceClip, "060E2B34.01010102.07020103.01040000"_key, u"StartPosition", Identifiers::Position, none,
     0x1201, Required, nullptr},
    {cdci, "060E2B34.01010101.04010301.04000000"_key, u"FrameLayout", Identifiers::UInt8, none, 0x320C,
     BestEffort, u"255"},
    {cdci, "060E2B34.01010102.04010302.05000000"_key, u"VideoLineMap", Identifiers::Array, Identifiers::Int32,
     0x320D, BestEffort, u"[0][0]"},
    {cdci, "060E2B34.01010101.04010101.01000000"_key, u"ImageAspectRatio", Identifiers::Rational, none,
     0x320E, BestEffort, u"0/0"},
    {cdci, "060E2B34.01010105.04050113.00000000"_key, u"SignalStandard", Identifiers::SignalStandard, none,
     0x3215, Optional, nullptr},
    {cdci, "060E2B34.01010102.04010503.0A000000"_key, u"ComponentDepth", Identifiers::UInt32, none, 0x3301,
     BestEffort, u"0"},
    {cdci, "060E2B34.01010101.04060102.00000000"_key, u"EssenceLength", Identifiers::Length, none, 0x3002,
     Optional, u"-1"},
    {rgba, "060E2B34.01010102.04010503.06000000"_key, u"PixelLayout", Identifiers::RGBALayout, none, 0x3401,
     BestEffort, u"none"},
    {rgba, "060E2B34.01010105.04010404.01000000"_key, u"ScanningDirection", Identifiers::Orientation, none,
     0x3405, Optional, nullptr},
    {rgba, "060E2B34.0101010E.04200401.01010000"_key, u"MasteringDisplayPrimaries", Identifiers::DataValue,
     none, 0, Optional, nullptr},
    {mpeg, "060E2B34.01010105.04010602.01020000"_key, u"SingleSequence", Identifiers::Boolean, none, 0,
     Optional, nullptr},
    {wave, "060E2B34.01010105.04020302.01000000"_key, u"BlockAlign", Identifiers::UInt16, none, 0x3D0A,
     Required, nullptr},
    {wave, "060E2B34.01010108.04020301.0E000000"_key, u"PeakEnvelopeData", Identifiers::DataStream, none,
     0x3D31, Optional, nullptr},
    {aes3, "060E2B34.01010105.04020303.05000000"_key, u"AverageBytesPerSecond", Identifiers::UInt32, none,
     0x3D09, Required, nullptr},
    {aes3, "060E2B34.01010105.04020501.03000000"_key, u"FixedChannelStatusData", Identifiers::Array,
     Identifiers::UInt8, 0x3D11, Optional, nullptr},
    {jpeg2000, "060E2B34.0101010A.04010603.0B000000"_key, u"PictureComponentSizing", Identifiers::Array,
     Identifiers::J2KPictureComponent, 0, Required, nullptr},
    {jpeg2000, "060E2B34.0101010A.04010603.0C000000"_key, u"CodingStyleDefault",
     Identifiers::J2KCodingStyleDefault, none, 0, Optional, nullptr},
    {channelLabel, "060E2B34.0101010E.01030701.01000000"_key, u"MCALabelDictionaryID",
     Identifiers::UniversalLabel, none, 0, Required, nullptr},
    {channelLabel, "060E2B34.0101010E.01030701.05000000"_key, u"MCALinkID", Identifiers::UUID, none, 0,
     Required, nullptr},
    {channelLabel, "060E2B34.0101010D.03010102.03150000"_key, u"RFC5646SpokenLanguage",
     Identifiers::ISO7String, none, 0, Optional, nullptr},
    {indexSegment, "060E2B34.01010105.05300406.00000000"_key, u"IndexEditRate", Identifiers::Rational, none,
     0x3F0B, Required, nullptr},
    {titles, "060E2B34.01010103.01050201.00000000"_key, u"MainTitle", Identifiers::UTF16String, none, 0,
     Optional, nullptr},
};

Identifiers::Identifier memberType(MetaMetadata::MetaElement const& element) {
    auto const* const collection = dynamic_cast<MetaMetadata::MetaCollectionElement const*>(&element);
    return collection != nullptr ? collection->dataSubType() : none;
}

TEST(Standard, HoldsTheFactsOfTheStandards) {
    for (auto const& fact : facts) {
        SCOPED_TRACE(testing::Message() << fact.set << " " << fact.element);
        auto const* const set = dictionary().find(fact.set);
        ASSERT_NE(set, nullptr);
        auto const attribute = set->findMetaAttribute(fact.element);
        ASSERT_TRUE(attribute);
        auto const& element = attribute->metaElement();
        EXPECT_EQ(element.getProperty(u"name"), fact.name);
        EXPECT_EQ(element.dataType(), fact.type);
        EXPECT_EQ(memberType(element), fact.memberType);
        EXPECT_EQ(attribute->staticLocalTag() != nullptr ? attribute->staticLocalTag()->value() : 0,
                  fact.tag);
        EXPECT_EQ(attribute->requiredStatus(), fact.status);
        auto const* const distinguished = attribute->getDistinguishedValue();
        ASSERT_EQ(distinguished != nullptr, fact.distinguished != nullptr);
        if (distinguished != nullptr) {
            EXPECT_EQ(distinguished->toString(), fact.distinguished);
        }
    }
}

TEST(Standard, InheritedAttributesAreShared) {
    auto const instanceId = "060E2B34.01010101.01011502.00000000"_key;
    auto const interchangeObject = "060E2B34.02530101.0D010101.01010100"_key;
    auto const attribute = dictionary().find(interchangeObject)->findMetaAttribute(instanceId);
    ASSERT_TRUE(attribute);
    for (auto const& key : {preface, cdci, mpeg, channelLabel, titles})
        EXPECT_EQ(dictionary().find(key)->findMetaAttribute(instanceId), attribute) << key;
}

TEST(Standard, ReferencesAllowSubclasses) {
    auto const allows = [](KLV::Key const& element, KLV::Key const& target) {
        return dynamic_cast<MetaMetadata::MetaReferenceHolder const&>(*dictionary().findMetaElement(element))
            .allows(target);
    };
    auto const fileDescriptors = "060E2B34.01010104.06010104.060B0000"_key;
    auto const subDescriptors = "060E2B34.01010109.06010104.06100000"_key;
    EXPECT_TRUE(allows(fileDescriptors, mpeg));
    EXPECT_TRUE(allows(fileDescriptors, aes3));
    EXPECT_FALSE(allows(fileDescriptors, preface));
    EXPECT_TRUE(allows(subDescriptors, channelLabel));
    EXPECT_FALSE(allows(subDescriptors, mpeg));
}

TEST(Standard, EnumerationsHaveNames) {
    auto const& layout = dynamic_cast<MetaMetadata::MetaSimpleElement const&>(
        *dictionary().findMetaElement("060E2B34.01010101.04010301.04000000"_key));
    EXPECT_EQ(*layout.enumerationNames()->findName(Types::UInt8(std::uint8_t{1})), u"SeparateFields");
    auto const& curve = dynamic_cast<MetaMetadata::MetaSimpleElement const&>(
        *dictionary().findMetaElement("060E2B34.01010102.04010201.01010200"_key));
    Types::UniversalLabel const bt709("060E2B34.04010101.04010101.01020000"_key);
    EXPECT_EQ(*curve.enumerationNames()->findName(bt709), u"ITU-R BT.709 Transfer Characteristic");
}

TEST(Standard, PropertiesOfClasses) {
    auto const* const video = dictionary().find(mpeg);
    EXPECT_EQ(video->getProperty(u"name"), u"MPEGVideoDescriptor");
    EXPECT_EQ(video->getProperty(u"parent"), u"CDCIDescriptor");
    EXPECT_EQ(video->getProperty(u"name377"), u"MPEG2VideoDescriptor");
    EXPECT_EQ(video->findProperty(u"abstract"), nullptr);
    EXPECT_EQ(dictionary().find("060E2B34.02530101.0D010101.01013800"_key)->getProperty(u"abstract"),
              u"true");
}

// Every class of the dictionary: its attributes are those of the dictionary's elements, under the tags that
// the dictionary gives.
TEST(Standard, IsConsistent) {
    std::size_t classes = 0;
    for (auto at = dictionary().metaMetadataSetBegin(); at != dictionary().metaMetadataSetEnd();
         ++at, ++classes) {
        EXPECT_TRUE(KLV::isMXFDefaultLocalSet(at->first)) << at->first;
        for (auto each = at->second.metaAttributesBegin(); each != at->second.metaAttributesEnd(); ++each) {
            auto const& label = (*each)->metaElement().universalLabel();
            EXPECT_EQ(dictionary().findMetaElement(label), &(*each)->metaElement());
            if (auto const* const tag = (*each)->staticLocalTag()) {
                EXPECT_EQ(*dictionary().find(label), *tag);
            }
        }
    }
    EXPECT_GT(classes, 300U);
}

} // namespace
