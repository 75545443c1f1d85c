#include "MXF/Zelm/GenericContainer/ExactTime.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <limits>
#include <numeric>

namespace MXF::Zelm::GenericContainer {

namespace {

using Limits = std::numeric_limits<std::int64_t>;

[[noreturn]] void failRange() { throw Exceptions::InvalidValue("A time in the container is beyond 64 bits"); }

/// `factor` above 0.
std::int64_t product(std::int64_t value, std::int64_t factor) {
    if (value > Limits::max() / factor || value < Limits::min() / factor)
        failRange();
    return value * factor;
}

std::int64_t sum(std::int64_t a, std::int64_t b) {
    if (b > 0 ? a > Limits::max() - b : a < Limits::min() - b)
        failRange();
    return a + b;
}

/// The whole part, rounded down, and what is left of the numerator.
std::int64_t floorOf(Seconds& value) {
    std::int64_t whole = value.numerator / value.denominator;
    value.numerator %= value.denominator;
    if (value.numerator < 0) {
        value.numerator += value.denominator;
        --whole;
    }
    return whole;
}

} // namespace

Seconds sumOf(Seconds const& a, Seconds const& b) {
    if (a.denominator == b.denominator)
        return {sum(a.numerator, b.numerator), a.denominator};
    std::int64_t const divisor = std::gcd(a.denominator, b.denominator);
    std::int64_t const left = product(a.numerator, b.denominator / divisor);
    std::int64_t const right = product(b.numerator, a.denominator / divisor);
    return {sum(left, right), product(a.denominator, b.denominator / divisor)};
}

/// Compares whole parts and, where they are equal, the reciprocals of what is left.
bool isBefore(Seconds const& a, Seconds const& b) {
    Seconds left = a, right = b;
    for (;;) {
        if (left.denominator == right.denominator)
            return left.numerator < right.numerator;
        std::int64_t const wholeLeft = floorOf(left), wholeRight = floorOf(right);
        if (wholeLeft != wholeRight)
            return wholeLeft < wholeRight;
        if (left.numerator == 0 || right.numerator == 0)
            return left.numerator < right.numerator;
        Seconds const reciprocal = {left.denominator, left.numerator};
        left = {right.denominator, right.numerator};
        right = reciprocal;
    }
}

} // namespace MXF::Zelm::GenericContainer
