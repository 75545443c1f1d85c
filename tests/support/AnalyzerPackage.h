/// Header metadata in which an analyzer is described.
#pragma once

#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "support/StandardMetadata.h"

#include <gtest/gtest.h>

namespace MXF::Zelm::Test {

/// A file package for one analyzer, without a track until `describedBy`.
class AnalyzerPackage {
public:
    AnalyzerPackage() : metadata_(standardMetadata()) {
        namespace Structural = Metadata::Structural;
        Structural::createPreface(*metadata_, {.operationalPattern = {}, .product = {}});
        package_ = &Structural::createFilePackage(*metadata_, {.bodySID = 1, .indexSID = 2});
    }

    /// The descriptor that the analyzer makes.
    template <class Descriptor>
    Descriptor& describedBy(GenericContainer::EssenceAnalyzer& analyzer) {
        EXPECT_TRUE(analyzer.setMetadata(*metadata_, package_, 0x01020304, 256));
        return dynamic_cast<Descriptor&>(*package_->descriptor());
    }

    Metadata::PartitionMetadata& metadata() { return *metadata_; }
    Metadata::Structural::SourcePackage& package() { return *package_; }
    Metadata::Structural::Track& track() { return *package_->tracks().front(); }

    /// Reads all edit units, and ends.
    std::uint64_t finish(GenericContainer::EssenceAnalyzer& analyzer) {
        std::uint64_t units = 0;
        for (GenericContainer::EditUnit unit; analyzer.nextEditUnit(unit);)
            ++units;
        EXPECT_TRUE(analyzer.finalize());
        return units;
    }

private:
    std::unique_ptr<Metadata::PartitionMetadata> metadata_;
    Metadata::Structural::SourcePackage* package_ = nullptr;
};

} // namespace MXF::Zelm::Test
