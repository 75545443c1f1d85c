#include "MXF/Zelm/MXFIO/WrittenPartitions.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

namespace MXF::Zelm::MXFIO {

namespace {

/// Where things stand in a partition pack: the status byte in the key, the footer offset in the value.
constexpr std::uint64_t statusAt = 14, footerPartitionAt = 24;

} // namespace

void WrittenPartitions::add(std::uint64_t offset, std::uint32_t bodySID, bool isClosed) {
    places_.push_back({offset, bodySID, isClosed});
}

Packs::RandomIndexPack WrittenPartitions::randomIndex() const {
    Packs::RandomIndexPack pack;
    for (auto const& place : places_)
        pack.add(place.bodySID, place.offset);
    return pack;
}

FileUpdate WrittenPartitions::footerUpdate(std::uint64_t packFileOffset, unsigned char packBerLength) const {
    FileUpdate update{packFileOffset + KLV::Key::size() + packBerLength + footerPartitionAt,
                      std::vector<unsigned char>(sizeof(std::uint64_t))};
    ByteCoders::codeInteger(lastOffset(), update.bytes.data());
    return update;
}

FileUpdate WrittenPartitions::statusUpdate(std::uint64_t packFileOffset, Status status) {
    return {packFileOffset + statusAt, {static_cast<unsigned char>(status)}};
}

void WrittenPartitions::appendClosing(Templates::vector<FileUpdate>& updates, Status status,
                                      std::uint64_t runInLength, unsigned char packBerLength) const {
    for (std::size_t i = 1; i + 1 < places_.size(); ++i) {
        std::uint64_t const offset = runInLength + places_[i].offset;
        updates.push_back(footerUpdate(offset, packBerLength));
        if (places_[i].isClosed)
            updates.push_back(statusUpdate(offset, status));
    }
}

} // namespace MXF::Zelm::MXFIO
