/// Reads the packs. What was read is written, and that is read again and must be written alike.
#include "MXF/Zelm/KLV/Reader.h"
#include "MXF/Zelm/Packs/PartitionPack.h"
#include "MXF/Zelm/Packs/PrimerPack.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"
#include "support.h"

using namespace MXF::Zelm;

namespace {

template <class Pack>
Pack read(const unsigned char* data, std::uint64_t size) {
    DataIO::Memory::MemoryViewDataSource source(data, static_cast<std::size_t>(size));
    KLV::Reader reader(source);
    std::uint64_t skipped = 0;
    auto const packet = reader.nextKLV(skipped, 0);
    return Pack(*packet);
}

template <class Pack>
void check(const unsigned char* data, std::size_t size) {
    Fuzz::passingOverBadInput([&] {
        Pack const pack = read<Pack>(data, size);
        DataIO::Memory::MemoryDataSink once;
        DataIO::Memory::MemoryDataSink twice;
        pack.serialize(once);
        Fuzz::require(once.serializedSize() == pack.serializedSize());
        if (pack.berLength() < 4 && pack.serializedSize() > 100)
            return; // what was added may not fit in the length field that was read
        read<Pack>(once.rawBuffer(), once.serializedSize()).serialize(twice);
        Fuzz::require(Fuzz::sameBytes(once, twice));
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    check<Packs::PartitionPack>(data, size);
    check<Packs::PrimerPack>(data, size);
    check<Packs::RandomIndexPack>(data, size);
    return 0;
}
