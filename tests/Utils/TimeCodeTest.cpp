#include "MXF/Zelm/Utils/TimeCodeExtended.h"

#include "support/Bytes.h"

#include <limits>

namespace MXF::Zelm::Test {

using Utils::PackedTimeCode;
using Utils::TimeAddress;
using Utils::TimeBase;
using Utils::TimeCode;
using Utils::TimeCodeExtended;

namespace {

TimeCode at(std::u16string_view text, unsigned framesPerSecond = 25) {
    return TimeCode::fromText(text, framesPerSecond);
}

TimeCodeExtended unpacked(std::string_view text, unsigned framesPerSecond = 25) {
    return TimeCodeExtended::fromPacked(hex(text), framesPerSecond);
}

Bytes packed(TimeCode const& timecode) {
    PackedTimeCode const bytes = timecode.packed();
    return {bytes.begin(), bytes.end()};
}

/// Counts a day number by number, `skipped` of them left out, and compares both directions.
void countDay(TimeBase const& base, unsigned skipped) {
    std::int64_t frame = 0, wrong = 0;
    for (unsigned h = 0; h < 24; ++h)
        for (unsigned m = 0; m < 60; ++m)
            for (unsigned s = 0; s < 60; ++s)
                for (unsigned f = 0; f < base.framesPerSecond(); ++f) {
                    TimeAddress const address{h, m, s, f};
                    if (s == 0 && f < skipped && m != 0 && m != 10 && m != 20 && m != 30 && m != 40 &&
                        m != 50) {
                        wrong += TimeCode::isValid(base, address);
                        continue;
                    }
                    wrong += TimeCode(base, frame).address() != address;
                    wrong += TimeCode(base, address).frameCount() != frame;
                    ++frame;
                }
    EXPECT_EQ(wrong, 0) << base.framesPerSecond() << (base.dropFrame() ? " drop" : "");
    EXPECT_EQ(base.framesPerDay(), frame);
}

} // namespace

TEST(TimeCode, AgreesWithACountedDay) {
    for (unsigned const base : {24u, 25u, 30u, 50u, 60u, 120u})
        countDay(TimeBase(base), 0);
    countDay(TimeBase(30, true), 2);
    countDay(TimeBase(60, true), 4);
}

TEST(TimeCode, TextAndFrames) {
    struct Row {
        unsigned base;
        std::int64_t frame;
        std::u16string text;
    };
    for (Row const& row :
         {Row{25, 2157750, u"23:58:30:00"}, Row{30, 1799, u"00:00:59;29"}, Row{30, 1800, u"00:01:00;02"},
          Row{30, 17982, u"00:10:00;00"}, Row{30, 1357534, u"12:34:56;12"}, Row{60, 3600, u"00:01:00;04"},
          Row{60, 5178815, u"23:59:59;59"}, Row{120, 119, u"00:00:00:119"}, Row{120, 5, u"00:00:00:05"}}) {
        TimeCode const timecode(TimeBase(row.base, row.text[8] == u';'), row.frame);
        EXPECT_EQ(timecode.toString(), row.text);
        EXPECT_EQ(at(row.text, row.base), timecode);
    }
}

TEST(TimeCode, TextFaultsAreNamed) {
    for (auto const* const text :
         {u"", u"10:00:00", u"10:00:00:0", u"1:00:00:000", u"10:00:00.00", u"10;00:00:00", u"1a:00:00:00",
          u"-1:00:00:00", u"10:00:00:000000", u"10:00:00:0:", u"1/:00:00:00"})
        thrownBy<Exceptions::InvalidFormat>([&] { at(text); });
    EXPECT_EQ(thrownBy<Exceptions::InvalidFormat>([] { at(u"10:00"); }),
              "'10:00' is no timecode: hh:mm:ss:ff or, for drop frame, hh:mm:ss;ff is expected");
    auto const fault = [](std::u16string_view text, unsigned base) {
        return thrownBy<Exceptions::InvalidValue>([&] { at(text, base); });
    };
    EXPECT_EQ(fault(u"24:00:00:00", 25),
              "There is no timecode 24:00:00:00 at 25 frames a second: hours go to 23");
    EXPECT_TRUE(fault(u"23:60:00:00", 25).ends_with("minutes go to 59"));
    EXPECT_TRUE(fault(u"23:00:60:00", 25).ends_with("seconds go to 59"));
    EXPECT_TRUE(fault(u"23:00:00:25", 25).ends_with("frames go to 24"));
    EXPECT_TRUE(fault(u"00:01:00;01", 30).ends_with("the number is dropped"));
    EXPECT_EQ(fault(u"10:00:00;00", 25),
              "There is no drop-frame timecode of 25 frames a second, only of multiples of 30");
    fault(u"10:00:00:00", 0);
    fault(u"10:00:00:00", 65536);
}

TEST(TimeCode, MovesAndWrapsAtMidnight) {
    auto timecode = at(u"23:59:59;29", 30);
    EXPECT_EQ(++timecode, at(u"00:00:00;00", 30));
    EXPECT_EQ(--timecode, at(u"23:59:59;29", 30));
    EXPECT_EQ(at(u"00:00:59;29", 30) + 1, at(u"00:01:00;02", 30));
    EXPECT_EQ(at(u"10:00:00:00") + 24 * 3600 * 25, at(u"10:00:00:00"));
    EXPECT_EQ(TimeCode(TimeBase(25), -1), at(u"23:59:59:24"));
    constexpr auto most = std::numeric_limits<std::int64_t>::max(),
                   least = std::numeric_limits<std::int64_t>::min();
    auto const start = at(u"12:00:00:00");
    EXPECT_EQ(start + most - most, start);
    EXPECT_EQ(start - least + least, start);

    EXPECT_EQ(at(u"01:00:00:00") - at(u"23:00:00:00"), at(u"02:00:00:00"));
    EXPECT_EQ(at(u"23:00:00:00") + at(u"02:00:00:01"), at(u"01:00:00:01"));
    EXPECT_EQ(
        thrownBy<Exceptions::InvalidValue>([] { at(u"10:00:00:00") + at(u"10:00:00:00", 30); }),
        "Timecodes of different bases have no sum and no difference: 10:00:00:00 at 25 frames a second, "
        "10:00:00:00 at 30 frames a second");
}

TEST(TimeCode, ComparesWithinOneBaseAndUndefinedWithUndefined) {
    EXPECT_LT(at(u"09:59:59:24"), at(u"10:00:00:00"));
    EXPECT_NE(at(u"10:00:00:00", 30), at(u"10:00:00;00", 30));
    EXPECT_TRUE(at(u"10:00:00:00", 30) <=> at(u"10:00:00:00", 25) == std::partial_ordering::unordered);
    TimeCode const undefined;
    auto const defined = at(u"00:00:00:00");
    EXPECT_EQ(undefined.toString(), u"--:--:--:--");
    EXPECT_EQ(at(undefined.toString()), undefined);
    EXPECT_TRUE(undefined <=> defined == std::partial_ordering::unordered);
    EXPECT_NE(undefined, defined);
    for (auto const& result : {undefined + 1, undefined - 1, undefined + defined, defined - undefined})
        EXPECT_EQ(result, undefined);
    thrownBy<Exceptions::InvalidValue>([&] { undefined.frameCount(); });
    thrownBy<Exceptions::InvalidValue>([&] { undefined.packed(); });
}

TEST(TimeBase, OfEditRates) {
    EXPECT_EQ(TimeBase::ofEditRate({24000, 1001}), TimeBase(24));
    EXPECT_EQ(TimeBase::ofEditRate({30000, 1001}), TimeBase(30, true));
    EXPECT_EQ(TimeBase::ofEditRate({30000, 1001}, false), TimeBase(30));
    EXPECT_EQ(TimeBase::ofEditRate({60, 1}), TimeBase(60));
    EXPECT_EQ(TimeBase::ofEditRate({120000, 1001}), TimeBase(120, true));
    for (Templates::Rational<int> const rate :
         {Templates::Rational<int>{25, 0}, {-25, 1}, {1, 3}, {96000, 1}})
        thrownBy<Exceptions::InvalidValue>([&] { TimeBase::ofEditRate(rate); });
}

TEST(TimeBase, FramesAndSeconds) {
    using Seconds = Templates::Rational<std::int64_t>;
    auto const seconds = Utils::framesToSeconds(-30, {30000, 1001});
    EXPECT_EQ(seconds.numerator, -1001);
    EXPECT_EQ(seconds.denominator, 1000);
    EXPECT_EQ(Utils::framesToSeconds(250, {50, 2}), (Seconds{10, 1}));
    EXPECT_EQ(Utils::secondsToFrames({1001, 1000}, {30000, 1001}), 30);
    EXPECT_EQ(Utils::secondsToFrames({-1, 1}, {30000, 1001}), -30);
    constexpr auto least = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(Utils::secondsToFrames({least, 1}, {1, 1}), least);
    thrownBy<Exceptions::InvalidValue>([] { Utils::framesToSeconds(least, {25, 7}); });
    thrownBy<Exceptions::InvalidValue>([] { Utils::secondsToFrames({1, 0}, {25, 1}); });
}

TEST(TimeCodeExtended, PackedTimesOfRealFiles) {
    EXPECT_EQ(unpacked("00 30 58 23 00 00 00 00"), TimeCodeExtended(at(u"23:58:30:00")));
    EXPECT_TRUE(sameBytes(packed(at(u"23:58:30:00") + 1), hex("01 30 58 23 00 00 00 00")));
    EXPECT_TRUE(sameBytes(packed(at(u"10:59:59:24")), hex("24 59 59 10 00 00 00 00")));
}

TEST(TimeCodeExtended, FlagsAndGroupsStandWhereTheSystemHasThem) {
    auto timecode = unpacked("C2 00 11 50 12 34 56 78", 30);
    EXPECT_EQ(timecode.toString(), u"10:11:00;02");
    EXPECT_TRUE(timecode.colourFrame());
    EXPECT_EQ(timecode.binaryGroupFlags(), 2u);
    for (unsigned group = 1; group <= 8; ++group)
        EXPECT_EQ(timecode.binaryGroup(group), group);
    struct Row {
        unsigned base, flags;
        bool mark;
        const char* bytes;
    };
    for (Row const& row :
         {Row{30, 1, false, "00 00 80 00 00 00 00 0F"}, Row{30, 4, false, "00 00 00 80 00 00 00 0F"},
          Row{24, 2, true, "00 80 00 40 00 00 00 0F"}, Row{25, 1, false, "00 80 00 00 00 00 00 0F"},
          Row{25, 4, false, "00 00 80 00 00 00 00 0F"}, Row{25, 2, true, "00 00 00 C0 00 00 00 0F"}}) {
        TimeCodeExtended made(TimeBase(row.base), 0);
        made.binaryGroupFlags(row.flags);
        made.fieldMark(row.mark);
        made.binaryGroup(8, 15);
        EXPECT_TRUE(sameBytes(packed(made), hex(row.bytes)));
        EXPECT_EQ(unpacked(row.bytes, row.base), made);
        EXPECT_NE(made, TimeCodeExtended(TimeCode(made)));
    }
    thrownBy<Exceptions::InvalidValue>([&] { timecode.binaryGroupFlags(8); });
    thrownBy<Exceptions::InvalidValue>([&] { timecode.binaryGroup(9, 0); });
    thrownBy<Exceptions::InvalidValue>([&] { timecode.binaryGroup(1, 16); });
}

TEST(TimeCodeExtended, FramesAbove30ShareNumbers) {
    EXPECT_TRUE(sameBytes(packed(at(u"01:02:03:49", 50)), hex("24 03 02 81 00 00 00 00")));
    EXPECT_TRUE(sameBytes(packed(at(u"01:02:03;59", 60)), hex("69 83 02 01 00 00 00 00")));
    for (unsigned const base : {48u, 50u, 60u})
        for (unsigned frame = 0; frame < base; ++frame) {
            TimeCodeExtended const timecode(TimeBase(base), frame);
            EXPECT_EQ(timecode.fieldMark(), frame % 2 == 1);
            EXPECT_EQ(TimeCodeExtended::fromPacked(timecode.packed(), base), timecode);
        }
    // Three and four frames with one number are read as the first of each half.
    for (auto const& [base, read] : {std::pair{72u, std::vector{0, 0, 2}}, {120u, {0, 0, 2, 2}}})
        for (std::size_t frame = 0; frame < read.size(); ++frame) {
            TimeCode const timecode(TimeBase(base), static_cast<std::int64_t>(frame));
            EXPECT_EQ(TimeCodeExtended::fromPacked(timecode.packed(), base).frameCount(), read[frame]);
        }
}

TEST(TimeCodeExtended, BytesThatAreNoTimeAreUndefined) {
    for (auto const* const bytes : {"FF FF FF FF", "0A 00 00 00", "00 0A 00 00", "00 00 1A 00", "00 00 00 0A",
                                    "25 00 00 00", "00 60 00 00", "00 00 60 00", "00 00 00 24"})
        EXPECT_FALSE(unpacked(bytes).isDefined()) << bytes;
    EXPECT_FALSE(unpacked("40 00 01 00", 30).isDefined()) << "a dropped number";
    EXPECT_EQ(unpacked("40 00 01 00", 25).toString(), u"00:01:00:00") << "nothing is dropped at 25";
    EXPECT_EQ(unpacked("FF FF FF FF AB 00 00 00").binaryGroup(1), 0xAu);
    thrownBy<Exceptions::InvalidLength>([] { unpacked("00 00 00"); });
    thrownBy<Exceptions::InvalidValue>([] { unpacked("00 00 00 00", 0); });
    survivesEveryFault(hex("C2 00 11 50 12 34 56 78"), [](Bytes const& bytes) {
        for (unsigned const base : {24u, 25u, 30u, 60u, 65535u})
            TimeCodeExtended::fromPacked(bytes, base).toString();
    });
}

} // namespace MXF::Zelm::Test
