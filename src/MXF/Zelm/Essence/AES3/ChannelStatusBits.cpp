#include "MXF/Zelm/Essence/AES3/ChannelStatusDumper.h"
#include "MXF/Zelm/Essence/AES3/ChannelStatusLoader.h"

namespace MXF::Zelm::Essence::AES3 {

void ChannelStatusLoader::push(bool channelStatusBit, bool blockStart) {
    if (blockStart) {
        reset();
        isRunning_ = true;
    }
    if (isRunning_ && count_ < ChannelStatus::blockBits)
        status_.bit(count_++, channelStatusBit);
}

ChannelStatusDumper::Bit ChannelStatusDumper::pop() {
    Bit const result = {status_.bit(next_), next_ == 0};
    next_ = (next_ + 1) % ChannelStatus::blockBits;
    return result;
}

} // namespace MXF::Zelm::Essence::AES3
