/// Hands out the packets of elements of SMPTE 436M to whoever asked for them.
///
///     PacketDemultiplexer demultiplexer(ElementKind::ANC);
///     demultiplexer.add({.did = 0x61, .sdid = 0x01}, captions);
///     demultiplexer.add({.line = 9}, everythingOnLine9);
///     while (essence.next(unit))
///         if (auto const* const element = unit.package.element(ancTrackNumber))
///             demultiplexer.take(unit.position, element->data);
#pragma once

#include "MXF/Zelm/Essence/Ancillary/Packet.h"
#include "MXF/Zelm/GenericContainer/S436M/FrameElement.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

#include <optional>

namespace MXF::Zelm::GenericContainer::S436M {

/// Which packets; all of them where nothing is given.
struct MXFZELM_EXPORT PacketSelection {
    std::optional<unsigned char> did = {}, sdid = {}; ///< of ANC

    /// Without `StoredPacket::field2Mark`.
    std::optional<unsigned> line = {};
};

/// A packet on its way to a receiver, which copies what it keeps.
struct MXFZELM_EXPORT ReceivedPacket {
    std::int64_t editUnit = 0;
    FoundPacket const& found;

    /// Of ANC; null for VBI.
    Essence::Ancillary::ReadPacket const* anc = nullptr;

    /// Nothing is wrong with it.
    bool isSound() const { return found.faults == 0 && (anc == nullptr || anc->faults == 0); }
};

/// What a host has packets sent to.
class MXFZELM_EXPORT PacketReceiver {
public:
    virtual ~PacketReceiver();
    virtual void receive(ReceivedPacket const& packet) = 0;
};

/// Not locked: one demultiplexer, one thread.
class MXFZELM_EXPORT PacketDemultiplexer : public Platform::Allocated {
public:
    /// Of elements of one kind; `lines` as for `readFrameElement`.
    explicit PacketDemultiplexer(ElementKind kind, unsigned lines = mostLines) : kind_(kind), lines_(lines) {}

    /// Sends the packets of a selection to `receiver`, which is not owned and must outlive this. A packet
    /// goes to all that asked for it, in the order of their adding; a receiver may be added more than once.
    void add(PacketSelection const& selection, PacketReceiver& receiver);

    /// Reads the value of an element and hands its packets out, also those with faults. Returns what is left
    /// to tell of the element. Throws what receivers throw.
    FrameElement take(std::int64_t editUnit, DataIO::Chain const& value) const;

private:
    struct Route {
        PacketSelection selection;
        PacketReceiver* receiver;
    };

    ElementKind kind_;
    unsigned lines_;
    Templates::vector<Route> routes_;
};

} // namespace MXF::Zelm::GenericContainer::S436M
