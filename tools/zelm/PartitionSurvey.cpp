#include "PartitionSurvey.h"

#include "KlvWalk.h"
#include "Progress.h"
#include "Text.h"

#include <MXF/Zelm/ByteCoders/BigEndian.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>
#include <limits>

namespace Zelm {

using namespace MXF::Zelm;
using ByteCoders::decodeInteger;

PartitionSurvey PartitionSurveyor::survey() {
    try {
        find();
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        fail({failure.message(), failure.offset().value_or(input_.source.absoluteOffset())});
    }
    std::uint64_t const size = input_.source.size();
    for (auto const& [offset, partition] : found_) {
        auto const next = found_.upper_bound(offset);
        std::uint64_t end = next != found_.end() ? next->first : size;
        if (survey_.randomIndex && survey_.randomIndex->offset > offset)
            end = std::min(end, survey_.randomIndex->offset);
        survey_.partitions.push_back({partition, end});
    }
    return std::move(survey_);
}

void PartitionSurveyor::find() {
    auto& reader = input_.reader;
    Partition* const header = reader.headerPartition();
    if (header == nullptr) {
        fail({"no MXF header partition: no partition pack within " +
                  grouped(std::min(input_.source.size(), searchLimit)) + " bytes",
              0});
        return;
    }
    found_.emplace(header->partitionAbsoluteOffset(), header);
    if (reader.loadRIP()) {
        unsigned char length[4] = {};
        input_.source.seek(input_.source.size() - sizeof length);
        input_.source.read(length, sizeof length);
        readRandomIndex(input_.source.size() - decodeInteger<std::uint32_t>(length));
    }
    if (survey_.randomIndex && !walkAll_)
        jump();
    else
        walk(*header, std::numeric_limits<std::uint64_t>::max());
}

/// Goes where the random index pack leads. What it says is believed as far as the partitions bear it out.
void PartitionSurveyor::jump() {
    for (auto const& entry : survey_.randomIndex->entries) {
        std::uint64_t const runIn = input_.reader.runInLength();
        if (entry.byteOffset > input_.source.size() - runIn)
            continue;
        if (Partition* const partition = partitionAt(entry.byteOffset + runIn))
            found_.emplace(partition->partitionAbsoluteOffset(), partition);
    }
    fillGaps();
    walk(*found_.rbegin()->second, std::numeric_limits<std::uint64_t>::max());
}

/// Where a partition does not name the one before it as its predecessor there may be others between them.
void PartitionSurveyor::fillGaps() {
    auto const runIn = input_.reader.runInLength();
    for (auto at = found_.begin(), next = std::next(at); next != found_.end(); at = next++) {
        auto const previous = next->second->partitionPack().previousPartition();
        if (at->first < runIn || previous != at->first - runIn)
            walk(*at->second, next->first);
    }
}

/// Reads on packet by packet, and enters the partitions that it meets, until the offset `stop` or the end of
/// the file; false at a fault.
bool PartitionSurveyor::walk(Partition& from, std::uint64_t stop) {
    KlvWalk walk(input_, from.metadataAbsoluteOffset());
    KlvWalk::Packet packet;
    Progress progress("reading " + input_.name, input_.source.size());
    while (walk.offset() < stop && walk.next(packet)) {
        if (Packs::isPartitionPack(packet.key)) {
            if (Partition* const partition = partitionAt(packet.offset))
                found_.emplace(packet.offset, partition);
        } else if (packet.key == Packs::RandomIndexPack::key() && !survey_.randomIndex) {
            readRandomIndex(packet.offset);
        }
        progress.at(walk.offset());
    }
    if (walk.fault())
        fail(*walk.fault());
    return !walk.fault();
}

/// The partition whose pack stands at an offset of the file, null when none does.
MXFIO::Partition* PartitionSurveyor::partitionAt(std::uint64_t offset) {
    try {
        Partition* const partition = input_.reader.partitionAtOffset(offset - input_.reader.runInLength());
        return partition != nullptr && partition->partitionAbsoluteOffset() == offset ? partition : nullptr;
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        fail({failure.message(), failure.offset().value_or(offset)});
        return nullptr;
    }
}

void PartitionSurveyor::readRandomIndex(std::uint64_t offset) {
    constexpr std::size_t entrySize = 12, wordSize = 4;
    std::uint64_t skipped = 0;
    input_.source.seek(offset);
    try {
        auto const packet = input_.reader.klvReader().nextKLV(skipped, 0);
        auto const value = packet->value().readRemaining();
        RandomIndex index{offset, packet->klvLength(), packet->length(), 0, {}};
        std::size_t at = 0;
        for (; value.size() - at >= entrySize + wordSize; at += entrySize)
            index.entries.push_back({decodeInteger<std::uint32_t>(value.data() + at),
                                     decodeInteger<std::uint64_t>(value.data() + at + 4)});
        if (value.size() >= wordSize)
            index.lengthWord = decodeInteger<std::uint32_t>(value.data() + value.size() - wordSize);
        survey_.randomIndex = std::move(index);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        fail({failure.message(), failure.offset().value_or(offset)});
    }
}

void PartitionSurveyor::fail(Fault fault) {
    if (!survey_.fault)
        survey_.fault = std::move(fault);
}

} // namespace Zelm
