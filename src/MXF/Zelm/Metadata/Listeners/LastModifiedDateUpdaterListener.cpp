#include "MXF/Zelm/Metadata/Listeners/LastModifiedDateUpdaterListener.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Labels.h"
#include "MXF/Zelm/Metadata/StrongReferenceWalk.h"

#include <unordered_set>

namespace MXF::Zelm::Metadata::Listeners {

LastModifiedDateUpdaterListener::LastModifiedDateUpdaterListener(PartitionMetadata* metadata, Clock now)
    : metadata_(metadata), now_(std::move(now)) {
    if (metadata == nullptr || !now_)
        throw Exceptions::InvalidValue("A listener that dates metadata needs partition metadata and a clock");
}

LastModifiedDateUpdaterListener::~LastModifiedDateUpdaterListener() = default;

/// The packages that changed sets belong to: each set is visited once on the way up, whatever refers to it.
Templates::vector<Types::UUID> LastModifiedDateUpdaterListener::changedPackages() const {
    Templates::multimap<MetadataSet const*, MetadataSet const*> parentsOf;
    for (auto const& [key, parent] : *metadata_)
        for (auto const* const child : strongChildren(*parent))
            parentsOf.emplace(child, parent);
    Templates::vector<MetadataSet const*> toVisit;
    for (auto const& [set, count] : changed_.counts())
        toVisit.push_back(set);
    std::unordered_set<MetadataSet const*> met(toVisit.begin(), toVisit.end());
    Templates::vector<Types::UUID> packages;
    while (!toVisit.empty()) {
        auto const* const set = toVisit.back();
        toVisit.pop_back();
        if (set->metaMetadataSet()->findMetaAttribute(packageModifiedDateLabel))
            packages.push_back(*set->instanceUID());
        for (auto [entry, last] = parentsOf.equal_range(set); entry != last; ++entry)
            if (met.insert(entry->second).second)
                toVisit.push_back(entry->second);
    }
    return packages;
}

void LastModifiedDateUpdaterListener::commit() {
    if (changed_.empty())
        return;
    Types::Timestamp const date = now_();
    auto const packages = changedPackages();
    metadata_->preface().value(lastModifiedDateLabel, date);
    for (auto const& uid : packages)
        if (auto* const package = metadata_->find(uid)) // other listeners may remove some
            package->value(packageModifiedDateLabel, date);
    changed_.clear();
}

void LastModifiedDateUpdaterListener::reset() { changed_.clear(); }

void LastModifiedDateUpdaterListener::changedElement(MetadataSet& set,
                                                     MetaMetadata::MetaElement const* definition) {
    if (definition != nullptr)
        for (auto const& label : {generationUIDLabel, lastModifiedDateLabel, packageModifiedDateLabel})
            if (definition->universalLabel() == label)
                return;
    changed_.changed(set);
}

void LastModifiedDateUpdaterListener::createdMetadataSet(MetadataSet* set) { changed_.created(*set); }
void LastModifiedDateUpdaterListener::removedMetadataSet(MetadataSet* set) { changed_.removed(*set); }

} // namespace MXF::Zelm::Metadata::Listeners
