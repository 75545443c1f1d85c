#include "DataIO/Cuts.h"

#include "MXF/Zelm/DataIO/BitSliceReader.h"

namespace MXF::Zelm::Test {

using DataIO::BitSliceReader;
using DataIO::Chain;
using DataIO::SliceReader;

TEST(SliceReader, ReadsFieldsAcrossBorders) {
    auto const bytes = hex(R"(
      01  02 03  04 05 06  FF FF FF FE     # integers of 8, 16, 24 bits, one below 0
      80 81 82 83 84 85 86 87              # of 64 bits
      AA BB CC DD                          # a field
      11 22 33                             # a chain
    )");
    for (auto const& chain : cuts(bytes)) {
        SliceReader reader(chain);
        EXPECT_EQ(reader.readInteger<std::uint8_t>(), 1u);
        EXPECT_EQ(reader.peekInteger<std::uint32_t>(), 0x02030405u);
        EXPECT_EQ(reader.readInteger<std::uint16_t>(), 0x0203u);
        EXPECT_EQ((reader.readInteger<std::uint32_t, 3>()), 0x040506u);
        EXPECT_EQ(reader.readInteger<std::int32_t>(), -2);
        EXPECT_EQ(reader.readInteger<std::uint64_t>(), 0x8081828384858687u);
        EXPECT_EQ(reader.absoluteOffset(), 18u);
        auto const field = reader.readAligned(4);
        EXPECT_TRUE(sameBytes({field->begin(), field->end()}, hex("AA BB CC DD")));
        EXPECT_EQ(bytesOf(reader.readChain(2)), hex("11 22"));
        auto const message =
            thrownBy<Exceptions::InvalidLength>([&] { reader.readInteger<std::uint16_t>(); });
        EXPECT_EQ(message, "2 bytes wanted, 1 left");
        EXPECT_EQ(reader.readAligned(~0ull)->size(), 1u);
        EXPECT_TRUE(reader.endOfStream());
        EXPECT_EQ(reader.seek(19), 19u);
        EXPECT_EQ(reader.readInteger<std::uint16_t>(), 0xBBCCu);
        reader.skipExactly(1);
        EXPECT_THROW(reader.skipExactly(4), Exceptions::InvalidLength);
        EXPECT_THROW(reader.readChain(4), Exceptions::InvalidLength);
        unsigned char buffer[4] = {};
        EXPECT_THROW(reader.readExactly(buffer, 4), Exceptions::InvalidLength);
        EXPECT_EQ(reader.peek(buffer, 4), 3u);
        EXPECT_EQ(reader.read(buffer, 4), 3u);
        EXPECT_EQ(buffer[2], 0x33);
        EXPECT_EQ(reader.seek(~0ull), bytes.size());
    }
}

TEST(BitSliceReader, ReadsAnyWidthAnywhere) {
    Bytes const bytes = pattern(40);
    std::string bits; // the same as text
    for (auto const byte : bytes)
        for (int i = 7; i >= 0; --i)
            bits += (byte >> i & 1) != 0 ? '1' : '0';
    for (auto const& chain : cuts(bytes))
        for (unsigned start = 0; start < 16; ++start)
            for (unsigned width = 1; width <= 64; ++width) {
                BitSliceReader reader(chain);
                reader.skip(start);
                ASSERT_EQ(reader.peek(width), std::stoull(bits.substr(start, width), nullptr, 2));
                ASSERT_EQ(reader.read(width), std::stoull(bits.substr(start, width), nullptr, 2));
                ASSERT_EQ(reader.position(), start + width);
                reader.align();
                ASSERT_EQ(reader.position(), (start + width + 7) / 8 * 8);
                ASSERT_EQ(reader.read(3),
                          std::stoull(bits.substr((start + width + 7) / 8 * 8, 3), nullptr, 2));
            }
}

TEST(BitSliceReader, StopsAtTheEnd) {
    for (auto const& chain : cuts(hex("FF 81"))) {
        BitSliceReader reader(chain);
        EXPECT_EQ(reader.read(0), 0u);
        EXPECT_EQ(reader.read(9), 0x1FFu);
        EXPECT_EQ(reader.remaining(), 7u);
        EXPECT_EQ(reader.peek(9), 0x004u); // zeros follow
        EXPECT_EQ(thrownBy<Exceptions::InvalidLength>([&] { reader.read(8); }), "8 bits wanted, 7 left");
        EXPECT_THROW(reader.skip(~0ull), Exceptions::InvalidLength);
        EXPECT_THROW(reader.read(65), Exceptions::InvalidValue);
        EXPECT_FALSE(reader.readFlag());
        EXPECT_EQ(reader.read(6), 1u);
        reader.align();
        EXPECT_EQ(reader.remaining(), 0u);
        EXPECT_EQ(reader.peek(64), 0u);
    }
}

} // namespace MXF::Zelm::Test
