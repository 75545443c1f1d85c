#include "SourceLayout.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/IndexTables/IndexTableSegment.h>
#include <MXF/Zelm/MXFIO/EssenceReader.h>
#include <MXF/Zelm/MXFIO/PartitionMap.h>

#include <algorithm>
#include <map>

namespace Zelm {

using namespace MXF::Zelm;
using Index = MXFIO::CreatorSettings::Index;
using MXFIO::Partition;

namespace {

constexpr std::uint64_t largestReserve = std::uint64_t{16} << 20;

/// Reads the packs of the partitions that it names. Else every packet is passed over to find the next one.
void readByRandomIndexPack(MXFIO::Reader2& reader) {
    try {
        if (!reader.rip() && !reader.loadRIP())
            return;
        for (auto const& [offset, bodySID] : reader.rip()->offsetIndexedMap())
            reader.partitionAtOffset(offset);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        // The partitions are found all the same.
    }
}

std::vector<Partition*> partitionsOf(Input& input) {
    readByRandomIndexPack(input.reader);
    std::vector<Partition*> found;
    for (auto* partition = input.reader.headerPartition(); partition != nullptr;
         partition = input.reader.nextPartition(partition))
        found.push_back(partition);
    return found;
}

std::uint64_t endOf(std::vector<Partition*> const& partitions, std::size_t index, std::uint64_t fileSize) {
    return index + 1 < partitions.size() ? partitions[index + 1]->partitionAbsoluteOffset() : fileSize;
}

bool hasEssence(Partition const& partition) {
    return partition.partitionPack().bodySID() != 0 && !partition.isGenericStream();
}

/// Where index tables stand, by the partitions that have some.
class IndexPlaces {
public:
    explicit IndexPlaces(std::vector<Partition*> const& partitions) {
        for (auto* const partition : partitions)
            if (partition->partitionPack().indexByteCount() != 0)
                take(*partition);
    }

    Index place(std::size_t containers) const {
        if (inEssence_ != 0)
            return inFooter_ && isRepeated_ ? Index::BodyAndFooter : Index::Body;
        if (alone_ != 0 && (!inFooter_ || alone_ >= containers))
            return Index::OwnPartitions;
        return inHeader_ && containers == 1 ? Index::Header : Index::Footer;
    }

private:
    void take(Partition& partition) {
        switch (partition.partitionPack().partitionKind()) {
        case Packs::PartitionPack::Header:
            inHeader_ = true;
            break;
        case Packs::PartitionPack::Footer:
            inFooter_ = true;
            isRepeated_ = beginsAtStart(partition);
            break;
        default:
            ++(hasEssence(partition) ? inEssence_ : alone_);
        }
    }

    static bool beginsAtStart(Partition& partition) {
        try {
            auto const packet = partition.nextIndexTableSegmentsKLV();
            return packet &&
                   IndexTables::IndexTableSegment(*packet, nullptr).indexStartPosition() == std::int64_t{0};
        } catch (Exceptions::BaseException const&) {
            return false;
        }
    }

    bool inHeader_ = false, inFooter_ = false, isRepeated_ = false;
    std::size_t inEssence_ = 0, alone_ = 0;
};

/// Edit units in the first body partition of the first container that has several; 0 when none has.
std::uint64_t packagesInPartition(Input& input, std::vector<MXFIO::EssenceContainer> const& containers) {
    for (auto const& container : containers) {
        auto const pieces = MXFIO::PartitionMap(input.reader, container.bodySID).extents();
        if (pieces.size() < 2)
            continue;
        MXFIO::EssenceReader essence(input.reader, container);
        if (essence.wrapping() != GenericContainer::Wrapping::Frame)
            continue;
        std::int64_t first = 0, last = essence.end().value_or(0);
        while (first < last) { // the first edit unit that does not begin in the piece
            std::int64_t const middle = first + (last - first) / 2;
            auto const offset = essence.seeker().find(middle);
            if (offset && *offset < pieces.front().length)
                first = middle + 1;
            else
                last = middle;
        }
        return static_cast<std::uint64_t>(first);
    }
    return 0;
}

std::vector<unsigned char> bytesAt(Input& input, std::uint64_t offset, std::uint64_t size) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
    input.source.seek(offset);
    bytes.resize(static_cast<std::size_t>(input.source.read(bytes.data(), bytes.size())));
    return bytes;
}

/// Byte 7 of the key of the fill behind the header's pack; 2 when there is none.
unsigned char fillVersionOf(Input& input, Partition const& header) {
    if (header.leadingFillLength() == 0)
        return 2;
    auto const key = bytesAt(input, header.metadataAbsoluteOffset(), KLV::Key::size());
    return key.size() > 7 && key[7] == 1 ? 1 : 2;
}

/// Bytes of header metadata that are no sets.
std::uint64_t reserveOf(Partition& header) {
    auto const metadata = header.metadata();
    std::uint64_t const used = metadata ? metadata->serializedSize(true) : 0;
    std::uint64_t const area = header.partitionPack().headerByteCount();
    return area > used ? std::min(area - used, largestReserve) : 0;
}

/// Ranges of a file, one behind the other.
class FileRanges : public DataIO::BoundedDataSource {
public:
    explicit FileRanges(std::string const& name) : file_(std::string_view(name)) {}

