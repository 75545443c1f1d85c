#include "PacketUnits.h"

#include <MXF/Zelm/DataIO/BufferSliceSource.h>
#include <MXF/Zelm/Essence/AES3/S302M/PacketCutter.h>
#include <MXF/Zelm/Essence/MPEG/Demultiplexer.h>
#include <MXF/Zelm/Essence/MPEG/PESHeader.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Essence::AES3::S302M::Header;
using Essence::AES3::S302M::PacketCutter;
using Essence::MPEG::PESHeader;

namespace {

/// Bytes before the first SMPTE 302M packet; none when they cannot be told.
std::optional<std::size_t> bytesBefore(DataIO::Chain const& data, DataIO::Slice const& start) {
    if (!beginsWithPES(data))
        return 0;
    try {
        auto const header = PESHeader::read(start.data(), start.size());
        return header ? std::optional(header->size) : std::nullopt;
    } catch (Exceptions::InvalidFormat const&) {
        return std::nullopt;
    }
}

} // namespace

bool beginsWithPES(DataIO::Chain const& data) {
    constexpr unsigned char startCode[] = {0, 0, 1, Essence::MPEG::PrivateStream1};
    unsigned char bytes[sizeof startCode] = {};
    data.copyTo(bytes, sizeof bytes);
    return std::equal(std::begin(bytes), std::end(bytes), std::begin(startCode));
}

std::optional<Header> firstPacketHeader(DataIO::Chain const& data) {
    std::uint64_t const most = PESHeader::largestSize + Header::size();
    auto const start = data.part(0, std::min(data.size(), most)).contiguous();
    auto const before = bytesBefore(data, start);
    if (!before || start.size() < *before + Header::size() ||
        PacketCutter::sizeOf(start.data() + *before) == 0)
        return std::nullopt;
    return Header(start.data() + *before);
}

DataIO::Chain packetsOf(DataIO::Chain unit) {
    using Essence::MPEG::ProgramStreamDemultiplexer;
    if (!beginsWithPES(unit))
        return unit;
    ProgramStreamDemultiplexer demultiplexer(std::make_shared<DataIO::BufferSliceSource>(std::move(unit)));
    auto const& streams = demultiplexer.streams();
    auto const found = std::find_if(streams.begin(), streams.end(), [](auto const& stream) {
        return stream.id == Essence::MPEG::PrivateStream1;
    });
    if (found == streams.end())
        throw Exceptions::InvalidFormat("PES packets without any of private stream 1");
    DataIO::Chain packets;
    demultiplexer.take(static_cast<std::size_t>(found - streams.begin()))->read(~std::uint64_t{0}, packets);
    return packets;
}

} // namespace Zelm
