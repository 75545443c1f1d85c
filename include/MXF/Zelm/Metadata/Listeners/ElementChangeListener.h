/// For listeners to whom all changes of an element are alike.
#pragma once

#include "MXF/Zelm/Metadata/Listeners/NullMetadataListener.h"

namespace MXF::Zelm::Metadata::Listeners {

/// Makes one call of the five that tell of an element.
class MXFZELM_EXPORT ElementChangeListener : public NullCommitableListener {
public:
    ~ElementChangeListener() override;

    void addedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                      Types::BaseType const& value) final;
    void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                        Types::Collection const& oldValue, Types::Collection const& newValue) final;
    void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                        Types::SimpleDataType const& oldValue, Types::SimpleDataType const& newValue) final;
    void updatedElementCollection(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                  Element& element, Types::Collection const& value, std::size_t index,
                                  Types::SimpleDataType const* oldMember,
                                  Types::SimpleDataType const* newMember) final;
    void removedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                        Types::BaseType const& value) final;

protected:
    /// An element of `set` was added, changed or removed; `definition` is null for one that nobody knows.
    virtual void changedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition) = 0;
};

} // namespace MXF::Zelm::Metadata::Listeners
