#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

using DataIO::Memory::MemoryDataSink;
using DataIO::Memory::MemoryDataSource;
using DataIO::Memory::MemoryViewDataSource;

namespace {

Bytes const ten{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

/// What every source that can seek does at its end, over the bytes 0 to 9.
void clampsAndReports(DataIO::RandomAccessDataSource& source) {
    unsigned char buffer[100] = {};
    EXPECT_EQ(source.read(buffer, 4), 4u);
    EXPECT_EQ(source.absoluteOffset(), 4u);
    EXPECT_EQ(source.remaining(), 6u);
    EXPECT_EQ(source.read(buffer, 0), 0u);
    EXPECT_FALSE(source.endOfStream());
    EXPECT_EQ(source.read(buffer, ~0ull), 6u);
    EXPECT_EQ(Bytes(buffer, buffer + 6), (Bytes{4, 5, 6, 7, 8, 9}));
    EXPECT_TRUE(source.endOfStream());
    EXPECT_EQ(source.read(buffer, 1), 0u);
    EXPECT_EQ(source.skip(1), 0u);
    EXPECT_EQ(source.seek(3), 3u);
    EXPECT_EQ(source.skip(~0ull), 7u);
    EXPECT_EQ(source.absoluteOffset(), 10u);
    EXPECT_EQ(source.seek(~0ull), 10u);
    EXPECT_EQ(source.seek(2), 2u);
    source.discard();
    EXPECT_EQ(source.absoluteOffset(), 10u);
}

} // namespace

TEST(MemoryDataSource, ClampsAndReports) {
    Bytes bytes = ten;
    MemoryDataSource copy(bytes.data(), bytes.size());
    bytes.assign(10, 0xEE); // the source has a copy
    clampsAndReports(copy);
    MemoryViewDataSource view(ten.data(), ten.size());
    clampsAndReports(view);

    MemoryDataSource empty(nullptr, 0);
    EXPECT_EQ(empty.remaining(), 0u);
    EXPECT_TRUE(empty.endOfStream());
    EXPECT_EQ(empty.read(nullptr, 5), 0u);
    EXPECT_EQ(empty.skip(5), 0u);
    EXPECT_EQ(empty.seek(5), 0u);
    EXPECT_EQ(thrownBy([&] { MemoryDataSource(bytes.data(), 1ull << 32); }), "Type size exceeded");
}

TEST(MemoryDataSource, AsksADerivedClassForItsEnd) {
    struct Shorter : MemoryDataSource {
        using MemoryDataSource::MemoryDataSource;
        std::uint64_t remaining() const override { return absoluteOffset() < 3 ? 3 - absoluteOffset() : 0; }
    } source(ten);
    source.seek(3);
    EXPECT_TRUE(source.endOfStream());
}

TEST(MemoryDataSink, Gathers) {
    MemoryDataSink sink(100);
    EXPECT_EQ(sink.absoluteOffset(), 0u);
    sink.write(ten.data(), 3);
    sink.write(nullptr, 0);
    sink.write(ten.data() + 3, 5);
    EXPECT_EQ(sink.serializedSize(), 8u);
    EXPECT_EQ(sink.absoluteOffset(), 8u);
    EXPECT_TRUE(sameBytes(writtenTo(sink), hex("00 01 02 03 04 05 06 07")));
    EXPECT_EQ(thrownBy([] { MemoryDataSink(0x100000000); }), "Type size exceeded");
    // Refused before a byte is touched: the buffer holds far less.
    EXPECT_EQ(thrownBy([&] { sink.write(ten.data(), 0xFFFFFFFF); }), "Type size exceeded");
    EXPECT_EQ(thrownBy([&] { sink.write(ten.data(), ~0ull); }), "Type size exceeded");
    EXPECT_EQ(sink.serializedSize(), 8u);
}

} // namespace MXF::Zelm::Test
