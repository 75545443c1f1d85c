#include "MXF/Zelm/MetaMetadata/MetaElement.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <functional>

namespace MXF::Zelm::MetaMetadata {

namespace {

using Types::Identifiers::Identifier;

[[noreturn]] void refuse(std::string const& message, Identifier identifier) {
    throw Exceptions::InvalidMetaElement(message + std::string(Types::Identifiers::toText(identifier)));
}

} // namespace

namespace Visitors {
MetaElementVisitor::~MetaElementVisitor() = default;
NonConstMetaElementVisitor::~NonConstMetaElementVisitor() = default;
} // namespace Visitors

MetaElement::MetaElement(Types::UniversalLabel const& label, Identifier dataType)
    : label_(label), dataType_(dataType) {}

MetaElement::~MetaElement() = default;

Enumeration::Enumeration() = default;
Enumeration::~Enumeration() = default;

void Enumeration::add(Templates::auto_ptr<Types::BaseType> value, std::u16string_view name) {
    values_.emplace_back(std::move(value), name);
}

Templates::vector<Types::BaseType*> Enumeration::values() const {
    Templates::vector<Types::BaseType*> values;
    for (auto const& value : values_)
        values.push_back(value.first.get());
    return values;
}

std::u16string const* Enumeration::findName(Types::BaseType const& value) const {
    for (auto const& [own, name] : values_)
        if (*own == value)
            return &name;
    return nullptr;
}

MetaValueHolder::~MetaValueHolder() = default;

Templates::vector<Types::BaseType*> MetaValueHolder::enumeration() const {
    return enumeration_ ? enumeration_->values() : Templates::vector<Types::BaseType*>();
}

void MetaValueHolder::enumeration(Templates::SharedPtr<Enumeration const> values) {
    enumeration_ = std::move(values);
}

MetaReferenceHolder::~MetaReferenceHolder() = default;

void MetaReferenceHolder::addAllowedMetadataSet(KLV::Key const& key) {
    auto const place = std::lower_bound(allowed_.begin(), allowed_.end(), key);
    if (place == allowed_.end() || *place != key)
        allowed_.insert(place, key);
}

void MetaReferenceHolder::addAllowedMetadataSets(std::vector<KLV::Key> const& keys) {
    allowed_.reserve(allowed_.size() + keys.size());
    allowed_.insert(allowed_.end(), keys.begin(), keys.end());
    if (std::adjacent_find(allowed_.begin(), allowed_.end(), std::greater_equal<>()) == allowed_.end())
        return; // in order already, as they are when they come from another element of the same type
    std::sort(allowed_.begin(), allowed_.end());
    allowed_.erase(std::unique(allowed_.begin(), allowed_.end()), allowed_.end());
}

Templates::list<KLV::Key> MetaReferenceHolder::allowedMetadataSets() const {
    return {allowed_.begin(), allowed_.end()};
}

bool MetaReferenceHolder::allows(KLV::Key const& key) const {
    return allowed_.empty() || std::binary_search(allowed_.begin(), allowed_.end(), key);
}

MetaSimpleElement::MetaSimpleElement(Types::UniversalLabel const& label, Identifier dataType)
    : MetaElement(label, dataType) {
    if (!Types::Identifiers::isSimpleValue(dataType))
        refuse("Tried to create a MetaSimpleElement with dataType:", dataType);
}

MetaSimpleElement::~MetaSimpleElement() = default;
void MetaSimpleElement::accept(Visitors::MetaElementVisitor& visitor) const { visitor.visit(*this); }
void MetaSimpleElement::accept(Visitors::NonConstMetaElementVisitor& visitor) { visitor.visit(*this); }

MetaCollectionElement::MetaCollectionElement(Types::UniversalLabel const& label, Identifier dataType,
                                             Identifier dataSubType, CollectionSizeLimits limits)
    : MetaElement(label, dataType), dataSubType_(dataSubType), limits_(limits) {
    if (!Types::Identifiers::isCollection(dataType))
        refuse("Tried to create a MetaCollectionElement derived class with dataType:", dataType);
    if (!limits.isValid())
        throw Exceptions::InvalidMetaElement(
            "Tried to create a MetaCollectionElement derived class with invalid limits:" +
            std::to_string(limits.minimum) + " to " + std::to_string(limits.maximum));
}

MetaCollectionElement::~MetaCollectionElement() = default;

MetaCollection::MetaCollection(Types::UniversalLabel const& label, Identifier dataType,
                               Identifier dataSubType, CollectionSizeLimits limits)
    : MetaCollectionElement(label, dataType, dataSubType, limits) {
    if (!Types::Identifiers::isSimpleValue(dataSubType))
        refuse("Tried to create a MetaCollection with dataSubType:", dataSubType);
}

MetaCollection::~MetaCollection() = default;
void MetaCollection::accept(Visitors::MetaElementVisitor& visitor) const { visitor.visit(*this); }
void MetaCollection::accept(Visitors::NonConstMetaElementVisitor& visitor) { visitor.visit(*this); }

MetaReferenceElement::MetaReferenceElement(Types::UniversalLabel const& label, Identifier dataType)
    : MetaElement(label, dataType) {
    if (!Types::Identifiers::isReference(dataType))
        refuse("Tried to create a MetaReferenceElement with dataType:", dataType);
}

MetaReferenceElement::~MetaReferenceElement() = default;
void MetaReferenceElement::accept(Visitors::MetaElementVisitor& visitor) const { visitor.visit(*this); }
void MetaReferenceElement::accept(Visitors::NonConstMetaElementVisitor& visitor) { visitor.visit(*this); }

MetaReferenceCollection::MetaReferenceCollection(Types::UniversalLabel const& label, Identifier dataType,
                                                 Identifier dataSubType, CollectionSizeLimits limits)
    : MetaCollectionElement(label, dataType, dataSubType, limits) {
    if (!Types::Identifiers::isReference(dataSubType))
        refuse("Tried to create a MetaReferenceCollection with dataType:", dataSubType);
}

MetaReferenceCollection::~MetaReferenceCollection() = default;
void MetaReferenceCollection::accept(Visitors::MetaElementVisitor& visitor) const { visitor.visit(*this); }
void MetaReferenceCollection::accept(Visitors::NonConstMetaElementVisitor& visitor) { visitor.visit(*this); }

} // namespace MXF::Zelm::MetaMetadata
