// zelm rewrap and join where the packages change: several in place of one, one in place of several,
// playlists, parts of them; system items; files that are cut off.
#include "StrangeFile.h"

#include "support/WaveBytes.h"

#include "MXF/Zelm/GenericContainer/SystemMetadataPack.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"

#include <gtest/gtest.h>

namespace MXF::Zelm::Test {

namespace {

using GenericContainer::SystemMetadataPack;

/// Bytes 12 to 14 of the pattern's label: items, packages, qualifiers.
std::vector<int> patternOf(OpenFile& file) {
    auto const metadata = file.reader.backwardFirstPartitionWithFinalMetadata()->metadata();
    auto const label = Metadata::Structural::operationalPattern(*metadata);
    return {label.rawBuffer()[12], label.rawBuffer()[13], label.rawBuffer()[14]};
}

/// The system metadata packs of a file.
std::vector<SystemMetadataPack> packsOf(OpenFile& file) {
    std::vector<SystemMetadataPack> packs;
    MXFIO::EssenceReader reader(file.reader, file.containers().front());
    for (MXFIO::EssenceUnit unit; reader.next(unit);)
        for (auto const& element : unit.package.systemItems)
            if (element.length == SystemMetadataPack::valueSize) {
                DataIO::SliceReader bytes(element.data);
                packs.emplace_back(bytes);
            }
    return packs;
}

} // namespace

TEST(RewrapPackages, GoApartAndTogetherAgain) {
    Rewrapped file(strangeFile(reorderedEssence(4)));
    auto const apart = file.folder().file("apart.mxf");
    ASSERT_EQ(runZelm({"rewrap", file.in(), "--pattern", "op1b", "-o", apart}).status, 0);
    OpenFile before(readFile(file.in())), several(readFile(apart));
    EXPECT_EQ(patternOf(several), (std::vector<int>{1, 2, 0x01}));
    ASSERT_EQ(several.containers().size(), 3u);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(unitsOf(several, 0, i), unitsOf(before, i)) << i;
    EXPECT_EQ(flagsOf(several), flagsOf(before));
    EXPECT_EQ(runZelm({"index", apart}).status, 0);

    auto const run = runZelm({"rewrap", apart, "--pattern", "op1a", "-o", file.out()});
    ASSERT_EQ(run.status, 0) << run.errors;
    OpenFile after(file.outBytes());
    EXPECT_EQ(patternOf(after), (std::vector<int>{1, 1, 0x09}));
    ASSERT_EQ(after.containers().size(), 1u);
    ASSERT_EQ(after.containers().front().tracks.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(unitsOf(after, i), unitsOf(before, i)) << i;
        EXPECT_NE(after.containers().front().tracks[i].descriptor, nullptr);
    }
    EXPECT_EQ(flagsOf(after), flagsOf(before));
    EXPECT_EQ(lengthsOf(after), lengthsOf(before));
    EXPECT_EQ(runZelm({"index", file.out()}).status, 0);
}

TEST(RewrapPackages, RefusesWhatTheyAreNot) {
    Rewrapped file(strangeFile(pictureEssence(3)));
    for (auto const& [pattern, why] : {std::pair{"op2a", "those of op1a: one item is played"},
                                       {"op1c", "there is one material package"},
                                       {"atom", "an OP-Atom file has one essence track"}}) {
        auto const run = file.run({"rewrap", file.in(), "--pattern", pattern});
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.errors.find(why), std::string::npos) << run.errors;
        EXPECT_FALSE(std::filesystem::exists(file.out()));
    }
}

