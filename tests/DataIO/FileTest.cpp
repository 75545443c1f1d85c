#include "MXF/Zelm/DataIO/File/FileDataSink.h"
#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/DataIO/File/FileFunctions.h"

#include "DataIO/Cuts.h"
#include "MXF/Zelm/Platform/Text.h"
#include "support/Files.h"

#include <random>
#if !defined(_WIN32)
#include <sys/stat.h>
#endif

namespace MXF::Zelm::Test {

using DataIO::File::FileDataSink;
using DataIO::File::FileDataSource;
using Mode = FileDataSink::Mode;

namespace {

Bytes take(DataIO::DataSource& source, std::uint64_t size) {
    Bytes bytes(static_cast<std::size_t>(size));
    bytes.resize(static_cast<std::size_t>(source.read(bytes.data(), size)));
    return bytes;
}

} // namespace

TEST(FileDataSource, ReadsWhatTheFileHoldsWhereverItIsAsked) {
    TemporaryFolder const folder;
    std::string const name = folder.file("a.bin");
    Bytes const bytes = pattern(1'500'000); // several of the largest windows
    writeFile(name, bytes);
    FileDataSource source(name);
    EXPECT_EQ(source.size(), bytes.size());
    EXPECT_EQ(source.fileName(), name);

    std::mt19937 random(1);
    auto const below = [&random](std::uint64_t limit) { return random() % limit; };
    std::uint64_t position = 0;
    for (int i = 0; i < 3000; ++i) {
        switch (below(8)) {
        case 0: // a jump anywhere, also past the end
            position = source.seek(below(bytes.size() + 1000));
            break;
        case 1: // a short skip, which keeps or leaves the window
            position += source.skip(below(i % 2 == 0 ? 300 : 70'000));
            break;
        case 2: // back a little
            position = source.seek(position - std::min<std::uint64_t>(position, below(5000)));
            break;
        default: // small, window-sized and direct reads
            std::uint64_t const size = below(std::uint64_t{1} << below(20));
            Bytes const got = take(source, size);
            ASSERT_TRUE(sameBytes(got, slice(bytes, position, size))) << "at " << position;
            position += got.size();
        }
        ASSERT_EQ(source.absoluteOffset(), position);
        ASSERT_EQ(source.remaining(), bytes.size() - position);
    }
    source.seek(5);
    EXPECT_TRUE(sameBytes(take(source, ~0ull >> 40), slice(bytes, 5, bytes.size())));
    EXPECT_TRUE(source.endOfStream());
}

TEST(FileDataSource, FollowsAFileThatShrinksAndGrows) {
    TemporaryFolder const folder;
    std::string const name = folder.file("a.bin");
    Bytes const bytes = pattern(700'000);
    writeFile(name, bytes);
    FileDataSource source(name);
    std::filesystem::resize_file(name, 300'000);
    source.seek(299'990);
    EXPECT_EQ(take(source, 1000).size(), 10u);
    source.seek(299'990);
    EXPECT_EQ(take(source, 400'000).size(), 10u); // read past the window
    source.seek(400'000);
    EXPECT_EQ(take(source, 1).size(), 0u);
    EXPECT_TRUE(source.endOfStream()); // found out by reading
    EXPECT_EQ(source.refreshSize(), 300'000u);
    EXPECT_TRUE(source.endOfStream());
    writeFile(name, bytes);
    EXPECT_EQ(source.refreshSize(), 700'000u);
    source.seek(400'000);
    EXPECT_TRUE(sameBytes(take(source, 20), slice(bytes, 400'000, 20)));
}

TEST(FileDataSource, RefusesWhatCannotBeRead) {
    TemporaryFolder const folder;
    for (auto const& name : {folder.file("missing"), folder.file(""), std::string()}) {
        auto const message = thrownBy<Exceptions::SystemError>([&] { FileDataSource source(name); });
        EXPECT_TRUE(message.starts_with(name + ": cannot open: ")) << message;
    }
    writeFile(folder.file("empty"), {});
    FileDataSource empty(folder.file("empty"));
    EXPECT_TRUE(empty.endOfStream());
    EXPECT_EQ(take(empty, 5).size(), 0u);
}

TEST(FileDataSink, ObeysItsModeUnderNamesOfAnyAlphabet) {
    TemporaryFolder const folder;
    for (auto const* const leaf :
         {"plain", "\xC3\xA9t\xC3\xA9 \xE6\x98\xA0\xE5\x83\x8F \xF0\x9F\x8E\xAC.mxf"}) {
        std::string const name = folder.file(leaf);
        std::u16string const wide = Platform::toUtf16(name);
        EXPECT_THROW(FileDataSink(name, Mode::Modify), Exceptions::SystemError);
        {
            FileDataSink sink(wide);
            sink.write(pattern(8).data(), 8);
            EXPECT_EQ(sink.fileName(), name);
        }
        EXPECT_TRUE(sameBytes(readFile(name), pattern(8)));
        FileDataSource readBack(wide);
        EXPECT_EQ(readBack.size(), 8u);
        EXPECT_THROW(FileDataSink(name, Mode::CreateNew), Exceptions::SystemError);
        {
            FileDataSink sink(name, Mode::Modify);
            EXPECT_EQ(sink.size(), 8u);
            sink.seek(6);
            sink.write(hex("AA BB CC").data(), 3);
            EXPECT_EQ(sink.size(), 9u);
        }
        EXPECT_TRUE(sameBytes(readFile(name), slice(pattern(8), 0, 6) + hex("AA BB CC")));
        { FileDataSink sink(wide, Mode::Replace); }
        EXPECT_TRUE(readFile(name).empty());
    }
    EXPECT_THROW(FileDataSink(folder.file("no/such/folder")), Exceptions::SystemError);
}

TEST(FileDataSink, BuffersSeeksAndCuts) {
    TemporaryFolder const folder;
    std::string const name = folder.file("a.bin");
    Bytes expected;
    {
        FileDataSink sink(name);
        std::mt19937 random(2);
        std::uint64_t position = 0;
        Bytes const bytes = pattern(900'000);
        for (int i = 0; i < 300; ++i) {
            std::uint64_t const size = random() % (std::uint64_t{1} << random() % 20);
            Bytes const piece = slice(bytes, random() % 1000, size);
            sink.write(piece.data(), piece.size());
            expected.resize(std::max(expected.size(), static_cast<std::size_t>(position) + piece.size()));
            std::copy(piece.begin(), piece.end(), expected.begin() + static_cast<std::ptrdiff_t>(position));
            position += piece.size();
            if (random() % 4 == 0)
                position = sink.seek(random() % (expected.size() + 100));
            ASSERT_LE(position, expected.size());
            ASSERT_EQ(sink.absoluteOffset(), position);
            ASSERT_EQ(sink.size(), expected.size());
        }
        sink.synchronize();
        ASSERT_TRUE(sameBytes(readFile(name), expected));
        sink.seek(1000);
        sink.write(hex("01 02 03").data(), 3);
        sink.truncate();
        expected = slice(expected, 0, 1000) + hex("01 02 03");
        EXPECT_EQ(sink.size(), expected.size());
        sink.close();
        EXPECT_THROW(
            {
                sink.write(expected.data(), 1);
                sink.flush();
            },
            Exceptions::SystemError);
    }
    EXPECT_TRUE(sameBytes(readFile(name), expected));
}

TEST(File, IsRenamedRemovedAndCompared) {
    namespace File = DataIO::File;
    TemporaryFolder const folder;
    std::string const a = folder.file("ä.mxf"), b = folder.file("b.mxf"), none = folder.file("none/c.mxf");
    writeFile(a, hex("01"));
    writeFile(b, hex("02"));
    EXPECT_TRUE(File::exists(Platform::toUtf16(a)));
    EXPECT_FALSE(File::exists(none));
    EXPECT_TRUE(File::sameFile(a, folder.file("./ä.mxf")));
    EXPECT_FALSE(File::sameFile(a, b) || File::sameFile(a, none));
    // An existing file is replaced only when asked.
    EXPECT_THROW(File::rename(a, b, false), Exceptions::SystemError);
    EXPECT_EQ(readFile(a) + readFile(b), hex("01 02"));
    File::rename(a, b, true);
    EXPECT_EQ(readFile(b), hex("01"));
    File::rename(b, a, false);
    File::synchronizeEntry(a);
    EXPECT_FALSE(File::exists(b));
    File::remove(a);
    EXPECT_FALSE(File::exists(a));
    EXPECT_THROW(File::remove(a), Exceptions::SystemError);
#if !defined(_WIN32)
    writeFile(a, hex("01"));
    ASSERT_EQ(::mkfifo(b.c_str(), 0600), 0);
    EXPECT_THROW(File::rename(a, b, true), Exceptions::SystemError);
    EXPECT_TRUE(std::filesystem::is_fifo(b) && File::exists(a));
#endif
}

} // namespace MXF::Zelm::Test
