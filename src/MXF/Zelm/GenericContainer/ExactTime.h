/// Sums and comparison of times in seconds, exact.
#pragma once

#include "MXF/Zelm/Templates/Rational.h"

#include <cstdint>

namespace MXF::Zelm::GenericContainer {

using Seconds = Templates::Rational<std::int64_t>;

/// Both with denominators above 0. Throws Exceptions::InvalidValue for a result beyond 64 bits.
Seconds sumOf(Seconds const& a, Seconds const& b);

/// Both with denominators above 0.
bool isBefore(Seconds const& a, Seconds const& b);

} // namespace MXF::Zelm::GenericContainer
