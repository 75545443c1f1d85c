/// Reading essence: edit units of containers, with and without an index, whole and cut off.
#include "MXF/Zelm/DataIO/Memory/MemoryDataSource.h"
#include "MXF/Zelm/MXFIO/EssenceReader.h"
#include "MXF/Zelm/MXFIO/SequentialReader.h"
#include "support/EssenceBody.h"
#include "support/IndexSegments.h"

#include <numeric>

namespace MXF::Zelm::Test {

using namespace MXFIO;
using GenericContainer::Wrapping;

namespace {

/// Bytes in memory to which more are added.
class GrowingSource : public DataIO::RandomAccessDataSource {
public:
    explicit GrowingSource(Bytes bytes) : bytes_(std::move(bytes)) {}
    void append(Bytes const& more) { bytes_ = bytes_ + more; }

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return remaining() == 0; }
    std::uint64_t remaining() const override { return bytes_.size() - position_; }
    void discard() override { position_ = bytes_.size(); }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override {
        std::uint64_t const from = position_;
        std::uint64_t const count = skip(size);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(from), count, buffer);
        return count;
    }
    std::uint64_t skip(std::uint64_t size) override {
        size = std::min(size, remaining());
        position_ += size;
        return size;
    }
    std::uint64_t seek(std::uint64_t position) override {
        return position_ = std::min<std::uint64_t>(position, bytes_.size());
    }

private:
    Bytes bytes_;
    std::uint64_t position_ = 0;
};

/// A source that cannot seek.
class Pipe : public DataIO::DataSource {
public:
    explicit Pipe(Bytes bytes) : source_(std::move(bytes)) {}
    std::uint64_t absoluteOffset() const override { return source_.absoluteOffset(); }
    bool endOfStream() const override { return source_.endOfStream(); }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override {
        return source_.read(buffer, size);
    }
    std::uint64_t skip(std::uint64_t size) override { return source_.skip(size); }

private:
    DataIO::Memory::MemoryDataSource source_;
};

struct File {
    explicit File(Bytes bytes, EssenceReader::Options options = {},
                  EssenceContainer container = {.bodySID = 1})
        : source(std::move(bytes)),
          reader(source, smallDictionary(), 65536),
          essence(reader, std::move(container), std::move(options)) {}

    GrowingSource source;
    Reader2 reader;
    EssenceReader essence;
};

constexpr std::size_t units = 40;

struct FrameWrapped {
    std::vector<Part> parts;
    std::vector<std::uint64_t> starts; // in the stream
};

/// Edit units in three body partitions, the second of which begins amid an edit unit.
FrameWrapped frameWrapped() {
    FrameWrapped made;
    Bytes body;
    for (std::size_t i = 0; i < units; ++i) {
        made.starts.push_back(body.size());
        body = body + contentPackage(i);
    }
    auto const cut = [&](std::uint64_t from, std::uint64_t to) {
        return Bytes(body.begin() + static_cast<std::ptrdiff_t>(from),
                     body.begin() + static_cast<std::ptrdiff_t>(to));
    };
    std::uint64_t const second = made.starts[10] + 32, third = made.starts[30]; // behind a system item
    auto const part = [&](std::uint64_t from, std::uint64_t to) {
        return Part{.kind = PartitionPack::Body, .body = cut(from, to), .bodySID = 1, .bodyOffset = from};
    };
    made.parts = {{.kind = PartitionPack::Header},
                  part(0, second),
                  part(second, third),
                  part(third, body.size()),
                  {.kind = PartitionPack::Footer}};
    return made;
}

Bytes indexOf(std::vector<std::uint64_t> const& starts) {
    std::vector<IndexTables::IndexEntry> entries;
    for (auto const start : starts)
        entries.emplace_back(0, 0, true, false, false, false, start);
    return written(*makeSegment({.duration = std::ssize(starts), .entries = entries}));
}

void expectUnit(EssenceUnit const& unit, std::size_t number, FrameWrapped const& file) {
    ASSERT_EQ(unit.position, static_cast<std::int64_t>(number));
    EXPECT_EQ(unit.streamOffset, file.starts[number]);
    EXPECT_LE(unit.package.length, contentPackage(number).size());
    EXPECT_GE(unit.package.length, contentPackage(number).size() - 30) << "but for the fill item";
    ASSERT_EQ(unit.package.systemItems.size(), 1u);
    ASSERT_EQ(unit.package.elements.size(), 3u);
    for (std::uint32_t const track : {pictureTrack, soundTracks[0], soundTracks[1]})
        EXPECT_EQ(joined(unit.package.element(track)->data), elementValue(number, track)) << number;
}

