/// The state that a demultiplexer shares with its streams.
#pragma once

#include "MXF/Zelm/Essence/ByteWindow.h"
#include "MXF/Zelm/Essence/MPEG/Demultiplexer.h"
#include "MXF/Zelm/Essence/MPEG/PESCollector.h"

namespace MXF::Zelm::Essence::MPEG {

class DemultiplexerCore {
public:
    DemultiplexerCore(Templates::SharedPtr<DataIO::SliceSource> source, std::uint64_t mostWaiting);
    virtual ~DemultiplexerCore();
    DemultiplexerCore(DemultiplexerCore const&) = delete;
    DemultiplexerCore& operator=(DemultiplexerCore const&) = delete;

    std::vector<StreamInfo> const& streams() const { return streams_; }
    std::vector<StreamFault> const& faults() const { return faults_; }
    std::uint64_t faultCount() const { return faultCount_; }

    /// The number of the program, 0 where there are none.
    virtual std::uint16_t program() const { return 0; }

    /// The numbers of all of them, in rising order.
    std::vector<std::uint16_t> const& programs() const { return programs_; }

    bool isTaken(std::size_t index) const { return isTaken_[index]; }
    void take(std::size_t index);

    /// Reads on until a piece of a stream is ready; false when there is none any more.
    bool fill(std::size_t index);

    PESCollector& collector(std::size_t index) { return collectors_[index]; }
    bool hasEnded() const { return hasEnded_; }

protected:
    /// Reads the next packet of the source and gives its payload to its collector; false at the end. Always
    /// moves on.
    virtual bool step() = 0;

    /// Once the streams are known.
    void streams(std::vector<StreamInfo> streams);

    /// One that the source says it has.
    void addProgram(std::uint16_t program);

    void fault(std::uint64_t offset, std::string message);
    FaultSink const& faultSink() const { return faultSink_; }
    ByteWindow& window() { return window_; }

private:
    void requireRoom() const;

    ByteWindow window_;
    std::uint64_t mostWaiting_;
    std::vector<StreamInfo> streams_;
    std::vector<PESCollector> collectors_;
    std::vector<bool> isTaken_;
    std::vector<std::uint16_t> programs_;
    FaultSink faultSink_;
    std::vector<StreamFault> faults_;
    std::uint64_t faultCount_ = 0;
    bool hasEnded_ = false;
};

} // namespace MXF::Zelm::Essence::MPEG
