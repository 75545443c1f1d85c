/// Dates a file and its packages when their metadata changed (SMPTE 377M, LastModifiedDate of the Preface and
/// PackageModifiedDate).
#pragma once

#include "MXF/Zelm/Metadata/Listeners/ChangedSets.h"
#include "MXF/Zelm/Metadata/Listeners/ElementChangeListener.h"
#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Types/Timestamp.h"

#include <functional>

namespace MXF::Zelm::Metadata::Listeners {

/// What was created, loaded, changed or removed since the last `commit` or `reset` counts, but for changes of
/// these dates and of generations: commit this listener first, GenerationUIDWriterListener after it, so that
/// the dated sets are among those of the new generation. Attach it with `addMetadataListener(listener,
/// false)`, and call `reset` after loading.
class MXFZELM_EXPORT LastModifiedDateUpdaterListener : public ElementChangeListener {
public:
    using Clock = std::function<Types::Timestamp()>;

    /// `metadata` is not owned; `now` gives the time of a commit.
    explicit LastModifiedDateUpdaterListener(PartitionMetadata* metadata, Clock now = Types::Timestamp::now);
    ~LastModifiedDateUpdaterListener() override;
    LastModifiedDateUpdaterListener(LastModifiedDateUpdaterListener const&) = delete;
    LastModifiedDateUpdaterListener& operator=(LastModifiedDateUpdaterListener const&) = delete;

    /// If anything changed, gives the Preface and each package that changed itself, or in what it refers to
    /// strongly, the date of now. A set that is gone counts for its package through the reference that is
    /// taken out. Throws as PartitionMetadata::preface does, and what a listener throws that refuses a date;
    /// then the changes are kept for the next time.
    void commit() override;

    /// Forgets the changes.
    void reset();

    void createdMetadataSet(MetadataSet* set) override;
    void removedMetadataSet(MetadataSet* set) override;

private:
    void changedElement(MetadataSet& set, MetaMetadata::MetaElement const* definition) override;
    Templates::vector<Types::UUID> changedPackages() const;

    PartitionMetadata* metadata_;
    Clock now_;
    ChangedSets changed_;
};

} // namespace MXF::Zelm::Metadata::Listeners
