/// Files that are cut off at any place, or killed amid their repair.
#include "MXF/Zelm/MXFIO/Repairer.h"
#include "MXF/Zelm/MXFIO/PartitionMap.h"

#include "MXFIO/FaultyOperations.h"
#include "support/Files.h"
#include "support/StandardMetadata.h"
#include "support/WrittenFile.h"

namespace MXF::Zelm::Test {

using namespace MXFIO;
using Code = RepairFinding::Code;
using Fault = FaultyOperations::Fault;

namespace {

/// A file of some layout that can be damaged.
class BrokenFile {
public:
    explicit BrokenFile(WrittenFile layout) : layout_(std::move(layout)), original(layout_.write()) {}

    void write(Bytes const& bytes) const { writeFile(name, bytes); }
    void cut(std::size_t size) const { write({original.begin(), original.begin() + std::ptrdiff_t(size)}); }

    std::unique_ptr<Repairer> open(std::string const& file, FileOperations* operations = nullptr) const {
        return std::make_unique<Repairer>(std::string_view(file),
                                          standardMetadata()->partitionDictionary().dictionary(), 65536,
                                          RepairOptions(), operations);
    }
    std::unique_ptr<Repairer> open(FileOperations* operations = nullptr) const {
        return open(name, operations);
    }

    std::vector<Code> codes() const {
        std::vector<Code> codes;
        auto const repairer = open();
        for (auto const& finding : repairer->findings())
            codes.push_back(finding.code);
        return codes;
    }

    /// Content packages that are whole in a file, by a reader that needs no footer.
    std::vector<std::size_t> packages(std::string const& file) const {
        OpenFile opened(readFile(file));
        std::vector<std::size_t> counts;
        for (std::size_t i = 0; i < layout_.containers.size(); ++i)
            counts.push_back(opened.readPackages(i, layout_.containers[i]));
        return counts;
    }

    /// Content packages of each container that end in the first `size` bytes of the file. Of the first one
    /// the metadata tells no more than that it has a picture.
    std::vector<std::size_t> packagesBefore(std::size_t size) const {
        OpenFile opened(original);
        std::vector<std::size_t> counts;
        for (auto const& container : opened.containers()) {
            std::vector<std::uint64_t> ends;
            BodyStream stream(opened.reader, container.bodySID);
            while (auto const head = stream.nextPacket()) {
                GenericContainer::ElementKey const key(head->key);
                std::uint64_t const end = head->fileOffset + head->headLength + head->length;
                if (key.trackNumber() == pictureTrack)
                    ends.push_back(end);
                else if (ends.size() > 1 && head->key == elementKey(soundTracks[1]))
                    ends.back() = end;
            }
            counts.push_back(static_cast<std::size_t>(
                std::count_if(ends.begin(), ends.end(), [&](std::uint64_t end) { return end <= size; })));
        }
        return counts;
    }

