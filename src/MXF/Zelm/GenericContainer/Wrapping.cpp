#include "MXF/Zelm/GenericContainer/Wrapping.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::GenericContainer {

namespace {

/// A mapping, byte 13 of its label, and the byte of the label that tells the wrapping, 0 where all labels of
/// the mapping have the same. That byte, without the bits that say something else, holds one of the values.
struct Mapping {
    unsigned char number;
    int byte;
    unsigned char mask;
    unsigned char frame[6];
    unsigned char clip[3];
    Wrapping always = Wrapping::Unknown;
};

constexpr Mapping mappings[] = {
    {0x01, 0, 0, {}, {}, Wrapping::Frame},              // D-10 (SMPTE 386M)
    {0x02, 15, 0xFF, {1}, {2}},                         // DV-DIF (383M)
    {0x03, 0, 0, {}, {}, Wrapping::Frame},              // D-11 (387M)
    {0x04, 15, 0xFF, {1, 3, 4, 5, 6, 7}, {2}},          // MPEG elementary streams (381M)
    {0x05, 15, 0x03, {1, 3}, {2}},                      // uncompressed (384M)
    {0x06, 14, 0xFF, {1, 3, 8, 9, 0x0A, 0x0B}, {2, 4}}, // Wave and AES3 (382M)
    {0x07, 15, 0xFF, {1, 3, 4, 5, 6, 7}, {2}},          // MPEG PES (381M)
    {0x08, 0, 0, {}, {}, Wrapping::Clip},               // MPEG program streams
    {0x09, 0, 0, {}, {}, Wrapping::Clip},               // MPEG transport streams
    {0x0A, 14, 0xFF, {1, 3}, {2}},                      // A-law (388M)
    {0x0C, 14, 0xFF, {1, 3, 4, 5, 6}, {2}},             // JPEG 2000 (422M)
    {0x0D, 0, 0, {}, {}, Wrapping::Frame},              // VBI (436M)
    {0x0E, 0, 0, {}, {}, Wrapping::Frame},              // ANC (436M)
    {0x0F, 15, 0xFF, {1, 3, 4, 5, 6, 9}, {2}},          // AVC NAL units (381-3)
    {0x10, 15, 0xFF, {1, 3, 4, 5, 6, 9}, {2}},          // AVC byte stream
    {0x11, 14, 0xFF, {1}, {2}},                         // VC-3 (2019-4)
    {0x12, 14, 0xFF, {1}, {2}},                         // VC-1 (2037)
    {0x13, 0, 0, {}, {}, Wrapping::Clip},               // timed text (429-5)
    {0x14, 14, 0xFF, {1}, {2}},                         // TIFF-EP
    {0x15, 14, 0xFF, {1}, {2}},                         // VC-2 (2042-4)
    {0x16, 14, 0xFF, {1, 3}, {2}},                      // AAC (381-4)
    {0x17, 14, 0xFF, {1, 3}, {2}},
    {0x18, 14, 0xFF, {1, 3}, {2}},
    {0x19, 14, 0xFF, {1}, {2}},                // ACES (2065-5)
    {0x1B, 14, 0xFF, {1}, {2}},                // VC-5
    {0x1C, 0, 0, {}, {}, Wrapping::Frame},     // RDD 44
    {0x1D, 0, 0, {}, {}, Wrapping::Clip},      // immersive audio (2067-201)
    {0x1F, 15, 0xFF, {1, 3, 4, 5, 6, 9}, {2}}, // HEVC NAL units (381-5)
    {0x20, 15, 0xFF, {1, 3, 4, 5, 6, 9}, {2}}, // HEVC byte stream
    {0x21, 14, 0xFF, {1, 2}, {3}},             // JPEG XS (2124)
    {0x23, 14, 0xFF, {1}, {2}},                // FFV1 (RDD 48)
    {0x25, 14, 0xFF, {1}, {2}},                // MGA (2127-1)
};

/// Byte 12 of generic container labels that are mappings.
constexpr unsigned char genericContainerMapping = 0x02;

template <std::size_t N>
bool contains(unsigned char const (&values)[N], unsigned char value) {
    return value != 0 && std::find(std::begin(values), std::end(values), value) != std::end(values);
}

} // namespace

Wrapping wrappingOf(KLV::Key const& label) {
    constexpr unsigned char registry[5] = {0x0D, 0x01, 0x03, 0x01, genericContainerMapping};
    if (label[4] != 0x04 || !KLV::Detail::holds(label, registry, 8))
        return Wrapping::Unknown;
    auto const mapping = std::find_if(std::begin(mappings), std::end(mappings),
                                      [&](Mapping const& row) { return row.number == label[13]; });
    if (mapping == std::end(mappings) || mapping->byte == 0)
        return mapping == std::end(mappings) ? Wrapping::Unknown : mapping->always;
    auto const value = static_cast<unsigned char>(label[mapping->byte] & mapping->mask);
    if (contains(mapping->frame, value))
        return Wrapping::Frame;
    return contains(mapping->clip, value) ? Wrapping::Clip : Wrapping::Unknown;
}

} // namespace MXF::Zelm::GenericContainer