/// The range takes the end of the first file, from the key frame before it on, and the start of the second.
TEST(Playlist, KeepsFilesAndIsCut) {
    Rewrapped file(strangeFile(reorderedEssence(3)));
    auto const other = file.folder().file("other.mxf"), list = file.folder().file("list.mxf");
    writeFile(other, strangeFile(reorderedEssence(2)));
    auto const joined = runZelm({"join", "--playlist", file.in(), other, file.in(), "-o", list});
    ASSERT_EQ(joined.status, 0) << joined.errors;
    OpenFile first(readFile(file.in())), second(readFile(other)), all(readFile(list));
    EXPECT_EQ(patternOf(all), (std::vector<int>{2, 1, 0x09}));
    ASSERT_EQ(all.containers().size(), 3u);
    for (std::size_t element = 0; element < 3; ++element) {
        EXPECT_EQ(unitsOf(all, element, 0), unitsOf(first, element));
        EXPECT_EQ(unitsOf(all, element, 1), unitsOf(second, element));
        EXPECT_EQ(unitsOf(all, element, 2), unitsOf(first, element));
    }
    EXPECT_EQ(lengthsOf(all), "32 32 32 32 12 12 12 8 8 8 12 12 12 ");
    EXPECT_EQ(runZelm({"index", list}).status, 0);

    auto const asOne = file.folder().file("one.mxf");
    auto const flat = runZelm({"rewrap", list, "--pattern", "op1a", "-o", asOne});
    ASSERT_EQ(flat.status, 0) << flat.errors;
    OpenFile one(readFile(asOne));
    EXPECT_EQ(patternOf(one), (std::vector<int>{1, 1, 0x09}));
    ASSERT_EQ(one.containers().size(), 1u);
    for (std::size_t element = 0; element < 3; ++element) {
        std::vector<Bytes> units;
        for (auto* const each : {&first, &second, &first})
            for (auto const& unit : unitsOf(*each, element))
                units.push_back(unit);
        EXPECT_EQ(unitsOf(one, element), units);
    }
    EXPECT_EQ(lengthsOf(one), "32 32 32 32 32 32 32 ");
    EXPECT_EQ(runZelm({"index", asOne}).status, 0);

    auto const run = runZelm({"rewrap", list, "--range", "10:15", "-o", file.out()});
    ASSERT_EQ(run.status, 0) << run.errors;
    OpenFile part(file.outBytes());
    ASSERT_EQ(part.containers().size(), 2u);
    auto const whole = unitsOf(first, 0), end = unitsOf(part, 0, 0), start = unitsOf(second, 0);
    EXPECT_EQ(end, (std::vector<Bytes>{whole.begin() + 8, whole.end()}));
    EXPECT_TRUE(std::equal(start.begin(), start.begin() + 3, unitsOf(part, 0, 1).begin()));
    EXPECT_EQ(lengthsOf(part), "5 5 5 5 2-2 2-2 2-2 3 3 3 ");
    auto const cut =
        runZelm({"rewrap", file.out(), "--pattern", "op1a", "-o", file.folder().file("cut.mxf")});
    EXPECT_EQ(cut.status, 2);
    EXPECT_NE(cut.errors.find("parts of packages are played"), std::string::npos) << cut.errors;
}

/// What is said of a file at all times is said of the time in which it is played.
TEST(Playlist, KeepsWhatIsSaid) {
    Rewrapped file(strangeFile(reorderedEssence(3)));
    auto const said = file.folder().file("said.mxf"), list = file.folder().file("list.mxf");
    ASSERT_EQ(runZelm({"edit", file.in(), "--add-framework", "clip:number=B1", "-o", said}).status, 0);
    auto const joined = runZelm({"join", "--playlist", file.in(), said, said, "-o", list});
    ASSERT_EQ(joined.status, 0) << joined.errors;
    auto const text = runZelm({"dump", "--frameworks", list}).output;
    for (auto const* const place : {"Clip Framework, from 00:00:00.480 (12 edit units) for 00:00:00.480",
                                    "Clip Framework, from 00:00:00.960 (24 edit units) for 00:00:00.480"})
        EXPECT_NE(text.find(place), std::string::npos) << text;
}

