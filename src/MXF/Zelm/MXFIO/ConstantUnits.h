/// Essence whose edit units all have one size, without an index table that says so.
#pragma once

#include "MXF/Zelm/MXFIO/BodyStream.h"

namespace MXF::Zelm::MXFIO {

/// Number of whole edit units of `size` bytes in a stream whose first ones have that size, 0 when others have
/// another one. Looks at some places, spread over the stream, and at its end: each must begin an edit unit of
/// the elements that the first has. What lies between is taken on trust: who reads an edit unit finds out
/// when it does not begin where it should. Moves the stream.
std::uint64_t constantUnits(BodyStream& stream, std::uint64_t size);

} // namespace MXF::Zelm::MXFIO
