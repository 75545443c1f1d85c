#include "MXF/Zelm/MXFIO/Partition.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/Offsets.h"
#include "MXF/Zelm/MXFIO/Reader.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using ByteCoders::toHexadecimal;

PartitionListener::~PartitionListener() = default;

Partition::Partition(Reader& reader, KLV::Packet& packet, Packs::PartitionPack pack)
    : source_(reader.source()),
      klvReader_(reader.klvReader()),
      dictionary_(reader.dictionary()),
      pack_(std::move(pack)),
      offset_(packet.keyAbsoluteOffset()),
      packLength_(packet.klvLength()) {
    measureLeadingFill();
    nextIndex_ = indexTableAbsoluteOffset();
    nextBody_ = bodyAbsoluteOffset();
}

Partition::~Partition() = default;

/// Fill items between the pack and what follows it, which no byte count includes. Writers put one there; a
/// bound keeps many packs in front of one long chain of fill from costing the square of their number.
void Partition::measureLeadingFill() {
    constexpr int mostItems = 64;
    std::uint64_t const packEnd = addOffsets(offset_, packLength_);
    std::uint64_t fill = 0;
    try {
        std::uint64_t skipped = 0;
        for (int items = 0;
             items < mostItems && source_.seek(addOffsets(packEnd, fill)) == addOffsets(packEnd, fill) &&
             !source_.endOfStream() && KLV::isFillItem(klvReader_.peekNextKey(skipped, 0));
             ++items)
            fill = addOffsets(fill, klvReader_.nextKLV(skipped, 0)->klvLength());
    } catch (Exceptions::BaseException const&) {
        // No packet follows; whoever reads on meets the fault.
    }
    leadingFill_ = fill;
    source_.seek(packEnd);
}

Packs::PartitionPack const& Partition::partitionPack() const { return pack_; }

bool Partition::partitionEnded() const { return state_ == ReadState::Ended; }

bool Partition::isGenericStream() const { return Packs::isGenericStreamPartitionPack(pack_.key()); }

std::uint64_t Partition::indexTableAbsoluteOffset() const {
    return addOffsets(addOffsets(metadataAbsoluteOffset(), leadingFill_), pack_.headerByteCount());
}

std::uint64_t Partition::bodyAbsoluteOffset() const {
    return addOffsets(indexTableAbsoluteOffset(), pack_.indexByteCount());
}

Partition::MetadataPtr Partition::metadata() {
    if (!metadata_ && pack_.headerByteCount() != 0)
        metadata_ = loadMetadata();
    return metadata_;
}

Partition::MetadataPtr Partition::loadMetadata() {
    std::uint64_t const start = addOffsets(metadataAbsoluteOffset(), leadingFill_);
    std::uint64_t skipped = 0;
    source_.seek(start);
    auto const isPrimer = [&] { return klvReader_.peekNextKey(skipped, 0) == Packs::PrimerPack::key(); };
    bool found = false;
    try {
        found = source_.absoluteOffset() == start && isPrimer();
    } catch (Exceptions::BaseException const&) {
        // No packet at all is no primer either.
    }
    if (!found)
        throw Exceptions::at(start,
                             Exceptions::InvalidStructure(
                                 Exceptions::Condition{"Expected Primer Pack"},
                                 "This partition (0x" + toHexadecimal(pack_.thisPartition()) +
                                     ") does not have a primer pack at the beginning of the metadata."));

    auto const packet = klvReader_.nextKLV(skipped, 0);
    Templates::auto_ptr<Packs::PrimerPack> primer(new Packs::PrimerPack(*packet));
    source_.seek(addOffsets(start, packet->klvLength()));
    MetadataPtr metadata(new Metadata::PartitionMetadata(Templates::auto_ptr<Metadata::PartitionDictionary>(
        new Metadata::PartitionDictionary(dictionary_, std::move(primer)))));
    loadSets(*metadata, addOffsets(start, pack_.headerByteCount()));
    return metadata;
}

/// Reads sets from the source's position to `end`. What is wrong becomes a fault of the metadata.
void Partition::loadSets(Metadata::PartitionMetadata& metadata, std::uint64_t end) {
    try {
        while (source_.absoluteOffset() < end)
            if (!loadNextSet(metadata, end))
                return;
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        metadata.addFault(
            {failure.offset() ? failure.offset() : source_.absoluteOffset(), failure.message()});
    }
}

