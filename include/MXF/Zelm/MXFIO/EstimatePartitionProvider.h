/// Finds the partition of a stream offset with few reads, by the random index pack and an estimate: all
/// partitions of the essence container are taken to have bodies of the same size. Where they differ much, the
/// estimate may lead past the partition; `PartitionMap` is exact and reads all partition packs.
#pragma once

#include "MXF/Zelm/MXFIO/PartitionProvider.h"
#include "MXF/Zelm/MXFIO/Reader2.h"

namespace MXF::Zelm::MXFIO {

class MXFZELM_EXPORT EstimatePartitionProvider : public PartitionProvider {
public:
    /// `reader` is not owned and must outlive the provider. Loads the random index pack, and the partition
    /// whose body size is the estimate: the last but one of the body SID, or the only one. Throws
    /// Exceptions::InvalidStructure with "No partition for this bodySID was found in RIP.", "Unable to find a
    /// partition in an offset indicated in RIP.", "File has no footer. No partition found after the last body
    /// partition for this bodySID." or "Expected body absolute offset of last body partition 0x…is higher
    /// than begin of footer/next partition (0x…)".
    EstimatePartitionProvider(Reader2& reader, std::uint32_t bodySID);
    ~EstimatePartitionProvider() override;

    /// Throws Exceptions::InvalidStructure with "Unable to find a partition in an offset indicated in RIP.".
    Partition* partition(std::uint64_t streamOffset) override;

    /// Bytes of each body, as far as the provider supposes.
    std::uint64_t estimatedBodySize() const { return estimatedBodySize_; }

private:
    Partition& partitionInList(std::size_t index);
    std::uint64_t nextPartitionOffset(std::uint64_t offset);
    std::uint64_t bodySize(std::size_t index);
    Partition* find(std::uint64_t streamOffset, std::size_t low, std::size_t high);

    Reader2& reader_;
    Templates::vector<std::uint64_t> partitionOffsets_; // of the packs, as the random index pack has them
    std::uint64_t estimatedBodySize_ = 0;
};

} // namespace MXF::Zelm::MXFIO
