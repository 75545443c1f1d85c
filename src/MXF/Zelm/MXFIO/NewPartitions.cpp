#include "MXF/Zelm/MXFIO/NewPartitions.h"

#include "MXF/Zelm/MXFIO/WrittenBytes.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using Packs::PartitionPack;

namespace {

void append(Bytes& bytes, Bytes const& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

} // namespace

Bytes fillOf(std::uint64_t size) {
    if (size == 0)
        return {};
    Bytes fill = fillHeader(KLV::fillItemKey(), size);
    fill.resize(static_cast<std::size_t>(size));
    return fill;
}

NewPartitions::NewPartitions(KeptPartitions const& kept, std::vector<NewIndex> const& indices,
                             Bytes const& padding, PartitionFormat format,
                             PartitionPack::PartitionStatus status, Metadata::PartitionMetadata& metadata)
    : kept_(kept),
      indices_(indices),
      padding_(padding),
      format_(std::move(format)),
      status_(status),
      metadata_(metadata),
      offsets_(std::max<std::size_t>(indices.size(), 1)) {}

NewPartitions::Made NewPartitions::makeOne(std::size_t number) const {
    bool const isFooter = number + 1 == offsets_.size();
    CommonPartitionWriter writer(format_, isFooter ? PartitionPack::Footer : PartitionPack::Body, status_);
    if (isFooter)
        writer.metadata(metadata_, 0);
    if (number < indices_.size())
        writer.index(indices_[number].indexSID, indices_[number].segments);
    writer.place(offsets_[number], number == 0 ? kept_.relative(kept_.last().offset) : offsets_[number - 1]);
    writer.footerPartition(offsets_.back());
    Made made;
    for (DataIO::Chain chain; writer.next(chain);)
        for (auto const& slice : chain)
            made.bytes.insert(made.bytes.end(), slice.data(), slice.data() + slice.size());
    made.packSize = writer.partitionPack().serializedSize();
    made.leadSize = writer.leadLength();
    return made;
}

void NewPartitions::makeAll() {
    made_.clear();
    for (std::size_t i = 0; i < offsets_.size(); ++i)
        made_.push_back(makeOne(i));
}

std::uint64_t NewPartitions::sizeOfAll() const {
    std::uint64_t size = padding_.size() + kept_.randomIndex(offsets_).size();
    for (auto const& partition : made_)
        size += partition.bytes.size();
    return size;
}

/// Bytes of the first pack and the fill behind it.
std::uint64_t NewPartitions::leadFor(std::uint64_t least) const {
    auto const& first = made_.front();
    std::uint64_t const size = sizeOfAll();
    return least <= size ? first.leadSize
                         : areaSizeFor(first.packSize, first.leadSize - first.packSize + (least - size),
                                       first.leadSize, format_.kagSize);
}

void NewPartitions::place(std::uint64_t lead) {
    std::uint64_t at = kept_.relative(kept_.end()) + padding_.size();
    for (std::size_t i = 0; i < offsets_.size(); ++i) {
        offsets_[i] = at;
        at += made_[i].bytes.size() + (i == 0 ? lead - made_.front().leadSize : 0);
    }
}

/// Twice, since the packs say where the partitions stand, and their sizes where that is.
Bytes NewPartitions::make(std::uint64_t least) {
    makeAll();
    std::uint64_t const lead = leadFor(least);
    place(lead);
    makeAll();
    place(lead);
    Bytes all = padding_;
    for (auto const& partition : made_) {
        auto const at = [&](std::uint64_t offset) {
            return partition.bytes.begin() + static_cast<std::ptrdiff_t>(offset);
        };
        std::uint64_t const end = &partition == &made_.front() ? lead : partition.leadSize;
        all.insert(all.end(), at(0), at(partition.packSize));
        append(all, fillOf(end - partition.packSize));
        all.insert(all.end(), at(partition.leadSize), partition.bytes.end());
    }
    append(all, kept_.randomIndex(offsets_));
    return all;
}

} // namespace MXF::Zelm::MXFIO
