/// Who is told of the changes to the header metadata of a partition.
#pragma once

#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/Metadata/MetadataSetOwner.h"

namespace MXF::Zelm::Metadata {

class MXFZELM_EXPORT PartitionMetadataListener {
public:
    virtual ~PartitionMetadataListener();

    /// A set with this key is about to be created or loaded; the listener may have it made under another key.
    virtual void metadataSetKey(KLV::Key& key) = 0;

    /// A set was created or loaded.
    virtual void createdMetadataSet(MetadataSet* set) = 0;

    /// A set is being removed; an exception keeps it.
    virtual void removedMetadataSet(MetadataSet* set) = 0;

    /// See MetadataSetOwner.
    virtual void addedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                              Types::BaseType const& value) = 0;
    virtual void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                Element& element, Types::Collection const& oldValue,
                                Types::Collection const& newValue) = 0;
    virtual void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                Element& element, Types::SimpleDataType const& oldValue,
                                Types::SimpleDataType const& newValue) = 0;
    virtual void updatedElementCollection(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                          Element& element, Types::Collection const& value, std::size_t index,
                                          Types::SimpleDataType const* oldMember,
                                          Types::SimpleDataType const* newMember) = 0;
    virtual void removedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                Element& element, Types::BaseType const& value) = 0;
};

namespace Listeners {

/// A listener that keeps an index of the sets by the values of their elements.
class MXFZELM_EXPORT MetadataIndexListener : public PartitionMetadataListener {
public:
    ~MetadataIndexListener() override;

    /// All sets whose element of that label has that value.
    virtual Templates::vector<MetadataSet*> find(Types::UniversalLabel const& label,
                                                 Types::SimpleDataType const& value) const = 0;
};

} // namespace Listeners
} // namespace MXF::Zelm::Metadata
