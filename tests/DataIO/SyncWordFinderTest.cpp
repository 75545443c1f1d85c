#include "DataIO/Cuts.h"

#include "MXF/Zelm/DataIO/SyncWordFinder.h"

#include <random>

namespace MXF::Zelm::Test {

using DataIO::SyncWordFinder;

namespace {

using Positions = std::vector<std::uint64_t>;

Positions naively(Bytes const& bytes, Bytes const& word, std::uint64_t start) {
    Positions found;
    for (std::size_t i = 0; i + word.size() <= bytes.size(); ++i)
        if (std::equal(word.begin(), word.end(), bytes.begin() + static_cast<std::ptrdiff_t>(i)))
            found.push_back(start + i);
    return found;
}

/// Pushes `chain` in runs of up to `run` slices and gathers what is found after each.
Positions pushed(DataIO::Chain const& chain, Bytes const& word, std::uint64_t start, std::size_t run) {
    SyncWordFinder finder(word, start);
    Positions found;
    for (auto const* slice = chain.begin(); slice != chain.end();) {
        for (std::size_t i = 0; i < run && slice != chain.end(); ++i)
            finder.push(*slice++);
        while (auto const position = finder.next()) {
            EXPECT_EQ(finder.searchedTo(), *position + 1);
            found.push_back(*position);
        }
    }
    return found;
}

} // namespace

TEST(SyncWordFinder, FindsWhatANaiveSearchFinds) {
    std::mt19937 random(4);
    for (int round = 0; round < 500; ++round) {
        // Few values, so that words, parts of them and overlaps abound.
        auto const values = 1 + random() % 3;
        Bytes bytes(random() % 700), word(1 + random() % 8);
        for (auto* const filled : {&bytes, &word})
            for (auto& byte : *filled)
                byte = static_cast<unsigned char>(random() % values);
        if (round % 3 == 0)
            word = {0, 0, 1};
        auto const start = std::uint64_t{random()} << 20;
        auto const expected = naively(bytes, word, start);
        auto const cutAnywhere = cut(bytes, 1 + random() % 200, random() % 9);
        for (auto const& chain : {cuts(bytes)[0], cuts(bytes)[1], cuts(bytes)[2], cutAnywhere})
            ASSERT_EQ(pushed(chain, word, start, 1 + random() % 5), expected) << "round " << round;
    }
}

TEST(SyncWordFinder, GoesOnAndBeginsAnew) {
    SyncWordFinder finder(DataIO::startCodePrefix, 1000);
    EXPECT_FALSE(finder.next());
    finder.push(cut(hex("47 00 00"), 1, 0));
    EXPECT_FALSE(finder.next());
    EXPECT_EQ(finder.searchedTo(), 1001u);
    finder.push(cut(hex("01 B3 00 00"), 9, 0));
    EXPECT_EQ(finder.next(), 1001u);
    EXPECT_FALSE(finder.next());
    finder.reset(0); // the two zeros are forgotten
    finder.push(cut(hex("01 00 00 01"), 9, 0));
    EXPECT_EQ(finder.next(), 1u);
    EXPECT_THROW(SyncWordFinder(Bytes{}), Exceptions::InvalidValue);
    EXPECT_THROW(SyncWordFinder(Bytes(9)), Exceptions::InvalidValue);
}

} // namespace MXF::Zelm::Test
