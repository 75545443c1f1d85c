/// What a frame element of SMPTE 436M holds: lines of the vertical blanking interval (VBI), or ancillary data
/// packets (ANC), both under the same head.
#pragma once

#include "MXF/Zelm/DataIO/Slice.h"
#include "MXF/Zelm/Templates/Containers.h"

#include <cstdint>
#include <span>

namespace MXF::Zelm::GenericContainer::S436M {

enum class ElementKind { VBI, ANC };

/// Where a packet is from. VBI has the first four alone.
enum class WrappingType : unsigned char {
    Frame = 0x01, ///< interlaced, or progressive in segmented frames; vertical blanking
    Field1 = 0x02,
    Field2 = 0x03,
    ProgressiveFrame = 0x04,
    HANCFrame = 0x11, ///< the same in horizontal blanking
    HANCField1 = 0x12,
    HANCField2 = 0x13,
    HANCProgressiveFrame = 0x14,
};

/// Which samples of the interface the payload holds, and how. Chroma is the stream of colour differences,
/// LumaAndChroma both, multiplexed. One bit is for VBI alone, WithParityError for ANC alone: it was detected
/// before the words were cut down to 8 bits.
enum class SampleCoding : unsigned char {
    Luma1 = 1,
    Chroma1 = 2,
    LumaAndChroma1 = 3,
    Luma8 = 4,
    Chroma8 = 5,
    LumaAndChroma8 = 6,
    Luma10 = 7,
    Chroma10 = 8,
    LumaAndChroma10 = 9,
    Luma8WithParityError = 10,
    Chroma8WithParityError = 11,
    LumaAndChroma8WithParityError = 12,
};

/// Whether the element of this kind may hold such packets.
MXFZELM_EXPORT bool isKnown(WrappingType type, ElementKind kind);
MXFZELM_EXPORT bool isKnown(SampleCoding coding, ElementKind kind);

/// "field 1", "frame, HANC"; "10-bit luma". "unknown" for values that are none.
MXFZELM_EXPORT const char* textOf(WrappingType type);
MXFZELM_EXPORT const char* textOf(SampleCoding coding);

/// 1, 8 or 10; 0 for a coding that is none.
MXFZELM_EXPORT unsigned bitsOf(SampleCoding coding);

MXFZELM_EXPORT bool hasParityError(SampleCoding coding);

/// A line of VBI or a packet of ANC as it is stored. A value; the payload is shared.
struct MXFZELM_EXPORT StoredPacket {
    /// As stored: of the frame, from 1, in both fields; 0 for none. Some writers count lines within their
    /// field, and add `field2Mark` in the second. Whether the standard has that is not certain; both are
    /// read.
    std::uint16_t lineNumber = 0;
    static constexpr std::uint16_t field2Mark = 0x4000;

    WrappingType wrapping = WrappingType::ProgressiveFrame;
    SampleCoding coding = SampleCoding::Luma8;

    /// Samples that count.
    std::uint16_t sampleCount = 0;

    /// The samples, and what fills them up to a multiple of four bytes.
    DataIO::Slice payload = {};

    /// The number without the mark.
    unsigned line() const { return lineNumber & ~unsigned{field2Mark}; }

    /// 1 or 2, by the wrapping or the mark; 0 for a packet of a frame.
    unsigned field() const;

    /// As many samples as `sampleCount` says, or as the payload holds; none of a coding that is unknown. The
    /// first sample of one bit stands in the top bit of its byte. Of 10 bits three stand in a big-endian word
    /// of 32: in bits 31-22, 21-12 and 11-2, or, where bits 1 and 0 are set in some word and 31 and 30 in
    /// none, in bits 29-20, 19-10 and 9-0. (The standard's text was not at hand for either place: the first
    /// one is written.)
    Templates::vector<std::uint16_t> samples() const;

    /// The same for a payload of 10 bits whose samples are known to stand in bits 29-20, 19-10 and 9-0.
    Templates::vector<std::uint16_t> samplesAtLowerEnd() const;

    /// Sets payload and sample count; each sample gives its low bits. Throws Exceptions::InvalidValue for a
    /// coding that is unknown, Exceptions::InvalidLength for more than 65535 samples.
    void samples(std::span<std::uint16_t const> values);
};

} // namespace MXF::Zelm::GenericContainer::S436M
