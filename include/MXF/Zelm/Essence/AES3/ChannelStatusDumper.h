/// The bits of subframes out of a channel status block.
#pragma once

#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"

namespace MXF::Zelm::Essence::AES3 {

/// Gives a block bit by bit, again and again.
class MXFZELM_EXPORT ChannelStatusDumper : public Platform::Allocated {
public:
    struct Bit {
        bool channelStatusBit;
        bool blockStart;
    };

    explicit ChannelStatusDumper(ChannelStatus const& status) : status_(status) {}

    /// The bit of the next subframe, and whether a block begins with it.
    Bit pop();

private:
    ChannelStatus status_;
    unsigned next_ = 0;
};

} // namespace MXF::Zelm::Essence::AES3
