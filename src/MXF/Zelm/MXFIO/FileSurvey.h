/// All partitions of a file and its random index pack: where each begins and ends.
#pragma once

#include "MXF/Zelm/MXFIO/MetadataChange.h"
#include "MXF/Zelm/MXFIO/Reader2.h"

#include <map>
#include <optional>
#include <vector>

namespace MXF::Zelm::MXFIO {

struct SurveyedPartition {
    Partition* partition = nullptr;
    std::uint64_t end = 0; ///< where the next partition, the random index pack or the file's end stands

    Packs::PartitionPack const& pack() const { return partition->partitionPack(); }
    std::uint64_t offset() const { return partition->partitionAbsoluteOffset(); }
    std::uint64_t packEnd() const { return partition->metadataAbsoluteOffset(); }
    std::uint64_t metadataStart() const { return packEnd() + partition->leadingFillLength(); }
    std::uint64_t metadataEnd() const { return partition->indexTableAbsoluteOffset(); }
    bool isFooter() const { return pack().partitionKind() == Packs::PartitionPack::Footer; }
};

struct FileSurvey {
    std::vector<SurveyedPartition> partitions; ///< in the order of the file
    std::uint64_t randomIndexStart = 0;        ///< where the random index pack stands, or the last partition
    std::uint64_t randomIndexEnd = 0;          ///< ends when there is none; then both are the same
    std::uint64_t fileSize = 0;
    std::vector<Metadata::Fault> faults;

    /// The first fault that may hide partitions. Others (a footer that is not where it should be) are made up
    /// for by walking.
    std::optional<Metadata::Fault> walkFault;

    bool hasRandomIndex() const { return randomIndexEnd != randomIndexStart; }
};

/// Goes where the random index pack and the packs' own offsets lead, and packet by packet where they leave
/// something out: behind the last partition, and where a partition does not name the one before it.
class FileSurveyor {
public:
    /// The reader's header partition must be there. `chosen` is a partition that is known already.
    FileSurveyor(Reader2& reader, Partition& chosen);

    /// Faults of the file end up in the survey. Throws Exceptions::SystemError.
    FileSurvey survey();

private:
    void followRandomIndex();
    void followChain();
    void fillGaps();
    void walk(std::uint64_t from, std::uint64_t stop);
    bool walkPacket(std::uint64_t& at);
    Partition* partitionAt(std::uint64_t offset);
    void enter(Partition* partition);
    void placeEnds();
    template <class Action>
    bool succeeds(Action action);
    template <class Action>
    void walking(Action action);

    Reader2& reader_;
    std::uint64_t size_;
    std::map<std::uint64_t, Partition*> found_;
    FileSurvey survey_;
};

} // namespace MXF::Zelm::MXFIO
