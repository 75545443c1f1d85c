/// Finds all partitions of a file and its random index pack: by jumping where the random index pack leads,
/// and KLV packet by KLV packet where there is none or it leaves something out.
#pragma once

#include "Faults.h"
#include "Input.h"

#include <map>
#include <optional>
#include <vector>

namespace Zelm {

/// The random index pack as it stands in the file.
struct RandomIndex {
    struct Entry {
        std::uint32_t bodySID;
        std::uint64_t byteOffset; ///< from the header partition pack
    };

    std::uint64_t offset = 0;      ///< in the file
    std::uint64_t length = 0;      ///< of the whole KLV
    std::uint64_t valueLength = 0; ///< bytes of the value
    std::uint32_t lengthWord = 0;  ///< what its last four bytes give as its length
    std::vector<Entry> entries;    ///< in the order of the file
};

struct SurveyedPartition {
    MXF::Zelm::MXFIO::Partition* partition;
    std::uint64_t end; ///< where the next partition, the random index pack or the end of the file stands

    MXF::Zelm::Packs::PartitionPack const& pack() const { return partition->partitionPack(); }
    std::uint64_t offset() const { return partition->partitionAbsoluteOffset(); }
    bool isFooter() const { return pack().partitionKind() == MXF::Zelm::Packs::PartitionPack::Footer; }
};

struct PartitionSurvey {
    std::vector<SurveyedPartition> partitions; ///< in the order of the file
    std::optional<RandomIndex> randomIndex;
    std::optional<Fault> fault; ///< the first that was met

    /// The footer partition, null when the file has none.
    SurveyedPartition const* footer() const {
        return !partitions.empty() && partitions.back().isFooter() ? &partitions.back() : nullptr;
    }
};

class PartitionSurveyor {
public:
    /// With `walkAll` no use is made of the random index pack.
    PartitionSurveyor(Input& input, bool walkAll) : input_(input), walkAll_(walkAll) {}

    /// Faults of the file end up in the survey. Throws Exceptions::SystemError.
    PartitionSurvey survey();

private:
    using Partition = MXF::Zelm::MXFIO::Partition;

    void find();
    void jump();
    void fillGaps();
    bool walk(Partition& from, std::uint64_t stop);
    Partition* partitionAt(std::uint64_t offset);
    void readRandomIndex(std::uint64_t offset);
    void fail(Fault fault);

    Input& input_;
    bool walkAll_;
    std::map<std::uint64_t, Partition*> found_;
    PartitionSurvey survey_;
};

} // namespace Zelm
