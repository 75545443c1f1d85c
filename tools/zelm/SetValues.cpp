#include "SetValues.h"

#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

NamedLabel named(Types::UniversalLabel const& label) {
    return {label, MXF::ZelmDictionary::labelName(label)};
}

} // namespace

std::string text(Types::BaseType const* value) {
    return value != nullptr ? Platform::toUtf8(value->toString()) : std::string();
}

std::optional<std::int64_t> known(Types::Length const* length) {
    return length != nullptr && length->isKnown() ? std::optional(length->value()) : std::nullopt;
}

std::optional<std::int64_t> position(Types::Position const* value) {
    return value != nullptr ? std::optional(value->value()) : std::nullopt;
}

std::optional<EditRate> rational(Types::Rational const* value) {
    return value != nullptr && value->denominator() != 0 ? std::optional(value->value()) : std::nullopt;
}

std::optional<NamedLabel> label(Types::UniversalLabel const* value) {
    return value != nullptr ? std::optional(named(*value)) : std::nullopt;
}

std::vector<NamedLabel> labels(Types::Batch const* batch) {
    std::vector<NamedLabel> found;
    if (batch != nullptr && batch->subType() == Types::Identifiers::UniversalLabel)
        for (std::size_t i = 0; i < batch->count(); ++i)
            found.push_back(named(batch->at<Types::UniversalLabel>(i)));
    return found;
}

} // namespace Zelm
