#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Element.h"

namespace MXF::Zelm::Metadata {

namespace {

/// Makes the kind of element that a definition asks for.
class Maker : public MetaMetadata::Visitors::MetaElementVisitor {
public:
    Maker(Element::AttributePtr attribute, MetadataSet* set) : attribute_(std::move(attribute)), set_(set) {}

    void visit(MetaMetadata::MetaSimpleElement const&) override { make<SimpleElement>(); }
    void visit(MetaMetadata::MetaReferenceElement const&) override { make<ReferenceElement>(); }
    void visit(MetaMetadata::MetaCollection const& definition) override {
        if (definition.dataType() == Types::Identifiers::Array)
            make<ArrayElement>();
        else
            make<BatchElement>();
    }
    void visit(MetaMetadata::MetaReferenceCollection const& definition) override {
        if (definition.dataType() == Types::Identifiers::Array)
            make<ArrayReferenceElement>();
        else
            make<BatchReferenceElement>();
    }

    Templates::auto_ptr<Element> made;

private:
    template <class Kind>
    void make() {
        made.reset(new Kind(attribute_, set_));
    }

    Element::AttributePtr attribute_;
    MetadataSet* set_;
};

} // namespace

Templates::auto_ptr<Element> ElementFactory::create(Element::AttributePtr attribute, MetadataSet* set) {
    if (dynamic_cast<MetaMetadata::MetaAttribute const*>(attribute.get()) == nullptr)
        throw Exceptions::InvalidElement("Null Meta Attribute");
    MetaMetadata::MetaElement const& definition = *attribute->elementDefinition();
    Maker maker(std::move(attribute), set);
    definition.accept(maker);
    return std::move(maker.made);
}

} // namespace MXF::Zelm::Metadata
