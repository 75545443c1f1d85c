/// Frames of DV with true heads and without content.
#pragma once

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

struct DVForm {
    bool is50 = true;
    bool isIEC = false;
    unsigned char signalType = 0;
    std::size_t channels = 1;
};

/// At 10:20:30:frames, 16:9, with 48 kHz of 16 bits.
inline Bytes dvFrame(DVForm const& form, unsigned char frames = 0) {
    std::size_t const sequences = form.channels * (form.is50 ? 12 : 10);
    Bytes bytes(sequences * 150 * 80);
    for (std::size_t block = 0; block < sequences * 150; ++block) {
        std::size_t const number = block % 150;
        unsigned const type = number < 3 ? (number != 0 ? 1 : 0) : number < 6 ? 2 : number % 16 == 6 ? 3 : 4;
        auto* const at = bytes.data() + block * 80;
        at[0] = static_cast<unsigned char>(type << 5 | 0x1F);
        at[1] = 0x07;
        at[2] = static_cast<unsigned char>(number < 3 ? 0 : number);
    }
    auto const put = [&](std::size_t block, std::size_t at, Bytes const& values) {
        std::copy(values.begin(), values.end(), bytes.begin() + static_cast<std::ptrdiff_t>(block * 80 + at));
    };
    put(0, 3,
        {static_cast<unsigned char>(form.is50 ? 0xBF : 0x3F),
         static_cast<unsigned char>(form.isIEC ? 0x78 : 0x79)});
    put(2, 6 + 8, {0x13, static_cast<unsigned char>(frames / 10 << 4 | frames % 10), 0x30, 0x20, 0x10});
    put(5, 48,
        {0x60, 0xFF, 0xFF, static_cast<unsigned char>((form.is50 ? 0x20 : 0) | form.signalType), 0xFF});
    put(5, 53, {0x61, 0x3F, 0xCA, 0xFC, 0xFF});
    put(22, 3, {0x50, 0x98, 0x30, 0x20, 0xC0});
    return bytes;
}

} // namespace MXF::Zelm::Test
