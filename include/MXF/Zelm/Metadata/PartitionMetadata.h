/// The header metadata of one partition (SMPTE 377M): its metadata sets, its dark sets, and the partition
/// dictionary that gives their local tags a meaning.
#pragma once

#include "MXF/Zelm/Metadata/DarkMetadataSet.h"
#include "MXF/Zelm/Metadata/MetadataSet.h"
#include "MXF/Zelm/Metadata/PartitionDictionary.h"
#include "MXF/Zelm/Metadata/PartitionMetadataListener.h"

#include <functional>
#include <list>
#include <memory>

namespace MXF::Zelm::Metadata {

/// Something in the metadata that could not be read as it should be, and where.
struct Fault {
    std::optional<std::uint64_t> offset; ///< in the data source
    std::string message;
};

/// The order of the sets when they are written.
enum class SerializationOrder {
    AsLoaded,          ///< in the order of loading and creating, dark sets among the others
    ByKey,             ///< in ascending order of their keys, dark sets last
    ForwardReferences, ///< the Preface first, each set before those that it refers to strongly, dark sets
                       ///< last
};

/// Owns its sets. Listeners are shared; when several are attached they are told in the order of attaching,
/// the index listener last. A listener that throws ends the change: it is undone, and the listeners told
/// before are told the opposite, the last one first (see PartitionMetadataListener).
class MXFZELM_EXPORT PartitionMetadata : public MetadataSetOwner, public Platform::Allocated {
public:
    using Sets = Templates::multimap<KLV::Key, MetadataSet*>;
    using DarkSets = Templates::list<DarkMetadataSet*>;
    using ListenerPtr = Templates::SharedPtr<PartitionMetadataListener, Templates::LockedCounter>;

    explicit PartitionMetadata(Templates::auto_ptr<PartitionDictionary> dictionary);
    ~PartitionMetadata() override;
    PartitionMetadata(PartitionMetadata const&) = delete;
    PartitionMetadata& operator=(PartitionMetadata const&) = delete;

    PartitionDictionary const& partitionDictionary() const { return *dictionary_; }
    PartitionDictionary& partitionDictionary() { return *dictionary_; }

    /// Reads a set and returns it; null when its class is not known and it was kept as a dark set. Throws
    /// what MetadataSet::load does, "InstanceUID not found in Metadata Set with key …" and "The … metadataSet
    /// has an instance UID, …, already defined!"; then nothing is kept.
    MetadataSet* load(KLV::Packet& packet);

    /// The same, but a set that cannot be read is kept as a dark set, its bytes unchanged, and the fault
    /// recorded. Throws only when the source ends before the set.
    MetadataSet* loadOrKeepDark(KLV::Packet& packet);

    /// What was found wrong while reading.
    Templates::vector<Fault> const& faults() const { return faults_; }
    void addFault(Fault fault) { faults_.push_back(std::move(fault)); }

    /// A new set of a class of the dictionary, with a new instance UID and nothing else. Throws
    /// Exceptions::InvalidMetadataSet with "A MetaMetadataSet with Key … was not found in the Dictionary.".
    MetadataSet& createMetadataSet(KLV::Key const& key);

    /// Takes a set over and becomes its owner. Throws as `load` does for its instance UID.
    MetadataSet& addMetadataSet(Templates::auto_ptr<MetadataSet> set);

    /// Removes the set with an instance UID; false when there is none. A listener may refuse by throwing.
    /// Throws Exceptions::InvalidChange while listeners are told of a change of the set.
    bool removeMetadataSet(Types::UUID const& instanceUID);

    DarkMetadataSet& addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet> set);

    /// The set with an instance UID, null when there is none.
    MetadataSet* find(Types::UUID const& instanceUID) const override;

    /// The first set with this key. Throws Exceptions::BaseException with "Didn't find MetadataSet with
    /// specified key.".
    MetadataSet& find(KLV::Key const& key) const;

    /// All sets whose element of that label has that value.
    Templates::vector<MetadataSet*> find(Types::UniversalLabel const& label,
                                         Types::SimpleDataType const& value) const;

    /// Appends the sets that hold a strong reference to `set`; returns how many. Throws
    /// Exceptions::InvalidStructure with "Circular reference for this instanceUID: " when a chain of strong
    /// references leads from the set back to it.
    std::size_t parentSets(MetadataSet const* set, Templates::vector<MetadataSet*>& parents) const;

    /// The one Preface. Throws Exceptions::InvalidStructure with "Preface not found in PartitionMetadata" or
    /// "More than one Preface found in PartitionMetadata".
    MetadataSet& preface() const;

    /// The Preface's content storage. Throws also "No ContentStorage".
    MetadataSet& contentStorage() const;

