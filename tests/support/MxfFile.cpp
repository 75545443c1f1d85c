#include "support/MxfFile.h"

#include "MXF/Zelm/Packs/RandomIndexPack.h"

namespace MXF::Zelm::Test {

MxfFile makeFile(std::vector<Part> const& parts, Layout const& layout) {
    std::vector<PartitionPack> packs;
    MxfFile file;
    std::uint64_t at = 0;
    for (auto const& part : parts) {
        PartitionPack pack(Packs::buildPartitionPackKey(part.kind, part.status), 1, at, part.bodyOffset,
                           "060E2B34.04010101.0D010201.01010900"_key,
                           std::make_unique<Types::Batch>(Types::Identifiers::UniversalLabel));
        pack.previousPartition(file.offsets.empty() ? 0 : file.offsets.back());
        pack.headerByteCount(part.metadata.size());
        pack.indexByteCount(part.index.size());
        pack.indexSID(part.indexSID);
        pack.bodySID(part.bodySID);
        file.offsets.push_back(at);
        at += pack.serializedSize() + part.fillAfterPack + part.metadata.size() + part.index.size() +
              part.body.size();
        packs.push_back(pack);
    }
    Packs::RandomIndexPack rip;
    file.bytes = layout.runIn;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (layout.footerOffset && parts.back().kind == PartitionPack::Footer)
            packs[i].footerPartition(file.offsets.back());
        if (parts[i].change)
            parts[i].change(packs[i]);
        rip.add(parts[i].bodySID, file.offsets[i]);
        file.bytes = file.bytes + written(packs[i]) +
                     (parts[i].fillAfterPack != 0 ? fill(parts[i].fillAfterPack) : Bytes()) +
                     parts[i].metadata + parts[i].index + parts[i].body;
    }
    if (layout.randomIndex)
        file.bytes = file.bytes + written(rip);
    return file;
}

Bytes smallMetadata(unsigned char last) {
    auto const metadata = emptyMetadata();
    load(*metadata, klv(prefaceKey, uidItem(last)));
    return written(*metadata, true, Metadata::SerializationOrder::AsLoaded);
}

Bytes essence(std::size_t size, unsigned char byte) {
    return klv("060E2B34.01020101.0D010301.15010500"_key, repeated(size, byte));
}

Bytes indexSegment(std::size_t size) { return klv(KLV::Key(KLV::INDEXTABLE_SEGMENT_KEY), repeated(size, 0)); }

} // namespace MXF::Zelm::Test
