/// The graph that references make between the sets of a partition (SMPTE 377M: a strong reference owns its
/// target, a weak one points at it).
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"

#include <set>
#include <unordered_set>

namespace MXF::Zelm::Metadata::Listeners {

/// From each element with references to the instance UIDs that it refers to, one as often as it is there.
using References2UUIDMap = Templates::multimap<Element*, Types::UUID>;

/// What is known of one instance UID: the set that carries it and the elements that refer to it.
struct ReferenceEntry : Platform::Allocated {
    /// An element as often as it refers to the UID, each time with the reference's place in the other map.
    using Links = Templates::multimap<Element*, References2UUIDMap::iterator>;

    MetadataSet* set = nullptr; ///< null while the references dangle: their target is not there (yet)
    Links strong;
    Links weak;
};

using UUID2ReferencesMap =
    Templates::map<Types::UUID, Templates::SharedPtr<ReferenceEntry, Templates::LockedCounter>>;

/// Follows all references of one partition's metadata. A change costs the logarithm of what is there for each
/// reference that it concerns; one member of a collection is one reference.
///
/// Attach it with `addMetadataListener(manager, true)`. It owns nothing, and is to be used no longer than the
/// metadata lives. References may dangle; they are known from the start and lead somewhere as soon as their
/// target comes.
class MXFZELM_EXPORT MetadataSetRelationshipManager : public PartitionMetadataListener {
public:
    /// `metadata` is not owned.
    explicit MetadataSetRelationshipManager(PartitionMetadata* metadata);
    ~MetadataSetRelationshipManager() override;
    MetadataSetRelationshipManager(MetadataSetRelationshipManager const&) = delete;
    MetadataSetRelationshipManager& operator=(MetadataSetRelationshipManager const&) = delete;

    UUID2ReferencesMap const& uuid2ReferencesMap() const { return entries_; }
    References2UUIDMap const& references2UUIDMap() const { return references_; }

    /// The set that holds the strong reference to `set`, null for a root. A file that breaks the rules may
    /// have several; then it is one of them. Throws Exceptions::InvalidStructure with "Circular reference in
    /// MXF file! InstanceUID: " when the chain of parents never ends, so that climbing it does; looking for
    /// that takes the time of climbing.
    MetadataSet* parentSet(MetadataSet* set) const;
    MetadataSet const* parentSet(MetadataSet const* set) const;

    /// Adds the elements that refer to the set, its own among them; returns how many there are, each counted
    /// once however often it refers.
    std::size_t metadataSetStrongRefs(MetadataSet const* set, std::set<Element*>& elements) const;
    std::size_t metadataSetWeakRefs(MetadataSet const* set, std::set<Element*>& elements) const;

    /// False while any element of another set refers to the set, strongly or weakly.
    bool canDeleteMetadataSet(MetadataSet const* set) const;

    /// Removes the set and what lies below it in the tree of strong references, parents first. A set that
    /// something outside also refers to strongly stays, with all below it. False when there is nothing to
    /// remove: null, or a set that the metadata does not hold.
    ///
    /// Throws, with nothing removed, Exceptions::InvalidStructure with "Circular reference in MXF file!
    /// InstanceUID: ", and, while integrity is enforced, Exceptions::InvalidChange as below when one of the
    /// sets would leave a reference dangling. Another listener that refuses ends it where it is: what was
    /// removed before stays removed.
    bool cascadeDelete(MetadataSet* set);

    /// Whether removing a set that other sets refer to is refused, with Exceptions::InvalidChange: "Cannot
    /// removed this MetadataSet because is referenced by other Metadata Set". It is at first.
    void enforceReferentialIntegrity(bool enforce) { isEnforcing_ = enforce; }

    void metadataSetKey(KLV::Key& key) override;
    void createdMetadataSet(MetadataSet* set) override;
    void removedMetadataSet(MetadataSet* set) override;
    void addedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                      Types::BaseType const& value) override;
    void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                        Types::Collection const& oldValue, Types::Collection const& newValue) override;
    void updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                        Types::SimpleDataType const& oldValue,
                        Types::SimpleDataType const& newValue) override;
    void updatedElementCollection(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                  Element& element, Types::Collection const& value, std::size_t index,
                                  Types::SimpleDataType const* oldMember,
                                  Types::SimpleDataType const* newMember) override;
    void removedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition, Element& element,
                        Types::BaseType const& value) override;

private:
    using Sets = std::unordered_set<MetadataSet const*>;

    ReferenceEntry const* entryOf(MetadataSet const* set) const;
    MetadataSet* anyParent(MetadataSet const* set) const;
    void name(MetadataSet& set, Types::UUID const& uid);
    void unname(MetadataSet const& set, Types::UUID const& uid);
    void dropIfUnused(UUID2ReferencesMap::iterator entry);
    void link(Element& element, bool isStrong, Types::UUID const& target);
    void unlink(Element& element, bool isStrong, Types::UUID const& target);
    void read(Element& element);
    void forget(Element& element);
    Templates::vector<MetadataSet const*> setsToDelete(MetadataSet const& root, Sets& doomed) const;

    PartitionMetadata* metadata_;
    UUID2ReferencesMap entries_;
    References2UUIDMap references_;
    Sets doomed_; // what a cascade is removing
    bool isEnforcing_ = true;
};

} // namespace MXF::Zelm::Metadata::Listeners