    void add(std::uint64_t offset, std::uint64_t length) {
        ranges_.emplace_back(offset, length);
        remaining_ += length;
    }

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return remaining_ == 0; }
    std::uint64_t remaining() const override { return remaining_; }
    void discard() override { skip(remaining_); }

    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override {
        std::uint64_t done = 0;
        while (done < size && remaining_ != 0) {
            auto& [offset, length] = ranges_[range_];
            file_.seek(offset);
            std::uint64_t const got = file_.read(buffer + done, std::min(size - done, length));
            if (got == 0 && length != 0)
                break;
            done += got;
            pass(got);
        }
        return done;
    }

    std::uint64_t skip(std::uint64_t size) override {
        std::uint64_t done = 0;
        while (done < size && remaining_ != 0) {
            std::uint64_t const step = std::min(size - done, ranges_[range_].second);
            pass(step);
            done += step;
        }
        return done;
    }

private:
    void pass(std::uint64_t bytes) {
        ranges_[range_].first += bytes;
        ranges_[range_].second -= bytes;
        remaining_ -= bytes;
        position_ += bytes;
        while (range_ + 1 < ranges_.size() && ranges_[range_].second == 0)
            ++range_;
    }

    DataIO::File::FileDataSource file_;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges_; // what is left of each
    std::size_t range_ = 0;
    std::uint64_t remaining_ = 0;
    std::uint64_t position_ = 0;
};

/// The packets of a partition's body, fill left out.
void addPackets(Partition& partition, FileRanges& ranges) {
    partition.rewind();
    while (auto const packet = partition.nextBodyKLV(searchLimit))
        if (!KLV::isFillItem(packet->key()))
            ranges.add(packet->keyAbsoluteOffset(), packet->klvLength());
}

} // namespace

MXFIO::CreatorSettings layoutOf(Input& input, std::vector<MXFIO::EssenceContainer> const& containers) {
    auto const partitions = partitionsOf(input);
    auto& header = *partitions.front();
    auto const& pack = header.partitionPack();
    MXFIO::CreatorSettings settings;
    settings.index = IndexPlaces(partitions).place(containers.size());
    settings.interleaving = MXFIO::CreatorSettings::Interleaving::ByTime;
    settings.partitions.packages = packagesInPartition(input, containers);
    settings.essenceInHeader =
        pack.bodySID() != 0 && header.bodyAbsoluteOffset() < endOf(partitions, 0, input.source.size());
    settings.kagSize = std::max<std::uint32_t>(pack.kagSize(), 1);
    settings.metadataReserve = reserveOf(header);
    settings.minorVersion = pack.minorVersion();
    settings.packBerLength = std::max<unsigned char>(pack.berLength(), 4);
    settings.fillVersion = fillVersionOf(input, header);
    settings.serializationOrder = Metadata::SerializationOrder::AsLoaded;
    settings.runIn = bytesAt(input, 0, header.partitionAbsoluteOffset());
    settings.metadataInFooter =
        partitions.size() > 1 && partitions.back()->partitionPack().headerByteCount() != 0;
    return settings;
}

bool hasFooter(Input& input) {
    return partitionsOf(input).back()->partitionPack().partitionKind() == Packs::PartitionPack::Footer;
}

std::vector<MXFIO::GenericStream> genericStreamsOf(Input& input) {
    std::vector<MXFIO::GenericStream> streams;
    std::map<std::uint32_t, std::shared_ptr<FileRanges>> ranges;
    bool hadEssence = false;
    for (auto* const partition : partitionsOf(input)) {
        hadEssence = hadEssence || hasEssence(*partition);
        std::uint32_t const sid = partition->partitionPack().bodySID();
        if (!partition->isGenericStream() || sid == 0)
            continue;
        auto& data = ranges[sid];
        if (!data) {
            data = std::make_shared<FileRanges>(input.name);
            streams.push_back({.sid = sid, .source = data, .isPackets = true, .beforeEssence = !hadEssence});
        }
        addPackets(*partition, *data);
    }
    return streams;
}

} // namespace Zelm
