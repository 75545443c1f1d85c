#include "MXF/Zelm/MXFIO/PartitionList.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

using Partitions = Templates::vector<Partition*>;

/// The partition whose pack stands at `offset` and says so; null otherwise.
Partition* exactlyAt(Reader2& reader, std::uint64_t offset) {
    Partition* const found = reader.partitionAtOffset(offset);
    return found != nullptr && found->partitionPack().thisPartition() == offset &&
                   found->partitionAbsoluteOffset() - reader.runInLength() == offset
               ? found
               : nullptr;
}

/// Empty when the random index pack does not agree with the packs, or leaves one out.
Partitions byRandomIndexPack(Reader2& reader) {
    Partitions partitions;
    if (!reader.rip() && !reader.loadRIP())
        return {};
    for (auto const& [offset, bodySID] : reader.rip()->offsetIndexedMap()) {
        Partition* const next = exactlyAt(reader, offset);
        std::uint64_t const last =
            partitions.empty() ? 0 : partitions.back()->partitionPack().thisPartition();
        if (next == nullptr || (partitions.empty() && offset != 0) ||
            next->partitionPack().previousPartition() > last)
            return {};
        partitions.push_back(next);
    }
    return partitions;
}

/// Empty when the header does not say where the footer is, or the chain does not lead from there to the
/// header.
Partitions byFooter(Reader2& reader) {
    std::uint64_t const footer = reader.headerPartition()->partitionPack().footerPartition();
    Partitions partitions;
    if (footer == 0)
        return {};
    for (Partition* at = exactlyAt(reader, footer); at != nullptr; at = reader.previousPartition(at))
        partitions.push_back(at);
    std::reverse(partitions.begin(), partitions.end());
    if (partitions.empty() || partitions.front() != reader.headerPartition())
        return {};
    return partitions;
}

void walk(Reader2& reader, Partitions& partitions) {
    for (Partition* at = reader.headerPartition(); at != nullptr; at = reader.nextPartition(at))
        partitions.push_back(at);
}

/// Passes over what is wrong with the file, but not over a failing system.
template <class Action>
void passingOverFaults(Action action) {
    try {
        action();
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        // Somebody else may know the partitions; who opens the file reports the fault.
    }
}

/// Where the last partition ends: at the random index pack or the end of the source.
std::uint64_t endOfPartitions(Reader2& reader) {
    auto& source = reader.source();
    source.seek(0);
    std::uint64_t const size = source.remaining();
    std::uint64_t const pack = reader.rip() ? reader.rip()->serializedSize() : 0;
    return size - std::min(size, pack);
}

Partitions allPartitions(Reader2& reader) {
    Partitions partitions;
    Partition* header = nullptr;
    passingOverFaults([&] { header = reader.headerPartition(); });
    if (header == nullptr)
        return partitions;
    passingOverFaults([&] { partitions = byRandomIndexPack(reader); });
    if (partitions.empty())
        passingOverFaults([&] { partitions = byFooter(reader); });
    if (partitions.empty())
        passingOverFaults([&] { walk(reader, partitions); });
    return partitions;
}

} // namespace

Templates::vector<PartitionSpan> partitionsOf(Reader2& reader) {
    auto const partitions = allPartitions(reader);
    Templates::vector<PartitionSpan> spans;
    std::uint64_t const end = endOfPartitions(reader);
    for (std::size_t i = 0; i < partitions.size(); ++i)
        spans.push_back(
            {partitions[i], i + 1 < partitions.size() ? partitions[i + 1]->partitionAbsoluteOffset() : end});
    return spans;
}

} // namespace MXF::Zelm::MXFIO
