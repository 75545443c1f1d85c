/// Reads elements of VBI lines and ancillary data packets and all that packets may hold. The first byte of
/// the input says which kind it is. What was read and is written again must be read alike.
#include "MXF/Zelm/Essence/Ancillary/ActiveFormat.h"
#include "MXF/Zelm/Essence/Ancillary/CaptionPacket.h"
#include "MXF/Zelm/Essence/Ancillary/LineCaptions.h"
#include "MXF/Zelm/Essence/Ancillary/Timecode.h"
#include "MXF/Zelm/GenericContainer/S436M/ANCPacket.h"
#include "MXF/Zelm/GenericContainer/S436M/FrameElement.h"
#include "support.h"

using namespace MXF::Zelm;
using namespace GenericContainer::S436M;
using namespace Essence::Ancillary;

namespace {

/// What a packet was found to hold is found again in one that is made of it.
void useCaptions(CaptionPacket const& packet) {
    auto const again = readCaptionPacket(packet.bytes());
    Fuzz::require(again.faults == 0 && again.data == packet.data && again.services == packet.services &&
                  again.timecode == packet.timecode && again.sequence == packet.sequence &&
                  again.isCaptionServiceActive == packet.isCaptionServiceActive);
}

void useContent(Packet const& packet, LineCaptions& captions) {
    auto const bytes = packet.bytes();
    readActiveFormat(bytes);
    if (auto const timecode = readTimecode(bytes, 30); timecode && timecode->time.isDefined())
        timecode->bytes();
    Templates::vector<CaptionRow> rows;
    auto const found = readCaptionPacket(bytes);
    Fuzz::passingOverBadInput([&] { useCaptions(found); });
    for (auto const& data : found.data)
        captions.take(data.type % 2 + 1u, data.bytes, rows);
    for (auto const& row : rows)
        Fuzz::require(row.text.size() <= LineCaptions::mostColumns);
}

void usePacket(StoredPacket const& stored, LineCaptions& captions) {
    auto const read = readANC(stored);
    Fuzz::require(read.packet.userData.size() <= Packet::mostUserData);
    useContent(read.packet, captions);
    auto const again =
        readANC(storeANC(read.packet, stored.lineNumber, stored.wrapping, SampleCoding::Luma10));
    Fuzz::require(again.packet == read.packet && again.faults == 0);
}

DataIO::Chain writtenAgain(FrameElement const& element) {
    Templates::vector<StoredPacket> packets;
    for (auto const& found : element.packets)
        packets.push_back(found.stored);
    return writeFrameElement(packets);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0)
        return 0;
    auto const kind = data[0] % 2 == 0 ? ElementKind::ANC : ElementKind::VBI;
    auto const element = readFrameElement(kind, DataIO::Slice::copyOf(data + 1, size - 1));
    LineCaptions captions;
    for (auto const& found : element.packets) {
        Fuzz::require(found.offset <= size && found.stored.payload.size() <= size - found.offset);
        Fuzz::require(found.stored.samples().size() <= found.stored.sampleCount);
        usePacket(found.stored, captions);
    }
    auto const bytes = writtenAgain(element);
    auto const again = readFrameElement(kind, bytes);
    Fuzz::require(again.packets.size() == element.packets.size() && writtenAgain(again) == bytes);
    return 0;
}