/// Reads one packet of the metadata; false when the metadata ends here, whatever the pack's byte count says.
bool Partition::loadNextSet(Metadata::PartitionMetadata& metadata, std::uint64_t end) {
    std::uint64_t const start = source_.absoluteOffset();
    std::uint64_t const left = end - start;
    if (source_.endOfStream()) {
        metadata.addFault(
            {start, "The source ends 0x" + toHexadecimal(left) + " bytes before the header metadata"});
        return false;
    }
    std::uint64_t skipped = 0;
    auto const packet = klvReader_.nextKLV(skipped, left);
    std::uint64_t const offset = packet->keyAbsoluteOffset();
    if (skipped != 0)
        metadata.addFault(
            {start, "0x" + toHexadecimal(skipped) + " bytes in the header metadata are no KLV packet"});
    if (Packs::isPartitionPack(packet->key()) || KLV::isEssence(packet->key()) ||
        KLV::isIndexTableKlvSegment(packet->key())) {
        metadata.addFault({offset, "The header metadata ends 0x" +
                                       toHexadecimal(end - std::min(end, offset)) +
                                       " bytes before its byte count says"});
        return false;
    }
    if (packet->length() > end - std::min(end, packet->valueAbsoluteOffset()))
        throw Exceptions::at(
            offset, Exceptions::InvalidLength("A set of 0x" + toHexadecimal(packet->length()) +
                                              " bytes runs beyond the end of the header metadata at 0x" +
                                              toHexadecimal(end)));
    if (KLV::isFillItem(packet->key()))
        packet->value().discard();
    else
        metadata.loadOrKeepDark(*packet);
    return true;
}

void Partition::rewind() {
    nextBody_ = bodyAbsoluteOffset();
    state_ = ReadState::Ready;
    source_.seek(nextBody_);
}

void Partition::gotoBodyRelativePosition(std::uint64_t position) {
    if (position < pack_.bodyOffset())
        throw Exceptions::InvalidPosition("Trying to seek to 0x" + toHexadecimal(position) +
                                          " but partition (0x" + toHexadecimal(pack_.thisPartition()) +
                                          ") body starts at 0x" + toHexadecimal(pack_.bodyOffset()));
    nextBody_ = addOffsets(bodyAbsoluteOffset(), position - pack_.bodyOffset());
    state_ = ReadState::Ready;
    source_.seek(nextBody_);
}

Templates::auto_ptr<KLV::Packet> Partition::nextIndexTableSegmentsKLV() {
    if (pack_.indexSID() == 0 || pack_.indexByteCount() == 0)
        return nullptr;
    std::uint64_t const end = bodyAbsoluteOffset();
    while (nextIndex_ < end && source_.seek(nextIndex_) == nextIndex_ && !source_.endOfStream()) {
        std::uint64_t skipped = 0;
        auto packet = klvReader_.nextKLV(skipped, end - nextIndex_);
        nextIndex_ = addOffsets(packet->keyAbsoluteOffset(), packet->klvLength());
        if (!KLV::isFillItem(packet->key()))
            return packet;
    }
    return nullptr;
}

Templates::auto_ptr<KLV::Packet> Partition::nextBodyKLV(std::uint64_t maxLength) {
    if (state_ == ReadState::Ended)
        return nullptr;
    std::uint64_t skipped = 0;
    if (source_.seek(nextBody_) != nextBody_ || source_.endOfStream()) {
        endBody();
        return nullptr;
    }
    KLV::Key const key = klvReader_.peekNextKey(skipped, maxLength);
    if (Packs::isPartitionPack(key) || key == Packs::RandomIndexPack::key()) {
        endBody();
        return nullptr;
    }
    auto packet = klvReader_.nextKLV(skipped, maxLength);
    nextBody_ = addOffsets(packet->keyAbsoluteOffset(), packet->klvLength());
    return packet;
}

void Partition::endBody() {
    state_ = ReadState::Ended;
    if (listener_)
        listener_->partitionEnded(*this);
}

void Partition::setPartitionListener(
    Templates::SharedPtr<PartitionListener, Templates::LockedCounter> listener) {
    listener_ = std::move(listener);
}

} // namespace MXF::Zelm::MXFIO
