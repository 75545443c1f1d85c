#include "MXF/Zelm/Metadata/Element.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/MetadataSet.h"
#include "MXF/Zelm/Metadata/PartitionDictionary.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Types/BaseTypeFactory.h"

#include <string>

namespace MXF::Zelm::Metadata {

namespace {

using Types::Identifiers::Identifier;

std::string typeName(Identifier identifier) { return std::string(Types::Identifiers::toText(identifier)); }

[[noreturn]] void refuseType(Identifier found, Identifier wanted) {
    throw Exceptions::InvalidType("Setting value with an invalid type. Value Type of new value: " +
                                  typeName(found) + " Value type of element" + typeName(wanted));
}

Types::Factories::BaseTypeFactory& factory() { return Types::Factories::BaseTypeFactory::instance(); }

/// The element's label, also one that only its unknown attribute knows.
class LabelFinder : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    void visit(MetaMetadata::MetaAttribute const& attribute) override {
        label = &attribute.metaElement().universalLabel();
    }
    void visit(MetaMetadata::MisplacedAttribute const& attribute) override {
        label = &attribute.metaElement().universalLabel();
    }
    void visit(MetaMetadata::UnknownAttribute const& attribute) override {
        label = attribute.universalLabel();
    }

    Types::UniversalLabel const* label = nullptr;
};

} // namespace

Element::Element(AttributePtr attribute, MetadataSet* set) : attribute_(std::move(attribute)), set_(set) {
    if (!attribute_)
        throw Exceptions::InvalidElement("Null Meta Attribute");
}

Element::~Element() = default;

Types::UniversalLabel const* Element::universalLabel() const {
    LabelFinder finder;
    attribute_->accept(finder);
    return finder.label;
}

std::u16string Element::name() const {
    auto const* const name = metaElement() != nullptr ? metaElement()->findProperty(u"name") : nullptr;
    return name != nullptr ? *name : u"<unknown>";
}

std::optional<std::uint64_t> Element::absoluteOffset() const {
    return offset_ != noOffset ? std::optional(offset_) : std::nullopt;
}

MetaMetadata::MetaElement const& Element::definition() const {
    if (metaElement() == nullptr)
        throw Exceptions::InvalidElement("Null Meta Attribute");
    return *metaElement();
}

std::string Element::message(std::string const& rest) const {
    return "Value '" + Platform::toUtf8(name()) + rest;
}

Types::LocalTag Element::localTag(PartitionDictionary const& dictionary) const {
    return dictionary.find(definition().universalLabel());
}

void Element::serialize(DataIO::DataSink& sink, PartitionDictionary const& dictionary,
                        int lengthFieldLength) const {
    auto const* const value = baseValue();
    std::uint64_t const size = value != nullptr ? value->serializedSize() : 0;
    auto const width = static_cast<unsigned>(lengthFieldLength);
    if (width < 8 && (size >> (8 * width)) != 0)
        throw Exceptions::InvalidElementLength(message("' has " + std::to_string(size) +
                                                       " bytes, more than a length field of " +
                                                       std::to_string(width) + " bytes can say"));
    localTag(dictionary).serialize(sink);
    unsigned char length[sizeof size];
    ByteCoders::codeInteger(size, length);
    sink.write(length + sizeof length - width, width);
    if (value != nullptr)
        value->serialize(sink);
}

std::uint64_t Element::serializedSize(int lengthFieldLength) const {
    auto const* const value = baseValue();
    return Types::LocalTag::wireSize + static_cast<unsigned>(lengthFieldLength) +
           (value != nullptr ? value->serializedSize() : 0);
}

Templates::auto_ptr<Element> Element::copyFor(MetadataSet* set) const {
    auto copy = ElementFactory::create(attribute_, set);
    DataIO::Memory::MemoryDataSink bytes;
    baseValue()->serialize(bytes);
    DataIO::Memory::MemoryViewDataSource source(bytes.rawBuffer(),
                                                static_cast<std::size_t>(bytes.serializedSize()));
    KLV::Value value(source, bytes.serializedSize());
    copy->load(value);
    copy->isHeld_ = true;
    return copy;
}

