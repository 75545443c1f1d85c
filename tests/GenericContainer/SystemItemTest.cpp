/// The bytes of system items (SMPTE 385M), and their timecode.
#include "support/Files.h"
#include "support/TestMux.h"

#include <algorithm>
#include <filesystem>

namespace MXF::Zelm::Test {

using namespace GenericContainer;
using GenericContainer::Multiplexer::SystemItemGenerator;

namespace {

Bytes bytesOf(SystemMetadataPack const& pack) {
    auto const slice = pack.serialize();
    return {slice->begin(), slice->end()};
}

SystemMetadataPack parsed(Bytes const& value) {
    DataIO::SliceReader reader(DataIO::Slice::copyOf(value.data(), value.size()));
    return SystemMetadataPack(reader);
}

Bytes valueOf(SystemMetadataPack const& pack) {
    auto const bytes = bytesOf(pack);
    return {bytes.begin() + 20, bytes.end()};
}

constexpr KLV::Key label = "060E2B34.04010101.0D010301.02010101"_key;

} // namespace

TEST(SystemMetadataPack, HasTheBytesOf385M) {
    SystemMetadataPack pack({25, 1});
    pack.universalLabel(label);
    Utils::TimeCodeExtended user(Utils::TimeBase(25), Utils::TimeAddress{10, 59, 59, 24});
    user.binaryGroupFlags(7);
    for (unsigned group = 1; group <= 8; ++group)
        user.binaryGroup(group, group);
    pack.userTimecode(user);
    pack.creationTimecode(Utils::TimeCode(Utils::TimeBase(25), Utils::TimeAddress{10, 59, 59, 24}));
    pack.pictureItem(true);
    pack.soundItem(true);
    pack.controlElement(true);
    pack.controlElement(false);
    pack.continuityCount(0xECB6);
    auto const expected = hex(R"(
        06 0E 2B 34 02 05 01 01 0D 01 03 01 04 01 01 00  83 00 00 39
        7C 04 00 00 00 EC B6                              # label, both stamps, picture and sound; 25; count
        06 0E 2B 34 04 01 01 01 0D 01 03 01 02 01 01 01
        81 24 59 59 10 00 00 00 00 00 00 00 00 00 00 00 00
        81 24 59 D9 D0 12 34 56 78 00 00 00 00 00 00 00 00)");
    EXPECT_TRUE(sameBytes(bytesOf(pack), expected));
    auto const again = parsed(Bytes(expected.begin() + 20, expected.end()));
    EXPECT_EQ(again.universalLabel(), Types::UniversalLabel(label));
    EXPECT_EQ(again.userTimecode(), user);
    EXPECT_EQ(again.creationTimecode().frameCount(), user.frameCount());
    EXPECT_TRUE(again.pictureItem() && again.soundItem() && !again.dataItem() && !again.controlElement());
    EXPECT_TRUE(sameBytes(bytesOf(again), expected));
    for (int i = 0; i < 65536; ++i)
        pack.incrementContinuityCount();
    EXPECT_EQ(pack.continuityCount(), 0xECB6);
    pack.userTimecode({});
    EXPECT_EQ(bytesOf(pack)[20], 0x6C);
    EXPECT_EQ(bytesOf(pack)[60], 0);
}

TEST(SystemMetadataPack, CodesRates) {
    struct {
        Templates::Rational<int> rate;
        unsigned char code;
    } const rates[] = {{{24, 1}, 0x02},       {{24000, 1001}, 0x03}, {{25, 1}, 0x04},      {{50, 2}, 0x04},
                       {{30000, 1001}, 0x07}, {{50, 1}, 0x0A},       {{60, 1}, 0x0C},      {{120, 1}, 0x18},
                       {{59, 2}, 0x00},       {{0, 0}, 0x00},        {{60000, 1001}, 0x0D}};
    for (auto const& [rate, code] : rates) {
        SystemMetadataPack const pack(rate);
        EXPECT_EQ(valueOf(pack)[1], code);
        EXPECT_EQ(pack.packageRate(), code == 0 ? (Templates::Rational<int>{0, 1}) : rate);
    }
    auto value = valueOf(SystemMetadataPack({25, 1}));
    for (unsigned char const code : hex("00 01 1A 3E 3F")) {
        value[1] = code;
        EXPECT_EQ(parsed(value).packageRate(), (Templates::Rational<int>{0, 1}));
        EXPECT_FALSE(parsed(value).userTimecode().isDefined());
    }
    value.pop_back();
    EXPECT_EQ(thrownBy([&] { parsed(value); }), "Not enough data to read SystemMetadataPack");
}

TEST(SystemMetadataPack, CountsPairsOfFrames) {
    SystemMetadataPack pack({50, 1});
    Utils::TimeCodeExtended odd(Utils::TimeBase(50), Utils::TimeAddress{1, 2, 3, 49});
    odd.binaryGroupFlags(3);
    pack.userTimecode(odd);
    EXPECT_EQ(pack.userTimecode(), odd);
    auto const value = valueOf(pack);
    EXPECT_TRUE(sameBytes({value.begin() + 40, value.begin() + 45}, hex("81 24 03 82 C1")));
}

TEST(SystemMetadataPack, ReadsThatOfARealFile) {
    std::filesystem::path const name = std::filesystem::path(MXFZELM_SAMPLES_DIR) / "d10-imx50-op1a.mxf";
    if (!std::filesystem::exists(name))
        GTEST_SKIP() << "no " << name;
    auto const file = readFile(name.string());
    auto const& key = SystemMetadataPack::key();
    auto const at = std::search(file.begin(), file.end(), key.rawBuffer(), key.rawBuffer() + 16);
    ASSERT_LT(77, file.end() - at);
    auto const pack = parsed({at + 20, at + 77});
    EXPECT_EQ(pack.userTimecode().address(), (Utils::TimeAddress{23, 58, 30, 0}));
    EXPECT_EQ(pack.continuityCount(), 0xECB6);
    EXPECT_TRUE(sameBytes(bytesOf(pack), {at, at + 77}));
}

TEST(SystemItemGenerator, StampsEveryPackage) {
    Utils::TimeCode const start(Utils::TimeBase(30, true), Utils::TimeAddress{0, 0, 59, 29});
    SystemItemGenerator generator({30000, 1001}, start, label);
    EXPECT_EQ(generator.boundedEditUnitSize(), 97u);
    EXPECT_EQ(generator.essenceAnalyzerType(), EssenceAnalyzer::SystemAnalyzer);
    generator.preload();
    EXPECT_EQ(generator.currentTimeCode().frameCount(), start.frameCount()) << "before the first package";
    EditUnit unit;
    std::string times;
    for (int i = 0; i < 2; ++i) {
        generator.nextEditUnit(unit);
        auto const bytes = joined(unit.data);
        ASSERT_EQ(bytes.size(), 97u);
        EXPECT_EQ(bytes[26], i) << "the continuity count";
        EXPECT_TRUE(
            sameBytes({bytes.begin() + 77, bytes.end()}, klv("060E2B34.02430101.0D010301.04010200"_key, {})));
        EXPECT_EQ(unit.duration, (Templates::Rational<std::int64_t>{1001, 30000}));
        for (char16_t const unit16 : unit.timecode->toString())
            times += static_cast<char>(unit16);
        times += " ";
    }
    EXPECT_EQ(times, "00:00:59;29 00:01:00;02 ");

    Types::UMID32 const umid = Types::UMID32::generate(Types::UMIDMaterialType::NotIdentified);
    generator.metadataProvider(std::make_shared<UMIDMetadataProvider>(umid));
    EXPECT_EQ(generator.boundedEditUnitSize(), 97u + 35u);
    generator.nextEditUnit(unit);
    auto const bytes = joined(unit.data);
    Bytes const value = hex("83 0020") + Bytes(umid.rawBuffer(), umid.rawBuffer() + 32);
    EXPECT_TRUE(
        sameBytes({bytes.begin() + 77, bytes.end()}, klv("060E2B34.02430101.0D010301.04010201"_key, value)));
}

TEST(SequentialTimeCode, KeepsTheTimeAtAnotherBase) {
    SequentialTimeCode timecodes(Utils::TimeCode(Utils::TimeBase(25), Utils::TimeAddress{1, 0, 0, 10}));
    timecodes.roundedFrameRate(50);
    EXPECT_EQ(timecodes.nextTimeCode().address(), (Utils::TimeAddress{1, 0, 0, 20}));
    EXPECT_EQ(timecodes.nextTimeCode().address(), (Utils::TimeAddress{1, 0, 0, 21}));
    SequentialTimeCode none{Utils::TimeCode()};
    none.roundedFrameRate(30);
    EXPECT_FALSE(none.nextTimeCode().isDefined());
}

} // namespace MXF::Zelm::Test
