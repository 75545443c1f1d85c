#include "Essence/Sound.h"
#include "MXF/Zelm/Essence/AVI/Reader.h"

#include <map>

namespace MXF::Zelm::Test {

using namespace Essence::AVI;

namespace {

/// Integers, 4 bytes each, little-endian.
Bytes longs(std::initializer_list<std::uint64_t> values, std::size_t size = 4) {
    Bytes bytes;
    for (auto const value : values)
        for (std::size_t i = 0; i < size; ++i)
            bytes.push_back(static_cast<unsigned char>(value >> (8 * i) & 0xFF));
    return bytes;
}

Bytes text(std::string_view characters) { return {characters.begin(), characters.end()}; }

Bytes chunk(std::string_view id, Bytes const& data) {
    return text(id) + longs({data.size()}) + data + Bytes(data.size() % 2);
}

Bytes list(std::string_view id, std::string_view type, Bytes const& content) {
    return chunk(id, text(type) + content);
}

Bytes streamList(std::string_view type, std::string_view handler, Bytes const& format, std::uint32_t length,
                 Bytes const& index = {}) {
    auto const header = text(type) + text(handler) + longs({0, 0, 0, 1, 25, 0, length, 0, 0, 0, 0, 0});
    return list("LIST", "strl",
                chunk("strh", header) + chunk("strf", format) + chunk("strn", text("name") + Bytes(1)) +
                    index);
}

Bytes const dv = longs({40, 720, 576}) + longs({1, 24}, 2) + text("dvsd") + Bytes(20);
Bytes const pcm = longs({1, 2}, 2) + longs({48000, 192000}) + longs({4, 16}, 2);

Bytes headers(Bytes const& videoIndex = {}, Bytes const& soundIndex = {}) {
    return list("LIST", "hdrl",
                chunk("avih", longs({40000, 0, 0, 0x10, 3, 0, 2, 0, 720, 576, 0, 0, 0, 0})) +
                    streamList("vids", "dvsd", dv, 3, videoIndex) +
                    streamList("auds", std::string_view("\0\0\0\0", 4), pcm, 9, soundIndex));
}

struct Movie {
    Bytes data = {};
    Bytes index = {}; // idx1
    std::vector<Bytes> video = {}, sound = {};

    Movie() {
        for (unsigned char i = 0; i < 3; ++i) {
            add("00dc", slice(pattern(100), i, 7 + i), video);
            add("01wb", slice(pattern(200), 50 + i, 12), sound);
        }
    }
    void add(std::string_view id, Bytes const& bytes, std::vector<Bytes>& stream) {
        index = index + text(id) + longs({0x10, 4 + data.size(), bytes.size()});
        data = data + chunk(id, bytes);
        stream.push_back(bytes);
    }
};

Templates::SharedPtr<DataIO::RandomAccessDataSource> fileOf(Bytes const& bytes) {
    return std::make_shared<DataIO::Memory::MemoryDataSource>(bytes);
}

std::vector<Bytes> chunksOf(Reader const& reader, std::size_t stream) {
    std::vector<Bytes> result;
    auto const source = reader.open(stream);
    for (DataIO::Chain chunk; source->nextChunk(chunk);)
        result.push_back(bytesOf(chunk));
    EXPECT_TRUE(source->endOfStream());
    return result;
}

std::vector<std::string> messages(Reader const& reader) {
    std::vector<std::string> result;
    for (auto const& fault : reader.faults())
        result.push_back(fault.message);
    return result;
}

void expectStreams(Reader const& reader, Movie const& movie) {
    ASSERT_EQ(reader.streams().size(), 2u);
    EXPECT_EQ(chunksOf(reader, 0), movie.video);
    EXPECT_EQ(chunksOf(reader, 1), movie.sound);
}

/// A file of which only some bytes are not zero.
class SparseFile : public DataIO::RandomAccessDataSource {
public:
    explicit SparseFile(std::uint64_t size) : size_(size) {}
    void put(std::uint64_t offset, Bytes bytes) { parts_[offset] = std::move(bytes); }

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return position_ == size_; }
    std::uint64_t remaining() const override { return size_ - position_; }
    void discard() override { position_ = size_; }
    std::uint64_t skip(std::uint64_t size) override {
        position_ += std::min(size, remaining());
        return size;
    }
    std::uint64_t seek(std::uint64_t position) override { return position_ = std::min(position, size_); }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override {
        size = std::min(size, remaining());
        for (std::uint64_t i = 0; i < size; ++i, ++position_)
            buffer[i] = at(position_);
        return size;
    }

private:
    unsigned char at(std::uint64_t offset) const {
        auto part = parts_.upper_bound(offset);
        if (part == parts_.begin())
            return 0;
        --part;
        std::uint64_t const within = offset - part->first;
        return within < part->second.size() ? part->second[static_cast<std::size_t>(within)]
                                            : std::uint8_t{0};
    }

