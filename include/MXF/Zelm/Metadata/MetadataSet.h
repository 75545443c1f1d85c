/// One local set of header metadata (SMPTE 377M): its key, the definition of its class, and its elements.
///
///     key      16    byte 5 tells the widths of tags and lengths; 53: two bytes each
///     length         BER
///     value          elements: tag, length, value
#pragma once

#include "MXF/Zelm/KLV/Packet.h"
#include "MXF/Zelm/MetaMetadata/MetaMetadataSet.h"
#include "MXF/Zelm/Metadata/Element.h"
#include "MXF/Zelm/Metadata/MetadataSetOwner.h"

#include <string_view>
#include <vector>

namespace MXF::Zelm::Metadata {

class MetadataSet;
class PartitionDictionary;

namespace Visitors {

class MXFZELM_EXPORT MetadataSetVisitor {
public:
    virtual ~MetadataSetVisitor();
    virtual void visit(MetadataSet const& set) = 0;
};

class MXFZELM_EXPORT NonConstMetadataSetVisitor {
public:
    virtual ~NonConstMetadataSetVisitor();
    virtual void visit(MetadataSet& set) = 0;
};

} // namespace Visitors

/// An attribute that a set should have and has not. The attribute is the dictionary's.
struct MissingAttribute {
    MetadataSet const* set;
    MetaMetadata::MetaAttribute const* attribute;
};

/// Owns its elements; is owned by its partition metadata.
class MXFZELM_EXPORT MetadataSet : public Platform::Allocated {
public:
    /// The valid elements in ascending order of their labels.
    using Elements = std::vector<Templates::auto_ptr<Element>>;

    /// An empty set. `definition` and `owner` are not owned. The owner follows references; it hears of
    /// changes once it holds the set (PartitionMetadata::addMetadataSet). Throws Exceptions::BaseException
    /// with "MetadataSet Key and MetaMetadataSet do not agree".
    MetadataSet(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                MetadataSetOwner* owner);
    virtual ~MetadataSet();
    MetadataSet(MetadataSet const&) = delete;
    MetadataSet& operator=(MetadataSet const&) = delete;

    KLV::Key const& key() const { return key_; }
    MetaMetadata::MetaMetadataSet const* metaMetadataSet() const { return definition_; }
    MetadataSetOwner* owner() const { return owner_; }

    /// The "name" property of the class, "<unknown>" when it has none.
    std::u16string name() const;

    /// Bytes of the length field: what the set was read with, 4 in a new one. Writing takes more when the set
    /// needs it.
    unsigned char berLength() const { return berLength_; }
    void berLength(unsigned char size) { berLength_ = size; }

    /// Where the key stood in the source that the set was read from; absent for one made in memory.
    std::optional<std::uint64_t> absoluteOffset() const { return offset_; }

    /// Reads a local set. What its class does not accept is kept as invalid elements. The owner is not told
    /// of single elements. Throws Exceptions::BaseException with "Invalid Metadata Set local field length or
    /// length field length" for a key of another coding, "Invalid data size in Value to create an element in
    /// the metadataSet." when an item runs beyond the set.
    void load(KLV::Packet& packet, PartitionDictionary const& dictionary);

    /// Writes the set: its elements in ascending order of their labels, then, if `withInvalid`, the invalid
    /// ones in the order in which they came. Every label in use must have a tag in `dictionary`.
    void serialize(DataIO::DataSink& sink, PartitionDictionary const& dictionary, bool withInvalid) const;

    /// Bytes that `serialize` writes.
    std::uint64_t serializedSize(bool withInvalid) const;

    /// The element of a label. Throws Exceptions::BaseException with "No element with this Universal Label
    /// was found: ".
    Element& find(Types::UniversalLabel const& label) const;

    /// The element of a label, null when the set has none.
    Element* findElement(Types::UniversalLabel const& label) const;

    /// The value of a label as a `T`, null when the set has none of that type.
    template <class T>
    T const* value(Types::UniversalLabel const& label) const {
        auto const* const element = findElement(label);
        return element != nullptr ? Types::valueCast<T>(element->baseValue()) : nullptr;
    }

    /// The element of a property by its name in the registers or in SMPTE 377M (the properties "name" and
    /// "name377" of its definition), null when the set has none. For sets without a C++ class of their own:
    /// `set.value<Types::UInt8>(u"AVCLevel")`. Looks at each element in turn.
    Element* findElement(std::u16string_view name) const;

    /// The value of the property with that name as a `T`, null when the set has none of that type.
    template <class T>
    T const* value(std::u16string_view name) const {
        auto const* const element = findElement(name);
        return element != nullptr ? Types::valueCast<T>(element->baseValue()) : nullptr;
    }

    /// The label of the property with that name, which the set need not have: with it a property is set, and
    /// references are followed. Throws Exceptions::InvalidElement when the class declares none.
    Types::UniversalLabel const& labelOf(std::u16string_view name) const;

    /// Sets the value of an element, which is made when the set has none. Throws Exceptions::BaseException
    /// when the class does not declare the label or the value does not suit.
    Element& value(Types::UniversalLabel const& label, Types::BaseType const& value);

