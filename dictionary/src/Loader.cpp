#include "Loader.h"

#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Types/BaseTypeFactory.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/LocalTag.h"

#include <algorithm>

namespace MXF::ZelmDictionary {

namespace Identifiers = Zelm::Types::Identifiers;
namespace MetaMetadata = Zelm::MetaMetadata;

namespace {

using Status = MetaMetadata::AttributeRequiredStatus::Status;

constexpr std::string_view formatName = "zelm-dictionary";
constexpr std::string_view formatVersion = "1";

struct StatusRow {
    std::string_view name;
    Status status;
};

constexpr StatusRow statuses[] = {
    {"Opt", Status::Optional},          {"B.Effort", Status::BestEffort}, {"D/req", Status::DecoderRequired},
    {"E/req", Status::EncoderRequired}, {"Req", Status::Required},
};

/// UTF-16 of a text that is usually short and ASCII: nothing is allocated for such a one.
class Wide {
public:
    explicit Wide(std::string_view text) {
        if (text.size() <= std::size(buffer_) && std::all_of(text.begin(), text.end(), [](char c) {
                return static_cast<unsigned char>(c) < 0x80;
            })) {
            std::copy(text.begin(), text.end(), buffer_);
            view_ = {buffer_, text.size()};
        } else {
            long_ = Zelm::Platform::toUtf16(text);
            view_ = long_;
        }
    }
    Wide(Wide const&) = delete;
    Wide& operator=(Wide const&) = delete;

