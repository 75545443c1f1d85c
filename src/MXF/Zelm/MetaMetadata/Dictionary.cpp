#include "MXF/Zelm/MetaMetadata/Dictionary.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Types/LabelSearch.h"

#include <algorithm>

namespace MXF::Zelm::MetaMetadata {

namespace {

bool hasProperty(PropertyMap const& definition, std::u16string_view name, std::u16string_view value) {
    auto const* const found = definition.findProperty(name);
    return found != nullptr && *found == value;
}

} // namespace

LocalTagMap::~LocalTagMap() = default;
UniversalLabelMap::~UniversalLabelMap() = default;

Dictionary::Dictionary() = default;
Dictionary::~Dictionary() = default;

void Dictionary::add(Types::LocalTag const& tag, Types::UniversalLabel const& label) {
    auto const* const label0 = find(tag);
    auto const* const tag0 = find(label);
    if (label0 != nullptr && *label0 == label)
        return;
    if (label0 != nullptr || tag0 != nullptr)
        throw Exceptions::InvalidLocalTag(u"The local tag " + tag.toString() + u" cannot stand for " +
                                          label.toString() + u": " +
                                          (label0 != nullptr ? u"it stands for " + label0->toString()
                                                             : u"the label has the tag " + tag0->toString()));
    labels_.emplace(tag, label);
    tags_.emplace(label, tag);
}

void Dictionary::add(Types::UniversalLabel const& label, Templates::auto_ptr<MetaElement> element) {
    if (element->universalLabel() != label)
        throw Exceptions::InvalidMetaElement(u"The element " + element->universalLabel().toString() +
                                             u" cannot be added as " + label.toString());
    auto const before = elements_.size();
    elements_.try_emplace(elements_.end(), label, std::move(element)); // quick for ascending labels
    if (elements_.size() == before)
        throw Exceptions::InvalidMetaElement(u"The element " + label.toString() + u" is defined already");
}

void Dictionary::add(KLV::Key const& key, MetaMetadataSet const& metadataSet) {
    add(key, MetaMetadataSet(metadataSet));
}

void Dictionary::add(KLV::Key const& key, MetaMetadataSet&& metadataSet) {
    if (metadataSet.key() != key)
        throw Exceptions::InvalidMetadataSet("MetadataSet Key and MetaMetadataSet do not agree");
    sets_.insert_or_assign(key, std::move(metadataSet));
}

Types::UniversalLabel const* Dictionary::find(Types::LocalTag const& tag) const {
    auto const found = labels_.find(tag);
    return found != labels_.end() ? &found->second : nullptr;
}

Types::LocalTag const* Dictionary::find(Types::UniversalLabel const& label) const {
    auto const found = tags_.find(label);
    return found != tags_.end() ? &found->second : nullptr;
}

MetaElement const* Dictionary::findMetaElement(Types::UniversalLabel const& label) const {
    auto const found = elements_.find(label);
    return found != elements_.end() ? found->second.get() : nullptr;
}

MetaElement* Dictionary::findMetaElement(Types::UniversalLabel const& label) {
    auto const found = elements_.find(label);
    return found != elements_.end() ? found->second.get() : nullptr;
}

MetaElement const* Dictionary::findMetaElementOfAnyVersion(Types::UniversalLabel const& label) const {
    auto const found = Types::findOfAnyVersion(elements_, label);
    return found != elements_.end() ? found->second.get() : nullptr;
}

MetaMetadataSet const* Dictionary::find(KLV::Key const& key) const {
    auto const found = sets_.find(key);
    return found != sets_.end() ? &found->second : nullptr;
}

MetaMetadataSet const* Dictionary::findOfAnyVersion(KLV::Key const& key) const {
    if (auto const* const exact = find(key))
        return exact;
    auto const mask = setKeyVersionMask().key();
    auto const found = std::find_if(sets_.begin(), sets_.end(), [&](auto const& entry) {
        return KLV::compareMasked(entry.first, key, mask);
    });
    return found != sets_.end() ? &found->second : nullptr;
}

Templates::vector<MetaMetadataSet const*>
Dictionary::findMetaMetadataSetProperty(std::u16string_view name, std::u16string_view value) const {
    Templates::vector<MetaMetadataSet const*> found;
    for (auto const& [key, definition] : sets_)
        if (hasProperty(definition, name, value))
            found.push_back(&definition);
    return found;
}

Templates::vector<MetaMetadataSet const*>
Dictionary::findMetaMetadataSetWithMetaAtributeProperty(std::u16string_view name,
                                                        std::u16string_view value) const {
    Templates::vector<MetaMetadataSet const*> found;
    for (auto const& [key, definition] : sets_)
        if (std::any_of(
                definition.metaAttributesBegin(), definition.metaAttributesEnd(),
                [&](auto const& attribute) { return hasProperty(attribute->metaElement(), name, value); }))
            found.push_back(&definition);
    return found;
}

Templates::vector<MetaElement const*> Dictionary::findMetaElementProperty(std::u16string_view name,
                                                                          std::u16string_view value) const {
    Templates::vector<MetaElement const*> found;
    for (auto const& [label, element] : elements_)
        if (hasProperty(*element, name, value))
            found.push_back(element.get());
    return found;
}

Types::UniversalLabel const& setKeyVersionMask() {
    static Types::UniversalLabel const mask(u"FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.00.FF.FF",
                                            Types::StringRepresentationEncodingType::SeparatedHexadecimal);
    return mask;
}

} // namespace MXF::Zelm::MetaMetadata