    /// The file is sound, its durations and its index tables are those of `packages`.
    void expectWhole(std::string const& file, std::vector<std::size_t> const& packages) const {
        auto const repairer = open(file);
        for (auto const& finding : repairer->findings())
            ADD_FAILURE() << finding.message;
        EXPECT_EQ(this->packages(file), packages);
        OpenFile opened(readFile(file));
        auto const containers = opened.containers();
        for (std::size_t i = 0; i < containers.size(); ++i) {
            auto const units = static_cast<std::int64_t>(packages[i]);
            EXPECT_EQ(containers[i].tracks.front().duration, units);
            auto const table = IndexTableGatherer(opened.reader).table(containers[i].bodySID);
            EXPECT_EQ(table ? IndexTables::EditUnitLocator(
                                  *table, {PartitionMap(opened.reader, containers[i].bodySID).streamLength()})
                                  .end()
                                  .value_or(0)
                            : 0,
                      units);
        }
        EXPECT_FALSE(opened.reader.footerPartition()->partitionPack().isOpen());
        EXPECT_TRUE(opened.reader.loadRIP());
    }

private:
    WrittenFile layout_;

public:
    TemporaryFolder folder;
    std::string name = folder.file("broken.mxf"), fresh = folder.file("fresh.mxf");
    Bytes original;
};

WrittenFile partitioned(std::uint32_t kag, bool constant, CreatorSettings::Index index) {
    return {.containers = {{.packages = 7, .kag = kag, .constantSize = constant}},
            .settings = {.index = index, .partitions = {.packages = 3}}};
}

std::vector<WrittenFile> layouts() {
    using Index = CreatorSettings::Index;
    return {
        partitioned(1, false, Index::Footer),
        partitioned(256, false, Index::Body),
        partitioned(256, true, Index::Header),
        partitioned(1, true, Index::OwnPartitions),
        {.containers = {{.packages = 4}, {.packages = 5}},
         .settings = {.interleaving = CreatorSettings::Interleaving::ByTime, .partitions = {.packages = 2}}}};
}

} // namespace

TEST(Repairer, RepairsAFileThatIsCutAnywhere) {
    for (auto const& layout : layouts()) {
        BrokenFile const file(layout);
        std::size_t repaired = 0;
        for (std::size_t size = 100; size < file.original.size(); size += 97) {
            SCOPED_TRACE(size);
            file.cut(size);
            std::unique_ptr<Repairer> repairer;
            try {
                repairer = file.open();
            } catch (Exceptions::InvalidStructure const&) {
                EXPECT_LT(size, 8192u); // amid the header metadata
                continue;
            }
            auto const whole = file.packagesBefore(size);
            ASSERT_FALSE(repairer->isSound());
            std::filesystem::remove(file.fresh);
            repairer->writeToFile(file.fresh);
            file.expectWhole(file.fresh, whole);
            repairer->writeInPlace();
            file.expectWhole(file.name, whole);
            ++repaired;
            if (testing::Test::HasFailure())
                return;
        }
        EXPECT_GT(repaired, 12u);
    }
}

/// Whichever write of a file with pictures and sounds fails, torn in the middle: what the sink has is made
/// whole with all content packages that are in it.
TEST(Repairer, MakesAFileWholeWhoseSinkFailed) {
    using Index = CreatorSettings::Index;
    for (auto const index : {Index::Footer, Index::Body, Index::OwnPartitions}) {
        auto layout = partitioned(1, false, index);
        BrokenFile const file(layout);
        std::size_t failAt = 0, repaired = 0;
        for (bool hasFailed = true; hasFailed; ++failAt) {
            SCOPED_TRACE(failAt);
            SeekableSink sink(failAt);
            Creator creator(sink, layout.makeMetadata(), layout.settings);
            layout.addTo(creator);
            try {
                while (creator.write())
                    creator.flush();
                hasFailed = false;
            } catch (SinkFailure const&) {
            }
            if (sink.bytes().size() < 8192)
                continue; // amid the header metadata
            file.write(sink.bytes());
            auto const whole = file.packagesBefore(sink.bytes().size());
            EXPECT_EQ(file.packages(file.name), whole);
            file.open()->writeInPlace();
            file.expectWhole(file.name, whole);
            ++repaired;
        }
        EXPECT_GT(repaired, 12u);
    }
}

TEST(Repairer, LeavesASoundFileAlone) {
    for (auto const& layout : layouts()) {
        BrokenFile const file(layout);
        file.write(file.original);
        auto const repairer = file.open();
        for (auto const& finding : repairer->findings())
            ADD_FAILURE() << finding.message;
        EXPECT_EQ(repairer->writeInPlace().bytesAppended, 0u);
        EXPECT_TRUE(sameBytes(readFile(file.name), file.original));
    }
}

TEST(Repairer, MakesOnlyWhatIsWrong) {
    BrokenFile const file(partitioned(1, false, CreatorSettings::Index::Footer));
    std::size_t const size = file.original.size();
    OpenFile sound(file.original);
    auto const& footer = *sound.reader.footerPartition();
    struct Case {
        std::size_t offset;
        std::vector<Code> codes;
    };
    auto const at = [](std::uint64_t offset) { return static_cast<std::size_t>(offset); };
    for (auto const& [offset, codes] :
         {Case{size - 5, {Code::WrongRandomIndex}},                             // an entry
          Case{at(footer.partitionAbsoluteOffset()) + 35, {Code::WrongOffset}}, // ThisPartition
          Case{at(footer.bodyAbsoluteOffset()) - 40, {Code::WrongIndex}}}) {    // an index entry
        SCOPED_TRACE(offset);
        Bytes damaged = file.original;
        damaged[offset] ^= 0x11;
        file.write(damaged);
        EXPECT_EQ(file.codes(), codes);
        file.open()->writeInPlace();
        file.expectWhole(file.name, {7});
    }
    // Without its last bytes, or with others behind it.
    file.cut(size - 1);
    EXPECT_EQ(file.codes(), (std::vector{Code::TornTail, Code::NoRandomIndex}));
    file.open()->writeInPlace();
    EXPECT_TRUE(sameBytes(readFile(file.name), file.original));
}

TEST(Repairer, SaysWhatAFileLacks) {
    BrokenFile const file(partitioned(1, false, CreatorSettings::Index::Footer));
    file.write(hex("00 01 02 03"));
    EXPECT_EQ(thrownBy<Exceptions::InvalidStructure>([&] { file.open(); }), "No header partition found");
    file.cut(1000);
    EXPECT_EQ(thrownBy<Exceptions::InvalidStructure>([&] { file.open(); }),
              "The file cannot be repaired: it ends amid the header metadata");
    Bytes longPack = file.original;
    longPack[17] = 0x10; // of its length
    file.write(longPack);
    EXPECT_EQ(thrownBy<Exceptions::InvalidStructure>([&] { file.open(); }),
              "The file cannot be repaired: it ends amid the header partition pack");
    // Damage in the middle is no cut: essence behind it would be lost.
    OpenFile sound(file.original);
    Bytes damaged = file.original;
    auto const body = sound.partitions()[1]->bodyAbsoluteOffset();
    std::fill_n(damaged.begin() + static_cast<std::ptrdiff_t>(body), 4, std::uint8_t{0});
    file.write(damaged);
    EXPECT_NE(thrownBy<Exceptions::InvalidStructure>([&] { file.open(); }).find("damaged"),
              std::string::npos);
}

TEST(Repairer, ARepairThatIsKilledCanBeUndone) {
    BrokenFile const file(partitioned(256, false, CreatorSettings::Index::Body));
    file.cut(file.original.size() - 700);
    Bytes const broken = readFile(file.name);
    auto const whole = file.packages(file.name);
    for (auto const fault : {Fault::Kill, Fault::FullOnce, Fault::Full}) {
        std::size_t undone = 0;
        bool reached = true;
        for (std::size_t step = 0; reached; ++step, file.write(broken)) {
            SCOPED_TRACE(step);
            FaultyOperations operations(fault, step);
            try {
                file.open(&operations)->writeInPlace();
            } catch (Killed const&) {
                EXPECT_TRUE(operations.failed());
            } catch (Exceptions::SystemError const&) {
                EXPECT_NE(fault, Fault::Kill);
            }
            reached = operations.failed();
            if (UndoRecord::exists(file.name)) {
                undone += readFile(file.name) != broken;
                UndoRecord(file.name).restore();
                EXPECT_TRUE(sameBytes(readFile(file.name), broken));
            } else if (readFile(file.name) != broken) {
                file.expectWhole(file.name, whole);
            }
        }
        if (fault == Fault::Kill) {
            EXPECT_GT(undone, 2u); // or no kill fell into the writing
        }
    }
}

TEST(Repairer, ANewFileIsWholeOrNotThere) {
    BrokenFile const file(partitioned(256, false, CreatorSettings::Index::Body));
    file.cut(file.original.size() - 700);
    auto const whole = file.packagesBefore(file.original.size() - 700);
    for (auto const fault : {Fault::Kill, Fault::Full}) {
        bool reached = true;
        for (std::size_t step = 0; reached; ++step) {
            SCOPED_TRACE(step);
            FaultyOperations operations(fault, step);
            try {
                file.open(&operations)->writeToFile(file.fresh);
            } catch (Killed const&) {
            } catch (Exceptions::SystemError const&) {
                EXPECT_EQ(fault, Fault::Full);
            }
            reached = operations.failed();
            if (std::filesystem::exists(file.fresh))
                file.expectWhole(file.fresh, whole);
            std::filesystem::remove(file.fresh);
            EXPECT_FALSE(UndoRecord::exists(file.name));
        }
    }
    EXPECT_EQ(readFile(file.name).size(), file.original.size() - 700);
}

} // namespace MXF::Zelm::Test
