#include "SmallFile.h"

#include "MXF/Zelm/Packs/PartitionPack.h"
#include "MXF/Zelm/Packs/PrimerPack.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

namespace MXF::Zelm::Test {

using namespace KLV::Literals;
using Packs::PartitionPack;

namespace {

constexpr auto essenceKey = "060E2B34 01020101 0D010301 15010500"_key;
constexpr auto setKey = "060E2B34 02530101 0D010101 01012F00"_key;
constexpr auto patternLabel = "060E2B34 04010101 0D010201 01010100"_key;
constexpr auto containerLabel = "060E2B34 04010101 0D010301 02046001"_key;

Bytes packet(KLV::Key const& key, std::size_t length) { return klv(key, repeated(length, 0x55)); }

PartitionPack pack(PartitionPack::PartitionKind kind, std::uint64_t here, std::uint64_t previous) {
    auto containers = std::make_unique<Types::Batch>(Types::Identifiers::UniversalLabel);
    containers->add(Types::UniversalLabel(containerLabel));
    PartitionPack made(Packs::buildPartitionPackKey(kind, PartitionPack::ClosedComplete), 1, here, 0,
                       Types::UniversalLabel(patternLabel), std::move(containers));
    made.previousPartition(previous);
    return made;
}

} // namespace

SmallFile::SmallFile() {
    Packs::PrimerPack const primer;
    Bytes const metadata = written(primer) + packet(setKey, 100);
    Bytes const index = packet(KLV::Key(KLV::INDEXTABLE_SEGMENT_KEY), 40);
    Bytes const content1 = packet(essenceKey, 300) + packet(essenceKey, 200) + packet(KLV::fillItemKey(), 30);
    Bytes const content2 = packet(essenceKey, 100);
    auto header = pack(PartitionPack::Header, 0, 0);
    std::size_t const packSize = written(header).size();
    body1 = packSize + metadata.size();
    essence1 = body1 + packSize + index.size();
    body2 = essence1 + content1.size();
    footer = body2 + packSize + content2.size();
    randomIndex = footer + packSize;
    packets = 3 + 5 + 2 + 1 + 1;

    auto const add = [this](PartitionPack made, std::uint32_t sid, Bytes const& content) {
        made.footerPartition(footer);
        made.bodySID(sid);
        bytes = bytes + written(made) + content;
    };
    Packs::RandomIndexPack rip;
    header.headerByteCount(metadata.size());
    add(header, 0, metadata);
    auto first = pack(PartitionPack::Body, body1, 0);
    first.indexSID(2);
    first.indexByteCount(index.size());
    add(first, 1, index + content1);
    auto second = pack(PartitionPack::Body, body2, body1);
    second.bodyOffset(content1.size());
    add(second, 1, content2);
    add(pack(PartitionPack::Footer, footer, body2), 0, {});
    rip.add(0, 0);
    rip.add(1, body1);
    rip.add(1, body2);
    rip.add(0, footer);
    bytes = bytes + written(rip);
}

} // namespace MXF::Zelm::Test
