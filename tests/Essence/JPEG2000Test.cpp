#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Essence/JPEG2000/CodestreamCutter.h"
#include "MXF/Zelm/Essence/JPEG2000/CodestreamHeader.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "support/Codestream.h"

#include <gtest/gtest.h>

namespace MXF::Zelm::Test {

using Essence::JPEG2000::CodestreamCutter;
using Essence::JPEG2000::CodestreamHeader;

namespace {

CodestreamCutter cutterOf(Bytes const& bytes) {
    return CodestreamCutter(std::make_shared<DataIO::BufferSliceSource>(bytes.data(), bytes.size()));
}

DataIO::Chain chainOf(Bytes const& bytes) { return DataIO::Slice::copyOf(bytes.data(), bytes.size()); }

} // namespace

TEST(JPEG2000, ReadsTheMainHeader) {
    auto const header = CodestreamHeader::read(chainOf(codestream(true)));
    EXPECT_EQ(header.width(), 16u);
    EXPECT_EQ(header.height(), 8u);
    ASSERT_EQ(header.components.size(), 3u);
    EXPECT_EQ(header.components[1], (Essence::JPEG2000::Component{10, false, 2, 1}));
    EXPECT_EQ(header.codingStyle, hex("00 00 00 01 01 01 03 03 00 01"));
    EXPECT_EQ(header.quantisation, hex("40 40 48 48 50"));
    EXPECT_TRUE(header.hasComponentTransform());
}

TEST(JPEG2000, RefusesHeadersThatCannotBe) {
    struct {
        std::size_t at;
        const char* bytes;
    } const faults[] = {
        {5, "2E"},          // SIZ: a length that does not fit the components
        {8, "00 00 00 00"}, // no width
        {24, "00 00 00 00"}, {40, "00 00"}, {40, "40 01"}, {42, "26"},
        {43, "00"},          {51, "FF D9"}, {53, "00 01"},
    };
    for (auto const& fault : faults) {
        Bytes bytes = codestream();
        Bytes const wrong = hex(fault.bytes);
        std::copy(wrong.begin(), wrong.end(), bytes.begin() + static_cast<std::ptrdiff_t>(fault.at));
        EXPECT_THROW(CodestreamHeader::read(chainOf(bytes)), Exceptions::BaseException) << fault.at;
    }
}

TEST(JPEG2000, CutsStreamsAndJp2Files) {
    Bytes const first = codestream(), second = codestream(true, hex("00 01"));
    auto cutter = cutterOf(first + jp2File(second) + first);
    CodestreamCutter::Unit unit;
    for (auto const& wanted : {first, second, first}) {
        ASSERT_TRUE(cutter.next(unit));
        EXPECT_TRUE(unit.data.equals(wanted.data(), wanted.size()));
    }
    EXPECT_EQ(unit.offset, first.size() + jp2File(second).size());
    EXPECT_EQ(cutter.colourSpace(), std::optional<std::uint32_t>(CodestreamCutter::sYCC));
    EXPECT_FALSE(cutter.next(unit));
    EXPECT_EQ(cutter.fault(), "");
}

TEST(JPEG2000, PassesOverPaddingBehindCodestreams) {
    Bytes const picture = codestream();
    for (const char* padding : {"00", "FF FF FF", "00 00 00 00 00", "FF FF FF FF FF FF FF FF FF 00 00 00"})
        for (auto const& next : {picture, jp2File(picture)}) {
            auto cutter = cutterOf(picture + hex(padding) + next + hex(padding));
            CodestreamCutter::Unit unit;
            for (int i = 0; i < 2; ++i) {
                ASSERT_TRUE(cutter.next(unit)) << padding;
                EXPECT_TRUE(unit.data.equals(picture.data(), picture.size()));
            }
            EXPECT_FALSE(cutter.next(unit));
            EXPECT_EQ(cutter.fault(), "");
        }
    CodestreamCutter::Unit unit;
    EXPECT_THROW(cutterOf(hex("00 00 00 00 00 00 00 00 00") + picture).next(unit), Exceptions::InvalidFormat)
        << "before the first one";
}

TEST(JPEG2000, TellsWhatIsCutOff) {
    Bytes const whole = jp2File(codestream());
    std::size_t const untilCodestream = whole.size() - codestream().size();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        auto cutter = cutterOf(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        CodestreamCutter::Unit unit;
        EXPECT_FALSE(cutter.next(unit)) << size;
        EXPECT_EQ(cutter.fault().empty(),
                  size == 0 || size == 12 || size == 32 || size == 77 || size == untilCodestream)
            << size << cutter.fault();
    }
    CodestreamCutter::Unit unit;
    EXPECT_THROW(cutterOf(codestream() + hex("00 00 00 00 00 00 00 00")).next(unit) &&
                     cutterOf(hex("12 34 56 78 00 01 02 03")).next(unit),
                 Exceptions::InvalidFormat);
    EXPECT_THROW(cutterOf(codestreamHeader() + hex("FF 90 00 0A 00 00 FF FF FF FF 00 01 FF 93")).next(unit),
                 Exceptions::InvalidFormat)
        << "a tile-part of 4 GiB";
    EXPECT_THROW(cutterOf(codestreamHeader() + hex("FF 90 00 0A 00 00 00 00 00 0D 00 01 FF 93")).next(unit),
                 Exceptions::InvalidFormat)
        << "a tile-part that ends in its header";
}

} // namespace MXF::Zelm::Test
