/// One partition: its areas, header metadata, index and body.
#include "MXF/Zelm/MXFIO/Partition.h"

#include "MXF/Zelm/MXFIO/Reader2.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"
#include "support/MxfFile.h"

namespace MXF::Zelm::Test {

using MXFIO::Partition;

namespace {

struct OpenPart {
    explicit OpenPart(Bytes bytes) : source(std::move(bytes)), reader(source, smallDictionary(), 65536) {}
    OpenPart(Part const& part, Bytes const& behind = {})
        : OpenPart(makeFile({part}, {{}, false, false}).bytes + behind) {}
    Partition& operator*() { return *reader.headerPartition(); }
    Partition* operator->() { return reader.headerPartition(); }

    DataIO::Memory::MemoryDataSource source;
    MXFIO::Reader2 reader;
};

constexpr std::uint64_t packSize = 16 + 4 + 80 + 8;

std::string firstFault(Partition::MetadataPtr const& metadata) {
    return metadata->faults().empty() ? "" : metadata->faults().front().message;
}

} // namespace

TEST(Partition, KnowsItsAreas) {
    Bytes const metadata = smallMetadata();
    for (std::size_t const leading : {0u, 20u, 400u}) {
        OpenPart file({.metadata = metadata,
                       .index = indexSegment(),
                       .body = essence(5),
                       .indexSID = 2,
                       .bodySID = 1,
                       .fillAfterPack = leading});
        EXPECT_EQ(file->partitionPackLength(), packSize);
        EXPECT_EQ(file->metadataAbsoluteOffset(), packSize);
        EXPECT_EQ(file->leadingFillLength(), leading);
        EXPECT_EQ(file->indexTableAbsoluteOffset(), packSize + leading + metadata.size());
        EXPECT_EQ(file->bodyAbsoluteOffset(), file->indexTableAbsoluteOffset() + 28);
        auto const loaded = file->metadata();
        EXPECT_EQ(loaded->size(), 1u);
        EXPECT_EQ(firstFault(loaded), "");
        EXPECT_EQ(file->metadata(), loaded) << "loaded once";
        EXPECT_EQ(loaded->preface().absoluteOffset(), packSize + leading + 16 + 4 + 8 + 6 * 18);
        EXPECT_TRUE(sameBytes(written(*loaded, true, Metadata::SerializationOrder::AsLoaded), metadata));
    }
    OpenPart none{Part{}};
    EXPECT_EQ(none->metadata(), nullptr);

    OpenPart lying({.change = [](PartitionPack& pack) {
        pack.headerByteCount(~0ull);
        pack.indexByteCount(~0ull);
    }});
    EXPECT_EQ(lying->bodyAbsoluteOffset(), ~0ull);
    EXPECT_EQ(lying.reader.nextPartition(&*lying), nullptr);
}

TEST(Partition, EndsAFillItemThatClaimsToBeEndless) {
    for (auto const* const length : {"88 FF FF FF FF FF FF FF E7", "88 FF FF FF FF FF FF FF FF"}) {
        KLV::Key const key = KLV::fillItemKey();
        OpenPart file(Part{}, Bytes(key.rawBuffer(), key.rawBuffer() + 16) + hex(length));
        EXPECT_GT(file->leadingFillLength(), 0u);
        EXPECT_EQ(file.reader.nextPartition(&*file), nullptr);
    }
}

TEST(Partition, WantsAPrimerFirst) {
    Bytes const rows[] = {klv(prefaceKey, uidItem(1)), repeated(40, 0), hex("06 0E 2B")};
    for (auto const& metadata : rows) {
        OpenPart file(
            {.metadata = metadata, .change = [](PartitionPack& pack) { pack.thisPartition(0xABC); }});
        try {
            file->metadata();
            ADD_FAILURE();
        } catch (Exceptions::BaseException const& failure) {
            EXPECT_EQ(failure.message(),
                      "This partition (0xABC) does not have a primer pack at the beginning of the metadata.");
            EXPECT_EQ(failure.condition(), "Expected Primer Pack");
            EXPECT_EQ(failure.offset(), packSize);
        }
    }
}

TEST(Partition, ReadsWhatItCanOfBrokenMetadata) {
    Bytes const good = smallMetadata();
    auto const byteCount = [](std::int64_t more) {
        return [more](PartitionPack& pack) {
            pack.headerByteCount(
                static_cast<std::uint64_t>(static_cast<std::int64_t>(pack.headerByteCount()) + more));
        };
    };
    struct {
        Part part;
        std::size_t sets, dark;
        const char* fault; // its beginning
    } const rows[] = {
        {{.metadata = good}, 1, 0, ""},
        {{.metadata = good + fill(30) + klv(unknownKey, hex("01"))}, 1, 1, ""},
        {{.metadata = good + klv(thingKey, hex("80"))}, 1, 1, "Invalid data size in Value"},
        {{.metadata = good + repeated(3, 0) + klv(thingKey, uidItem(2))},
         2,
         0,
         "0x3 bytes in the header metadata are no KLV packet"},
        {{.metadata = good + repeated(30, 0)}, 1, 0, "Not enough data"},
        // The byte count is too large: the body, the next pack or the end of the file comes before.
        {{.metadata = good, .body = essence(50), .change = byteCount(60)},
         1,
         0,
         "The header metadata ends 0x3C bytes before its byte count says"},
        {{.metadata = good, .change = byteCount(60)},
         1,
         0,
         "The source ends 0x3C bytes before the header metadata"},
        {{.metadata = good, .change = [](PartitionPack& pack) { pack.headerByteCount(~0ull); }},
         1,
         0,
         "The source ends 0x"},
        // It is too small: a set runs beyond it.
        {{.metadata = good + klv(thingKey, uidItem(2)), .change = byteCount(-1)},
         1,
         0,
         "A set of 0x14 bytes runs beyond the end of the header metadata at 0x"},
        {{.metadata = good + klv(thingKey, uidItem(2)), .change = byteCount(-40)}, 1, 0, ""},
    };
    for (auto const& row : rows) {
        OpenPart file(row.part);
        auto const metadata = file->metadata();
        EXPECT_EQ(metadata->size(), row.sets) << row.fault;
        EXPECT_EQ(metadata->darkSize(), row.dark) << row.fault;
        EXPECT_EQ(metadata->faults().empty(), *row.fault == 0);
        EXPECT_TRUE(firstFault(metadata).starts_with(row.fault)) << firstFault(metadata);
    }
}

TEST(Partition, ServesItsIndexSegments) {
    Part part{.metadata = smallMetadata(),
              .index = indexSegment(8) + fill(30) + indexSegment(9) + fill(25),
              .body = indexSegment(7),
              .indexSID = 2};
    OpenPart file(part);
    EXPECT_EQ(file->nextIndexTableSegmentsKLV()->length(), 8u);
    file.source.seek(0); // somebody else moves the source
    EXPECT_EQ(file->nextIndexTableSegmentsKLV()->length(), 9u);
    EXPECT_EQ(file->nextIndexTableSegmentsKLV(), nullptr);
    part.indexSID = 0;
    EXPECT_EQ(OpenPart(part)->nextIndexTableSegmentsKLV(), nullptr);
    part.indexSID = 2;
    part.index.clear();
    EXPECT_EQ(OpenPart(part)->nextIndexTableSegmentsKLV(), nullptr);
}

TEST(Partition, ServesItsBody) {
    struct Ended : MXFIO::PartitionListener {
        void partitionEnded(Partition&) override { ++count; }
        int count = 0;
    };
    Bytes const nextPack = makeFile({{.kind = PartitionPack::Body}}, {{}, false, false}).bytes;
    Packs::RandomIndexPack const rip;
    for (auto const& behind : {nextPack, written(rip), Bytes()}) {
        OpenPart file({.metadata = smallMetadata(),
                       .body = essence(10) + fill(25) + hex("00 00") + essence(20),
                       .bodySID = 1,
                       .bodyOffset = 0x1000},
                      behind);
        auto const ended = std::make_shared<Ended>();
        file->setPartitionListener(ended);
        EXPECT_EQ(file->nextBodyKLV(0)->length(), 10u);
        file.source.seek(0);
        EXPECT_TRUE(KLV::isFillItem(file->nextBodyKLV(0)->key()));
        EXPECT_THROW(file->nextBodyKLV(1), Exceptions::BaseException); // two stray bytes
        auto const packet = file->nextBodyKLV(2);
        EXPECT_EQ(packet->length(), 20u);
        EXPECT_FALSE(file->partitionEnded());
        EXPECT_EQ(file->nextBodyKLV(0), nullptr);
        EXPECT_TRUE(file->partitionEnded());
        EXPECT_EQ(file->nextBodyKLV(0), nullptr);
        EXPECT_EQ(ended->count, 1);
        file->rewind();
        EXPECT_FALSE(file->partitionEnded());
        EXPECT_EQ(file.source.absoluteOffset(), file->bodyAbsoluteOffset());
        file->gotoBodyRelativePosition(0x1000 + 30); // behind the first element
        EXPECT_TRUE(KLV::isFillItem(file->nextBodyKLV(0)->key()));
        EXPECT_EQ(thrownBy([&] { file->gotoBodyRelativePosition(0xFFF); }),
                  "Trying to seek to 0xFFF but partition (0x0) body starts at 0x1000");
        file->gotoBodyRelativePosition(~0ull);
        EXPECT_EQ(file->nextBodyKLV(0), nullptr);
    }
}

} // namespace MXF::Zelm::Test
