/// BER lengths of SMPTE 336M. Short form: one byte below 0x80, the length itself. Long form: one byte
/// 0x80 | n, then n bytes with the length, most significant first.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <cstdint>

namespace MXF::Zelm::ByteCoders {

/// Most bytes that a length field can have here: the marker byte and eight bytes of length.
inline constexpr unsigned maximumBERSize = 9;

/// Bytes of a length field that begins with `first`, 1 to 127. Throws Exceptions::BaseException with
/// "Invalid BER size: 0x…" for 0x80 (indefinite length) and 0xFF.
MXFZELM_EXPORT unsigned char decodeBERSize(unsigned char first);

/// The length in the field of `size` bytes (1 to 9) at `bytes`.
MXFZELM_EXPORT std::uint64_t decodeBER(const unsigned char* bytes, unsigned char size);

/// Bytes of the shortest field that holds `value`, 1 to 9.
MXFZELM_EXPORT unsigned char calculateBERSize(std::uint64_t value);

/// Writes `value` as a field of `size` bytes (1 to 9) to `out`. With size 1 the low byte is written as it is,
/// with more, the marker byte and the low `size - 1` bytes of the value. Throws Exceptions::BaseException
/// with "Invalid BER size" for any other size.
MXFZELM_EXPORT void codeBER(std::uint64_t value, unsigned char size, unsigned char* out);

} // namespace MXF::Zelm::ByteCoders
