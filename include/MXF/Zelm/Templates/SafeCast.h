/// Checked narrowing of integers: how a 64-bit count becomes a size.
#pragma once

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <utility>

namespace MXF::Zelm::Templates {

/// `value` as a `To`. Throws Exceptions::BaseException with "Type size exceeded" when it does not fit.
template <class To, class From>
constexpr To safeCast(From value) {
    if (!std::in_range<To>(value))
        throw Exceptions::BaseException(
            "Type size exceeded", Exceptions::SourceLocation{"include\\MXF/Zelm/Templates/SafeCast", 26});
    return static_cast<To>(value);
}

} // namespace MXF::Zelm::Templates
