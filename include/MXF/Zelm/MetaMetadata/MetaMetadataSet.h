/// The definition of one set class: its key and the attributes that its sets may carry, those of its parent
/// classes included.
#pragma once

#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/MetaMetadata/MetaAttribute.h"

namespace MXF::Zelm::MetaMetadata {

/// Its property "name" is the class's symbol.
class MXFZELM_EXPORT MetaMetadataSet : public PropertyMap, public Platform::Allocated {
public:
    /// The attributes in ascending order of their labels.
    using Attributes = std::vector<Templates::SharedPtr<MetaAttribute, Templates::LockedCounter>>;

    /// A class without attributes.
    explicit MetaMetadataSet(KLV::Key const& key) : key_(key) {}

    /// A class with all the attributes of `parent`, shared with it, and none of its properties.
    MetaMetadataSet(KLV::Key const& key, MetaMetadataSet const& parent)
        : key_(key), attributes_(parent.attributes_) {}

    KLV::Key const& key() const { return key_; }

    /// The attribute with a label; empty when the class does not declare it.
    Templates::SharedPtr<MetaAttribute, Templates::LockedCounter>
    findMetaAttribute(Types::UniversalLabel const& label) const;

    /// The same, the version (byte 7) of the label left out of account: files carry labels of older
    /// registers.
    Templates::SharedPtr<MetaAttribute, Templates::LockedCounter>
    findMetaAttributeOfAnyVersion(Types::UniversalLabel const& label) const;

    /// Adds an attribute under its element's label. Throws Exceptions::InvalidMetaAttribute with "A
    /// MetaAttribute with UL … already exists in this MetaMetadataSet", and changes nothing, when there is
    /// one.
    void addMetaAttribute(Templates::SharedPtr<MetaAttribute, Templates::LockedCounter> attribute);

    std::size_t metaAttributeCount() const { return attributes_.size(); }
    Attributes::const_iterator metaAttributesBegin() const { return attributes_.begin(); }
    Attributes::const_iterator metaAttributesEnd() const { return attributes_.end(); }

    /// Equal keys and the same attributes.
    friend bool operator==(MetaMetadataSet const& a, MetaMetadataSet const& b) {
        return a.key_ == b.key_ && a.attributes_ == b.attributes_;
    }

private:
    Attributes::const_iterator lowerBound(Types::UniversalLabel const& label) const;

    KLV::Key key_;
    Attributes attributes_;
};

} // namespace MXF::Zelm::MetaMetadata
