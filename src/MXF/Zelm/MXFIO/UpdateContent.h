/// What an update writes, wherever it is written: the new metadata, and the packs that follow it.
#pragma once

#include "MXF/Zelm/MXFIO/LoadedFile.h"
#include "MXF/Zelm/MXFIO/PackHead.h"
#include "MXF/Zelm/MXFIO/PrefaceLabels.h"

namespace MXF::Zelm::MXFIO {

class UpdateContent {
public:
    /// Refers to both. Gives every label in use a local tag when there are changes.
    UpdateContent(LoadedFile& file, Metadata::PartitionMetadata& edited);

    LoadedFile& file() const { return file_; }
    std::vector<SurveyedPartition> const& partitions() const { return file_.survey().partitions; }
    std::vector<MetadataChange> const& changes() const { return changes_; }

    /// Primer and sets of the chosen partition and its copies.
    Bytes const& content() const { return content_; }

    /// The bytes of a partition's metadata when it is one that is rewritten, else null.
    MetadataArea const* areaToRewrite(std::size_t index) const;

    /// The key of the fill behind a partition's metadata: the one that the file uses there.
    KLV::Key fillKey(std::size_t index) const;

    /// A partition's pack, in step with the Preface. Throws as PackHead::essenceContainers does.
    PackHead headFor(std::size_t index) const;

    /// What becomes of a partition, as far as it does not depend on where it is written.
    PartitionUpdate describe(std::size_t index) const;

private:
    bool packFollows(std::size_t index) const;

    LoadedFile& file_;
    std::vector<LoadedFile::Kinship> const& kinships_;
    std::vector<MetadataChange> changes_;
    Bytes content_;
    PrefaceLabels labels_;
};

} // namespace MXF::Zelm::MXFIO
