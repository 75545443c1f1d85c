/// Walks KLV packets with some bytes of search, and reads each value.
#include "MXF/Zelm/KLV/Reader.h"
#include "support.h"

using namespace MXF::Zelm;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Memory::MemoryViewDataSource source(data, size);
    KLV::Reader reader(source);
    Fuzz::passingOverBadInput([&] {
        while (!source.endOfStream()) {
            std::uint64_t const before = source.absoluteOffset();
            std::uint64_t skipped = 0;
            KLV::Key const key = reader.peekNextKey(skipped, 64);
            auto const packet = reader.nextKLV(skipped, 0);
            Fuzz::require(skipped == 0 && packet->key() == key && packet->klvLength() >= 17);
            Fuzz::require(source.absoluteOffset() == packet->valueAbsoluteOffset() &&
                          packet->keyAbsoluteOffset() >= before);
            if (key[15] % 2 == 0)
                Fuzz::require(packet->value().readRemaining().size() == packet->length());
            else
                packet->value().discard();
        }
    });
    return 0;
}
