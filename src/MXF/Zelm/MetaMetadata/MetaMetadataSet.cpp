#include "MXF/Zelm/MetaMetadata/MetaMetadataSet.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::MetaMetadata {

MetaMetadataSet::Attributes::const_iterator
MetaMetadataSet::lowerBound(Types::UniversalLabel const& label) const {
    return std::lower_bound(attributes_.begin(), attributes_.end(), label,
                            [](auto const& attribute, Types::UniversalLabel const& wanted) {
                                return attribute->metaElement().universalLabel() < wanted;
                            });
}

Templates::SharedPtr<MetaAttribute, Templates::LockedCounter>
MetaMetadataSet::findMetaAttribute(Types::UniversalLabel const& label) const {
    auto const place = lowerBound(label);
    if (place != attributes_.end() && (*place)->metaElement().universalLabel() == label)
        return *place;
    return nullptr;
}

Templates::SharedPtr<MetaAttribute, Templates::LockedCounter>
MetaMetadataSet::findMetaAttributeOfAnyVersion(Types::UniversalLabel const& label) const {
    if (auto exact = findMetaAttribute(label))
        return exact;
    auto const found = std::find_if(attributes_.begin(), attributes_.end(), [&label](auto const& attribute) {
        return Types::equalButForVersion(attribute->metaElement().universalLabel(), label);
    });
    return found != attributes_.end() ? *found : nullptr;
}

void MetaMetadataSet::addMetaAttribute(
    Templates::SharedPtr<MetaAttribute, Templates::LockedCounter> attribute) {
    auto const& label = attribute->metaElement().universalLabel();
    auto const place = lowerBound(label);
    if (place != attributes_.end() && (*place)->metaElement().universalLabel() == label)
        throw Exceptions::InvalidMetaAttribute(u"A MetaAttribute with UL " + label.toString() +
                                               u" already exists in this MetaMetadataSet");
    attributes_.insert(place, std::move(attribute));
}

} // namespace MXF::Zelm::MetaMetadata
