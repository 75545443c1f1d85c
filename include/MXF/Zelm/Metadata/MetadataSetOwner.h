/// What a metadata set tells its owner (SMPTE 377M header metadata: the sets of one partition).
#pragma once

#include "MXF/Zelm/MetaMetadata/MetaElement.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/UUID.h"

namespace MXF::Zelm::Metadata {

class Element;
class MetadataSet;

/// Implemented by `PartitionMetadata`, which passes the changes on to its listeners. The definition passed
/// with an element is null for one that the dictionary does not know.
class MXFZELM_EXPORT MetadataSetOwner {
public:
    virtual ~MetadataSetOwner();

    /// The set with an instance UID, null when there is none: how references are followed.
    virtual MetadataSet* find(Types::UUID const& instanceUID) const = 0;

    virtual void addedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                              Types::BaseType const& value) = 0;
    virtual void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                Element& element, Types::Collection const& oldValue,
                                Types::Collection const& newValue) = 0;
    virtual void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                Element& element, Types::SimpleDataType const& oldValue,
                                Types::SimpleDataType const& newValue) = 0;

    /// Member `index` of a collection is now `newMember`; null when it was taken out. `oldMember` is null
    /// when it is new.
    virtual void updatedElementCollection(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                          Element& element, Types::Collection const& value, std::size_t index,
                                          Types::SimpleDataType const* oldMember,
                                          Types::SimpleDataType const* newMember) = 0;
    virtual void removedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                Element& element, Types::BaseType const& value) = 0;

    /// The change that the owner just refused by throwing is undone: the element holds again what it held
    /// before. One that had been added is taken out after this call.
    virtual void changeUndone() {}

    /// True while the owner tells of the undoing of a change, which nobody can refuse.
    virtual bool isUndoing() const { return false; }

    /// `clone` is a new set that this owner is to hold.
    virtual void metadataSetCloned(MetadataSet const& original, MetadataSet& clone) = 0;
};

} // namespace MXF::Zelm::Metadata
