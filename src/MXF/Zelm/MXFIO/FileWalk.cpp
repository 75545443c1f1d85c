#include "MXF/Zelm/MXFIO/FileWalk.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/PacketParser.h"
#include "MXF/Zelm/MXFIO/Updater.h"
#include "MXF/Zelm/Packs/PrimerPack.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

#include <algorithm>
#include <array>
#include <limits>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;

namespace {

/// Packets between two calls of a progress function.
constexpr std::uint64_t packetsPerStep = 4096;

/// Bytes that are searched in one go.
constexpr std::uint64_t searchBlock = 1 << 20;

/// What the keys of all partition packs begin with.
constexpr std::array<unsigned char, 13> packPrefix = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01,
                                                      0x01, 0x0D, 0x01, 0x02, 0x01, 0x01};

std::uint64_t sizeOf(DataIO::RandomAccessDataSource& source) {
    return source.seek(std::numeric_limits<std::uint64_t>::max());
}

bool isPrimer(KLV::Key const& key) { return key == Packs::PrimerPack::key(); }

/// Where a partition pack begins, from `from` on.
std::optional<std::uint64_t> findPack(DataIO::RandomAccessDataSource& source, std::uint64_t from) {
    std::uint64_t const size = sizeOf(source);
    for (std::uint64_t at = from; at < size; at += searchBlock) {
        auto const block = readBytes(source, at, std::min(searchBlock + KLV::Key::size(), size - at));
        for (auto found = block.begin();; ++found) {
            found = std::search(found, block.end(), packPrefix.begin(), packPrefix.end());
            if (block.end() - found < static_cast<std::ptrdiff_t>(KLV::Key::size()))
                break;
            if (Packs::isPartitionPack(KLV::Key(&*found)))
                return at + static_cast<std::uint64_t>(found - block.begin());
        }
    }
    return std::nullopt;
}

} // namespace

FileWalk::FileWalk(DataIO::RandomAccessDataSource& source, std::uint64_t start, Progress const& progress)
    : source_(source), window_(source, nullptr), start_(start), size_(sizeOf(source)), at_(start) {
    walk(progress);
    if (partitions_.empty())
        throw Exceptions::at(start_, Exceptions::InvalidStructure("The file cannot be repaired: it ends amid "
                                                                  "the header partition pack"));
    if (randomIndex_)
        return;
    requireNothingMore();
    closePartition(at_);
}

void FileWalk::walk(Progress const& progress) {
    PacketHead head;
    for (std::uint64_t count = 1; !randomIndex_ && at_ < size_ && readHead(head); ++count) {
        std::uint64_t const end = at_ + head.headLength + head.length;
        take(head, end);
        last_ = head;
        at_ = end;
        if (count % packetsPerStep == 0 && progress && !progress(at_, size_))
            throw UpdateCancelled("The walk over the file was ended before it was done");
    }
}

/// False where no whole packet stands.
bool FileWalk::readHead(PacketHead& head) {
    head = {};
    head.fileOffset = at_;
    try {
        if (!parseHead(window_, size_ - at_, head))
            return false;
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        if (isZeroClip()) {
            cut_ = last_;
            at_ = last_->fileOffset;
        }
        return false;
    }
    if (head.length <= size_ - at_ - head.headLength)
        return true;
    cut_ = head;
    return false;
}

/// An element without bytes, followed by what is no packet: its length was to be set at the end.
bool FileWalk::isZeroClip() const {
    return last_ && last_->length == 0 && ElementKey::isContent(last_->key) && area_ == Area::Body;
}

void FileWalk::take(PacketHead const& head, std::uint64_t end) {
    if (Packs::isPartitionPack(head.key)) {
        closePartition(at_);
        openPartition(head, end);
        return;
    }
    if (partitions_.empty())
        return;
    auto& partition = partitions_.back();
    if (head.key == Packs::RandomIndexPack::key()) {
        closePartition(at_);
        randomIndex_ = ByteRange{at_, end - at_};
    } else if (KLV::isFillItem(head.key)) {
        if (area_ == Area::Lead)
            partition.leadEnd = end;
    } else if (isPrimer(head.key) && area_ == Area::Lead) {
        area_ = Area::Metadata;
        partition.hasMetadata = true;
        partition.setsEnd = end;
    } else if (KLV::isIndexTableKlvSegment(head.key) && area_ != Area::Body) {
        if (area_ == Area::Metadata)
            partition.behindSets = at_;
        area_ = Area::Index;
        partition.hasIndex = true;
        partition.segmentsEnd = end;
    } else if (area_ == Area::Metadata && !ElementKey::isContent(head.key)) {
        partition.setsEnd = end;
    } else {
        endAreas(at_);
        area_ = Area::Body;
        takeContent(head);
    }
    if (!KLV::isFillItem(head.key) && !randomIndex_)
        partition.contentEnd = end;
}

