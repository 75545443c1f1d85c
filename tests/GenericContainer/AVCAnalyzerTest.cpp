#include "MXF/Zelm/GenericContainer/Analyzers/AVCAnalyzer.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Types/Integers.h"
#include "support/AVCStream.h"
#include "support/AnalyzerPackage.h"

#include <cstdio>

namespace MXF::Zelm::Test {

using GenericContainer::AVCAnalyzer;
using GenericContainer::EditUnit;

namespace {

std::unique_ptr<AVCAnalyzer> analyzerOf(Bytes const& stream) {
    return std::make_unique<AVCAnalyzer>(
        std::make_shared<DataIO::BufferSliceSource>(stream.data(), stream.size()));
}

Bytes smallStream() {
    Bytes stream;
    for (auto const& [bytes, shown] : avcPictures())
        stream = stream + bytes;
    return stream;
}

} // namespace

TEST(AVCAnalyzer, TellsOrderKeyFramesAndPrediction) {
    auto const analyzer = analyzerOf(smallStream() + smallStream());
    ASSERT_TRUE(analyzer->preload());
    EXPECT_TRUE(analyzer->containsTemporalDependencies());
    std::string lines;
    DataIO::Chain all;
    for (EditUnit unit; analyzer->nextEditUnit(unit); all.append(unit.data)) {
        char line[40];
        std::snprintf(line, sizeof line, "%d %d %02X, ", unit.index.temporalOffset, unit.index.keyFrameOffset,
                      unit.index.flags);
        lines += line;
    }
    std::string const group = "0 0 C0, 1 -1 22, -1 -2 33, 1 -3 22, -1 -4 33, ";
    EXPECT_EQ(lines, group + group);
    EXPECT_TRUE(all.equals((smallStream() + smallStream()).data(), 2 * smallStream().size()));
}

TEST(AVCAnalyzer, DescribesTheStream) {
    auto const analyzer = analyzerOf(hex("00 00 01 01 9E 41 79") + smallStream() + smallStream());
    ASSERT_TRUE(analyzer->preload());
    EXPECT_EQ(analyzer->editRate(), (Templates::Rational<int>{25, 1}));
    AnalyzerPackage package;
    auto& descriptor = package.describedBy<Metadata::Structural::CDCIEssenceDescriptor>(*analyzer);
    EXPECT_TRUE(descriptor.essenceContainer()->toString().ends_with(u"02106001"));
    EXPECT_TRUE(descriptor.pictureEssenceCoding()->toString().ends_with(u"01314001"));
    EXPECT_EQ(*descriptor.storedHeight(), 368u);
    EXPECT_EQ(*descriptor.sampledHeight(), 360u);
    EXPECT_EQ(*descriptor.verticalSubsampling(), 2u);
    EXPECT_EQ(descriptor.aspectRatio()->value(), (Templates::Rational<int>{16, 9}));
    EXPECT_EQ(package.finish(*analyzer), 10u);
    ASSERT_EQ(descriptor.subDescriptors().size(), 1u);
    auto const& sub = *descriptor.subDescriptors().front();
    EXPECT_EQ(*sub.value<Types::UInt8>(u"AVCProfile"), 100);
    EXPECT_EQ(*sub.value<Types::UInt8>(u"AVCDecodingDelay"), 2);
    EXPECT_EQ(*sub.value<Types::UInt16>(u"AVCMaximumGOPSize"), 5);
    EXPECT_EQ(*sub.value<Types::UInt16>(u"AVCMaximumBPictureCount"), 1);
    EXPECT_TRUE(*sub.value<Types::Boolean>(u"AVCClosedGOPIndicator"));
    EXPECT_EQ(*sub.value<Types::UInt32>(u"AVCAverageBitRate"), smallStream().size() * 8 * 5);
}

TEST(AVCAnalyzer, RefusesWhatIsNoneAndThrowsAmidTheStream) {
    EXPECT_FALSE(analyzerOf(repeated(4000, 0x47))->preload());
    EXPECT_FALSE(analyzerOf(avcParameters())->preload());
    auto const unknownSet = hex("00 00 00 01 09 10 00 00 01 41 98 1C 6C"); // the slice names set 55
    auto const analyzer = analyzerOf(smallStream() + unknownSet + smallStream());
    ASSERT_TRUE(analyzer->preload());
    EXPECT_THROW(
        {
            for (EditUnit unit; analyzer->nextEditUnit(unit);)
                continue;
        },
        Exceptions::InvalidFormat);
}

} // namespace MXF::Zelm::Test