    std::map<std::uint64_t, Bytes> parts_;
    std::uint64_t size_, position_ = 0;
};

} // namespace

TEST(AVIReader, GivesHeadersAndChunksByIdx1) {
    Movie const movie;
    auto const bytes = list("RIFF", "AVI ",
                            headers() + chunk("JUNK", Bytes(5)) + list("LIST", "movi", movie.data) +
                                chunk("idx1", movie.index));
    Reader const reader(fileOf(bytes));
    expectStreams(reader, movie);
    EXPECT_EQ(reader.indexKind(), Reader::IndexKind::Idx1);
    EXPECT_EQ(messages(reader), std::vector<std::string>());
    EXPECT_EQ(reader.mainHeader().width, 720u);
    EXPECT_EQ(reader.mainHeader().totalFrames, 3u);
    auto const& video = reader.streams()[0].header;
    EXPECT_EQ(video.content(), Content::DV);
    EXPECT_EQ(video.rate, (Templates::Rational<std::int64_t>{25, 1}));
    EXPECT_EQ(video.length, 3u);
    EXPECT_EQ(video.name, "name");
    ASSERT_TRUE(video.video);
    EXPECT_EQ(video.video->height, 576);
    EXPECT_EQ(video.video->bitCount, 24);
    EXPECT_EQ(video.format, dv);
    auto const& sound = reader.streams()[1].header;
    EXPECT_EQ(sound.content(), Content::PCM);
    ASSERT_TRUE(sound.sound);
    EXPECT_EQ(sound.sound->channels, 2);
    EXPECT_EQ(sound.sound->samplingRate, 48000u);
    EXPECT_EQ(sound.sound->blockAlign, 4);

    auto const source = reader.open(0);
    DataIO::Chain rest;
    EXPECT_EQ(source->skip(3), 3u);
    ASSERT_TRUE(source->nextChunk(rest)); // the rest of the first
    EXPECT_EQ(bytesOf(rest), slice(movie.video[0], 3, 99));
    source->seek(2);
    EXPECT_EQ(readAll(*source), movie.video[2]);
    EXPECT_THROW(reader.open(2), Exceptions::InvalidPosition);
    EXPECT_THROW(Reader(fileOf(bytes), {.mostChunks = 5}), Exceptions::InvalidStructure);
    survivesEveryFault(bytes, [](Bytes const& changed) {
        Reader const broken(fileOf(changed));
        for (std::size_t i = 0; i < broken.streams().size(); ++i)
            chunksOf(broken, i);
    });
}

TEST(AVIReader, WalksWhereTheIndexIsMissingOrWrong) {
    Movie const movie;
    auto const file = [](Bytes const& index, Bytes const& movi) {
        return list("RIFF", "AVI ", headers() + list("LIST", "movi", movi) + index);
    };
    auto const wrong = [&](std::size_t at, unsigned char value) {
        auto index = movie.index;
        index[at] = value;
        return file(chunk("idx1", index), movie.data);
    };
    auto const inLists = list("LIST", "rec ", slice(movie.data, 0, 36)) + chunk("00pc", Bytes(4)) +
                         list("LIST", "rec ", slice(movie.data, 36, ~0ull));
    auto unfinished = file({}, movie.data);
    for (std::size_t const size : {4u, 4u + 8u + 4u + static_cast<unsigned>(headers().size())})
        std::fill_n(unfinished.begin() + static_cast<std::ptrdiff_t>(size), 4, 0);
    struct {
        Bytes bytes;
        std::vector<std::string> faults;
    } const rows[] = {
        {file({}, movie.data), {}},
        {file({}, inLists), {}},
        {unfinished, {}},
        {wrong(8, 5), {"The index idx1 is wrong"}}, // from wherever offsets count
        {wrong(40, 7), {"An index does not agree with the chunks"}},
        {wrong(1 * 16 + 12, 13), {"An index does not agree with the chunks"}},
        {wrong(5 * 16 + 11, 0xFF), {"An index does not agree with the chunks"}},
        {file(chunk("idx1", slice(movie.index, 0, 5 * 16)), movie.data), {"An index leaves chunks out"}},
        {file(chunk("idx1", slice(movie.index, 0, 3 * 16) + slice(movie.index, 4 * 16, ~0ull)), movie.data),
         {"An index leaves chunks out"}},
        {wrong(3 * 16 + 1, 'x'), {"An index leaves chunks out"}},
    };
    for (auto const& row : rows) {
        Reader const reader(fileOf(row.bytes));
        expectStreams(reader, movie);
        EXPECT_EQ(reader.indexKind(), Reader::IndexKind::Walk);
        EXPECT_EQ(messages(reader), row.faults) << &row - rows;
    }
    auto cutOff = file({}, movie.data);
    cutOff.pop_back();
    Reader const reader(fileOf(cutOff));
    EXPECT_EQ(chunksOf(reader, 1).size(), 2u);
    EXPECT_EQ(messages(reader), std::vector<std::string>{"A chunk of 12 bytes is cut off"});
}

