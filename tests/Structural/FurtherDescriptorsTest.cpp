/// Descriptors without a class of their own: reached by name, and made as what they inherit from.
#include "MXF/Zelm/Metadata/Structural/FurtherDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorKeys.h"
#include "MXF/Zelm/Metadata/Structural/Initialize.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/SubDescriptors.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "support/HeaderMetadata.h"

namespace MXF::Zelm::Test {

using namespace Metadata;
using namespace Metadata::Structural;

TEST(PropertiesByName, HaveTheNamesOfTheRegistersAndOf377M) {
    auto const metadata = metadataOver(ZelmDictionary::standard());
    auto& set = metadata->createMetadataSet(FileDescriptor::classKey());
    EXPECT_EQ(set.findElement(u"EssenceLength"), nullptr);
    auto const& element = set.value(set.labelOf(u"EssenceLength"), Types::Length(7));
    EXPECT_EQ(set.labelOf(u"ContainerDuration"), set.labelOf(u"EssenceLength"));
    EXPECT_EQ(set.findElement(u"EssenceLength"), &element);
    EXPECT_EQ(set.findElement(u"ContainerDuration"), &element);
    EXPECT_EQ(set.value<Types::Length>(u"ContainerDuration")->value(), 7);
    EXPECT_EQ(set.value<Types::UInt32>(u"ContainerDuration"), nullptr);
    EXPECT_EQ(thrownBy<Exceptions::InvalidElement>([&] { set.labelOf(u"AVCLevel"); }),
              "Sets of the class 'FileDescriptor' have no property 'AVCLevel'");
}

TEST(DescriptorKeys, AreThoseOfTheRegisters) {
    namespace Keys = DescriptorKeys;
    std::pair<KLV::Key, std::u16string_view> const rows[] = {
        {Keys::dcTimedTextDescriptor, u"DCTimedTextDescriptor"},
        {Keys::iabEssenceDescriptor, u"IABEssenceDescriptor"},
        {Keys::mpeg4VisualSubDescriptor, u"MPEG4VisualSubDescriptor"},
        {Keys::avcSubDescriptor, u"AVCSubDescriptor"},
        {Keys::hevcSubDescriptor, u"HEVCSubDescriptor"},
        {Keys::vc2SubDescriptor, u"VC2SubDescriptor"},
        {Keys::vc5BayerPictureEssenceSubDescriptor, u"VC5BayerPictureEssenceSubDescriptor"},
        {Keys::vc5CDCIPictureEssenceSubDescriptor, u"VC5CDCIPictureEssenceSubDescriptor"},
        {Keys::jpegXSSubDescriptor, u"JPEGXSSubDescriptor"},
        {Keys::ffv1PictureSubDescriptor, u"FFV1PictureSubDescriptor"},
        {Keys::acesPictureSubDescriptor, u"ACESPictureSubDescriptor"},
        {Keys::audioChannelLabelSubDescriptor, u"AudioChannelLabelSubDescriptor"},
        {Keys::soundfieldGroupLabelSubDescriptor, u"SoundfieldGroupLabelSubDescriptor"},
        {Keys::groupOfSoundfieldGroupsLabelSubDescriptor, u"GroupOfSoundfieldGroupsLabelSubDescriptor"},
        {Keys::iabSoundfieldLabelSubDescriptor, u"IABSoundfieldLabelSubDescriptor"},
        {Keys::dcTimedTextResourceSubDescriptor, u"DCTimedTextResourceSubDescriptor"},
        {Keys::containerConstraintsSubDescriptor, u"ContainerConstraintsSubDescriptor"},
    };
    auto const dictionary = ZelmDictionary::standard();
    for (auto const& [key, name] : rows)
        EXPECT_EQ(dictionary->find(key)->getProperty(u"name"), name);
}

TEST(FurtherDescriptors, AreMadeAsWhatTheyInheritFrom) {
    auto const dictionary = ZelmDictionary::standard();
    ZelmDictionary::load(*dictionary, R"(zelm-dictionary 1
class 060e2b34.02530105.0e7f0102.02000000 StationPictureDescriptor : CDCIDescriptor
class 060e2b34.02530105.0e7f0102.03000000 StationReplayDescriptor : StationPictureDescriptor
class 060e2b34.02530105.0e7f0102.04000000 Shelf : InterchangeObject
)",
                         "station.zdict");
    auto const metadata = metadataOver(dictionary);
    initialize();
    registerFurtherDescriptors(*dictionary);
    auto const made = [&](KLV::Key const& key) { return &metadata->createMetadataSet(key); };

    using namespace KLV::Literals;
    constexpr KLV::Key replayKey = "060E2B34.02530105.0E7F0102.03000000"_key;
    auto* const picture = dynamic_cast<CDCIEssenceDescriptor*>(made(replayKey));
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->key(), replayKey);
    picture->frameLayout(Types::UInt8(picture->segmentedFrame));
    EXPECT_EQ(picture->frameLayout()->value(), 4);
    picture->videoLineMap(7, 320);
    EXPECT_EQ(picture->videoLineMap()->toString(), u"[7][320]");
    EXPECT_NE(dynamic_cast<GenericSoundEssenceDescriptor*>(made(DescriptorKeys::iabEssenceDescriptor)),
              nullptr);
    EXPECT_NE(dynamic_cast<GenericDataEssenceDescriptor*>(made(DescriptorKeys::dcTimedTextDescriptor)),
              nullptr);
    EXPECT_NE(dynamic_cast<SubDescriptor*>(made(DescriptorKeys::avcSubDescriptor)), nullptr);
    EXPECT_NE(dynamic_cast<JPEG2000PictureSubDescriptor*>(made(JPEG2000PictureSubDescriptor::classKey())),
              nullptr);
    MetadataSet const& shelf = *made("060E2B34.02530105.0E7F0102.04000000"_key);
    EXPECT_EQ(typeid(shelf), typeid(MetadataSet));
}

} // namespace MXF::Zelm::Test
