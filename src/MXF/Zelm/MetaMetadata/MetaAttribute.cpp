#include "MXF/Zelm/MetaMetadata/MetaAttribute.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::MetaMetadata {

AbstractMetaAttributeVisitor::~AbstractMetaAttributeVisitor() = default;
AbstractMetaAttribute::~AbstractMetaAttribute() = default;

MetaAttribute::MetaAttribute(MetaElement const& element, AttributeRequiredStatus::Status requiredStatus,
                             Templates::auto_ptr<Types::BaseType> distinguishedValue,
                             std::optional<Types::LocalTag> staticLocalTag)
    : element_(&element),
      requiredStatus_(requiredStatus),
      distinguishedValue_(std::move(distinguishedValue)),
      staticLocalTag_(staticLocalTag) {
    if (distinguishedValue_ && distinguishedValue_->identifier() != element.dataType())
        throw Exceptions::InvalidMetaAttribute(
            "A distinguished value of type " + std::string(toText(distinguishedValue_->identifier())) +
            " does not suit an element of type " + std::string(toText(element.dataType())));
}

MetaAttribute::~MetaAttribute() = default;
void MetaAttribute::accept(AbstractMetaAttributeVisitor& visitor) const { visitor.visit(*this); }

MisplacedAttribute::~MisplacedAttribute() = default;
void MisplacedAttribute::accept(AbstractMetaAttributeVisitor& visitor) const { visitor.visit(*this); }

UnknownAttribute::UnknownAttribute(Types::LocalTag const& localTag, Reason reason,
                                   std::optional<Types::UniversalLabel> label)
    : localTag_(localTag), reason_(reason), label_(label) {}

UnknownAttribute::~UnknownAttribute() = default;
void UnknownAttribute::accept(AbstractMetaAttributeVisitor& visitor) const { visitor.visit(*this); }

} // namespace MXF::Zelm::MetaMetadata
