#include "MXF/Zelm/Metadata/PartitionMetadata.h"

#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Labels.h"
#include "MXF/Zelm/Metadata/MetadataSetFactory.h"
#include "MXF/Zelm/Metadata/StrongReferenceWalk.h"
#include "MXF/Zelm/Platform/Text.h"

#include <utility>

namespace MXF::Zelm::Metadata {

namespace {

std::string toText(KLV::Key const& key) {
    return Platform::toUtf8(key.toString(Types::StringRepresentationEncodingType::URN));
}

/// Gives a flag a value for as long as it lives.
class Setting {
public:
    Setting(bool& flag, bool value) : flag_(flag), old_(std::exchange(flag, value)) {}
    ~Setting() { flag_ = old_; }
    Setting(Setting const&) = delete;
    Setting& operator=(Setting const&) = delete;

private:
    bool& flag_;
    bool old_;
};

} // namespace

PartitionMetadataListener::~PartitionMetadataListener() = default;
Listeners::MetadataIndexListener::~MetadataIndexListener() = default;

/// One set or dark set in the order of coming.
struct PartitionMetadata::Place {
    Templates::auto_ptr<MetadataSet> set;
    Templates::auto_ptr<DarkMetadataSet> darkSet;
};

PartitionMetadata::PartitionMetadata(Templates::auto_ptr<PartitionDictionary> dictionary)
    : dictionary_(std::move(dictionary)) {
    if (!dictionary_)
        throw Exceptions::InvalidValue("Partition metadata needs a partition dictionary");
}

PartitionMetadata::~PartitionMetadata() = default;

/// A copy: a listener may detach itself while it is told.
Templates::vector<PartitionMetadata::ListenerPtr> PartitionMetadata::listenersToTell() const {
    auto listeners = listeners_;
    if (indexListener_)
        listeners.push_back(indexListener_);
    return listeners;
}

template <class Call, class Opposite>
void PartitionMetadata::tell(Call call, Opposite opposite) {
    Setting const asChange(isUndoing_, false); // made by a listener that is told of an undoing
    auto listeners = listenersToTell();
    for (std::size_t told = 0; told < listeners.size(); ++told) {
        try {
            call(*listeners[told]);
        } catch (...) {
            listeners.resize(told);
            refused_ = {std::move(listeners), opposite};
            throw;
        }
    }
}

void PartitionMetadata::changeUndone() {
    Refused const refused = std::exchange(refused_, {});
    Setting const asUndoing(isUndoing_, true);
    for (auto listener = refused.told.rbegin(); listener != refused.told.rend(); ++listener) {
        try {
            refused.opposite(**listener);
        } catch (...) {
            // The change is undone whatever a listener says to it.
        }
    }
}

KLV::Key PartitionMetadata::keyForNewSet(KLV::Key key) {
    for (auto const& listener : listenersToTell())
        listener->metadataSetKey(key);
    return key;
}

MetadataSet* PartitionMetadata::load(KLV::Packet& packet) {
    packet.key(keyForNewSet(packet.key()));
    auto const* const definition = dictionary_->dictionary()->find(packet.key());
    if (definition == nullptr) {
        addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet>(new DarkMetadataSet(packet)));
        return nullptr;
    }
    auto set = MetadataSetFactory::instance().create(*definition, this);
    set->load(packet, *dictionary_);
    try {
        return &addMetadataSet(std::move(set));
    } catch (Exceptions::BaseException& failure) {
        failure.offset(packet.keyAbsoluteOffset());
        throw;
    }
}

MetadataSet* PartitionMetadata::loadOrKeepDark(KLV::Packet& packet) {
    auto const bytes = packet.value().readRemaining();
    std::string reason;
    try {
        DataIO::Memory::MemoryViewDataSource source(bytes.data(), bytes.size());
        KLV::Packet copy(packet.key(), packet.berLength(), bytes.size(), source, packet.keyAbsoluteOffset());
        return load(copy);
    } catch (Exceptions::BaseException const& failure) {
        reason = failure.message();
        addFault({failure.offset() ? failure.offset() : packet.keyAbsoluteOffset(), reason});
    }
    DataIO::Memory::MemoryViewDataSource source(bytes.data(), bytes.size());
    KLV::Packet copy(packet.key(), packet.berLength(), bytes.size(), source, packet.keyAbsoluteOffset());
    Templates::auto_ptr<DarkMetadataSet> dark(new DarkMetadataSet(copy));
    dark->reason(reason);
    addDarkMetadataSet(std::move(dark));
    return nullptr;
}

