#include "MXF/Zelm/Metadata/MetadataSet.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Labels.h"
#include "MXF/Zelm/Metadata/MetadataSetFactory.h"
#include "MXF/Zelm/Metadata/PartitionDictionary.h"
#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>

namespace MXF::Zelm::Metadata {

namespace {

using MetaMetadata::UnknownAttribute;
using Status = MetaMetadata::AttributeRequiredStatus::Status;

constexpr unsigned char defaultBerLength = 4;

/// The length of an item: an unsigned integer of `width` bytes.
std::uint64_t readItemLength(KLV::Value& value, unsigned width) {
    unsigned char bytes[8] = {};
    value.readValue(bytes + sizeof bytes - width, width);
    return ByteCoders::decodeInteger<std::uint64_t>(bytes);
}

std::u16string nameOf(MetaMetadata::PropertyMap const& definition) {
    auto const* const name = definition.findProperty(u"name");
    return name != nullptr ? *name : u"<unknown>";
}

/// True when this is what the registers or SMPTE 377M call the thing.
bool isCalled(std::u16string_view name, MetaMetadata::PropertyMap const& definition) {
    auto const is = [&](std::u16string_view property) {
        auto const* const own = definition.findProperty(property);
        return own != nullptr && *own == name;
    };
    return is(u"name") || is(u"name377");
}

/// The element as the kind that an operation is for.
template <class Kind>
Kind& as(Element& element) {
    auto* const wanted = dynamic_cast<Kind*>(&element);
    if (wanted == nullptr)
        throw Exceptions::InvalidElement(u"Element '" + element.name() +
                                         u"' does not hold what this operation is for");
    return *wanted;
}

} // namespace

MetadataSetOwner::~MetadataSetOwner() = default;
Visitors::MetadataSetVisitor::~MetadataSetVisitor() = default;
Visitors::NonConstMetadataSetVisitor::~NonConstMetadataSetVisitor() = default;

MetadataSet::MetadataSet(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                         MetadataSetOwner* owner)
    : key_(key), definition_(definition), owner_(owner), berLength_(defaultBerLength) {
    if (definition == nullptr || definition->key() != key)
        throw Exceptions::InvalidMetadataSet("MetadataSet Key and MetaMetadataSet do not agree");
}

MetadataSet::~MetadataSet() = default;

std::u16string MetadataSet::name() const { return nameOf(*definition_); }

MetadataSet::Elements::const_iterator MetadataSet::lowerBound(Types::UniversalLabel const& label) const {
    return std::lower_bound(elements_.begin(), elements_.end(), label,
                            [](auto const& element, Types::UniversalLabel const& wanted) {
                                return element->metaElement()->universalLabel() < wanted;
                            });
}

void MetadataSet::load(KLV::Packet& packet, PartitionDictionary const& dictionary) {
    berLength_ = packet.berLength();
    offset_ = packet.keyAbsoluteOffset();
    unsigned const lengthWidth = key_.lengthFieldLength();
    if (key_.localTagFieldLength() != Types::LocalTag::wireSize ||
        (lengthWidth != 1 && lengthWidth != 2 && lengthWidth != 4))
        throw Exceptions::at(
            packet.keyAbsoluteOffset(),
            Exceptions::InvalidMetadataSet("Invalid Metadata Set local field length or length field length"));
    KLV::Value& value = packet.value();
    while (!value.endOfStream())
        loadElement(value, dictionary, packet.valueAbsoluteOffset() + (packet.length() - value.remaining()));
}

/// Reads the item at `offset`, where the value stands.
void MetadataSet::loadElement(KLV::Value& value, PartitionDictionary const& dictionary,
                              std::uint64_t offset) {
    Types::LocalTag const tag(value);
    std::uint64_t const length = readItemLength(value, key_.lengthFieldLength());
    if (length > value.remaining())
        throw Exceptions::at(
            offset,
            Exceptions::InvalidLength("Invalid data size in Value to create an element in the metadataSet."));
    KLV::Value item(value, length);
    auto element = readElement(item.readRemaining(), tag, dictionary);
    element->absoluteOffset(offset);
    if (dynamic_cast<InvalidElement*>(element.get()) != nullptr) {
        invalid_.push_back(std::move(element));
        return;
    }
    element->isHeld_ = true;
    elements_.insert(lowerBound(element->metaElement()->universalLabel()), std::move(element));
}

/// The element that `tag` and `bytes` make: an invalid one when they make no valid one.
Templates::auto_ptr<Element> MetadataSet::readElement(std::vector<unsigned char> const& bytes,
                                                      Types::LocalTag const& tag,
                                                      PartitionDictionary const& dictionary) {
    using Resolution = PartitionDictionary::Resolution;
    Types::UniversalLabel const* label = nullptr;
    auto const invalid = [&](Element::AttributePtr attribute) {
        Templates::auto_ptr<Element> element(new InvalidElement(std::move(attribute), this, tag));
        element->baseValue(Types::Unknown(bytes));
        return element;
    };
    auto const unknown = [&](UnknownAttribute::Reason reason) {
        return invalid(std::make_shared<UnknownAttribute>(
            tag, reason, label != nullptr ? std::optional(*label) : std::nullopt));
    };

    switch (dictionary.resolve(tag, label)) {
    case Resolution::InvalidTag:
        return unknown(UnknownAttribute::Reason::InvalidTag);
    case Resolution::NotFound:
        return unknown(UnknownAttribute::Reason::NotInPrimer);
    case Resolution::StaticTagRedefined:
        return unknown(UnknownAttribute::Reason::StaticTagRedefined);
    case Resolution::Found:
        break;
    }
    auto attribute = definition_->findMetaAttributeOfAnyVersion(*label);
    if (!attribute) {
        auto const* const element = dictionary.dictionary()->findMetaElementOfAnyVersion(*label);
        return element != nullptr ? invalid(std::make_shared<MetaMetadata::MisplacedAttribute>(*element))
                                  : unknown(UnknownAttribute::Reason::NotInDictionary);
    }
    if (findElement(attribute->metaElement().universalLabel()) != nullptr)
        return unknown(UnknownAttribute::Reason::Repeated);
    try {
        auto element = ElementFactory::create(std::move(attribute), this);
        DataIO::Memory::MemoryViewDataSource source(bytes.data(), bytes.size());
        KLV::Value value(source, bytes.size());
        element->load(value);
        if (value.endOfStream())
            return element;
    } catch (Exceptions::BaseException const&) {
        // Not a value of the attribute's type: its bytes are kept.
    }
    return unknown(UnknownAttribute::Reason::MalformedValue);
}

/// Bytes of the set's value when it is written.
std::uint64_t MetadataSet::valueLength(bool withInvalid) const {
    int const lengthWidth = static_cast<int>(key_.lengthFieldLength());
    std::uint64_t length = 0;
    for (auto const& element : elements_)
        length += element->serializedSize(lengthWidth);
    if (withInvalid)
        for (auto const& element : invalid_)
            length += element->serializedSize(lengthWidth);
    return length;
}

void MetadataSet::serialize(DataIO::DataSink& sink, PartitionDictionary const& dictionary,
                            bool withInvalid) const {
    int const lengthWidth = static_cast<int>(key_.lengthFieldLength());
    std::uint64_t const length = valueLength(withInvalid);

    unsigned char const berLength = std::max(berLength_, ByteCoders::calculateBERSize(length));
    unsigned char field[ByteCoders::maximumBERSize];
    ByteCoders::codeBER(length, berLength, field);
    sink.write(key_.rawBuffer(), KLV::Key::size());
    sink.write(field, berLength);
    for (auto const& element : elements_)
        element->serialize(sink, dictionary, lengthWidth);
    if (withInvalid)
        for (auto const& element : invalid_)
            element->serialize(sink, dictionary, lengthWidth);
}

std::uint64_t MetadataSet::serializedSize(bool withInvalid) const {
    std::uint64_t const length = valueLength(withInvalid);
    return KLV::Key::size() + std::max(berLength_, ByteCoders::calculateBERSize(length)) + length;
}

Element* MetadataSet::findElement(Types::UniversalLabel const& label) const {
    auto const place = lowerBound(label);
    return place != elements_.end() && (*place)->metaElement()->universalLabel() == label ? place->get()
                                                                                          : nullptr;
}

Element* MetadataSet::findElement(std::u16string_view name) const {
    auto const found = std::find_if(elements_.begin(), elements_.end(), [&](auto const& element) {
        return isCalled(name, *element->metaElement());
    });
    return found != elements_.end() ? found->get() : nullptr;
}

Types::UniversalLabel const& MetadataSet::labelOf(std::u16string_view name) const {
    auto const found =
        std::find_if(definition_->metaAttributesBegin(), definition_->metaAttributesEnd(),
                     [&](auto const& attribute) { return isCalled(name, attribute->metaElement()); });
    if (found == definition_->metaAttributesEnd())
        throw Exceptions::InvalidElement(u"Sets of the class '" + this->name() + u"' have no property '" +
                                         std::u16string(name) + u"'");
    return (*found)->metaElement().universalLabel();
}

Element& MetadataSet::find(Types::UniversalLabel const& label) const {
    auto* const element = findElement(label);
    if (element == nullptr)
        throw Exceptions::InvalidElement(u"No element with this Universal Label was found: " +
                                         label.toString());
    return *element;
}

Element& MetadataSet::insert(Templates::auto_ptr<Element> created) {
    created->isHeld_ = true;
    Element& element = *created;
    elements_.insert(lowerBound(element.metaElement()->universalLabel()), std::move(created));
    try {
        element.announceAdded();
    } catch (...) {
        drop(element);
        throw;
    }
    return element;
}

/// Runs `change(element)` on the element of a label, on a new one when the set has none.
template <class Change>
Element& MetadataSet::changeElement(Types::UniversalLabel const& label, Change change) {
    if (auto* const existing = findElement(label)) {
        change(*existing);
        return *existing;
    }
    auto attribute = definition_->findMetaAttribute(label);
    if (!attribute)
        throw Exceptions::InvalidElement(u"No element with this Universal Label was found: " +
                                         label.toString());
    auto created = ElementFactory::create(std::move(attribute), this);
    change(*created);
    return insert(std::move(created));
}

Element& MetadataSet::value(Types::UniversalLabel const& label, Types::BaseType const& value) {
    return changeElement(label, [&value](Element& element) { element.baseValue(value); });
}

Element& MetadataSet::add(Types::UniversalLabel const& label, Types::SimpleDataType const& member) {
    return changeElement(label, [&member](Element& element) { as<CollectionElement>(element).add(member); });
}

Element& MetadataSet::reference(Types::UniversalLabel const& label, MetadataSet const& target) {
    return changeElement(label,
                         [&target](Element& element) { as<ReferenceElement>(element).reference(target); });
}

Element& MetadataSet::addReference(Types::UniversalLabel const& label, MetadataSet const& target) {
    return changeElement(
        label, [&target](Element& element) { as<CollectionReferenceElement>(element).addReference(target); });
}

bool MetadataSet::removeReference(Types::UniversalLabel const& label, MetadataSet const& target) {
    auto* const references = dynamic_cast<CollectionReferenceElement*>(findElement(label));
    if (references == nullptr || target.instanceUID() == nullptr)
        return false;
    auto const targets = references->targets();
    auto const found = std::find(targets.begin(), targets.end(), *target.instanceUID());
    if (found == targets.end())
        return false;
    references->remove(static_cast<std::size_t>(found - targets.begin()));
    return true;
}

bool MetadataSet::removeElement(Types::UniversalLabel const& label) {
    auto* const found = findElement(label);
    if (found == nullptr)
        return false;
    Element& element = *found;
    auto const* const attribute =
        dynamic_cast<MetaMetadata::MetaAttribute const*>(element.metaAttribute().get());
    if (attribute != nullptr &&
        attribute->requiredStatus() == MetaMetadata::AttributeRequiredStatus::Required)
        throw Exceptions::InvalidChange(element.message("' is required according to Schema"));
    element.announceRemoved();
    drop(element);
    return true;
}

/// Who was told of a change may have changed the set, so that no iterator outlives the telling.
void MetadataSet::drop(Element const& element) {
    std::erase_if(elements_, [&element](auto const& own) { return own.get() == &element; });
}

Templates::vector<MetadataSet*> MetadataSet::referencedSets(Types::UniversalLabel const& label) const {
    Templates::vector<MetadataSet*> sets;
    auto const* const holder = dynamic_cast<ReferenceHolder const*>(findElement(label));
    if (holder == nullptr || owner_ == nullptr)
        return sets;
    for (auto const& target : holder->targets())
        if (auto* const set = owner_->find(target))
            sets.push_back(set);
    return sets;
}

MetadataSet* MetadataSet::referencedSet(Types::UniversalLabel const& label) const {
    auto const sets = referencedSets(label);
    return sets.empty() ? nullptr : sets.front();
}

Element& MetadataSet::createInvalidElement(Element::AttributePtr attribute, Types::LocalTag const& tag,
                                           KLV::Value& value) {
    Templates::auto_ptr<Element> element(new InvalidElement(std::move(attribute), this, tag));
    element->load(value);
    invalid_.push_back(std::move(element));
    return *invalid_.back();
}

void MetadataSet::removedInvalidElement(Element* element) {
    auto const found = std::find_if(invalid_.begin(), invalid_.end(),
                                    [element](auto const& own) { return own.get() == element; });
    if (found == invalid_.end())
        throw Exceptions::InvalidElement("Element not found in Invalid Element list!");
    invalid_.erase(found);
}

Types::UUID const* MetadataSet::instanceUID() const { return value<Types::UUID>(instanceUIDLabel); }

Templates::auto_ptr<MetadataSet> MetadataSet::clone(bool newInstanceUID, MetadataSetOwner* owner) const {
    auto copy = MetadataSetFactory::instance().create(*definition_, nullptr);
    copy->berLength_ = berLength_;
    for (auto const& element : elements_)
        copy->elements_.push_back(element->copyFor(copy.get()));
    for (auto const& element : invalid_) {
        auto const& original = static_cast<InvalidElement const&>(*element);
        copy->invalid_.emplace_back(new InvalidElement(original.metaAttribute(), copy.get(), original.tag()));
        copy->invalid_.back()->baseValue(original.value());
    }
    if (newInstanceUID)
        copy->value(instanceUIDLabel, Types::UUID::generate());
    copy->owner_ = owner;
    if (owner != nullptr)
        owner->metadataSetCloned(*this, *copy);
    return copy;
}

void MetadataSet::accept(Visitors::MetadataSetVisitor& visitor) const { visitor.visit(*this); }
void MetadataSet::accept(Visitors::NonConstMetadataSetVisitor& visitor) { visitor.visit(*this); }

/// Appends the elements that hold their distinguished value, which says "unknown", and whose required status
/// is wanted.
template <class Wanted>
void MetadataSet::unknownValues(Wanted wanted, Templates::vector<Element*>& elements) const {
    for (auto const& element : elements_) {
        auto const* const attribute =
            dynamic_cast<MetaMetadata::MetaAttribute const*>(element->metaAttribute().get());
        if (attribute == nullptr || !wanted(attribute->requiredStatus()))
            continue;
        auto const* const distinguished = attribute->getDistinguishedValue();
        if (distinguished != nullptr && element->baseValue() != nullptr &&
            *distinguished == *element->baseValue())
            elements.push_back(element.get());
    }
}

void MetadataSet::openElements(Templates::vector<Element*>& elements) const {
    unknownValues(
        [](Status status) { return status == Status::Required || status == Status::EncoderRequired; },
        elements);
}

void MetadataSet::incompleteElements(Templates::vector<Element*>& elements) const {
    unknownValues([](Status status) { return status == Status::BestEffort; }, elements);
}

void MetadataSet::possiblyOpenElements(Templates::vector<Element*>& elements) const {
    unknownValues([](Status status) { return status == Status::DecoderRequired; }, elements);
}

void MetadataSet::possiblyIncompleteElements(Templates::vector<Element*>& elements) const {
    unknownValues([](Status status) { return status == Status::Optional; }, elements);
}

void MetadataSet::missingAttributes(Templates::vector<MissingAttribute>& missing) const {
    std::for_each(definition_->metaAttributesBegin(), definition_->metaAttributesEnd(),
                  [&](auto const& attribute) {
                      auto const status = attribute->requiredStatus();
                      if (status != Status::Optional && status != Status::DecoderRequired &&
                          findElement(attribute->metaElement().universalLabel()) == nullptr)
                          missing.push_back({this, attribute.get()});
                  });
}

void MetadataSet::possiblyForbiddenElements(Templates::vector<Element*>& elements) const {
    for (auto const& element : invalid_)
        if (element->metaElement() != nullptr)
            elements.push_back(element.get());
}

void MetadataSet::getSemanticsValidationElements(Templates::vector<Element*>& elements) const {
    for (auto const& element : elements_)
        if (element->metaElement()->findProperty(u"RequiresSemanticsValidation") != nullptr)
            elements.push_back(element.get());
}

} // namespace MXF::Zelm::Metadata
