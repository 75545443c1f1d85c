#include "MXF/Zelm/Metadata/Structural/FurtherDescriptors.h"

#include "MXF/Zelm/Metadata/MetadataSetFactory.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Initialize.h"
#include "MXF/Zelm/Metadata/Structural/PhysicalDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"
#include "MXF/Zelm/Metadata/Structural/SubDescriptors.h"

#include <algorithm>

namespace MXF::Zelm::Metadata::Structural {

namespace {

using MetaMetadata::MetaMetadataSet;
using ClassesByName = Templates::map<std::u16string, MetaMetadataSet const*>;
namespace Keys = StructuralMetadataKeys;

/// A set of another class, which inherits from that of `Base`.
template <class Base>
class Derived final : public Base {
public:
    Derived(MetaMetadataSet const* definition, MetadataSetOwner* owner)
        : Base(definition->key(), definition, owner) {}

    static Templates::auto_ptr<MetadataSet> create(MetaMetadataSet const* definition,
                                                   MetadataSetOwner* owner) {
        return Templates::auto_ptr<MetadataSet>(new Derived(definition, owner));
    }
};

/// A class to inherit from.
struct BaseClass {
    KLV::Key const& (*key)();
    MetadataSetFactory::Create createDerived;
};

constexpr BaseClass bases[] = {
    {Keys::genericDescriptor, Derived<GenericDescriptor>::create},
    {Keys::fileDescriptor, Derived<FileDescriptor>::create},
    {Keys::genericPictureEssenceDescriptor, Derived<GenericPictureEssenceDescriptor>::create},
    {Keys::cdciEssenceDescriptor, Derived<CDCIEssenceDescriptor>::create},
    {Keys::genericSoundEssenceDescriptor, Derived<GenericSoundEssenceDescriptor>::create},
    {Keys::waveAudioEssenceDescriptor, Derived<WAVEAudioEssenceDescriptor>::create},
    {Keys::genericDataEssenceDescriptor, Derived<GenericDataEssenceDescriptor>::create},
    {Keys::physicalDescriptor, Derived<PhysicalDescriptor>::create},
    {Keys::subDescriptor, Derived<SubDescriptor>::create},
};

ClassesByName classesByName(MetaMetadata::Dictionary const& dictionary) {
    ClassesByName classes;
    for (auto at = dictionary.metaMetadataSetBegin(); at != dictionary.metaMetadataSetEnd(); ++at)
        if (auto const* const name = at->second.findProperty(u"name"))
            classes.emplace(*name, &at->second);
    return classes;
}

MetaMetadataSet const* parentOf(MetaMetadataSet const& definition, ClassesByName const& classes) {
    auto const* const name = definition.findProperty(u"parent");
    auto const found = name != nullptr ? classes.find(*name) : classes.end();
    return found != classes.end() ? found->second : nullptr;
}

/// How a set of a class is made by the nearest class that it inherits from; null when that is none of ours.
MetadataSetFactory::Create nearestBase(MetaMetadataSet const& definition, ClassesByName const& classes) {
    constexpr int deepestInheritance = 32;
    auto const* ancestor = parentOf(definition, classes);
    for (int depth = 0; ancestor != nullptr && depth < deepestInheritance; ++depth) {
        auto const base = std::find_if(std::begin(bases), std::end(bases),
                                       [&](BaseClass const& each) { return each.key() == ancestor->key(); });
        if (base != std::end(bases))
            return base->createDerived;
        ancestor = parentOf(*ancestor, classes);
    }
    return nullptr;
}

} // namespace

void registerFurtherDescriptors(MetaMetadata::Dictionary const& dictionary) {
    auto& factory = MetadataSetFactory::instance();
    initializeMappings();
    auto const classes = classesByName(dictionary);
    for (auto const& [name, definition] : classes)
        if (!factory.isRegistered(definition->key()))
            if (auto const create = nearestBase(*definition, classes))
                factory.registerMetadataSet(definition->key(), create);
}

} // namespace MXF::Zelm::Metadata::Structural
