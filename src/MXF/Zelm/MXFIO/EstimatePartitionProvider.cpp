#include "MXF/Zelm/MXFIO/EstimatePartitionProvider.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/Offsets.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using ByteCoders::toHexadecimal;

namespace {

void require(bool holds, const char* condition, std::string const& message,
             Exceptions::SourceLocation where = Exceptions::SourceLocation::current()) {
    if (!holds)
        throw Exceptions::InvalidStructure(Exceptions::Condition{condition}, message, where);
}

} // namespace

EstimatePartitionProvider::EstimatePartitionProvider(Reader2& reader, std::uint32_t bodySID)
    : reader_(reader) {
    reader_.headerPartition(); // its place is what offsets count from
    if (reader_.rip() || reader_.loadRIP())
        partitionOffsets_ = reader_.rip()->find(bodySID);
    require(!partitionOffsets_.empty(), "partitionOffsets_.size () > 1",
            "No partition for this bodySID was found in RIP.");
    std::sort(partitionOffsets_.begin(), partitionOffsets_.end());
    std::size_t const count = partitionOffsets_.size();
    estimatedBodySize_ = bodySize(count == 1 ? 0 : count - 2);
}

EstimatePartitionProvider::~EstimatePartitionProvider() = default;

Partition& EstimatePartitionProvider::partitionInList(std::size_t index) {
    Partition* const partition = reader_.partitionAtOffset(partitionOffsets_[index]);
    require(partition != nullptr, "partition != 0",
            "Unable to find a partition in an offset indicated in RIP.");
    return *partition;
}

/// Where the partition after the one at `offset` begins: by the random index pack, else the footer where the
/// header says that it is.
std::uint64_t EstimatePartitionProvider::nextPartitionOffset(std::uint64_t offset) {
    auto const& known = reader_.rip()->offsetIndexedMap();
    auto const next = known.upper_bound(offset);
    if (next != known.end())
        return next->first;
    Partition const* const header = reader_.headerPartition();
    std::uint64_t const footer = header != nullptr ? header->partitionPack().footerPartition() : 0;
    require(footer > offset && reader_.partitionAtOffset(footer) != nullptr, "partitionAfter != 0",
            "File has no footer. No partition found after the last body partition for this bodySID.");
    return footer;
}

std::uint64_t EstimatePartitionProvider::bodySize(std::size_t index) {
    std::uint64_t const body = partitionInList(index).bodyAbsoluteOffset();
    std::uint64_t const next =
        addOffsets(nextPartitionOffset(partitionOffsets_[index]), reader_.runInLength());
    require(body <= next, "bodyAbsoluteOffset <= partitionAfter -> partitionAbsoluteOffset ()",
            "Expected body absolute offset of last body partition 0x" + toHexadecimal(body) +
                "is higher than begin of footer/next partition (0x" + toHexadecimal(next) + ")");
    return next - body;
}

Partition* EstimatePartitionProvider::partition(std::uint64_t streamOffset) {
    return find(streamOffset, 0, partitionOffsets_.size() - 1);
}

/// Looks for the partition among those from `low` to `high` in the list.
Partition* EstimatePartitionProvider::find(std::uint64_t streamOffset, std::size_t low, std::size_t high) {
    std::uint64_t const guess = streamOffset / std::max<std::uint64_t>(estimatedBodySize_, 1);
    while (true) {
        auto const probe = static_cast<std::size_t>(std::clamp<std::uint64_t>(guess, low, high));
        Partition& found = partitionInList(probe);
        std::uint64_t const begin = found.partitionPack().bodyOffset();
        if (begin > streamOffset) {
            if (probe == low)
                return nullptr;
            high = probe - 1;
        } else if (streamOffset - begin >= estimatedBodySize_) {
            if (probe == high)
                return nullptr;
            low = probe + 1;
        } else {
            return &found;
        }
    }
}

} // namespace MXF::Zelm::MXFIO
