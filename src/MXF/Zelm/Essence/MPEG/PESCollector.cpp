#include "MXF/Zelm/Essence/MPEG/PESCollector.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::Essence::MPEG {

namespace {

/// Payload that is given before its packet ends.
constexpr std::size_t largestPiece = std::size_t{64} << 10;

} // namespace

void PESCollector::begin(std::uint64_t offset, FaultSink const& fault) {
    end(fault);
    if (!isWanted_)
        return;
    state_ = State::InHeader;
    offset_ = offset;
    header_.clear();
}

void PESCollector::push(const unsigned char* bytes, std::size_t size, FaultSink const& fault) {
    if (state_ == State::InHeader)
        readHeader(bytes, size, fault);
    if (state_ != State::InPayload)
        return;
    std::size_t const count = isBounded_ ? std::min(size, left_) : size;
    left_ -= isBounded_ ? count : 0;
    if (!isScrambled_)
        addPayload(bytes, count);
    if (isBounded_ && left_ == 0)
        flush();
    if (count < size)
        fault(offset_, "A PES packet goes on for " + std::to_string(size - count) + " bytes behind its end");
}

/// Takes the bytes of the header from the front of those that came.
void PESCollector::readHeader(const unsigned char*& bytes, std::size_t& size, FaultSink const& fault) {
    std::size_t const before = header_.size();
    std::size_t const count = std::min(size, PESHeader::largestSize - before);
    header_.insert(header_.end(), bytes, bytes + count);
    try {
        auto const header = PESHeader::read(header_.data(), header_.size());
        if (!header)
            return;
        bytes += header->size - before;
        size -= header->size - before;
        isBounded_ = header->payloadSize().has_value();
        left_ = header->payloadSize().value_or(0);
        isScrambled_ = header->isScrambled;
        if (isScrambled_)
            fault(offset_, "A PES packet is scrambled");
        state_ = State::InPayload;
        current_ = {{}, header->timestamps, true};
    } catch (Exceptions::InvalidFormat const& failure) {
        fault(offset_, failure.message());
        state_ = State::Outside;
    }
}

void PESCollector::addPayload(const unsigned char* bytes, std::size_t size) {
    current_.bytes.insert(current_.bytes.end(), bytes, bytes + size);
    waiting_ += size;
    if (current_.bytes.size() >= largestPiece)
        flush();
}

void PESCollector::end(FaultSink const& fault) {
    if (state_ == State::InHeader)
        fault(offset_, "A PES packet ends in its header");
    if (state_ == State::InPayload && isBounded_ && left_ != 0)
        fault(offset_, "A PES packet ends " + std::to_string(left_) + " bytes before its end");
    flush();
    state_ = State::Outside;
}

void PESCollector::flush() {
    if (!current_.bytes.empty())
        ready_.push_back(std::move(current_));
    current_ = {};
}

PESPiece PESCollector::take() {
    PESPiece piece = std::move(ready_.front());
    ready_.pop_front();
    waiting_ -= piece.bytes.size();
    return piece;
}

void PESCollector::close() { *this = PESCollector(); }

} // namespace MXF::Zelm::Essence::MPEG
