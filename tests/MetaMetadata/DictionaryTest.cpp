#include "MXF/Zelm/Platform/Initializer.h"
#include "MXF/Zelm/Types/Integers.h"
#include "support/SmallDictionary.h"

namespace MXF::Zelm::Test {

using namespace MetaMetadata;
namespace Id = Types::Identifiers;
using Types::LocalTag;
using Types::UniversalLabel;
using Limits = MetaCollectionElement::CollectionSizeLimits;

TEST(Dictionary, FindsWhatWasAdded) {
    Dictionary const empty;
    EXPECT_EQ(empty.find(prefaceKey), nullptr);
    EXPECT_EQ(empty.find(LocalTag(0x3C0A)), nullptr);
    EXPECT_EQ(empty.find(UniversalLabel(instanceUID)), nullptr);
    EXPECT_EQ(empty.findMetaElement(instanceUID), nullptr);
    EXPECT_EQ(empty.findMetaElementOfAnyVersion(instanceUID), nullptr);

    auto const dictionary = smallDictionary();
    EXPECT_EQ(*dictionary->find(LocalTag(0x3B03)), UniversalLabel(storage));
    EXPECT_EQ(*dictionary->find(UniversalLabel(storage)), LocalTag(0x3B03));
    EXPECT_EQ(dictionary->find(UniversalLabel(title)), nullptr);
    Dictionary const& readOnly = *dictionary;
    EXPECT_EQ(readOnly.findMetaElement(title)->dataType(), Id::UTF16String);
    EXPECT_EQ(dictionary->find(thingKey)->metaAttributeCount(), 5u);
    EXPECT_EQ(std::distance(dictionary->metaElementBegin(), dictionary->metaElementEnd()), 9);
    EXPECT_EQ(std::distance(dictionary->metaMetadataSetBegin(), dictionary->metaMetadataSetEnd()), 4);
    EXPECT_EQ(dictionary->localTag2ULBegin()->first, LocalTag(0x1901));

    KLV::Key other = thingKey;
    other[13] = 0x02; // the version of a set key
    EXPECT_EQ(dictionary->find(other), nullptr);
    EXPECT_EQ(dictionary->findOfAnyVersion(other), dictionary->find(thingKey));

    EXPECT_EQ(dictionary->findMetaMetadataSetProperty(u"name", u"Storage").size(), 1u);
    EXPECT_EQ(dictionary->findMetaMetadataSetWithMetaAtributeProperty(u"name", u"InstanceUID").size(), 4u);
    EXPECT_EQ(dictionary->findMetaElementProperty(u"name", u"Title").front()->universalLabel(),
              UniversalLabel(title));
    EXPECT_TRUE(dictionary->findMetaElementProperty(u"name", u"nothing").empty());
}

TEST(Dictionary, ComparesSetKeysUnderAMask) {
    KLV::Key const a = "060E2B34.02530101.0D010401.01010100"_key;
    KLV::Key b = a;
    b[13] = 0x7F;
    EXPECT_TRUE(KLV::compareMasked(a, b, setKeyVersionMask().key()));
    EXPECT_TRUE(Types::compareMasked(UniversalLabel(a), b, setKeyVersionMask()));
    b[12] = 0x7F;
    EXPECT_FALSE(KLV::compareMasked(a, b, setKeyVersionMask().key()));
    Dictionary dictionary;
    dictionary.add(a, MetaMetadataSet(a));
    b = a;
    b[13] = 0x7F;
    EXPECT_EQ(dictionary.find(b), nullptr);
    EXPECT_EQ(dictionary.findOfAnyVersion(b)->key(), a);
}

TEST(Dictionary, FindsElementsOfOtherVersions) {
    Dictionary dictionary;
    auto const label = [](unsigned char version, unsigned char tail) {
        UniversalLabel made(title);
        made[7] = version;
        made[15] = tail;
        return made;
    };
    std::pair<int, int> const defined[] = {{1, 9}, {3, 5}, {4, 5}, {0xFF, 7}, {0, 3}};
    for (auto const& [version, tail] : defined) {
        auto const made = label(static_cast<unsigned char>(version), static_cast<unsigned char>(tail));
        dictionary.add(made, std::make_unique<MetaSimpleElement>(made, Id::UInt8));
    }
    struct {
        unsigned char version, tail;
        int found; // its version, -1 for none
    } const rows[] = {{2, 9, 1},    {9, 5, 3},    {4, 5, 4},  {3, 5, 3},
                      {0, 7, 0xFF}, {0xFF, 3, 0}, {1, 4, -1}, {0, 0xFF, -1}};
    for (auto const& row : rows) {
        auto const* const found = dictionary.findMetaElementOfAnyVersion(label(row.version, row.tail));
        EXPECT_EQ(found != nullptr ? found->universalLabel()[7] : -1, row.found)
            << +row.version << " " << +row.tail;
    }
}

TEST(Dictionary, RefusesContradictions) {
    auto const dictionary = smallDictionary();
    dictionary->add(LocalTag(0x3C0A), instanceUID); // a repeat
    EXPECT_THROW(dictionary->add(LocalTag(0x3C0A), title), Exceptions::InvalidLocalTag);
    EXPECT_THROW(dictionary->add(LocalTag(0x0102), instanceUID), Exceptions::InvalidLocalTag);
    EXPECT_THROW(dictionary->add(title, std::make_unique<MetaSimpleElement>(title, Id::UInt8)),
                 Exceptions::InvalidMetaElement);
    EXPECT_THROW(dictionary->add(title, std::make_unique<MetaSimpleElement>(unknownKey, Id::UInt8)),
                 Exceptions::InvalidMetaElement);
    EXPECT_THROW(dictionary->add(thingKey, MetaMetadataSet(storageKey)), Exceptions::InvalidMetadataSet);
    dictionary->add(thingKey, MetaMetadataSet(thingKey)); // replaces the definition
    EXPECT_EQ(dictionary->find(thingKey)->metaAttributeCount(), 0u);
}

TEST(MetaMetadataSet, TakesEachAttributeOnce) {
    auto const dictionary = smallDictionary();
    MetaMetadataSet definition(unknownKey, *dictionary->find(thingKey)); // inherits
    EXPECT_EQ(definition.metaAttributeCount(), 5u);
    auto const attribute = definition.findMetaAttribute(title);
    EXPECT_EQ(attribute, dictionary->find(thingKey)->findMetaAttribute(title)) << "shared with the parent";
    auto const second = std::make_shared<MetaAttribute>(*dictionary->findMetaElement(title),
                                                        AttributeRequiredStatus::Required);
    EXPECT_EQ(
        thrownBy([&] { definition.addMetaAttribute(second); }),
        "A MetaAttribute with UL urn:smpte:ul:060e2b34.01010103.01070102.01000000 already exists in this "
        "MetaMetadataSet");
    EXPECT_EQ(definition.findMetaAttribute(title), attribute);
    EXPECT_EQ(definition.findMetaAttribute(stranger), nullptr);
    UniversalLabel older(title);
    older[7] = 1;
    EXPECT_EQ(definition.findMetaAttribute(older), nullptr);
    EXPECT_EQ(definition.findMetaAttributeOfAnyVersion(older), attribute);
    EXPECT_FALSE(definition == *dictionary->find(thingKey));
    EXPECT_TRUE(MetaMetadataSet(thingKey, definition) == *dictionary->find(thingKey));
    EXPECT_TRUE(std::is_sorted(
        definition.metaAttributesBegin(), definition.metaAttributesEnd(), [](auto const& a, auto const& b) {
            return a->metaElement().universalLabel() < b->metaElement().universalLabel();
        }));
}

TEST(MetaElement, ChecksItsTypes) {
    UniversalLabel const label(title);
    struct {
        std::function<void()> make;
        const char* message;
    } const rows[] = {
        {[&] { MetaSimpleElement(label, Id::Batch); },
         "Tried to create a MetaSimpleElement with dataType:Batch"},
        {[&] { MetaSimpleElement(label, Id::WeakReference); },
         "Tried to create a MetaSimpleElement with dataType:WeakReference"},
        {[&] { MetaCollection(label, Id::UInt8, Id::UInt8); },
         "Tried to create a MetaCollectionElement derived class with dataType:UInt8"},
        {[&] { MetaCollection(label, Id::Array, Id::StrongReference); },
         "Tried to create a MetaCollection with dataSubType:StrongReference"},
        {[&] { MetaReferenceElement(label, Id::UUID); },
         "Tried to create a MetaReferenceElement with dataType:UUID"},
        {[&] { MetaReferenceCollection(label, Id::StrongReference, Id::StrongReference); },
         "Tried to create a MetaCollectionElement derived class with dataType:StrongReference"},
        {[&] { MetaReferenceCollection(label, Id::Batch, Id::UInt8); },
         "Tried to create a MetaReferenceCollection with dataType:UInt8"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(thrownBy<Exceptions::InvalidMetaElement>(row.make), row.message);
    EXPECT_TRUE(thrownBy([&] {
                    MetaCollection(label, Id::Array, Id::UInt8, Limits(3, 2));
                }).starts_with("Tried to create a MetaCollectionElement derived class with invalid limits:"));
    EXPECT_EQ(MetaCollection(label, Id::Array, Id::UInt8).collectionSizeLimits().maximum, 0xFFFFFFFFu);
    EXPECT_EQ(thrownBy<Exceptions::InvalidMetaAttribute>([&] {
                  MetaAttribute(MetaSimpleElement(label, Id::UInt8), AttributeRequiredStatus::BestEffort,
                                std::make_unique<Types::Length>(-1));
              }),
              "A distinguished value of type Length does not suit an element of type UInt8");
    MetaSimpleElement const length(label, Id::Length);
    MetaAttribute const attribute(length, AttributeRequiredStatus::BestEffort,
                                  std::make_unique<Types::Length>(-1), LocalTag(0x0202));
    EXPECT_EQ(attribute.getDistinguishedValue()->toString(), u"-1");
    EXPECT_EQ(*attribute.staticLocalTag(), LocalTag(0x0202));
    EXPECT_EQ(attribute.requiredStatus(), AttributeRequiredStatus::BestEffort);
}

TEST(MetaElement, HoldsEnumerationsAllowedClassesAndProperties) {
    MetaSimpleElement element(title, Id::UInt8);
    EXPECT_TRUE(element.enumeration().empty());
    auto values = std::make_shared<Enumeration>();
    values->add(std::make_unique<Types::UInt8>(std::uint8_t{3}), u"three");
    element.enumeration(values);
    EXPECT_EQ(element.enumeration().front()->toString(), u"3");
    EXPECT_EQ(*element.enumerationNames()->findName(Types::UInt8(std::uint8_t{3})), u"three");
    EXPECT_EQ(element.enumerationNames()->findName(Types::UInt8(std::uint8_t{4})), nullptr);

    MetaReferenceElement reference(next, Id::StrongReference);
    EXPECT_TRUE(reference.allows(thingKey));
    for (auto const& key : {thingKey, prefaceKey, thingKey})
        reference.addAllowedMetadataSet(key);
    EXPECT_EQ(reference.allowedMetadataSets().size(), 2u);
    EXPECT_TRUE(reference.allows(prefaceKey) && !reference.allows(storageKey));

    PropertyMap properties;
    properties.addProperty(u"name", u"a");
    properties.addProperty(u"name", u"b");
    EXPECT_EQ(properties.getProperty(u"name"), u"b");
    EXPECT_EQ(thrownBy([&] { properties.getProperty(u"caf\u00E9"); }), "Property not found: caf\xC3\xA9");
    EXPECT_EQ(properties.findProperty(u""), nullptr);
}

TEST(AttributeRequiredStatus, HasShortNames) {
    auto& names = AttributeRequiredStatus::instance();
    EXPECT_EQ(&names, &AttributeRequiredStatus::instance());
    std::pair<AttributeRequiredStatus::Status, const char16_t*> const rows[] = {
        {AttributeRequiredStatus::Optional, u"Opt"},
        {AttributeRequiredStatus::BestEffort, u"B.Effort"},
        {AttributeRequiredStatus::DecoderRequired, u"D/req"},
        {AttributeRequiredStatus::EncoderRequired, u"E/req"},
        {AttributeRequiredStatus::Required, u"Req"},
    };
    for (auto const& [status, name] : rows) {
        EXPECT_EQ(names.toString(status), name);
        EXPECT_EQ(names.fromString(name), status);
    }
    EXPECT_EQ(thrownBy([&] { names.fromString(u"req"); }), "StatusNotFound: req");
    EXPECT_EQ(thrownBy([&] { names.toString(AttributeRequiredStatus::Status(9)); }), "StatusNotFound: 9");
    Initializer::shutdown();
    EXPECT_EQ(AttributeRequiredStatus::instance().fromString(u"Req"), AttributeRequiredStatus::Required);
    Initializer::shutdown();
}

} // namespace MXF::Zelm::Test
