#include "support/SmallDictionary.h"

namespace MXF::Zelm::Test {

namespace {

using namespace MetaMetadata;
namespace Id = Types::Identifiers;

using Attribute = std::shared_ptr<MetaAttribute>;

template <class Element, class... Arguments>
Attribute define(Dictionary& dictionary, const char16_t* name, std::uint16_t tag,
                 AttributeRequiredStatus::Status status, std::vector<KLV::Key> const& allowed,
                 KLV::Key const& label, Arguments... arguments) {
    auto element = std::make_unique<Element>(label, arguments...);
    element->addProperty(u"name", name);
    if constexpr (std::is_base_of_v<MetaReferenceHolder, Element>)
        for (auto const& key : allowed)
            element->addAllowedMetadataSet(key);
    auto attribute = std::make_shared<MetaAttribute>(*element, status);
    dictionary.add(label, std::move(element));
    if (tag != 0)
        dictionary.add(Types::LocalTag(tag), label);
    return attribute;
}

void addClass(Dictionary& dictionary, KLV::Key const& key, const char16_t* name,
              std::vector<Attribute> const& attributes) {
    MetaMetadataSet definition(key);
    definition.addProperty(u"name", name);
    for (auto const& attribute : attributes)
        definition.addMetaAttribute(attribute);
    dictionary.add(key, definition);
}

} // namespace

Metadata::PartitionDictionary::DictionaryPtr smallDictionary() {
    constexpr auto optional = AttributeRequiredStatus::Optional;
    constexpr auto required = AttributeRequiredStatus::Required;
    auto dictionary = std::make_shared<Dictionary>();
    Dictionary& d = *dictionary;
    auto const uidAttribute =
        define<MetaSimpleElement>(d, u"InstanceUID", 0x3C0A, required, {}, instanceUID, Id::UUID);
    addClass(d, prefaceKey, u"Preface",
             {uidAttribute,
              define<MetaSimpleElement>(d, u"Modified", 0x3B02, optional, {}, modified, Id::Timestamp),
              define<MetaReferenceElement>(d, u"Storage", 0x3B03, required, {storageKey}, storage,
                                           Id::StrongReference)});
    addClass(d, storageKey, u"Storage",
             {uidAttribute, define<MetaReferenceCollection>(d, u"Packages", 0x1901, optional, {thingKey},
                                                            packages, Id::Batch, Id::StrongReference)});
    auto const name = define<MetaSimpleElement>(d, u"Title", 0, optional, {}, title, Id::UTF16String);
    d.findMetaElement(title)->addProperty(u"RequiresSemanticsValidation", u"");
    addClass(d, thingKey, u"Thing",
             {uidAttribute, name,
              define<MetaCollection>(d, u"Lines", 0, optional, {}, lines, Id::Array, Id::Int32,
                                     MetaCollectionElement::CollectionSizeLimits(2, 3)),
              define<MetaReferenceElement>(d, u"Next", 0, optional, {}, next, Id::StrongReference),
              define<MetaReferenceCollection>(d, u"Friends", 0, optional, {thingKey}, friends, Id::Batch,
                                              Id::WeakReference)});
    addClass(d, byteTagsKey, u"ByteTags", {uidAttribute});
    define<MetaSimpleElement>(d, u"Stranger", 0, optional, {}, stranger, Id::UInt8);
    return dictionary;
}

std::unique_ptr<Metadata::PartitionMetadata>
emptyMetadata(Metadata::PartitionDictionary::DictionaryPtr const& dictionary) {
    auto primer = std::make_unique<Packs::PrimerPack>();
    std::uint16_t tag = 0x8001;
    for (auto const& label : {title, lines, next, friends, stranger})
        primer->add(Types::LocalTag(tag++), label);
    return std::make_unique<Metadata::PartitionMetadata>(
        std::make_unique<Metadata::PartitionDictionary>(dictionary, std::move(primer)));
}

Bytes item(std::uint16_t tag, Bytes const& value) {
    return number(tag) + number(static_cast<std::uint16_t>(value.size())) + value;
}

Bytes uidItem(unsigned char last) {
    Types::UUID const uuid = uid(last);
    return item(0x3C0A, Bytes(uuid.rawBuffer(), uuid.rawBuffer() + 16));
}

Metadata::MetadataSet* load(Metadata::PartitionMetadata& metadata, Bytes const& packet) {
    OnePacket in(packet);
    return metadata.load(*in);
}

} // namespace MXF::Zelm::Test
