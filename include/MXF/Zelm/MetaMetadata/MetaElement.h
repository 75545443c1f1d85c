/// Element definitions: what a property is called, its label and the type of its value. The dictionary owns
/// them, and every set class that has the property shares them.
#pragma once

#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/MetaMetadata/PropertyMap.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Types/BaseType.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

#include <limits>

namespace MXF::Zelm::MetaMetadata {

class MetaSimpleElement;
class MetaCollection;
class MetaReferenceElement;
class MetaReferenceCollection;

namespace Visitors {

class MXFZELM_EXPORT MetaElementVisitor {
public:
    virtual ~MetaElementVisitor();
    virtual void visit(MetaSimpleElement const& element) = 0;
    virtual void visit(MetaCollection const& element) = 0;
    virtual void visit(MetaReferenceElement const& element) = 0;
    virtual void visit(MetaReferenceCollection const& element) = 0;
};

class MXFZELM_EXPORT NonConstMetaElementVisitor {
public:
    virtual ~NonConstMetaElementVisitor();
    virtual void visit(MetaSimpleElement& element) = 0;
    virtual void visit(MetaCollection& element) = 0;
    virtual void visit(MetaReferenceElement& element) = 0;
    virtual void visit(MetaReferenceCollection& element) = 0;
};

} // namespace Visitors

/// Base of the element definitions. Its property "name" is the element's symbol.
class MXFZELM_EXPORT MetaElement : public PropertyMap, public Platform::Allocated {
public:
    virtual ~MetaElement();
    MetaElement(MetaElement const&) = delete;
    MetaElement& operator=(MetaElement const&) = delete;

    Types::UniversalLabel const& universalLabel() const { return label_; }

    /// The type of the value; Array or Batch for a collection.
    Types::Identifiers::Identifier dataType() const { return dataType_; }

    virtual void accept(Visitors::MetaElementVisitor& visitor) const = 0;
    virtual void accept(Visitors::NonConstMetaElementVisitor& visitor) = 0;

protected:
    MetaElement(Types::UniversalLabel const& label, Types::Identifiers::Identifier dataType);

private:
    Types::UniversalLabel label_;
    Types::Identifiers::Identifier dataType_;
};

/// The values that an element may have, each with its name. Elements of one type share it.
class MXFZELM_EXPORT Enumeration : public Platform::Allocated {
public:
    Enumeration();
    ~Enumeration();
    Enumeration(Enumeration const&) = delete;
    Enumeration& operator=(Enumeration const&) = delete;

    /// Adds a value. `name` is what people call it, and may be empty.
    void add(Templates::auto_ptr<Types::BaseType> value, std::u16string_view name);

    /// The values, owned by the enumeration.
    Templates::vector<Types::BaseType*> values() const;

    /// The name of a value, null when the enumeration does not hold it.
    std::u16string const* findName(Types::BaseType const& value) const;

private:
    std::vector<std::pair<Templates::auto_ptr<Types::BaseType>, std::u16string>> values_;
};

/// What elements that hold values have in common.
class MXFZELM_EXPORT MetaValueHolder {
public:
    virtual ~MetaValueHolder();

    /// The enumerated values, owned by the element; empty when any value will do.
    Templates::vector<Types::BaseType*> enumeration() const;

    /// The same with the names; null when there are none.
    Enumeration const* enumerationNames() const { return enumeration_.get(); }
    void enumeration(Templates::SharedPtr<Enumeration const> values);

private:
    Templates::SharedPtr<Enumeration const> enumeration_;
};

/// What elements that hold references have in common.
class MXFZELM_EXPORT MetaReferenceHolder {
public:
    virtual ~MetaReferenceHolder();

    /// Adds a class that a reference may point to; a repeat is passed over.
    void addAllowedMetadataSet(KLV::Key const& key);

    /// Adds several classes at once.
    void addAllowedMetadataSets(std::vector<KLV::Key> const& keys);

