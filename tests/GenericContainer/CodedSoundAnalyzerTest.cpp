#include "MXF/Zelm/GenericContainer/Analyzers/CodedSoundAnalyzer.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "support/AnalyzerPackage.h"
#include "support/Bytes.h"

namespace MXF::Zelm::Test {

using namespace Essence::CodedSound;
using GenericContainer::CodedSoundAnalyzer;
using GenericContainer::CodedSoundOptions;
using GenericContainer::EditUnit;
using GenericContainer::Wrapping;
using Metadata::Structural::GenericSoundEssenceDescriptor;

namespace {

/// Frames of a header each, with content that tells them apart; then `rest`.
std::shared_ptr<DataIO::SliceSource> sourceOf(const char* header, std::size_t size, std::size_t count,
                                              Bytes const& rest = {}) {
    Bytes bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes = bytes + hex(header) + repeated(size - hex(header).size(), static_cast<unsigned char>(i));
    return std::make_shared<DataIO::BufferSliceSource>(DataIO::Slice::adopt(bytes + rest));
}

constexpr const char* layer2 = "FF FD 14 C0"; // 96 bytes, 1152 samples at 48 kHz
constexpr std::size_t size = 96;

/// Frames of each edit unit.
std::vector<std::size_t> counts(CodedSoundAnalyzer& analyzer, Templates::Rational<int> const& rate,
                                std::size_t most = 100) {
    analyzer.editRate(rate);
    EXPECT_TRUE(analyzer.preload());
    std::vector<std::size_t> found;
    for (EditUnit unit; found.size() < most && analyzer.nextEditUnit(unit);)
        found.push_back(static_cast<std::size_t>(unit.data.size()) / size);
    return found;
}

CodedSoundOptions startingAt(std::int64_t start) {
    CodedSoundOptions options;
    options.start = start;
    return options;
}

using Counts = std::vector<std::size_t>;

} // namespace

TEST(CodedSoundAnalyzer, EditUnitsHaveTheFramesThatBeginInThem) {
    constexpr Templates::Rational<int> pal{25, 1}, fast{60000, 1001};
    struct {
        std::int64_t start;
        std::size_t frames;
        Templates::Rational<int> rate;
        Counts units;
    } const rows[] = {
        {0, 10, pal, {2, 2, 1, 2, 2, 1}},
        {0, 4, fast, {1, 1, 1, 0, 1}},
        {-481, 10, pal, {3, 1, 2, 2, 1, 1}},
        {-2800, 5, pal, {3}}, // two lie before
        {-3000, 5, pal, {2}}, // and more than half of the third
        {4000, 2, pal, {0, 0, 2}},
    };
    for (auto const& row : rows) {
        CodedSoundAnalyzer analyzer(sourceOf(layer2, size, row.frames), mpegAudio(), startingAt(row.start));
        EXPECT_EQ(counts(analyzer, row.rate), row.units) << row.start;
        EXPECT_TRUE(analyzer.finalize()) << analyzer.fault();
    }
}

TEST(CodedSoundAnalyzer, FramesAreEditUnitsOfTheirOwn) {
    for (auto const wrapping : {Wrapping::Frame, Wrapping::Clip}) {
        CodedSoundOptions options;
        options.wrapping = wrapping;
        CodedSoundAnalyzer analyzer(sourceOf(layer2, size, 3), mpegAudio(), options);
        EXPECT_THROW(analyzer.frameRate(), Exceptions::InvalidStructure);
        if (wrapping == Wrapping::Clip)
            analyzer.editRate({25, 1}); // changes nothing
        ASSERT_TRUE(analyzer.preload());
        EXPECT_TRUE(analyzer.editRate() == (Templates::Rational<int>{125, 3}));
        for (EditUnit unit; analyzer.nextEditUnit(unit);)
            EXPECT_EQ(unit.data.size(), size);
        EXPECT_EQ(analyzer.unitsGiven(), 3u);
    }
}

TEST(CodedSoundAnalyzer, DescribesWhatTheFramesTell) {
    struct {
        const char* header;
        std::size_t size;
        Wrapping wrapping;
        std::uint8_t streamId;
        const char* label;
        const char* coding;
        unsigned channels;
    } const rows[] = {
        {layer2, 96, Wrapping::Frame, 0xC3, "060E2B34 04010102 0D010301 02044301",
         "060E2B34 0401010D 04020202 04010200", 1},
        {"FF FB 10 40", 104, Wrapping::Clip, 0xC0, "060E2B34 04010102 0D010301 02044002",
         "060E2B34 0401010D 04020202 04010300", 2},
        {"0B 77 00 00 00 40 E1 D8 00 00", 128, Wrapping::Frame, 0xC3, "060E2B34 04010102 0D010301 02043D01",
         "060E2B34 04010101 04020202 03020100", 6},
        {"FF F9 4C 80 03 1F FC", 24, Wrapping::Frame, 0xC0, "060E2B34 0401010D 0D010301 02170100",
         "060E2B34 04010103 04020202 03030100", 2},
    };
    for (auto const& row : rows) {
        auto const header = hex(row.header);
        CodedSoundOptions options;
        options.wrapping = row.wrapping;
        options.streamId = row.streamId;
        CodedSoundAnalyzer analyzer(sourceOf(row.header, row.size, 2),
                                    *formatAt(header.data(), header.size()), options);
        ASSERT_TRUE(analyzer.preload()) << row.header;
        AnalyzerPackage package;
        auto const& descriptor = package.describedBy<GenericSoundEssenceDescriptor>(analyzer);
        EXPECT_EQ((*descriptor.essenceContainer()).key(), KLV::Key(hex(row.label).data())) << row.header;
        EXPECT_EQ((*descriptor.soundEssenceCompression()).key(), KLV::Key(hex(row.coding).data()))
            << row.header;
        EXPECT_EQ(*descriptor.channelCount(), row.channels) << row.header;
        EXPECT_EQ(analyzer.essenceElementType(), row.wrapping == Wrapping::Clip ? 6 : 5);
        EXPECT_EQ(descriptor.dialNorm() != nullptr && *descriptor.dialNorm() == -27, row.channels == 6);
        package.finish(analyzer);
        EXPECT_EQ(*descriptor.containerDuration(), 2);
    }
}

TEST(CodedSoundAnalyzer, GoesOnWithoutContentAndTellsWhatIsAmiss) {
    CodedSoundAnalyzer open(sourceOf(layer2, size, 2), mpegAudio());
    open.goOn();
    EXPECT_EQ(counts(open, {25, 1}, 4), (Counts{2, 0, 0, 0}));
    EXPECT_TRUE(open.isExhausted());
    CodedSoundAnalyzer cut(sourceOf(layer2, size, 2, hex("FF FD 14 C0 00")), mpegAudio());
    EXPECT_EQ(counts(cut, {25, 1}), (Counts{2}));
    EXPECT_FALSE(cut.finalize());
    EXPECT_EQ(cut.fault(),
              "5 bytes are no frames of MPEG audio, the first at 0xC0: the sound ends before them");
    CodedSoundAnalyzer changes(sourceOf(layer2, size, 2, hex("FF FD 14 00") + repeated(92, 7)), mpegAudio());
    EXPECT_EQ(counts(changes, {25, 1}), (Counts{2, 1}));
    EXPECT_EQ(changes.fault(), "MPEG audio changes from 1 to 2 channels at 0xC0");
    EXPECT_FALSE(CodedSoundAnalyzer(sourceOf(layer2, size, 0, repeated(500, 0)), mpegAudio()).preload());
}

} // namespace MXF::Zelm::Test