/// Keeps an element from being changed and its set from being removed while listeners hear of the element.
class Element::Telling {
public:
    explicit Telling(Element& element) : element_(element) {
        element_.isToldOf_ = true;
        ++element_.set_->tellings_;
    }
    ~Telling() {
        --element_.set_->tellings_;
        element_.isToldOf_ = false;
    }
    Telling(Telling const&) = delete;
    Telling& operator=(Telling const&) = delete;

private:
    Element& element_;
};

template <class Tell, class Undo>
void Element::announce(Tell tellOwner, Undo undo) {
    MetadataSetOwner* const owner = isHeld_ ? set_->listeningOwner() : nullptr;
    if (owner == nullptr)
        return;
    if (isToldOf_ || set_->isLeaving_) {
        undo();
        throw Exceptions::InvalidChange(message("' cannot change while listeners are told of its change"));
    }
    Telling const telling(*this);
    try {
        tellOwner(*owner);
    } catch (...) {
        undo();
        owner->changeUndone();
        throw;
    }
}

void Element::announceAdded() {
    announce(
        [this](MetadataSetOwner& owner) { owner.addedElement(*set_, metaElement(), *this, *baseValue()); },
        [] {});
}

void Element::announceRemoved() {
    announce(
        [this](MetadataSetOwner& owner) { owner.removedElement(*set_, metaElement(), *this, *baseValue()); },
        [] {});
}

template <class Value>
void Element::replace(Templates::auto_ptr<Value>& slot, Templates::auto_ptr<Value> next) {
    std::swap(slot, next);
    announce(
        [&](MetadataSetOwner& owner) {
            if (next)
                owner.updatedElement(*set_, metaElement(), *this, *next, *slot);
            else
                owner.addedElement(*set_, metaElement(), *this, *slot);
        },
        [&] { std::swap(slot, next); });
}

void ReferenceHolder::requireAllowed(Types::UUID const& target) const {
    auto const* const allowed = dynamic_cast<MetaMetadata::MetaReferenceHolder const*>(&definition());
    MetadataSetOwner const* const owner = metadataSet().owner();
    MetadataSet const* const set = owner != nullptr ? owner->find(target) : nullptr;
    if (allowed == nullptr || set == nullptr || allowed->allows(set->key()))
        return;
    throw Exceptions::InvalidElement(u"ReferenceElement with UL " + definition().universalLabel().toString() +
                                     u" cannot reference set with key '" +
                                     set->key().toString(Types::StringRepresentationEncodingType::URN) +
                                     u"'");
}

SimpleElement::SimpleElement(AttributePtr attribute, MetadataSet* set)
    : ValueHolder(std::move(attribute), set) {}
SimpleElement::~SimpleElement() = default;

void SimpleElement::value(Types::SimpleDataType const& value) { baseValue(value); }

void SimpleElement::baseValue(Types::BaseType const& value) {
    if (value.identifier() != definition().dataType())
        refuseType(value.identifier(), definition().dataType());
    replace(value_, static_cast<Types::SimpleDataType const&>(value).clone());
}

void SimpleElement::load(KLV::Value& value) { value_ = factory().create(definition().dataType(), value); }

ReferenceElement::ReferenceElement(AttributePtr attribute, MetadataSet* set)
    : ReferenceHolder(std::move(attribute), set) {}
ReferenceElement::~ReferenceElement() = default;

Types::Reference const* ReferenceElement::value() const {
    return static_cast<Types::Reference const*>(value_.get());
}

void ReferenceElement::value(Types::Reference const& reference) { baseValue(reference); }

void ReferenceElement::reference(MetadataSet const& target) {
    if (target.instanceUID() == nullptr)
        throw Exceptions::InvalidElement(message("' cannot refer to a set without instance UID"));
    if (isStrong())
        value(Types::StrongReference(*target.instanceUID()));
    else
        value(Types::WeakReference(*target.instanceUID()));
}

Templates::vector<Types::UUID> ReferenceElement::targets() const {
    return value() != nullptr ? Templates::vector<Types::UUID>{value()->target()}
                              : Templates::vector<Types::UUID>();
}

bool ReferenceElement::isStrong() const {
    return definition().dataType() == Types::Identifiers::StrongReference;
}

