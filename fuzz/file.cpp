/// Reads a whole file: partitions forwards and backwards, random index pack, footer search, header metadata,
/// index and body.
#include "MXF/Zelm/MXFIO/Partition.h"
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
    return 0;
}
