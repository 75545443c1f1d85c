/// New files: their layouts read back, what can be read of them while they grow, and where their writing
/// fails.
#include "MXF/Zelm/DataIO/File/FileDataSink.h"
#include "MXF/Zelm/MXFIO/WalkedIndex.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Templates/SafeCast.h"
#include "support/Files.h"
#include "support/WrittenFile.h"

#include <map>

namespace MXF::Zelm::Test {

using namespace MXFIO;
using Index = CreatorSettings::Index;

namespace {

GenericStream stream(std::uint32_t sid, bool beforeEssence) {
    Bytes const data = repeated(1000 + sid, static_cast<unsigned char>(sid));
    GenericStream made{.sid = sid, .beforeEssence = beforeEssence};
    if (beforeEssence)
        made.data = DataIO::Slice::adopt(data);
    else
        made.source = std::make_shared<DataIO::Memory::MemoryDataSource>(data);
    return made;
}

struct Case {
    const char* name;
    WrittenFile file;
    std::size_t partitions; // without header and footer
    bool canUpdate = true;
};

std::vector<Case> cases() {
    FakePackages const constant{.constantSize = true}, waiting{.waiting = 2};
    PartitionLimits const every6{.packages = 6};
    return {
        {"plain", {}, 1},
        {"footer index, KAG 512", {.containers = {{.kag = 512}}, .settings = {.partitions = every6}}, 4},
        {"odd KAG, by bytes",
         {.containers = {{.kag = 129}}, .settings = {.partitions = {.bytes = 3000}, .kagSize = 7}},
         3},
        {"index in the body, by time",
         {.containers = {waiting}, .settings = {.index = Index::Body, .partitions = {.seconds = {6, 25}}}},
         4},
        {"index in body and footer, old fill",
         {.containers = {{.kag = 512}},
          .settings = {.index = Index::BodyAndFooter, .partitions = every6, .fillVersion = 1}},
         4},
        {"own index", {.settings = {.index = Index::OwnPartitions, .partitions = every6}}, 8},
        {"constant size, index and essence in the header",
         {.containers = {{.kag = 512, .constantSize = true}},
          .settings = {.index = Index::Header, .essenceInHeader = true}},
         0},
        {"the same, unchangeable",
         {.containers = {constant}, .settings = {.index = Index::Header, .essenceInHeader = true}},
         0,
         false},
        {"constant size, index in the body",
         {.containers = {constant}, .settings = {.index = Index::Body, .partitions = every6}},
         4},
        {"two containers", {.containers = {{}, {.packages = 7, .kag = 16}}}, 3},
        {"two containers in turn, own index, run-in",
         {.containers = {{.kag = 512, .waiting = 1}, {.packages = 13, .gop = 1}},
          .settings = {.index = Index::OwnPartitions,
                       .interleaving = CreatorSettings::Interleaving::ByTime,
                       .partitions = every6,
                       .runIn = repeated(100, 0)}},
         14},
        {"generic streams, version 3, unchangeable",
         {.settings = {.partitions = every6, .minorVersion = 3, .packBerLength = 9},
          .streams = {stream(20, true), stream(21, false)}},
         6,
         false},
        {"no essence", {.containers = {{.packages = 0}}, .streams = {stream(5, false)}}, 1},
        {"metadata and index in the body",
         {.containers = {{.kag = 512}},
          .settings = {.index = Index::Body, .partitions = every6, .metadataInBody = true}},
         4},
        {"reserve of odd size, metadata in the footer",
         {.containers = {{.kag = 512}}, .settings = {.metadataReserve = 1001, .metadataInFooter = true}},
         1},
    };
}

/// Offsets, grid, status and byte counts of all packs, and the random index pack.
void expectPartitions(OpenFile& file, Case const& expected) {
    auto const partitions = file.partitions();
    ASSERT_EQ(partitions.size(), expected.partitions + 2);
    ASSERT_TRUE(file.reader.loadRIP());
    std::uint64_t const runIn = expected.file.settings.runIn.size();
    EXPECT_EQ(file.reader.runInLength(), runIn);
    auto const& index = file.reader.rip()->offsetIndexedMap();
    EXPECT_EQ(index.size(), partitions.size());
    std::uint64_t previous = 0;
    auto const& footer = partitions.back()->partitionPack();
    EXPECT_EQ(footer.partitionKind(), PartitionPack::Footer);
    for (auto* const partition : partitions) {
        auto const& pack = partition->partitionPack();
        std::uint64_t const offset = partition->partitionAbsoluteOffset() - runIn;
        EXPECT_EQ(pack.thisPartition(), offset);
        EXPECT_EQ(pack.previousPartition(), previous);
        previous = offset;
        EXPECT_EQ(index.at(offset), pack.bodySID());
        bool const isLast = partition == partitions.back();
        bool const isRepeated =
            expected.file.settings.metadataInBody && partition != partitions.front() && pack.bodySID() != 0;
        bool const isOpen = (!expected.canUpdate && !isLast && !partition->isGenericStream()) || isRepeated;
        EXPECT_TRUE(!isRepeated || partition->metadata()) << offset;
        EXPECT_EQ(pack.isOpen(), isOpen);
        EXPECT_EQ(pack.footerPartition(), expected.canUpdate || isLast ? footer.thisPartition() : 0);
        for (std::uint64_t const area :
             {partition->metadataAbsoluteOffset() + partition->leadingFillLength(),
              partition->indexTableAbsoluteOffset(), partition->bodyAbsoluteOffset()})
            EXPECT_TRUE((area - partition->partitionAbsoluteOffset()) % pack.kagSize() == 0 ||
                        (isLast && pack.headerByteCount() + pack.indexByteCount() == 0));
        EXPECT_EQ(pack.minorVersion(), expected.file.settings.minorVersion.value_or(2));
        EXPECT_EQ(pack.indexSID() == 0, pack.indexByteCount() == 0);
    }
    EXPECT_EQ(partitions.front()->partitionPack().isComplete(), expected.canUpdate);
    EXPECT_TRUE(footer.isComplete());
    EXPECT_GE(partitions.front()->partitionPack().headerByteCount(), expected.file.settings.metadataReserve);
}

/// The index table leads to where a walk finds the packages, and knows their flags.
void expectIndex(OpenFile& file, std::uint32_t bodySID, FakePackages const& essence) {
    IndexTableGatherer gatherer(file.reader);
    auto const table = gatherer.table(bodySID);
    ASSERT_TRUE(table);
    EXPECT_TRUE(gatherer.faults().empty());
    BodyStream stream(file.reader, bodySID);
    WalkedIndex walked(stream);
    walked.walk();
    ASSERT_EQ(walked.end(), static_cast<std::int64_t>(essence.packages));
    IndexTables::EditUnitLocator const locator(*table, {stream.length()});
    for (std::int64_t unit = 0; unit < walked.end(); ++unit) {
        auto const location = locator.locate(unit);
        ASSERT_TRUE(location) << unit;
        EXPECT_EQ(location->streamOffset, *walked.streamOffset(unit));
        bool const isStart = unit % static_cast<std::int64_t>(essence.gop) == 0;
        EXPECT_EQ(locator.flags(unit).value_or(isStart ? 0x80 : 0) & 0x80, isStart ? 0x80 : 0);
    }
    EXPECT_EQ(table->firstGap(0), walked.end()) << "some segment has the true duration";
}

/// Where a body partition has index segments, they tell of what stands before it and of nothing else; with
/// `Body` the partitions and the footer together have each edit unit once.
void expectIndexOfWhatWentBefore(OpenFile& file, Case const& expected) {
    std::map<std::uint32_t, std::int64_t> next;
    for (auto* const partition : file.partitions()) {
        auto const& pack = partition->partitionPack();
        if (pack.partitionKind() == PartitionPack::Footer &&
            expected.file.settings.index == Index::BodyAndFooter)
            next.clear(); // once more from the start
        while (auto const packet = partition->nextIndexTableSegmentsKLV()) {
            IndexTables::IndexTableSegment const segment(*packet, nullptr);
            if (segment.indexEntryCount() == 0)
                continue;
            EXPECT_EQ(segment.indexStartPosition().value(), next[pack.indexSID()]);
            next[pack.indexSID()] += segment.indexDuration().value();
            auto const last = segment.indexEntry(segment.indexEntryCount() - 1);
            EXPECT_TRUE(pack.bodySID() == 0 || last.streamOffset() < pack.bodyOffset());
        }
    }
    for (std::uint32_t indexSID = 2; auto const& essence : expected.file.containers) {
        EXPECT_EQ(next[indexSID], essence.constantSize ? 0 : static_cast<std::int64_t>(essence.packages));
        indexSID += 2;
    }
}

void expectStreams(OpenFile& file, Case const& expected) {
    std::size_t found = 0;
    for (auto* const partition : file.partitions()) {
        if (!partition->isGenericStream())
            continue;
        std::uint32_t const sid = partition->partitionPack().bodySID();
        auto const packet = partition->nextBodyKLV(0);
        ASSERT_TRUE(packet);
        EXPECT_EQ(packet->key(), GenericStream::defaultKey());
        EXPECT_TRUE(sameBytes(packet->value().readRemaining(),
                              repeated(1000 + sid, static_cast<unsigned char>(sid))));
        ++found;
    }
    EXPECT_EQ(found, expected.file.streams.size());
}

} // namespace

TEST(Creator, layoutsAreReadBack) {
    for (auto& expected : cases()) {
        SCOPED_TRACE(expected.name);
        expected.file.settings.canUpdate = expected.canUpdate;
        OpenFile file(expected.file.write());
        expectPartitions(file, expected);
        expectIndexOfWhatWentBefore(file, expected);
        expectStreams(file, expected);
        auto const containers = file.containers();
        ASSERT_EQ(containers.size(), expected.file.containers.size());
        for (std::size_t i = 0; i < containers.size(); ++i) {
            auto const& essence = expected.file.containers[i];
            EXPECT_EQ(file.readPackages(i, essence), essence.packages);
            EXPECT_EQ(containers[i].tracks.at(0).duration, static_cast<std::int64_t>(essence.packages));
            if (essence.packages != 0)
                expectIndex(file, containers[i].bodySID, essence);
        }
    }
}

/// A reader that opens the file behind any step finds all packages handed out so far, under descriptors.
TEST(Creator, growingFileCanBeReadAtAnyMoment) {
    for (auto const index : {Index::Footer, Index::Body, Index::OwnPartitions}) {
        WrittenFile file{.containers = {{.waiting = 2}},
                         .settings = {.index = index, .partitions = {.packages = 6}}};
        PullCreator creator(file.makeMetadata(), file.settings);
        file.addTo(creator);
        Bytes bytes;
        std::size_t partitionStarts = 0;
        for (DataIO::Chain out; creator.next(out);) {
            bytes = bytes + joined(out);
            EXPECT_EQ(creator.fileOffset(), bytes.size());
            partitionStarts += creator.isPartitionStart() ? 1 : 0;
            OpenFile open(bytes);
            auto const containers = open.containers();
            ASSERT_EQ(containers.size(), 1u);
            ASSERT_EQ(containers[0].tracks.size(), 1u);
            EXPECT_NE(containers[0].tracks[0].descriptor, nullptr);
            EXPECT_EQ(open.readPackages(0, file.containers[0]), creator.packages(0));
        }
        EXPECT_EQ(partitionStarts, OpenFile(bytes).partitions().size() + 1) << "and the random index pack";
        EXPECT_EQ(creator.packages(0), file.containers[0].packages);
        for (auto const& update : creator.updates())
            std::copy(update.bytes.begin(), update.bytes.end(),
                      bytes.begin() + static_cast<std::ptrdiff_t>(update.offset));
        EXPECT_TRUE(OpenFile(bytes).reader.headerPartition()->partitionPack().isComplete());
    }
}

/// Whichever write fails, torn in the middle: one exception, and all whole packages that the sink has are
/// read, also where the updates at the end were broken off.
TEST(Creator, failingSinkLeavesReadableFile) {
    WrittenFile file{.settings = {.index = Index::Body, .partitions = {.packages = 6}},
                     .streams = {stream(9, false)}};
    std::uint64_t const headerLength = OpenFile(file.write()).partitions().at(1)->partitionAbsoluteOffset();
    std::size_t most = 0;
    for (std::size_t failAt = 0;; ++failAt) {
        SCOPED_TRACE(failAt);
        SeekableSink sink(failAt);
        Creator creator(sink, file.makeMetadata(), file.settings);
        file.addTo(creator);
        std::uint64_t flushed = 0;
        try {
            while (creator.write()) {
                creator.flush();
                flushed = creator.progress().packages(0);
            }
            break;
        } catch (SinkFailure const&) {
        }
        EXPECT_THROW(creator.write(), Exceptions::InvalidChange);
        EXPECT_EQ(sink.writes(), failAt + 1) << "nothing is written behind the failure";
        if (sink.bytes().size() < headerLength)
            continue;
        OpenFile open(sink.bytes());
        ASSERT_EQ(open.containers().size(), 1u);
        most = open.readPackages(0, file.containers[0]);
        EXPECT_GE(most, flushed);
    }
    EXPECT_EQ(most, file.containers[0].packages) << "the last failures were among the updates";
}

/// A file that another program reads while it is written.
TEST(Creator, flushedFileHasAllPackages) {
    TemporaryFolder const folder;
    WrittenFile file{.settings = {.index = Index::Body, .partitions = {.packages = 6}}};
    DataIO::File::FileDataSink sink(folder.file("growing.mxf"));
    Creator creator(sink, file.makeMetadata(), file.settings);
    file.addTo(creator);
    while (creator.write()) {
        creator.flush();
        OpenFile open(readFile(folder.file("growing.mxf")));
        EXPECT_EQ(open.readPackages(0, file.containers[0]), creator.progress().packages(0));
    }
    OpenFile open(readFile(folder.file("growing.mxf")));
    EXPECT_TRUE(open.reader.headerPartition()->partitionPack().isComplete());
    expectIndex(open, 1, file.containers[0]);
}

TEST(Creator, endsEarlyWithValidFile) {
    for (std::size_t const steps : {0u, 1u, 2u, 9u, 23u}) {
        Case expected{"ended",
                      {.containers = {{.packages = 1000, .waiting = 1}}, .settings = {.index = Index::Body}},
                      1};
        SeekableSink sink;
        Creator creator(sink, expected.file.makeMetadata(), expected.file.settings);
        expected.file.addTo(creator);
        for (std::size_t i = 0; i < steps; ++i)
            creator.write();
        creator.finish();
        EXPECT_FALSE(creator.write());
        auto& essence = expected.file.containers[0];
        essence.packages = Templates::safeCast<std::size_t>(creator.progress().packages(0));
        EXPECT_LE(essence.packages, steps);
        EXPECT_GE(essence.packages + 2, steps);
        expected.partitions = essence.packages == 0 ? 0 : 1;
        OpenFile file(sink.bytes());
        expectPartitions(file, expected);
        EXPECT_EQ(file.readPackages(0, essence), essence.packages);
        if (essence.packages != 0)
            expectIndex(file, 1, essence);
    }
}

TEST(Creator, sourceThatFailsCanBeClosed) {
    WrittenFile file{.containers = {{.failsAt = 8}}};
    SeekableSink sink;
    Creator creator(sink, file.makeMetadata(), file.settings);
    file.addTo(creator);
    EXPECT_EQ(thrownBy<Exceptions::InvalidFormat>([&] { creator.run(); }), "no essence");
    creator.finish();
    OpenFile open(sink.bytes());
    EXPECT_EQ(open.readPackages(0, file.containers[0]), 8u);
    EXPECT_TRUE(open.reader.headerPartition()->partitionPack().isComplete());
}

/// Bytes that are put right at the end, and the refusal of a sink with which that cannot be.
TEST(Creator, futureUpdatersAreApplied) {
    WrittenFile file{.containers = {{.packages = 3, .changesLater = true}},
                     .settings = {.runIn = repeated(11, 0)}};
    OpenFile open(file.write());
    EssenceReader essence(open.reader, open.containers().at(0));
    EssenceUnit unit;
    while (essence.next(unit))
        EXPECT_EQ(joined(unit.package.systemItems.at(0).data)[0], lateByte);
    EXPECT_EQ(essence.position(), 3);

    file.settings.canUpdate = false;
    EXPECT_EQ(OpenFile(file.write()).readPackages(0, file.containers[0]), 3u) << "they may be left out";
    file.containers[0].mustChangeLater = true;
    SeekableSink sink;
    Creator creator(sink, file.makeMetadata(), file.settings);
    file.addTo(creator);
    EXPECT_EQ(thrownBy<Exceptions::InvalidStructure>([&] { creator.run(); }),
              "The essence has to be changed after it was written, and the file cannot be changed");
    EXPECT_EQ(sink.writes(), 0u);
}

/// Metadata that has grown goes into the reserve, or, when that is too small, into the footer.
TEST(Creator, finalMetadataOfAnotherSize) {
    for (std::uint64_t const reserve : {0u, 100u, 5000u}) {
        WrittenFile file{.settings = {.metadataReserve = reserve}};
        auto const metadata = file.makeMetadata();
        file.settings.beforeFinalMetadata = [&] {
            Metadata::Structural::createMaterialPackage(*metadata, {.name = std::u16string(300, u'n')});
        };
        SeekableSink sink;
        Creator creator(sink, metadata, file.settings);
        file.addTo(creator);
        creator.run();
        OpenFile open(sink.bytes());
        auto* const header = open.reader.headerPartition();
        EXPECT_EQ(creator.progress().isHeaderClosed(), reserve == 5000);
        EXPECT_EQ(header->partitionPack().isOpen(), reserve != 5000);
        EXPECT_EQ(header->metadata()->packages().size(), reserve == 5000 ? 3u : 2u);
        auto* const final = open.reader.backwardFirstPartitionWithFinalMetadata();
        EXPECT_TRUE(final->partitionPack().isComplete());
        EXPECT_EQ(final->metadata()->packages().size(), 3u);
        EXPECT_NE(open.reader.footerPartition()->partitionPack().headerByteCount(), 0u);
        EXPECT_EQ(open.readPackages(0, file.containers[0]), 20u);
    }
}

TEST(Creator, refusesWhatCannotBe) {
    WrittenFile file;
    PullCreator creator(file.makeMetadata(), {});
    file.addTo(creator);
    EXPECT_EQ(thrownBy<Exceptions::InvalidValue>([&] { creator.addGenericStream({.sid = 2}); }),
              "A stream cannot have the SID 2, which is taken");
    EXPECT_THROW(creator.addGenericStream({}), Exceptions::InvalidValue);
    EXPECT_THROW(PullCreator(file.makeMetadata(), {.runIn = Bytes(65536)}), Exceptions::InvalidValue);
    DataIO::Chain out;
    EXPECT_TRUE(creator.next(out));
    EXPECT_THROW(creator.addGenericStream({.sid = 3}), Exceptions::InvalidChange);
    EXPECT_THROW((WrittenFile{.settings = {.index = Index::Header}}.write()), Exceptions::InvalidStructure);
}

} // namespace MXF::Zelm::Test