/// The position of each edit unit in the order in which `step` gives them.
template <class Step>
std::vector<std::int64_t> positions(FrameWrapped const& file, Step step) {
    std::vector<std::int64_t> found;
    EssenceUnit unit;
    while (step(unit)) {
        expectUnit(unit, static_cast<std::size_t>(unit.position), file);
        found.push_back(unit.position);
    }
    return found;
}

std::vector<std::int64_t> upTo(std::size_t count) {
    std::vector<std::int64_t> all(count);
    std::iota(all.begin(), all.end(), 0);
    return all;
}

/// All that can be asked of a file.
void readEverything(Bytes const& bytes) {
    File file(bytes);
    EssenceUnit unit;
    while (file.essence.next(unit))
        continue;
    for (std::int64_t const position : {0, 3, 7, 1000000})
        file.essence.read(position, unit);
    file.essence.flags(1);
    file.essence.end();
    Pipe pipe(bytes);
    SequentialReader sequential(pipe, smallDictionary());
    while (sequential.next(unit))
        continue;
}

} // namespace

TEST(EssenceReader, ReadsForwardsBackwardsAndAnywhere) {
    auto file = frameWrapped();
    for (bool const indexed : {false, true}) {
        if (indexed) {
            file.parts.back().index = indexOf(file.starts);
            file.parts.back().indexSID = 2;
        }
        File open(makeFile(file.parts).bytes);
        EXPECT_EQ(positions(file, [&](auto& unit) { return open.essence.next(unit); }), upTo(units));
        EXPECT_EQ(open.essence.wrapping(), Wrapping::Frame);
        auto backwards = positions(file, [&](auto& unit) { return open.essence.previous(unit); });
        std::reverse(backwards.begin(), backwards.end());
        EXPECT_EQ(backwards, upTo(units));
        EssenceUnit unit;
        for (std::size_t i = 0; i < units; ++i) {
            ASSERT_TRUE(open.essence.read(static_cast<std::int64_t>(i * 17 % units), unit));
            expectUnit(unit, i * 17 % units, file);
        }
        EXPECT_FALSE(open.essence.read(units, unit));
        EXPECT_FALSE(open.essence.read(-1, unit));
        EXPECT_EQ(open.essence.end(), std::int64_t{units});
        EXPECT_EQ(open.essence.flags(5), indexed ? std::optional<std::uint8_t>(0x80) : std::nullopt);
        EXPECT_EQ(open.essence.seeker().walkedIndex().begin(), indexed ? units - 1 : 0)
            << "walks no more than it must";
    }
}

TEST(EssenceReader, PassesOverTracksThatAreNotWanted) {
    auto const file = frameWrapped();
    File open(makeFile(file.parts).bytes, {.trackNumbers = {soundTracks[1]}, .largestElement = 32});
    EssenceUnit unit;
    ASSERT_TRUE(open.essence.read(7, unit));
    EXPECT_TRUE(unit.package.element(pictureTrack)->data.empty());
    EXPECT_EQ(joined(unit.package.element(soundTracks[1])->data), elementValue(7, soundTracks[1]));
    // What is too large comes as a source.
    auto const& picture = *unit.package.element(pictureTrack);
    EXPECT_EQ(picture.length, elementValue(7, pictureTrack).size());
    DataIO::Chain data;
    auto const source = open.essence.open(picture);
    while (!source->endOfStream())
        source->read(10, data);
    EXPECT_EQ(joined(data), elementValue(7, pictureTrack));
}

constexpr std::int64_t farAway = std::int64_t{1} << 62;
constexpr auto lastPosition = std::numeric_limits<std::int64_t>::max();

/// Something that an index may say, made of one that is right.
struct Lie {
    const char* what;
    std::function<void(std::vector<Rows>&)> tell;
};

void move(Rows& rows, std::size_t entry, std::uint64_t by) {
    rows.entries[entry].streamOffset(rows.entries[entry].streamOffset() + by);
}

/// A segment for each half of what is left of all positions, up to the last one.
void climb(std::vector<Rows>& segments) {
    auto const all = segments.front().entries;
    segments.clear();
    for (std::size_t i = 0; i < units; ++i)
        segments.push_back({.start = lastPosition - (farAway >> i), .duration = 1, .entries = {all[i]}});
}

