// zelm rewrap and join: essence that nobody knows, ranges, tracks left out, files that do not go together.
// tests/peers/compare-rewrap holds them against another program.
#include "support/FakeAnalyzer.h"
#include "support/Files.h"
#include "support/Program.h"
#include "support/StandardMetadata.h"
#include "support/WrittenFile.h"

#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "MXF/Zelm/OPBuilders/GenericOPBuilder.h"

#include <gtest/gtest.h>

namespace MXF::Zelm::Test {

using namespace KLV::Literals;
using namespace Metadata::Structural;
using OPBuilders::GenericOPBuilder;

namespace {

constexpr KLV::Key privateLabel = "060E2B34.04010101.0F770301.02AA0100"_key;
constexpr KLV::Key privateElement = "060E2B34.01020101.0F770301.00000000"_key;
constexpr KLV::Key privateSet = "060E2B34.02530101.0F770101.01230000"_key;

/// Elements under keys of the maker's own, each an edit unit of some bytes.
template <class Fake>
class Strange : public Fake {
public:
    using Fake::Fake;
    KLV::Key proposeKey(KLV::Key const& key) const override {
        KLV::Key strange = privateElement;
        std::copy_n(key.rawBuffer() + 12, 4, strange.rawBuffer() + 12);
        return strange;
    }
};

FakeEssence pictureEssence(std::size_t count) {
    return {.sizes = {3000, 17, 200, 1}, .count = count, .elementType = 0x7E, .label = privateLabel};
}

/// I0 P3 B1 B2, again and again.
FakeEssence reorderedEssence(std::size_t groups) {
    auto essence = pictureEssence(4 * groups);
    essence.isReordered = true;
    for (std::size_t i = 0; i < groups; ++i)
        for (auto const& unit :
             {GenericContainer::EditUnitIndex{0, 0, 0xC0}, {2, -1, 0x22}, {-1, -2, 0x33}, {-1, -3, 0x33}})
            essence.index.push_back(unit);
    return essence;
}

/// A picture and two sounds that no document describes, a set that no dictionary has, a generic stream.
Bytes strangeFile(FakeEssence const& picture, Templates::Rational<int> const& rate = {25, 1}) {
    FakeEssence sound{.sizes = {96},
                      .count = picture.count,
                      .boundedSize = 96,
                      .itemType = 0x16,
                      .elementType = 0x7F,
                      .tag = 0x55,
                      .label = privateLabel};
    sound.rate = rate;
    auto shown = picture;
    shown.rate = rate;
    GenericOPBuilder builder(standardMetadata()->partitionDictionary().dictionary(),
                             {.product = {u"Company", u"Product", u"1.0", Types::UUID::generate()},
                              .materialName = u"Clip",
                              .startTimecode = Utils::TimeCode(Utils::TimeBase(25), {.hours = 10}),
                              .layout = {.partitions = {.packages = 3}}});
    builder.addFrameWrapped({.packageRate = rate,
                             .analyzers = {std::make_shared<Strange<FakePicture>>(shown),
                                           std::make_shared<Strange<FakeSound>>(sound),
                                           std::make_shared<Strange<FakeSound>>(sound)},
                             .kagSize = 256});
    Bytes const value = repeated(40, 0x3C);
    DataIO::Memory::MemoryDataSource source(value);
    KLV::Packet packet(privateSet, 4, value.size(), source, 0);
    builder.metadata()->addDarkMetadataSet(std::make_unique<Metadata::DarkMetadataSet>(packet));
    builder.addGenericStream({.sid = 99, .data = DataIO::Slice::adopt(repeated(500, 0x77))});
    SeekableSink sink;
    builder.creator(sink)->run();
    return sink.bytes();
}

/// A file on disk, and what is made of it.
class Rewrapped {
public:
    explicit Rewrapped(Bytes const& bytes) { writeFile(in(), bytes); }

    std::string in() const { return folder_.file("in.mxf"); }
    std::string out() const { return folder_.file("out.mxf"); }

    ProgramRun run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"-o", out()});
        return runZelm(arguments);
    }
    Bytes outBytes() const { return readFile(out()); }
    TemporaryFolder const& folder() const { return folder_; }

private:
    TemporaryFolder folder_;
};

/// The bytes of all elements, edit unit by edit unit.
std::vector<Bytes> unitsOf(OpenFile& file, std::size_t element) {
    std::vector<Bytes> units;
    MXFIO::EssenceReader reader(file.reader, file.containers().front());
    for (MXFIO::EssenceUnit unit; reader.next(unit);)
        units.push_back(element < unit.package.elements.size() ? joined(unit.package.elements[element].data)
                                                               : Bytes());
    return units;
}

std::vector<std::uint8_t> flagsOf(OpenFile& file) {
    std::vector<std::uint8_t> flags;
    MXFIO::EssenceReader reader(file.reader, file.containers().front());
    for (std::int64_t i = 0; reader.flags(i); ++i)
        flags.push_back(*reader.flags(i));
    return flags;
}

bool contains(Bytes const& bytes, Bytes const& part) {
    return std::search(bytes.begin(), bytes.end(), part.begin(), part.end()) != bytes.end();
}

std::string lengthsOf(OpenFile& file) {
    std::string text;
    auto const metadata = file.reader.backwardFirstPartitionWithFinalMetadata()->metadata();
    for (auto const* const set : metadata->packages())
        for (auto const* const track : dynamic_cast<GenericPackage const&>(*set).tracks()) {
            auto const* const timeline = dynamic_cast<TimelineTrack const*>(track);
            auto const origin = timeline->origin() != nullptr ? timeline->origin()->value() : 0;
            text += std::to_string(durationOf(*track).value()) +
                    (origin != 0 ? "-" + std::to_string(origin) : "") + " ";
        }
    return text;
}

} // namespace

