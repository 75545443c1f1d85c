#include "ValueText.h"

#include "IndirectValue.h"
#include "Text.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/ZelmDictionary/Names.h>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// More than these are cut short in text; JSON has everything.
constexpr std::size_t mostBytes = 32;
constexpr std::size_t mostMembers = 16;

/// The name of one value: of a label by the registers, of any other by the element's enumeration.
std::string nameOf(Types::BaseType const& value, MetaMetadata::MetaElement const* definition) {
    if (auto const* const label = Types::valueCast<Types::UniversalLabel>(&value))
        if (auto name = MXF::ZelmDictionary::labelName(*label); !name.empty())
            return name;
    auto const* const holder = dynamic_cast<MetaMetadata::MetaValueHolder const*>(definition);
    auto const* const enumeration = holder != nullptr ? holder->enumerationNames() : nullptr;
    auto const* const name = enumeration != nullptr ? enumeration->findName(value) : nullptr;
    return name != nullptr ? Platform::toUtf8(*name) : std::string();
}

std::string simpleText(Types::SimpleDataType const& value, MetaMetadata::MetaElement const* definition) {
    switch (value.identifier()) {
    case Types::Identifiers::DataValue:
    case Types::Identifiers::DataStream:
    case Types::Identifiers::Unknown:
        return bytesText(value.rawBuffer(), value.size(), mostBytes);
    case Types::Identifiers::UTF16String:
    case Types::Identifiers::ISO7String:
        return "\"" + printable(Platform::toUtf8(value.toString())) + "\"";
    default:
        break;
    }
    std::string const name = nameOf(value, definition);
    std::string const text = Platform::toUtf8(value.toString());
    return name.empty() ? text : text + " (" + name + ")";
}

class Reason : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    void visit(MetaMetadata::MetaAttribute const&) override {}
    void visit(MetaMetadata::MisplacedAttribute const&) override {
        text = "the class does not have this property";
    }
    void visit(MetaMetadata::UnknownAttribute const& attribute) override {
        using Cause = MetaMetadata::UnknownAttribute::Reason;
        switch (attribute.reason()) {
        case Cause::NotInPrimer:
            text = "the primer does not map the tag";
            break;
        case Cause::NotInDictionary:
            text = "the dictionary does not define the label";
            break;
        case Cause::StaticTagRedefined:
            text = "the primer maps a static tag to another label than the standard";
            break;
        case Cause::InvalidTag:
            text = "the tag 00.00 is not allowed";
            break;
        case Cause::Repeated:
            text = "the set has this property already";
            break;
        case Cause::MalformedValue:
            text = "the value is not one of the property's type";
            break;
        }
    }

    std::string text;
};

} // namespace

std::string bytesText(const unsigned char* bytes, std::size_t size, std::size_t most) {
    std::string text = "0x" + ByteCoders::toHexadecimal(bytes, std::min(size, most));
    return size <= most ? text : text + "… (" + grouped(size) + " bytes)";
}

std::string valueText(Metadata::Element const& element) {
    auto const* const value = element.baseValue();
    if (value == nullptr)
        return "(no value)";
    if (Json const content = indirectValue(element); !content.is_null())
        return content.is_string() ? "\"" + printable(content.get<std::string>()) + "\"" : content.dump();
    if (!Types::Identifiers::isCollection(value->identifier()))
        return simpleText(static_cast<Types::SimpleDataType const&>(*value), element.metaElement());
    auto const& collection = static_cast<Types::Collection const&>(*value);
    if (collection.empty())
        return "(empty)";
    std::string text;
    for (std::size_t i = 0; i < std::min(collection.count(), mostMembers); ++i)
        text += (i == 0 ? "" : ", ") + simpleText(collection.at(i), element.metaElement());
    if (collection.count() > mostMembers)
        text += "… (" + grouped(collection.count()) + ")";
    return text;
}

std::string valueName(Metadata::Element const& element) {
    auto const* const value = element.baseValue();
    return value != nullptr ? nameOf(*value, element.metaElement()) : std::string();
}

Json indirectValue(Metadata::Element const& element) {
    auto const* const type =
        element.metaElement() != nullptr ? element.metaElement()->findProperty(u"type") : nullptr;
    auto const* const value = Types::valueCast<Types::DataValue>(element.baseValue());
    if (type == nullptr || value == nullptr || *type != u"Indirect")
        return nullptr;
    return decodeIndirect(value->bytes());
}

std::string invalidReason(Metadata::Element const& element) {
    Reason reason;
    element.metaAttribute()->accept(reason);
    return reason.text;
}

} // namespace Zelm
