#include "MXF/Zelm/Metadata/MetadataSetFactory.h"

#include "MXF/Zelm/Metadata/MetadataSet.h"
#include "MXF/Zelm/Platform/Initializer.h"

namespace MXF::Zelm::Metadata {

namespace {

constinit Platform::Singleton<MetadataSetFactory> singleton;

} // namespace

MetadataSetFactory& MetadataSetFactory::instance() {
    return singleton.get([] { return new MetadataSetFactory; }, [] { singleton.reset(); });
}

void MetadataSetFactory::registerMetadataSet(KLV::Key const& key, Create make) { classes_[key] = make; }

bool MetadataSetFactory::isRegistered(KLV::Key const& key) const { return classes_.contains(key); }

Templates::auto_ptr<MetadataSet> MetadataSetFactory::create(MetaMetadata::MetaMetadataSet const& definition,
                                                            MetadataSetOwner* owner) const {
    auto const found = classes_.find(definition.key());
    if (found != classes_.end())
        return found->second(&definition, owner);
    return Templates::auto_ptr<MetadataSet>(new MetadataSet(definition.key(), &definition, owner));
}

} // namespace MXF::Zelm::Metadata