TEST(Rewrap, KeepsWhatNobodyKnows) {
    auto const original = strangeFile(reorderedEssence(4));
    OpenFile before(original);
    for (std::vector<std::string> const& options : {std::vector<std::string>{},
                                                    {"--kag", "1"},
                                                    {"--kag", "4096"},
                                                    {"--partition-every", "5", "--index", "body"},
                                                    {"--index", "own"}}) {
        Rewrapped file(original);
        auto arguments = options;
        arguments.insert(arguments.begin(), {"rewrap", file.in()});
        auto const run = file.run(arguments);
        ASSERT_EQ(run.status, 0) << run.errors;
        auto const bytes = file.outBytes();
        OpenFile after(bytes);
        for (std::size_t element = 0; element < 3; ++element)
            EXPECT_EQ(unitsOf(before, element), unitsOf(after, element)) << element;
        EXPECT_EQ(flagsOf(before), flagsOf(after));
        EXPECT_EQ(lengthsOf(before), lengthsOf(after));
        EXPECT_TRUE(contains(bytes, repeated(40, 0x3C))) << "the private set";
        EXPECT_TRUE(contains(bytes, repeated(500, 0x77))) << "the generic stream";
        EXPECT_EQ(runZelm({"index", file.out()}).status, 0);
        auto const diff = runZelm({"diff", file.in(), file.out()});
        EXPECT_LE(diff.status, 1) << diff.errors;
        EXPECT_EQ(diff.output.find("Package"), std::string::npos) << diff.output;
    }
}

/// Picture 6 is stored behind the I picture at 4 and the P picture at 5: the copy begins at the key frame.
TEST(Rewrap, RangeBeginsAtTheKeyFrame) {
    Rewrapped file(strangeFile(reorderedEssence(4)));
    auto const run = file.run({"rewrap", file.in(), "--range", "6:10"});
    ASSERT_EQ(run.status, 0) << run.errors;
    OpenFile before(readFile(file.in())), after(file.outBytes());
    auto const whole = unitsOf(before, 0), part = unitsOf(after, 0);
    ASSERT_GE(part.size(), 6u);
    EXPECT_TRUE(std::equal(part.begin(), part.end(), whole.begin() + 4));
    EXPECT_EQ(lengthsOf(after), "4 4 4 4 4-2 4-2 4-2 ");
    auto const timecode = startTimecode(dynamic_cast<GenericPackage const&>(
        *after.reader.backwardFirstPartitionWithFinalMetadata()->metadata()->packages().front()));
    EXPECT_EQ(timecode.toString(), u"10:00:00:06");
}

TEST(Rewrap, LeavesTracksOut) {
    Rewrapped file(strangeFile(pictureEssence(7)));
    auto const run = file.run({"rewrap", file.in(), "--without", "a1"});
    ASSERT_EQ(run.status, 0) << run.errors;
    OpenFile before(readFile(file.in())), after(file.outBytes());
    auto const container = after.containers().front();
    ASSERT_EQ(container.tracks.size(), 2u);
    EXPECT_EQ(container.tracks[1].trackNumber, 0x16017F01u); // one sound element, and still the second
    EXPECT_EQ(unitsOf(before, 2), unitsOf(after, 1));
    EXPECT_NE(before.containers().front().package->packageUID()->toString(),
              container.package->packageUID()->toString());
    EXPECT_EQ(file.run({"rewrap", file.in(), "--track", "v2", "--force"}).status, 2);
}

TEST(Join, PutsOneBehindTheOther) {
    Rewrapped file(strangeFile(reorderedEssence(3)));
    auto const other = file.folder().file("other.mxf");
    writeFile(other, strangeFile(reorderedEssence(2)));
    auto const run = file.run({"join", file.in(), other});
    ASSERT_EQ(run.status, 0) << run.errors;
    OpenFile first(readFile(file.in())), second(readFile(other)), after(file.outBytes());
    auto expected = unitsOf(first, 0);
    for (auto const& unit : unitsOf(second, 0))
        expected.push_back(unit);
    EXPECT_EQ(unitsOf(after, 0), expected);
    EXPECT_EQ(lengthsOf(after), "20 20 20 20 20 20 20 ");
    EXPECT_EQ(runZelm({"index", file.out()}).status, 0);
    EXPECT_EQ(flagsOf(after).size(), 20u);
}

TEST(Join, SaysWhatDiffers) {
    Rewrapped file(strangeFile(pictureEssence(3)));
    auto const other = file.folder().file("other.mxf");
    writeFile(other, strangeFile(pictureEssence(3), {30, 1}));
    auto const run = file.run({"join", file.in(), other});
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.errors.find("v1: the edit rate is 25/1 in "), std::string::npos) << run.errors;
    EXPECT_NE(run.errors.find("30/1 in "), std::string::npos) << run.errors;
    EXPECT_FALSE(std::filesystem::exists(file.out()));
}

TEST(Rewrap, NeverWritesOverItsInput) {
    Rewrapped file(strangeFile(pictureEssence(3)));
    auto const before = readFile(file.in());
    EXPECT_EQ(runZelm({"rewrap", file.in(), "-o", file.in(), "--force"}).status, 2);
    EXPECT_EQ(readFile(file.in()), before);
}

} // namespace MXF::Zelm::Test
