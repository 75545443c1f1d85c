#include "support/Accessors.h"

#include "MXF/Zelm/Metadata/Structural/Initialize.h"
#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Types/BaseTypeFactory.h"
#include "support/Bytes.h"
#include "support/StandardMetadata.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace MXF::Zelm::Test {

namespace {

using MetaMetadata::AttributeRequiredStatus;
using MetaMetadata::MetaAttribute;
using MetaMetadata::MetaMetadataSet;

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return text;
}

/// What the property is called: by SMPTE 377M where that has a name of its own, else by the registers.
std::string nameOf(MetaAttribute const& attribute) {
    auto const& element = attribute.metaElement();
    auto const* const name377 = element.findProperty(u"name377");
    return Platform::toUtf8(name377 != nullptr ? *name377 : element.getProperty(u"name"));
}

MetaAttribute const* attributeOf(MetaMetadataSet const& definition, std::string const& accessor) {
    auto const found =
        std::find_if(definition.metaAttributesBegin(), definition.metaAttributesEnd(),
                     [&](auto const& attribute) { return lowered(nameOf(*attribute)) == lowered(accessor); });
    return found != definition.metaAttributesEnd() ? found->get() : nullptr;
}

void checkRow(Metadata::MetadataSet& set, Accessor const& row, std::set<std::string>& reached) {
    SCOPED_TRACE(row.name);
    auto const* const attribute = attributeOf(*set.metaMetadataSet(), row.name);
    ASSERT_NE(attribute, nullptr) << "the class has no such property";
    reached.insert(nameOf(*attribute));
    auto const status = attribute->requiredStatus();
    EXPECT_EQ(row.removable, status != AttributeRequiredStatus::Required &&
                                 status != AttributeRequiredStatus::EncoderRequired);
    EXPECT_NO_THROW(row.check(set, *attribute));
}

void expectAllReached(MetaMetadataSet const& definition, std::set<std::string> const& reached) {
    for (auto attribute = definition.metaAttributesBegin(); attribute != definition.metaAttributesEnd();
         ++attribute)
        EXPECT_TRUE(reached.contains(nameOf(**attribute))) << "no accessor for " << nameOf(**attribute);
}

} // namespace

void checkAccessors(std::vector<KLV::Key> const& classes, std::vector<Accessor> const& rows,
                    std::vector<std::string> const& without) {
    auto const metadata = standardMetadata();
    std::set<std::string> used;
    for (auto const& key : classes) {
        std::set<std::string> reached(without.begin(), without.end());
        reached.insert("InstanceUID");
        auto const& definition = *metadata->createMetadataSet(key).metaMetadataSet();
        SCOPED_TRACE(Platform::toUtf8(definition.getProperty(u"name")));
        for (auto const& row : rows) {
            auto& set = metadata->createMetadataSet(key);
            if (!row.appliesTo(set))
                continue;
            used.insert(row.name);
            checkRow(set, row, reached);
        }
        expectAllReached(definition, reached);
    }
    for (auto const& row : rows)
        EXPECT_TRUE(used.contains(row.name)) << row.name << " is of none of these classes";
}

std::vector<Accessor> const& trackableAccessors() {
    using Metadata::Structural::TrackableMetadataSet;
    using Set = TrackableMetadataSet;
    static std::vector<Accessor> const rows{
        value("generationUID", &Set::generationUID, &Set::generationUID, &Set::resetGenerationUID),
        value("objectClass", &Set::objectClass, &Set::objectClass, &Set::resetObjectClass),
        references("applicationPlugInObjects", &Set::applicationPlugInObjects,
                   &Set::addApplicationPlugInObject, &Set::removeApplicationPlugInObject,
                   &Set::resetApplicationPlugInObjects),
    };
    return rows;
}

namespace AccessorChecks {

Samples samples(Types::Identifiers::Identifier type) {
    auto const make = [type](unsigned char byte) {
        auto const& factory = Types::Factories::BaseTypeFactory::instance();
        std::size_t const size = factory.wireSize(type) != 0 ? factory.wireSize(type) : 16;
        OnePacket packet(klv(KLV::fillItemKey(), repeated(size, byte)));
        return factory.create(type, packet.packet->value());
    };
    return {make(0x41), make(0x42)};
}

void fill(Types::Collection& collection, Attribute const& attribute) {
    auto const& element = dynamic_cast<MetaMetadata::MetaCollectionElement const&>(attribute.metaElement());
    auto const member = samples(collection.subType());
    do
        collection.add(*member.first);
    while (collection.count() < element.collectionSizeLimits().minimum);
}

MetadataSet& target(MetadataSet& set, Attribute const& attribute, bool (*suits)(MetadataSet*)) {
    auto& metadata = dynamic_cast<Metadata::PartitionMetadata&>(*set.owner());
    auto const& holder = dynamic_cast<MetaMetadata::MetaReferenceHolder const&>(attribute.metaElement());
    for (auto const& key : holder.allowedMetadataSets()) {
        auto& candidate = metadata.createMetadataSet(key);
        if (suits(&candidate))
            return candidate;
    }
    throw Exceptions::InvalidMetadataSet("no class that the property allows is the accessor's");
}

Types::BaseType const& only(MetadataSet const& set, Attribute const& attribute) {
    EXPECT_EQ(set.size(), 2u) << "instance UID and the property";
    return *set.find(attribute.metaElement().universalLabel()).baseValue();
}

void expectType(Attribute const& attribute, Types::Identifiers::Identifier type,
                Types::Identifiers::Identifier memberType) {
    auto const& element = attribute.metaElement();
    EXPECT_EQ(element.dataType(), type);
    if (auto const* const collection = dynamic_cast<MetaMetadata::MetaCollectionElement const*>(&element)) {
        EXPECT_EQ(collection->dataSubType(), memberType);
    }
}

} // namespace AccessorChecks
} // namespace MXF::Zelm::Test
