#include "MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "support/AnalyzerPackage.h"
#include "support/MPEGStream.h"

#include <cstdio>

namespace MXF::Zelm::Test {

using GenericContainer::EditUnit;
using GenericContainer::MPEG2VideoAnalyzer;
using Metadata::Structural::MPEG2VideoDescriptor;

namespace {

std::unique_ptr<MPEG2VideoAnalyzer> analyzerOf(Bytes const& stream) {
    return std::make_unique<MPEG2VideoAnalyzer>(
        std::make_shared<DataIO::BufferSliceSource>(stream.data(), stream.size()));
}

/// A line for each edit unit: temporal offset, key frame offset, flags.
std::vector<std::string> indexOf(std::vector<std::string_view> const& units) {
    auto const analyzer = analyzerOf(concatenated(mpegUnits(units)));
    EXPECT_TRUE(analyzer->preload());
    std::vector<std::string> lines;
    for (EditUnit unit; analyzer->nextEditUnit(unit);) {
        char line[40];
        std::snprintf(line, sizeof line, "%d %d %02X", unit.index.temporalOffset, unit.index.keyFrameOffset,
                      unit.index.flags);
        lines.push_back(line);
        EXPECT_EQ(analyzer->done(), lines.size() == units.size());
    }
    EXPECT_TRUE(analyzer->finalize());
    return lines;
}

using Lines = std::vector<std::string>;

} // namespace

TEST(MPEG2VideoAnalyzer, TellsOrderKeyFramesAndPrediction) {
    EXPECT_EQ(indexOf({"SCI0", "P3", "B1", "B2", "P6", "B4", "B5", "SOI2", "B0", "B1", "P5", "B3", "B4"}),
              (Lines{"0 0 C0", "2 -1 22", "-1 -2 33", "-1 -3 33", "2 -4 22", "-1 -5 33", "-1 -6 33", "2 0 40",
                     "-1 -8 33", "-1 -9 33", "2 -3 22", "-1 -4 33", "-1 -5 33"}));
    EXPECT_EQ(indexOf({"SOI0", "OI0", "SI0"}), (Lines{"0 0 C0", "0 0 00", "0 0 C0"})) << "intra alone";
    EXPECT_EQ(indexOf({"SCI1", "B0", "P2"}), (Lines{"1 0 C0", "-1 -1 13", "0 -2 22"})) << "backwards alone";
    EXPECT_EQ(indexOf({"SOI2", "P5", "B3", "B4"}), (Lines{"0 0 C0", "2 -1 22", "-1 -2 33", "-1 -3 33"}))
        << "the leading B pictures were cut off";
    EXPECT_EQ(indexOf({"SCI0", "P1", "I2", "P3"}), (Lines{"0 0 C0", "0 -1 22", "0 0 00", "0 -1 22"}))
        << "an I picture in a group";
    EXPECT_EQ(indexOf({"SCI0", "P9", "B5", "OP7"}), (Lines{"0 0 C0", "1 -1 22", "-1 -2 33", "0 -3 22"}))
        << "references that make no sense";
}

TEST(MPEG2VideoAnalyzer, KeepsCountingBeyondAThousandPictures) {
    std::vector<std::string> texts = {"SCI0"};
    for (unsigned i = 1; i < 1100; ++i)
        texts.push_back("P" + std::to_string(i % 1024));
    auto const lines = indexOf({texts.begin(), texts.end()});
    ASSERT_EQ(lines.size(), texts.size());
    EXPECT_EQ(lines[1090], "0 0 2A") << "an offset that no index entry can hold is flagged";
}

TEST(MPEG2VideoAnalyzer, DescribesTheStream) {
    auto const analyzer = analyzerOf(concatenated(
        mpegUnits({"SCI0", "P3", "B1", "B2", "SOI2", "B0", "B1", "P5", "B3", "B4", "SOI2", "B0", "B1"})));
    ASSERT_TRUE(analyzer->preload());
    EXPECT_EQ(analyzer->editRate(), (Templates::Rational<int>{25, 1}));
    EXPECT_TRUE(analyzer->containsTemporalDependencies());
    AnalyzerPackage package;
    auto& descriptor = package.describedBy<MPEG2VideoDescriptor>(*analyzer);
    EXPECT_EQ(descriptor.pictureEssenceCoding()->toString(),
              u"urn:smpte:ul:060e2b34.04010103.04010202.01011100");
    EXPECT_EQ(*descriptor.storedHeight(), 16u);
    EXPECT_EQ(*descriptor.profileAndLevel(), 0x48);
    EXPECT_EQ(*descriptor.bitRate(), 2'400'000u);
    EXPECT_EQ(*descriptor.verticalSubsampling(), 2u);
    EXPECT_EQ(*descriptor.fieldDominance(), 1);
    EXPECT_EQ(descriptor.aspectRatio()->value(), (Templates::Rational<int>{4, 3}));
    package.finish(*analyzer);
    EXPECT_EQ(*descriptor.containerDuration(), 13);
    EXPECT_TRUE(*descriptor.constantBFrames());
    EXPECT_FALSE(*descriptor.closedGOP());
    EXPECT_FALSE(*descriptor.identicalGOP());
    EXPECT_FALSE(*descriptor.singleSequence());
    EXPECT_EQ(*descriptor.maxGOP(), 6);
    EXPECT_EQ(*descriptor.bPictureCount(), 2);
    EXPECT_EQ(Metadata::Structural::durationOf(package.track()), 13);
}

TEST(MPEG2VideoAnalyzer, RefusesWhatIsNoVideoAndStopsWhereItIsTold) {
    EXPECT_FALSE(analyzerOf(repeated(4000, 0x47))->preload());
    EXPECT_FALSE(analyzerOf(mpegSequence())->preload());
    auto const limited = analyzerOf(concatenated(mpegUnits({"SCI0", "P1", "P2", "P3"})));
    ASSERT_TRUE(limited->preload());
    limited->setDuration({3, 50}); // one edit unit and a half
    EditUnit unit;
    EXPECT_TRUE(limited->nextEditUnit(unit));
    EXPECT_TRUE(limited->nextEditUnit(unit));
    EXPECT_TRUE(limited->done());
    EXPECT_FALSE(limited->nextEditUnit(unit));
    EXPECT_TRUE(unit.data.empty());
}

} // namespace MXF::Zelm::Test
