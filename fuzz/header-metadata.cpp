/// Reads a primer and the sets that follow with the standard dictionary, writes them in each order, and holds
/// the first two writings as loaded against each other.
#include "metadata.h"

using namespace MXF::Zelm;
using Metadata::SerializationOrder;

namespace {

void use(Metadata::PartitionMetadata& metadata) {
    Templates::vector<Metadata::MetadataSet*> parents;
    for (auto const& [key, set] : metadata) {
        for (auto const& element : *set)
            element->baseValue()->toString();
        Fuzz::require(set->clone(false, nullptr)->serializedSize(true) == set->serializedSize(true));
    }
    Fuzz::passingOverBadInput([&] {
        for (auto const* const package : metadata.packages())
            metadata.parentSets(package, parents);
    });
    for (auto const order : {SerializationOrder::ByKey, SerializationOrder::ForwardReferences})
        Fuzz::passingOverBadInput([&] {
            DataIO::Memory::MemoryDataSink sink;
            metadata.serialize(sink, true, order);
            Fuzz::require(sink.serializedSize() == metadata.serializedSize(true));
        });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    Fuzz::passingOverBadInput([&] {
        auto const metadata = Fuzz::loadMetadata(data, size);
        use(*metadata);
        metadata->partitionDictionary().primer().berLength(4);
        DataIO::Memory::MemoryDataSink once;
        DataIO::Memory::MemoryDataSink twice;
        metadata->serialize(once, true, SerializationOrder::AsLoaded);
        auto const again = Fuzz::loadMetadata(once.rawBuffer(), once.serializedSize());
        again->serialize(twice, true, SerializationOrder::AsLoaded);
        Fuzz::require(Fuzz::sameBytes(once, twice));
        Fuzz::require(again->size() == metadata->size() && again->darkSize() == metadata->darkSize());
    });
    return 0;
}
