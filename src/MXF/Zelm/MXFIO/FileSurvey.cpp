#include "MXF/Zelm/MXFIO/FileSurvey.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/Offsets.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::MXFIO {

namespace {

std::uint64_t sizeOf(DataIO::RandomAccessDataSource& source) {
    source.seek(0);
    return source.remaining();
}

} // namespace

FileSurveyor::FileSurveyor(Reader2& reader, Partition& chosen)
    : reader_(reader), size_(sizeOf(reader.source())) {
    enter(reader.headerPartition());
    enter(&chosen);
    survey_.fileSize = size_;
}

/// Runs `action`; false when it meets a fault of the file, which is noted.
template <class Action>
bool FileSurveyor::succeeds(Action action) {
    try {
        action();
        return true;
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        survey_.faults.push_back(
            {failure.offset().value_or(reader_.source().absoluteOffset()), failure.message()});
        return false;
    }
}

/// The same for what must succeed lest partitions be missed.
template <class Action>
void FileSurveyor::walking(Action action) {
    if (!succeeds(action) && !survey_.walkFault)
        survey_.walkFault = survey_.faults.back();
}

FileSurvey FileSurveyor::survey() {
    succeeds([this] { reader_.loadRIP() ? followRandomIndex() : followChain(); });
    walking([this] { fillGaps(); });
    walking([this] {
        walk(found_.rbegin()->second->metadataAbsoluteOffset(),
             survey_.hasRandomIndex() ? survey_.randomIndexStart : size_);
    });
    placeEnds();
    return std::move(survey_);
}

void FileSurveyor::enter(Partition* partition) {
    if (partition != nullptr)
        found_.emplace(partition->partitionAbsoluteOffset(), partition);
}

/// The partition whose pack stands at an offset of the file, null when none does.
Partition* FileSurveyor::partitionAt(std::uint64_t offset) {
    auto const runIn = reader_.runInLength();
    if (offset < runIn || offset >= size_)
        return nullptr;
    Partition* const partition = reader_.partitionAtOffset(offset - runIn);
    return partition != nullptr && partition->partitionAbsoluteOffset() == offset ? partition : nullptr;
}

void FileSurveyor::followRandomIndex() {
    unsigned char length[4] = {};
    reader_.source().seek(size_ - sizeof length);
    reader_.source().read(length, sizeof length);
    survey_.randomIndexStart = size_ - ByteCoders::decodeInteger<std::uint32_t>(length);
    survey_.randomIndexEnd = size_;
    bool isRight = true;
    for (auto const& entry : reader_.rip()->offsetIndexedMap()) {
        Partition* partition = nullptr;
        succeeds([&] { partition = partitionAt(addOffsets(entry.first, reader_.runInLength())); });
        isRight = isRight && partition != nullptr;
        enter(partition);
    }
    if (!isRight)
        walking([this] { walk(found_.begin()->second->metadataAbsoluteOffset(), survey_.randomIndexStart); });
}

/// From the footer, where the header names one, from partition to partition backwards.
void FileSurveyor::followChain() {
    if (found_.begin()->second->partitionPack().footerPartition() == 0)
        return;
    for (auto* at = reader_.lastPartition(); at != nullptr; at = reader_.previousPartition(at))
        enter(at);
}

/// Where a partition does not name the one before it as its predecessor there may be others between them.
void FileSurveyor::fillGaps() {
    for (auto at = found_.begin(), next = std::next(at); next != found_.end(); at = next++) {
        auto const previous =
            addOffsets(next->second->partitionPack().previousPartition(), reader_.runInLength());
        if (previous != at->first)
            walk(at->second->metadataAbsoluteOffset(), next->first);
    }
}

void FileSurveyor::walk(std::uint64_t from, std::uint64_t stop) {
    for (std::uint64_t at = from; at < stop && walkPacket(at);)
        ;
}

/// Enters what stands at the first packet from `at` on, and moves `at` behind the packet; false at the end of
/// the partitions. What is no packet at the end of the file belongs to nobody.
bool FileSurveyor::walkPacket(std::uint64_t& at) {
    std::uint64_t skipped = 0;
    std::uint64_t const limit = reader_.searchLimit();
    reader_.source().seek(at);
    Templates::auto_ptr<KLV::Packet> packet;
    try {
        packet = reader_.klvReader().nextKLV(skipped, limit);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        if (reader_.source().endOfStream() && size_ - at <= limit)
            return false;
        throw;
    }
    std::uint64_t const offset = packet->keyAbsoluteOffset();
    at = addOffsets(offset, packet->klvLength());
    if (Packs::isPartitionPack(packet->key()))
        enter(partitionAt(offset));
    if (packet->key() != Packs::RandomIndexPack::key())
        return true;
    if (!survey_.hasRandomIndex() && at <= size_) {
        survey_.randomIndexStart = offset;
        survey_.randomIndexEnd = at;
    }
    return false;
}

void FileSurveyor::placeEnds() {
    if (!survey_.hasRandomIndex() || survey_.randomIndexStart < found_.rbegin()->first)
        survey_.randomIndexStart = survey_.randomIndexEnd = size_;
    for (auto at = found_.begin(); at != found_.end(); ++at) {
        auto const next = std::next(at);
        survey_.partitions.push_back(
            {at->second, next != found_.end() ? next->first : survey_.randomIndexStart});
    }
}

} // namespace MXF::Zelm::MXFIO
