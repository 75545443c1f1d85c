#include "SetValues.h"

#include <MXF/ZelmDictionary/Names.h>

#include <limits>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;

namespace {

class ToInteger : public Types::Visitors::Visitor {
public:
    using Visitor::visit;
    void visit(Types::Int8 const& number) override { value = number.value(); }
    void visit(Types::Int16 const& number) override { value = number.value(); }
    void visit(Types::Int32 const& number) override { value = number.value(); }
    void visit(Types::Int64 const& number) override { value = number.value(); }
    void visit(Types::UInt8 const& number) override { value = number.value(); }
    void visit(Types::UInt16 const& number) override { value = number.value(); }
    void visit(Types::UInt32 const& number) override { value = number.value(); }
    void visit(Types::Position const& number) override { value = number.value(); }
    void visit(Types::Length const& number) override { value = number.value(); }

    std::optional<std::int64_t> value;
};

NamedLabel named(Types::UniversalLabel const& label) {
    return {label, MXF::ZelmDictionary::labelName(label)};
}

} // namespace

std::optional<std::int64_t> integer(MetadataSet const& set, std::u16string_view name) {
    ToInteger visitor;
    auto const* const element = findElement(set, name);
    if (element != nullptr && element->baseValue() != nullptr)
        element->baseValue()->accept(visitor);
    return visitor.value;
}

std::optional<std::uint32_t> count(MetadataSet const& set, std::u16string_view name) {
    auto const value = integer(set, name);
    if (!value || *value < 0 || *value > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return static_cast<std::uint32_t>(*value);
}

std::optional<std::int64_t> known(MetadataSet const& set, std::u16string_view name) {
    auto const value = integer(set, name);
    return value && *value != -1 ? value : std::nullopt;
}

std::optional<EditRate> rational(MetadataSet const& set, std::u16string_view name) {
    auto const* const value = property<Types::Rational>(set, name);
    return value != nullptr && value->denominator() != 0 ? std::optional(value->value()) : std::nullopt;
}

std::optional<NamedLabel> label(MetadataSet const& set, std::u16string_view name) {
    auto const* const value = property<Types::UniversalLabel>(set, name);
    return value != nullptr ? std::optional(named(*value)) : std::nullopt;
}

std::vector<NamedLabel> labels(MetadataSet const& set, std::u16string_view name) {
    std::vector<NamedLabel> found;
    auto const* const batch = property<Types::Batch>(set, name);
    if (batch != nullptr && batch->subType() == Types::Identifiers::UniversalLabel)
        for (std::size_t i = 0; i < batch->count(); ++i)
            found.push_back(named(batch->at<Types::UniversalLabel>(i)));
    return found;
}

} // namespace Zelm
