/// Notes in changed sets in which generation of the file they were changed (SMPTE 377M, GenerationUID).
#pragma once

#include "MXF/Zelm/Metadata/Listeners/ChangedSets.h"
#include "MXF/Zelm/Metadata/Listeners/ElementChangeListener.h"
#include "MXF/Zelm/Metadata/Structural/Identification.h"

namespace MXF::Zelm::Metadata::Listeners {

/// Gathers the sets that were created, loaded or changed since the last `commit` or `reset`. A change of a
/// set's generation is not a change, whoever makes it, nor is one that another listener refused. Serves one
/// partition; attach it with `addMetadataListener(listener, false)`, and call `reset` after loading.
class MXFZELM_EXPORT GenerationUIDWriterListener : public ElementChangeListener {
public:
    GenerationUIDWriterListener();
    ~GenerationUIDWriterListener() override;
    GenerationUIDWriterListener(GenerationUIDWriterListener const&) = delete;
    GenerationUIDWriterListener& operator=(GenerationUIDWriterListener const&) = delete;

    /// The generation that is being made; not owned, null for none. It is forgotten when it is removed.
    void setIdentification(Structural::Identification* identification);

    /// Sets `generationUID` to the identification's `thisGenerationUID` in the changed sets that are
    /// Structural::TrackableMetadataSet. Without an identification, or when it has no generation, nothing
    /// happens, and the changes wait for the next time; so do those left when a listener refuses one by
    /// throwing.
    void commit() override;

    /// Forgets the changes.
    void reset();

    void createdMetadataSet(MetadataSet* set) override;
    void removedMetadataSet(MetadataSet* set) override;

private:
    void changedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition) override;

    Structural::Identification* identification_ = nullptr;
    Structural::Identification* removedIdentification_ = nullptr; // comes back when that is refused
    ChangedSets changed_;
    ChangedSets pending_; // what a commit is at, so that it stamps no set twice
};

} // namespace MXF::Zelm::Metadata::Listeners
