// zelm diff: what counts as a difference, and what does not.
#include "Programs/SmallFile.h"
#include "support/MxfFile.h"
#include "support/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace MXF::Zelm::Test {

namespace {

using Json = nlohmann::json;

constexpr KLV::Key materialPackageKey = "060E2B34.02530101.0D010101.01013600"_key;

struct Diff {
    int status = -1;
    Json json;

    /// The paths of the differences that count.
    std::vector<std::string> paths() const {
        std::vector<std::string> found;
        for (auto const& difference : json["differences"])
            if (difference["counted"].get<bool>())
                found.push_back(difference["path"]);
        return found;
    }
};

Diff diff(Bytes const& a, Bytes const& b, std::vector<std::string> options = {}) {
    FileOnDisk const fileA(a), fileB(b);
    options.insert(options.begin(), {"diff", "--json", fileA.name(), fileB.name()});
    auto const run = runZelm(options);
    return {run.status, run.output.empty() ? Json() : Json::parse(run.output)};
}

using Paths = std::vector<std::string>;

Bytes reference(unsigned char last) {
    auto const uuid = uid(last);
    return {uuid.rawBuffer(), uuid.rawBuffer() + 16};
}

Bytes batch(std::vector<unsigned char> const& members) {
    Bytes bytes = number(static_cast<std::uint32_t>(members.size())) + number(std::uint32_t{16});
    for (auto const member : members)
        bytes = bytes + reference(member);
    return bytes;
}

/// What a metadata of four sets may differ in.
struct Sets {
    unsigned char firstUID = 1;
    Bytes name = number(std::uint16_t{u'A'});
    Bytes umid = repeated(32, 7);
    std::vector<unsigned char> tracks = {};
    std::size_t fillBehind = 0;
};

/// A Preface, its content storage, and a material package whose tracks are whatever `tracks` refers to.
Bytes metadataOf(Sets const& sets) {
    unsigned char const preface = sets.firstUID, contents = preface + 1, package = preface + 2;
    Packs::PrimerPack primer;
    return written(primer) + klv(prefaceKey, uidItem(preface) + item(0x3B03, reference(contents))) +
           klv(storageKey, uidItem(contents) + item(0x1901, batch({package}))) +
           klv(materialPackageKey, uidItem(package) + item(0x4401, sets.umid) + item(0x4402, sets.name) +
                                       (sets.tracks.empty() ? Bytes() : item(0x4403, batch(sets.tracks)))) +
           (sets.fillBehind != 0 ? fill(sets.fillBehind) : Bytes());
}

Bytes fileOf(Sets const& sets) {
    return makeFile({Part{.metadata = metadataOf(sets)},
                     Part{.kind = PartitionPack::Body, .body = essence(100), .bodySID = 1},
                     Part{.kind = PartitionPack::Footer, .metadata = metadataOf(sets)}})
        .bytes;
}

TEST(Diff, OfIdentifiersAndWhatMovedIsNone) {
    auto const file = fileOf({});
    auto const other = fileOf({.firstUID = 0x41, .umid = repeated(32, 9), .fillBehind = 40});
    EXPECT_EQ(
        diff(file, file, {"--identifiers", "--dates", "--history", "--layout", "--essence-bytes"}).status, 0);
    auto const plain = diff(file, other);
    EXPECT_EQ(plain.status, 0) << plain.json.dump(1);
    EXPECT_TRUE(plain.json["equal"].get<bool>());

    auto const layout = diff(file, other, {"--layout"});
    EXPECT_EQ(layout.status, 1);
    auto const moved = layout.paths();
    EXPECT_EQ(std::count(moved.begin(), moved.end(), "ThisPartition of partitions 1 to 2"), 1)
        << layout.json.dump(1);

    auto const identifiers = diff(file, other, {"--identifiers"});
    EXPECT_EQ(identifiers.status, 1);
    EXPECT_EQ(identifiers.paths(), (Paths{"Preface/InstanceUID", "ContentStorage/InstanceUID",
                                          "MaterialPackage/InstanceUID", "MaterialPackage/PackageUID"}));
}

TEST(Diff, TellsAChangeThatIsInBothCopiesOnce) {
    auto const file = fileOf({});
    auto const renamed = diff(file, fileOf({.name = number(std::uint16_t{u'B'})}));
    EXPECT_EQ(renamed.status, 1);
    ASSERT_EQ(renamed.paths(), Paths{"MaterialPackage/Name"});
    EXPECT_EQ(renamed.json["differences"][0]["a"], "A");
    EXPECT_EQ(renamed.json["differences"][0]["b"], "B");

    auto footerOnly = makeFile({Part{.metadata = metadataOf({})},
                                Part{.kind = PartitionPack::Body, .body = essence(100), .bodySID = 1},
                                Part{.kind = PartitionPack::Footer,
                                     .metadata = metadataOf({.name = number(std::uint16_t{u'B'})})}})
                          .bytes;
    EXPECT_EQ(diff(file, footerOnly).paths(), Paths{"partition 2: MaterialPackage/Name"});
}

TEST(Diff, EndsOnSetsThatReferInCircles) {
    auto const circle = fileOf({.tracks = {3, 1, 3, 2}}), straight = fileOf({});
    EXPECT_EQ(diff(circle, circle).status, 0);
    EXPECT_EQ(diff(circle, fileOf({.firstUID = 0x41, .tracks = {0x43, 0x41, 0x43, 0x42}})).status, 0);
    EXPECT_EQ(diff(circle, straight).status, 1) << "the tracks are gone";
    FileOnDisk const file(circle);
    EXPECT_EQ(runZelm({"edit", "--paths", file.name()}).status, 0);
}

TEST(Diff, FindsSingleBytesOfEveryArea) {
    SmallFile const file;
    struct Case {
        std::size_t place;
        unsigned char value;
        std::vector<std::string> options;
        const char* path; // how it begins; null for no difference
    };
    std::size_t const keyAndLength = 20;
    Case const cases[] = {
        {file.essence1 - 1, 0x56, {}, "segment 0/bytes that are no item"},
        {file.essence1 + keyAndLength, 0x56, {}, nullptr},
        {file.essence1 + keyAndLength + 7,
         0x56,
         {"--essence-bytes"},
         "BodySID 1/bytes of 1 packet, the first number 0 at byte 7"},
        {file.essence1 + 15, 0x06, {}, "BodySID 1/first packet that differs: number 0"},
        {file.essence1 + 15, 0x06, {"--no-essence"}, nullptr},
        {file.body1 - 1, 0x56, {}, "dark set urn:smpte:ul:060e2b34.02530101.0d010101.01012f00"},
        {file.body1 + 27, 2, {}, "partition 1/KAGSize"},
        {file.body2 + PackField::bodySID + 3, 9, {}, "partition 2"},
        {file.body2 + PackField::thisPartition + 7, 1, {}, "partition 2/this_partition is inconsistent"},
    };
    for (auto const& row : cases) {
        auto changed = file.bytes;
        changed[row.place] = row.value;
        auto const found = diff(file.bytes, changed, row.options);
        ASSERT_EQ(found.paths().empty(), row.path == nullptr) << found.json.dump(1);
        if (row.path != nullptr) {
            EXPECT_EQ(found.paths().front().find(row.path), 0u) << found.json.dump(1);
        }
    }
}

TEST(Diff, ShowsPartitionsAndPacketsThatOneFileHasMore) {
    Part const header{.metadata = smallMetadata()};
    Part const first{.kind = PartitionPack::Body, .body = essence(10) + essence(20), .bodySID = 1};
    Part const second{.kind = PartitionPack::Body, .body = essence(30), .bodySID = 2};
    Part const footer{.kind = PartitionPack::Footer};
    auto const found =
        diff(makeFile({header, first, second, footer}).bytes, makeFile({header, second, footer}).bytes);
    EXPECT_EQ(found.status, 1);
    auto const paths = found.paths();
    EXPECT_EQ(paths[0], "partition 1");
    EXPECT_EQ(paths[1], "random index pack");
    EXPECT_EQ(paths[2].find("BodySID 1/060E2B34"), 0u) << found.json.dump(1);
    EXPECT_EQ(paths.size(), 3u) << found.json.dump(1);

    std::vector<Part> parts{header, first, second, footer};
    auto const before = makeFile(parts).bytes;
    for (std::size_t i = 1; i < parts.size(); ++i)
        parts[i].change = [](PartitionPack& pack) { pack.kagSize(512); };
    EXPECT_EQ(diff(before, makeFile(parts).bytes).paths(), Paths{"partitions 1 to 3/KAGSize"});
}

TEST(Diff, SaysInOneLineWhetherFilesAreEqualAndRefusesWhatIsNone) {
    FileOnDisk const file(SmallFile().bytes), junk(Bytes(1000, 'x'));
    auto const equal = runZelm({"diff", file.name(), file.name()});
    EXPECT_EQ(equal.output, "equal: " + file.name() + " and " + file.name() + "\n");
    EXPECT_EQ(equal.status, 3) << "its set cannot be read";
    EXPECT_EQ(runZelm({"diff", file.name(), junk.name()}).status, 3);
    EXPECT_EQ(runZelm({"diff", file.name(), "no-such-file.mxf"}).status, 4);
    EXPECT_EQ(runZelm({"diff", file.name()}).status, 2);
    auto cut = SmallFile().bytes;
    cut.resize(cut.size() - 200);
    FileOnDisk const shorter(cut);
    EXPECT_EQ(runZelm({"diff", file.name(), shorter.name()}).status, 3);
}

} // namespace

} // namespace MXF::Zelm::Test