    /// The classes that a reference may point to; empty when any will do.
    Templates::list<KLV::Key> allowedMetadataSets() const;

    /// True when a reference may point to a set of this class.
    bool allows(KLV::Key const& key) const;

private:
    std::vector<KLV::Key> allowed_; // sorted
};

/// An element with one value.
class MXFZELM_EXPORT MetaSimpleElement : public MetaElement, public MetaValueHolder {
public:
    /// Throws Exceptions::InvalidMetaElement when `dataType` is a collection or a reference.
    MetaSimpleElement(Types::UniversalLabel const& label, Types::Identifiers::Identifier dataType);
    ~MetaSimpleElement() override;

    void accept(Visitors::MetaElementVisitor& visitor) const override;
    void accept(Visitors::NonConstMetaElementVisitor& visitor) override;
};

/// An element with a collection.
class MXFZELM_EXPORT MetaCollectionElement : public MetaElement {
public:
    /// Bounds of the number of members.
    struct CollectionSizeLimits {
        /// Any number.
        constexpr CollectionSizeLimits() = default;
        constexpr CollectionSizeLimits(std::uint32_t smallest, std::uint32_t largest)
            : minimum(smallest), maximum(largest) {}

        bool isValid() const { return minimum <= maximum; }

        std::uint32_t minimum = 0;
        std::uint32_t maximum = std::numeric_limits<std::uint32_t>::max();
    };

    ~MetaCollectionElement() override;

    /// The type of the members.
    Types::Identifiers::Identifier dataSubType() const { return dataSubType_; }
    CollectionSizeLimits collectionSizeLimits() const { return limits_; }

protected:
    MetaCollectionElement(Types::UniversalLabel const& label, Types::Identifiers::Identifier dataType,
                          Types::Identifiers::Identifier dataSubType, CollectionSizeLimits limits);

private:
    Types::Identifiers::Identifier dataSubType_;
    CollectionSizeLimits limits_;
};

/// An element with a collection of values.
class MXFZELM_EXPORT MetaCollection : public MetaCollectionElement, public MetaValueHolder {
public:
    /// Throws Exceptions::InvalidMetaElement when `dataType` is no collection, `dataSubType` no simple value,
    /// or the limits are the wrong way round.
    MetaCollection(Types::UniversalLabel const& label, Types::Identifiers::Identifier dataType,
                   Types::Identifiers::Identifier dataSubType, CollectionSizeLimits limits = {});
    ~MetaCollection() override;

    void accept(Visitors::MetaElementVisitor& visitor) const override;
    void accept(Visitors::NonConstMetaElementVisitor& visitor) override;
};

/// An element with one reference.
class MXFZELM_EXPORT MetaReferenceElement : public MetaElement, public MetaReferenceHolder {
public:
    /// Throws Exceptions::InvalidMetaElement when `dataType` is no reference.
    MetaReferenceElement(Types::UniversalLabel const& label, Types::Identifiers::Identifier dataType);
    ~MetaReferenceElement() override;

    void accept(Visitors::MetaElementVisitor& visitor) const override;
    void accept(Visitors::NonConstMetaElementVisitor& visitor) override;
};

/// An element with a collection of references.
class MXFZELM_EXPORT MetaReferenceCollection : public MetaCollectionElement, public MetaReferenceHolder {
public:
    /// Throws Exceptions::InvalidMetaElement when this is no collection of references, or the limits are the
    /// wrong way round.
    MetaReferenceCollection(Types::UniversalLabel const& label, Types::Identifiers::Identifier dataType,
                            Types::Identifiers::Identifier dataSubType, CollectionSizeLimits limits = {});
    ~MetaReferenceCollection() override;

    void accept(Visitors::MetaElementVisitor& visitor) const override;
    void accept(Visitors::NonConstMetaElementVisitor& visitor) override;
};

} // namespace MXF::Zelm::MetaMetadata
