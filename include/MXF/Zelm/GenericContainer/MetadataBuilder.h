/// The essence tracks of a file package, made by the analyzers that describe their essence.
#pragma once

#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"

#include <vector>

namespace MXF::Zelm::GenericContainer {

/// Refers to metadata and package, which outlive it.
class MXFZELM_EXPORT MetadataBuilder : public Platform::Allocated {
public:
    MetadataBuilder(Metadata::PartitionMetadata& metadata, Metadata::Structural::SourcePackage& package)
        : metadata_(&metadata), package_(&package) {}

    /// Has the analyzer make its track and descriptor. Throws Exceptions::InvalidStructure when it cannot.
    void create(EssenceAnalyzer& analyzer, unsigned int trackNumber, unsigned int trackID);

    /// Sets how long the tracks made here are, `duration` edit units of `editRate` a second, in edit units of
    /// their own, and the container durations of their descriptors. Tracks that somebody gave another number
    /// of components are left as they are.
    void finish(std::int64_t duration, Templates::Rational<int> const& editRate);

    Metadata::PartitionMetadata& metadata() const { return *metadata_; }
    Metadata::Structural::SourcePackage& package() const { return *package_; }

private:
    Metadata::PartitionMetadata* metadata_;
    Metadata::Structural::SourcePackage* package_;
    std::vector<unsigned int> trackIDs_;
};

} // namespace MXF::Zelm::GenericContainer
