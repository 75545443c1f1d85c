#include "support/HeaderMetadata.h"

#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"
#include "MXF/Zelm/MXFIO/Partition.h"
#include "MXF/Zelm/MXFIO/Reader2.h"

namespace MXF::Zelm::Test {

using namespace Metadata;

namespace {

std::string nameOf(std::filesystem::path const& path) {
    auto const text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace

void forEachMetadata(DictionaryPtr const& dictionary, MetadataAction const& action) {
    for (auto const& path : sampleFiles()) {
        DataIO::File::FileDataSource source(nameOf(path));
        MXFIO::Reader2 reader(source, dictionary, 65536);
        Bytes const bytes = readFile(nameOf(path));
        std::size_t partitions = 0;
        for (auto* at = reader.headerPartition(); at != nullptr; at = reader.nextPartition(at), ++partitions)
            if (auto const metadata = at->metadata())
                action(*metadata, bytes,
                       nameOf(path.filename()) + " partition " + std::to_string(partitions));
        EXPECT_GT(partitions, 0u) << path;
    }
}

std::unique_ptr<PartitionMetadata> metadataOver(DictionaryPtr const& dictionary) {
    return std::make_unique<PartitionMetadata>(
        std::make_unique<PartitionDictionary>(dictionary, std::make_unique<Packs::PrimerPack>()));
}

std::unique_ptr<PartitionMetadata> loadAgain(Bytes const& bytes, DictionaryPtr const& dictionary) {
    DataIO::Memory::MemoryViewDataSource source(bytes.data(), bytes.size());
    KLV::Reader reader(source);
    std::uint64_t skipped = 0;
    auto packet = reader.nextKLV(skipped, 0);
    auto metadata = std::make_unique<PartitionMetadata>(
        std::make_unique<PartitionDictionary>(dictionary, std::make_unique<Packs::PrimerPack>(*packet)));
    while (!source.endOfStream()) {
        packet = reader.nextKLV(skipped, 0);
        metadata->loadOrKeepDark(*packet);
    }
    return metadata;
}

} // namespace MXF::Zelm::Test
