#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Essence/MPEG/Demultiplexer.h"
#include "MXF/Zelm/Essence/MPEG/DemultiplexerCore.h"
#include "MXF/Zelm/Essence/MPEG/ProgramTables.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <map>
#include <utility>

namespace MXF::Zelm::Essence::MPEG {

namespace {

constexpr std::uint8_t syncByte = 0x47;
constexpr std::size_t packetSize = 188, headSize = 4;
constexpr std::uint16_t associationId = 0;

/// How far packets are from one another, and where in the first of them its sync byte stands.
struct PacketGrid {
    std::size_t step;
    std::size_t syncAt;
};

constexpr PacketGrid grids[] = {{188, 0}, {192, 4}, {204, 0}};

/// The head of a packet, and where its payload stands.
struct TransportPacket {
    explicit TransportPacket(const unsigned char* bytes)
        : isDamaged((bytes[1] & 0x80u) != 0),
          beginsUnit((bytes[1] & 0x40u) != 0),
          id(ByteCoders::decodeInteger<std::uint16_t>(bytes + 1) & 0x1FFF),
          isScrambled((bytes[3] & 0xC0u) != 0),
          counter(bytes[3] & 0x0Fu),
          payload(bytes + headSize) {
        std::size_t const adaptation = (bytes[3] & 0x20u) != 0 ? 1 + std::size_t{bytes[headSize]} : 0;
        isDiscontinuous = adaptation > 1 && (bytes[headSize + 1] & 0x80u) != 0;
        bool const hasPayload = (bytes[3] & 0x10u) != 0;
        if (!hasPayload || adaptation > packetSize - headSize)
            return;
        payload += adaptation;
        size = packetSize - headSize - adaptation;
        carries = true;
    }

    bool isDamaged;
    bool beginsUnit;
    std::uint16_t id;
    bool isScrambled;
    unsigned counter;
    bool isDiscontinuous = false;
    bool carries = false; // has a payload
    const unsigned char* payload;
    std::size_t size = 0;
};

class TransportStreamCore : public DemultiplexerCore {
public:
    TransportStreamCore(Templates::SharedPtr<DataIO::SliceSource> source, std::uint16_t program,
                        std::size_t searchLimit, std::uint64_t mostWaiting)
        : DemultiplexerCore(std::move(source), mostWaiting) {
        window().require(searchLimit);
        std::size_t const size = std::min(window().size(), searchLimit);
        start_ = findGrid(window().data(), size);
        findProgram(window().data() + start_, size - start_, program);
    }

    std::uint16_t program() const override { return program_; }

private:
    std::size_t findGrid(const unsigned char* bytes, std::size_t size);
    void findProgram(const unsigned char* bytes, std::size_t size, std::uint16_t wanted);
    void takeAssociation(std::vector<unsigned char> const& section, std::uint16_t wanted,
                         std::map<std::uint16_t, SectionCollector>& tables);
    bool takeMap(ProgramMap map);

    bool step() override;
    bool passUnknown();
    void takePacket(const unsigned char* bytes);
    bool follows(TransportPacket const& packet);

    struct Stream {
        std::size_t index;
        int lastCounter = -1;
        bool wasRepeated = false;
    };

