/// What was wrong where the streams of an input were read.
#pragma once

#include <MXF/Zelm/DataIO/SliceSource.h>
#include <MXF/Zelm/Essence/MPEG/Demultiplexer.h>

#include <memory>
#include <string>
#include <vector>

namespace Zelm {

/// Of one stream of a program or transport stream, or of all of another file. A stream may be read several
/// times, each from its start: what the longest reading found counts.
class StreamDamage {
public:
    void add(std::uint64_t offset, std::string message);
    void take(MXF::Zelm::Essence::MPEG::ElementaryStream const& stream);

    bool hasFaults() const { return faultCount_ != 0; }

    /// What was lost or passed over; empty for nothing.
    std::string faults() const;

    /// How the times of the stream leap; empty when they do not.
    std::string leaps() const;

private:
    std::uint64_t faultCount_ = 0, leapCount_ = 0;
    MXF::Zelm::Essence::MPEG::StreamFault first_;
    double leap_ = 0;
};

/// A stream, and where it tells what is wrong in it.
class WatchedStream : public MXF::Zelm::DataIO::SliceSource {
public:
    using Stream = MXF::Zelm::Templates::SharedPtr<MXF::Zelm::Essence::MPEG::ElementaryStream>;

    WatchedStream(Stream stream, std::shared_ptr<StreamDamage> damage)
        : stream_(std::move(stream)), damage_(std::move(damage)) {}

    std::uint64_t absoluteOffset() const override { return stream_->absoluteOffset(); }
    bool endOfStream() const override { return stream_->endOfStream(); }
    std::uint64_t read(std::uint64_t size, MXF::Zelm::DataIO::Chain& chain) override;
    std::uint64_t skip(std::uint64_t size) override;

private:
    Stream stream_;
    std::shared_ptr<StreamDamage> damage_;
};

/// Packets of SMPTE 302M, each in a packet of the stream. Where a part of one was lost, silence of the same
/// length stands for it, so that those behind it are found and keep their time.
class MendedPackets : public MXF::Zelm::Essence::PieceSource {
public:
    MendedPackets(WatchedStream::Stream stream, std::shared_ptr<StreamDamage> damage)
        : stream_(std::move(stream)), damage_(std::move(damage)) {}

private:
    bool produce(MXF::Zelm::DataIO::Chain& chain) override;
    bool nothingLeft() const override { return stream_->endOfStream(); }

    WatchedStream::Stream stream_;
    std::shared_ptr<StreamDamage> damage_;
    std::vector<unsigned char> silence_; // like the last whole packet
};

} // namespace Zelm
