/// Which partitions' header metadata is compared: the one that a reader is to use, and the copies of it that
/// other partitions hold.
#include "Diff.h"
#include "MetadataChoice.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <set>
#include <tuple>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// Path and values of a difference.
using Entry = std::tuple<std::string, std::string, std::string>;

Entry entryOf(Difference const& difference, std::size_t placeLength) {
    return {difference.path.substr(placeLength), difference.a ? difference.a->text : "",
            difference.b ? difference.b->text : ""};
}

/// The metadata of a partition, empty when it has none; faults go to the side.
MXFIO::Partition::MetadataPtr load(DiffSide& side, MXFIO::Partition& partition) {
    std::uint64_t const place = partition.partitionAbsoluteOffset();
    try {
        auto metadata = partition.metadata();
        if (metadata)
            for (auto const& fault : metadata->faults())
                side.faults.push_back({fault.message, fault.offset.value_or(place)});
        return metadata;
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        side.faults.push_back({failure.message(), failure.offset().value_or(place)});
        return {};
    }
}

MXFIO::Partition& finalPartition(DiffSide& side) {
    auto const choice = chooseFinal(side.input, false);
    for (auto const& fault : choice.faults)
        side.faults.push_back({fault.message, fault.offset.value_or(0)});
    return *choice.partition;
}

/// Adds what a pair of partitions differs in beyond what is `known`.
void diffCopy(DiffSide& a, MXFIO::Partition& partitionA, DiffSide& b, MXFIO::Partition& partitionB,
              std::string const& place, std::set<Entry> const& known, DiffFindings& findings) {
    auto const metadataA = load(a, partitionA), metadataB = load(b, partitionB);
    if (!metadataA || !metadataB)
        return; // the partition packs tell
    DiffFindings others(findings.options());
    diffMetadata(*metadataA, *metadataB, place, others);
    for (auto const& difference : others.all())
        if (!known.contains(entryOf(difference, place.size())))
            findings.add(difference.area, difference.path, difference.a, difference.b);
}

} // namespace

void diffAllMetadata(DiffSide& a, DiffSide& b,
                     std::vector<std::pair<std::size_t, std::size_t>> const& partitions,
                     DiffFindings& findings) {
    auto& finalA = finalPartition(a);
    auto& finalB = finalPartition(b);
    auto const metadataA = load(a, finalA), metadataB = load(b, finalB);
    std::size_t const before = findings.all().size();
    if (metadataA && metadataB)
        diffMetadata(*metadataA, *metadataB, "", findings);
    else
        findings.compare(DiffArea::Metadata, "header metadata", metadataA ? "there" : "none",
                         metadataB ? "there" : "none");
    std::set<Entry> known;
    for (std::size_t i = before; i < findings.all().size(); ++i)
        known.insert(entryOf(findings.all()[i], 0));
    for (auto const& [i, j] : partitions) {
        auto& partitionA = *a.survey.partitions[i].partition;
        auto& partitionB = *b.survey.partitions[j].partition;
        if (&partitionA != &finalA || &partitionB != &finalB)
            diffCopy(a, partitionA, b, partitionB, "partition " + std::to_string(i) + ": ", known, findings);
    }
}

} // namespace Zelm
