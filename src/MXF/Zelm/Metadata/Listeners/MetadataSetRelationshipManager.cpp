#include "MXF/Zelm/Metadata/Listeners/MetadataSetRelationshipManager.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Labels.h"
#include "MXF/Zelm/Metadata/StrongReferenceWalk.h"

#include <algorithm>

namespace MXF::Zelm::Metadata::Listeners {

namespace {

constexpr const char16_t* circularReference = u"Circular reference in MXF file! InstanceUID: ";

[[noreturn]] void failReferenced() {
    throw Exceptions::InvalidChange(
        "Cannot removed this MetadataSet because is referenced by other Metadata Set");
}

/// True when all references come from sets for which `isOwn(set)` holds.
template <class IsOwn>
bool allFrom(ReferenceEntry::Links const& links, IsOwn isOwn) {
    return std::all_of(links.begin(), links.end(),
                       [&](auto const& one) { return isOwn(&one.first->metadataSet()); });
}

std::size_t addElements(ReferenceEntry::Links const& links, std::set<Element*>& elements) {
    std::size_t count = 0;
    for (auto one = links.begin(); one != links.end(); one = links.upper_bound(one->first)) {
        elements.insert(one->first);
        ++count;
    }
    return count;
}

Types::UUID targetOf(Types::SimpleDataType const& reference) {
    return static_cast<Types::Reference const&>(reference).target();
}

} // namespace

MetadataSetRelationshipManager::MetadataSetRelationshipManager(PartitionMetadata* metadata)
    : metadata_(metadata) {
    if (metadata == nullptr)
        throw Exceptions::InvalidValue("A relationship manager needs partition metadata");
}

MetadataSetRelationshipManager::~MetadataSetRelationshipManager() = default;

// What is recorded.

ReferenceEntry const* MetadataSetRelationshipManager::entryOf(MetadataSet const* set) const {
    auto const* const uid = set != nullptr ? set->instanceUID() : nullptr;
    auto const found = uid != nullptr ? entries_.find(*uid) : entries_.end();
    return found != entries_.end() && found->second->set == set ? found->second.get() : nullptr;
}

MetadataSet* MetadataSetRelationshipManager::anyParent(MetadataSet const* set) const {
    auto const* const entry = entryOf(set);
    return entry != nullptr && !entry->strong.empty() ? &entry->strong.begin()->first->metadataSet()
                                                      : nullptr;
}

MetadataSet const* MetadataSetRelationshipManager::parentSet(MetadataSet const* set) const {
    // Of two that climb, one twice as fast as the other, the fast one catches up in a circle.
    MetadataSet const* slow = set;
    MetadataSet const* fast = anyParent(set);
    while (fast != nullptr && fast != slow) {
        slow = anyParent(slow);
        fast = anyParent(anyParent(fast));
    }
    if (fast != nullptr)
        throw Exceptions::InvalidStructure(circularReference + fast->instanceUID()->toString());
    return anyParent(set);
}

MetadataSet* MetadataSetRelationshipManager::parentSet(MetadataSet* set) const {
    return const_cast<MetadataSet*>(parentSet(static_cast<MetadataSet const*>(set)));
}

std::size_t MetadataSetRelationshipManager::metadataSetStrongRefs(MetadataSet const* set,
                                                                  std::set<Element*>& elements) const {
    auto const* const entry = entryOf(set);
    return entry != nullptr ? addElements(entry->strong, elements) : 0;
}

std::size_t MetadataSetRelationshipManager::metadataSetWeakRefs(MetadataSet const* set,
                                                                std::set<Element*>& elements) const {
    auto const* const entry = entryOf(set);
    return entry != nullptr ? addElements(entry->weak, elements) : 0;
}

bool MetadataSetRelationshipManager::canDeleteMetadataSet(MetadataSet const* set) const {
    auto const* const entry = entryOf(set);
    auto const isOwn = [set](MetadataSet const* from) { return from == set; };
    return entry == nullptr || (allFrom(entry->strong, isOwn) && allFrom(entry->weak, isOwn));
}

// Removing a tree.

/// Gathers in `doomed` what goes with `root`, which nothing outside owns, and returns it parents first.
Templates::vector<MetadataSet const*> MetadataSetRelationshipManager::setsToDelete(MetadataSet const& root,
                                                                                   Sets& doomed) const {
    Templates::vector<MetadataSet const*> sets;
    StrongReferenceWalk(false, sets, circularReference).from(root);
    std::reverse(sets.begin(), sets.end());
    doomed = Sets(sets.begin(), sets.end());
    auto const isDoomed = [&doomed](MetadataSet const* set) { return doomed.contains(set); };
    // All parents of a set stand before it, so that a set that stays keeps those below it.
    std::erase_if(sets, [&](MetadataSet const* set) {
        auto const* const entry = entryOf(set);
        bool const stays = set != &root && entry != nullptr && !allFrom(entry->strong, isDoomed);
        if (stays)
            doomed.erase(set);
        return stays;
    });
    return sets;
}

bool MetadataSetRelationshipManager::cascadeDelete(MetadataSet* set) {
    if (set == nullptr || set->instanceUID() == nullptr || metadata_->find(*set->instanceUID()) != set)
        return false;
    Sets doomed;
    Templates::vector<Types::UUID> uids;
    for (auto const* const one : setsToDelete(*set, doomed)) {
        auto const isDoomed = [&doomed](MetadataSet const* from) { return doomed.contains(from); };
        auto const* const entry = entryOf(one);
        if (isEnforcing_ && entry != nullptr &&
            !(allFrom(entry->strong, isDoomed) && allFrom(entry->weak, isDoomed)))
            failReferenced();
        uids.push_back(*one->instanceUID());
    }
    struct Restore {
        Sets& now;
        Sets before;
        ~Restore() { now.swap(before); }
    } const restore{doomed_, std::exchange(doomed_, std::move(doomed))};
    for (auto const& uid : uids)
        metadata_->removeMetadataSet(uid);
    return true;
}

// Changes.

void MetadataSetRelationshipManager::name(MetadataSet& set, Types::UUID const& uid) {
    auto& entry = entries_[uid];
    if (!entry)
        entry = std::make_shared<ReferenceEntry>();
    entry->set = &set;
}

void MetadataSetRelationshipManager::unname(MetadataSet const& set, Types::UUID const& uid) {
    auto const found = entries_.find(uid);
    if (found == entries_.end() || found->second->set != &set)
        return;
    found->second->set = nullptr;
    dropIfUnused(found);
}

void MetadataSetRelationshipManager::dropIfUnused(UUID2ReferencesMap::iterator entry) {
    ReferenceEntry const& of = *entry->second;
    if (of.set == nullptr && of.strong.empty() && of.weak.empty())
        entries_.erase(entry);
}

void MetadataSetRelationshipManager::link(Element& element, bool isStrong, Types::UUID const& target) {
    auto& entry = entries_[target];
    if (!entry)
        entry = std::make_shared<ReferenceEntry>();
    (isStrong ? entry->strong : entry->weak).emplace(&element, references_.emplace(&element, target));
}

void MetadataSetRelationshipManager::unlink(Element& element, bool isStrong, Types::UUID const& target) {
    auto const found = entries_.find(target);
    if (found == entries_.end())
        return;
    auto& links = isStrong ? found->second->strong : found->second->weak;
    auto const one = links.find(&element);
    if (one == links.end())
        return;
    references_.erase(one->second);
    links.erase(one);
    dropIfUnused(found);
}

/// Records all references of an element in the place of those that were recorded. An element may be met
/// before its set: a listener that is told of a new set first may add to it.
void MetadataSetRelationshipManager::read(Element& element) {
    auto const* const holder = dynamic_cast<ReferenceHolder const*>(&element);
    if (holder == nullptr)
        return;
    forget(element);
    for (auto const& target : holder->targets())
        link(element, holder->isStrong(), target);
}

void MetadataSetRelationshipManager::forget(Element& element) {
    auto const [first, last] = references_.equal_range(&element);
    Templates::vector<Types::UUID> targets;
    std::transform(first, last, std::back_inserter(targets), [](auto const& one) { return one.second; });
    for (auto const& target : targets)
        unlink(element, static_cast<ReferenceHolder const&>(element).isStrong(), target);
}

void MetadataSetRelationshipManager::metadataSetKey(KLV::Key&) {}

void MetadataSetRelationshipManager::createdMetadataSet(MetadataSet* set) {
    name(*set, *set->instanceUID());
    for (auto const& element : *set)
        read(*element);
}

void MetadataSetRelationshipManager::removedMetadataSet(MetadataSet* set) {
    if (isEnforcing_ && !metadata_->isUndoing() && !doomed_.contains(set) && !canDeleteMetadataSet(set))
        failReferenced();
    for (auto const& element : *set)
        forget(*element);
    unname(*set, *set->instanceUID());
}

void MetadataSetRelationshipManager::addedElement(MetadataSet&, MetaMetadata::MetaElement const*,
                                                  Element& element, Types::BaseType const&) {
    read(element);
}

void MetadataSetRelationshipManager::updatedElement(MetadataSet&, MetaMetadata::MetaElement const*,
                                                    Element& element, Types::Collection const&,
                                                    Types::Collection const&) {
    read(element);
}

void MetadataSetRelationshipManager::updatedElement(MetadataSet& set,
                                                    MetaMetadata::MetaElement const* definition,
                                                    Element& element, Types::SimpleDataType const& oldValue,
                                                    Types::SimpleDataType const& newValue) {
    read(element);
    if (definition == nullptr || definition->universalLabel() != instanceUIDLabel)
        return;
    unname(set, Types::UUID(oldValue.rawBuffer()));
    name(set, Types::UUID(newValue.rawBuffer()));
}

void MetadataSetRelationshipManager::updatedElementCollection(MetadataSet&, MetaMetadata::MetaElement const*,
                                                              Element& element, Types::Collection const&,
                                                              std::size_t,
                                                              Types::SimpleDataType const* oldMember,
                                                              Types::SimpleDataType const* newMember) {
    auto const* const holder = dynamic_cast<ReferenceHolder const*>(&element);
    if (holder == nullptr)
        return;
    if (oldMember != nullptr)
        unlink(element, holder->isStrong(), targetOf(*oldMember));
    if (newMember != nullptr)
        link(element, holder->isStrong(), targetOf(*newMember));
}

void MetadataSetRelationshipManager::removedElement(MetadataSet&, MetaMetadata::MetaElement const*,
                                                    Element& element, Types::BaseType const&) {
    if (dynamic_cast<ReferenceHolder const*>(&element) != nullptr)
        forget(element);
}

} // namespace MXF::Zelm::Metadata::Listeners