TEST(AVIReader, TakesAbsoluteOffsetsToo) {
    Movie movie;
    auto const head = headers();
    std::size_t const movi = 12 + head.size() + 8; // of its type
    for (std::size_t at = 8; at < movie.index.size(); at += 16) {
        std::size_t const offset = movie.index[at] + movi;
        movie.index[at] = static_cast<unsigned char>(offset & 0xFF);
        movie.index[at + 1] = static_cast<unsigned char>(offset >> 8);
    }
    Reader const reader(
        fileOf(list("RIFF", "AVI ", head + list("LIST", "movi", movie.data) + chunk("idx1", movie.index))));
    expectStreams(reader, movie);
    EXPECT_EQ(reader.indexKind(), Reader::IndexKind::Idx1);
}

TEST(AVIReader, RefusesOtherFiles) {
    for (auto const& bytes : {Bytes{}, text("RIFF"), list("RIFF", "WAVE", {}), list("RIFF", "AVI ", {}),
                              list("RIFF", "AVI ", list("LIST", "hdrl", {}))})
        EXPECT_THROW(Reader{fileOf(bytes)}, Exceptions::InvalidFormat);
}

// Pictures at both ends of 5 GiB, in two RIFF chunks.
TEST(AVIReader, FindsChunksByOpenDMLPast4GiB) {
    std::uint64_t const second = std::uint64_t{1} << 30, far = (std::uint64_t{5} << 30) - 4096;
    auto const index = [](std::uint64_t base, Bytes const& entries) {
        return chunk("ix00", longs({2, 0x0100}, 2) + longs({entries.size() / 8}) + text("00dc") +
                                 longs({base}, 8) + longs({0}) + entries);
    };
    auto const super = [](std::uint64_t first, std::uint64_t next) {
        return chunk("indx", longs({4, 0}, 2) + longs({2}) + text("00dc") + longs({0, 0, 0}) +
                                 longs({first}, 8) + longs({48, 2}) + longs({next}, 8) + longs({40, 1}));
    };
    auto const make = [&](std::uint64_t firstIndex, unsigned char notKey) {
        auto const file = std::make_shared<SparseFile>(far + 200);
        auto const head =
            list("LIST", "hdrl", streamList("vids", "dvsd", dv, 3, super(firstIndex, far + 100)));
        std::uint64_t const movi = 12 + head.size();
        auto const data = chunk("00dc", pattern(6)) + chunk("00dc", pattern(5));
        file->put(0, text("RIFF") + longs({second - 8}) + text("AVI ") + head + text("LIST") +
                         longs({second - movi - 8}) + text("movi") + data +
                         index(movi, longs({20, 6, 34, 5 | std::uint64_t{notKey} << 24})) + text("JUNK") +
                         longs({0}));
        file->put(second, text("RIFF") + longs({0}) + text("AVIX") + text("LIST") + longs({0}) +
                              text("movi") + text("JUNK") + longs({3u << 30}));
        file->put(second + 32 + (std::uint64_t{3} << 30),
                  text("JUNK") + longs({far - second - 40 - (std::uint64_t{3} << 30)}));
        file->put(far, chunk("00dc", pattern(9)));
        file->put(far + 100, index(far, longs({8, 9})));
        return file;
    };
    std::uint64_t const firstIndex =
        12 + list("LIST", "hdrl", streamList("vids", "dvsd", dv, 3, super(0, 0))).size() + 12 + 14 + 14;
    Reader const reader(make(firstIndex, 0x80));
    EXPECT_EQ(messages(reader), std::vector<std::string>());
    EXPECT_EQ(reader.indexKind(), Reader::IndexKind::OpenDML);
    EXPECT_EQ(chunksOf(reader, 0), (std::vector<Bytes>{pattern(6), pattern(5), pattern(9)}));
    ASSERT_EQ(reader.streams()[0].chunks.size(), 3u);
    EXPECT_EQ(reader.streams()[0].chunks[2], (Chunk{far + 8, 9, true}));
    EXPECT_FALSE(reader.streams()[0].chunks[1].isKey);
}

} // namespace MXF::Zelm::Test
