/// Each class of the standard dictionary: a set with a value for every property, written and read again.
#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"
#include "MXF/Zelm/Metadata/Structural/FurtherDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Initialize.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Types/BaseTypeFactory.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "support/HeaderMetadata.h"

#include <algorithm>

namespace MXF::Zelm::Test {

using namespace Metadata;
using Types::Identifiers::Identifier;

namespace {

/// Values of any type, each unlike the one before.
class Values {
public:
    Templates::auto_ptr<Types::BaseType> valueFor(MetaMetadata::MetaElement const& element) {
        auto const* const collection = dynamic_cast<MetaMetadata::MetaCollectionElement const*>(&element);
        if (collection == nullptr)
            return simple(element.dataType());
        auto value = Types::Factories::BaseTypeFactory::instance().createCollection(
            element.dataType(), collection->dataSubType());
        auto const limits = collection->collectionSizeLimits();
        for (std::uint32_t count = 0; count < std::clamp(2u, limits.minimum, limits.maximum); ++count)
            value->add(*simple(collection->dataSubType()));
        return value;
    }

private:
    Templates::auto_ptr<Types::SimpleDataType> simple(Identifier type) {
        constexpr std::size_t someBytes = 6; // where the size is free
        auto const size = Types::Factories::BaseTypeFactory::wireSize(type);
        Bytes bytes(size != 0 ? size : someBytes);
        for (auto& byte : bytes)
            byte = static_cast<unsigned char>(last_ = last_ % 127 + 1);
        DataIO::Memory::MemoryViewDataSource source(bytes.data(), bytes.size());
        KLV::Value value(source, bytes.size());
        return Types::Factories::BaseTypeFactory::instance().create(type, value);
    }

    unsigned last_ = 0;
};

/// A new set of each class that is not abstract, every property filled.
void addAllClasses(MetaMetadata::Dictionary const& dictionary, PartitionMetadata& metadata) {
    Values values;
    for (auto at = dictionary.metaMetadataSetBegin(); at != dictionary.metaMetadataSetEnd(); ++at) {
        if (at->second.findProperty(u"abstract") != nullptr)
            continue;
        auto& set = metadata.createMetadataSet(at->first);
        for (auto each = at->second.metaAttributesBegin(); each != at->second.metaAttributesEnd(); ++each) {
            auto const& label = (*each)->metaElement().universalLabel();
            if (set.findElement(label) == nullptr) // all but the instance UID
                set.value(label, *values.valueFor((*each)->metaElement()));
        }
    }
}

void expectEqual(MetadataSet const& found, MetadataSet const& expected) {
    SCOPED_TRACE(Platform::toUtf8(expected.name()));
    EXPECT_EQ(found.key(), expected.key());
    EXPECT_EQ(typeid(found), typeid(expected));
    EXPECT_EQ(found.invalidSize(), 0u);
    EXPECT_EQ(found.size(), expected.metaMetadataSet()->metaAttributeCount());
    for (auto const& element : expected) {
        auto const* const other = found.findElement(*element->universalLabel());
        EXPECT_TRUE(other != nullptr && other->baseValue()->equals(*element->baseValue()))
            << Platform::toUtf8(element->name());
    }
}

} // namespace

TEST(StandardClasses, AreTheSameAfterWritingAndReadingAgain) {
    auto const dictionary = ZelmDictionary::standard();
    Structural::initialize();
    Structural::registerFurtherDescriptors(*dictionary);
    auto const metadata = metadataOver(dictionary);
    addAllClasses(*dictionary, *metadata);
    EXPECT_GT(metadata->size(), 300u);
    auto const again = loadAgain(written(*metadata, true, SerializationOrder::AsLoaded), dictionary);
    EXPECT_EQ(again->darkSize(), 0u);
    ASSERT_EQ(again->size(), metadata->size());
    for (auto const& [key, set] : *metadata) {
        auto const* const other = again->find(*set->instanceUID());
        ASSERT_NE(other, nullptr);
        expectEqual(*other, *set);
    }
}

} // namespace MXF::Zelm::Test