const Lie lies[] = {
    {"amid an element", [](auto& all) { move(all[0], 5, 7); }},
    {"another element than the first", [](auto& all) { move(all[0], 6, 32); }},
    {"beyond the essence", [](auto& all) { move(all[0], 8, ~std::uint64_t{0}); }},
    {"the last one amid an element", [](auto& all) { move(all[0], units - 1, 7); }},
    {"behind the next one", [](auto& all) { std::swap(all[0].entries[17], all[0].entries[18]); }},
    {"backwards", [](auto& all) { std::reverse(all[0].entries.begin(), all[0].entries.end()); }},
    {"all the same", [](auto& all) { all[0].entries.assign(units, all[0].entries[9]); }},
    {"too early", [](auto& all) { all[0].start = -5; }},
    {"too late", [](auto& all) { all[0].start = farAway; }},
    {"up to the last position", climb},
    {"half of them", [](auto& all) { all[0].entries.resize(units / 2, IndexTables::IndexEntry(0)); }},
    {"no end", [](auto& all) { all[0].duration = lastPosition; }},
    {"less than nothing", [](auto& all) { all[0].duration = -lastPosition; }},
    {"others later",
     [](auto& all) { all.push_back({.start = 3, .duration = 5, .entries = entriesAt({7})}); }},
    {"one size", [](auto& all) { all = {{.duration = farAway, .byteCount = 1}}; }},
    {"one large size", [](auto& all) { all = {{.duration = 0, .byteCount = 0xFFFFFFFF}}; }},
    {"one size behind the entries",
     [](auto& all) {
         all = {{.duration = farAway, .byteCount = 1, .entries = entriesAt({0, 7})}};
     }},
};

TEST(EssenceReader, DoesNotFollowAnIndexThatLeadsAstray) {
    auto file = frameWrapped();
    file.parts.back().indexSID = 2;
    for (auto const& lie : lies) {
        SCOPED_TRACE(lie.what);
        std::vector<Rows> segments = {{.duration = units}};
        for (auto const start : file.starts)
            segments[0].entries.emplace_back(start);
        lie.tell(segments);
        file.parts.back().index.clear();
        for (auto const& rows : segments)
            file.parts.back().index = file.parts.back().index + written(*makeSegment(rows));
        Bytes const bytes = makeFile(file.parts).bytes;
        EXPECT_EQ(File(bytes).essence.end(), std::int64_t{units});
        EssenceUnit unit;
        for (std::size_t const position : {0u, 5u, 6u, 8u, 17u, 18u, 39u}) {
            File open(bytes);
            ASSERT_TRUE(open.essence.read(static_cast<std::int64_t>(position), unit)) << position;
            expectUnit(unit, position, file);
        }
        File open(bytes);
        auto const* const index = open.essence.seeker().index();
        ASSERT_NE(index, nullptr);
        auto const indexed = index->end();
        EXPECT_EQ(positions(file, [&](auto& one) { return open.essence.next(one); }), upTo(units));
        for (std::int64_t const position : {std::int64_t{units}, farAway, lastPosition - 2, lastPosition})
            EXPECT_FALSE(open.essence.read(position, unit)) << position;
        EXPECT_EQ(positions(file, [&](auto& one) { return open.essence.previous(one); }).size(), units);
        EXPECT_EQ(index->end(), indexed) << "it stays for who has asked for it";
    }
}

TEST(EssenceReader, TakesTheIndexTableThatTheMetadataNames) {
    auto file = frameWrapped();
    file.parts.back().index = written(*makeSegment({.duration = 3, .byteCount = 9, .indexSID = 1}));
    file.parts.back().index = file.parts.back().index + indexOf(file.starts);
    Bytes const bytes = makeFile(file.parts).bytes;
    EXPECT_EQ(File(bytes, {}, {.bodySID = 1}).essence.seeker().table()->indexSID(), 1u);
    EXPECT_EQ(File(bytes, {}, {.bodySID = 1, .indexSID = 2}).essence.seeker().table()->indexSID(), 2u);
    EXPECT_EQ(File(bytes, {}, {.bodySID = 1, .indexSID = 3}).essence.seeker().table()->indexSID(), 1u);
}

TEST(BodyStream, GoesOnBehindWhatTheFileDoesNotHave) {
    auto const package = contentPackage(1);
    auto const part = [&](std::uint64_t offset) {
        return Part{.kind = PartitionPack::Body, .body = package, .bodySID = 1, .bodyOffset = offset};
    };
    // The first 1000 bytes are missing, and 500 between the partitions.
    File open(makeFile({{.kind = PartitionPack::Header},
                        part(1000),
                        part(1500 + package.size()),
                        {.kind = PartitionPack::Footer}})
                  .bytes);
    std::vector<std::uint64_t> starts;
    EssenceUnit unit;
    while (open.essence.next(unit))
        starts.push_back(unit.streamOffset);
    EXPECT_EQ(starts, (std::vector<std::uint64_t>{1000, 1500 + package.size()}));
    EXPECT_FALSE(open.essence.stream().fileOffset(999));
    EXPECT_TRUE(open.essence.stream().fileOffset(1000));
}

