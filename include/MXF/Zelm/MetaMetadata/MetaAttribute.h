/// Attributes: what an element of a set stands for. One that the set's class declares, one of another class
/// that was found here (misplaced), or one that could not be made out (unknown).
#pragma once

#include "MXF/Zelm/MetaMetadata/AttributeRequiredStatus.h"
#include "MXF/Zelm/MetaMetadata/MetaElement.h"
#include "MXF/Zelm/Types/LocalTag.h"

#include <optional>

namespace MXF::Zelm::MetaMetadata {

class MetaAttribute;
class MisplacedAttribute;
class UnknownAttribute;

class MXFZELM_EXPORT AbstractMetaAttributeVisitor {
public:
    virtual ~AbstractMetaAttributeVisitor();
    virtual void visit(MetaAttribute const& attribute) = 0;
    virtual void visit(MisplacedAttribute const& attribute) = 0;
    virtual void visit(UnknownAttribute const& attribute) = 0;
};

class MXFZELM_EXPORT AbstractMetaAttribute : public Platform::Allocated {
public:
    virtual ~AbstractMetaAttribute();
    virtual void accept(AbstractMetaAttributeVisitor& visitor) const = 0;

    /// The element's definition, which the dictionary owns; null for an unknown attribute.
    virtual MetaElement const* elementDefinition() const = 0;
};

/// An attribute that a set class declares. Set classes that inherit one share it.
class MXFZELM_EXPORT MetaAttribute : public AbstractMetaAttribute {
public:
    /// `element` is not owned. `distinguishedValue`, if any, says "unknown"; `staticLocalTag` is absent where
    /// the tag is dynamic. Throws Exceptions::InvalidMetaAttribute when the distinguished value is not of the
    /// element's type.
    MetaAttribute(MetaElement const& element, AttributeRequiredStatus::Status requiredStatus,
                  Templates::auto_ptr<Types::BaseType> distinguishedValue = nullptr,
                  std::optional<Types::LocalTag> staticLocalTag = std::nullopt);
    ~MetaAttribute() override;

    MetaElement const& metaElement() const { return *element_; }
    AttributeRequiredStatus::Status requiredStatus() const { return requiredStatus_; }

    /// Null when there is none.
    Types::BaseType const* getDistinguishedValue() const { return distinguishedValue_.get(); }

    /// Null when the tag is dynamic.
    Types::LocalTag const* staticLocalTag() const { return staticLocalTag_ ? &*staticLocalTag_ : nullptr; }

    void accept(AbstractMetaAttributeVisitor& visitor) const override;
    MetaElement const* elementDefinition() const override { return element_; }

private:
    MetaElement const* element_;
    AttributeRequiredStatus::Status requiredStatus_;
    Templates::auto_ptr<Types::BaseType> distinguishedValue_;
    std::optional<Types::LocalTag> staticLocalTag_;
};

/// An attribute whose element is known but not declared by the class of the set that it was found in.
class MXFZELM_EXPORT MisplacedAttribute : public AbstractMetaAttribute {
public:
    /// `element` is not owned.
    explicit MisplacedAttribute(MetaElement const& element) : element_(&element) {}
    ~MisplacedAttribute() override;

    MetaElement const& metaElement() const { return *element_; }

    void accept(AbstractMetaAttributeVisitor& visitor) const override;
    MetaElement const* elementDefinition() const override { return element_; }

private:
    MetaElement const* element_;
};

/// An attribute that could not be made into an element with a value.
class MXFZELM_EXPORT UnknownAttribute : public AbstractMetaAttribute {
public:
    enum class Reason {
        NotInPrimer,        ///< neither the primer nor the static tags map the tag
        NotInDictionary,    ///< the dictionary does not define the label that the tag stands for
        StaticTagRedefined, ///< the primer maps a static tag to another label than the standard
        InvalidTag,         ///< the tag 00.00
        Repeated,           ///< the set has the attribute already
        MalformedValue,     ///< the value is not one of the attribute's type
    };

    /// `label` is what the tag stands for, as far as that is known.
    UnknownAttribute(Types::LocalTag const& localTag, Reason reason,
                     std::optional<Types::UniversalLabel> label = std::nullopt);
    ~UnknownAttribute() override;

    Types::LocalTag const& localTag() const { return localTag_; }
    Reason reason() const { return reason_; }

    /// Null when the tag could not be resolved.
    Types::UniversalLabel const* universalLabel() const { return label_ ? &*label_ : nullptr; }

    void accept(AbstractMetaAttributeVisitor& visitor) const override;
    MetaElement const* elementDefinition() const override { return nullptr; }

private:
    Types::LocalTag localTag_;
    Reason reason_;
    std::optional<Types::UniversalLabel> label_;
};

} // namespace MXF::Zelm::MetaMetadata
