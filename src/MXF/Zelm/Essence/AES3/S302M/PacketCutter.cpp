#include "MXF/Zelm/Essence/AES3/S302M/PacketCutter.h"

#include "MXF/Zelm/Essence/AES3/S302M/SamplePacking.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>
#include <utility>

namespace MXF::Zelm::Essence::AES3::S302M {

namespace {

constexpr int samplingRate = 48000; // SMPTE 302M has no other

/// Bytes of an instant; 0 where the header has no such bits, or alignment bits other than 0.
std::size_t instantSize(const unsigned char* header) {
    constexpr unsigned char alignment = 0x0F;
    constexpr unsigned noBits = 3;
    if ((header[3] & alignment) != 0 || (header[3] >> 4 & 3u) == noBits)
        return 0;
    Header const read(header);
    return SamplePacking(read.bitsPerSample(), read.numberOfChannels()).packedSize();
}

} // namespace

PacketCutter::PacketCutter(Templates::SharedPtr<DataIO::SliceSource> source) : source_(std::move(source)) {}

std::size_t PacketCutter::sizeOf(const unsigned char* header) {
    std::size_t const each = instantSize(header), payload = Header(header).audioPacketSize();
    return each == 0 || payload == 0 || payload % each != 0 ? 0 : Header::size() + payload;
}

std::optional<Packet> PacketCutter::next() {
    std::uint64_t const offset = source_->absoluteOffset();
    Packet packet;
    if (source_->read(Header::size(), packet.bytes) == 0)
        return std::nullopt;
    takeHeader(packet, offset);
    std::uint64_t const payload = packet.header.audioPacketSize();
    if (std::uint64_t const count = source_->read(payload, packet.bytes); count < payload)
        throw Exceptions::at(offset,
                             Exceptions::InvalidLength("An AES3 packet of " + std::to_string(payload) +
                                                       " bytes, " + std::to_string(count) + " left"));
    return packet;
}

void PacketCutter::takeHeader(Packet& packet, std::uint64_t offset) {
    if (packet.bytes.size() < Header::size())
        throw Exceptions::at(offset,
                             Exceptions::InvalidLength("An AES3 data header of " +
                                                       std::to_string(packet.bytes.size()) + " bytes"));
    auto const bytes = packet.bytes.contiguous();
    if (sizeOf(bytes.data()) == 0)
        throw Exceptions::at(offset, Exceptions::InvalidStructure("No SMPTE 302M packet begins here"));
    packet.header = Header(bytes.data());
    packet.instants = static_cast<std::uint32_t>(packet.header.audioPacketSize() / instantSize(bytes.data()));
    AES3Info const info = {
        packet.header.numberOfChannels(), packet.header.bitsPerSample(), {samplingRate, 1}};
    if (info_.channels != 0 && !(info == info_))
        throw Exceptions::at(
            offset, Exceptions::InvalidStructure("An AES3 packet of " + std::to_string(info.channels) +
                                                 " channels of " + std::to_string(info.bitsPerSample) +
                                                 " bits, the first had " + std::to_string(info_.channels) +
                                                 " of " + std::to_string(info_.bitsPerSample)));
    info_ = info;
}

} // namespace MXF::Zelm::Essence::AES3::S302M
