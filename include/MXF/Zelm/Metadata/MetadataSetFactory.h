/// Makes metadata sets: the C++ class that is registered for a key, a plain set for any other.
#pragma once

#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/MetaMetadata/MetaMetadataSet.h"
#include "MXF/Zelm/Metadata/MetadataSetOwner.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Templates/Memory.h"

namespace MXF::Zelm::Metadata {

/// The one factory of the process. Register classes before metadata is loaded or created; the factory is not
/// locked. Initializer::shutdown() forgets what was registered.
class MXFZELM_EXPORT MetadataSetFactory : public Platform::Allocated {
public:
    /// Makes an empty set of one class; the caller owns it.
    using Create = Templates::auto_ptr<MetadataSet> (*)(MetaMetadata::MetaMetadataSet const* definition,
                                                        MetadataSetOwner* owner);

    static MetadataSetFactory& instance();

    /// Has sets with this key made by `make`. The last registration of a key counts.
    void registerMetadataSet(KLV::Key const& key, Create make);

    /// Registers the class `Set`, which has a static `classKey()` and a constructor that takes definition and
    /// owner.
    template <class Set>
    void registerMetadataSet() {
        registerMetadataSet(Set::classKey(),
                            [](MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner) {
                                return Templates::auto_ptr<MetadataSet>(new Set(definition, owner));
                            });
    }

    bool isRegistered(KLV::Key const& key) const;

    /// An empty set of the class that `definition` describes. `definition` and `owner` are not owned.
    Templates::auto_ptr<MetadataSet> create(MetaMetadata::MetaMetadataSet const& definition,
                                            MetadataSetOwner* owner) const;

private:
    MetadataSetFactory() = default;

    Templates::map<KLV::Key, Create> classes_;
};

} // namespace MXF::Zelm::Metadata