    /// Appends a member to the collection of values with this label, which is made when the set has none.
    /// Throws as `value` does, Exceptions::InvalidElement when the label is not that of such a collection.
    Element& add(Types::UniversalLabel const& label, Types::SimpleDataType const& member);

    /// Makes the reference with this label, strong or weak as the class says, point to `target`. Throws as
    /// `value` does, Exceptions::InvalidElement when the label is not that of one reference.
    Element& reference(Types::UniversalLabel const& label, MetadataSet const& target);

    /// Appends a reference to `target` to those with this label, which are made when the set has none. Throws
    /// as `value` does, Exceptions::InvalidElement when the label is not that of a collection of references.
    Element& addReference(Types::UniversalLabel const& label, MetadataSet const& target);

    /// Takes the first reference to `target` out of those with this label; false when there is none. Throws
    /// Exceptions::InvalidChange when too few would be left.
    bool removeReference(Types::UniversalLabel const& label, MetadataSet const& target);

    /// Removes an element; false when the set has none. Throws Exceptions::BaseException with "… is required
    /// according to Schema" for one that is required.
    bool removeElement(Types::UniversalLabel const& label);

    /// The set that the reference with this label points to; null when there is no reference or no such set.
    MetadataSet* referencedSet(Types::UniversalLabel const& label) const;

    /// The sets that the references with this label point to, in their order; dangling ones are left out.
    Templates::vector<MetadataSet*> referencedSets(Types::UniversalLabel const& label) const;

    Elements::const_iterator begin() const { return elements_.begin(); }
    Elements::const_iterator end() const { return elements_.end(); }

    /// Number of valid elements.
    std::size_t size() const { return elements_.size(); }

    /// Keeps the bytes of an element that the class does not accept. `attribute` is an unknown or a misplaced
    /// one.
    Element& createInvalidElement(Element::AttributePtr attribute, Types::LocalTag const& tag,
                                  KLV::Value& value);

    /// Drops an invalid element. Throws Exceptions::InvalidElement with "Element not found in Invalid Element
    /// list!".
    void removedInvalidElement(Element* element);

    Elements::const_iterator invalidBegin() const { return invalid_.begin(); }
    Elements::const_iterator invalidEnd() const { return invalid_.end(); }
    std::size_t invalidSize() const { return invalid_.size(); }

    /// Null when the set has none.
    Types::UUID const* instanceUID() const;

    /// A copy under another owner, invalid elements included, with a new instance UID if `newInstanceUID`.
    /// The owner, if any, is told (`metadataSetCloned`); the caller owns the copy otherwise.
    Templates::auto_ptr<MetadataSet> clone(bool newInstanceUID, MetadataSetOwner* owner) const;

    virtual void accept(Visitors::MetadataSetVisitor& visitor) const;
    virtual void accept(Visitors::NonConstMetadataSetVisitor& visitor);

    /// The validation lists. Each appends the elements that keep header metadata from being closed or
    /// complete, or that a closer look may find to do so; docs/architecture.md tells the rule of each.
    void openElements(Templates::vector<Element*>& elements) const;
    void incompleteElements(Templates::vector<Element*>& elements) const;
    void possiblyOpenElements(Templates::vector<Element*>& elements) const;
    void possiblyIncompleteElements(Templates::vector<Element*>& elements) const;

    /// Appends what the set lacks: the attributes of its class that must be present (required, required of
    /// encoders, best effort) and have no element.
    void missingAttributes(Templates::vector<MissingAttribute>& missing) const;

    /// Elements that the class does not declare, although the dictionary knows them.
    void possiblyForbiddenElements(Templates::vector<Element*>& elements) const;

    /// Elements whose definition carries the property "RequiresSemanticsValidation".
    void getSemanticsValidationElements(Templates::vector<Element*>& elements) const;

private:
    friend class PartitionMetadata;
    friend class Element;

    /// The owner when it holds the set and is to be told of changes, else null.
    MetadataSetOwner* listeningOwner() const { return isHeld_ ? owner_ : nullptr; }

    template <class Wanted>
    void unknownValues(Wanted wanted, Templates::vector<Element*>& elements) const;
    std::uint64_t valueLength(bool withInvalid) const;
    Elements::const_iterator lowerBound(Types::UniversalLabel const& label) const;
    Element& insert(Templates::auto_ptr<Element> created);
    template <class Change>
    Element& changeElement(Types::UniversalLabel const& label, Change change);
    void drop(Element const& element);
    void loadElement(KLV::Value& value, PartitionDictionary const& dictionary, std::uint64_t offset);
    Templates::auto_ptr<Element> readElement(std::vector<unsigned char> const& bytes,
                                             Types::LocalTag const& tag,
                                             PartitionDictionary const& dictionary);

    KLV::Key key_;
    MetaMetadata::MetaMetadataSet const* definition_;
    MetadataSetOwner* owner_;
    unsigned char berLength_;
    bool isHeld_ = false;    // the owner holds the set
    bool isLeaving_ = false; // the owner is telling of its removal
    unsigned tellings_ = 0;  // changes of the set that the owner is telling of
    std::optional<std::uint64_t> offset_;
    Elements elements_;
    Elements invalid_;
};

} // namespace MXF::Zelm::Metadata
