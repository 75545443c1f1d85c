/// The file as it was when the updater opened it, with a reader of its own: nothing of it changes while the
/// host edits.
#pragma once

#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/MXFIO/FileSurvey.h"
#include "MXF/Zelm/MXFIO/MetadataArea.h"
#include "MXF/Zelm/MXFIO/Updater.h"

#include <optional>

namespace MXF::Zelm::MXFIO {

class LoadedFile {
public:
    /// Throws as the constructor of Updater does.
    LoadedFile(std::string const& name, Reader::DictionaryPtr dictionary, std::uint64_t searchLimit);

    DataIO::File::FileDataSource& source() { return source_; }
    std::string const& name() const { return source_.fileName(); }
    FileSurvey const& survey() const { return survey_; }
    std::uint64_t runInLength() const { return reader_.runInLength(); }

    /// The partition that the reader's rule chooses, its metadata, and that as bytes.
    Partition& chosen() const { return *chosen_; }
    Metadata::PartitionMetadata const& metadata() const { return *metadata_; }
    MetadataArea const& area() const { return *area_; }

    /// What a partition's metadata is to the chosen one's.
    struct Kinship {
        PartitionUpdate::Role role = PartitionUpdate::Role::NoMetadata;
        std::string remark;               ///< why it cannot be read, or is left alone
        std::optional<MetadataArea> area; ///< of the chosen partition and its copies
    };

    /// In the order of the survey; found out at the first call.
    std::vector<Kinship> const& kinships();

private:
    Partition& choose();
    Kinship kinshipOf(SurveyedPartition const& partition);
    bool saysTheSame(SurveyedPartition const& partition, MetadataArea const& area) const;

    DataIO::File::FileDataSource source_;
    Reader2 reader_;
    std::vector<Metadata::Fault> faults_;
    Partition* chosen_;
    FileSurvey survey_;
    Partition::MetadataPtr metadata_;
    std::optional<MetadataArea> area_;
    std::vector<Kinship> kinships_;
};

} // namespace MXF::Zelm::MXFIO
