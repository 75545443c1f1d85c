#include "MXF/Zelm/Essence/JPEG2000/CodestreamHeader.h"

#include "MXF/Zelm/DataIO/SliceReader.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

namespace MXF::Zelm::Essence::JPEG2000 {

namespace {

using DataIO::SliceReader;

constexpr std::uint16_t mostComponents = 16384;
constexpr std::uint64_t sizeBeforeComponents = 36, componentSize = 3;

[[noreturn]] void fail(std::uint64_t offset, std::string const& what) {
    throw Exceptions::at(offset, Exceptions::InvalidFormat("JPEG 2000: " + what));
}

Component readComponent(SliceReader& reader, std::uint64_t segment) {
    constexpr unsigned mostBits = 38;
    std::uint64_t const offset = segment + reader.absoluteOffset();
    auto const size = reader.readInteger<std::uint8_t>();
    Component component;
    component.depth = static_cast<std::uint8_t>((size & 0x7F) + 1);
    component.isSigned = (size & 0x80) != 0;
    component.horizontalSampling = reader.readInteger<std::uint8_t>();
    component.verticalSampling = reader.readInteger<std::uint8_t>();
    if (component.depth > mostBits || component.horizontalSampling == 0 || component.verticalSampling == 0)
        fail(offset, "SIZ: a component has " + std::to_string(component.depth) + " bits, sampled " +
                         std::to_string(component.horizontalSampling) + "x" +
                         std::to_string(component.verticalSampling));
    return component;
}

/// Tiles begin at or before the picture, and the first one reaches into it.
bool hasTiles(CodestreamHeader const& header) {
    auto const reachesIn = [](std::uint32_t tile, std::uint32_t tileStart, std::uint32_t start) {
        return tile != 0 && tileStart <= start && tile > start - tileStart;
    };
    return reachesIn(header.xTsiz, header.xTOsiz, header.xOsiz) &&
           reachesIn(header.yTsiz, header.yTOsiz, header.yOsiz);
}

/// `offset` is that of the marker's body.
void readSize(SliceReader& reader, std::uint64_t offset, CodestreamHeader& header) {
    if (reader.remaining() < sizeBeforeComponents)
        fail(offset, "SIZ: its body has " + std::to_string(reader.remaining()) + " bytes");
    header.rsiz = reader.readInteger<std::uint16_t>();
    for (auto* const field : {&header.xsiz, &header.ysiz, &header.xOsiz, &header.yOsiz, &header.xTsiz,
                              &header.yTsiz, &header.xTOsiz, &header.yTOsiz})
        *field = reader.readInteger<std::uint32_t>();
    auto const count = reader.readInteger<std::uint16_t>();
    if (header.xsiz <= header.xOsiz || header.ysiz <= header.yOsiz || !hasTiles(header))
        fail(offset, "SIZ: the picture or its tiles have no size");
    if (count == 0 || count > mostComponents || reader.remaining() != count * componentSize)
        fail(offset, "SIZ: " + std::to_string(count) + " components in " +
                         std::to_string(reader.remaining()) + " bytes");
    header.components.reserve(count);
    for (unsigned i = 0; i < count; ++i)
        header.components.push_back(readComponent(reader, offset));
}

/// All of a marker's body, which has less than 64 KiB.
CodestreamHeader::Bytes readBytes(SliceReader& reader) {
    CodestreamHeader::Bytes bytes(static_cast<std::size_t>(reader.remaining()));
    reader.readExactly(bytes.data(), bytes.size());
    return bytes;
}

std::vector<std::uint16_t> readWords(SliceReader& reader) {
    std::vector<std::uint16_t> words;
    while (reader.remaining() >= 2)
        words.push_back(reader.readInteger<std::uint16_t>());
    return words;
}

void readSegment(std::uint16_t marker, SliceReader reader, std::uint64_t offset, CodestreamHeader& header) {
    switch (marker) {
    case imageSize:
        readSize(reader, offset, header);
        break;
    case codingStyleDefault:
        header.codingStyle = readBytes(reader);
        break;
    case quantisationDefault:
        header.quantisation = readBytes(reader);
        break;
    case extendedCapabilities:
        header.capabilities = readBytes(reader);
        break;
    case profile:
        header.profile = readWords(reader);
        break;
    case correspondingProfile:
        header.correspondingProfile = readWords(reader);
        break;
    default:
        break;
    }
}

} // namespace

CodestreamHeader CodestreamHeader::read(DataIO::Chain const& bytes) {
    SliceReader reader(bytes);
    CodestreamHeader header;
    if (reader.readInteger<std::uint16_t>() != startOfCodestream)
        fail(0, "no start of a codestream");
    for (bool isFirst = true;; isFirst = false) {
        std::uint64_t const offset = reader.absoluteOffset();
        auto const marker = reader.readInteger<std::uint16_t>();
        if (isFirst != (marker == imageSize))
            fail(offset, "SIZ is not what the codestream begins with");
        if (marker == startOfTilePart)
            return header;
        auto const length = reader.readInteger<std::uint16_t>();
        if (marker < startOfCodestream || marker == endOfCodestream || length < 2)
            fail(offset, "there is no marker where one must be");
        readSegment(marker, SliceReader(reader.readChain(length - 2u)), offset + 4, header);
    }
}

} // namespace MXF::Zelm::Essence::JPEG2000