TEST(EssenceReader, GivesEveryWholeEditUnitOfAFileThatIsCutOff) {
    auto const file = frameWrapped();
    auto const made = makeFile(file.parts);
    std::uint64_t const body = made.offsets[3];
    for (std::uint64_t cut = body; cut < made.offsets[4]; cut += 13) {
        File open(Bytes(made.bytes.begin(), made.bytes.begin() + static_cast<std::ptrdiff_t>(cut)));
        auto const found = positions(file, [&](auto& unit) { return open.essence.next(unit); });
        std::size_t whole = 30;
        // A content package is whole with its last element; the fill behind it may be missing.
        auto const streamEnd = open.essence.stream().length();
        while (whole < units && file.starts[whole] + contentPackage(whole).size() - 30 <= streamEnd)
            ++whole;
        EXPECT_EQ(found.size(), whole) << cut;
        EXPECT_EQ(open.essence.end(), static_cast<std::int64_t>(whole)) << cut;
    }
}

TEST(EssenceReader, ReadsOnWhenTheFileHasGrown) {
    auto const file = frameWrapped();
    auto const made = makeFile(file.parts);
    std::size_t at = static_cast<std::size_t>(made.offsets[1] + 100);
    auto const cut = [&](std::size_t from, std::size_t to) {
        return Bytes(made.bytes.begin() + static_cast<std::ptrdiff_t>(from),
                     made.bytes.begin() + static_cast<std::ptrdiff_t>(to));
    };
    File open(cut(0, at));
    std::vector<std::int64_t> found;
    EssenceUnit unit;
    for (std::size_t step = 1; at < made.bytes.size(); step = step * 2 % 997) {
        while (open.essence.next(unit))
            found.push_back(unit.position);
        EXPECT_EQ(open.essence.end(), static_cast<std::int64_t>(found.size()));
        std::size_t const grownTo = std::min(at + step, made.bytes.size());
        open.source.append(cut(at, grownTo));
        at = grownTo;
        open.essence.refresh();
    }
    while (open.essence.next(unit)) {
        expectUnit(unit, found.size(), file);
        found.push_back(unit.position);
    }
    EXPECT_EQ(found, upTo(units));
}

TEST(WalkedIndex, IsTheFilesOwnAndCanBeStopped) {
    auto const file = frameWrapped();
    File open(makeFile(file.parts).bytes);
    WalkedIndex index(open.essence.stream());
    ASSERT_TRUE(index.walkTo(3));
    EXPECT_EQ(index.end(), 4);
    EXPECT_FALSE(index.isComplete());
    ASSERT_TRUE(index.walk());
    EXPECT_TRUE(index.isComplete());
    auto const table = index.table(2, {25, 1});
    IndexTables::EditUnitLocator const locator(*table, {open.essence.stream().length()});
    for (std::size_t i = 0; i < units; ++i) {
        EXPECT_EQ(locator.locate(static_cast<std::int64_t>(i))->streamOffset, file.starts[i]);
        EXPECT_EQ(index.length(static_cast<std::int64_t>(i)), contentPackage(i).size());
    }
    EXPECT_EQ(locator.end(), std::int64_t{units});

    Bytes body;
    for (int i = 0; i < 5000; ++i)
        body = std::move(body) + essence(4);
    File constant(makeFile({{.kind = PartitionPack::Header, .body = body, .bodySID = 1},
                            {.kind = PartitionPack::Footer}})
                      .bytes);
    WalkedIndex walked(constant.essence.stream());
    std::uint64_t told = 0;
    EXPECT_FALSE(walked.walk([&](std::uint64_t done, std::uint64_t total) {
        told = done;
        EXPECT_EQ(total, body.size());
        return false;
    }));
    EXPECT_EQ(told, static_cast<std::uint64_t>(walked.end()) * 24);
    ASSERT_TRUE(walked.walk());
    auto const constantTable = walked.table(2, {25, 1});
    ASSERT_EQ(constantTable->size(), 1u);
    EXPECT_EQ(constantTable->begin()->second->editUnitByteCount()->value(), 24u);
    EXPECT_EQ(constantTable->begin()->second->indexDuration().value(), 5000);
}

