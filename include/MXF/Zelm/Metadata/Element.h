/// The elements of a metadata set: one property each, with a value of the type that the dictionary gives it.
///
///     in a file    2          local tag
///                  1, 2, 4    length of the value, as the set's key says
///                             value
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/MetaMetadata/MetaAttribute.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/References.h"

namespace MXF::Zelm::Metadata {

class MetadataSet;
class PartitionDictionary;

/// Base of all elements. The set that holds an element owns it. A setter tells the set's owner of the change.
class MXFZELM_EXPORT Element : public Platform::Allocated {
public:
    using AttributePtr =
        Templates::SharedPtr<MetaMetadata::AbstractMetaAttribute const, Templates::LockedCounter>;

    virtual ~Element();
    Element(Element const&) = delete;
    Element& operator=(Element const&) = delete;

    /// What the element stands for; never empty.
    AttributePtr const& metaAttribute() const { return attribute_; }

    /// The element's definition, null when the dictionary does not know it.
    MetaMetadata::MetaElement const* metaElement() const { return attribute_->elementDefinition(); }

    /// The set that holds the element.
    MetadataSet& metadataSet() const { return *set_; }

    /// The element's label, null when its tag could not be resolved.
    Types::UniversalLabel const* universalLabel() const;

    /// The "name" property of the element's definition, "<unknown>" when it has none.
    std::u16string name() const;

    /// The element's value, whatever its type; null before one is set.
    virtual Types::BaseType const* baseValue() const = 0;

    /// Sets the value. Throws Exceptions::BaseException, and keeps the old value, when it is not of the
    /// element's type or breaks a limit of its definition.
    virtual void baseValue(Types::BaseType const& value) = 0;

    /// Reads the value from a file. Throws Exceptions::InvalidLength when the bytes are not those of the
    /// type.
    virtual void load(KLV::Value& value) = 0;

    /// Writes tag, length and value; the tag comes from `dictionary`. `lengthFieldLength` is 1, 2 or 4.
    /// Throws Exceptions::InvalidElementLength when the value does not fit in the length field.
    void serialize(DataIO::DataSink& sink, PartitionDictionary const& dictionary,
                   int lengthFieldLength) const;

    /// Bytes that `serialize` writes.
    std::uint64_t serializedSize(int lengthFieldLength) const;

    /// Where the element's tag stood in the source that it was read from; absent for one made in memory.
    std::optional<std::uint64_t> absoluteOffset() const;
    void absoluteOffset(std::uint64_t offset) { offset_ = offset; }

protected:
    Element(AttributePtr attribute, MetadataSet* set);

    /// The definition, which must be known. Throws Exceptions::BaseException with "Null Meta Attribute".
    MetaMetadata::MetaElement const& definition() const;

    /// "Value 'NAME" and `rest`: the beginning of most messages.
    std::string message(std::string const& rest) const;

    /// The local tag to be written.
    virtual Types::LocalTag localTag(PartitionDictionary const& dictionary) const;

    /// Puts `next` in the place of the value in `slot` and tells the set's owner, unless the set does not
    /// hold the element yet. When the owner throws, the old value is put back.
    template <class Value>
    void replace(Templates::auto_ptr<Value>& slot, Templates::auto_ptr<Value> next);

    /// Runs `tellOwner(owner)` unless nobody is to be told; when it throws, runs `undo`, has the owner tell
    /// of that and passes the exception on. Throws Exceptions::InvalidChange, `undo` done, when the owner is
    /// telling of a change of this very element or of the removal of its set.
    template <class Tell, class Undo>
    void announce(Tell tellOwner, Undo undo);

private:
    friend class MetadataSet;
    class Telling;

    /// Tell the owner that the set holds the element now, or that it is about to drop it.
    void announceAdded();
    void announceRemoved();

    /// A copy with the same value, also one that breaks a limit, as a file may hold it.
    Templates::auto_ptr<Element> copyFor(MetadataSet* set) const;

    static constexpr std::uint64_t noOffset = ~std::uint64_t{0};

    AttributePtr attribute_;
    MetadataSet* set_;
    std::uint64_t offset_ = noOffset;
    bool isHeld_ = false;   // the set holds the element, so that changes are told
    bool isToldOf_ = false; // the owner is telling of a change of the element
};

/// Holds a value that is not a reference.
class MXFZELM_EXPORT ValueHolder : public Element {
protected:
    using Element::Element;
};

/// Holds one or more references.
class MXFZELM_EXPORT ReferenceHolder : public Element {
public:
    /// The instance UIDs referred to, in their order.
    virtual Templates::vector<Types::UUID> targets() const = 0;

    /// True when the element owns what it refers to.
    virtual bool isStrong() const = 0;

protected:
    using Element::Element;

    /// Throws Exceptions::BaseException with "ReferenceElement with UL … cannot reference set with key '…'"
    /// when the set's class is not among those that the definition allows. A target that the partition does
    /// not hold (yet) passes.
    void requireAllowed(Types::UUID const& target) const;
};

/// One value.
class MXFZELM_EXPORT SimpleElement : public ValueHolder {
public:
    SimpleElement(AttributePtr attribute, MetadataSet* set);
    ~SimpleElement() override;

    /// Null before a value is set.
    Types::SimpleDataType const* value() const { return value_.get(); }
    void value(Types::SimpleDataType const& value);

    Types::BaseType const* baseValue() const override { return value_.get(); }
    void baseValue(Types::BaseType const& value) override;
    void load(KLV::Value& value) override;

private:
    Templates::auto_ptr<Types::SimpleDataType> value_;
};

/// One reference.
class MXFZELM_EXPORT ReferenceElement : public ReferenceHolder {
public:
    ReferenceElement(AttributePtr attribute, MetadataSet* set);
    ~ReferenceElement() override;

