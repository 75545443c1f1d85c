#include "MXF/Zelm/Types/Timestamp.h"

#include "MXF/Zelm/Types/TextParsing.h"

#include <chrono>
#include <cstdio>

namespace MXF::Zelm::Types {

namespace {

constexpr bool within(int value, int smallest, int largest) { return value >= smallest && value <= largest; }

constexpr int millisecondsPerUnit = 4;

} // namespace

Timestamp::Timestamp(int year, int month, int day, int hour, int minute, int second, int millisecond) {
    if (!within(year, -32768, 32767) || !within(month, 1, 12) || !within(day, 1, 31) ||
        !within(hour, 0, 23) || !within(minute, 0, 59) || !within(second, 0, 59) ||
        !within(millisecond, 0, 999))
        throw Exceptions::InvalidValue("A field of the date and time is out of range");
    ByteCoders::codeInteger(static_cast<std::int16_t>(year), bytes_.data());
    int const rest[] = {month, day, hour, minute, second, millisecond / millisecondsPerUnit};
    for (std::size_t i = 0; i < std::size(rest); ++i)
        bytes_[2 + i] = static_cast<unsigned char>(rest[i]);
}

Timestamp Timestamp::now() {
    using namespace std::chrono;
    auto const time = time_point_cast<milliseconds>(system_clock::now());
    auto const midnight = floor<days>(time);
    year_month_day const date(midnight);
    hh_mm_ss const clock(time - midnight);
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            static_cast<int>(clock.hours().count()),
            static_cast<int>(clock.minutes().count()),
            static_cast<int>(clock.seconds().count()),
            static_cast<int>(clock.subseconds().count())};
}

std::u16string Timestamp::toString() const {
    if (!isKnown())
        return u"unknown";
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02u:%02u:%02u.%03uZ", year(), month(), day(), hour(),
                  minute(), second(), millisecond());
    return Platform::toUtf16(text);
}

Timestamp Timestamp::fromText(std::u16string_view text) {
    if (text == u"unknown")
        return {};
    TextCursor cursor(text, "Timestamp");
    auto const number = [&cursor](std::uint64_t largest) { return static_cast<int>(cursor.number(largest)); };
    int const year = number(32767);
    cursor.require(u"-");
    int const month = number(12);
    cursor.require(u"-");
    int const day = number(31);
    int hour = 0, minute = 0, second = 0, millisecond = 0;
    if (cursor.take(u"T") || cursor.take(u" ")) {
        hour = number(23);
        cursor.require(u":");
        minute = number(59);
        if (cursor.take(u":"))
            second = number(59);
        if (cursor.take(u"."))
            for (int const weight : {100, 10, 1})
                if (cursor.peek() >= u'0' && cursor.peek() <= u'9')
                    millisecond += weight * (cursor.next() - u'0');
    }
    cursor.take(u"Z");
    cursor.requireEnd();
    if (month == 0 || day == 0)
        cursor.fail();
    return {year, month, day, hour, minute, second, millisecond};
}

} // namespace MXF::Zelm::Types
