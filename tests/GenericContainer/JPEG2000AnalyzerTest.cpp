#include "MXF/Zelm/GenericContainer/Analyzers/JPEG2000Analyzer.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/RGBAEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/SubDescriptors.h"
#include "support/AnalyzerPackage.h"
#include "support/Codestream.h"

namespace MXF::Zelm::Test {

using namespace Metadata::Structural;
using GenericContainer::EditUnit;
using GenericContainer::JPEG2000Analyzer;
using GenericContainer::JPEG2000Options;

namespace {

JPEG2000Options const at24 = {.editRate = {24, 1}};

std::shared_ptr<DataIO::SliceSource> sourceOf(Bytes const& bytes) {
    return std::make_shared<DataIO::BufferSliceSource>(bytes.data(), bytes.size());
}

/// Each of the bytes is a file.
std::unique_ptr<JPEG2000Analyzer> analyzerOf(std::vector<Bytes> files) {
    auto next = [files = std::move(files), i = std::size_t{0}]() mutable {
        return i < files.size() ? sourceOf(files[i++]) : nullptr;
    };
    return std::make_unique<JPEG2000Analyzer>(std::move(next), at24);
}

/// With other capabilities.
Bytes withProfile(unsigned char high, unsigned char low) {
    Bytes bytes = codestream();
    bytes[6] = high;
    bytes[7] = low;
    return bytes;
}

} // namespace

TEST(JPEG2000Analyzer, DescribesRgb) {
    JPEG2000Analyzer analyzer(sourceOf(codestream() + codestream()), at24);
    ASSERT_TRUE(analyzer.preload());
    AnalyzerPackage package;
    auto& descriptor = package.describedBy<RGBAEssenceDescriptor>(analyzer);
    EXPECT_EQ(descriptor.pixelLayout()->toString(), u"R:10 G:10 B:10");
    EXPECT_EQ(*descriptor.componentMaxRef(), 1023u);
    EXPECT_EQ(descriptor.aspectRatio()->value(), (Templates::Rational<int>{2, 1}));
    EXPECT_EQ(descriptor.essenceContainer()->toString(), u"urn:smpte:ul:060e2b34.04010107.0d010301.020c0100");
    ASSERT_EQ(descriptor.subDescriptors().size(), 1u);
    auto const& coding = dynamic_cast<JPEG2000PictureSubDescriptor&>(*descriptor.subDescriptors().front());
    EXPECT_EQ(*coding.xTsiz(), 16u);
    EXPECT_EQ(*coding.csiz(), 3);
    EXPECT_TRUE(coding.codingStyleDefault()->isReversible());
    EXPECT_EQ(coding.quantizationDefault()->guardBits(), 2u);
    EXPECT_EQ(package.finish(analyzer), 2u);
    EXPECT_EQ(*descriptor.containerDuration(), 2);
    EXPECT_TRUE(analyzer.setMetadata(package.metadata(), &package.package(), 0x01020304, 256));
    EXPECT_EQ(descriptor.subDescriptors().size(), 1u) << "described once more";
}

TEST(JPEG2000Analyzer, DescribesLumaAndColourDifferences) {
    auto const analyzer = analyzerOf({codestream(true)});
    ASSERT_TRUE(analyzer->preload());
    AnalyzerPackage package;
    auto& descriptor = package.describedBy<CDCIEssenceDescriptor>(*analyzer);
    EXPECT_EQ(*descriptor.componentDepth(), 10u);
    EXPECT_EQ(*descriptor.horizontalSubsampling(), 2u);
    EXPECT_EQ(*descriptor.whiteRefLevel(), 940u);
    EXPECT_EQ(*descriptor.colorRange(), 897u);
    auto const full = analyzerOf({jp2File(codestream())});
    ASSERT_TRUE(full->preload());
    AnalyzerPackage fullPackage;
    auto const& levels = fullPackage.describedBy<CDCIEssenceDescriptor>(*full);
    EXPECT_EQ(*levels.blackRefLevel(), 0u) << "sYCC";
    EXPECT_EQ(levels.colorRange()->value(), std::uint64_t{1} << levels.componentDepth()->value());
}

TEST(JPEG2000Analyzer, FramesOfTwoFieldsHaveTwoCodestreams) {
    auto const analyzer = analyzerOf({codestream() + codestream(), codestream() + codestream()});
    ASSERT_TRUE(analyzer->preload());
    EXPECT_EQ(Types::UniversalLabel(analyzer->universalLabel()).toString(),
              u"urn:smpte:ul:060e2b34.0401010d.0d010301.020c0400");
    AnalyzerPackage package;
    auto& descriptor = package.describedBy<RGBAEssenceDescriptor>(*analyzer);
    EXPECT_EQ(*descriptor.frameLayout(), 1);
    EXPECT_EQ(descriptor.aspectRatio()->value(), (Templates::Rational<int>{1, 1}));
    EXPECT_EQ(descriptor.videoLineMap()->toString(), u"[1][2]") << "the top field is first";
    EXPECT_EQ(package.finish(*analyzer), 2u);

    auto tall = codestream(); // of 288 lines
    for (std::size_t const height : {14u, 30u})
        std::copy_n(hex("01 20").begin(), 2, tall.begin() + static_cast<std::ptrdiff_t>(height));
    auto const standard = analyzerOf({tall + tall});
    ASSERT_TRUE(standard->preload());
    AnalyzerPackage other;
    EXPECT_EQ(other.describedBy<RGBAEssenceDescriptor>(*standard).videoLineMap()->toString(), u"[23][336]");
}

TEST(JPEG2000Analyzer, NamesProfiles) {
    struct {
        unsigned char high, low;
        const char16_t* end;
    } const profiles[] = {{0, 0, u"0301017f"},    {0, 3, u"03010103"},    {1, 3, u"03010113"},
                          {3, 7, u"03010117"},    {4, 0x12, u"03010205"}, {9, 0x9B, u"0301073b"},
                          {4, 0x20, u"0301017f"}, {0x40, 0, u"03010801"}};
    for (auto const& profile : profiles) {
        auto const analyzer = analyzerOf({withProfile(profile.high, profile.low)});
        ASSERT_TRUE(analyzer->preload());
        auto const label = AnalyzerPackage()
                               .describedBy<RGBAEssenceDescriptor>(*analyzer)
                               .pictureEssenceCoding()
                               ->toString();
        EXPECT_EQ(label.substr(label.size() - 8), profile.end);
    }
}

TEST(JPEG2000Analyzer, TellsOfFilesThatDoNotGoTogether) {
    EditUnit unit;
    auto const other = analyzerOf({codestream(), codestream(true)});
    ASSERT_TRUE(other->preload());
    EXPECT_THROW(other->nextEditUnit(unit), Exceptions::InvalidFormat);
    for (auto const& second : {codestream() + codestream(), codestreamHeader(), Bytes()}) {
        auto const analyzer = analyzerOf({codestream(), second, codestream()});
        ASSERT_TRUE(analyzer->preload());
        EXPECT_TRUE(analyzer->nextEditUnit(unit));
        EXPECT_FALSE(analyzer->nextEditUnit(unit)) << "the first file alone is whole";
        EXPECT_FALSE(analyzer->finalize());
        EXPECT_NE(analyzer->fault(), "");
    }
    EXPECT_FALSE(analyzerOf({})->preload());
}

} // namespace MXF::Zelm::Test
