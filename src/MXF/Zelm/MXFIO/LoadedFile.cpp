#include "MXF/Zelm/MXFIO/LoadedFile.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using Role = PartitionUpdate::Role;

namespace {

/// The bytes of a partition's metadata. Throws Exceptions::InvalidStructure when they cannot be rewritten.
MetadataArea areaOf(DataIO::RandomAccessDataSource& source, SurveyedPartition const& partition) {
    if (partition.metadataEnd() > partition.end)
        throw Exceptions::at(partition.offset(), Exceptions::InvalidStructure(
                                                     "The header metadata cannot be rewritten: by its byte "
                                                     "count it runs into what follows the partition"));
    return {source, partition.metadataStart(), partition.pack().headerByteCount()};
}

SurveyedPartition const& find(FileSurvey const& survey, Partition const& partition) {
    return *std::find_if(survey.partitions.begin(), survey.partitions.end(),
                         [&](SurveyedPartition const& surveyed) { return surveyed.partition == &partition; });
}

} // namespace

LoadedFile::LoadedFile(std::string const& name, Reader::DictionaryPtr dictionary, std::uint64_t searchLimit)
    : source_(name),
      reader_(source_, std::move(dictionary), searchLimit),
      chosen_(&choose()),
      survey_(FileSurveyor(reader_, *chosen_).survey()) {
    survey_.faults.insert(survey_.faults.begin(), faults_.begin(), faults_.end());
    metadata_ = chosen_->metadata();
    area_.emplace(areaOf(source_, find(survey_, *chosen_)));
}

Partition& LoadedFile::choose() {
    Partition* chosen = nullptr;
    Partition* const header = reader_.headerPartition();
    try {
        chosen = reader_.backwardFirstPartitionWithFinalMetadata();
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        if (header == nullptr)
            throw;
        faults_.push_back({failure.offset(), failure.message()});
        chosen = header;
    }
    if (chosen == nullptr || chosen->partitionPack().headerByteCount() == 0)
        throw Exceptions::InvalidStructure("No partition of the file has header metadata");
    return *chosen;
}

std::vector<LoadedFile::Kinship> const& LoadedFile::kinships() {
    if (kinships_.empty())
        for (auto const& partition : survey_.partitions)
            kinships_.push_back(kinshipOf(partition));
    return kinships_;
}

LoadedFile::Kinship LoadedFile::kinshipOf(SurveyedPartition const& partition) {
    if (partition.pack().headerByteCount() == 0)
        return {};
    if (partition.partition == chosen_)
        return {Role::Chosen, {}, area_};
    try {
        auto area = areaOf(source_, partition);
        if (saysTheSame(partition, area))
            return {Role::Copy, {}, std::move(area)};
        return {Role::Different, "its metadata is not that of the chosen partition", {}};
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        return {Role::Unread, failure.message(), {}};
    }
}

bool LoadedFile::saysTheSame(SurveyedPartition const& partition, MetadataArea const& area) const {
    if (area.content() == area_->content())
        return true;
    auto const metadata = partition.partition->metadata();
    return metadata->size() == metadata_->size() && compareMetadata(*metadata_, *metadata).empty();
}

} // namespace MXF::Zelm::MXFIO
