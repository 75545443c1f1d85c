#include "StreamDamage.h"

#include "Faults.h"

#include <MXF/Zelm/ByteCoders/BigEndian.h>

#include <algorithm>
#include <cstdio>

namespace Zelm {

namespace {

using MXF::Zelm::ByteCoders::decodeInteger;
using MXF::Zelm::DataIO::Slice;

constexpr std::size_t headSize = 4; // of a packet of SMPTE 302M; begins with the size of what follows

std::size_t packetSize(const unsigned char* head) { return headSize + decodeInteger<std::uint16_t>(head); }

/// Whether packets fill the bytes.
bool arePackets(Slice const& bytes) {
    std::size_t at = 0;
    while (bytes.size() - at >= headSize && bytes.size() - at >= packetSize(bytes.data() + at))
        at += packetSize(bytes.data() + at);
    return at == bytes.size() && at != 0;
}

} // namespace

void StreamDamage::take(MXF::Zelm::Essence::MPEG::ElementaryStream const& stream) {
    if (stream.faultCount() > faultCount_) {
        faultCount_ = stream.faultCount();
        first_ = stream.faults().front();
    }
    if (stream.leapCount() > leapCount_) {
        leapCount_ = stream.leapCount();
        leap_ = stream.firstLeap();
    }
}

void StreamDamage::add(std::uint64_t offset, std::string message) {
    if (faultCount_++ == 0)
        first_ = {offset, std::move(message)};
}

std::string StreamDamage::faults() const {
    if (faultCount_ == 0)
        return "";
    auto const places = std::to_string(faultCount_) + " places, the first: ";
    return "is damaged" + (faultCount_ == 1 ? ": " : " in " + places) +
           faultText(first_.message, first_.offset);
}

std::string StreamDamage::leaps() const {
    if (leapCount_ == 0)
        return "";
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%+.2f s", leap_);
    return "its times leap by " + std::string(seconds) +
           (leapCount_ == 1 ? "" : ", and " + std::to_string(leapCount_ - 1) + " times more") +
           ": nothing is put in between";
}

std::uint64_t WatchedStream::read(std::uint64_t size, MXF::Zelm::DataIO::Chain& chain) {
    auto const count = stream_->read(size, chain);
    damage_->take(*stream_);
    return count;
}

std::uint64_t WatchedStream::skip(std::uint64_t size) {
    auto const count = stream_->skip(size);
    damage_->take(*stream_);
    return count;
}

bool MendedPackets::produce(MXF::Zelm::DataIO::Chain& chain) {
    MXF::Zelm::Essence::MPEG::PESPacket packet;
    if (!stream_->nextPacket(packet))
        return false;
    damage_->take(*stream_);
    auto const bytes = packet.payload.contiguous();
    if (arePackets(bytes)) {
        silence_.assign(packetSize(bytes.data()), 0);
        std::copy_n(bytes.data(), headSize, silence_.begin());
    } else if (damage_->hasFaults()) {
        chain.append(Slice::copyOf(silence_.data(), silence_.size()));
        return true;
    }
    chain.append(bytes);
    return true;
}

} // namespace Zelm
