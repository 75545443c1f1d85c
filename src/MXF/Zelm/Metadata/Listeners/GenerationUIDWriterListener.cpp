#include "MXF/Zelm/Metadata/Listeners/GenerationUIDWriterListener.h"

#include "MXF/Zelm/Metadata/Labels.h"
#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"

namespace MXF::Zelm::Metadata::Listeners {

namespace {

void stamp(MetadataSet& set, Types::UUID const& generation) {
    auto* const trackable = dynamic_cast<Structural::TrackableMetadataSet*>(&set);
    if (trackable == nullptr || !set.metaMetadataSet()->findMetaAttribute(generationUIDLabel))
        return;
    if (trackable->generationUID() == nullptr || *trackable->generationUID() != generation)
        trackable->generationUID(generation);
}

} // namespace

GenerationUIDWriterListener::GenerationUIDWriterListener() = default;
GenerationUIDWriterListener::~GenerationUIDWriterListener() = default;

void GenerationUIDWriterListener::setIdentification(Structural::Identification* identification) {
    identification_ = identification;
}

void GenerationUIDWriterListener::commit() {
    auto const* const current = identification_ != nullptr ? identification_->thisGenerationUID() : nullptr;
    if (current == nullptr)
        return;
    Types::UUID const generation = *current; // the identification may go while listeners are told
    pending_.take(changed_);
    while (!pending_.counts().empty()) {
        MetadataSet& set = *pending_.counts().begin()->first;
        stamp(set, generation);
        pending_.drop(set);
    }
}

void GenerationUIDWriterListener::reset() {
    changed_.clear();
    pending_.clear();
}

void GenerationUIDWriterListener::changedElement(MetadataSet& set,
                                                 MetaMetadata::MetaElement const* definition) {
    if (definition == nullptr || definition->universalLabel() != generationUIDLabel)
        changed_.changed(set);
}

void GenerationUIDWriterListener::createdMetadataSet(MetadataSet* set) {
    changed_.created(*set);
    if (set->owner() == nullptr || !set->owner()->isUndoing())
        return;
    pending_.created(*set);
    if (set == removedIdentification_)
        identification_ = std::exchange(removedIdentification_, nullptr);
}

void GenerationUIDWriterListener::removedMetadataSet(MetadataSet* set) {
    changed_.removed(*set);
    pending_.removed(*set);
    if (set == identification_)
        removedIdentification_ = std::exchange(identification_, nullptr);
}

} // namespace MXF::Zelm::Metadata::Listeners
