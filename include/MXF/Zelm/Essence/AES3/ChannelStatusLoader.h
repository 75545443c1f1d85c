/// Channel status blocks out of the bits of subframes.
#pragma once

#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"

namespace MXF::Zelm::Essence::AES3 {

/// Gathers the channel status bits of one channel. Bits before the first block start, and those of a block
/// longer than 192 bits, are passed over; a block start begins anew.
class MXFZELM_EXPORT ChannelStatusLoader : public Platform::Allocated {
public:
    /// The channel status bit of the next subframe, and whether a block of 192 begins with it.
    void push(bool channelStatusBit, bool blockStart);

    /// True once 192 bits are in, until the next block starts.
    bool isComplete() const { return isRunning_ && count_ == ChannelStatus::blockBits; }

    /// The bits of the current block, those that are not in yet 0.
    ChannelStatus const& channelStatus() const { return status_; }

    /// Forgets everything: waits for a block start.
    void reset() { *this = ChannelStatusLoader(); }

private:
    ChannelStatus status_;
    unsigned count_ = 0;
    bool isRunning_ = false;
};

} // namespace MXF::Zelm::Essence::AES3