MetadataSet& PartitionMetadata::createMetadataSet(KLV::Key const& wantedKey) {
    KLV::Key const key = keyForNewSet(wantedKey);
    auto const* const definition = dictionary_->dictionary()->find(key);
    if (definition == nullptr)
        throw Exceptions::InvalidMetadataSet("A MetaMetadataSet with Key " + toText(key) +
                                             " was not found in the Dictionary.");
    auto set = MetadataSetFactory::instance().create(*definition, this);
    set->value(instanceUIDLabel, Types::UUID::generate());
    return addMetadataSet(std::move(set));
}

void PartitionMetadata::requireFreeInstanceUID(MetadataSet const& set) const {
    auto const* const uid = set.instanceUID();
    if (uid == nullptr)
        throw Exceptions::InvalidMetadataSet("InstanceUID not found in Metadata Set with key " +
                                             toText(set.key()) + " Check Metadata Set builder.");
    if (byInstanceUID_.contains(*uid))
        throw Exceptions::InvalidMetadataSet(u"The " + set.name() + u" metadataSet has an instance UID, " +
                                             uid->toString() + u", already defined!");
}

void PartitionMetadata::drop(HeldSets::iterator held) {
    Held const dropped = held->second;
    byInstanceUID_.erase(held);
    sets_.erase(dropped.byKey);
    places_.erase(dropped.place);
}

MetadataSet& PartitionMetadata::addMetadataSet(Templates::auto_ptr<MetadataSet> set) {
    requireFreeInstanceUID(*set);
    MetadataSet& added = *set;
    added.owner_ = this;
    auto const place = places_.insert(places_.end(), {std::move(set), nullptr});
    auto const byKey = sets_.emplace(added.key(), &added);
    byInstanceUID_.emplace(*added.instanceUID(), Held{&added, place, byKey});
    added.isHeld_ = true;
    ++added.tellings_;
    try {
        tell([&added](PartitionMetadataListener& listener) { listener.createdMetadataSet(&added); },
             [&added](PartitionMetadataListener& listener) { listener.removedMetadataSet(&added); });
    } catch (...) {
        changeUndone();
        drop(byInstanceUID_.find(*added.instanceUID())); // a listener may have changed it
        throw;
    }
    --added.tellings_;
    return added;
}

bool PartitionMetadata::removeMetadataSet(Types::UUID const& instanceUID) {
    auto const found = byInstanceUID_.find(instanceUID);
    if (found == byInstanceUID_.end())
        return false;
    MetadataSet* const set = found->second.set;
    if (set->tellings_ != 0 || set->isLeaving_)
        throw Exceptions::InvalidChange(
            "A metadata set cannot be removed while listeners are told of its change");
    set->isLeaving_ = true;
    try {
        tell([set](PartitionMetadataListener& listener) { listener.removedMetadataSet(set); },
             [set](PartitionMetadataListener& listener) { listener.createdMetadataSet(set); });
    } catch (...) {
        changeUndone();
        set->isLeaving_ = false;
        throw;
    }
    drop(found);
    return true;
}

DarkMetadataSet& PartitionMetadata::addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet> set) {
    places_.push_back({nullptr, std::move(set)});
    darkSets_.push_back(places_.back().darkSet.get());
    return *darkSets_.back();
}

MetadataSet* PartitionMetadata::find(Types::UUID const& instanceUID) const {
    auto const found = byInstanceUID_.find(instanceUID);
    return found != byInstanceUID_.end() ? found->second.set : nullptr;
}

MetadataSet& PartitionMetadata::find(KLV::Key const& key) const {
    auto const found = sets_.find(key);
    if (found == sets_.end())
        throw Exceptions::InvalidMetadataSet("Didn't find MetadataSet with specified key.");
    return *found->second;
}

Templates::vector<MetadataSet*> PartitionMetadata::find(Types::UniversalLabel const& label,
                                                        Types::SimpleDataType const& value) const {
    if (indexListener_)
        return indexListener_->find(label, value);
    Templates::vector<MetadataSet*> found;
    for (auto const& [key, set] : sets_) {
        auto const* const element = set->findElement(label);
        if (element != nullptr && element->baseValue() != nullptr && element->baseValue()->equals(value))
            found.push_back(set);
    }
    return found;
}

std::size_t PartitionMetadata::parentSets(MetadataSet const* set,
                                          Templates::vector<MetadataSet*>& parents) const {
    Templates::multimap<MetadataSet const*, MetadataSet*> parentsOf;
    for (auto const& [key, parent] : sets_)
        for (auto const* const child : strongChildren(*parent))
            parentsOf.emplace(child, parent);
    requireNoCircle(*set, parentsOf);
    auto const [first, last] = parentsOf.equal_range(set);
    for (auto entry = first; entry != last; ++entry)
        parents.push_back(entry->second);
    return static_cast<std::size_t>(std::distance(first, last));
}

