/// The file reader over small files made in memory.
#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/MXFIO/Partition.h"
#include "MXF/Zelm/MXFIO/Reader2.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"
#include "MXF/Zelm/Platform/Licenser.h"
#include "support/Files.h"
#include "support/MxfFile.h"

namespace MXF::Zelm::Test {

using DataIO::Memory::MemoryDataSource;
using MXFIO::Partition;

namespace {

constexpr auto Header = PartitionPack::Header;
constexpr auto Body = PartitionPack::Body;
constexpr auto Footer = PartitionPack::Footer;
constexpr auto openStatus = PartitionPack::OpenIncomplete;
constexpr auto closedStatus = PartitionPack::ClosedComplete;

/// A reader with its source, and its protected operations.
struct Open : MemoryDataSource, MXFIO::Reader2 {
    explicit Open(Bytes bytes, std::uint64_t limit = 65536)
        : MemoryDataSource(std::move(bytes)),
          Reader2(static_cast<MemoryDataSource&>(*this), smallDictionary(), limit) {}
    using MXFIO::Reader2::lastPartitionFromHeaderFooterOffset;
    using MXFIO::Reader2::lastPartitionFromRIP;
    using MXFIO::Reader2::searchLastPartition;
    using Platform::Allocated::operator new;
    using Platform::Allocated::operator delete;
};

/// Header, two bodies of streams 1 and 2, footer.
std::vector<Part> usualParts() {
    return {{.kind = Header, .metadata = smallMetadata()},
            {.kind = Body,
             .index = indexSegment() + fill(30) + indexSegment(9),
             .body = essence(40, 1) + fill(25) + essence(50, 2),
             .indexSID = 9,
             .bodySID = 1},
            {.kind = Body,
             .status = PartitionPack::ClosedIncomplete,
             .body = essence(60),
             .bodySID = 2,
             .bodyOffset = 0x64},
            {.kind = Footer, .metadata = smallMetadata(2)}};
}

std::uint64_t thisOf(Partition const* partition) {
    return partition != nullptr ? partition->partitionPack().thisPartition() : ~0ull;
}

/// ThisPartition of all partitions, walking forwards or backwards.
std::vector<std::uint64_t> walk(Open& file, bool forwards) {
    std::vector<std::uint64_t> offsets;
    for (Partition* at = forwards ? file.headerPartition() : file.lastPartition(); at != nullptr;
         at = forwards ? file.nextPartition(at) : file.previousPartition(at))
        offsets.push_back(thisOf(at));
    if (!forwards)
        std::reverse(offsets.begin(), offsets.end());
    return offsets;
}

} // namespace

TEST(Reader, WalksFilesWithAndWithoutRunIn) {
    for (std::size_t const runIn : {0u, 1u, 5u, 1000u}) {
        MxfFile const made = makeFile(usualParts(), {.runIn = repeated(runIn, 0x06)});
        for (bool const forwards : {true, false}) {
            Open file(made.bytes, 1000);
            EXPECT_EQ(file.lastLoadedPartition(), nullptr);
            EXPECT_EQ(walk(file, forwards), made.offsets);
            EXPECT_EQ(file.runInLength(), runIn);
            EXPECT_EQ(file.lastLoadedPartition()->partitionAbsoluteOffset(), made.offsets[3] + runIn);
            Partition* const header = file.headerPartition();
            EXPECT_EQ(header->partitionAbsoluteOffset(), runIn);
            EXPECT_EQ(walk(file, !forwards), made.offsets);
            EXPECT_EQ(file.headerPartition(), header) << "partitions are read once";
            EXPECT_EQ(file.partitionAtOffset(made.offsets[2])->partitionAbsoluteOffset(),
                      made.offsets[2] + runIn);
            if (runIn == 0) {
                EXPECT_EQ(file.runIn(), nullptr);
            } else {
                EXPECT_EQ(file.runIn()->readRemaining(), repeated(runIn, 0x06));
                EXPECT_EQ(file.runIn()->remaining(), runIn) << "served from its start again";
            }
        }
    }
    MxfFile const made = makeFile(usualParts(), {.runIn = repeated(1001, 0x06)});
    Open file(made.bytes, 1000);
    EXPECT_EQ(file.headerPartition(), nullptr);
    for (auto const& action : std::vector<std::function<void()>>{
             [&] { file.firstPartitionWithFinalMetadata(); },
             [&] { file.backwardFirstPartitionWithFinalMetadata(); }, [&] { file.lastPartition(); }})
        try {
            action();
            ADD_FAILURE();
        } catch (Exceptions::InvalidStructure const& failure) {
            EXPECT_EQ(failure.message(), "No header partition found");
            EXPECT_EQ(failure.condition(), "header != 0");
            EXPECT_TRUE(failure.sourceFile().starts_with("src/MXF/Zelm/MXFIO/Reader"));
        }
    EXPECT_EQ(Open(Bytes()).headerPartition(), nullptr);
}

TEST(Reader, FindsPartitionsByStreamAndStatus) {
    MxfFile const made = makeFile(usualParts());
    Open file(made.bytes);
    Partition* const header = file.headerPartition();
    Partition* const footer = file.lastPartition();
    EXPECT_EQ(thisOf(file.nextPartition(header, 2)), made.offsets[2]);
    EXPECT_EQ(file.nextPartition(header, 7), nullptr);
    EXPECT_EQ(thisOf(file.previousPartition(footer, 1)), made.offsets[1]);
    EXPECT_EQ(file.previousPartition(footer, 7), nullptr);
    EXPECT_EQ(thisOf(file.nextIndexPartition(header, 9)), made.offsets[1]);
    EXPECT_EQ(thisOf(file.previousIndexPartition(footer, 9)), made.offsets[1]);
    EXPECT_EQ(file.nextIndexPartition(header, 1), nullptr);
    EXPECT_EQ(thisOf(file.nextCompletePartition(file.partitionAtOffset(made.offsets[1]))), made.offsets[3]);
    EXPECT_EQ(thisOf(file.nextClosedPartition(header)), made.offsets[1]);
    EXPECT_EQ(file.nextPartition(footer), nullptr);
    EXPECT_EQ(file.previousPartition(header), nullptr);
}

TEST(Reader, AsksForALicence) {
    struct : Platform::LicenseManager {
        bool isLicensed(std::string_view feature) override { return feature != "MXFIO.Reader"; }
    } manager;
    Platform::Licenser::licenseManager(&manager);
    EXPECT_THROW(Open file({}), Exceptions::InvalidLicense);
    Platform::Licenser::licenseManager(nullptr);
}

TEST(Reader, LoadsARandomIndexPackOrNone) {
    MxfFile const made = makeFile(usualParts());
    Open file(made.bytes);
    EXPECT_EQ(file.rip(), nullptr);
    ASSERT_TRUE(file.loadRIP());
    EXPECT_EQ(file.rip()->size(), 4u);

    auto const withLength = [&](std::uint32_t length) {
        return Bytes(made.bytes.begin(), made.bytes.end() - 4) + number(length);
    };
    auto const size = static_cast<std::uint32_t>(made.bytes.size());
    Bytes otherKey = made.bytes;
    otherKey[made.bytes.size() - 72 + 13] = 0x10;
    Bytes const rows[] = {withLength(20),
                          withLength(21),
                          withLength(0),
                          withLength(size),
                          withLength(size + 1),
                          withLength(0xFFFFFFFF),
                          withLength(71),
                          otherKey,
                          {},
                          hex("00 00 01"),
                          hex("00 00 00 04"),
                          // the pack's length runs past the end of the file
                          repeated(30, 0) + Bytes(made.bytes.end() - 72, made.bytes.end() - 56) +
                              hex("83 FF FF FF") + repeated(12, 0) + hex("00 00 00 24")};
    for (auto const& row : rows) {
        Open hostile(row);
        EXPECT_FALSE(hostile.loadRIP());
        EXPECT_EQ(hostile.rip(), nullptr);
    }
    Bytes const smallest = repeated(5, 0) + klv(Packs::RandomIndexPack::key(), hex("00 00 00 15"), 1);
    Open empty(smallest);
    EXPECT_TRUE(empty.loadRIP()) << "21 bytes: no entries";

    TemporaryFolder const folder;
    writeFile(folder.file("a.mxf"), made.bytes);
    DataIO::File::FileDataSource source(folder.file("a.mxf"));
    MXFIO::Reader reader(source, smallDictionary(), 0);
    EXPECT_TRUE(reader.loadRIP());
    std::filesystem::resize_file(folder.file("a.mxf"), made.bytes.size() - 1);
    source.refreshSize();
    EXPECT_FALSE(reader.loadRIP());
    EXPECT_EQ(reader.rip(), nullptr) << "nothing is kept";
}

TEST(Reader2, FindsTheFooterByEachOfItsWays) {
    for (bool const footerOffset : {true, false})
        for (bool const randomIndex : {true, false})
            for (std::size_t const size :
                 {40u, 6144u - 200u, 20'000u}) { // around and beyond a step of the search
                auto parts = usualParts();
                parts[2].body = essence(size);
                parts[3].body = fill(size);
                MxfFile const made = makeFile(parts, {repeated(7, 0), footerOffset, randomIndex});
                Open file(made.bytes);
                Open other(made.bytes);
                EXPECT_EQ(thisOf(file.lastPartition()), made.offsets[3]);
                EXPECT_EQ(thisOf(other.footerPartition()), made.offsets[3]);
                EXPECT_EQ(file.footerPartition(), file.lastPartition());
                EXPECT_EQ(Open(made.bytes).lastPartitionFromHeaderFooterOffset() != nullptr, footerOffset);
                EXPECT_EQ(thisOf(file.lastPartitionFromRIP()), randomIndex ? made.offsets[3] : ~0ull);
                EXPECT_EQ(thisOf(file.searchLastPartition(true)), made.offsets[3]);
            }
}

TEST(Reader2, FindsAPackThatStraddlesTwoStepsOfTheSearch) {
    for (std::size_t trailing = 6144 - 140; trailing < 6144 + 140; ++trailing) {
        auto parts = usualParts();
        parts[3].body = repeated(trailing, 0);
        MxfFile const made = makeFile(parts, {{}, false, false});
        Open file(made.bytes);
        ASSERT_EQ(thisOf(file.lastPartition()), made.offsets[3]) << trailing;
    }
}

TEST(Reader2, TakesAnUnfinishedFileAsItIs) {
    auto parts = usualParts();
    parts.pop_back();
    parts[0].status = openStatus;
    parts[2].body = essence(300);
    MxfFile const made = makeFile(parts, {repeated(3, 0), false, false});
    Open file(made.bytes);
    EXPECT_EQ(thisOf(file.lastPartition()), made.offsets[2]);
    EXPECT_EQ(file.footerPartition(), nullptr);
    // However the file is cut, the walk gives the partitions before the cut and no exception.
    for (auto size = static_cast<std::size_t>(made.offsets[1]) + 3; size < made.bytes.size(); ++size) {
        Open cut(Bytes(made.bytes.begin(), made.bytes.begin() + static_cast<std::ptrdiff_t>(size)));
        auto const forwards = walk(cut, true);
        ASSERT_GE(forwards.size(), 1u) << size;
        ASSERT_EQ(walk(cut, false), forwards) << size;
        ASSERT_EQ(cut.firstPartitionWithFinalMetadata(), cut.headerPartition()) << size;
        ASSERT_EQ(cut.footerPartition(), nullptr) << size;
    }
    EXPECT_EQ(thrownBy([] { Open(repeated(20'000, 0)).searchLastPartition(false); }), "No partition found");
    EXPECT_EQ(thrownBy([] { Open(Bytes()).searchLastPartition(true); }), "No partition found");
}

TEST(Reader2, SaysWhenTheFooterIsNotWhereItShouldBe) {
    constexpr auto message = "Footer not found where indicated in primer";
    for (std::uint64_t const offset :
         {std::uint64_t{5}, std::uint64_t{200}, std::uint64_t{1} << 40, ~std::uint64_t{0}}) {
        auto parts = usualParts();
        parts[0].change = [offset](PartitionPack& pack) { pack.footerPartition(offset); };
        MxfFile const made = makeFile(parts);
        Open file(made.bytes);
        EXPECT_EQ(thrownBy([&] { file.lastPartition(); }), message) << offset;
        EXPECT_EQ(thrownBy([&] { file.footerPartition(); }), message);
    }
    // A key with a length that is none stands there.
    auto parts = usualParts();
    parts[2].body = essence(60) + klv(unknownKey, {}, 1);
    parts[2].body.back() = 0x80;
    MxfFile made = makeFile(parts);
    parts[0].change = [at = made.offsets[3] - 17](PartitionPack& pack) { pack.footerPartition(at); };
    EXPECT_EQ(thrownBy([&] { Open(makeFile(parts).bytes).lastPartition(); }), message);

    Packs::RandomIndexPack rip;
    rip.add(1, made.offsets[1]);
    MxfFile const withoutRip = makeFile(usualParts(), {{}, false, false});
    Open file(withoutRip.bytes + written(rip));
    file.nextPartition(file.headerPartition()); // the body partition is known
    try {
        file.lastPartition();
        ADD_FAILURE();
    } catch (Exceptions::InvalidStructure const& failure) {
        EXPECT_EQ(failure.message(), "Last Partition indicated by RIP is not a Footer Partition");
        EXPECT_EQ(failure.condition(),
                  "partition -> partitionPack ().partitionKind () == PartitionPack::FOOTER_PARTITION");
    }
}

TEST(Reader, ChoosesTheHeaderMetadata) {
    struct {
        PartitionPack::PartitionStatus header, body, footer;
        bool inHeader, inBody, inFooter;
        int forwards, backwards; // the partition; -1 for none
    } const rows[] = {
        {closedStatus, closedStatus, closedStatus, true, true, true, 0, 0},
        {openStatus, closedStatus, closedStatus, true, true, true, 1, 2},
        {openStatus, openStatus, closedStatus, true, true, true, 2, 2},
        {openStatus, openStatus, openStatus, true, true, true, 2, 2},
        {openStatus, openStatus, openStatus, true, true, false, 1, 1},
        {openStatus, openStatus, closedStatus, true, false, false, 0, 0},
        {closedStatus, openStatus, closedStatus, false, false, true, 2, 2}, // footer only
        {closedStatus, closedStatus, closedStatus, false, false, false, 0, -1},
    };
    for (auto const& row : rows) {
        auto const metadata = [](bool has) { return has ? smallMetadata() : Bytes(); };
        MxfFile const made =
            makeFile({{.kind = Header, .status = row.header, .metadata = metadata(row.inHeader)},
                      {.kind = Body, .status = row.body, .metadata = metadata(row.inBody)},
                      {.kind = Footer, .status = row.footer, .metadata = metadata(row.inFooter)}});
        auto const expected = [&](int index) {
            return index >= 0 ? made.offsets[static_cast<std::size_t>(index)] : ~0ull;
        };
        Open forwards(made.bytes);
        EXPECT_EQ(thisOf(forwards.firstPartitionWithFinalMetadata()), expected(row.forwards));
        Open backwards(made.bytes);
        EXPECT_EQ(thisOf(backwards.backwardFirstPartitionWithFinalMetadata()), expected(row.backwards));
    }
}

TEST(Reader, SaysWhatIsInconsistentInTheChain) {
    using Change = std::function<void(PartitionPack&)>;
    struct {
        std::size_t part;
        Change change;
        bool forwards;
        const char* message;
        const char* condition;
    } const rows[] = {
        {2, [](PartitionPack& pack) { pack.previousPartition(1 << 20); }, true,
         "The Partition Pack has an invalid PreviousPartition value",
         "next == 0 || next -> partitionPack ().previousPartition () <= current -> partitionPack "
         "().thisPartition ()"},
        {3, [](PartitionPack& pack) { pack.previousPartition(pack.thisPartition()); }, false,
         "A Partition has an invalid PreviousPartition value", "previous != current && previous != 0"},
        {3, [](PartitionPack& pack) { pack.previousPartition(1 << 20); }, false,
         "A Partition has an invalid PreviousPartition value", "previous != current && previous != 0"},
        {2, [](PartitionPack& pack) { pack.thisPartition(1 << 20); }, false,
         "Partitions have inconsistent ThisPartition values",
         "previous -> partitionPack ().thisPartition () < current -> partitionPack ().thisPartition ()"},
    };
    for (auto const& row : rows) {
        auto parts = usualParts();
        parts[row.part].change = row.change;
        Open file(makeFile(parts).bytes);
        try {
            walk(file, row.forwards);
            ADD_FAILURE() << row.message;
        } catch (Exceptions::InvalidStructure const& failure) {
            EXPECT_EQ(failure.message(), row.message);
            EXPECT_EQ(failure.condition(), row.condition);
            EXPECT_TRUE(failure.offset());
        }
    }
}

TEST(Reader, KnowsGenericStreamPartitions) {
    auto parts = usualParts();
    KLV::Key const streamKey = "060E2B34.02050101.0D010201.01031100"_key;
    parts[2].change = [&](PartitionPack& pack) { pack.key(streamKey); };
    MxfFile const made = makeFile(parts);
    Open file(made.bytes);
    EXPECT_EQ(walk(file, true), made.offsets);
    Partition* const stream = file.partitionAtOffset(made.offsets[2]);
    EXPECT_TRUE(stream->isGenericStream());
    EXPECT_EQ(stream->partitionPack().key(), streamKey);
    EXPECT_FALSE(stream->partitionPack().isOpen() || stream->partitionPack().isComplete());
    EXPECT_FALSE(file.headerPartition()->isGenericStream());
}

TEST(Reader, SurvivesEveryFault) {
    MxfFile const made = makeFile(usualParts());
    survivesEveryFault(made.bytes, [](Bytes const& bytes) {
        for (bool const forwards : {true, false})
            try {
                Open file(bytes);
                Partition* partition = forwards ? file.firstPartitionWithFinalMetadata()
                                                : file.backwardFirstPartitionWithFinalMetadata();
                for (partition = file.headerPartition(); partition != nullptr;
                     partition = file.nextPartition(partition)) {
                    if (auto const metadata = partition->metadata())
                        written(*metadata, true, Metadata::SerializationOrder::ForwardReferences);
                    while (partition->nextIndexTableSegmentsKLV())
                        continue;
                    while (partition->nextBodyKLV(16))
                        continue;
                }
                walk(file, false);
            } catch (Exceptions::BaseException const&) {
                // What bad input is to give.
            }
    });
}

} // namespace MXF::Zelm::Test
