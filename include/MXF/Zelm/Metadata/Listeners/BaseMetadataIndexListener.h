/// An index of the sets of a partition by the values of their elements.
#pragma once

#include "MXF/Zelm/Metadata/Listeners/NullMetadataListener.h"
#include "MXF/Zelm/Templates/Containers.h"

#include <cstdint>
#include <unordered_map>

namespace MXF::Zelm::Metadata::Listeners {

/// Finds what `PartitionMetadata::find(label, value)` finds without an index, in the time of a look-up.
/// Values are simple ones, references among them; the members of arrays and batches are not in the index.
/// Serves one partition, whose elements it points at; attach it with `setMetadataIndexListener`.
class MXFZELM_EXPORT BaseMetadataIndexListener : public BasicNullListener<MetadataIndexListener> {
public:
    BaseMetadataIndexListener();
    ~BaseMetadataIndexListener() override;
    BaseMetadataIndexListener(BaseMetadataIndexListener const&) = delete;
    BaseMetadataIndexListener& operator=(BaseMetadataIndexListener const&) = delete;

    /// The sets in the order in which they got the value.
    Templates::vector<MetadataSet*> find(Types::UniversalLabel const& label,
                                         Types::SimpleDataType const& value) const override;

    using BasicNullListener::updatedElement; // a collection got a new value
    void createdMetadataSet(MetadataSet* set) override;
    void removedMetadataSet(MetadataSet* set) override;
    void addedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                      Types::BaseType const& value) override;
    void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                        Types::SimpleDataType const& oldValue,
                        Types::SimpleDataType const& newValue) override;
    void removedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                        Types::BaseType const& value) override;

private:
    /// By a hash of label and value.
    using Entries = Templates::multimap<std::uint64_t, Element*>;

    void enter(Element& element);
    void forget(Element const& element);

    Entries entries_;
    std::unordered_map<Element const*, Entries::iterator> entryOf_;
};

} // namespace MXF::Zelm::Metadata::Listeners
