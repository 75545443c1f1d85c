#include "MXF/Zelm/Utils/TimeCode.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Utils/PackedForm.h"

#include <algorithm>
#include <cstdio>

namespace MXF::Zelm::Utils {

namespace {

constexpr std::u16string_view undefinedText = u"--:--:--:--";

std::int64_t wrapped(TimeBase const& base, std::int64_t frame) {
    std::int64_t const rest = frame % base.framesPerDay();
    return rest < 0 ? rest + base.framesPerDay() : rest;
}

/// The place of a frame's number among all numbers, the dropped ones counted.
std::int64_t withDropped(TimeBase const& base, std::int64_t frame) {
    std::int64_t const dropped = base.droppedPerMinute();
    if (dropped == 0)
        return frame;
    std::int64_t const perMinute = std::int64_t{base.framesPerSecond()} * 60 - dropped;
    std::int64_t const perTenMinutes = perMinute * 10 + dropped; // the first of them drops none
    std::int64_t const tens = frame / perTenMinutes;
    std::int64_t const rest = frame % perTenMinutes;
    std::int64_t const minutes = rest < dropped ? 0 : (rest - dropped) / perMinute;
    return frame + dropped * (tens * 9 + minutes);
}

bool isDropped(TimeBase const& base, TimeAddress const& address) {
    return address.seconds == 0 && address.minutes % 10 != 0 && address.frames < base.droppedPerMinute();
}

/// Why no frame has this number; empty when one has.
std::string faultOf(TimeBase const& base, TimeAddress const& address) {
    if (address.hours > 23)
        return "hours go to 23";
    if (address.minutes > 59)
        return "minutes go to 59";
    if (address.seconds > 59)
        return "seconds go to 59";
    if (address.frames >= base.framesPerSecond())
        return "frames go to " + std::to_string(base.framesPerSecond() - 1);
    return isDropped(base, address) ? "the number is dropped" : "";
}

std::string textOf(TimeAddress const& address, bool dropFrame) {
    char text[64];
    std::snprintf(text, sizeof text, "%02u:%02u:%02u%c%02u", address.hours, address.minutes, address.seconds,
                  dropFrame ? ';' : ':', address.frames);
    return text;
}

/// For messages.
std::string described(TimeBase const& base, TimeAddress const& address) {
    return textOf(address, base.dropFrame()) + " at " + std::to_string(base.framesPerSecond()) +
           " frames a second";
}

std::int64_t frameOf(TimeBase const& base, TimeAddress const& address) {
    if (std::string const fault = faultOf(base, address); !fault.empty())
        throw Exceptions::InvalidValue("There is no timecode " + described(base, address) + ": " + fault);
    std::int64_t const minutes = address.hours * 60 + address.minutes;
    return (minutes * 60 + address.seconds) * base.framesPerSecond() + address.frames -
           base.droppedPerMinute() * (minutes - minutes / 10);
}

/// "NN:NN:NN", ':' or ';', and two to five digits.
bool isTimeCodeText(std::u16string_view text) {
    if (text.size() < 11 || text.size() > 14 || text[2] != u':' || text[5] != u':' ||
        (text[8] != u':' && text[8] != u';'))
        return false;
    auto const isDigit = [](char16_t c) { return c >= u'0' && c <= u'9'; };
    return std::ranges::count_if(text, isDigit) == static_cast<std::ptrdiff_t>(text.size()) - 3;
}

unsigned numberOf(std::u16string_view digits) {
    unsigned value = 0;
    for (char16_t const digit : digits)
        value = value * 10 + (digit - u'0');
    return value;
}

constexpr unsigned char bcd(unsigned value) {
    return static_cast<unsigned char>(value / 10 << 4 | value % 10);
}

} // namespace

TimeCode::TimeCode(TimeBase const& base, std::int64_t frameCount)
    : value_(Value{base, wrapped(base, frameCount)}) {}

TimeCode::TimeCode(TimeBase const& base, TimeAddress const& address)
    : value_(Value{base, frameOf(base, address)}) {}

TimeCode::~TimeCode() = default;

TimeCode TimeCode::fromText(std::u16string_view text, unsigned framesPerSecond) {
    if (text == undefinedText)
        return {};
    if (!isTimeCodeText(text))
        throw Exceptions::InvalidFormat(
            "'" + Platform::toUtf8(text) +
            "' is no timecode: hh:mm:ss:ff or, for drop frame, hh:mm:ss;ff is expected");
    TimeBase const base(framesPerSecond, text[8] == u';');
    return {base, TimeAddress{numberOf(text.substr(0, 2)), numberOf(text.substr(3, 2)),
                              numberOf(text.substr(6, 2)), numberOf(text.substr(9))}};
}

bool TimeCode::isValid(TimeBase const& base, TimeAddress const& address) {
    return faultOf(base, address).empty();
}

TimeCode::Value const& TimeCode::value() const {
    if (!value_)
        throw Exceptions::InvalidValue("The timecode is undefined");
    return *value_;
}

TimeAddress TimeCode::address() const {
    std::int64_t const number = withDropped(base(), frameCount());
    auto const frames = static_cast<unsigned>(number % base().framesPerSecond());
    auto const seconds = static_cast<unsigned>(number / base().framesPerSecond());
    return {seconds / 3600, seconds / 60 % 60, seconds % 60, frames};
}

std::u16string TimeCode::toString() const {
    return isDefined() ? Platform::toUtf16(textOf(address(), base().dropFrame()))
                       : std::u16string(undefinedText);
}

PackedTimeCode TimeCode::packed() const {
    TimeAddress const time = address();
    PackedForm const form(base().framesPerSecond());
    PackedTimeCode bytes{bcd(form.number(time.frames)), bcd(time.seconds), bcd(time.minutes),
                         bcd(time.hours)};
    if (base().dropFrame())
        bytes[0] |= PackedForm::dropFrame;
    if (form.mark(time.frames))
        bytes[form.markByte()] |= PackedForm::flag;
    return bytes;
}

TimeCode& TimeCode::operator+=(std::int64_t frames) {
    if (value_)
        value_->frame = wrapped(value_->base, value_->frame + wrapped(value_->base, frames));
    return *this;
}

TimeCode& TimeCode::operator-=(std::int64_t frames) {
    if (value_)
        value_->frame = wrapped(value_->base, value_->frame - wrapped(value_->base, frames));
    return *this;
}

/// Whether both have a value; makes this one undefined when the other is.
bool TimeCode::makeCommon(TimeCode const& other) {
    if (!value_ || !other.value_) {
        value_.reset();
        return false;
    }
    if (!(value_->base == other.value_->base))
        throw Exceptions::InvalidValue(
            "Timecodes of different bases have no sum and no difference: " + described(base(), address()) +
            ", " + described(other.base(), other.address()));
    return true;
}

TimeCode& TimeCode::operator+=(TimeCode const& other) {
    return makeCommon(other) ? *this += other.value_->frame : *this;
}

TimeCode& TimeCode::operator-=(TimeCode const& other) {
    return makeCommon(other) ? *this -= other.value_->frame : *this;
}

bool operator==(TimeCode const& a, TimeCode const& b) { return a.value_ == b.value_; }

std::partial_ordering operator<=>(TimeCode const& a, TimeCode const& b) {
    if (a == b)
        return std::partial_ordering::equivalent;
    if (!a.value_ || !b.value_ || !(a.value_->base == b.value_->base))
        return std::partial_ordering::unordered;
    return a.value_->frame <=> b.value_->frame;
}

} // namespace MXF::Zelm::Utils
