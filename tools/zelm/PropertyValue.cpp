#include "PropertyValue.h"

#include "ClassTree.h"
#include "Json.h"
#include "Path.h"
#include "ValueText.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>
#include <MXF/Zelm/DataIO/Memory/MemoryDataSource.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/Zelm/Types/BaseTypeFactory.h>
#include <MXF/Zelm/Types/Integers.h>
#include <MXF/Zelm/Types/Timestamp.h>
#include <MXF/ZelmDictionary/Names.h>

#include <limits>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
using MetaMetadata::MetaElement;
using Types::Identifiers::Identifier;
using Value = Templates::auto_ptr<Types::SimpleDataType>;

namespace Id = Types::Identifiers;

namespace {

/// What each type takes.
struct TypeHelp {
    Identifier type;
    const char* expected;
};

constexpr TypeHelp typeHelps[] = {
    {Id::Int8, "an integer from -128 to 127"},
    {Id::Int16, "an integer from -32768 to 32767"},
    {Id::Int32, "an integer from -2147483648 to 2147483647"},
    {Id::Int64, "an integer"},
    {Id::UInt8, "an integer from 0 to 255"},
    {Id::UInt16, "an integer from 0 to 65535"},
    {Id::UInt32, "an integer from 0 to 4294967295"},
    {Id::UInt64, "an integer from 0 on"},
    {Id::Position, "a number of edit units"},
    {Id::Length, "a number of edit units, -1 for unknown"},
    {Id::Boolean, "true or false"},
    {Id::ISO7String, "a text of ASCII characters"},
    {Id::Rational, "a rational such as 25 or 30000/1001"},
    {Id::Timestamp, "a date such as 2026-03-01 or 2026-03-01T12:30:00Z, or now"},
    {Id::ProductVersion, "a version such as \"1.2.0.5 released\""},
    {Id::VersionType, "a version such as 1.3"},
    {Id::UUID, "a UUID such as urn:uuid:074b063b-5931-5a81-8956-8cc43c0e9778"},
    {Id::UMID32, "a UMID, urn:smpte:umid:… or 64 hexadecimal digits"},
    {Id::UMID64, "an extended UMID, urn:smpte:umid:… or 128 hexadecimal digits"},
    {Id::UniversalLabel, "a label: its name, urn:smpte:ul:… or 32 hexadecimal digits"},
    {Id::RGBALayout, "a pixel layout such as \"R:8 G:8 B:8\""},
    {Id::DataValue, "bytes such as 0x01FF"},
    {Id::DataStream, "bytes such as 0x01FF"},
};

std::string expectation(Identifier type) {
    for (auto const& row : typeHelps)
        if (row.type == type)
            return row.expected;
    return "a value of the type " + std::string(Id::toText(type));
}

Identifier valueType(MetaElement const& element) {
    auto const* const collection = dynamic_cast<MetaMetadata::MetaCollectionElement const*>(&element);
    return collection != nullptr ? collection->dataSubType() : element.dataType();
}

MetaMetadata::Enumeration const* enumerationOf(MetaElement const& element) {
    auto const* const holder = dynamic_cast<MetaMetadata::MetaValueHolder const*>(&element);
    return holder != nullptr ? holder->enumerationNames() : nullptr;
}

/// The enumerated value of that name, null for none.
Value byName(MetaMetadata::Enumeration const& enumeration, std::string const& name) {
    for (auto const* const value : enumeration.values())
        if (auto const* const own = enumeration.findName(*value);
            own != nullptr && equalButForCase(Platform::toUtf8(*own), name))
            if (auto const* const simple = dynamic_cast<Types::SimpleDataType const*>(value))
                return simple->clone();
    return nullptr;
}

std::vector<std::string> namesOf(MetaMetadata::Enumeration const& enumeration) {
    std::vector<std::string> names;
    for (auto const* const value : enumeration.values())
        if (auto const* const name = enumeration.findName(*value); name != nullptr && !name->empty())
            names.push_back(Platform::toUtf8(*name));
    return names;
}

/// The label of that name, null for none. Throws when several have it.
Value labelByName(std::string const& name) {
    auto const labels = MXF::ZelmDictionary::labelsNamed(name);
    if (labels.empty())
        return nullptr;
    if (labels.size() == 1)
        return labels.front().clone();
    constexpr std::size_t most = 8;
    std::string list;
    for (std::size_t i = 0; i < std::min(labels.size(), most); ++i)
        list += "\n  " + Platform::toUtf8(labels[i].toString()) + "  " +
                MXF::ZelmDictionary::labelName(labels[i]);
    throw InvalidValue("'" + name + "' may be one of " + std::to_string(labels.size()) + " labels:" + list +
                       (labels.size() > most ? "\n  …" : ""));
}

/// Bytes out of "0x" and hexadecimal digits; of a property that holds UTF-8, any other text stands for
/// itself.
Value bytesFrom(MetaElement const& element, Identifier type, std::string const& text) {
    std::vector<unsigned char> bytes;
    auto const* const typeName = element.findProperty(u"type");
    if (text.starts_with("0x") || text.starts_with("0X")) {
        for (std::size_t i = 2; i < text.size(); i += 2) {
            int const high = ByteCoders::hexadecimalDigit(static_cast<unsigned char>(text[i]));
            int const low = i + 1 < text.size()
                                ? ByteCoders::hexadecimalDigit(static_cast<unsigned char>(text[i + 1]))
                                : -1;
            if (high < 0 || low < 0)
                return nullptr;
            bytes.push_back(static_cast<unsigned char>(high << 4 | low));
        }
    } else if (typeName != nullptr && *typeName == u"UTF8String") {
        bytes.assign(text.begin(), text.end());
    } else {
        return nullptr;
    }
    DataIO::Memory::MemoryDataSource source(bytes);
    KLV::Value value(source, bytes.size());
    return Types::Factories::BaseTypeFactory::instance().create(type, value);
}

/// The texts that go beyond the library's own.
std::string libraryText(Identifier type, std::string const& text) {
    if (type == Id::Boolean && (equalButForCase(text, "true") || equalButForCase(text, "yes")))
        return "true";
    if (type == Id::Boolean && (equalButForCase(text, "false") || equalButForCase(text, "no")))
        return "false";
    if (type == Id::Timestamp && equalButForCase(text, "now"))
        return Platform::toUtf8(Types::Timestamp::now().toString());
    return text;
}

/// A simple value, null when the text is none.
Value tryParse(MetaElement const& element, std::string const& text) {
    auto const type = valueType(element);
    if (auto const* const enumeration = enumerationOf(element))
        if (auto value = byName(*enumeration, text))
            return value;
    if (type == Id::DataValue || type == Id::DataStream || type == Id::Unknown)
        return bytesFrom(element, type, text);
    try {
        return Types::Factories::BaseTypeFactory::instance().create(
            type, Platform::toUtf16(libraryText(type, text)));
    } catch (Exceptions::BaseException const&) {
        return type == Id::UniversalLabel ? labelByName(text) : nullptr;
    }
}

[[noreturn]] void refuse(MetaElement const& element, std::string const& text) {
    std::string message = preferredName(element) + " takes " + expectation(valueType(element));
    if (auto const* const enumeration = enumerationOf(element)) {
        auto const names = namesOf(*enumeration);
        auto const near = nearMisses(text, names);
        std::string list;
        for (auto const& name : names)
            list += (list.empty() ? "" : ", ") + name;
        if (near.empty() && !list.empty() && list.size() < 400)
            message += ", or one of " + list;
        throw InvalidValue(message + ", not '" + text + "'" + suggestion(near));
    }
    throw InvalidValue(message + ", not '" + text + "'");
}

std::string trimmed(std::string const& text) {
    auto const first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// The members' texts: a JSON array, else parts between commas.
std::vector<std::string> membersOf(MetaElement const& element, std::string const& text) {
    std::vector<std::string> members;
    if (trimmed(text).starts_with("[")) {
        Json const json = Json::parse(text, nullptr, false);
        if (!json.is_array())
            throw InvalidValue(preferredName(element) + ": '" + text + "' is no JSON array");
        for (auto const& member : json)
            members.push_back(member.is_string() ? member.get<std::string>() : member.dump());
        return members;
    }
    for (std::size_t at = 0; at <= text.size() && !trimmed(text).empty();) {
        std::size_t const comma = std::min(text.find(',', at), text.size());
        members.push_back(trimmed(text.substr(at, comma - at)));
        at = comma + 1;
    }
    return members;
}

} // namespace

Value parseMember(MetaElement const& element, std::string const& text) {
    if (auto value = tryParse(element, text))
        return value;
    refuse(element, text);
}

Templates::auto_ptr<Types::BaseType> parseValue(MetaElement const& element, std::string const& text) {
    if (!Id::isCollection(element.dataType()))
        return parseMember(element, text);
    auto const subType = valueType(element);
    auto collection =
        Types::Factories::BaseTypeFactory::instance().createCollection(element.dataType(), subType);
    bool const isList = trimmed(text).starts_with("[") || trimmed(text).empty();
    if (auto const whole = isList ? nullptr : tryParse(element, text)) { // a name may hold commas
        collection->add(*whole);
        return collection;
    }
    for (auto const& member : membersOf(element, text))
        collection->add(*parseMember(element, member));
    return collection;
}

std::string parseableText(Types::BaseType const& value) {
    switch (value.identifier()) {
    case Id::Array:
    case Id::Batch: {
        auto const& collection = static_cast<Types::Collection const&>(value);
        Json members = Json::array();
        for (std::size_t i = 0; i < collection.count(); ++i)
            members.push_back(parseableText(collection.at(i)));
        return dump(members);
    }
    case Id::DataValue:
    case Id::DataStream:
    case Id::Unknown: {
        auto const& bytes = static_cast<Types::SimpleDataType const&>(value);
        return bytesText(bytes.rawBuffer(), bytes.size(), bytes.size());
    }
    default:
        return Platform::toUtf8(value.toString());
    }
}

} // namespace Zelm
