/// Elementary streams out of the streams that they are multiplexed in.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/MPEG/PESHeader.h"
#include "MXF/Zelm/Essence/MPEG/StreamInfo.h"
#include "MXF/Zelm/Essence/PieceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <optional>
#include <string>
#include <vector>

namespace MXF::Zelm::Essence::MPEG {

class DemultiplexerCore;

/// Something that is wrong in a stream and was passed over.
struct StreamFault {
    std::uint64_t offset = 0; ///< in the source
    std::string message = {};
};

/// The payload of one PES packet.
struct PESPacket {
    DataIO::Chain payload = {};
    Timestamps timestamps = {};
};

/// The bytes of an elementary stream, as a source or packet by packet.
class MXFZELM_EXPORT ElementaryStream : public PieceSource {
public:
    ElementaryStream(Templates::SharedPtr<DemultiplexerCore> core, std::size_t index);
    ~ElementaryStream() override;

    StreamInfo const& info() const;

    /// The next packet, whole; false at the end. To be used instead of reading: what was read of a packet is
    /// not given again. Throws Exceptions::InvalidLength for a packet of more than 64 MiB.
    bool nextPacket(PESPacket& packet);

    /// The time stamps of the first packet that had any, once it was passed.
    Timestamps const& firstTimestamps() const { return first_; }

    /// How often the times of its packets leapt so far: by more than a second backwards, or by more than two
    /// forwards. And by how many seconds they did so first; 0 when they never did.
    std::uint64_t leapCount() const { return leaps_; }
    double firstLeap() const { return firstLeap_; }

    /// What was wrong so far where it was read.
    std::vector<StreamFault> const& faults() const;
    std::uint64_t faultCount() const;

private:
    bool produce(DataIO::Chain& chain) override;
    bool nothingLeft() const override;
    void follow(Timestamps const& timestamps);

    Templates::SharedPtr<DemultiplexerCore> core_;
    std::size_t index_;
    Timestamps first_;
    std::optional<std::uint64_t> lastDecoding_; // in ticks of 90 kHz
    std::uint64_t leaps_ = 0;
    double firstLeap_ = 0;
};

/// What program and transport streams have in common. The source is read once, for all streams that were
/// taken: what one is read ahead of another waits in memory, up to a bound. Streams are taken before the
/// first of them is read; the others are passed over. Used by one thread.
///
/// Bytes that make no sense are passed over and listed as faults; what can be told to belong to a stream is
/// given.
class MXFZELM_EXPORT Demultiplexer : public Platform::Allocated {
public:
    static constexpr std::size_t defaultSearchLimit = std::size_t{1} << 20;
    static constexpr std::uint64_t defaultMostWaiting = std::uint64_t{64} << 20;

    /// Faults beyond so many are counted and not listed.
    static constexpr std::size_t mostFaults = 100;

    virtual ~Demultiplexer();
    Demultiplexer(Demultiplexer const&) = delete;
    Demultiplexer& operator=(Demultiplexer const&) = delete;

    /// The streams that were found.
    std::vector<StreamInfo> const& streams() const;

    /// A stream, which lives on without the demultiplexer. Reading it throws Exceptions::InvalidChange when
    /// more than `mostWaiting` bytes wait for others that were taken. Throws Exceptions::InvalidPosition when
    /// `index` is not below the number of streams, or the stream was taken before.
    Templates::SharedPtr<ElementaryStream> take(std::size_t index);

    /// The first stream of video, and of sound; null when there is none, or it was taken before.
    Templates::SharedPtr<ElementaryStream> takeVideo();
    Templates::SharedPtr<ElementaryStream> takeSound();

    /// What was wrong so far.
    std::vector<StreamFault> const& faults() const;
    std::uint64_t faultCount() const;

protected:
    explicit Demultiplexer(Templates::SharedPtr<DemultiplexerCore> core);
    DemultiplexerCore const& core() const { return *core_; }

private:
    Templates::SharedPtr<ElementaryStream> takeFirst(bool (StreamInfo::*isWanted)() const);

    Templates::SharedPtr<DemultiplexerCore> core_;
};

/// A program stream, of MPEG-2 or MPEG-1 (ISO/IEC 13818-1, 11172-1), or PES packets behind each other without
/// packs. AC-3 in the sub-streams that discs put into private stream 1 is taken out of their heads; what else
/// stands there is given as it is.
class MXFZELM_EXPORT ProgramStreamDemultiplexer : public Demultiplexer {
public:
    /// Finds the streams of which there is a packet in the first `searchLimit` bytes, and what a program
    /// stream map there says of them. Throws Exceptions::InvalidFormat when there are none.
    explicit ProgramStreamDemultiplexer(Templates::SharedPtr<DataIO::SliceSource> source,
                                        std::size_t searchLimit = defaultSearchLimit,
                                        std::uint64_t mostWaiting = defaultMostWaiting);
};

/// A transport stream (ISO/IEC 13818-1) of packets of 188 bytes, of 192 with a time before each, or of 204
/// with parity behind.
class MXFZELM_EXPORT TransportStreamDemultiplexer : public Demultiplexer {
public:
    /// Finds the program `program`, if 0 the first one that has a map, in the first `searchLimit` bytes.
    /// Throws Exceptions::InvalidFormat when the bytes are no transport stream, or have no such program.
    explicit TransportStreamDemultiplexer(Templates::SharedPtr<DataIO::SliceSource> source,
                                          std::uint16_t program = 0,
                                          std::size_t searchLimit = defaultSearchLimit,
                                          std::uint64_t mostWaiting = defaultMostWaiting);

    /// The number of the program.
    std::uint16_t program() const;

    /// The numbers of all programs that the stream says it has.
    std::vector<std::uint16_t> const& programs() const;
};

} // namespace MXF::Zelm::Essence::MPEG
