/// Header metadata for fuzz targets.
#pragma once

#include "MXF/Zelm/KLV/Reader.h"
#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "support.h"

namespace MXF::Zelm::Fuzz {

/// A primer and the sets that follow, as far as they can be read, with the standard dictionary.
inline std::unique_ptr<Metadata::PartitionMetadata> loadMetadata(const unsigned char* data,
                                                                 std::uint64_t size) {
    DataIO::Memory::MemoryViewDataSource source(data, static_cast<std::size_t>(size));
    KLV::Reader reader(source);
    std::uint64_t skipped = 0;
    auto packet = reader.nextKLV(skipped, 0);
    auto metadata =
        std::make_unique<Metadata::PartitionMetadata>(std::make_unique<Metadata::PartitionDictionary>(
            dictionary(), std::make_unique<Packs::PrimerPack>(*packet)));
    packet->value().discard();
    passingOverBadInput([&] {
        while (!source.endOfStream()) {
            packet = reader.nextKLV(skipped, 32);
            metadata->loadOrKeepDark(*packet);
        }
    });
    return metadata;
}

} // namespace MXF::Zelm::Fuzz
