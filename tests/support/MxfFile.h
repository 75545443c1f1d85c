/// Small MXF files in memory.
#pragma once

#include "MXF/Zelm/Packs/PartitionPack.h"

#include "support/SmallDictionary.h"

namespace MXF::Zelm::Test {

using Packs::PartitionPack;

/// One partition to be built. What the pack says follows from the rest unless `change` alters it.
struct Part {
    PartitionPack::PartitionKind kind = PartitionPack::Header;
    PartitionPack::PartitionStatus status = PartitionPack::ClosedComplete;
    Bytes metadata = {}; // primer and sets
    Bytes index = {};
    Bytes body = {};
    std::uint32_t indexSID = 0;
    std::uint32_t bodySID = 0;
    std::uint64_t bodyOffset = 0;
    std::size_t fillAfterPack = 0;
    std::function<void(PartitionPack&)> change = {};
};

struct MxfFile {
    Bytes bytes;
    std::vector<std::uint64_t> offsets; // of the partitions, without the run-in
};

struct Layout {
    Bytes runIn = {};
    bool footerOffset = true; // in the packs, when the last part is a footer
    bool randomIndex = true;
};

MxfFile makeFile(std::vector<Part> const& parts, Layout const& layout = {});

/// Header metadata of one Preface with the instance UID `uid(last)`.
Bytes smallMetadata(unsigned char last = 1);

/// An essence element of `size` value bytes.
Bytes essence(std::size_t size, unsigned char byte = 0xEE);

/// An index table segment without content.
Bytes indexSegment(std::size_t size = 8);

} // namespace MXF::Zelm::Test
