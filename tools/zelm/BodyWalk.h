/// Walks what partitions hold behind their header metadata: index table segments, and the packets of the
/// essence containers, fill passed over. Nothing is kept of what was passed.
#pragma once

#include "KlvWalk.h"
#include "PartitionSurvey.h"

namespace Zelm {

class BodyWalk {
public:
    enum class Kind { IndexSegments, Essence };

    /// Essence of one body SID, or the index segments of all partitions (then `bodySID` does not count).
    BodyWalk(Input& input, PartitionSurvey const& survey, Kind kind, std::uint32_t bodySID = 0)
        : input_(input), survey_(survey), kind_(kind), bodySID_(bodySID) {}

    /// The next packet; false after the last one, and at a fault. At a fault the rest of its partition is
    /// passed over by the call after.
    bool next(KlvWalk::Packet& packet);

    /// The first fault that was met.
    std::optional<Fault> const& fault() const { return fault_; }

private:
    bool enterPartition();
    bool wants(MXF::Zelm::KLV::Key const& key) const;

    Input& input_;
    PartitionSurvey const& survey_;
    Kind kind_;
    std::uint32_t bodySID_;
    std::size_t partition_ = 0; // the next one
    std::optional<KlvWalk> walk_;
    std::uint64_t end_ = 0; // of the stretch that is walked
    std::optional<Fault> fault_;
};

} // namespace Zelm
