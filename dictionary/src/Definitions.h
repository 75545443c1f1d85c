/// The definitions that a text names while it is loaded: those that the dictionary holds already and those of
/// the text, which wait here until all of it is understood and then move into the dictionary together.
///
/// Names are views of the text or of `names_`; elements that wait are owned here, those of the dictionary are
/// not. Failures are Exceptions::InvalidFormat (or whatever the library throws) with the cause alone; the
/// loader adds source and line.
#pragma once

#include "HashIndex.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MetaMetadata/Dictionary.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace MXF::ZelmDictionary {

using Zelm::KLV::Key;
using Zelm::MetaMetadata::MetaElement;
using Zelm::Templates::auto_ptr;
using Zelm::Types::UniversalLabel;
using Zelm::Types::Identifiers::Identifier;

using Attribute = Zelm::MetaMetadata::MetaAttribute;
using SharedAttribute = Zelm::Templates::SharedPtr<Attribute, Zelm::Templates::LockedCounter>;

/// What a `type` line defines.
struct TypeDefinition {
    std::string_view name;
    Identifier dataType = Identifier::Unknown;
    Identifier subType = Identifier::Unknown; ///< of the members, when dataType is a collection
    std::vector<std::string_view> targets{};  ///< classes that a reference may point to
    Zelm::Templates::SharedPtr<Zelm::MetaMetadata::Enumeration> enumeration{};
    bool ownsEnumeration = false; ///< false: that of the type that this one is made of, if any
    std::vector<Key> allowed{};   ///< `targets` and their subclasses, known once the whole text is read
    unsigned line = 0;

    /// Of the value, or of each member.
    Identifier valueType() const { return isCollection(dataType) ? subType : dataType; }
};

struct ElementDefinition {
    std::string_view symbol;
    MetaElement* element = nullptr;
    auto_ptr<MetaElement> owned{};        ///< until it moves into the dictionary
    TypeDefinition const* type = nullptr; ///< null for an element of the dictionary
    std::uint16_t staticTag = 0;          ///< 0: none
    bool isAmbiguous = false;             ///< other elements of the dictionary have the symbol too
};

struct ClassDefinition {
    static constexpr std::uint32_t none = HashIndex::none;

    std::string_view symbol;
    Key key;
    std::uint32_t parent = none;
    bool isNew = false;
    std::optional<Zelm::MetaMetadata::MetaMetadataSet> definition{}; ///< absent: the dictionary's stands
    std::vector<std::uint32_t> children{};
};

class Definitions {
public:
    explicit Definitions(Zelm::MetaMetadata::Dictionary& dictionary);

    /// Adds a type and gives it back. Throws when the name is taken.
    TypeDefinition& addType(TypeDefinition type);
    TypeDefinition const& type(std::string_view name) const;

    /// Adds an element of a type. Throws when name or label is taken.
    MetaElement& addElement(std::string_view symbol, UniversalLabel const& label, TypeDefinition const& type);
    ElementDefinition& element(std::string_view symbolOrLabel);

    /// Adds a class and gives its number. Throws when name or key is taken.
    std::uint32_t addClass(std::string_view symbol, Key const& key, std::uint32_t parent);
    std::uint32_t classNumber(std::string_view symbolOrKey) const;
    Zelm::MetaMetadata::MetaMetadataSet& definition(std::uint32_t classNumber);
    ClassDefinition const& classAt(std::uint32_t classNumber) const { return classes_[classNumber]; }

    /// Claims a static tag for an element. Throws when either has another partner.
    void claimTag(ElementDefinition& element, std::uint16_t tag);

    /// Adds an attribute to a class and to the classes that inherit from it.
    void addAttribute(std::uint32_t classNumber, SharedAttribute const& attribute);

    /// Resolves the targets of references. `line` is set to that of the type at hand, for the message when it
    /// throws.
    void resolveTargets(unsigned& line);

    /// Moves everything into the dictionary.
    void commit();

private:
    void importClasses();
    void importElements();
    std::string_view keep(std::u16string const& name);
    bool inheritsFrom(std::uint32_t classNumber, std::uint32_t ancestor) const;
    unsigned depth(std::uint32_t classNumber) const;
    void collectSubclasses(std::uint32_t classNumber, std::vector<Key>& keys) const;
    void widenKnownReferences();

    std::uint32_t findType(std::string_view name) const;
    std::uint32_t findElement(std::string_view symbol) const;
    std::uint32_t findElement(UniversalLabel const& label) const;
    std::uint32_t findClass(std::string_view symbol) const;
    std::uint32_t findClass(Key const& key) const;
    ElementDefinition& index(ElementDefinition element);
    std::uint32_t index(ClassDefinition added);

    Zelm::MetaMetadata::Dictionary& dictionary_;
    std::deque<std::string> names_;
    std::deque<TypeDefinition> types_;
    std::deque<ElementDefinition> elements_;
    std::deque<ClassDefinition> classes_;
    HashIndex typesByName_;
    HashIndex elementsBySymbol_;
    HashIndex elementsByLabel_;
    HashIndex elementsByTag_;
    HashIndex classesBySymbol_;
    HashIndex classesByKey_;
    std::vector<std::pair<MetaElement*, std::vector<Key>>> widened_;
};

/// `cause` as the exception that every failure of a text is.
[[noreturn]] void refuse(std::string const& cause);

/// `text` in single quotes.
std::string quote(std::string_view text);

} // namespace MXF::ZelmDictionary
