#include "MXF/Zelm/GenericContainer/S436M/PacketDemultiplexer.h"

#include "MXF/Zelm/GenericContainer/S436M/ANCPacket.h"

namespace MXF::Zelm::GenericContainer::S436M {

namespace {

bool isSelected(PacketSelection const& selection, ReceivedPacket const& packet) {
    if (selection.line && *selection.line != packet.found.stored.line())
        return false;
    if (packet.anc == nullptr)
        return true;
    auto const& content = packet.anc->packet;
    return selection.did.value_or(content.did) == content.did &&
           selection.sdid.value_or(content.sdid) == content.sdid;
}

} // namespace

PacketReceiver::~PacketReceiver() = default;

void PacketDemultiplexer::add(PacketSelection const& selection, PacketReceiver& receiver) {
    routes_.push_back({selection, &receiver});
}

FrameElement PacketDemultiplexer::take(std::int64_t editUnit, DataIO::Chain const& value) const {
    auto element = readFrameElement(kind_, value, lines_);
    for (auto const& found : element.packets) {
        Essence::Ancillary::ReadPacket content;
        if (kind_ == ElementKind::ANC)
            content = readANC(found.stored);
        ReceivedPacket const packet{editUnit, found, kind_ == ElementKind::ANC ? &content : nullptr};
        for (auto const& route : routes_)
            if (isSelected(route.selection, packet))
                route.receiver->receive(packet);
    }
    return element;
}

} // namespace MXF::Zelm::GenericContainer::S436M
