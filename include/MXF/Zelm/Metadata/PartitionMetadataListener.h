/// Who is told of the changes to the header metadata of a partition.
#pragma once

#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/Metadata/MetadataSetOwner.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

namespace MXF::Zelm::Metadata {

/// A listener refuses a change by throwing, before it takes the change in. The change is then undone, and the
/// listeners that were told of it are told the opposite, the last one first (`MetadataSetOwner::isUndoing` is
/// true meanwhile; nobody can refuse that): a new set is removed, a removed set is there again with all its
/// elements, values go back to the old ones.
///
/// While it is told, a listener may change other sets and other elements of the same set, of which all
/// listeners are told at once. It cannot change the element that it is told of, nor remove the set, nor
/// change a set that is being removed (Exceptions::InvalidChange).
class MXFZELM_EXPORT PartitionMetadataListener : public Platform::Allocated {
public:
    virtual ~PartitionMetadataListener();

    /// A set with this key is about to be created or loaded; the listener may have it made under another key.
    virtual void metadataSetKey(KLV::Key& key) = 0;

    /// A set was created or loaded. It has its elements already; they are not told of one by one.
    virtual void createdMetadataSet(MetadataSet* set) = 0;

    /// A set is being removed with all its elements; an exception keeps it.
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