TEST(WalkedIndex, LearnsElementsAndPictures) {
    // I0 P3 B1 B2, again and again, each with a header of its own before an I picture; sounds of one size.
    Bytes const sequence = hex("000001B3 2D026023 7A1223D8  000001B5 185400010080  000001B8 00080040");
    Bytes const heads[] = {sequence + hex("00000100 000FFFF8"), hex("00000100 00D7FFF8 80"),
                           hex("00000100 005FFFF8 80"), hex("00000100 009FFFF8 80")};
    Bytes body;
    std::vector<std::uint64_t> starts, sounds;
    for (std::size_t i = 0; i < 9000; ++i) {
        starts.push_back(body.size());
        Bytes unit =
            klv(systemKey, repeated(8, 1)) +
            klv(elementKey(pictureTrack), heads[i % 4] + hex("00000101") + repeated(i * 37 % 211, 0x55));
        sounds.push_back(body.size() + unit.size());
        unit = unit + klv(elementKey(soundTracks[0]), repeated(24, 2)) +
               klv(elementKey(soundTracks[1]), repeated(4, 2));
        body.insert(body.end(), unit.begin(), unit.end());
    }
    File open(makeFile({{.kind = PartitionPack::Header, .body = body, .bodySID = 1},
                        {.kind = PartitionPack::Footer}})
                  .bytes);
    WalkedIndex index(open.essence.stream(), 0, 0, WalkedIndex::Learn::Pictures);
    ASSERT_TRUE(index.walk());
    EXPECT_TRUE(index.knowsElements() && index.knowsPictures());
    EXPECT_EQ(index.unitsWithoutPicture(), 0u);
    auto const table = index.table(2, {25, 1});
    ASSERT_EQ(table->size(), 3u);
    for (auto const& [start, segment] : *table) {
        EXPECT_EQ(start % 4, 0) << "at a key frame";
        EXPECT_LE(segment->indexEntryArray()->serializedSize(), 65535u);
        EXPECT_EQ(segment->sliceCount()->value(), 1);
        ASSERT_EQ(segment->deltaEntryCount(), 4u);
        EXPECT_EQ(segment->deltaEntry(1), IndexTables::DeltaEntry(-1, 0, 28));
        EXPECT_EQ(segment->deltaEntry(2), IndexTables::DeltaEntry(0, 1, 0));
        EXPECT_EQ(segment->deltaEntry(3), IndexTables::DeltaEntry(0, 1, 44));
    }
    IndexTables::EditUnitLocator const locator(*table, {body.size()});
    constexpr std::uint8_t flags[] = {0xC0, 0x22, 0x33, 0x33};
    constexpr std::int64_t shown[] = {0, 3, 1, 2};
    for (std::int64_t i = 0; i < 9000; ++i) {
        auto const number = static_cast<std::size_t>(i);
        ASSERT_EQ(locator.locate(i)->streamOffset, starts[number]);
        ASSERT_EQ(locator.locateElement(i, 2)->streamOffset, sounds[number]);
        ASSERT_EQ(locator.flags(i), flags[i % 4]);
        ASSERT_EQ(locator.keyFrame(i), i / 4 * 4);
        ASSERT_EQ(locator.displayPosition(i), i / 4 * 4 + shown[i % 4]);
        ASSERT_EQ(locator.positionAt(starts[number] + number % 28), i);
    }
    EXPECT_EQ(locator.positionAt(body.size() - 1), 8999);
    EXPECT_EQ(locator.positionAt(body.size()), std::nullopt);
}

TEST(WalkedIndex, TakesTheLastEditUnitBackWhenMoreOfItComes) {
    Bytes body;
    for (std::size_t i = 0; i < units; ++i)
        body = body + contentPackage(i);
    File open(makeFile({{.kind = PartitionPack::Header, .body = body, .bodySID = 1}}, {.randomIndex = false})
                  .bytes);
    WalkedIndex index(open.essence.stream(), 0, 0, WalkedIndex::Learn::Pictures);
    ASSERT_TRUE(index.walk());
    EXPECT_EQ(index.end(), std::int64_t{units});
    open.source.append(contentPackage(units));
    ASSERT_TRUE(open.essence.stream().refresh());
    ASSERT_TRUE(index.walk());
    EXPECT_EQ(index.end(), std::int64_t{units} + 1);
    EXPECT_TRUE(index.knowsElements());
    EXPECT_FALSE(index.knowsPictures()); // the pictures of these bodies are none
    EXPECT_EQ(index.unitsWithoutPicture(), units + 1);
    auto const table = index.table(2, {25, 1});
    IndexTables::EditUnitLocator const locator(*table);
    EXPECT_EQ(locator.locateElement(units, 2)->streamOffset,
              body.size() + klv(systemKey, repeated(12, 0)).size() +
                  klv(elementKey(pictureTrack), elementValue(units, pictureTrack)).size());
}

TEST(EssenceReader, FindsEditUnitsOfOneSizeWithoutAWalk) {
    Bytes body;
    for (std::uint64_t i = 0; i < 500; ++i)
        body = std::move(body) + klv(elementKey(pictureTrack), number(i)) + fill(20);
    File open(makeFile({{.kind = PartitionPack::Header,
                         .index = written(*makeSegment({.byteCount = 48})),
                         .body = body,
                         .indexSID = 2,
                         .bodySID = 1},
                        {.kind = PartitionPack::Footer}})
                  .bytes);
    EssenceUnit unit;
    for (std::uint64_t const position : {499u, 250u, 1u}) {
        ASSERT_TRUE(open.essence.read(static_cast<std::int64_t>(position), unit));
        EXPECT_EQ(unit.streamOffset, position * 48);
        EXPECT_EQ(joined(unit.package.elements[0].data), number(position));
    }
    EXPECT_EQ(open.essence.end(), 500);
    EXPECT_EQ(open.essence.seeker().walkedIndex().begin(), 499);
}

