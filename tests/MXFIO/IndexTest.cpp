/// The index tables of whole files, and the partitions that hold an essence container.
#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/IndexTables/EditUnitLocator.h"
#include "MXF/Zelm/MXFIO/EstimatePartitionProvider.h"
#include "MXF/Zelm/MXFIO/IndexTableGatherer.h"
#include "MXF/Zelm/MXFIO/PartitionMap.h"
#include "support/Files.h"
#include "support/IndexSegments.h"
#include "support/MxfFile.h"

#include <filesystem>
#include <iterator>
#include <map>

namespace MXF::Zelm::Test {

using namespace MXFIO;
using IndexTables::EditUnitLocator;

namespace {

constexpr auto Header = PartitionPack::Header;
constexpr auto Body = PartitionPack::Body;
constexpr auto Footer = PartitionPack::Footer;

using Change = std::function<void(PartitionPack&)>;

struct Open {
    explicit Open(Bytes bytes) : source(std::move(bytes)), reader(source, smallDictionary(), 65536) {}
    explicit Open(std::vector<Part> const& parts, Layout const& layout = {})
        : Open(makeFile(parts, layout).bytes) {}

    DataIO::Memory::MemoryDataSource source;
    Reader2 reader;
};

Bytes segment(std::int64_t start, std::int64_t duration, std::uint32_t indexSID = 2) {
    auto const made =
        makeSegment({.start = start, .duration = duration, .byteCount = 100, .indexSID = indexSID});
    return written(*made);
}

Part bodyPart(std::uint64_t offset, std::size_t size, std::uint32_t sid = 1) {
    return {.kind = Body, .body = essence(size - 20), .bodySID = sid, .bodyOffset = offset};
}

/// The segments of all tables: "INDEX SID/BODY SID: start+duration …".
std::string tables(IndexTableGatherer& gatherer) {
    gatherer.readAll();
    std::string all;
    for (auto const& [sids, cache] : gatherer.caches()) {
        all += std::to_string(sids.first) + "/" + std::to_string(sids.second) + ":";
        for (auto const& [start, held] : *cache->table())
            all += " " + std::to_string(start) + "+" + std::to_string(held->indexDuration().value());
        all += cache->isComplete() ? ". " : "? ";
    }
    return all;
}

std::string tables(std::vector<Part> const& parts, Layout const& layout = {},
                   IndexTableGatherer::Search search = IndexTableGatherer::Search::Declared) {
    Open file(parts, layout);
    IndexTableGatherer gatherer(file.reader, search);
    return tables(gatherer);
}

/// Pieces of a stream as "PARTITION:OFFSET IN ITS BODY+LENGTH", partitions counted in the file.
std::string pieces(Templates::vector<FileExtent> const& extents, MxfFile const& file,
                   std::uint64_t runIn = 0) {
    std::string all;
    for (auto const& extent : extents) {
        auto const offset = extent.partition->partitionPack().thisPartition();
        EXPECT_EQ(extent.partition->partitionAbsoluteOffset(), offset + runIn);
        auto const number =
            std::find(file.offsets.begin(), file.offsets.end(), offset) - file.offsets.begin();
        all += std::to_string(number) + ":" +
               std::to_string(extent.fileOffset - extent.partition->bodyAbsoluteOffset()) + "+" +
               std::to_string(extent.length) + " ";
    }
    return all;
}

} // namespace

TEST(IndexTableGatherer, FindsSegmentsWhereverTheyStand) {
    std::vector<Part> const parts{
        {.kind = Header, .metadata = smallMetadata(), .index = segment(0, 10), .indexSID = 2},
        bodyPart(0, 100),
        {.kind = Body,
         .index = segment(10, 10) + fill(30) + segment(20, 5),
         .body = essence(80),
         .indexSID = 2,
         .bodySID = 1,
         .bodyOffset = 100},
        {.kind = Body, .index = segment(0, 7, 3), .indexSID = 3},
        {.kind = Footer, .index = segment(25, 5) + segment(0, 10) + segment(10, 10), .indexSID = 2}};
    constexpr const char* all = "2/1: 0+10 10+10 20+5 25+5. 3/1: 0+7. ";
    for (bool const footerOffset : {true, false})
        for (bool const randomIndex : {true, false})
            for (std::size_t const runIn : {0u, 500u})
                EXPECT_EQ(tables(parts, {repeated(runIn, 0), footerOffset, randomIndex}), all);
}

TEST(IndexTableGatherer, ReadsNoMoreThanItMust) {
    Open file(std::vector<Part>{{.kind = Header, .index = segment(0, 10), .indexSID = 2},
                                {.kind = Body, .index = segment(10, 10), .indexSID = 2},
                                {.kind = Footer, .index = segment(20, 10), .indexSID = 2}});
    IndexTableGatherer gatherer(file.reader);
    EXPECT_EQ(file.reader.lastLoadedPartition(), nullptr);
    EXPECT_EQ(gatherer.segment(1, 25)->indexStartPosition().value(), 20);
    EXPECT_EQ(gatherer.caches().at({2, 1})->table()->size(), 1u) << "the last partition comes first";
    EXPECT_EQ(gatherer.segment(1, 5)->indexStartPosition().value(), 0);
    EXPECT_FALSE(gatherer.caches().at({2, 1})->isComplete());
    EXPECT_EQ(gatherer.segment(1, 99), nullptr);
    EXPECT_EQ(gatherer.segment(7, 5), nullptr);
    EXPECT_TRUE(gatherer.caches().at({2, 1})->isComplete());
    EXPECT_EQ(gatherer.table(7), nullptr);
    EXPECT_EQ(gatherer.table(1)->size(), 3u);
}

TEST(IndexTableGatherer, BelievesSegmentsMoreThanByteCounts) {
    Change const noIndex = [](PartitionPack& pack) { pack.indexByteCount(0); };
    Change const noSID = [](PartitionPack& pack) { pack.indexSID(0); };
    Change const tooMuch = [](PartitionPack& pack) { pack.indexByteCount(pack.indexByteCount() + 50); };
    Change const endless = [](PartitionPack& pack) { pack.indexByteCount(~0ull); };
    Change const oneOnly = [](PartitionPack& pack) { pack.indexByteCount(pack.indexByteCount() / 2); };
    for (auto const& change : {noIndex, noSID, tooMuch, endless, oneOnly}) {
        std::vector<Part> parts{{.kind = Header},
                                {.kind = Body,
                                 .index = segment(0, 10) + segment(10, 10),
                                 .body = essence(80),
                                 .indexSID = 2,
                                 .bodySID = 1,
                                 .change = change},
                                {.kind = Footer}};
        EXPECT_EQ(tables(parts), "2/1: 0+10 10+10. ");
        auto const made = makeFile(parts);
        Open file(made.bytes);
        auto const found = PartitionMap(file.reader, 1).find(0);
        ASSERT_TRUE(found);
        EXPECT_TRUE(
            sameBytes({made.bytes.begin() + static_cast<std::ptrdiff_t>(found->fileOffset),
                       made.bytes.begin() + static_cast<std::ptrdiff_t>(found->fileOffset + found->length)},
                      essence(80)));
    }
    // Amid essence, and with a header byte count that covers the index.
    std::vector<Part> const hidden{
        {.kind = Header,
         .index = segment(0, 10),
         .change = [](PartitionPack& pack) { pack.headerByteCount(1000); }},
        {.kind = Body, .body = essence(80) + segment(10, 10) + essence(80), .bodySID = 1},
        {.kind = Footer}};
    EXPECT_EQ(tables(hidden), "");
    EXPECT_EQ(tables(hidden, {}, IndexTableGatherer::Search::Everywhere), "2/1: 0+10 10+10. ");
}

TEST(IndexTableGatherer, PassesOverWhatCannotBeRead) {
    Bytes broken = segment(10, 10);
    broken[20] ^= 1; // the first tag: now an unknown item
    Bytes worse = segment(20, 10);
    worse[23] = 99; // the length of its value
    auto withoutSID = makeSegment({.start = 30, .duration = 5, .byteCount = 1});
    withoutSID->resetIndexSID();
    Bytes const index = segment(0, 10) + broken + worse + written(*withoutSID);
    Open file(std::vector<Part>{{.kind = Header, .index = index, .indexSID = 2}});
    IndexTableGatherer gatherer(file.reader);
    EXPECT_EQ(tables(gatherer), "2/1: 0+10 10+10 30+5. ");
    ASSERT_EQ(gatherer.faults().size(), 1u);
    EXPECT_TRUE(gatherer.faults()[0].offset);

    Bytes const beyond = Bytes(index.begin(), index.begin() + 16) + hex("83 00 10 00");
    Open tooLong(std::vector<Part>{{.kind = Header, .index = beyond, .indexSID = 2}, {.kind = Footer}});
    IndexTableGatherer refusing(tooLong.reader);
    EXPECT_EQ(tables(refusing), "");
    EXPECT_EQ(refusing.faults().at(0).message.substr(0, 67),
              "An index table segment of 0x1014 bytes runs beyond the end of its p");

    Open none(Bytes(100, 0));
    IndexTableGatherer nothing(none.reader);
    EXPECT_EQ(tables(nothing), "");
    EXPECT_EQ(PartitionMap(none.reader, 1).streamLength(), 0u);

    auto const whole =
        makeFile({{.kind = Header, .index = index, .indexSID = 2},
                  {.kind = Body, .index = segment(10, 10), .body = essence(5), .indexSID = 2, .bodySID = 1},
                  {.kind = Footer, .index = segment(0, 10), .indexSID = 2}});
    survivesEveryFault(whole.bytes, [](Bytes const& bytes) {
        Open faulty(bytes);
        IndexTableGatherer all(faulty.reader, IndexTableGatherer::Search::Everywhere);
        all.readAll();
        PartitionMap const map(faulty.reader, 1);
        std::uint64_t sum = 0;
        for (auto const& extent : map.extents())
            sum += extent.length;
        EXPECT_LE(sum, bytes.size());
    });
}

TEST(IndexTableCompleteCache, KeepsTheSegmentsOfOneTable) {
    IndexTableCompleteCache cache(2, 1);
    cache.cache(makeSegment({.start = 5, .duration = 5}));
    cache.cache(makeSegment({.start = 5, .duration = 5}));
    auto const held = cache.segment(7);
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(cache.segment(10), nullptr);
    EXPECT_EQ(cache.table()->size(), 1u);
    EXPECT_EQ(thrownBy([&] { cache.cache(makeSegment({.bodySID = 7})); }),
              "Trying to cache an IndexTableSegment with different bodySID");
    EXPECT_EQ(thrownBy([&] { cache.cache(makeSegment({.indexSID = 7})); }),
              "Trying to cache an IndexTableSegment with different indexSID");
}

TEST(PartitionMap, FollowsAnEssenceContainerThroughTheFile) {
    std::vector<Part> parts{{.kind = Header, .metadata = smallMetadata(), .body = essence(30), .bodySID = 1},
                            bodyPart(0, 70, 2),
                            bodyPart(50, 100),
                            bodyPart(150, 60),
                            {.kind = Footer}};
    for (std::size_t const runIn : {0u, 300u})
        for (bool const randomIndex : {true, false}) {
            auto const made = makeFile(parts, {repeated(runIn, 0), true, randomIndex});
            Open file(made.bytes);
            PartitionMap map(file.reader, 1);
            EXPECT_EQ(map.streamLength(), 210u);
            EXPECT_EQ(pieces(map.extents(), made, runIn), "0:0+50 2:0+100 3:0+60 ");
            EXPECT_EQ(pieces(map.extents(49, 2), made, runIn), "0:49+1 2:0+1 ");
            EXPECT_EQ(pieces(map.extents(40, 130), made, runIn), "0:40+10 2:0+100 3:0+20 ");
            EXPECT_EQ(pieces(map.extents(200, ~0ull), made, runIn), "3:50+10 ");
            EXPECT_EQ(pieces(map.extents(210, 5), made, runIn), "");
            EXPECT_EQ(map.find(149)->length, 1u);
            EXPECT_EQ(map.partition(150)->partitionPack().thisPartition(), made.offsets[3]);
            EXPECT_EQ(map.partition(~0ull), nullptr);
            EXPECT_EQ(PartitionMap(file.reader, 2).streamLength(), 70u);
        }
}

TEST(PartitionMap, MakesTheBestOfBodyOffsetsThatLie) {
    std::uint64_t const big = 1ull << 62;
    struct {
        std::vector<std::uint64_t> offsets;
        const char* expected;
        std::uint64_t length;
    } const rows[] = {
        {{0, 0, 0}, "1:0+100 2:0+100 3:0+100 ", 300},   // never set
        {{0, 50, 150}, "1:0+50 2:0+100 3:0+100 ", 250}, // less than there is
        {{0, 200, 300}, "1:0+100 ", 400},               // a partition is missing
        {{big, 5, big + 200}, "", big + 300},
        {{~0ull - 50, ~0ull - 20, 0}, "", ~0ull},
    };
    for (auto const& row : rows) {
        std::vector<Part> parts{{.kind = Header}};
        for (auto const offset : row.offsets)
            parts.push_back(bodyPart(offset, 100));
        parts.push_back({.kind = Footer});
        auto const made = makeFile(parts);
        Open file(made.bytes);
        PartitionMap const map(file.reader, 1);
        EXPECT_EQ(pieces(map.extents(0, 1000), made), row.expected);
        EXPECT_EQ(map.streamLength(), row.length);
    }
}

TEST(EstimatePartitionProvider, FindsPartitionsOfEqualSize) {
    std::vector<Part> parts{{.kind = Header, .metadata = smallMetadata()}};
    for (std::uint64_t i = 0; i < 9; ++i) {
        parts.push_back(bodyPart(i * 100, i < 8 ? 100 : 60));
        parts.push_back(bodyPart(i * 30, 30, 2));
    }
    parts.push_back({.kind = Footer});
    auto const made = makeFile(parts, {repeated(77, 0)});
    Open file(made.bytes);
    EstimatePartitionProvider provider(file.reader, 1);
    EXPECT_EQ(provider.estimatedBodySize(), 100u);
    for (std::uint64_t offset = 0; offset < 860; ++offset)
        ASSERT_EQ(provider.partition(offset)->partitionPack().thisPartition(),
                  made.offsets[static_cast<std::size_t>(1 + 2 * (offset / 100))]);
    EXPECT_EQ(provider.partition(900), nullptr);
    EXPECT_EQ(provider.partition(~0ull), nullptr);
}

TEST(EstimatePartitionProvider, GoesBackAndForthFromTheEstimate) {
    auto const find = [](std::vector<std::uint64_t> const& offsets, std::uint64_t streamOffset) {
        std::vector<Part> parts{{.kind = Header}};
        for (std::size_t i = 0; i < offsets.size(); ++i)
            parts.push_back(bodyPart(offsets[i], 100));
        parts.push_back({.kind = Footer});
        Open file(parts);
        EstimatePartitionProvider provider(file.reader, 1);
        auto const* const found = provider.partition(streamOffset);
        return found != nullptr ? static_cast<std::int64_t>(found->partitionPack().bodyOffset()) : -1;
    };
    EXPECT_EQ(find({0}, 50), 0);
    EXPECT_EQ(find({0}, 100), -1);
    EXPECT_EQ(find({0, 500, 600}, 550), 500);  // two back
    EXPECT_EQ(find({0, 10, 20, 30}, 125), 30); // two forth
    EXPECT_EQ(find({0, 500, 600}, 300), -1);   // between two
    EXPECT_EQ(find({50, 150}, 20), -1);
}

TEST(EstimatePartitionProvider, SaysWhatIsMissing) {
    auto const failure = [](std::vector<Part> const& parts, Layout const& layout = {}) {
        Open file(parts, layout);
        return thrownBy([&] { EstimatePartitionProvider(file.reader, 1); });
    };
    constexpr const char* notInRIP = "No partition for this bodySID was found in RIP.";
    EXPECT_EQ(failure({{.kind = Header}}), notInRIP);
    EXPECT_EQ(failure({{.kind = Header}, bodyPart(0, 50), {.kind = Footer}}, {{}, true, false}), notInRIP);
    EXPECT_EQ(failure({{.kind = Header}, bodyPart(0, 50)}),
              "File has no footer. No partition found after the last body partition for this bodySID.");
    Part lying = bodyPart(0, 50);
    lying.change = [](PartitionPack& pack) { pack.headerByteCount(0xFFF0000); };
    EXPECT_TRUE(
        failure({{.kind = Header}, lying, {.kind = Footer}})
            .starts_with("Expected body absolute offset of last body partition 0xFFF00D8is higher than "
                         "begin of footer/next partition (0x"));
    // The random index pack leads to no partition.
    auto made = makeFile({{.kind = Header}, bodyPart(0, 50000), {.kind = Footer}});
    std::fill_n(made.bytes.begin() + static_cast<std::ptrdiff_t>(made.offsets[1]), 16, std::uint8_t{0});
    DataIO::Memory::MemoryDataSource source(made.bytes);
    Reader2 reader(source, smallDictionary(), 100);
    EXPECT_EQ(thrownBy([&] { EstimatePartitionProvider(reader, 1); }),
              "Unable to find a partition in an offset indicated in RIP.");
}

TEST(Index, LeadsToTheBytesOfAnEditUnit) {
    // Edit units of 100 bytes; the third begins in one partition and ends in the next.
    Bytes const units = essence(80, 1) + essence(80, 2) + essence(80, 3) + essence(80, 4);
    auto const cut = units.begin() + 250;
    std::vector<Part> parts{{.kind = Header},
                            {.kind = Body, .body = {units.begin(), cut}, .bodySID = 1},
                            {.kind = Body, .body = {cut, units.end()}, .bodySID = 1, .bodyOffset = 250},
                            {.kind = Footer, .index = segment(0, 0), .indexSID = 2}};
    auto const made = makeFile(parts);
    Open file(made.bytes);
    IndexTableGatherer gatherer(file.reader);
    auto const table = gatherer.table(1);
    PartitionMap const map(file.reader, 1);
    EditUnitLocator const locator(*table, IndexTables::EssenceExtent{map.streamLength()});
    EXPECT_EQ(locator.end(), 4);
    for (unsigned char i = 0; i < 4; ++i) {
        auto const unit = locator.locate(i);
        Bytes found;
        for (auto const& extent : map.extents(unit->streamOffset, *unit->length)) {
            auto const first = made.bytes.begin() + static_cast<std::ptrdiff_t>(extent.fileOffset);
            found.insert(found.end(), first, first + static_cast<std::ptrdiff_t>(extent.length));
        }
        EXPECT_TRUE(sameBytes(found, essence(80, static_cast<unsigned char>(i + 1))));
    }
}

TEST(IndexSamples, AreWrittenAsTheyWereRead) {
    std::string const name = std::string(MXFZELM_SAMPLES_DIR) + "/index-partition-only.bin";
    if (!std::filesystem::exists(name))
        GTEST_SKIP() << "no " << name;
    OnePacket packet(readFile(name));
    IndexTables::IndexTableSegment const segment(*packet, nullptr);
    EXPECT_EQ(segment.indexEntryCount(), 96u);
    EXPECT_EQ(segment.indexEntry(2).streamOffset(), 0xDBDEu);
    Bytes const file = readFile(name), again = written(segment);
    EXPECT_TRUE(sameBytes(again, {file.begin(), file.begin() + std::ssize(again)}));
}

TEST(IndexSamples, LeadToEssenceKeys) {
    if (sampleFiles().empty())
        GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
    // Edit units found, and how many of them begin with the key of an essence element.
    struct Expected {
        std::size_t segments, units, keys;
    };
    std::map<std::string, Expected> const expected{
        {"aces-picture-frame-wrapped.mxf", {1, 4, 4}},
        {"d10-imx50-op1a.mxf", {1, 2, 2}},
        {"jpeg2000-op1a-final-footer.mxf", {1, 1, 1}},
        {"iab-generic-streams.mxf", {1, 5, 0}}, // clip wrapped: the entries point into the clip
        {"vc3-opatom-indirect-values.mxf", {1, 1, 1}},
        {"timed-text.mxf", {1, 1, 1}},
    };
    for (auto const& path : sampleFiles()) {
        DataIO::File::FileDataSource source(path.string());
        Reader2 reader(source, smallDictionary(), 65536);
        IndexTableGatherer gatherer(reader);
        gatherer.readAll();
        EXPECT_TRUE(gatherer.faults().empty()) << path;
        Expected found{0, 0, 0};
        for (auto const& [sids, cache] : gatherer.caches()) {
            found.segments += cache->table()->size();
            PartitionMap const map(reader, sids.second);
            EditUnitLocator const locator(*cache->table(), IndexTables::EssenceExtent{map.streamLength()});
            for (std::int64_t i = 0; i < std::min<std::int64_t>(locator.end().value_or(0), 1000); ++i) {
                auto const unit = locator.locate(i);
                EXPECT_TRUE(unit && unit->length) << path << " edit unit " << i;
                if (!unit)
                    continue;
                ++found.units;
                source.seek(map.find(unit->streamOffset)->fileOffset);
                KLV::Reader keys(source);
                std::uint64_t skipped = 0;
                try {
                    found.keys += KLV::isEssence(keys.peekNextKey(skipped, 0)) ? 1 : 0;
                } catch (Exceptions::BaseException const&) {
                    // Clip wrapped.
                }
            }
        }
        if (auto const row = expected.find(path.filename().string()); row != expected.end()) {
            EXPECT_EQ(found.segments, row->second.segments) << path;
            EXPECT_EQ(found.units, row->second.units) << path;
            EXPECT_EQ(found.keys, row->second.keys) << path;
        }
    }
}

} // namespace MXF::Zelm::Test