void FileWalk::openPartition(PacketHead const& head, std::uint64_t end) {
    std::uint64_t const fixed = head.headLength + PackFields::fixedSize;
    if (head.headLength + head.length < fixed)
        throw Exceptions::at(
            at_, Exceptions::InvalidLength("A partition pack of " + std::to_string(head.length) + " bytes"));
    WalkedPartition partition;
    partition.pack = PackFields(readBytes(source_, at_, fixed), head.headLength - KLV::Key::size());
    partition.offset = at_;
    partition.leadEnd = partition.contentEnd = end;
    area_ = Area::Lead;
    auto const sid = partition.pack.sid(PackFields::bodySID);
    stream_ = sid != 0 && !partition.pack.isGenericStream() ? &streams_[sid] : nullptr;
    partitions_.push_back(std::move(partition));
}

void FileWalk::takeContent(PacketHead const& head) {
    partitions_.back().hasBody = true;
    if (stream_ == nullptr || !ElementKey::isContent(head.key))
        return;
    ElementKey const key(head.key);
    if (stream_->current.startsNext(key)) {
        if (stream_->count == 1)
            stream_->first = stream_->current;
        stream_->current.clear();
    }
    if (stream_->current.empty()) {
        stream_->start = at_;
        stream_->elements = 0;
        ++stream_->count;
    }
    stream_->elements += key.isSystem() ? 0 : 1;
    stream_->current.add(key);
}

/// The areas before the body end at the packet at `at`.
void FileWalk::endAreas(std::uint64_t at) {
    auto& partition = partitions_.back();
    if (area_ == Area::Metadata)
        partition.behindSets = at;
    else if (area_ == Area::Index)
        partition.behindSegments = at;
}

/// Believes the byte counts of the pack where they can be true.
void FileWalk::closePartition(std::uint64_t end) {
    if (partitions_.empty())
        return;
    endAreas(end);
    auto& partition = partitions_.back();
    std::uint64_t const header = partition.pack.get(PackFields::headerByteCount);
    std::uint64_t const index = partition.pack.get(PackFields::indexByteCount);
    partition.end = end;
    auto const areaEnd = [](std::uint64_t from, std::uint64_t count, bool isThere, std::uint64_t least,
                            std::uint64_t most) {
        if (!isThere)
            return from;
        return count <= most - from && from + count >= least ? from + count : most;
    };
    partition.metadataEnd =
        areaEnd(partition.leadEnd, header, partition.hasMetadata, partition.setsEnd, partition.behindSets);
    partition.indexEnd = areaEnd(partition.metadataEnd, index, partition.hasIndex, partition.segmentsEnd,
                                 partition.behindSegments);
    std::uint64_t const there = end - partition.leadEnd;
    partition.isTorn = !partition.hasBody && (header > there || index > there - header);
}

/// What is no packet is the end of a file that was cut off, unless a partition follows it.
void FileWalk::requireNothingMore() const {
    if (at_ >= size_)
        return;
    bool const isWholeHead = cut_ && cut_->length != 0;
    auto const next = findPack(source_, at_ + (isWholeHead ? cut_->headLength : 1));
    if (next && !partitions_.empty())
        throw Exceptions::at(
            at_, Exceptions::InvalidStructure("The file is not cut off, but damaged: no whole packet begins "
                                              "here, and " +
                                              std::to_string(*next - at_) + " bytes on another partition"));
}

std::optional<std::uint64_t> FileWalk::incompletePackage() const {
    if (stream_ == nullptr || stream_->count < 2 || partitions_.back().pack.isFooter())
        return std::nullopt;
    auto const& stream = *stream_;
    return stream.current.isLike(stream.first) ? std::nullopt : std::optional(stream.start);
}

} // namespace MXF::Zelm::MXFIO
