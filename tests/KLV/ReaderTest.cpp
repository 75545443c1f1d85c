#include "MXF/Zelm/KLV/Reader.h"

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

using namespace KLV::Literals;

namespace {

constexpr KLV::Key pictureKey = "060E2B34.01020101.0D010301.15010500"_key;
Bytes const key(pictureKey.rawBuffer(), pictureKey.rawBuffer() + 16);

/// A reader over some bytes, of which the first `start` are passed over.
struct Walk {
    explicit Walk(Bytes bytes, std::uint64_t start = 0) : source(std::move(bytes)), reader(source) {
        source.seek(start);
    }
    Templates::auto_ptr<KLV::Packet> next(std::uint64_t maximumToSkip = 0) {
        return reader.nextKLV(skipped, maximumToSkip);
    }
    DataIO::Memory::MemoryDataSource source;
    KLV::Reader reader;
    std::uint64_t skipped = 99;
};

} // namespace

TEST(KLVReader, WalksPackets) {
    Walk walk(klv(pictureKey, {1, 2, 3}) + fill(20) + klv(pictureKey, {}, 9), 0);
    EXPECT_EQ(&walk.reader.source(), &walk.source);
    auto packet = walk.next();
    EXPECT_EQ(walk.skipped, 0u);
    EXPECT_EQ(packet->key(), pictureKey);
    EXPECT_EQ(packet->berLength(), 4);
    EXPECT_EQ(packet->length(), 3u);
    EXPECT_EQ(packet->klvLength(), 23u);
    EXPECT_EQ(packet->keyAbsoluteOffset(), 0u);
    EXPECT_EQ(packet->valueAbsoluteOffset(), 20u);
    packet->value().discard();
    packet = walk.next();
    EXPECT_TRUE(KLV::isFillItem(packet->key())); // a packet like any other
    EXPECT_EQ(packet->keyAbsoluteOffset(), 23u);
    packet = walk.next();
    EXPECT_EQ(packet->berLength(), 9);
    EXPECT_EQ(packet->klvLength(), 25u);
    EXPECT_EQ(thrownBy([&] { walk.next(); }), "Not enough data");
}

TEST(KLVReader, PassesOverStrayBytesWithinItsLimit) {
    struct {
        Bytes stray;
        std::uint64_t skipped;
    } const rows[] = {
        {{}, 0},
        {hex("00 01 02"), 3},
        {hex("06"), 1},
        {hex("06 0E 2B 34"), 4},
        {hex("06 0E 2B 34 04 01 01 01"), 8}, // category 04: a label, no key
        {hex("06 0E 2B 34 FF"), 5},
        {hex("06 06 0E 06 0E 2B"), 6},
    };
    for (auto const& row : rows) {
        Bytes const bytes = hex("EE EE") + row.stray + klv(pictureKey, {7});
        Walk found(bytes, 2);
        auto const packet = found.next(row.skipped);
        EXPECT_EQ(found.skipped, row.skipped);
        EXPECT_EQ(packet->keyAbsoluteOffset(), 2 + row.skipped);
        if (row.skipped != 0) {
            Walk refused(bytes, 2);
            EXPECT_TRUE(thrownBy([&] {
                            refused.next(row.skipped - 1);
                        }).starts_with("Exceeded maximum bytes to skip before finding a key."));
        }
    }
    for (unsigned char category = 0; category < 4; ++category) {
        Bytes bytes = klv(pictureKey, {});
        bytes[4] = category;
        EXPECT_EQ(Walk(bytes).next()->key()[4], category);
    }
}

TEST(KLVReader, SaysWhereItSearched) {
    Walk walk(repeated(0x1A0, 0xEE), 0x100);
    EXPECT_EQ(thrownBy([&] { walk.next(0x1F); }),
              "Exceeded maximum bytes to skip before finding a key. Started to search at 0x100 Skipped 0x20 "
              "current position: 0x125");
    Walk other(repeated(40, 0xEE));
    EXPECT_EQ(thrownBy([&] { other.reader.peekNextKey(other.skipped, 0); }),
              "Exceeded maximum bytes to skip before finding a key. Started to search at 0x0 Skipped 0x1 "
              "current position: 0x6");
    EXPECT_EQ(thrownBy([&] { Walk(repeated(40, 0xEE)).next(~0ull); }), "Not enough data");
}

TEST(KLVReader, RefusesWhatIsCutOrHasNoLength) {
    Bytes const whole = klv(pictureKey, {});
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(thrownBy([&] {
                      Walk({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}).next();
                  }),
                  "Not enough data");
    struct {
        Bytes field;
        const char* message;
    } const rows[] = {
        {hex("80"), "Invalid BER size: 0x80"},
        {hex("FF"), "Invalid BER size: 0xFF"},
        {hex("89 00 00 00 00 00 00 00 00 00"), "Invalid BER size: 0x89"}, // nine bytes of length
        {hex("FE"), "Invalid BER size: 0xFE"},
    };
    for (auto const& row : rows) {
        Walk walk(key + row.field);
        EXPECT_EQ(thrownBy([&] { walk.next(); }), row.message);
    }
}