namespace {

/// Counts the bytes that are read.
class CountingSource : public GrowingSource {
public:
    using GrowingSource::GrowingSource;
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override {
        bytesRead += size;
        return GrowingSource::read(buffer, size);
    }
    std::uint64_t bytesRead = 0;
};

/// Edit units of 1000 bytes without an index; `change` alters their bytes.
Bytes constantFile(std::size_t count, std::function<void(Bytes&)> const& change = {}) {
    Bytes body;
    for (std::size_t i = 0; i < count; ++i) {
        Bytes const unit =
            klv(elementKey(pictureTrack), number(std::uint64_t{i}) + repeated(900, 1)) + fill(72);
        body.insert(body.end(), unit.begin(), unit.end());
    }
    if (change)
        change(body);
    return makeFile(
               {{.kind = PartitionPack::Header, .body = body, .bodySID = 1}, {.kind = PartitionPack::Footer}})
        .bytes;
}

} // namespace

TEST(EssenceReader, FindsEditUnitsOfOneSizeWithoutAnIndex) {
    CountingSource source(constantFile(20000));
    Reader2 reader(source, smallDictionary(), 65536);
    EssenceReader essence(reader, {.bodySID = 1});
    EssenceUnit unit;
    ASSERT_TRUE(essence.read(19998, unit));
    EXPECT_EQ(unit.streamOffset, 19998000u);
    EXPECT_EQ(joined(unit.package.elements[0].data.part(0, 8)), number(std::uint64_t{19998}));
    ASSERT_TRUE(essence.read(777, unit));
    EXPECT_EQ(joined(unit.package.elements[0].data.part(0, 8)), number(std::uint64_t{777}));
    EXPECT_EQ(essence.end(), 20000);
    EXPECT_FALSE(essence.read(20000, unit));
    EXPECT_LT(source.bytesRead, 2'000'000u);
}

TEST(EssenceReader, WalksWhereEditUnitsOnlySeemToHaveOneSize) {
    auto const insertAt = [](Bytes& body, std::size_t unit, Bytes const& bytes) {
        body.insert(body.begin() + static_cast<std::ptrdiff_t>(unit * 1000), bytes.begin(), bytes.end());
    };
    struct {
        std::function<void(Bytes&)> change;
        std::uint64_t atUnit700; // where it begins
        std::int64_t end;
    } const cases[] = {
        {[&](Bytes& body) { insertAt(body, 300, fill(50)); }, 700050, 2000},    // all that follow are shifted
        {[&](Bytes& body) { insertAt(body, 2000, essence(4)); }, 700000, 2001}, // a shorter one at the end
        {[&](Bytes& body) { // the fill behind one is in front of it
             std::rotate(body.begin() + 699928, body.begin() + 700928, body.begin() + 701000);
             std::rotate(body.begin() + 699928, body.begin() + 700000, body.begin() + 701000);
             insertAt(body, 700, fill(36));
             body.erase(body.begin() + 700964, body.begin() + 701036);
             insertAt(body, 701, {});
             Bytes const rest = fill(36);
             body.insert(body.begin() + 700964, rest.begin(), rest.end());
         },
         700036, 2000},
    };
    for (auto const& row : cases) {
        File file(constantFile(2000, row.change));
        EssenceUnit unit;
        ASSERT_TRUE(file.essence.read(700, unit));
        EXPECT_EQ(joined(unit.package.elements[0].data.part(0, 8)), number(std::uint64_t{700}));
        EXPECT_EQ(unit.streamOffset, row.atUnit700);
        EXPECT_EQ(file.essence.end(), row.end);
    }
}

