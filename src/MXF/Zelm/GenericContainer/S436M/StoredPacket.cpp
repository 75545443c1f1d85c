#include "MXF/Zelm/GenericContainer/S436M/StoredPacket.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace MXF::Zelm::GenericContainer::S436M {

namespace {

using Samples = Templates::vector<std::uint16_t>;

struct CodingRow {
    unsigned bits;
    bool vbi, anc;
    const char* text;
};

constexpr CodingRow codings[] = {
    {0, false, false, "unknown"},
    {1, true, false, "1-bit luma"},
    {1, true, false, "1-bit chroma"},
    {1, true, false, "1-bit luma and chroma"},
    {8, true, true, "8-bit luma"},
    {8, true, true, "8-bit chroma"},
    {8, true, true, "8-bit luma and chroma"},
    {10, true, true, "10-bit luma"},
    {10, true, true, "10-bit chroma"},
    {10, true, true, "10-bit luma and chroma"},
    {8, false, true, "8-bit luma, parity error"},
    {8, false, true, "8-bit chroma, parity error"},
    {8, false, true, "8-bit luma and chroma, parity error"},
};

CodingRow const& rowOf(SampleCoding coding) {
    auto const value = static_cast<std::size_t>(coding);
    return codings[value < std::size(codings) ? value : 0];
}

constexpr unsigned char hancFlag = 0x10;
constexpr unsigned samplesPerWord = 3;
constexpr std::uint32_t mostSamples = std::numeric_limits<std::uint16_t>::max();

Samples unpackBits(DataIO::Slice const& payload, std::size_t count) {
    Samples values(std::min(count, payload.size() * 8));
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = payload.data()[i / 8] >> (7 - i % 8) & 1u;
    return values;
}

std::uint32_t wordAt(DataIO::Slice const& payload, std::size_t index) {
    return ByteCoders::decodeInteger<std::uint32_t>(payload.data() + index * 4);
}

/// `lowBits` is 2 for samples at the upper end of their words, 0 for those at the lower.
Samples unpackWords(DataIO::Slice const& payload, std::size_t count, unsigned lowBits) {
    Samples values(std::min(count, payload.size() / 4 * samplesPerWord));
    for (std::size_t i = 0; i < values.size(); ++i) {
        auto const shift = lowBits + 10 * (samplesPerWord - 1 - static_cast<unsigned>(i % samplesPerWord));
        values[i] = static_cast<std::uint16_t>(wordAt(payload, i / samplesPerWord) >> shift & 0x3FF);
    }
    return values;
}

/// Two bits of a word are free: where only the upper ones are 0, its samples stand at the lower end.
bool standsAtLowerEnd(DataIO::Slice const& payload) {
    std::uint32_t all = 0;
    for (std::size_t i = 0; i < payload.size() / 4; ++i)
        all |= wordAt(payload, i);
    return (all & 0xC0000003) != 0 && (all & 0xC0000000) == 0;
}

std::vector<unsigned char> packBits(std::span<std::uint16_t const> values) {
    std::vector<unsigned char> bytes((values.size() + 7) / 8);
    for (std::size_t i = 0; i < values.size(); ++i)
        bytes[i / 8] = static_cast<unsigned char>(bytes[i / 8] | (values[i] & 1u) << (7 - i % 8));
    return bytes;
}

std::vector<unsigned char> packBytes(std::span<std::uint16_t const> values) {
    std::vector<unsigned char> bytes(values.size());
    std::transform(values.begin(), values.end(), bytes.begin(),
                   [](std::uint16_t value) { return static_cast<unsigned char>(value & 0xFF); });
    return bytes;
}

std::vector<unsigned char> packWords(std::span<std::uint16_t const> values) {
    std::vector<unsigned char> bytes((values.size() + samplesPerWord - 1) / samplesPerWord * 4);
    for (std::size_t word = 0; word < bytes.size() / 4; ++word) {
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < samplesPerWord; ++i) {
            std::size_t const at = word * samplesPerWord + i;
            bits = bits << 10 | (at < values.size() ? values[at] & 0x3FFu : 0u);
        }
        ByteCoders::codeInteger(bits << 2, bytes.data() + word * 4);
    }
    return bytes;
}

} // namespace

bool isKnown(WrappingType type, ElementKind kind) {
    auto const value = static_cast<unsigned char>(type);
    auto const place = value & ~unsigned{hancFlag};
    return place >= 1 && place <= 4 && (kind == ElementKind::ANC || value == place);
}

bool isKnown(SampleCoding coding, ElementKind kind) {
    return kind == ElementKind::VBI ? rowOf(coding).vbi : rowOf(coding).anc;
}

const char* textOf(WrappingType type) {
    switch (type) {
    case WrappingType::Frame:
        return "frame";
    case WrappingType::Field1:
        return "field 1";
    case WrappingType::Field2:
        return "field 2";
    case WrappingType::ProgressiveFrame:
        return "progressive frame";
    case WrappingType::HANCFrame:
        return "frame, HANC";
    case WrappingType::HANCField1:
        return "field 1, HANC";
    case WrappingType::HANCField2:
        return "field 2, HANC";
    case WrappingType::HANCProgressiveFrame:
        return "progressive frame, HANC";
    }
    return "unknown";
}

const char* textOf(SampleCoding coding) { return rowOf(coding).text; }

unsigned bitsOf(SampleCoding coding) { return rowOf(coding).bits; }

bool hasParityError(SampleCoding coding) { return rowOf(coding).anc && !rowOf(coding).vbi; }

unsigned StoredPacket::field() const {
    auto const place = static_cast<unsigned char>(wrapping) & ~unsigned{hancFlag};
    if (place == 2 || place == 3)
        return place - 1;
    return (lineNumber & field2Mark) != 0 ? 2 : 0;
}

Samples StoredPacket::samples() const {
    switch (bitsOf(coding)) {
    case 1:
        return unpackBits(payload, sampleCount);
    case 8:
        return Samples(payload.begin(), payload.begin() + std::min<std::size_t>(sampleCount, payload.size()));
    case 10:
        return standsAtLowerEnd(payload) ? samplesAtLowerEnd() : unpackWords(payload, sampleCount, 2);
    default:
        return {};
    }
}

Samples StoredPacket::samplesAtLowerEnd() const { return unpackWords(payload, sampleCount, 0); }

void StoredPacket::samples(std::span<std::uint16_t const> values) {
    unsigned const bits = bitsOf(coding);
    if (bits == 0)
        throw Exceptions::InvalidValue("There is no sample coding " +
                                       std::to_string(static_cast<unsigned>(coding)));
    if (values.size() > mostSamples)
        throw Exceptions::InvalidLength("A line or packet holds 65535 samples at most, not " +
                                        std::to_string(values.size()));
    payload = DataIO::Slice::adopt(bits == 1   ? packBits(values)
                                   : bits == 8 ? packBytes(values)
                                               : packWords(values));
    sampleCount = static_cast<std::uint16_t>(values.size());
}

} // namespace MXF::Zelm::GenericContainer::S436M