void ReferenceElement::baseValue(Types::BaseType const& value) {
    if (value.identifier() != definition().dataType())
        throw Exceptions::InvalidType(
            "Trying to set a value to a ReferenceElement that differs from its MetaAttribute information");
    auto const& reference = static_cast<Types::Reference const&>(value);
    requireAllowed(reference.target());
    replace(value_, reference.clone());
}

void ReferenceElement::load(KLV::Value& value) { value_ = factory().create(definition().dataType(), value); }

template <class Base>
BasicCollectionElement<Base>::BasicCollectionElement(Element::AttributePtr attribute, MetadataSet* set)
    : Base(std::move(attribute), set),
      value_(factory().createCollection(collectionDefinition().dataType(),
                                        collectionDefinition().dataSubType())) {}

template <class Base>
MetaMetadata::MetaCollectionElement const& BasicCollectionElement<Base>::collectionDefinition() const {
    return static_cast<MetaMetadata::MetaCollectionElement const&>(this->definition());
}

template <class Base>
void BasicCollectionElement<Base>::requireSubType(Types::SimpleDataType const& member) const {
    if (member.identifier() != collectionDefinition().dataSubType())
        throw Exceptions::InvalidType(
            this->message("': Setting value with an invalid Sub Type in a collection."));
    requireMember(member);
}

template <class Base>
void BasicCollectionElement<Base>::requireCount(std::size_t count) const {
    requireRoomFor(count);
    requireNoFewer(count);
}

// A file may break either limit: adding is held against the upper one alone and taking out against the lower
// one, so that such a collection can be repaired.

template <class Base>
void BasicCollectionElement<Base>::requireRoomFor(std::size_t count) const {
    auto const limits = collectionDefinition().collectionSizeLimits();
    if (count > limits.maximum)
        throw Exceptions::InvalidChange(this->message("': Schema only allows to add " +
                                                      std::to_string(limits.maximum) +
                                                      " elements to this collection."));
}

template <class Base>
void BasicCollectionElement<Base>::requireNoFewer(std::size_t count) const {
    auto const limits = collectionDefinition().collectionSizeLimits();
    if (count < limits.minimum)
        throw Exceptions::InvalidChange(this->message("': Schema does not allow less than " +
                                                      std::to_string(limits.minimum) +
                                                      " elements in the collection."));
}

template <class Base>
void BasicCollectionElement<Base>::value(Types::Collection const& value) {
    baseValue(value);
}

template <class Base>
void BasicCollectionElement<Base>::baseValue(Types::BaseType const& value) {
    if (value.identifier() != collectionDefinition().dataType())
        throw Exceptions::InvalidType(this->message("': Collection can not be changed to another type!"));
    auto const& collection = static_cast<Types::Collection const&>(value);
    if (collection.subType() != collectionDefinition().dataSubType())
        throw Exceptions::InvalidType(this->message("': Setting collection with an invalid Sub Type."));
    requireCount(collection.count());
    for (std::size_t i = 0; i < collection.count(); ++i)
        requireMember(collection.at(i));
    this->replace(value_, Templates::auto_ptr<Types::Collection>(
                              static_cast<Types::Collection*>(collection.copy().release())));
}

template <class Base>
void BasicCollectionElement<Base>::exchange(Templates::auto_ptr<Types::Collection> next, std::size_t index,
                                            Types::SimpleDataType const* oldMember,
                                            Types::SimpleDataType const* newMember) {
    std::swap(value_, next);
    this->announce(
        [&](MetadataSetOwner& owner) {
            owner.updatedElementCollection(this->metadataSet(), this->metaElement(), *this, *value_, index,
                                           oldMember, newMember);
        },
        [&] { std::swap(value_, next); });
}

namespace {

Templates::auto_ptr<Types::Collection> copyOf(Types::Collection const& collection) {
    return Templates::auto_ptr<Types::Collection>(
        static_cast<Types::Collection*>(collection.copy().release()));
}

void requireIndex(std::size_t index, Types::Collection const& collection) {
    if (index >= collection.count())
        throw Exceptions::InvalidPosition("Index out of bounds");
}

} // namespace

