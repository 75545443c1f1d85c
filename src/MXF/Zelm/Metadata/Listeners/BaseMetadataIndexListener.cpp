#include "MXF/Zelm/Metadata/Listeners/BaseMetadataIndexListener.h"

#include "MXF/Zelm/Metadata/MetadataSet.h"

namespace MXF::Zelm::Metadata::Listeners {

namespace {

/// Adds bytes to an FNV-1a hash.
std::uint64_t hashOf(std::uint64_t hash, unsigned char const* bytes, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        hash = (hash ^ bytes[i]) * 0x100000001B3u;
    return hash;
}

std::uint64_t hashOf(Types::UniversalLabel const& label, Types::SimpleDataType const& value) {
    constexpr std::uint64_t start = 0xCBF29CE484222325u;
    return hashOf(hashOf(start, label.rawBuffer(), Types::UniversalLabel::wireSize), value.rawBuffer(),
                  value.size());
}

/// The element's value, null when it is none or a collection.
Types::SimpleDataType const* simpleValue(Element const& element) {
    auto const* const value = element.baseValue();
    if (value == nullptr || value->identifier() == Types::Identifiers::Array ||
        value->identifier() == Types::Identifiers::Batch)
        return nullptr;
    return static_cast<Types::SimpleDataType const*>(value);
}

} // namespace

BaseMetadataIndexListener::BaseMetadataIndexListener() = default;
BaseMetadataIndexListener::~BaseMetadataIndexListener() = default;

Templates::vector<MetadataSet*> BaseMetadataIndexListener::find(Types::UniversalLabel const& label,
                                                                Types::SimpleDataType const& value) const {
    Templates::vector<MetadataSet*> sets;
    auto const [first, last] = entries_.equal_range(hashOf(label, value));
    for (auto entry = first; entry != last; ++entry) {
        Element const& element = *entry->second;
        if (element.metaElement()->universalLabel() == label && element.baseValue()->equals(value))
            sets.push_back(&element.metadataSet());
    }
    return sets;
}

/// Enters the element under its value, wherever it was before.
void BaseMetadataIndexListener::enter(Element& element) {
    auto const* const value = simpleValue(element);
    if (value == nullptr)
        return;
    forget(element);
    auto const hash = hashOf(element.metaElement()->universalLabel(), *value);
    entryOf_.emplace(&element, entries_.emplace(hash, &element));
}

void BaseMetadataIndexListener::forget(Element const& element) {
    auto const found = entryOf_.find(&element);
    if (found == entryOf_.end())
        return;
    entries_.erase(found->second);
    entryOf_.erase(found);
}

void BaseMetadataIndexListener::createdMetadataSet(MetadataSet* set) {
    for (auto const& element : *set)
        enter(*element);
}

void BaseMetadataIndexListener::removedMetadataSet(MetadataSet* set) {
    for (auto const& element : *set)
        forget(*element);
}

void BaseMetadataIndexListener::addedElement(MetadataSet&, MetaMetadata::MetaElement const*, Element& element,
                                             Types::BaseType const&) {
    enter(element);
}

void BaseMetadataIndexListener::updatedElement(MetadataSet&, MetaMetadata::MetaElement const*,
                                               Element& element, Types::SimpleDataType const&,
                                               Types::SimpleDataType const&) {
    enter(element);
}

void BaseMetadataIndexListener::removedElement(MetadataSet&, MetaMetadata::MetaElement const*,
                                               Element& element, Types::BaseType const&) {
    forget(element);
}

} // namespace MXF::Zelm::Metadata::Listeners