TEST(KLVReader, DecodesLengths) {
    struct {
        Bytes field;
        unsigned char berLength;
        std::uint64_t length, klvLength;
    } const rows[] = {
        {hex("00"), 1, 0, 17},
        {hex("7F"), 1, 127, 144},
        {hex("81 05"), 2, 5, 23},
        {hex("83 00 01 00"), 4, 256, 276},
        {hex("87 01 00 00 00 00 00 00"), 8, 1ull << 48, (1ull << 48) + 24},
        // The packet would end beyond all offsets: it is as long as can be said.
        {hex("88 FF FF FF FF FF FF FF FF"), 9, ~0ull, ~0ull},
        {hex("88 FF FF FF FF FF FF FF E7"), 9, ~0ull - 24, ~0ull},
    };
    for (auto const& row : rows) {
        Walk walk(key + row.field);
        auto const packet = walk.next();
        EXPECT_EQ(packet->berLength(), row.berLength);
        EXPECT_EQ(packet->length(), row.length);
        EXPECT_EQ(packet->klvLength(), row.klvLength);
    }
}

TEST(KLVReader, RemembersAPeekedKeyUntilTheSourceIsMoved) {
    struct CountingSource : DataIO::Memory::MemoryDataSource {
        using MemoryDataSource::MemoryDataSource;
        std::uint64_t read(unsigned char* buffer, std::uint64_t size) override {
            ++reads;
            return MemoryDataSource::read(buffer, size);
        }
        int reads = 0;
    } source(hex("AA BB") + klv(pictureKey, {1}) + klv(KLV::fillItemKey(), {}));
    KLV::Reader reader(source);
    std::uint64_t skipped = 0;
    EXPECT_EQ(reader.peekNextKey(skipped, 5), pictureKey);
    EXPECT_EQ(skipped, 2u);
    int const reads = source.reads;
    EXPECT_EQ(reader.peekNextKey(skipped, 0), pictureKey);
    EXPECT_EQ(skipped, 0u);
    EXPECT_EQ(source.reads, reads);
    EXPECT_EQ(reader.nextKLV(skipped, 0)->keyAbsoluteOffset(), 2u);
    EXPECT_EQ(skipped, 0u);

    source.seek(2);
    reader.peekNextKey(skipped, 0);
    source.skip(1); // forgets it: the search goes on amid the length field
    EXPECT_TRUE(KLV::isFillItem(reader.nextKLV(skipped, 10)->key()));
    EXPECT_EQ(skipped, 4u);
    source.seek(2);
    EXPECT_EQ(reader.nextKLV(skipped, 0)->key(), pictureKey);
}

TEST(Value, IsABoundedView) {
    DataIO::Memory::MemoryDataSource source(Bytes{0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    source.seek(2);
    KLV::Value value(source, 5);
    EXPECT_EQ(value.totalLength(), 5u);
    EXPECT_EQ(value.absoluteOffset(), 2u);
    unsigned char buffer[100];
    EXPECT_EQ(value.read(buffer, 2), 2u);
    EXPECT_EQ(value.remaining(), 3u);
    EXPECT_EQ(value.skip(100), 3u);
    EXPECT_TRUE(value.endOfStream());
    EXPECT_EQ(value.read(buffer, 100), 0u);
    EXPECT_EQ(source.absoluteOffset(), 7u);
    source.seek(9); // past the value
    EXPECT_EQ(value.remaining(), 0u);
    source.seek(0); // before it
    EXPECT_EQ(value.remaining(), 7u);
    source.seek(3);
    value.discard();
    EXPECT_EQ(source.absoluteOffset(), 7u);

    source.seek(2);
    KLV::Value endless(source, ~0ull);
    EXPECT_EQ(endless.remaining(), ~0ull);
    source.seek(0);
    EXPECT_EQ(endless.remaining(), ~0ull);
}

TEST(Value, ReadsExactlyOrSaysWhatWasThere) {
    DataIO::Memory::MemoryDataSource source(Bytes{0, 1, 2, 3});
    unsigned char buffer[8];
    KLV::Value(source, 2).readValue(buffer, 2);
    source.seek(0);
    for (std::uint64_t const length : {3ull, 100ull}) { // the value ends, the source ends
        source.seek(0);
        try {
            KLV::Value(source, length).readValue(buffer, 8);
            ADD_FAILURE();
        } catch (Exceptions::InvalidLength const& failure) {
            EXPECT_EQ(failure.message(), "Invalid data size in Value");
            EXPECT_EQ(failure.bytes().size(), std::min<std::uint64_t>(length, 4));
            EXPECT_EQ(failure.bytes()[2], 2);
        }
    }
}

TEST(Value, TrustsNoLength) {
    Bytes const bytes = repeated(200'000, 5);
    DataIO::Memory::MemoryDataSource source(bytes);
    EXPECT_EQ(KLV::Value(source, 150'000).readRemaining().size(), 150'000u);
    source.seek(0);
    KLV::Value lying(source, 1ull << 60);
    EXPECT_EQ(thrownBy<Exceptions::InvalidLength>([&] { lying.readRemaining(); }),
              "Invalid data size in Value");

    source.seek(10);
    KLV::Value value(source, 40);
    value.requireItems(3, 12);
    value.requireItems(0, 0);
    value.requireItems(0, 100);
    EXPECT_EQ(thrownBy<Exceptions::InvalidLength>([&] { value.requireItems(4, 12); }),
              "4 entries of 12 bytes need 48, 40 left");
    EXPECT_EQ(thrownBy<Exceptions::InvalidLength>([&] { value.requireItems(1, 0); }),
              "1 entries of 0 bytes have no size, 40 left");
    EXPECT_EQ(thrownBy<Exceptions::InvalidLength>([&] { value.requireItems(~0ull, 2); }),
              "18446744073709551615 entries of 2 bytes need more than any file holds, 40 left");
}

} // namespace MXF::Zelm::Test
