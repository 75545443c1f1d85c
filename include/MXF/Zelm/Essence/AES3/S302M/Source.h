/// PCM out of a stream of SMPTE 302M packets.
#pragma once

#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/Essence/AES3/AES3Info.h"
#include "MXF/Zelm/Essence/AES3/ChannelStatusLoader.h"
#include "MXF/Zelm/Essence/AES3/S302M/Header.h"
#include "MXF/Zelm/Essence/PieceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <optional>
#include <vector>

namespace MXF::Zelm::Essence::AES3::S302M {

class SamplePacking;

/// Reads packets one after the other and gives the samples in them, little-endian, channels in turn, in 2
/// bytes for 16 bits and 3 for 24. All packets must be of the format of the first. A packet that is cut off
/// gives none of its samples.
///
/// Reading throws Exceptions::InvalidFormat for a header that makes no sense, InvalidStructure for a packet
/// that does not hold whole samples or is of another format than the first, InvalidLength for one that is cut
/// off, all with their offset in the stream of packets.
class MXFZELM_EXPORT Source : public PieceSource {
public:
    /// What to do with samples of 20 bits, for which PCM has no bytes of their own.
    enum class TwentyBits {
        Refuse,  ///< throw Exceptions::InvalidFormat
        In24Bits ///< give them as the upper 20 of 24 bits
    };

    /// Reads `source` from where it stands.
    explicit Source(Templates::SharedPtr<DataIO::SliceSource, Templates::LockedCounter> source,
                    TwentyBits twentyBits = TwentyBits::Refuse);
    ~Source() override;

    /// Reads the first header, unless that was done, and fills `info()`. False when the stream is empty.
    bool preload();

    /// Channels, bits and rate; zeros before the first header was read.
    AES3Info const& info() const { return info_; }

    /// Appends up to `count` samples of every channel and returns how many; fewer only at the end.
    std::uint64_t readSamples(std::uint64_t count, DataIO::Chain& chain);

    /// Bytes of one sample of every channel in what is read; 0 before the first header was read.
    std::size_t sampleSize() const;

    /// The last whole channel status block of a channel among the packets that were read, one a packet at
    /// most; null when there was none.
    ChannelStatus const* channelStatus(unsigned channel) const;

private:
    bool produce(DataIO::Chain& chain) override;
    bool nothingLeft() const override { return !next_ && source_->endOfStream(); }
    bool readHeader();
    void checkHeader(Header const& header) const;
    void takeFormat(Header const& header);
    void loadChannelStatus(const unsigned char* packed, std::size_t instants);

    Templates::SharedPtr<DataIO::SliceSource> source_;
    TwentyBits twentyBits_;
    DataIO::Memory::MemoryBlockFactory blocks_;
    AES3Info info_;
    std::unique_ptr<SamplePacking> packing_;
    std::optional<Header> next_; // of the packet that the source stands in
    std::uint64_t nextOffset_ = 0;
    std::vector<ChannelStatusLoader> loaders_;
    std::vector<std::optional<ChannelStatus>> statuses_;
};

} // namespace MXF::Zelm::Essence::AES3::S302M
