/// The descriptors of files that independent programs made.
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/FurtherDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Initialize.h"
#include "MXF/Zelm/Metadata/Structural/Locators.h"
#include "MXF/Zelm/Metadata/Structural/PhysicalDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/RGBAEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/SubDescriptors.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "support/HeaderMetadata.h"

#include <algorithm>
#include <map>
#include <set>

namespace MXF::Zelm::Test {

using namespace Metadata;
using namespace Metadata::Structural;

namespace {

class SampleDescriptors : public SampleTest {
protected:
    void SetUp() override {
        SampleTest::SetUp();
        initialize();
        registerFurtherDescriptors(*dictionary);
    }

    /// Calls `check` for each `Set` of a sample; there must be one.
    template <class Set>
    void forEach(std::string_view file, std::function<void(Set&)> const& check) {
        std::size_t found = 0;
        forEachMetadata(dictionary, [&](PartitionMetadata& metadata, Bytes const&, std::string const& where) {
            SCOPED_TRACE(where);
            for (auto const& [key, plain] : metadata)
                if (auto* const set = dynamic_cast<Set*>(plain);
                    set != nullptr && where.starts_with(file) && ++found != 0)
                    check(*set);
        });
        EXPECT_NE(found, 0u) << file;
    }

    DictionaryPtr const dictionary = ZelmDictionary::standard();
};

template <class Set>
bool isExactly(MetadataSet const& set) {
    return dynamic_cast<Set const*>(&set) != nullptr && set.key() == Set::classKey();
}

/// By the name of the class in the registers.
const std::map<std::u16string, bool (*)(MetadataSet const&)> classes{
    {u"MultipleDescriptor", isExactly<MultipleDescriptor>},
    {u"CDCIDescriptor", isExactly<CDCIEssenceDescriptor>},
    {u"MPEGVideoDescriptor", isExactly<MPEG2VideoDescriptor>},
    {u"RGBADescriptor", isExactly<RGBAEssenceDescriptor>},
    {u"WAVEPCMDescriptor", isExactly<WAVEAudioEssenceDescriptor>},
    {u"AES3PCMDescriptor", isExactly<AES3AudioEssenceDescriptor>},
    {u"JPEG2000SubDescriptor", isExactly<JPEG2000PictureSubDescriptor>},
    {u"NetworkLocator", isExactly<NetworkLocator>},
};

} // namespace

TEST_F(SampleDescriptors, AreOfTheirClasses) {
    std::set<std::u16string> met;
    forEachMetadata(dictionary, [&](PartitionMetadata& metadata, Bytes const&, std::string const& where) {
        for (auto const& [key, set] : metadata) {
            auto const name = set->name();
            auto const known = classes.find(name);
            if (known != classes.end())
                met.insert(name);
            bool const suits = known != classes.end() ? known->second(*set)
                                                      : dynamic_cast<GenericDescriptor*>(set) != nullptr ||
                                                            dynamic_cast<SubDescriptor*>(set) != nullptr;
            EXPECT_TRUE(suits || (known == classes.end() && !name.ends_with(u"Descriptor")))
                << where << " " << Platform::toUtf8(name);
        }
    });
    EXPECT_EQ(met.size(), classes.size());
}

TEST_F(SampleDescriptors, TellPictureAndSoundOfD10) {
    forEach<MultipleDescriptor>("d10-imx50-op1a.mxf", [](MultipleDescriptor& multiple) {
        auto const files = multiple.fileDescriptors();
        ASSERT_EQ(files.size(), 2u);
        auto const& picture = dynamic_cast<MPEG2VideoDescriptor&>(*files[0]);
        EXPECT_EQ(picture.frameLayout()->value(), CDCIEssenceDescriptor::separateFields);
        EXPECT_EQ(picture.storedHeight()->value(), 304u);
        EXPECT_EQ(picture.displayYOffset()->value(), 16);
        EXPECT_EQ(picture.aspectRatio()->toString(), u"4/3");
        EXPECT_EQ(picture.videoLineMap()->at<Types::Int32>(1).value(), 320);
        EXPECT_EQ(picture.bitRate()->value(), 50004000u);
        EXPECT_EQ(picture.sampledHeight(), nullptr);
        auto const& sound = dynamic_cast<AES3AudioEssenceDescriptor&>(*files[1]);
        EXPECT_EQ(sound.avgBps()->value(), 576000u);
        EXPECT_EQ(sound.channelCount()->value(), 4u);
        EXPECT_TRUE(sound.locked()->value());
    });
}

TEST_F(SampleDescriptors, TellTheCodestreamOfJPEG2000) {
    forEach<RGBAEssenceDescriptor>("jpeg2000-op1a-final-footer.mxf", [](RGBAEssenceDescriptor& picture) {
        EXPECT_EQ(picture.pixelLayout()->toString(), u"R:10 G:10 B:10");
        EXPECT_EQ(picture.componentMaxRef()->value(), 1023u);
        auto const subDescriptors = picture.subDescriptors();
        ASSERT_EQ(subDescriptors.size(), 1u);
        auto const& codestream = dynamic_cast<JPEG2000PictureSubDescriptor&>(*subDescriptors.front());
        EXPECT_EQ(codestream.rsiz()->value(), 259u);
        EXPECT_EQ(codestream.yTsiz()->value(), 1080u);
        EXPECT_EQ(codestream.pictureComponentSizing()->at<Types::J2KPictureComponent>(2).depth(), 10u);
        EXPECT_EQ(codestream.codingStyleDefault()->decompositionLevels(), 5u);
        EXPECT_EQ(codestream.j2cLayout()->components().size(), 3u);
    });
}

TEST_F(SampleDescriptors, TellWhatHasNoClassByName) {
    std::vector<std::string> symbols;
    forEach<SubDescriptor>("dms-text-no-essence.mxf", [&](SubDescriptor& set) {
        if (auto const* const profile = set.value<Types::UInt8>(u"AVCProfile")) {
            EXPECT_EQ(profile->value(), 122u);
            EXPECT_EQ(set.value<Types::UInt32>(u"AVCMaximumBitRate")->value(), 111820800u);
        } else {
            symbols.push_back(Platform::toUtf8(set.value<Types::UTF16String>(u"MCATagSymbol")->value()));
        }
    });
    EXPECT_EQ(std::count(symbols.begin(), symbols.end(), "chLFE"), 2);
    forEach<GenericSoundEssenceDescriptor>("iab-generic-streams.mxf", [](auto& immersive) {
        EXPECT_EQ(immersive.containerDuration()->value(), 5);
        EXPECT_EQ(immersive.quantizationBits()->value(), 24u);
    });
    forEach<PhysicalDescriptor>("vc3-opatom-indirect-values.mxf", [](PhysicalDescriptor& import) {
        ASSERT_EQ(import.locators().size(), 1u);
        auto const& place = dynamic_cast<NetworkLocator&>(*import.locators().front());
        EXPECT_TRUE(place.urlString()->value().ends_with(u"1920x1080-red.tif"));
    });
}

} // namespace MXF::Zelm::Test
