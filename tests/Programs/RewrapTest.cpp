// zelm rewrap and join: essence that nobody knows, ranges, tracks left out, files that do not go together.
// tests/peers/compare-rewrap holds them against another program.
#include "StrangeFile.h"

#include "MXF/Zelm/Metadata/Structural/Packages.h"

#include <gtest/gtest.h>

namespace MXF::Zelm::Test {

using namespace Metadata::Structural;

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

/// Partitions that it leaves out, or puts in a wrong place, are found all the same.
TEST(Rewrap, DoesNotRelyOnTheRandomIndexPack) {
    auto const original = strangeFile(reorderedEssence(4));
    OpenFile before(original);
    constexpr std::size_t entrySize = 12, lengthSize = 4;
    std::size_t const footer = original.size() - lengthSize - entrySize;
    for (bool const leavesOut : {true, false}) {
        auto changed = original;
        if (leavesOut)
            std::copy_n(&original[footer], entrySize, &changed[footer - entrySize]);
        else
            changed[footer - 1] ^= 5;
        Rewrapped file(changed);
        auto const run = file.run({"rewrap", file.in()});
        ASSERT_EQ(run.status, 0) << run.errors;
        auto const bytes = file.outBytes();
        OpenFile after(bytes);
        EXPECT_EQ(unitsOf(before, 0), unitsOf(after, 0));
        EXPECT_TRUE(contains(bytes, repeated(500, 0x77))) << "the generic stream";
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
    EXPECT_EQ(run.errors.rfind("zelm: v1: the edit rate is 25/1 in ", 0), 0u) << run.errors;
    EXPECT_NE(run.errors.find("30/1 in "), std::string::npos) << run.errors;
    EXPECT_FALSE(std::filesystem::exists(file.out()));
    writeFile(other, Bytes(70000));
    EXPECT_EQ(file.run({"join", file.in(), other}).errors.rfind("zelm: " + other + ": ", 0), 0u);
}

TEST(Rewrap, NeverWritesOverItsInput) {
    Rewrapped file(strangeFile(pictureEssence(3)));
    auto const before = readFile(file.in());
    EXPECT_EQ(runZelm({"rewrap", file.in(), "-o", file.in(), "--force"}).status, 2);
    EXPECT_EQ(readFile(file.in()), before);
}

} // namespace MXF::Zelm::Test
