/// The bytes of one essence container, from whatever partitions they stand in, as one stream; and the KLV
/// packets in it.
///
///     stream    0 ............ 5000 ............ 9000 ...... 9700
///     file         partition 2      partition 4    partition 5
#pragma once

#include "MXF/Zelm/DataIO/RandomAccessible.h"
#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/MXFIO/Reader2.h"

#include <optional>

namespace MXF::Zelm::MXFIO {

class BlockWindow;

/// A packet of a container: key and length.
struct MXFZELM_EXPORT PacketHead {
    KLV::Key key = {};

    /// Where its key stands, in the stream and in the source.
    std::uint64_t streamOffset = 0;
    std::uint64_t fileOffset = 0;

    /// Bytes of its key and length, and of its value.
    std::uint32_t headLength = 0;
    std::uint64_t length = 0;

    std::uint64_t end() const { return streamOffset + headLength + length; }
};

/// Slices are of the blocks that the source was read into. Positions are those of the stream. The stream ends
/// where the file has no more of it; see `refresh` for one that is still being written.
class MXFZELM_EXPORT BodyStream : public DataIO::SliceSource, public virtual DataIO::RandomAccessible {
public:
    /// Reads the packs of all partitions. `reader` is not owned and must outlive the stream, which moves its
    /// source. Blocks come from `factory`, if null from a pool of the stream's own.
    BodyStream(Reader2& reader, std::uint32_t bodySID,
               Templates::SharedPtr<DataIO::BlockFactory> factory = nullptr);
    BodyStream(BodyStream const&) = delete;
    BodyStream& operator=(BodyStream const&) = delete;
    ~BodyStream() override;

    std::uint32_t bodySID() const { return bodySID_; }

    /// Bytes of the stream.
    std::uint64_t length() const;

    /// True when the file has all bytes from the first to the last.
    bool isContiguous() const;

    /// True when nothing follows the stream in the file: the file may be cut off there, or still be written.
    bool isOpenEnded() const { return openEnded_; }

    /// Looks for what was added to the file since. A source that keeps the size that the file had, such as
    /// `FileDataSource`, is refreshed by its owner before. True when the stream has become longer.
    bool refresh();

    /// Where a byte of the stream stands in the source, absent where the file does not have it.
    std::optional<std::uint64_t> fileOffset(std::uint64_t streamOffset) const;

    /// The packet at the current position, which does not move; absent at the end of the stream, and where an
    /// open-ended one has only a part of it. Throws Exceptions::InvalidKey where no key of SMPTE 336M stands,
    /// Exceptions::BaseException with "Invalid BER size: 0x…" for a length field that cannot be read and
    /// Exceptions::InvalidLength for a packet that runs beyond the end of its partition.
    std::optional<PacketHead> peekPacket() { return peek(false); }

    /// The same, and moves behind the packet.
    std::optional<PacketHead> nextPacket() { return passed(peek(false)); }

    /// The same, but at the end of an open-ended stream also a packet whose key and length are there and
    /// whose value is not whole.
    std::optional<PacketHead> nextCutPacket() { return passed(peek(true)); }

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return position_ >= length(); }
    std::uint64_t read(std::uint64_t size, DataIO::Chain& chain) override;
    std::uint64_t skip(std::uint64_t size) override;
    std::uint64_t seek(std::uint64_t position) override;

private:
    struct Piece {
        std::uint64_t streamOffset;
        std::uint64_t fileOffset;
        std::uint64_t length;
    };
    void map();
    Piece const* pieceAt(std::uint64_t streamOffset) const;
    bool enterPiece();
    std::optional<PacketHead> peek(bool cut);
    std::optional<PacketHead> passed(std::optional<PacketHead> head);

    Reader2& reader_;
    std::uint32_t bodySID_;
    Templates::vector<Piece> pieces_; // in the order of the stream; they do not overlap
    bool openEnded_ = false;
    Templates::auto_ptr<BlockWindow> window_;
    std::uint64_t position_ = 0;
    Piece piece_{0, 0, 0}; // that of the position, if any
};

} // namespace MXF::Zelm::MXFIO