    operator std::u16string_view() const { return view_; }

private:
    char16_t buffer_[96];
    std::u16string long_;
    std::u16string_view view_;
};

std::string_view require(Words& words, const char* what) {
    auto const word = words.next();
    if (word.text.empty())
        refuse(std::string("no ") + what + " given");
    return word.text;
}

void requireEnd(Words& words) {
    if (auto const word = words.next())
        refuse("unexpected " + quote(word.text));
}

/// Takes the next word only if it is `text`.
bool takeIf(Words& words, std::string_view text) {
    auto ahead = words;
    auto const word = ahead.next();
    bool const isIt = !word.quoted && word.text == text;
    if (isIt)
        words = ahead;
    return isIt;
}

Key requireLabel(Words& words, const char* what) {
    auto const text = require(words, what);
    auto const bytes = labelFromText(text);
    if (!bytes)
        refuse(quote(text) + " is no " + what + " of 32 hexadecimal digits");
    return Key(bytes->data());
}

/// A symbol with a qualifier ("Name@Class") goes by the name before it.
std::string_view withoutQualifier(std::string_view symbol) { return symbol.substr(0, symbol.find('@')); }

/// `name=value` words to the end of the line.
void readProperties(Words& words, MetaMetadata::PropertyMap& properties) {
    while (auto const word = words.next()) {
        auto const equals = word.text.find('=');
        if (word.quoted || equals == 0 || equals == std::string_view::npos)
            refuse("unexpected " + quote(word.text));
        properties.addProperty(Wide(word.text.substr(0, equals)),
                               Wide(withoutQuotes(word.text.substr(equals + 1))));
    }
}

auto_ptr<Zelm::Types::SimpleDataType> simpleValue(Identifier type, std::string_view text, bool quoted) {
    if (quoted && type == Identifier::DataValue)
        return auto_ptr<Zelm::Types::SimpleDataType>(
            new Zelm::Types::DataValue(std::vector<unsigned char>(text.begin(), text.end())));
    if (type == Identifier::UniversalLabel)
        if (auto const label = labelFromText(text))
            return auto_ptr<Zelm::Types::SimpleDataType>(new UniversalLabel(label->data()));
    return Zelm::Types::Factories::BaseTypeFactory::instance().create(type, Wide(text));
}

auto_ptr<Zelm::Types::BaseType> distinguishedValue(MetaElement const& element, Word word) {
    if (Identifiers::isReference(element.dataType()))
        refuse("a reference has no distinguished value");
    if (!Identifiers::isCollection(element.dataType()))
        return simpleValue(element.dataType(), word.text, word.quoted);
    auto const* const collection = dynamic_cast<MetaMetadata::MetaCollection const*>(&element);
    if (collection == nullptr)
        refuse("a collection of references has no distinguished value");
    auto values = Zelm::Types::Factories::BaseTypeFactory::instance().createCollection(
        collection->dataType(), collection->dataSubType());
    auto text = word.text;
    for (bool more = true; more;) {
        auto const comma = text.find(',');
        values->add(*simpleValue(collection->dataSubType(), text.substr(0, comma), word.quoted));
        more = comma != std::string_view::npos;
        text.remove_prefix(more ? comma + 1 : text.size());
    }
    return values;
}

/// The tag of an attribute; 0 for a dynamic one.
std::uint16_t readTag(std::string_view text) {
    if (text == "dyn")
        return 0;
    std::uint16_t tag = 0;
    for (char const character : text) {
        int const digit = Zelm::ByteCoders::hexadecimalDigit(static_cast<unsigned char>(character));
        if (digit < 0 || text.size() != 4)
            refuse(quote(text) + " is neither a tag of 4 hexadecimal digits nor 'dyn'");
        tag = static_cast<std::uint16_t>(tag << 4 | digit);
    }
    if (tag == 0 || tag >= Zelm::Types::LocalTag::firstDynamic)
        refuse("the tag " + quote(text) + " is not static: those lie between 0001 and 7fff");
    return tag;
}

Status readStatus(std::string_view text) {
    auto const* const found = std::find_if(std::begin(statuses), std::end(statuses),
                                           [text](StatusRow const& row) { return row.name == text; });
    if (found == std::end(statuses))
        refuse("unknown required status " + quote(text) + ": Opt, B.Effort, D/req, E/req or Req expected");
    return found->status;
}

} // namespace

constinit Loader::Row const Loader::statements[] = {
    {"attribute", &Loader::readAttribute}, {"element", &Loader::readElement}, {"class", &Loader::readClass},
    {"value", &Loader::readValue},         {"type", &Loader::readType},       {"extend", &Loader::readExtend},
};

Loader::Loader(MetaMetadata::Dictionary& dictionary, std::string_view text, std::string_view sourceName)
    : definitions_(dictionary) {
    try {
        readLines(text);
        definitions_.resolveTargets(line_);
    } catch (Zelm::Exceptions::BaseException const& fault) {
        throw Zelm::Exceptions::InvalidFormat(std::string(sourceName) + ":" + std::to_string(line_) + ": " +
                                              fault.message());
    }
}

void Loader::readLines(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    while (!text.empty()) {
        ++line_;
        auto const end = std::min(text.find('\n'), text.size());
        Words words(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        readStatement(words);
    }
    if (!hasHeader_) {
        line_ = std::max(line_, 1U);
        refuse("this is no dictionary: it has no line '" + std::string(formatName) + " 1'");
    }
}

void Loader::readHeader(Words& words) {
    auto const version = require(words, "version");
    if (version != formatVersion)
        refuse("version " + quote(version) + " of the format is not known");
    requireEnd(words);
    hasHeader_ = true;
}

void Loader::readStatement(Words& words) {
    auto const keyword = words.next().text;
    if (keyword.empty() || keyword.front() == '#')
        return;
    if (!hasHeader_) {
        if (keyword != formatName)
            refuse("this is no dictionary: the first line is not '" + std::string(formatName) + " 1'");
        return readHeader(words);
    }
    for (auto const& row : statements)
        if (row.keyword == keyword)
            return (this->*row.read)(words);
    refuse("unknown statement " + quote(keyword));
}

/// type NAME TYPE | type NAME StrongReference|WeakReference CLASS… | type NAME Array|Batch TYPE
void Loader::readType(Words& words) {
    auto const name = require(words, "name");
    auto const base = require(words, "type");
    TypeDefinition type;
    if (base == "Array" || base == "Batch") {
        type = definitions_.type(require(words, "member type"));
        if (Identifiers::isCollection(type.dataType))
            refuse("a collection cannot be the member of another");
        type.subType = type.dataType;
        type.dataType = base == "Array" ? Identifier::Array : Identifier::Batch;
    } else {
        type = definitions_.type(base);
    }
    while (auto const target = words.next()) {
        if (!Identifiers::isReference(type.valueType()))
            refuse("unexpected " + quote(target.text));
        type.targets.push_back(target.text);
    }
    type.name = name;
    type.line = line_;
    type.ownsEnumeration = false;
    type_ = &definitions_.addType(std::move(type));
    class_ = ClassDefinition::none;
}

/// value VALUE [NAME]
void Loader::readValue(Words& words) {
    if (type_ == nullptr)
        refuse("a value without a type before it");
    if (!Identifiers::isSimpleValue(type_->dataType))
        refuse("a reference or collection cannot have enumerated values");
    auto const value = words.next();
    if (!value)
        refuse("no value given");
    if (!type_->ownsEnumeration) {
        type_->enumeration.reset(new MetaMetadata::Enumeration);
        type_->ownsEnumeration = true;
    }
    type_->enumeration->add(simpleValue(type_->dataType, value.text, value.quoted), Wide(words.remainder()));
}

/// element LABEL SYMBOL TYPE [PROPERTY=VALUE…]
void Loader::readElement(Words& words) {
    auto const label = requireLabel(words, "label");
    auto const symbol = require(words, "symbol");
    auto const typeName = require(words, "type");
    auto const& type = definitions_.type(typeName);
    auto& element = definitions_.addElement(symbol, label, type);
    element.addProperty(u"name", Wide(withoutQualifier(symbol)));
    element.addProperty(u"type", Wide(typeName));
    readProperties(words, element);
    type_ = nullptr;
    class_ = ClassDefinition::none;
}

/// class KEY SYMBOL [: PARENT] [abstract] [PROPERTY=VALUE…]
void Loader::readClass(Words& words) {
    auto const key = requireLabel(words, "key");
    if (!Zelm::KLV::isLocalSet(key))
        refuse("the key is not that of a local set");
    auto const symbol = require(words, "symbol");
    bool const inherits = takeIf(words, ":");
    auto const parent = inherits ? definitions_.classNumber(require(words, "parent")) : ClassDefinition::none;
    bool const isAbstract = takeIf(words, "abstract");
    class_ = definitions_.addClass(symbol, key, parent);
    auto& definition = definitions_.definition(class_);
    definition.addProperty(u"name", Wide(symbol));
    if (parent != ClassDefinition::none)
        definition.addProperty(u"parent", Wide(definitions_.classAt(parent).symbol));
    if (isAbstract)
        definition.addProperty(u"abstract", u"true");
    readProperties(words, definition);
    type_ = nullptr;
}

/// extend CLASS
void Loader::readExtend(Words& words) {
    class_ = definitions_.classNumber(require(words, "class"));
    requireEnd(words);
    type_ = nullptr;
}

/// attribute ELEMENT TAG|dyn STATUS [DISTINGUISHED]
void Loader::readAttribute(Words& words) {
    if (class_ == ClassDefinition::none)
        refuse("an attribute without a class before it");
    auto& element = definitions_.element(require(words, "element"));
    auto const tag = readTag(require(words, "tag"));
    auto const status = readStatus(require(words, "required status"));
    auto const distinguished = words.next();
    requireEnd(words);
    if (tag != 0)
        definitions_.claimTag(element, tag);
    definitions_.addAttribute(
        class_, SharedAttribute(new Attribute(
                    *element.element, status,
                    distinguished ? distinguishedValue(*element.element, distinguished) : nullptr,
                    tag != 0 ? std::optional(Zelm::Types::LocalTag(tag)) : std::nullopt)));
}

} // namespace MXF::ZelmDictionary
