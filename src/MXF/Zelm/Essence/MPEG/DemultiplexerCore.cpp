#include "MXF/Zelm/Essence/MPEG/DemultiplexerCore.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::Essence::MPEG {

DemultiplexerCore::DemultiplexerCore(Templates::SharedPtr<DataIO::SliceSource> source,
                                     std::uint64_t mostWaiting)
    : window_(std::move(source)),
      mostWaiting_(mostWaiting),
      faultSink_([this](std::uint64_t offset, std::string message) { fault(offset, std::move(message)); }) {}

DemultiplexerCore::~DemultiplexerCore() = default;

void DemultiplexerCore::streams(std::vector<StreamInfo> streams) {
    streams_ = std::move(streams);
    collectors_.resize(streams_.size());
    isTaken_.assign(streams_.size(), false);
}

void DemultiplexerCore::take(std::size_t index) {
    if (index >= streams_.size() || isTaken_[index])
        throw Exceptions::InvalidPosition("Stream " + std::to_string(index) + " of " +
                                          std::to_string(streams_.size()) +
                                          " is not there, or was taken before");
    isTaken_[index] = true;
    collectors_[index].isWanted(true);
}

void DemultiplexerCore::addProgram(std::uint16_t program) {
    auto const place = std::lower_bound(programs_.begin(), programs_.end(), program);
    if (place == programs_.end() || *place != program)
        programs_.insert(place, program);
}

void DemultiplexerCore::fault(std::uint64_t offset, std::string message) {
    ++faultCount_;
    if (faults_.size() < Demultiplexer::mostFaults)
        faults_.push_back({offset, std::move(message)});
}

bool DemultiplexerCore::fill(std::size_t index) {
    auto& ready = collectors_[index].ready();
    while (ready.empty() && !hasEnded_) {
        requireRoom();
        if (step())
            continue;
        hasEnded_ = true;
        for (auto& collector : collectors_)
            collector.end(faultSink_);
    }
    return !ready.empty();
}

void DemultiplexerCore::requireRoom() const {
    std::uint64_t waiting = 0;
    for (auto const& collector : collectors_)
        waiting += collector.waiting();
    if (waiting > mostWaiting_)
        throw Exceptions::InvalidChange(
            "A stream is read too far ahead of others: " + std::to_string(waiting) + " bytes wait, " +
            std::to_string(mostWaiting_) + " are allowed");
}

} // namespace MXF::Zelm::Essence::MPEG
