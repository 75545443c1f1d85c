#include "MXF/Zelm/Essence/MPEG/VideoCutter.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "support/MPEGStream.h"

namespace MXF::Zelm::Test {

using Essence::MPEG::VideoCutter;

namespace {

/// Slices of `piece` bytes, each in memory of its own.
std::shared_ptr<DataIO::SliceSource> sourceOf(Bytes const& bytes, std::size_t piece = SIZE_MAX) {
    DataIO::Chain chain;
    for (std::size_t at = 0; at < bytes.size(); at += std::min(piece, bytes.size() - at))
        chain.append(DataIO::Slice::copyOf(bytes.data() + at, std::min(piece, bytes.size() - at)));
    return std::make_shared<DataIO::BufferSliceSource>(chain);
}

struct Cut {
    std::vector<Bytes> units;
    std::string fault;
};

Cut cutAll(Bytes const& bytes, std::size_t piece = SIZE_MAX, std::uint64_t toSkip = 100) {
    Cut found;
    VideoCutter cutter(sourceOf(bytes, piece));
    if (!cutter.findStart(toSkip))
        return found;
    for (VideoCutter::Unit unit; cutter.next(unit);) {
        Bytes copy(static_cast<std::size_t>(unit.data.size()));
        unit.data.copyTo(copy.data(), copy.size());
        found.units.push_back(copy);
    }
    found.fault = cutter.fault();
    return found;
}

Bytes fieldPair(char first, char second, unsigned reference) {
    return mpegPicture(first, reference, 1) + mpegPicture(second, reference, 2);
}

} // namespace

TEST(VideoCutter, CutsFramesFieldsAndWhatBelongsToThem) {
    std::vector<Bytes> const units = {
        mpegUnit("SCI0") + repeated(50, 0), // stuffing belongs to the picture before
        mpegUnit("P3"),
        mpegUnit("OI2") + hex("00 00 01 B7"), // a sequence end too
        mpegSequence() + mpegGroup(false) + fieldPair('I', 'P', 1) + repeated(1, 0),
        fieldPair('B', 'B', 0),
        fieldPair('B', 'B', 2),
        mpegPicture('P', 5, 2), // a field of one frame and the other of another
        mpegPicture('P', 6, 1) + mpegPicture('P', 6, 2),
        mpegUnit("B1"),
    };
    for (std::size_t const piece :
         {SIZE_MAX, std::size_t{1}, std::size_t{2}, std::size_t{7}, std::size_t{64}}) {
        auto const found = cutAll(hex("00 00 01 B8 00 00 00 00 01") + concatenated(units), piece);
        ASSERT_EQ(found.units.size(), units.size()) << piece;
        for (std::size_t i = 0; i < units.size(); ++i)
            EXPECT_TRUE(sameBytes(found.units[i], units[i])) << i << " in pieces of " << piece;
        EXPECT_EQ(found.fault, "");
    }
}

TEST(VideoCutter, EndsBehindTheLastPictureThatIsWhole) {
    auto const whole = mpegUnit("SCI0") + mpegUnit("P1");
    auto const stream = whole + mpegUnit("P2");
    std::size_t const lastSlice = stream.size() - 44;
    for (std::size_t size = whole.size() + 4; size < stream.size(); ++size) {
        auto const found = cutAll(Bytes(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(size)));
        bool const endsInLastSlice = size > lastSlice + 3;
        EXPECT_EQ(found.units.size(), endsInLastSlice ? 3u : 2u) << size;
        EXPECT_EQ(found.fault, endsInLastSlice ? "" : "The video ends amid the picture that begins at 0xF0")
            << size;
    }
    EXPECT_EQ(cutAll(whole + mpegPicture('P', 2, 1)).units.size(), 2u) << "a field alone is no frame";
}

TEST(VideoCutter, PassesOverNoMoreThanItMay) {
    auto const stream = repeated(99, 0xAA) + mpegUnit("SCI0");
    EXPECT_EQ(cutAll(stream, 10, 99).units.size(), 1u);
    EXPECT_EQ(cutAll(stream, 10, 98).units.size(), 0u);
    EXPECT_EQ(cutAll(repeated(5000, 0), 10).units.size(), 0u);
    EXPECT_EQ(cutAll({}).units.size(), 0u);
}

} // namespace MXF::Zelm::Test
