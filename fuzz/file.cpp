/// Reads a whole file: partitions forwards and backwards, random index pack, footer search, header metadata,
/// index and body; gathers its index tables and maps its essence containers.
#include "MXF/Zelm/IndexTables/EditUnitLocator.h"
#include "MXF/Zelm/MXFIO/EstimatePartitionProvider.h"
#include "MXF/Zelm/MXFIO/IndexTableGatherer.h"
#include "MXF/Zelm/MXFIO/PartitionMap.h"
#include "MXF/Zelm/MXFIO/Reader2.h"
#include "support.h"

using namespace MXF::Zelm;

namespace {

constexpr std::uint64_t searchLimit = 256;

void use(MXFIO::Partition& partition) {
    Fuzz::passingOverBadInput([&] {
        if (auto const metadata = partition.metadata()) {
            DataIO::Memory::MemoryDataSink sink;
            metadata->serialize(sink, true, Metadata::SerializationOrder::AsLoaded);
        }
    });
    Fuzz::passingOverBadInput([&] {
        while (partition.nextIndexTableSegmentsKLV())
            continue;
    });
    Fuzz::passingOverBadInput([&] {
        partition.rewind();
        while (auto const packet = partition.nextBodyKLV(searchLimit))
            Fuzz::require(packet->klvLength() != 0);
        Fuzz::require(partition.partitionEnded());
        partition.gotoBodyRelativePosition(partition.partitionPack().bodyOffset() + 1);
        partition.nextBodyKLV(searchLimit);
    });
}

/// The bytes of the first edit units of each table, which must lie inside the file.
void useIndex(MXFIO::Reader2& reader, MXFIO::IndexTableGatherer::Search search, std::uint64_t size) {
    MXFIO::IndexTableGatherer gatherer(reader, search);
    gatherer.segment(1, 3);
    gatherer.readAll();
    for (auto const& [sids, cache] : gatherer.caches()) {
        std::uint32_t const bodySID = sids.second;
        MXFIO::PartitionMap const map(reader, bodySID);
        IndexTables::EditUnitLocator const locator(*cache->table(),
                                                   IndexTables::EssenceExtent{map.streamLength()});
        for (std::int64_t i = 0; i < 5; ++i)
            if (auto const unit = locator.locate(i))
                for (auto const& extent : map.extents(unit->streamOffset, unit->length.value_or(1)))
                    Fuzz::require(extent.fileOffset <= size && extent.length <= size - extent.fileOffset);
        Fuzz::passingOverBadInput([&] {
            MXFIO::EstimatePartitionProvider provider(reader, bodySID);
            provider.partition(map.streamLength() / 2);
        });
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Memory::MemoryViewDataSource source(data, size);
    MXFIO::Reader2 forwards(source, Fuzz::dictionary(), searchLimit);
    Fuzz::passingOverBadInput([&] {
        forwards.firstPartitionWithFinalMetadata();
        forwards.runIn();
        std::uint64_t last = 0;
        for (auto* at = forwards.headerPartition(); at != nullptr; at = forwards.nextPartition(at)) {
            Fuzz::require(at == forwards.headerPartition() || at->partitionAbsoluteOffset() > last);
            last = at->partitionAbsoluteOffset();
            use(*at);
        }
    });
    MXFIO::Reader2 backwards(source, Fuzz::dictionary(), searchLimit);
    Fuzz::passingOverBadInput([&] { backwards.loadRIP(); });
    Fuzz::passingOverBadInput([&] { backwards.footerPartition(); });
    Fuzz::passingOverBadInput([&] { backwards.backwardFirstPartitionWithFinalMetadata(); });
    Fuzz::passingOverBadInput([&] {
        for (auto* at = backwards.lastPartition(); at != nullptr; at = backwards.previousPartition(at))
            use(*at);
    });
    for (auto const search :
         {MXFIO::IndexTableGatherer::Search::Declared, MXFIO::IndexTableGatherer::Search::Everywhere}) {
        MXFIO::Reader2 reader(source, Fuzz::dictionary(), searchLimit);
        useIndex(reader, search, size);
    }
    return 0;
}
