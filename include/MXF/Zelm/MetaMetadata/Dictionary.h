/// The meta dictionary: which set classes exist, which attributes each may carry, of which type they are, and
/// which local tags stand for which labels. It holds definitions only, never values. A host fills it once and
/// then shares it with any number of readers; it must not be changed while they use it.
#pragma once

#include "MXF/Zelm/MetaMetadata/MetaMetadataSet.h"

namespace MXF::Zelm::MetaMetadata {

/// Static local tags and the labels that they stand for.
class MXFZELM_EXPORT LocalTagMap {
public:
    virtual ~LocalTagMap();

    /// Records a static local tag. A repeat is passed over. Throws Exceptions::InvalidLocalTag when tag or
    /// label is taken by another pair.
    virtual void add(Types::LocalTag const& tag, Types::UniversalLabel const& label) = 0;

    /// The label of a tag, null when unknown.
    virtual Types::UniversalLabel const* find(Types::LocalTag const& tag) const = 0;

    /// The static tag of a label, null when it has none.
    virtual Types::LocalTag const* find(Types::UniversalLabel const& label) const = 0;
};

/// Labels and the elements that they define.
class MXFZELM_EXPORT UniversalLabelMap {
public:
    virtual ~UniversalLabelMap();

    /// Takes over an element definition. Throws Exceptions::InvalidMetaElement when the label has one already
    /// or is not the element's.
    virtual void add(Types::UniversalLabel const& label, Templates::auto_ptr<MetaElement> element) = 0;

    /// The element of a label, null when unknown.
    virtual MetaElement const* findMetaElement(Types::UniversalLabel const& label) const = 0;
};

class MXFZELM_EXPORT Dictionary : public LocalTagMap, public UniversalLabelMap, public Platform::Allocated {
public:
    using LocalTagToLabel = Templates::map<Types::LocalTag, Types::UniversalLabel>;
    using MetaElements = Templates::map<Types::UniversalLabel, Templates::auto_ptr<MetaElement>>;
    using MetaMetadataSets = Templates::map<KLV::Key, MetaMetadataSet>;

    /// Empty: every set read with it is kept as a dark one.
    Dictionary();
    ~Dictionary() override;
    Dictionary(Dictionary const&) = delete;
    Dictionary& operator=(Dictionary const&) = delete;

    void add(Types::LocalTag const& tag, Types::UniversalLabel const& label) override;
    void add(Types::UniversalLabel const& label, Templates::auto_ptr<MetaElement> element) override;

    /// Stores a copy of a class definition under its key; one that is there is replaced. Throws
    /// Exceptions::InvalidMetadataSet when the key is not the definition's.
    virtual void add(KLV::Key const& key, MetaMetadataSet const& metadataSet);

    /// The same without the copy.
    virtual void add(KLV::Key const& key, MetaMetadataSet&& metadataSet);

    Types::UniversalLabel const* find(Types::LocalTag const& tag) const override;
    Types::LocalTag const* find(Types::UniversalLabel const& label) const override;
    MetaElement const* findMetaElement(Types::UniversalLabel const& label) const override;

    /// The same while the dictionary is being filled.
    MetaElement* findMetaElement(Types::UniversalLabel const& label);

    /// The element of a label whose version (byte 7) is left out of account; null when unknown.
    MetaElement const* findMetaElementOfAnyVersion(Types::UniversalLabel const& label) const;

    /// The class with exactly this key, null when unknown: the set is then kept as a dark one.
    virtual MetaMetadataSet const* find(KLV::Key const& key) const;

    /// The class whose key is this one but for its version (byte 13); null when unknown.
    MetaMetadataSet const* findOfAnyVersion(KLV::Key const& key) const;

    /// Set classes whose property `name` has `value`.
    Templates::vector<MetaMetadataSet const*> findMetaMetadataSetProperty(std::u16string_view name,
                                                                          std::u16string_view value) const;

    /// Set classes that have an attribute whose element's property `name` has `value`.
    Templates::vector<MetaMetadataSet const*>
    findMetaMetadataSetWithMetaAtributeProperty(std::u16string_view name, std::u16string_view value) const;

    /// Elements whose property `name` has `value`.
    Templates::vector<MetaElement const*> findMetaElementProperty(std::u16string_view name,
                                                                  std::u16string_view value) const;

    LocalTagToLabel::const_iterator localTag2ULBegin() const { return labels_.begin(); }
    LocalTagToLabel::const_iterator localTag2ULEnd() const { return labels_.end(); }
    MetaElements::const_iterator metaElementBegin() const { return elements_.begin(); }
    MetaElements::const_iterator metaElementEnd() const { return elements_.end(); }
    MetaMetadataSets::const_iterator metaMetadataSetBegin() const { return sets_.begin(); }
    MetaMetadataSets::const_iterator metaMetadataSetEnd() const { return sets_.end(); }

private:
    LocalTagToLabel labels_;
    Templates::map<Types::UniversalLabel, Types::LocalTag> tags_;
    MetaElements elements_;
    MetaMetadataSets sets_; // destroyed before the elements that its attributes refer to
};

/// The mask under which set keys are compared when their version (byte 13) may differ.
MXFZELM_EXPORT Types::UniversalLabel const& setKeyVersionMask();

} // namespace MXF::Zelm::MetaMetadata