template <class Base>
void BasicCollectionElement<Base>::add(Types::SimpleDataType const& member) {
    requireSubType(member);
    requireRoomFor(value_->count() + 1);
    std::size_t const index = value_->count();
    value_->add(member); // in place, so that filling a collection stays linear
    this->announce(
        [&](MetadataSetOwner& owner) {
            owner.updatedElementCollection(this->metadataSet(), this->metaElement(), *this, *value_, index,
                                           nullptr, &member);
        },
        [&] { value_->remove(index); });
}

template <class Base>
void BasicCollectionElement<Base>::set(std::size_t index, Types::SimpleDataType const& member) {
    requireIndex(index, *value_);
    requireSubType(member);
    auto const old = value_->at(index).clone();
    auto next = copyOf(*value_);
    next->set(index, member);
    exchange(std::move(next), index, old.get(), &member);
}

template <class Base>
void BasicCollectionElement<Base>::remove(std::size_t index) {
    requireIndex(index, *value_);
    requireNoFewer(value_->count() - 1);
    auto const old = value_->at(index).clone();
    auto next = copyOf(*value_);
    next->remove(index);
    exchange(std::move(next), index, old.get(), nullptr);
}

template <class Base>
void BasicCollectionElement<Base>::load(KLV::Value& value) {
    value_->load(value);
}

template class BasicCollectionElement<ValueHolder>;
template class BasicCollectionElement<ReferenceHolder>;

CollectionElement::~CollectionElement() = default;
void CollectionElement::requireMember(Types::SimpleDataType const&) const {}

ArrayElement::ArrayElement(AttributePtr attribute, MetadataSet* set)
    : CollectionElement(std::move(attribute), set) {}
ArrayElement::~ArrayElement() = default;
BatchElement::BatchElement(AttributePtr attribute, MetadataSet* set)
    : CollectionElement(std::move(attribute), set) {}
BatchElement::~BatchElement() = default;

CollectionReferenceElement::~CollectionReferenceElement() = default;

void CollectionReferenceElement::addReference(MetadataSet const& target) {
    if (target.instanceUID() == nullptr)
        throw Exceptions::InvalidElement(message("' cannot refer to a set without instance UID"));
    if (isStrong())
        add(Types::StrongReference(*target.instanceUID()));
    else
        add(Types::WeakReference(*target.instanceUID()));
}

Templates::vector<Types::UUID> CollectionReferenceElement::targets() const {
    Templates::vector<Types::UUID> targets;
    for (std::size_t i = 0; i < value().count(); ++i)
        targets.push_back(static_cast<Types::Reference const&>(value().at(i)).target());
    return targets;
}

bool CollectionReferenceElement::isStrong() const {
    return value().subType() == Types::Identifiers::StrongReference;
}

void CollectionReferenceElement::requireMember(Types::SimpleDataType const& member) const {
    requireAllowed(static_cast<Types::Reference const&>(member).target());
}

ArrayReferenceElement::ArrayReferenceElement(AttributePtr attribute, MetadataSet* set)
    : CollectionReferenceElement(std::move(attribute), set) {}
ArrayReferenceElement::~ArrayReferenceElement() = default;
BatchReferenceElement::BatchReferenceElement(AttributePtr attribute, MetadataSet* set)
    : CollectionReferenceElement(std::move(attribute), set) {}
BatchReferenceElement::~BatchReferenceElement() = default;

InvalidElement::InvalidElement(AttributePtr attribute, MetadataSet* set, Types::LocalTag const& tag)
    : Element(std::move(attribute), set), tag_(tag) {}
InvalidElement::~InvalidElement() = default;

void InvalidElement::baseValue(Types::BaseType const& value) {
    auto const* const unknown = Types::valueCast<Types::Unknown>(&value);
    if (unknown == nullptr)
        refuseType(value.identifier(), Types::Identifiers::Unknown);
    value_ = *unknown;
}

void InvalidElement::load(KLV::Value& value) { value_ = Types::Unknown(value); }

Types::LocalTag InvalidElement::localTag(PartitionDictionary const&) const { return tag_; }

} // namespace MXF::Zelm::Metadata