TEST(RewrapSystemItem, IsAddedAndTellsWhatIsThere) {
    Rewrapped file(strangeFile(reorderedEssence(2)));
    auto const with = file.folder().file("with.mxf");
    auto const added = runZelm({"rewrap", file.in(), "--system-item", "-o", with});
    ASSERT_EQ(added.status, 0) << added.errors;
    OpenFile before(readFile(file.in())), after(readFile(with));
    auto const packs = packsOf(after);
    ASSERT_EQ(packs.size(), 8u);
    EXPECT_TRUE(packs[7].pictureItem() && packs[7].soundItem());
    EXPECT_EQ(packs[7].userTimecode().toString(), u"10:00:00:07");
    EXPECT_EQ(unitsOf(after, 2), unitsOf(before, 2));
    EXPECT_EQ(flagsOf(after), flagsOf(before));
    EXPECT_EQ(lengthsOf(after), lengthsOf(before));

    ASSERT_EQ(file.run({"rewrap", with, "--track", "v1"}).status, 0);
    OpenFile silent(file.outBytes());
    ASSERT_EQ(packsOf(silent).size(), 8u);
    EXPECT_TRUE(packsOf(silent)[7].pictureItem());
    EXPECT_FALSE(packsOf(silent)[7].soundItem());
    EXPECT_EQ(unitsOf(silent, 0), unitsOf(before, 0));
}

/// Wherever it is cut off, all whole edit units are in the copy, which is whole itself.
TEST(Rewrap, TellsOfWhatIsMissing) {
    auto const original = strangeFile(pictureEssence(9));
    OpenFile whole(original);
    auto const units = unitsOf(whole, 0);
    std::vector<std::uint64_t> ends; // of edit units, in the file
    MXFIO::EssenceReader reader(whole.reader, whole.containers().front());
    for (MXFIO::EssenceUnit unit; reader.next(unit);)
        ends.push_back(unit.package.elements.back().valueOffset() + unit.package.elements.back().length);
    for (std::uint64_t const cut : {ends[0] + 40, ends[3] - 1, ends[5], ends[8] + 30}) {
        Rewrapped file(Bytes(original.begin(), original.begin() + static_cast<std::ptrdiff_t>(cut)));
        auto const run = file.run({"rewrap", file.in()});
        EXPECT_EQ(run.status, 1) << run.errors;
        EXPECT_NE(run.errors.find("ends early"), std::string::npos) << run.errors;
        OpenFile after(file.outBytes());
        auto const there = static_cast<std::size_t>(
            std::count_if(ends.begin(), ends.end(), [&](auto end) { return end <= cut; }));
        EXPECT_EQ(unitsOf(after, 0),
                  (std::vector<Bytes>{units.begin(), units.begin() + static_cast<std::ptrdiff_t>(there)}));
        EXPECT_EQ(runZelm({"index", file.out()}).status, 0);
        auto const lengths = lengthsOf(after);
        EXPECT_EQ(lengths.substr(0, 2), std::to_string(there) + " ");
    }
    Rewrapped file(original);
    EXPECT_EQ(file.run({"rewrap", file.in(), "--range", "2:4"}).status, 0);
}

/// A clip has the length of the samples that are there whole.
TEST(Rewrap, CutsAClipWhereItEnds) {
    TemporaryFolder const folder;
    auto const wave = folder.file("sound.wav"), clip = folder.file("clip.mxf"), cut = folder.file("cut.mxf"),
               out = folder.file("out.mxf");
    writeFile(wave, riff("RIFF", waveFormat(1, 48000, 16) + chunk("data", repeated(2000, 0x5A))));
    ASSERT_EQ(runZelm({"wrap", wave, "--clip", "-o", clip}).status, 0);
    auto bytes = readFile(clip);
    auto const samples = repeated(2000, 0x5A);
    auto const begin = std::search(bytes.begin(), bytes.end(), samples.begin(), samples.end());
    ASSERT_NE(begin, bytes.end());
    bytes.erase(begin + 1001, bytes.end());
    writeFile(cut, bytes);
    auto const run = runZelm({"rewrap", cut, "-o", out});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.errors.find("after 500 of 1000 edit units"), std::string::npos) << run.errors;
    EXPECT_EQ(runZelm({"index", out}).status, 0);
    OpenFile after(readFile(out));
    EXPECT_EQ(after.containers().front().tracks.front().duration, 500);
}

} // namespace MXF::Zelm::Test
