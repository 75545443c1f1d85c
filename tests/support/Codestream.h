/// Small JPEG 2000 codestreams: true headers, coded data without content.
#pragma once

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

/// The main header of 16 x 8 pictures: three components of 10 bits, the second and third of half width when
/// `isSubsampled`.
inline Bytes codestreamHeader(bool isSubsampled = false) {
    return hex(R"(
        FF 4F                                                  # SOC
        FF 51  00 2F  00 00                                    # SIZ: no profile
        00 00 00 10  00 00 00 08  00 00 00 00  00 00 00 00     # 16 x 8 at 0, 0
        00 00 00 10  00 00 00 08  00 00 00 00  00 00 00 00     # one tile
        00 03  09 01 01 )") +
           hex(isSubsampled ? "09 02 01 09 02 01" : "09 01 01 09 01 01") + hex(R"(
        FF 52  00 0C  00 00 00 01 01 01 03 03 00 01            # COD: components mixed, 5-3
        FF 5C  00 07  40 40 48 48 50                           # QCD
        FF 64  00 06  00 01 41 42                              # a comment
    )");
}

/// Two tile-parts: one that tells its length, and one that leaves it to the end marker.
inline Bytes codestream(bool isSubsampled = false, Bytes const& data = hex("FF 4F FF 80 D9")) {
    auto const length = static_cast<unsigned char>(14 + data.size());
    return codestreamHeader(isSubsampled) + hex("FF 90 00 0A 00 00 00 00 00") + Bytes{length} +
           hex("00 02 FF 93") + data + hex("FF 90 00 0A 00 00 00 00 00 00 01 02 FF 93") + data + hex("FF D9");
}

/// A JP2 file with a codestream; the colour space is sYCC.
inline Bytes jp2File(Bytes const& codestream) {
    return hex(R"(
        00 00 00 0C 6A 50 20 20 0D 0A 87 0A                    # signature
        00 00 00 14 66 74 79 70 6A 70 32 20 00 00 00 00 6A 70 32 20
        00 00 00 2D 6A 70 32 68                                # header
          00 00 00 16 69 68 64 72 00 00 00 08 00 00 00 10 00 03 09 07 00 00
          00 00 00 0F 63 6F 6C 72 01 00 00 00 00 00 12         # colour: sYCC
        00 00 00 00 6A 70 32 63                                # codestream, up to the end
    )") + codestream;
}

} // namespace MXF::Zelm::Test
