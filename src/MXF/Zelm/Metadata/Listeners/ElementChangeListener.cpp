#include "MXF/Zelm/Metadata/Listeners/ElementChangeListener.h"

namespace MXF::Zelm::Metadata::Listeners {

using MetaMetadata::MetaElement;
using Types::Collection;
using Types::SimpleDataType;

ElementChangeListener::~ElementChangeListener() = default;

void ElementChangeListener::addedElement(MetadataSet& set, MetaElement const* definition, Element&,
                                         Types::BaseType const&) {
    changedElement(set, definition);
}

void ElementChangeListener::updatedElement(MetadataSet& set, MetaElement const* definition, Element&,
                                           Collection const&, Collection const&) {
    changedElement(set, definition);
}

void ElementChangeListener::updatedElement(MetadataSet& set, MetaElement const* definition, Element&,
                                           SimpleDataType const&, SimpleDataType const&) {
    changedElement(set, definition);
}

void ElementChangeListener::updatedElementCollection(MetadataSet& set, MetaElement const* definition,
                                                     Element&, Collection const&, std::size_t,
                                                     SimpleDataType const*, SimpleDataType const*) {
    changedElement(set, definition);
}

void ElementChangeListener::removedElement(MetadataSet& set, MetaElement const* definition, Element&,
                                           Types::BaseType const&) {
    changedElement(set, definition);
}

} // namespace MXF::Zelm::Metadata::Listeners
