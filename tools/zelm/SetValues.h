/// Properties of metadata sets as plain values.
#pragma once

#include "FileInfo.h"
#include "SetAccess.h"

#include <MXF/Zelm/Types/Integers.h>
#include <MXF/Zelm/Types/Rational.h>

namespace Zelm {

/// The integer of the property called `name`, whatever its width.
std::optional<std::int64_t> integer(MXF::Zelm::Metadata::MetadataSet const& set, std::u16string_view name);

/// The same for properties that are never negative.
std::optional<std::uint32_t> count(MXF::Zelm::Metadata::MetadataSet const& set, std::u16string_view name);

/// A length or position; none also for -1, which stands for "unknown".
std::optional<std::int64_t> known(MXF::Zelm::Metadata::MetadataSet const& set, std::u16string_view name);

/// A rational; none also for one without denominator.
std::optional<EditRate> rational(MXF::Zelm::Metadata::MetadataSet const& set, std::u16string_view name);

std::optional<NamedLabel> label(MXF::Zelm::Metadata::MetadataSet const& set, std::u16string_view name);
std::vector<NamedLabel> labels(MXF::Zelm::Metadata::MetadataSet const& set, std::u16string_view name);

} // namespace Zelm
