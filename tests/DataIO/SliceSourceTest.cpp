#include "DataIO/Cuts.h"

#include "MXF/Zelm/DataIO/BufferAlignDataSource.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/DataIO/File/FileDataSink.h"
#include "MXF/Zelm/DataIO/File/FileSliceSource.h"
#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/DataIO/SliceSourceTee.h"
#include "MXF/Zelm/DataIO/SourceAdapters.h"
#include "MXF/Zelm/DataIO/Unowned.h"
#include "support/Files.h"

#include <random>

#if !defined(_WIN32)
#include <csignal>
#include <sys/resource.h>
#endif

namespace MXF::Zelm::Test {

using namespace DataIO;
using DataIO::Memory::MemoryBlockFactory;
using DataIO::Memory::MemoryDataSink;
using DataIO::Memory::MemoryDataSource;
using File::FileDataSink;
using File::FileSliceSource;
using SourcePtr = std::shared_ptr<SliceSource>;

namespace {

Bytes take(DataSource& source, std::uint64_t size) {
    Bytes bytes(static_cast<std::size_t>(size));
    bytes.resize(static_cast<std::size_t>(source.read(bytes.data(), size)));
    return bytes;
}

/// Makes a source over bytes, with files in a folder.
struct Maker {
    const char* name;
    SourcePtr (*make)(Bytes const& bytes, TemporaryFolder const& folder);
};

SourcePtr buffer(Chain chain) { return std::make_shared<BufferSliceSource>(std::move(chain)); }

SourcePtr file(Bytes const& bytes, TemporaryFolder const& folder) {
    writeFile(folder.file("a.bin"), bytes);
    return std::make_shared<FileSliceSource>(folder.file("a.bin"));
}

SourcePtr adapted(Bytes const& bytes, std::size_t blockSize) {
    return std::make_shared<DataSourceSliceSource>(std::make_shared<MemoryDataSource>(bytes), nullptr,
                                                   blockSize);
}

Maker const makers[] = {
    {"Buffer", [](Bytes const& bytes, TemporaryFolder const&) { return buffer(cuts(bytes)[0]); }},
    {"BufferByteByByte", [](Bytes const& bytes, TemporaryFolder const&) { return buffer(cuts(bytes)[1]); }},
    {"BufferCutAnywhere", [](Bytes const& bytes, TemporaryFolder const&) { return buffer(cuts(bytes)[2]); }},
    {"File", file},
    {"DataSource", [](Bytes const& bytes, TemporaryFolder const&) { return adapted(bytes, 1000); }},
    {"DataSourceSmallBlocks", [](Bytes const& bytes, TemporaryFolder const&) { return adapted(bytes, 1); }},
    {"Tee",
     [](Bytes const& bytes, TemporaryFolder const& folder) -> SourcePtr {
         return std::make_shared<SliceSourceTee>(
             file(bytes, folder), std::make_shared<DataSinkSliceSink>(std::make_shared<MemoryDataSink>()));
     }},
    {"ThereAndBack",
     [](Bytes const& bytes, TemporaryFolder const& folder) -> SourcePtr {
         return std::make_shared<DataSourceSliceSource>(
             std::make_shared<SliceSourceDataSource>(file(bytes, folder)));
     }},
};

class EverySliceSource : public testing::TestWithParam<Maker> {};

} // namespace

TEST_P(EverySliceSource, GivesItsBytesInSlicesThatLiveOn) {
    TemporaryFolder const folder;
    Bytes const bytes = pattern(150'000);
    auto source = GetParam().make(bytes, folder);
    std::mt19937 random(5);
    Chain kept;
    Bytes expected;
    for (std::uint64_t position = 0; position < bytes.size();) {
        ASSERT_FALSE(source->endOfStream());
        std::uint64_t const size = random() % (1u << random() % 17);
        bool const skips = random() % 4 == 0;
        std::uint64_t const count = std::min(size, bytes.size() - position);
        ASSERT_EQ(skips ? source->skip(size) : source->read(size, kept), count);
        if (!skips)
            expected = expected + slice(bytes, position, count);
        position += count;
        ASSERT_EQ(source->absoluteOffset(), position);
    }
    EXPECT_TRUE(source->endOfStream());
    EXPECT_EQ(source->read(5, kept), 0u);
    EXPECT_EQ(source->skip(5), 0u);
    source.reset();
    EXPECT_TRUE(sameBytes(bytesOf(kept), expected));

    source = GetParam().make(bytes, folder);
    Chain whole;
    EXPECT_EQ(source->read(~0ull >> 1, whole), bytes.size());
    EXPECT_TRUE(whole.equals(bytes.data(), bytes.size()));
    EXPECT_TRUE(GetParam().make({}, folder)->endOfStream());
}

INSTANTIATE_TEST_SUITE_P(All, EverySliceSource, testing::ValuesIn(makers),
                         [](auto const& maker) { return maker.param.name; });

TEST(FileSliceSource, JumpsAndFollowsAFileThatGrowsAndShrinks) {
    TemporaryFolder const folder;
    std::string const name = folder.file("a.bin");
    Bytes const bytes = pattern(3'000'000);
    Bytes const before = slice(bytes, 0, 2'000'000);
    writeFile(name, before);
    FileSliceSource source(name);
    std::mt19937 random(6);
    for (int i = 0; i < 300; ++i) {
        std::uint64_t const position = random() % 2'100'000, size = random() % (1u << random() % 20);
        ASSERT_EQ(source.seek(position), std::min<std::uint64_t>(position, 2'000'000));
        Chain chain;
        source.read(size, chain);
        ASSERT_TRUE(sameBytes(bytesOf(chain), slice(before, position, size)));
    }
    source.seek(1'999'999);
    EXPECT_EQ(source.skip(10), 1u);
    EXPECT_TRUE(source.endOfStream());
    writeFile(name, bytes);
    EXPECT_FALSE(source.endOfStream());
    Chain chain;
    EXPECT_EQ(source.read(~0ull, chain), 1'000'000u);
    EXPECT_TRUE(sameBytes(bytesOf(chain), slice(bytes, 2'000'000, 1'000'000)));
    source.seek(1'000'000);
    std::filesystem::resize_file(name, 1'500'000);
    chain.clear();
    EXPECT_EQ(source.read(~0ull, chain), 500'000u);
    EXPECT_TRUE(source.endOfStream());
    EXPECT_THROW(FileSliceSource(folder.file("missing")), Exceptions::SystemError);
}

TEST(FileSliceSource, GoesThroughTheSameFewBlocks) {
    TemporaryFolder const folder;
    writeFile(folder.file("a.bin"), pattern(20'000'000));
    auto const factory = std::make_shared<MemoryBlockFactory>();
    FileSliceSource source(folder.file("a.bin"), factory);
    std::size_t slices = 0;
    while (!source.endOfStream()) {
        Chain chain;
        source.read(25'000, chain);
        slices += chain.slices().size();
    }
    EXPECT_LT(slices, 900u); // 800 reads; a block holds ten
    EXPECT_LE(factory->pooledBytes(), 4 * FileSliceSource::largestBlock);
}

TEST(SliceSourceTee, ShowsTheSinkWhatIsReadAndSkipped) {
    Bytes const bytes = pattern(3'000'000);
    MemoryDataSink sink;
    SliceSourceTee tee(buffer(cut(bytes, 500, 9)),
                       std::make_shared<DataSinkSliceSink>(unowned<DataSink>(sink)));
    Chain chain;
    tee.read(1000, chain);
    EXPECT_EQ(tee.skip(2'500'000), 2'500'000u);
    tee.read(~0ull, chain);
    EXPECT_EQ(chain.size(), 500'000u);
    EXPECT_TRUE(sameBytes(writtenTo(sink), bytes));
}

TEST(DataSourceSliceSource, ReadsNothingAhead) {
    MemoryDataSource bytes(pattern(100));
    DataSourceSliceSource source(unowned<DataSource>(bytes));
    Chain chain;
    source.read(10, chain);
    source.read(10, chain);
    EXPECT_EQ(bytes.absoluteOffset(), 20u);
    EXPECT_EQ(chain.slices().size(), 1u); // both stand in one block
}

TEST(BoundedDataSourceAdapter, EndsAtItsSizeOrWithItsSource) {
    MemoryDataSource bytes(pattern(10));
    bytes.seek(2);
    BoundedDataSourceAdapter bounded(unowned<DataSource>(bytes), 5);
    EXPECT_EQ(take(bounded, 3), slice(pattern(10), 2, 3));
    EXPECT_EQ(bounded.remaining(), 2u);
    EXPECT_EQ(bounded.skip(9), 2u);
    EXPECT_TRUE(bounded.endOfStream());
    EXPECT_EQ(bounded.absoluteOffset(), 7u);
    BoundedDataSourceAdapter behind(unowned<DataSource>(bytes), 5);
    behind.discard();
    EXPECT_TRUE(behind.endOfStream());
    EXPECT_EQ(behind.remaining(), 2u);
}

TEST(BufferAlignDataSource, TearsNoUnit) {
    MemoryDataSource bytes(pattern(22));
    BufferAlignDataSource aligned(unowned<DataSource>(bytes), 6, 0x55);
    EXPECT_EQ(take(aligned, 17), slice(pattern(22), 0, 12));
    EXPECT_EQ(thrownBy<Exceptions::InvalidLength>([&] { take(aligned, 5); }),
              "Room for 5 bytes, data comes in units of 6");
    EXPECT_EQ(take(aligned, 0).size(), 0u);
    EXPECT_EQ(take(aligned, 100), slice(pattern(22), 12, 10) + hex("55 55"));
    EXPECT_EQ(aligned.absoluteOffset(), 24u);
    EXPECT_EQ(aligned.paddingBytes(), 2u);
    EXPECT_EQ(take(aligned, 6).size(), 0u);
    bytes.seek(18);
    EXPECT_EQ(BufferAlignDataSource(unowned<DataSource>(bytes), 6).skip(100), 6u);
}

TEST(FileDataSink, WritesChainsBehindBufferedBytes) {
    TemporaryFolder const folder;
    std::string const name = folder.file("a.bin");
    Bytes const bytes = pattern(400'000);
    Bytes expected;
    FileDataSink sink(name);
    std::mt19937 random(7);
    for (int i = 0; i < 60; ++i) {
        Bytes const piece = slice(bytes, random() % 1000, random() % (1u << random() % 19));
        if (i % 3 == 0)
            sink.write(piece.data(), piece.size() % 300);
        else // up to a slice a byte: more than one call takes
            writeChain(sink, cut(piece, 1 + random() % 50, i % 2 == 0 ? 0 : 3));
        expected = expected + (i % 3 == 0 ? slice(piece, 0, piece.size() % 300) : piece);
        ASSERT_EQ(sink.absoluteOffset(), expected.size());
        ASSERT_EQ(sink.size(), expected.size());
    }
    sink.flush();
    EXPECT_TRUE(sameBytes(readFile(name), expected));
    sink.seek(10);
    sink.write(cut(bytes, 10'000, 1));
    EXPECT_EQ(sink.absoluteOffset(), 400'010u);
    EXPECT_EQ(sink.size(), std::max<std::uint64_t>(expected.size(), 400'010));
}

#if !defined(_WIN32)
/// The system takes a part of the chain and refuses the rest, as a full disk does.
TEST(FileDataSink, WritesAChainAgainThatDidNotFit) {
    TemporaryFolder const folder;
    Bytes const bytes = pattern(1'000'000);
    FileDataSink sink(folder.file("a.bin"));
    sink.write(bytes.data(), 5);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit const tight{300'001, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
    EXPECT_THROW(sink.write(cut(bytes, 7, 400)), Exceptions::SystemError);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(readFile(folder.file("a.bin")).size(), 300'001u);
    EXPECT_EQ(sink.absoluteOffset(), 5u);
    EXPECT_EQ(sink.size(), 5u);
    sink.write(cut(bytes, 7, 400));
    sink.close();
    EXPECT_TRUE(sameBytes(readFile(folder.file("a.bin")), slice(bytes, 0, 5) + bytes));
}
#endif

} // namespace MXF::Zelm::Test