MetadataSet& PartitionMetadata::preface() const {
    auto const [first, last] = sets_.equal_range(prefaceKey);
    if (first == last)
        throw Exceptions::InvalidStructure("Preface not found in PartitionMetadata");
    if (std::next(first) != last)
        throw Exceptions::InvalidStructure("More than one Preface found in PartitionMetadata");
    return *first->second;
}

MetadataSet& PartitionMetadata::contentStorage() const {
    auto* const storage = preface().referencedSet(contentStorageLabel);
    if (storage == nullptr)
        throw Exceptions::InvalidStructure("No ContentStorage");
    return *storage;
}

Templates::vector<MetadataSet*> PartitionMetadata::packages() const {
    auto packages = contentStorage().referencedSets(packagesLabel);
    if (packages.empty())
        throw Exceptions::InvalidStructure("No ContentStorage packages");
    return packages;
}

void PartitionMetadata::generateLocalTags() {
    for (auto const& [key, set] : sets_)
        for (auto element = set->invalidBegin(); element != set->invalidEnd(); ++element)
            dictionary_->reserve(static_cast<InvalidElement const&>(**element).tag());
    for (auto const& [key, set] : sets_)
        for (auto const& element : *set)
            dictionary_->findOrGenerate(element->metaElement()->universalLabel());
}

void PartitionMetadata::calculateSerializationOrder(Templates::vector<MetadataSet const*>& sets, bool forward,
                                                    bool unreferenced) const {
    StrongReferenceWalk walk(forward, sets);
    for (auto [root, last] = sets_.equal_range(prefaceKey); root != last; ++root)
        walk.from(*root->second);
    if (unreferenced)
        for (auto const& place : places_)
            if (place.set)
                walk.from(*place.set);
}

void PartitionMetadata::serialize(DataIO::DataSink& sink, bool withInvalid, SerializationOrder order) {
    generateLocalTags();
    Templates::vector<MetadataSet const*> sets;
    if (order == SerializationOrder::ForwardReferences)
        calculateSerializationOrder(sets, true, true);
    else if (order == SerializationOrder::ByKey)
        for (auto const& [key, set] : sets_)
            sets.push_back(set);
    dictionary_->primer().serialize(sink);
    if (order == SerializationOrder::AsLoaded) {
        serializeAsLoaded(sink, withInvalid);
        return;
    }
    for (auto const* const set : sets)
        set->serialize(sink, *dictionary_, withInvalid);
    for (auto const* const dark : darkSets_)
        dark->serialize(sink);
}

void PartitionMetadata::serializeAsLoaded(DataIO::DataSink& sink, bool withInvalid) const {
    for (auto const& place : places_) {
        if (place.set)
            place.set->serialize(sink, *dictionary_, withInvalid);
        else
            place.darkSet->serialize(sink);
    }
}

void PartitionMetadata::serializeForwardReferences(DataIO::DataSink& sink, bool withInvalid,
                                                   bool unreferenced) {
    generateLocalTags();
    Templates::vector<MetadataSet const*> sets;
    calculateSerializationOrder(sets, true, unreferenced);
    for (auto const* const set : sets)
        set->serialize(sink, *dictionary_, withInvalid);
}

std::uint64_t PartitionMetadata::serializedSize(bool withInvalid) const {
    std::uint64_t size = dictionary_->primer().serializedSize();
    for (auto const& [key, set] : sets_)
        size += set->serializedSize(withInvalid);
    for (auto const* const dark : darkSets_)
        size += dark->serializedSize();
    return size;
}

void PartitionMetadata::gather(void (MetadataSet::*list)(Templates::vector<Element*>&) const,
                               Templates::vector<Element*>& elements) const {
    for (auto const& [key, set] : sets_)
        (set->*list)(elements);
}

void PartitionMetadata::openElements(Templates::vector<Element*>& elements) const {
    gather(&MetadataSet::openElements, elements);
}

void PartitionMetadata::incompleteElements(Templates::vector<Element*>& elements) const {
    gather(&MetadataSet::incompleteElements, elements);
}

void PartitionMetadata::possiblyOpenElements(Templates::vector<Element*>& elements) const {
    gather(&MetadataSet::possiblyOpenElements, elements);
}

void PartitionMetadata::possiblyIncompleteElements(Templates::vector<Element*>& elements) const {
    gather(&MetadataSet::possiblyIncompleteElements, elements);
}

void PartitionMetadata::possiblyForbiddenElements(Templates::vector<Element*>& elements) const {
    gather(&MetadataSet::possiblyForbiddenElements, elements);
}

