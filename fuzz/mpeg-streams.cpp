/// Takes elementary streams out of program and transport streams, in one piece and in small ones, by packets
/// and as bytes, with the same result.
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Essence/MPEG/Demultiplexer.h"
#include "support.h"

#include <algorithm>

using namespace MXF::Zelm;
using namespace MXF::Zelm::Essence::MPEG;

namespace {

constexpr std::size_t searchLimit = 4096;

Templates::SharedPtr<DataIO::SliceSource> sourceOf(DataIO::Chain chain) {
    return std::make_shared<DataIO::BufferSliceSource>(std::move(chain));
}

/// All streams as bytes, one behind the other.
DataIO::Chain bytesOf(Demultiplexer& demultiplexer) {
    DataIO::Chain all;
    std::vector<Templates::SharedPtr<ElementaryStream>> streams;
    for (std::size_t i = 0; i < demultiplexer.streams().size(); ++i)
        streams.push_back(demultiplexer.take(i));
    for (auto const& stream : streams)
        while (stream->read(333, all) != 0)
            continue;
    return all;
}

DataIO::Chain packetsOf(Demultiplexer& demultiplexer) {
    DataIO::Chain all;
    std::vector<Templates::SharedPtr<ElementaryStream>> streams;
    for (std::size_t i = 0; i < demultiplexer.streams().size(); ++i)
        streams.push_back(demultiplexer.take(i));
    PESPacket packet;
    for (auto const& stream : streams)
        while (stream->nextPacket(packet)) {
            Fuzz::require(!packet.payload.empty());
            all.append(packet.payload);
        }
    return all;
}

template <class Kind>
void use(DataIO::Chain const& whole, DataIO::Chain const& pieces) {
    Fuzz::passingOverBadInput([&] {
        auto const make = [](DataIO::Chain const& chain) {
            if constexpr (std::is_same_v<Kind, TransportStreamDemultiplexer>)
                return std::make_unique<Kind>(sourceOf(chain), std::uint16_t{0}, searchLimit);
            else
                return std::make_unique<Kind>(sourceOf(chain), searchLimit);
        };
        auto const one = make(whole), other = make(pieces);
        auto const bytes = bytesOf(*one);
        Fuzz::require(bytes.size() <= whole.size() && bytes == packetsOf(*other) &&
                      one->faultCount() == other->faultCount());
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Chain const whole(DataIO::Slice::copyOf(data, size));
    DataIO::Chain pieces;
    for (std::size_t at = 0; at < size; at += 7)
        pieces.append(DataIO::Slice::copyOf(data + at, std::min<std::size_t>(7, size - at)));
    use<ProgramStreamDemultiplexer>(whole, pieces);
    use<TransportStreamDemultiplexer>(whole, pieces);
    return 0;
}