    /// Null before a value is set.
    Types::Reference const* value() const;
    void value(Types::Reference const& reference);

    /// Refers to `target`, which must have an instance UID.
    void reference(MetadataSet const& target);

    Templates::vector<Types::UUID> targets() const override;
    bool isStrong() const override;
    Types::BaseType const* baseValue() const override { return value_.get(); }
    void baseValue(Types::BaseType const& value) override;
    void load(KLV::Value& value) override;

private:
    Templates::auto_ptr<Types::SimpleDataType> value_;
};

/// What the elements with a collection share: `Base` is the value or the reference holder.
template <class Base>
class MXFZELM_EXPORT_TEMPLATE BasicCollectionElement : public Base {
public:
    /// The collection, empty until members are added.
    Types::Collection const& value() const { return *value_; }

    /// Replaces the collection. Throws Exceptions::BaseException when type, sub type or number of members are
    /// not what the definition wants.
    void value(Types::Collection const& value);

    /// Appends a member. Throws Exceptions::BaseException when its type is wrong or the collection is full.
    void add(Types::SimpleDataType const& member);

    /// Replaces member `index`. Throws also "Index out of bounds".
    void set(std::size_t index, Types::SimpleDataType const& member);

    /// Takes member `index` out. Throws Exceptions::BaseException when there is none or too few would be
    /// left.
    void remove(std::size_t index);

    Types::BaseType const* baseValue() const override { return value_.get(); }
    void baseValue(Types::BaseType const& value) override;
    void load(KLV::Value& value) override;

protected:
    BasicCollectionElement(Element::AttributePtr attribute, MetadataSet* set);

    /// What a subclass wants of a member that is set.
    virtual void requireMember(Types::SimpleDataType const& member) const = 0;

private:
    MetaMetadata::MetaCollectionElement const& collectionDefinition() const;
    void requireSubType(Types::SimpleDataType const& member) const;
    void requireCount(std::size_t count) const;
    void requireRoomFor(std::size_t count) const;
    void requireNoFewer(std::size_t count) const;
    void exchange(Templates::auto_ptr<Types::Collection> next, std::size_t index,
                  Types::SimpleDataType const* oldMember, Types::SimpleDataType const* newMember);

    Templates::auto_ptr<Types::Collection> value_;
};

extern template class MXFZELM_EXPORT BasicCollectionElement<ValueHolder>;
extern template class MXFZELM_EXPORT BasicCollectionElement<ReferenceHolder>;

/// A collection of values.
class MXFZELM_EXPORT CollectionElement : public BasicCollectionElement<ValueHolder> {
public:
    ~CollectionElement() override;

protected:
    using BasicCollectionElement::BasicCollectionElement;
    void requireMember(Types::SimpleDataType const& member) const override;
};

/// An ordered collection of values.
class MXFZELM_EXPORT ArrayElement final : public CollectionElement {
public:
    ArrayElement(AttributePtr attribute, MetadataSet* set);
    ~ArrayElement() override;
};

/// An unordered collection of values.
class MXFZELM_EXPORT BatchElement final : public CollectionElement {
public:
    BatchElement(AttributePtr attribute, MetadataSet* set);
    ~BatchElement() override;
};

/// A collection of references.
class MXFZELM_EXPORT CollectionReferenceElement : public BasicCollectionElement<ReferenceHolder> {
public:
    ~CollectionReferenceElement() override;

    /// Appends a reference to `target`, which must have an instance UID.
    void addReference(MetadataSet const& target);

    Templates::vector<Types::UUID> targets() const override;
    bool isStrong() const override;

protected:
    using BasicCollectionElement::BasicCollectionElement;
    void requireMember(Types::SimpleDataType const& member) const override;
};

/// An ordered collection of references.
class MXFZELM_EXPORT ArrayReferenceElement final : public CollectionReferenceElement {
public:
    ArrayReferenceElement(AttributePtr attribute, MetadataSet* set);
    ~ArrayReferenceElement() override;
};

/// An unordered collection of references.
class MXFZELM_EXPORT BatchReferenceElement final : public CollectionReferenceElement {
public:
    BatchReferenceElement(AttributePtr attribute, MetadataSet* set);
    ~BatchReferenceElement() override;
};

/// An element that its set's class does not accept: its bytes, under the tag that they were found with.
class MXFZELM_EXPORT InvalidElement final : public Element {
public:
    /// `attribute` is an unknown or a misplaced one.
    InvalidElement(AttributePtr attribute, MetadataSet* set, Types::LocalTag const& tag);
    ~InvalidElement() override;

    Types::LocalTag const& tag() const { return tag_; }
    Types::Unknown const& value() const { return value_; }

    Types::BaseType const* baseValue() const override { return &value_; }

    /// Takes only values of type Unknown.
    void baseValue(Types::BaseType const& value) override;
    void load(KLV::Value& value) override;

protected:
    Types::LocalTag localTag(PartitionDictionary const& dictionary) const override;

private:
    Types::LocalTag tag_;
    Types::Unknown value_;
};

/// Makes elements by what they stand for.
class MXFZELM_EXPORT ElementFactory {
public:
    /// An element without a value, of the kind that the attribute's definition asks for. Throws
    /// Exceptions::InvalidElement for an attribute that the set's class does not declare (see
    /// MetadataSet::createInvalidElement).
    static Templates::auto_ptr<Element> create(Element::AttributePtr attribute, MetadataSet* set);
};

} // namespace MXF::Zelm::Metadata