namespace {

EssenceContainer clipContainer(SampleFormat samples, Templates::Rational<int> editRate) {
    EssenceContainer container{.bodySID = 1};
    container.tracks.push_back({.trackID = 2,
                                .trackNumber = 0x16010400,
                                .editRate = editRate,
                                .wrapping = Wrapping::Clip,
                                .samples = samples});
    return container;
}

/// A clip whose bytes tell where they stand.
Bytes clipValue(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(i ^ i >> 8);
    return bytes;
}

Bytes clipFile(Bytes const& value, Bytes const& index = {}) {
    return makeFile({{.kind = PartitionPack::Header, .index = index, .indexSID = index.empty() ? 0u : 2u},
                     {.kind = PartitionPack::Body, .body = klv(elementKey(0x16010400), value), .bodySID = 1},
                     {.kind = PartitionPack::Footer}})
        .bytes;
}

/// The sizes of all edit units, whose bytes are those of the clip in order.
std::vector<std::size_t> clipUnits(File& file, Bytes const& value) {
    std::vector<std::size_t> sizes;
    Bytes all;
    EssenceUnit unit;
    while (file.essence.next(unit)) {
        sizes.push_back(static_cast<std::size_t>(unit.package.length));
        all = std::move(all) + joined(unit.package.elements[0].data);
    }
    EXPECT_TRUE(sameBytes(all, Bytes(value.begin(), value.begin() + std::ssize(all))));
    EXPECT_EQ(file.essence.end(), std::ssize(sizes));
    return sizes;
}

using Sizes = std::vector<std::size_t>;

} // namespace

TEST(EssenceReader, CutsClipsOfSoundAtSamples) {
    Bytes const value = clipValue(8 * 8008 + 8 * 100);
    for (auto const& [rate, sizes] : std::vector<std::pair<Templates::Rational<int>, Sizes>>{
             {{30000, 1001}, {1602, 1601, 1602, 1601, 1602, 100}},
             {{60000, 1001}, {801, 801, 800, 801, 801, 801, 801, 800, 801, 801, 100}},
             {{25, 1}, {1920, 1920, 1920, 1920, 428}}}) {
        File file(clipFile(value), {}, clipContainer({8, {48000, 1}}, rate));
        Sizes samples;
        for (auto const size : clipUnits(file, value))
            samples.push_back(size / 8);
        EXPECT_EQ(samples, sizes) << rate.numerator;
    }
    // A track of single samples in larger edit units, and a cadence that begins elsewhere.
    File file(clipFile(value), {.editRate = {30000, 1001}}, clipContainer({8, {48000, 1}, 3}, {48000, 1}));
    EXPECT_EQ(clipUnits(file, value), (Sizes{1601 * 8, 1602 * 8, 1602 * 8, 1601 * 8, 1602 * 8, 800}));
    EssenceUnit unit;
    ASSERT_TRUE(file.essence.read(2, unit));
    EXPECT_EQ(unit.package.elements[0].data,
              DataIO::Chain(DataIO::Slice::viewOf(&value[3203 * 8], 1602 * 8)));
    EXPECT_EQ(file.essence.time(2), (Templates::Rational<std::int64_t>{2002, 30000}));
}

TEST(EssenceReader, CutsClipsByTheirIndex) {
    Bytes const value = clipValue(1000);
    auto const container = clipContainer({}, {25, 1});
    File constant(clipFile(value, written(*makeSegment({.byteCount = 300}))), {}, container);
    EXPECT_EQ(clipUnits(constant, value), (Sizes{300, 300, 300, 100}));
    for (std::uint64_t const first : {0u, 20u}) { // from the value, or from the key
        auto const entries = entriesAt({first, first + 10, first + 700, first + 2000});
        File variable(clipFile(value, written(*makeSegment({.duration = 4, .entries = entries}))), {},
                      container);
        EXPECT_EQ(clipUnits(variable, value), (Sizes{10, 690, 300}));
    }
    File backwards(
        clipFile(value, written(*makeSegment({.duration = farAway, .entries = entriesAt({0, 700, 10})}))), {},
        container);
    EXPECT_EQ(clipUnits(backwards, value), (Sizes{700})) << "where the second one ends is not known";
    File whole(clipFile(value), {}, container);
    EXPECT_EQ(clipUnits(whole, value), (Sizes{1000}));
    EXPECT_EQ(File(clipFile(value)).essence.wrapping(), Wrapping::Clip);

    // A label of edit units is not believed where one element holds several of them by the index.
    auto mislabelled = container;
    mislabelled.tracks.front().wrapping = Wrapping::Frame;
    File framed(clipFile(value, written(*makeSegment({.byteCount = 500}))), {}, mislabelled);
    EXPECT_EQ(clipUnits(framed, value), (Sizes{500, 500}));
    for (std::uint32_t const byteCount : {501u, 1000u, 0u})
        EXPECT_EQ(File(clipFile(value, written(*makeSegment({.byteCount = byteCount}))), {}, mislabelled)
                      .essence.wrapping(),
                  Wrapping::Frame)
            << byteCount;
}

