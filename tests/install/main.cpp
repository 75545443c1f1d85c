// The smallest host: reads one KLV packet from memory through an installed copy of the library.
// The packet: a 16-byte key (the fill item of SMPTE 336M), a one-byte BER length 3, three bytes of value.

#include <MXF/Zelm/DataIO/Memory/MemoryDataSource.h>
#include <MXF/Zelm/KLV/Reader.h>

#include <cstdint>
#include <cstdio>
#include <exception>

namespace {

const std::uint8_t bytes[] = {
    0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02, 0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00, // key
    0x03,                                                                                           // length
    0xAA, 0xBB, 0xCC,                                                                               // value
};

} // namespace

int main() {
    try {
        MXF::Zelm::DataIO::Memory::MemoryDataSource source(bytes, sizeof bytes);
        MXF::Zelm::KLV::Reader reader(source);
        std::uint64_t skipped = 0;
        const auto packet = reader.nextKLV(skipped, 0);
        if (packet->length() != 3 || skipped != 0) {
            std::fprintf(stderr, "expected a packet of 3 bytes at the start of the source\n");
            return 1;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
