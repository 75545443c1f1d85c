#include "DataIO/Cuts.h"

#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"

#include <random>

namespace MXF::Zelm::Test {

using DataIO::Block;
using DataIO::Chain;
using DataIO::Slice;
using DataIO::Memory::MemoryBlockFactory;

namespace {

Bytes bytesOf(Slice const& slice) { return {slice.begin(), slice.end()}; }

Bytes const ten{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

} // namespace

TEST(Block, IsAlignedWhereItIsLarge) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(Block::make(100'000)->bytes()) % Block::pageSize, 0u);
    EXPECT_EQ(Block::make(0)->size(), 0u);
    EXPECT_THROW(Block::make(~std::size_t{0} - 5), std::bad_alloc);
}

TEST(Slice, SharesTheMemoryOfWhomItsFactoryNames) {
    Bytes bytes = ten;
    Slice const copy = Slice::copyOf(bytes.data(), 10), view = Slice::viewOf(bytes.data(), 10);
    Slice const adopted = Slice::adopt(Bytes(ten));
    bytes[0] = 0xEE;
    EXPECT_TRUE(sameBytes(bytesOf(copy), ten));
    EXPECT_TRUE(sameBytes(bytesOf(adopted), ten));
    EXPECT_EQ(view.data(), bytes.data());

    auto block = Block::make(10);
    std::copy(ten.begin(), ten.end(), block->bytes());
    std::weak_ptr<Block> const watched = block;
    Slice rest(std::move(block), 2, 7);
    Slice const front = rest.splitFront(3);
    EXPECT_TRUE(sameBytes(bytesOf(front), hex("02 03 04")));
    EXPECT_TRUE(sameBytes(bytesOf(rest), hex("05 06 07 08")));
    EXPECT_TRUE(front.continuedBy(rest));
    EXPECT_FALSE(rest.continuedBy(front));
    EXPECT_FALSE(view.part(0, 3).continuedBy(view.part(3, 3))); // nobody's memory: may be two objects
    EXPECT_THROW(rest.part(2, 3), Exceptions::InvalidPosition);
    EXPECT_THROW(rest.part(5, ~std::size_t{0}), Exceptions::InvalidPosition);
    EXPECT_THROW(Slice(watched.lock(), 11, 0), Exceptions::InvalidPosition);
    Slice const moved = std::move(rest);
    EXPECT_FALSE(watched.expired()); // two slices refer to it
    EXPECT_EQ(moved.size(), 4u);
    EXPECT_TRUE(Slice().empty());
}

TEST(MemoryBlockFactory, UsesBlocksAgainOnceNobodyRefersToThem) {
    MemoryBlockFactory factory(1000);
    auto first = factory.block(400);
    auto const* const bytes = first->bytes();
    Slice slice(std::move(first), 100, 10);
    EXPECT_NE(factory.block(400)->bytes(), bytes); // the slice still refers to it
    slice = Slice();
    EXPECT_EQ(factory.block(300)->bytes(), bytes);
    EXPECT_EQ(factory.pooledBytes(), 800u);
    auto const small = factory.block(100); // neither 400 is wasted on it
    EXPECT_EQ(small->size(), 100u);
    EXPECT_GE(factory.block(5000)->size(), 5000u);
    EXPECT_EQ(factory.pooledBytes(), 900u);
    auto const large = factory.block(850); // both 400 make room
    EXPECT_EQ(factory.pooledBytes(), 950u);
    std::vector<std::shared_ptr<Block>> kept;
    for (std::size_t i = 0; i < 2 * MemoryBlockFactory::mostBlocks; ++i)
        kept.push_back(factory.block(1));
    EXPECT_EQ(factory.pooledBytes(), std::size_t{MemoryBlockFactory::mostBlocks});
}

TEST(Chain, IsTheSameHoweverItIsCut) {
    for (auto const& chain : cuts(ten)) {
        SCOPED_TRACE(chain.slices().size());
        EXPECT_EQ(chain.size(), 10u);
        EXPECT_TRUE(chain.equals(ten.data(), 10));
        EXPECT_FALSE(chain.equals(ten.data(), 9));
        EXPECT_FALSE(chain.equals(repeated(10, 0).data(), 10));
        EXPECT_TRUE(sameBytes(bytesOf(chain.contiguous()), ten));
        for (std::size_t from = 0; from <= 10; ++from)
            for (std::size_t size = 0; size <= 10 - from; ++size) {
                EXPECT_TRUE(sameBytes(bytesOf(chain.part(from, size)), slice(ten, from, size)));
                EXPECT_EQ(chain.part(from, size), cut(slice(ten, from, size), 2, 0));
            }
        unsigned char three[3] = {};
        EXPECT_EQ(chain.copyTo(three, 3, 8), 2u);
        EXPECT_EQ(chain.copyTo(three, 3, 11), 0u);
        EXPECT_THROW(chain.part(1, 10), Exceptions::InvalidPosition);
        EXPECT_THROW(chain.part(11, ~0ull), Exceptions::InvalidPosition);
        Chain rest = chain;
        EXPECT_THROW(rest.splitFront(11), Exceptions::InvalidPosition);
        EXPECT_TRUE(sameBytes(bytesOf(rest.splitFront(4)), slice(ten, 0, 4)));
        EXPECT_TRUE(sameBytes(bytesOf(rest), slice(ten, 4, 6)));
        EXPECT_EQ(rest.splitFrontUpTo(100).size(), 6u);
        EXPECT_TRUE(rest.empty());
        Bytes other = ten;
        other[9] = 0;
        for (auto const& another : cuts(other))
            EXPECT_FALSE(chain == another);
    }
    EXPECT_EQ(Chain(), Chain(Slice()));
    EXPECT_TRUE(Chain().contiguous().empty());
}

TEST(Chain, JoinsWhatStandsSideBySideInABlock) {
    Slice const whole = Slice::copyOf(ten.data(), 10);
    Chain chain = whole.part(0, 4);
    chain.append(whole.part(4, 0));
    chain.append(whole.part(4, 6));
    EXPECT_EQ(chain.slices().size(), 1u);
    chain.append(whole.part(0, 1));
    EXPECT_EQ(chain.slices().size(), 2u);
    EXPECT_EQ(chain.begin()->data(), whole.data()); // nothing was copied
    EXPECT_TRUE(sameBytes(bytesOf(chain), ten + hex("00")));
}

/// Chains are built, cut and copied at random beside plain bytes.
TEST(Chain, IsBuiltAtBothEnds) {
    std::mt19937 random(3);
    Bytes const bytes = pattern(300);
    Chain chain;
    Bytes expected;
    for (int i = 0; i < 20'000; ++i) {
        Bytes const piece = slice(bytes, random() % 200, random() % 40);
        switch (random() % 8) {
        case 0:
        case 1:
            chain.prepend(Slice::copyOf(piece.data(), piece.size()));
            expected = piece + expected;
            break;
        case 2:
            chain.append(cut(piece, 1, 1));
            expected = expected + piece;
            break;
        case 3:
            chain.prepend(cut(piece, 1, 1));
            expected = piece + expected;
            break;
        case 4: {
            Chain const copy = chain;
            chain = cut(piece, 2, 0);
            chain = i % 2 == 0 ? copy : Chain(copy);
            break;
        }
        case 5:
            if (expected.size() < 100) {
                chain.append(chain);
                expected = expected + expected;
            }
            break;
        default:
            auto const count = static_cast<std::size_t>(random() % 120);
            ASSERT_TRUE(sameBytes(bytesOf(chain.splitFrontUpTo(count)), slice(expected, 0, count)));
            expected = slice(expected, count, expected.size());
        }
        ASSERT_EQ(chain.size(), expected.size());
        ASSERT_TRUE(chain.equals(expected.data(), expected.size())) << i;
    }
}

} // namespace MXF::Zelm::Test