TEST(EssenceReader, ReadsClipsThatAreCutIntoPackets) {
    Bytes const value = clipValue(1000);
    Bytes bodies[3];
    std::size_t const cuts[] = {0, 333, 334, 1000};
    for (std::size_t i = 0; i < 3; ++i)
        bodies[i] =
            klv(elementKey(0x16010400), Bytes(value.begin() + static_cast<std::ptrdiff_t>(cuts[i]),
                                              value.begin() + static_cast<std::ptrdiff_t>(cuts[i + 1])));
    auto const bytes = [&](Bytes const& index) {
        Part first{.kind = PartitionPack::Header, .index = index, .body = bodies[0], .bodySID = 1};
        first.indexSID = index.empty() ? 0 : 2;
        return makeFile({first,
                         {.kind = PartitionPack::Body, .body = bodies[1], .bodySID = 1, .bodyOffset = 353},
                         {.kind = PartitionPack::Body, .body = bodies[2], .bodySID = 1, .bodyOffset = 374},
                         {.kind = PartitionPack::Footer}})
            .bytes;
    };
    File sound(bytes({}), {}, clipContainer({2, {2500, 1}}, {25, 1}));
    EXPECT_EQ(clipUnits(sound, value), (Sizes{200, 200, 200, 200, 200}));
    File constant(bytes(written(*makeSegment({.byteCount = 300}))), {}, clipContainer({}, {25, 1}));
    EXPECT_EQ(clipUnits(constant, value), (Sizes{300, 300, 300, 100}));
    // Offsets in the stream: 313 bytes of the first packet, then its last 20 with the other packets' first
    // ones.
    auto const entries = entriesAt({20, 333, 404, 1000});
    File variable(bytes(written(*makeSegment({.duration = 4, .entries = entries}))), {},
                  clipContainer({}, {25, 1}));
    EXPECT_EQ(clipUnits(variable, value), (Sizes{313, 31, 596, 60}));
    auto container = clipContainer({}, {25, 1});
    container.tracks[0].duration = 40;
    File whole(bytes({}), {}, container);
    EXPECT_EQ(clipUnits(whole, value), (Sizes{1000}));
    container.tracks[0].duration = 3; // as many as packets: the label is wrong
    EXPECT_EQ(File(bytes({}), {}, container).essence.wrapping(), Wrapping::Frame);
}

TEST(EssenceReader, GivesWhatThereIsOfAClip) {
    Bytes const value = clipValue(1000);
    Bytes bytes = clipFile(value);
    bytes.resize(bytes.size() - 700); // amid the value
    auto const open = [&](SampleFormat samples) { return File(bytes, {}, clipContainer(samples, {25, 1})); };
    auto sound = open({2, {250, 1}});
    auto const sizes = clipUnits(sound, value);
    EXPECT_GT(sizes.size(), 10u);
    for (auto const size : sizes)
        EXPECT_EQ(size, 20u);
    auto whole = open({});
    EXPECT_EQ(clipUnits(whole, value), Sizes());
}

TEST(SequentialReader, GivesTheSameFromAPipe) {
    auto file = frameWrapped();
    file.parts[0].metadata = smallMetadata();
    file.parts[3].metadata = smallMetadata(2);
    auto const made = makeFile(file.parts, {.runIn = repeated(100, 0)});
    Pipe pipe(made.bytes);
    SequentialReader reader(pipe, smallDictionary());
    EXPECT_EQ(positions(file, [&](auto& unit) { return reader.next(unit); }), upTo(units));
    EXPECT_NE(reader.metadata(), nullptr);
    EXPECT_EQ(reader.partitionPack()->partitionKind(), PartitionPack::Footer);

    std::uint64_t const body = made.offsets[3] + 100;
    for (std::uint64_t cut = body; cut < made.offsets[4] + 100; cut += 13) {
        Bytes const bytes(made.bytes.begin(), made.bytes.begin() + static_cast<std::ptrdiff_t>(cut));
        Pipe cutPipe(bytes);
        SequentialReader cutReader(cutPipe, smallDictionary());
        File seekable(bytes);
        auto const expected = positions(file, [&](auto& unit) { return seekable.essence.next(unit); });
        EXPECT_EQ(positions(file, [&](auto& unit) { return cutReader.next(unit); }), expected) << cut;
    }
}

TEST(EssenceReader, SurvivesAnyBytes) {
    auto file = frameWrapped();
    file.parts[3].body.resize(contentPackage(30).size() + contentPackage(31).size());
    file.parts.erase(file.parts.begin() + 1, file.parts.begin() + 3);
    file.parts[1].bodyOffset = 0;
    file.parts.back().index = indexOf({0, contentPackage(30).size()});
    file.parts.back().indexSID = 2;
    survivesEveryFault(makeFile(file.parts).bytes, readEverything);
    survivesEveryFault(clipFile(clipValue(50), written(*makeSegment({.byteCount = 20}))), readEverything);
}

} // namespace MXF::Zelm::Test
