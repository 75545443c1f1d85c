#include "MXF/Zelm/MXFIO/IndexAreaWalk.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/IndexTables/IndexTableSegment.h"
#include "MXF/Zelm/MXFIO/Offsets.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

IndexAreaWalk::IndexAreaWalk(Reader& reader, Partition const& partition, std::uint64_t end, bool everywhere)
    : reader_(reader),
      end_(end),
      everywhere_(everywhere),
      at_(everywhere ? partition.metadataAbsoluteOffset() : partition.indexTableAbsoluteOffset()),
      declaredEnd_(partition.bodyAbsoluteOffset()) {}

/// True for a packet that is not passed over: in the index area that is whatever belongs to the body or to
/// another partition, behind it everything but segments and fill.
bool IndexAreaWalk::endsAt(KLV::Key const& key) {
    if (Packs::isPartitionPack(key) || key == Packs::RandomIndexPack::key())
        return true;
    if (everywhere_)
        return false;
    essenceFound_ = KLV::isEssence(key);
    return essenceFound_ || (at_ >= declaredEnd_ && !KLV::isFillItem(key) &&
                             !IndexTables::IndexTableSegment::isSegmentKey(key));
}

Templates::auto_ptr<KLV::Packet> IndexAreaWalk::next() {
    auto& source = reader_.source();
    try {
        while (at_ < end_ && source.seek(at_) == at_ && !source.endOfStream()) {
            std::uint64_t skipped = 0;
            std::uint64_t const declared = declaredEnd_ - std::min(at_, declaredEnd_);
            KLV::Key const key = reader_.klvReader().peekNextKey(
                skipped, everywhere_ ? reader_.searchLimit() : std::min(declared, reader_.searchLimit()));
            at_ = addOffsets(at_, skipped);
            if (endsAt(key))
                return nullptr;
            auto packet = reader_.klvReader().nextKLV(skipped, 0);
            at_ = addOffsets(packet->keyAbsoluteOffset(), packet->klvLength());
            if (!IndexTables::IndexTableSegment::isSegmentKey(key))
                continue;
            segmentsEnd_ = at_;
            return packet;
        }
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        // No packet follows: whoever reads the body meets the fault.
    }
    return nullptr;
}

std::uint64_t IndexAreaWalk::essenceOffset() const {
    bool const declaredTooMuch = essenceFound_ && at_ < declaredEnd_;
    bool const declaredTooLittle = segmentsEnd_ > declaredEnd_;
    return declaredTooMuch || declaredTooLittle ? at_ : declaredEnd_;
}

} // namespace MXF::Zelm::MXFIO
