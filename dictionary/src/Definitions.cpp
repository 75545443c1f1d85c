#include "Definitions.h"

#include "Words.h"

#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>
#include <cstring>

namespace MXF::ZelmDictionary {

namespace Identifiers = Zelm::Types::Identifiers;
namespace MetaMetadata = Zelm::MetaMetadata;

namespace {

// Room for the standard dictionary, so that its tables do not grow while it is loaded.
constexpr std::size_t usualTypes = 512;
constexpr std::size_t usualElements = 2048;
constexpr std::size_t usualTags = 512;
constexpr std::size_t usualClasses = 512;

// Bounds the recursion over subclasses; the standard classes reach 8 levels.
constexpr unsigned maximumDepth = 64;

std::size_t hashOf(std::string_view name) { return std::hash<std::string_view>()(name); }

/// Of the half that tells labels and keys apart: the item designator.
std::size_t hashOf(const unsigned char* label) {
    std::uint32_t words[2];
    std::memcpy(words, label + 8, sizeof words);
    return words[0] * 0x85EBCA6BU ^ words[1] * 0xC2B2AE35U ^ words[1] >> 15;
}

auto_ptr<MetaElement> makeElement(UniversalLabel const& label, TypeDefinition const& type) {
    bool const isReference = Identifiers::isReference(type.valueType());
    if (!Identifiers::isCollection(type.dataType)) {
        if (isReference)
            return auto_ptr<MetaElement>(new MetaMetadata::MetaReferenceElement(label, type.dataType));
        auto_ptr<MetaMetadata::MetaSimpleElement> element(
            new MetaMetadata::MetaSimpleElement(label, type.dataType));
        element->enumeration(type.enumeration);
        return element;
    }
    if (isReference)
        return auto_ptr<MetaElement>(
            new MetaMetadata::MetaReferenceCollection(label, type.dataType, type.subType));
    auto_ptr<MetaMetadata::MetaCollection> element(
        new MetaMetadata::MetaCollection(label, type.dataType, type.subType));
    element->enumeration(type.enumeration);
    return element;
}

void allow(MetaElement& element, std::vector<Key> const& keys) {
    if (auto* const holder = dynamic_cast<MetaMetadata::MetaReferenceHolder*>(&element))
        holder->addAllowedMetadataSets(keys);
}

} // namespace

void refuse(std::string const& cause) { throw Zelm::Exceptions::InvalidFormat(cause); }

std::string quote(std::string_view text) { return "'" + std::string(text) + "'"; }

Definitions::Definitions(MetaMetadata::Dictionary& dictionary)
    : dictionary_(dictionary),
      typesByName_(usualTypes),
      elementsBySymbol_(usualElements),
      elementsByLabel_(usualElements),
      elementsByTag_(usualTags),
      classesBySymbol_(usualClasses),
      classesByKey_(usualClasses) {
    for (int i = 0; i < Identifier::Array; ++i) {
        auto const identifier = static_cast<Identifier>(i);
        addType({Identifiers::toText(identifier), identifier});
    }
    importClasses();
    importElements();
}

std::string_view Definitions::keep(std::u16string const& name) {
    return names_.emplace_back(Zelm::Platform::toUtf8(name));
}

void Definitions::importClasses() {
    std::vector<std::string_view> parents;
    for (auto at = dictionary_.metaMetadataSetBegin(); at != dictionary_.metaMetadataSetEnd(); ++at) {
        auto const& [key, set] = *at;
        auto const* const name = set.findProperty(u"name");
        auto const* const parent = set.findProperty(u"parent");
        index({name ? keep(*name) : std::string_view(), key});
        parents.push_back(parent ? keep(*parent) : std::string_view());
    }
    for (std::uint32_t i = 0; i < parents.size(); ++i) {
        auto const parent = findClass(parents[i]);
        if (parents[i].empty() || parent == HashIndex::none || inheritsFrom(parent, i))
            continue;
        classes_[i].parent = parent;
        classes_[parent].children.push_back(i);
    }
}

void Definitions::importElements() {
    for (auto at = dictionary_.metaElementBegin(); at != dictionary_.metaElementEnd(); ++at) {
        auto const* const name = at->second->findProperty(u"name");
        auto const symbol = name ? keep(*name) : std::string_view();
        auto const same = findElement(symbol);
        if (same != HashIndex::none)
            elements_[same].isAmbiguous = true;
        auto& element = index({symbol, at->second.get()});
        if (auto const* const tag = dictionary_.find(at->first))
            claimTag(element, tag->value());
    }
}

/// True also for the class itself. Ends: a parent that would close a circle is never recorded.
bool Definitions::inheritsFrom(std::uint32_t classNumber, std::uint32_t ancestor) const {
    while (classNumber != ancestor && classNumber != ClassDefinition::none)
        classNumber = classes_[classNumber].parent;
    return classNumber == ancestor;
}

unsigned Definitions::depth(std::uint32_t classNumber) const {
    unsigned depth = 0;
    for (; classNumber != ClassDefinition::none; classNumber = classes_[classNumber].parent)
        ++depth;
    return depth;
}

std::uint32_t Definitions::findType(std::string_view name) const {
    return typesByName_.find(hashOf(name), [&](std::uint32_t i) { return types_[i].name == name; });
}

std::uint32_t Definitions::findElement(std::string_view symbol) const {
    return elementsBySymbol_.find(hashOf(symbol),
                                  [&](std::uint32_t i) { return elements_[i].symbol == symbol; });
}

std::uint32_t Definitions::findElement(UniversalLabel const& label) const {
    return elementsByLabel_.find(hashOf(label.rawBuffer()), [&](std::uint32_t i) {
        return elements_[i].element->universalLabel() == label;
    });
}

std::uint32_t Definitions::findClass(std::string_view symbol) const {
    return classesBySymbol_.find(hashOf(symbol),
                                 [&](std::uint32_t i) { return classes_[i].symbol == symbol; });
}

std::uint32_t Definitions::findClass(Key const& key) const {
    return classesByKey_.find(hashOf(key.rawBuffer()),
                              [&](std::uint32_t i) { return classes_[i].key == key; });
}

ElementDefinition& Definitions::index(ElementDefinition element) {
    auto const number = static_cast<std::uint32_t>(elements_.size());
    elementsByLabel_.add(hashOf(element.element->universalLabel().rawBuffer()), number);
    elementsBySymbol_.add(hashOf(element.symbol), number);
    return elements_.emplace_back(std::move(element));
}

std::uint32_t Definitions::index(ClassDefinition added) {
    auto const number = static_cast<std::uint32_t>(classes_.size());
    classesByKey_.add(hashOf(added.key.rawBuffer()), number);
    classesBySymbol_.add(hashOf(added.symbol), number);
    classes_.push_back(std::move(added));
    return number;
}

TypeDefinition& Definitions::addType(TypeDefinition type) {
    if (findType(type.name) != HashIndex::none)
        refuse("the type " + quote(type.name) + " is defined already");
    typesByName_.add(hashOf(type.name), static_cast<std::uint32_t>(types_.size()));
    return types_.emplace_back(std::move(type));
}

TypeDefinition const& Definitions::type(std::string_view name) const {
    auto const found = findType(name);
    if (found == HashIndex::none)
        refuse("unknown type " + quote(name));
    return types_[found];
}

MetaElement& Definitions::addElement(std::string_view symbol, UniversalLabel const& label,
                                     TypeDefinition const& type) {
    if (auto const known = findElement(label); known != HashIndex::none)
        refuse("the label is that of the element " + quote(elements_[known].symbol));
    if (findElement(symbol) != HashIndex::none)
        refuse("the element " + quote(symbol) + " is defined already");
    ElementDefinition added{symbol};
    added.owned = makeElement(label, type);
    added.element = added.owned.get();
    added.type = &type;
    return *index(std::move(added)).element;
}

ElementDefinition& Definitions::element(std::string_view symbolOrLabel) {
    auto found = findElement(symbolOrLabel);
    if (found != HashIndex::none && elements_[found].isAmbiguous)
        refuse("there are several elements " + quote(symbolOrLabel) + ": give the label");
    if (found == HashIndex::none)
        if (auto const label = labelFromText(symbolOrLabel))
            found = findElement(UniversalLabel(label->data()));
    if (found == HashIndex::none)
        refuse("unknown element " + quote(symbolOrLabel));
    return elements_[found];
}

std::uint32_t Definitions::addClass(std::string_view symbol, Key const& key, std::uint32_t parent) {
    if (auto const known = findClass(key); known != HashIndex::none)
        refuse("the key is that of the class " + quote(classes_[known].symbol));
    if (findClass(symbol) != HashIndex::none)
        refuse("the class " + quote(symbol) + " is defined already");
    ClassDefinition added{symbol, key, parent, true};
    if (parent == ClassDefinition::none) {
        added.definition.emplace(key);
        return index(std::move(added));
    }
    if (depth(parent) >= maximumDepth)
        refuse("classes inherit over more than " + std::to_string(maximumDepth) + " levels");
    auto& above = classes_[parent];
    added.definition.emplace(key, above.definition ? *above.definition : *dictionary_.find(above.key));
    auto const number = index(std::move(added));
    above.children.push_back(number);
    return number;
}

std::uint32_t Definitions::classNumber(std::string_view symbolOrKey) const {
    auto found = findClass(symbolOrKey);
    if (found == HashIndex::none)
        if (auto const key = labelFromText(symbolOrKey))
            found = findClass(Key(key->data()));
    if (found == HashIndex::none)
        refuse("unknown class " + quote(symbolOrKey));
    return found;
}

MetaMetadata::MetaMetadataSet& Definitions::definition(std::uint32_t classNumber) {
    auto& of = classes_[classNumber];
    if (!of.definition)
        of.definition = *dictionary_.find(of.key);
    return *of.definition;
}

void Definitions::claimTag(ElementDefinition& element, std::uint16_t tag) {
    if (element.staticTag == tag)
        return;
    auto const text = [tag] { return Zelm::Platform::toUtf8(Zelm::Types::LocalTag(tag).toString()); };
    auto const owner =
        elementsByTag_.find(tag, [&](std::uint32_t i) { return elements_[i].staticTag == tag; });
    if (owner != HashIndex::none)
        refuse("the tag " + text() + " stands for the element " + quote(elements_[owner].symbol));
    if (element.staticTag != 0)
        refuse("the element has another static tag than " + text());
    element.staticTag = tag;
    elementsByTag_.add(tag, findElement(element.element->universalLabel()));
}

void Definitions::addAttribute(std::uint32_t classNumber, SharedAttribute const& attribute) {
    definition(classNumber).addMetaAttribute(attribute);
    for (auto const child : classes_[classNumber].children)
        addAttribute(child, attribute);
}

void Definitions::collectSubclasses(std::uint32_t classNumber, std::vector<Key>& keys) const {
    keys.push_back(classes_[classNumber].key);
    for (auto const child : classes_[classNumber].children)
        collectSubclasses(child, keys);
}

void Definitions::resolveTargets(unsigned& line) {
    for (auto& type : types_) {
        line = type.line;
        for (auto const target : type.targets)
            collectSubclasses(classNumber(target), type.allowed);
        std::sort(type.allowed.begin(), type.allowed.end());
    }
    for (auto& element : elements_)
        if (element.owned && !element.type->allowed.empty())
            allow(*element.owned, element.type->allowed);
    widenKnownReferences();
}

/// New classes may stand wherever the dictionary allows the class that they inherit from.
void Definitions::widenKnownReferences() {
    for (auto const& added : classes_) {
        if (!added.isNew || added.parent == ClassDefinition::none || classes_[added.parent].isNew)
            continue;
        std::vector<Key> keys;
        collectSubclasses(findClass(added.key), keys);
        for (auto const& element : elements_) {
            auto const* const holder = dynamic_cast<MetaMetadata::MetaReferenceHolder*>(element.element);
            if (!element.owned && holder != nullptr && holder->allows(classes_[added.parent].key) &&
                !holder->allowedMetadataSets().empty())
                widened_.emplace_back(element.element, keys);
        }
    }
}

void Definitions::commit() {
    for (auto& element : elements_) {
        auto const label = element.element->universalLabel();
        if (element.owned)
            dictionary_.add(label, std::move(element.owned));
        if (element.staticTag != 0)
            dictionary_.add(Zelm::Types::LocalTag(element.staticTag), label);
    }
    for (auto& each : classes_)
        if (each.definition)
            dictionary_.add(each.key, std::move(*each.definition));
    for (auto const& [element, keys] : widened_)
        allow(*element, keys);
}

} // namespace MXF::ZelmDictionary
