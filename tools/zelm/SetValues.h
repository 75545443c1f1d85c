/// Properties of metadata sets as plain values: what an accessor of a structural class gives, null for a
/// property that is not there.
#pragma once

#include "FileInfo.h"

#include <MXF/Zelm/Types/Collection.h>
#include <MXF/Zelm/Types/Integers.h>
#include <MXF/Zelm/Types/Rational.h>

namespace Zelm {

/// The text of a value in UTF-8, empty for null.
std::string text(MXF::Zelm::Types::BaseType const* value);

/// The number of an integer that is never negative.
template <class Integer>
std::optional<std::uint32_t> count(Integer const* integer) {
    return integer != nullptr ? std::optional<std::uint32_t>(integer->value()) : std::nullopt;
}

/// A length; none also for -1, which stands for "unknown".
std::optional<std::int64_t> known(MXF::Zelm::Types::Length const* length);

/// A position.
std::optional<std::int64_t> position(MXF::Zelm::Types::Position const* value);

/// A rational; none also for one without denominator.
std::optional<EditRate> rational(MXF::Zelm::Types::Rational const* value);

std::optional<NamedLabel> label(MXF::Zelm::Types::UniversalLabel const* value);

/// The labels of a batch, none when it holds something else.
std::vector<NamedLabel> labels(MXF::Zelm::Types::Batch const* batch);

} // namespace Zelm