void PartitionMetadata::getSemanticsValidationElements(Templates::vector<Element*>& elements) const {
    gather(&MetadataSet::getSemanticsValidationElements, elements);
}

void PartitionMetadata::missingAttributes(Templates::vector<MissingAttribute>& missing) const {
    for (auto const& [key, set] : sets_)
        set->missingAttributes(missing);
}

void PartitionMetadata::tellOfExistingSets(PartitionMetadataListener& listener) {
    for (auto const& place : places_) {
        if (!place.set)
            continue;
        ++place.set->tellings_; // it stays
        try {
            listener.createdMetadataSet(place.set.get());
        } catch (...) {
            --place.set->tellings_;
            throw;
        }
        --place.set->tellings_;
    }
}

void PartitionMetadata::addMetadataListener(ListenerPtr listener, bool tellExisting) {
    if (tellExisting)
        tellOfExistingSets(*listener);
    listeners_.push_back(std::move(listener));
}

void PartitionMetadata::removeMetadataListener(ListenerPtr const& listener) {
    std::erase(listeners_, listener);
}

void PartitionMetadata::setMetadataIndexListener(
    Templates::SharedPtr<Listeners::MetadataIndexListener, Templates::LockedCounter> listener) {
    if (listener)
        tellOfExistingSets(*listener);
    indexListener_ = std::move(listener);
}

// The opposite of a change is told when the call that told of the change has ended.

void PartitionMetadata::addedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                     Element& element, Types::BaseType const& value) {
    tell([&](PartitionMetadataListener& listener) { listener.addedElement(set, definition, element, value); },
         [&set, definition, &element, &value](PartitionMetadataListener& listener) {
             listener.removedElement(set, definition, element, value);
         });
}

void PartitionMetadata::updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                       Element& element, Types::Collection const& oldValue,
                                       Types::Collection const& newValue) {
    tell(
        [&](PartitionMetadataListener& listener) {
            listener.updatedElement(set, definition, element, oldValue, newValue);
        },
        [&set, definition, &element, &oldValue, &newValue](PartitionMetadataListener& listener) {
            listener.updatedElement(set, definition, element, newValue, oldValue);
        });
}

void PartitionMetadata::updatedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                       Element& element, Types::SimpleDataType const& oldValue,
                                       Types::SimpleDataType const& newValue) {
    bool const isInstanceUID = definition != nullptr && definition->universalLabel() == instanceUIDLabel;
    if (isInstanceUID && oldValue != newValue)
        requireFreeInstanceUID(set);
    tell(
        [&](PartitionMetadataListener& listener) {
            listener.updatedElement(set, definition, element, oldValue, newValue);
        },
        [&set, definition, &element, &oldValue, &newValue](PartitionMetadataListener& listener) {
            listener.updatedElement(set, definition, element, newValue, oldValue);
        });
    if (isInstanceUID) {
        auto entry = byInstanceUID_.extract(Types::UUID(oldValue.rawBuffer()));
        entry.key() = Types::UUID(newValue.rawBuffer());
        byInstanceUID_.insert(std::move(entry));
    }
}

void PartitionMetadata::updatedElementCollection(MetadataSet& set,
                                                 MetaMetadata::MetaElement const* definition,
                                                 Element& element, Types::Collection const& value,
                                                 std::size_t index, Types::SimpleDataType const* oldMember,
                                                 Types::SimpleDataType const* newMember) {
    tell(
        [&](PartitionMetadataListener& listener) {
            listener.updatedElementCollection(set, definition, element, value, index, oldMember, newMember);
        },
        [&set, definition, &element, index, oldMember, newMember](PartitionMetadataListener& listener) {
            auto const& restored = static_cast<Types::Collection const&>(*element.baseValue());
            listener.updatedElementCollection(set, definition, element, restored, index, newMember,
                                              oldMember);
        });
}

void PartitionMetadata::removedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition,
                                       Element& element, Types::BaseType const& value) {
    if (definition != nullptr && definition->universalLabel() == instanceUIDLabel)
        throw Exceptions::InvalidChange(
            "A metadata set keeps its instance UID as long as a partition holds it");
    tell(
        [&](PartitionMetadataListener& listener) {
            listener.removedElement(set, definition, element, value);
        },
        [&set, definition, &element, &value](PartitionMetadataListener& listener) {
            listener.addedElement(set, definition, element, value);
        });
}

void PartitionMetadata::metadataSetCloned(MetadataSet const&, MetadataSet&) {
    // Listeners hear of the clone when it is added.
}

} // namespace MXF::Zelm::Metadata
