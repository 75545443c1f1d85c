#include "SmallFile.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/Packs/PartitionPack.h"
#include "MXF/Zelm/Packs/PrimerPack.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

#include <filesystem>
#include <fstream>
#include <random>

namespace MXF::Zelm::Test {

using namespace KLV::Literals;
using Packs::PartitionPack;

namespace {

constexpr auto essenceKey = "060E2B34 01020101 0D010301 15010500"_key;
constexpr auto setKey = "060E2B34 02530101 0D010101 01012F00"_key;
constexpr auto patternLabel = "060E2B34 04010101 0D010201 01010100"_key;
constexpr auto containerLabel = "060E2B34 04010101 0D010301 02046001"_key;

template <class Object>
FileBytes written(Object const& object) {
    DataIO::Memory::MemoryDataSink sink;
    object.serialize(sink);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

FileBytes packet(KLV::Key const& key, std::size_t length) {
    FileBytes bytes(key.rawBuffer(), key.rawBuffer() + KLV::Key::size());
    bytes.insert(bytes.end(), {0x83, 0x00, static_cast<unsigned char>(length >> 8),
                               static_cast<unsigned char>(length & 0xFF)});
    bytes.resize(bytes.size() + length, 0x55);
    return bytes;
}

FileBytes operator+(FileBytes a, FileBytes const& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

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
    FileBytes const metadata = written(Packs::PrimerPack()) + packet(setKey, 100);
    FileBytes const index = packet(KLV::Key(KLV::INDEXTABLE_SEGMENT_KEY), 40);
    FileBytes const content1 =
        packet(essenceKey, 300) + packet(essenceKey, 200) + packet(KLV::fillItemKey(), 30);
    FileBytes const content2 = packet(essenceKey, 100);
    std::size_t const packSize = written(pack(PartitionPack::Header, 0, 0)).size();
    body1 = packSize + metadata.size();
    essence1 = body1 + packSize + index.size();
    body2 = essence1 + content1.size();
    footer = body2 + packSize + content2.size();
    randomIndex = footer + packSize;
    packets = 3 + 5 + 2 + 1 + 1;

    auto const add = [this](PartitionPack made, std::uint32_t sid, FileBytes const& content) {
        made.footerPartition(footer);
        made.bodySID(sid);
        bytes = bytes + written(made) + content;
    };
    Packs::RandomIndexPack rip;
    auto header = pack(PartitionPack::Header, 0, 0);
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

FileOnDisk::FileOnDisk(FileBytes const& bytes)
    : name_((std::filesystem::temp_directory_path() / ("zelm-test-" + std::to_string(std::random_device()()) +
                                                       std::to_string(std::random_device()()) + ".mxf"))
                .string()) {
    std::ofstream(name_, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

FileOnDisk::~FileOnDisk() {
    std::error_code ignored;
    std::filesystem::remove(name_, ignored);
}

} // namespace MXF::Zelm::Test
