#include "MXF/Zelm/GenericContainer/Analyzers/DVAnalyzer.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "support/AnalyzerPackage.h"
#include "support/DVStream.h"

namespace MXF::Zelm::Test {

using GenericContainer::DVAnalyzer;
using GenericContainer::EditUnit;
using GenericContainer::Wrapping;
using Metadata::Structural::CDCIEssenceDescriptor;

namespace {

std::unique_ptr<DVAnalyzer> analyzerOf(Bytes const& stream, Wrapping wrapping = Wrapping::Frame) {
    auto const source = std::make_shared<DataIO::BufferSliceSource>(stream.data(), stream.size());
    return std::make_unique<DVAnalyzer>(
        source, GenericContainer::DVOptions{.wrapping = wrapping, .byteCount = stream.size()});
}

} // namespace

TEST(DVAnalyzer, TellsTheForms) {
    struct {
        DVForm form;
        std::uint64_t size;
        const char16_t* container; ///< the end of the label
        const char16_t* coding;
        Templates::Rational<int> rate;
        unsigned height, horizontal, vertical;
    } const rows[] = {
        {{false, true, 0x00, 1}, 120000, u"02020101", u"02010100", {30000, 1001}, 240, 4, 1},
        {{true, true, 0x00, 1}, 144000, u"02020201", u"02010200", {25, 1}, 288, 2, 2},
        {{true, false, 0x00, 1}, 144000, u"02024101", u"02020200", {25, 1}, 288, 4, 1},
        {{true, false, 0x04, 2}, 288000, u"02025101", u"02020400", {25, 1}, 288, 2, 1},
        {{false, false, 0x14, 4}, 480000, u"02026001", u"02020500", {30000, 1001}, 540, 2, 1},
        {{true, false, 0x18, 2}, 288000, u"02026301", u"02020800", {50, 1}, 720, 2, 1},
    };
    for (auto const& row : rows) {
        auto const frame = dvFrame(row.form);
        ASSERT_EQ(frame.size(), row.size);
        auto const analyzer = analyzerOf(frame + frame);
        ASSERT_TRUE(analyzer->preload());
        EXPECT_EQ(analyzer->editRate(), row.rate);
        AnalyzerPackage package;
        auto& descriptor = package.describedBy<CDCIEssenceDescriptor>(*analyzer);
        EXPECT_TRUE(descriptor.essenceContainer()->toString().ends_with(row.container));
        EXPECT_TRUE(descriptor.pictureEssenceCoding()->toString().ends_with(row.coding));
        EXPECT_EQ(*descriptor.storedHeight(), row.height);
        EXPECT_EQ(*descriptor.horizontalSubsampling(), row.horizontal);
        EXPECT_EQ(*descriptor.verticalSubsampling(), row.vertical);
        EXPECT_EQ(descriptor.aspectRatio()->value(), (Templates::Rational<int>{16, 9}));
        EXPECT_EQ(package.finish(*analyzer), 2u);
    }
}

TEST(DVAnalyzer, GivesFramesWithTheirTimecode) {
    DVForm const form;
    auto const stream = dvFrame(form, 23) + dvFrame(form, 24);
    auto const analyzer = analyzerOf(stream + Bytes(100), Wrapping::Clip);
    ASSERT_TRUE(analyzer->preload());
    EXPECT_EQ(analyzer->byteCount(), stream.size());
    EXPECT_EQ(analyzer->header().sound->samples, 1896u + 24);
    EXPECT_EQ(analyzer->essenceElementType(), 2);
    DataIO::Chain all;
    std::string timecodes;
    for (EditUnit unit; analyzer->nextEditUnit(unit); all.append(unit.data))
        timecodes += std::to_string(unit.timecode->frameCount()) + " ";
    EXPECT_TRUE(all.equals(stream.data(), stream.size()));
    EXPECT_EQ(timecodes, "930773 930774 "); // 10:20:30:23
    EXPECT_FALSE(analyzer->finalize());
    EXPECT_EQ(analyzer->fault(), "The DV stream ends amid frame 2");
}

TEST(DVAnalyzer, RefusesOtherStreamsAndForms) {
    EXPECT_FALSE(analyzerOf(Bytes(200000))->preload());
    EXPECT_FALSE(analyzerOf(Bytes(100, 0x1F))->preload());
    auto const cut = dvFrame({});
    EXPECT_FALSE(analyzerOf(Bytes(cut.begin(), cut.end() - 1))->preload());
    auto const analyzer = analyzerOf(dvFrame({}) + dvFrame({.isIEC = true}));
    ASSERT_TRUE(analyzer->preload());
    EditUnit unit;
    EXPECT_TRUE(analyzer->nextEditUnit(unit));
    EXPECT_THROW(analyzer->nextEditUnit(unit), Exceptions::InvalidFormat);
}

} // namespace MXF::Zelm::Test