    PacketGrid grid_ = grids[0];
    std::size_t start_ = 0; // bytes before the first packet
    std::uint16_t program_ = 0;
    std::map<std::uint16_t, Stream> streamOf_;
};

/// Whether sync bytes stand where a grid that begins at `start` has them: some in a row, or, in a stream of
/// fewer packets, all.
bool isGrid(PacketGrid const& grid, const unsigned char* bytes, std::size_t size, std::size_t start) {
    constexpr std::size_t inRow = 5;
    std::size_t count = 0, at = start + grid.syncAt;
    for (; count < inRow && at < size && bytes[at] == syncByte; at += grid.step)
        ++count;
    return count == inRow || (start == 0 && count != 0 && at >= size);
}

/// Finds the first packet and returns where it begins.
std::size_t TransportStreamCore::findGrid(const unsigned char* bytes, std::size_t size) {
    for (std::size_t start = 0; start < size; ++start)
        for (auto const& grid : grids)
            if (isGrid(grid, bytes, size, start)) {
                grid_ = grid;
                return start;
            }
    throw Exceptions::InvalidFormat("The first " + std::to_string(size) + " bytes are no transport stream");
}

/// "; there are programs 1, 2"
std::string listed(std::vector<std::uint16_t> const& programs) {
    std::string text;
    for (auto const program : programs)
        text += (text.empty() ? "; there are programs " : ", ") + std::to_string(program);
    return text;
}

void TransportStreamCore::findProgram(const unsigned char* bytes, std::size_t size, std::uint16_t wanted) {
    std::map<std::uint16_t, SectionCollector> tables = {{associationId, {}}};
    for (std::size_t at = 0; size - at >= grid_.syncAt + packetSize; at += std::min(grid_.step, size - at)) {
        if (bytes[at + grid_.syncAt] != syncByte)
            continue;
        TransportPacket const packet(bytes + at + grid_.syncAt);
        auto const table = tables.find(packet.id);
        if (table == tables.end() || !packet.carries || packet.isDamaged)
            continue;
        for (auto const& section : table->second.push(packet.payload, packet.size, packet.beginsUnit)) {
            if (packet.id == associationId)
                takeAssociation(section, wanted, tables);
            if (auto map = readProgramMap(section); map && (wanted == 0 || map->program == wanted))
                if (takeMap(std::move(*map)))
                    return;
        }
    }
    throw Exceptions::InvalidFormat("The first " + std::to_string(size) + " bytes have no map of " +
                                    (wanted == 0 ? "a program" : "program " + std::to_string(wanted)) +
                                    listed(programs()));
}

void TransportStreamCore::takeAssociation(std::vector<unsigned char> const& section, std::uint16_t wanted,
                                          std::map<std::uint16_t, SectionCollector>& tables) {
    for (auto const& entry : readAssociation(section)) {
        addProgram(entry.program);
        if (wanted == 0 || entry.program == wanted)
            tables.try_emplace(entry.mapId);
    }
}

/// False for a map without streams.
bool TransportStreamCore::takeMap(ProgramMap map) {
    std::vector<StreamInfo> list;
    for (auto const& info : map.streams)
        if (streamOf_.try_emplace(info.id, Stream{list.size()}).second)
            list.push_back(info);
    program_ = map.program;
    streams(std::move(list));
    return !streams().empty();
}

bool TransportStreamCore::step() {
    window().advance(std::exchange(start_, 0));
    std::size_t const needed = grid_.syncAt + packetSize;
    if (!window().require(2 * grid_.step) && window().size() < needed) {
        if (window().size() != 0)
            fault(window().offset(), "A transport packet is cut off");
        window().advance(window().size());
        return false;
    }
    if (window().data()[grid_.syncAt] != syncByte)
        return passUnknown();
    takePacket(window().data() + grid_.syncAt);
    window().advance(std::min(grid_.step, window().size()));
    return true;
}

/// Passes over bytes until two packets, or the last one, follow.
bool TransportStreamCore::passUnknown() {
    std::uint64_t const from = window().offset();
    auto const isPacket = [this] {
        std::size_t const next = grid_.syncAt + grid_.step;
        return window().data()[grid_.syncAt] == syncByte &&
               (!window().require(next + 1) || window().data()[next] == syncByte);
    };
    do
        window().advance(1);
    while (window().require(grid_.syncAt + packetSize) && !isPacket());
    fault(from, "Sync lost for " + std::to_string(window().offset() - from) + " bytes");
    return true;
}

void TransportStreamCore::takePacket(const unsigned char* bytes) {
    TransportPacket const packet(bytes);
    auto const found = streamOf_.find(packet.id);
    if (found == streamOf_.end() || !packet.carries)
        return;
    auto& collector = this->collector(found->second.index);
    std::string const name = "Packet of stream " + ByteCoders::toHexadecimal(packet.id);
    if (!collector.isWanted() || !follows(packet))
        return;
    if (packet.isDamaged || packet.isScrambled) {
        fault(window().offset(), name + (packet.isDamaged ? " has a transport error" : " is scrambled"));
        return;
    }
    if (packet.beginsUnit)
        collector.begin(window().offset(), faultSink());
    collector.push(packet.payload, packet.size, faultSink());
}

/// Checks the continuity counter. False for a packet that is sent a second time, as is allowed once.
bool TransportStreamCore::follows(TransportPacket const& packet) {
    auto& stream = streamOf_.at(packet.id);
    int const last = std::exchange(stream.lastCounter, static_cast<int>(packet.counter));
    auto const expected = static_cast<unsigned>(last + 1) % 16;
    bool const isSame = last == static_cast<int>(packet.counter);
    if (isSame && !packet.isDiscontinuous && !std::exchange(stream.wasRepeated, true))
        return false;
    stream.wasRepeated = false;
    if (last >= 0 && packet.counter != expected && !packet.isDiscontinuous)
        fault(window().offset(), "Continuity counter of stream " + ByteCoders::toHexadecimal(packet.id) +
                                     " is " + std::to_string(packet.counter) + ", " +
                                     std::to_string(expected) + " was expected");
    return true;
}

} // namespace

TransportStreamDemultiplexer::TransportStreamDemultiplexer(Templates::SharedPtr<DataIO::SliceSource> source,
                                                           std::uint16_t program, std::size_t searchLimit,
                                                           std::uint64_t mostWaiting)
    : Demultiplexer(
          std::make_shared<TransportStreamCore>(std::move(source), program, searchLimit, mostWaiting)) {}

std::uint16_t TransportStreamDemultiplexer::program() const { return core().program(); }

std::vector<std::uint16_t> const& TransportStreamDemultiplexer::programs() const { return core().programs(); }

} // namespace MXF::Zelm::Essence::MPEG
