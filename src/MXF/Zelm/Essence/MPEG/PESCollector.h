/// The payload of one elementary stream, as its packets come in.
#pragma once

#include "MXF/Zelm/Essence/MPEG/PESHeader.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace MXF::Zelm::Essence::MPEG {

/// Where faults are told.
using FaultSink = std::function<void(std::uint64_t offset, std::string message)>;

/// Bytes of the payload of a packet: all, or a part.
struct PESPiece {
    std::vector<unsigned char> bytes = {};
    Timestamps timestamps = {};
    bool beginsPacket = false;
};

/// Takes PES packets in parts of any size and keeps their payload in pieces. Payload is copied: it comes in
/// small parts of large blocks, which would all stay in memory with them.
class PESCollector {
public:
    /// Nothing is kept of a stream that is not wanted.
    bool isWanted() const { return isWanted_; }
    void isWanted(bool value) { isWanted_ = value; }

    /// The bytes to come begin a packet, which stands at `offset` of the source.
    void begin(std::uint64_t offset, FaultSink const& fault);

    /// Bytes of the packet; passed over before the first packet begins.
    void push(const unsigned char* bytes, std::size_t size, FaultSink const& fault);

    /// Bytes of the packet that are not wanted, in its payload.
    void pass(std::size_t size) { left_ -= std::min(size, left_); }

    /// The packet under way has no more bytes.
    void end(FaultSink const& fault);

    /// The pieces that are ready. A packet under way has the last of its own not in here.
    std::deque<PESPiece>& ready() { return ready_; }

    /// Bytes of pieces.
    std::uint64_t waiting() const { return waiting_; }
    PESPiece take();

    /// Lets all go and wants no more.
    void close();

private:
    enum class State { Outside, InHeader, InPayload };

    void readHeader(const unsigned char*& bytes, std::size_t& size, FaultSink const& fault);
    void addPayload(const unsigned char* bytes, std::size_t size);
    void flush();

    bool isWanted_ = false;
    State state_ = State::Outside;
    std::uint64_t offset_ = 0;
    std::vector<unsigned char> header_;
    bool isBounded_ = false;
    bool isScrambled_ = false;
    std::size_t left_ = 0; // of a bounded payload
    PESPiece current_;
    std::deque<PESPiece> ready_;
    std::uint64_t waiting_ = 0;
};

} // namespace MXF::Zelm::Essence::MPEG
