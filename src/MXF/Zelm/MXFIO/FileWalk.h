/// A walk over all packets of a file that may be cut off: where its partitions and their areas really stand,
/// whatever the packs say, and how far it is whole.
#pragma once

#include "MXF/Zelm/GenericContainer/Demultiplexer.h"
#include "MXF/Zelm/MXFIO/BlockWindow.h"
#include "MXF/Zelm/MXFIO/BodyStream.h"
#include "MXF/Zelm/MXFIO/PackFields.h"
#include "MXF/Zelm/MXFIO/UndoRecord.h"

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace MXF::Zelm::MXFIO {

/// One partition. An area ends somewhere in the fill behind its last packet: where the pack says, or else
/// where the next packet stands.
struct WalkedPartition {
    PackFields pack = {};
    std::uint64_t offset = 0;
    std::uint64_t leadEnd = 0; ///< behind the pack and the fill that follows it
    bool hasMetadata = false;
    std::uint64_t setsEnd = 0;    ///< behind the last set
    std::uint64_t behindSets = 0; ///< where the next packet stands that is no fill
    bool hasIndex = false;
    std::uint64_t segmentsEnd = 0;
    std::uint64_t behindSegments = 0;
    bool hasBody = false;
    std::uint64_t contentEnd = 0; ///< behind the last packet that is no fill
    std::uint64_t end = 0;

    std::uint64_t metadataEnd = 0; ///< where header metadata and its fill end
    std::uint64_t indexEnd = 0;    ///< where the index table and its fill end

    /// What the pack should say.
    std::uint64_t headerByteCount() const { return metadataEnd - leadEnd; }
    std::uint64_t indexByteCount() const { return indexEnd - metadataEnd; }

    /// The areas go on, by the pack, where the walk ended.
    bool isTorn = false;
};

class FileWalk {
public:
    /// Is told how many bytes of how many have been walked over; false ends the walk.
    using Progress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

    /// Walks from the header partition pack at `start` on. Throws Exceptions::SystemError, UpdateCancelled,
    /// and Exceptions::InvalidStructure when more of the file follows something that is no packet.
    FileWalk(DataIO::RandomAccessDataSource& source, std::uint64_t start, Progress const& progress);

    std::vector<WalkedPartition> const& partitions() const { return partitions_; }
    std::vector<WalkedPartition>& partitions() { return partitions_; }

    /// Where the random index pack stands; what follows it belongs to nobody.
    std::optional<ByteRange> const& randomIndex() const { return randomIndex_; }

    std::uint64_t start() const { return start_; }
    std::uint64_t fileSize() const { return size_; }

    /// Behind the last whole packet, fill that was cut off left out.
    std::uint64_t wholeEnd() const { return at_; }

    /// A packet at the end whose value is not whole, or the length field of which was never set.
    std::optional<PacketHead> const& cutPacket() const { return cut_; }

    /// Where the content package begins that is not as complete as the first of its container, if the file
    /// ends with it.
    std::optional<std::uint64_t> incompletePackage() const;

    /// The cut packet is the first of its container.
    bool isCutFirst() const {
        return stream_ != nullptr && cut_ &&
               (stream_->count == 0 || (stream_->count == 1 && stream_->start == cut_->fileOffset));
    }

    /// Where the last content package begins, when there are several in its partition's container.
    std::optional<std::uint64_t> lastPackage() const {
        return stream_ != nullptr && stream_->count > 1 ? std::optional(stream_->start) : std::nullopt;
    }

    /// Elements of the only content package, as far as it goes, and where it begins.
    struct OnlyPackage {
        std::uint64_t start = 0;
        std::uint64_t elements = 0; ///< system items left out
    };
    std::optional<OnlyPackage> onlyPackage() const {
        return stream_ != nullptr && stream_->count == 1
                   ? std::optional(OnlyPackage{stream_->start, stream_->elements})
                   : std::nullopt;
    }

    /// How much of the whole end belongs to content packages and everything before them.
    std::uint64_t packageEnd() const { return incompletePackage().value_or(at_); }

private:
    enum class Area { Lead, Metadata, Index, Body };

    struct Stream {
        GenericContainer::PackageBoundary first, current;
        std::uint64_t start = 0; // of the current one
        std::uint64_t elements = 0;
        std::uint64_t count = 0;
    };

    void walk(Progress const& progress);
    bool readHead(PacketHead& head);
    void take(PacketHead const& head, std::uint64_t end);
    void openPartition(PacketHead const& head, std::uint64_t end);
    void takeContent(PacketHead const& head);
    void endAreas(std::uint64_t at);
    void closePartition(std::uint64_t end);
    void requireNothingMore() const;
    bool isZeroClip() const;

    DataIO::RandomAccessDataSource& source_;
    mutable BlockWindow window_;
    std::uint64_t start_;
    std::uint64_t size_;
    std::uint64_t at_;
    std::vector<WalkedPartition> partitions_;
    Area area_ = Area::Lead;
    std::optional<ByteRange> randomIndex_;
    std::map<std::uint32_t, Stream> streams_;
    Stream* stream_ = nullptr; // of the partition
    std::optional<PacketHead> last_, cut_;
};

} // namespace MXF::Zelm::MXFIO
