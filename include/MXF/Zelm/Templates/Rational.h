/// A numerator and denominator pair: edit rates, sample rates, times in seconds.
#pragma once

namespace MXF::Zelm::Templates {

/// Kept as it was given: 50/2 is not reduced. 0/0 stands for "unknown".
template <class Integer>
struct Rational {
    Integer numerator = 0;
    Integer denominator = 0;

    /// True when it has a value, that is, a denominator other than 0.
    constexpr bool isKnown() const { return denominator != 0; }

    /// The value, 0 when unknown.
    constexpr double toDouble() const {
        return isKnown() ? static_cast<double>(numerator) / static_cast<double>(denominator) : 0.0;
    }

    /// Equal values (25/1 and 50/2), or both written alike.
    friend constexpr bool operator==(Rational const& a, Rational const& b) {
        if (!a.isKnown() || !b.isKnown())
            return a.numerator == b.numerator && a.denominator == b.denominator;
        return static_cast<long double>(a.numerator) * static_cast<long double>(b.denominator) ==
               static_cast<long double>(b.numerator) * static_cast<long double>(a.denominator);
    }
};

} // namespace MXF::Zelm::Templates