    /// The packages of the content storage, in its order. Throws also "No ContentStorage packages" when there
    /// are none.
    Templates::vector<MetadataSet*> packages() const;

    /// Number of metadata sets, dark sets not counted.
    std::size_t size() const { return sets_.size(); }
    Sets::const_iterator begin() const { return sets_.begin(); }
    Sets::const_iterator end() const { return sets_.end(); }
    DarkSets::const_iterator darkBegin() const { return darkSets_.begin(); }
    DarkSets::const_iterator darkEnd() const { return darkSets_.end(); }
    std::size_t darkSize() const { return darkSets_.size(); }

    /// Gives every label in use a local tag and enters it into the primer.
    void generateLocalTags();

    /// Appends the sets in the order of their strong references, the Preface first: each set stands before
    /// those that it refers to (`forward`) or behind them. Sets that the Preface does not reach follow if
    /// `unreferenced`. Throws Exceptions::InvalidStructure with "Circular reference for this instanceUID: ".
    void calculateSerializationOrder(Templates::vector<MetadataSet const*>& sets, bool forward,
                                     bool unreferenced) const;

    /// Writes the header metadata: the primer pack, then all sets. Invalid elements are written if
    /// `withInvalid`. Fill is the caller's business. Throws as `calculateSerializationOrder` does.
    void serialize(DataIO::DataSink& sink, bool withInvalid, SerializationOrder order);

    /// Writes the sets that the Preface reaches, without the primer, each before those that it refers to; the
    /// others follow if `unreferenced`.
    void serializeForwardReferences(DataIO::DataSink& sink, bool withInvalid, bool unreferenced);

    /// Bytes that `serialize` writes, the tags of all labels in use being in the primer.
    std::uint64_t serializedSize(bool withInvalid) const;

    /// The validation lists of all sets, as MetadataSet has them.
    void openElements(Templates::vector<Element*>& elements) const;
    void incompleteElements(Templates::vector<Element*>& elements) const;
    void possiblyOpenElements(Templates::vector<Element*>& elements) const;
    void possiblyIncompleteElements(Templates::vector<Element*>& elements) const;
    void possiblyForbiddenElements(Templates::vector<Element*>& elements) const;
    void getSemanticsValidationElements(Templates::vector<Element*>& elements) const;

    /// What the sets lack, as MetadataSet::missingAttributes tells.
    void missingAttributes(Templates::vector<MissingAttribute>& missing) const;

    /// Attaches a listener; with `tellExisting` it is told of every set that is there as if just created. One
    /// that throws then is not attached.
    void addMetadataListener(ListenerPtr listener, bool tellExisting);
    void removeMetadataListener(ListenerPtr const& listener);

    /// The listener that serves `find`; it is told of every set that is there. Null for none.
    void setMetadataIndexListener(
        Templates::SharedPtr<Listeners::MetadataIndexListener, Templates::LockedCounter> listener);

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
    void changeUndone() override;
    bool isUndoing() const override { return isUndoing_; }
    void metadataSetCloned(MetadataSet const& original, MetadataSet& clone) override;

private:
    struct Place;
    using Places = std::list<Place>;

    /// A set and where to find it when it is removed.
    struct Held {
        MetadataSet* set;
        Places::iterator place;
        Sets::iterator byKey;
    };
    using HeldSets = Templates::map<Types::UUID, Held>;

    /// Who was told of a change that was then refused, and what they are told when it is undone.
    struct Refused {
        Templates::vector<ListenerPtr> told;
        std::function<void(PartitionMetadataListener&)> opposite;
    };

    void gather(void (MetadataSet::*list)(Templates::vector<Element*>&) const,
                Templates::vector<Element*>& elements) const;
    Templates::vector<ListenerPtr> listenersToTell() const;
    template <class Call, class Opposite>
    void tell(Call call, Opposite opposite);
    KLV::Key keyForNewSet(KLV::Key key);
    void tellOfExistingSets(PartitionMetadataListener& listener);
    void drop(HeldSets::iterator held);
    void requireFreeInstanceUID(MetadataSet const& set) const;
    void serializeAsLoaded(DataIO::DataSink& sink, bool withInvalid) const;

    Templates::auto_ptr<PartitionDictionary> dictionary_;
    Places places_; // owns all sets, in the order in which they came
    Sets sets_;
    DarkSets darkSets_;
    HeldSets byInstanceUID_;
    Templates::vector<ListenerPtr> listeners_;
    Templates::SharedPtr<Listeners::MetadataIndexListener, Templates::LockedCounter> indexListener_;
    Templates::vector<Fault> faults_;
    Refused refused_;
    bool isUndoing_ = false;
};

} // namespace MXF::Zelm::Metadata
