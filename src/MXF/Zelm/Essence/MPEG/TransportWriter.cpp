#include "MXF/Zelm/Essence/MPEG/TransportWriter.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::Essence::MPEG {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t packetSize = 188, headSize = 4;
constexpr std::uint16_t mapPID = 0x100, essencePID = 0x101, programNumber = 1;

/// Of presentation before the first byte must have come: half a second; and how much the clock is behind.
constexpr std::uint64_t firstTime = 90000, delay = 45000;

void append(Bytes& bytes, std::uint64_t value, unsigned size) {
    while (size-- != 0)
        bytes.push_back(static_cast<unsigned char>(value >> 8 * size));
}

/// The CRC of sections.
std::uint32_t crc(Bytes const& section) {
    constexpr std::uint32_t polynomial = 0x04C11DB7, top = 0x80000000;
    std::uint32_t value = 0xFFFFFFFF;
    for (unsigned char const byte : section) {
        value ^= std::uint32_t{byte} << 24;
        for (int i = 0; i < 8; ++i)
            value = (value & top) != 0 ? value << 1 ^ polynomial : value << 1;
    }
    return value;
}

/// A table's head, with the length of what stands behind `content`'s place still to come.
Bytes section(std::uint8_t table, std::uint16_t id, Bytes const& content) {
    constexpr std::size_t behindLength = 5, crcSize = 4;
    Bytes bytes = {table};
    append(bytes, 0xB000 | (behindLength + content.size() + crcSize), 2);
    append(bytes, id, 2);
    append(bytes, 0xC10000, 3); // version 0, current; section 0 of 0
    bytes.insert(bytes.end(), content.begin(), content.end());
    append(bytes, crc(bytes), 4);
    return bytes;
}

/// An adaptation field with the program clock of 27 MHz in its base of 90 kHz.
Bytes clockField(std::uint64_t time) {
    Bytes bytes = {7, 0x10};
    append(bytes, (time & 0x1FFFFFFFFu) << 15 | 0x7E00, 6);
    return bytes;
}

/// The five bytes of a presentation time stamp.
std::uint64_t stampOf(std::uint64_t time) {
    return std::uint64_t{0x2100010001} | (time >> 30 & 0x7) << 33 | (time >> 15 & 0x7FFF) << 17 |
           (time & 0x7FFF) << 1;
}

} // namespace

TransportWriter::TransportWriter(DataIO::DataSink& sink, Options const& options)
    : sink_(sink), options_(options), tables_{0}, map_{mapPID}, essence_{essencePID} {}

TransportWriter::TransportWriter(DataIO::DataSink& sink) : TransportWriter(sink, Options()) {}

TransportWriter::~TransportWriter() = default;

Bytes TransportWriter::programMap() const {
    Bytes content;
    append(content, 0xE000 | essencePID, 2); // which has the clock
    append(content, 0xF000, 2);              // no descriptors of the program
    append(content, options_.streamType, 1);
    append(content, 0xE000 | essencePID, 2);
    append(content, options_.registration != 0 ? 0xF006u : 0xF000u, 2);
    if (options_.registration != 0) {
        append(content, 0x0504, 2); // registration descriptor of 4 bytes
        append(content, options_.registration, 4);
    }
    return section(2, programNumber, content);
}

void TransportWriter::write(DataIO::Slice const& payload, std::uint64_t time) {
    constexpr std::size_t most = 0xFFFF - 8;
    if (payload.size() > most)
        throw Exceptions::InvalidLength("A PES packet cannot hold " + std::to_string(payload.size()) +
                                        " bytes, at most " + std::to_string(most));
    Bytes programs;
    append(programs, programNumber, 2);
    append(programs, 0xE000 | mapPID, 2);
    writeSection(tables_, section(0, 1, programs));
    writeSection(map_, programMap());
    Bytes unit;
    append(unit, 0x100u | options_.streamID, 4);
    append(unit, payload.size() + 8, 2);
    append(unit, 0x848005, 3); // aligned; a presentation time stamp, 5 bytes
    append(unit, stampOf(firstTime + time), 5);
    unit.insert(unit.end(), payload.begin(), payload.end());
    writeUnit(essence_, unit, clockField(firstTime + time - delay));
}

void TransportWriter::writeSection(Stream& stream, Bytes section) {
    section.insert(section.begin(), 0); // it begins at once
    section.resize(packetSize - headSize, 0xFF);
    writeUnit(stream, section, {});
}

/// Cuts `unit` into transport packets; the last one is filled up by an adaptation field.
void TransportWriter::writeUnit(Stream& stream, Bytes const& unit, Bytes const& clock) {
    Bytes out;
    for (std::size_t at = 0; at < unit.size();) {
        Bytes field = at == 0 ? clock : Bytes();
        std::size_t const count = std::min(unit.size() - at, packetSize - headSize - field.size());
        std::size_t const stuffing = packetSize - headSize - field.size() - count;
        if (stuffing != 0 && field.empty())
            field = stuffing == 1 ? Bytes{0} : Bytes{0, 0};
        field.resize(packetSize - headSize - count, 0xFF);
        if (!field.empty())
            field[0] = static_cast<unsigned char>(field.size() - 1);
        append(out, 0x47, 1);
        append(out, stream.pid | (at == 0 ? 0x4000u : 0u), 2);
        append(out, (field.empty() ? 0x10u : 0x30u) | stream.counter, 1);
        stream.counter = (stream.counter + 1) & 0x0F;
        out.insert(out.end(), field.begin(), field.end());
        out.insert(out.end(), unit.begin() + static_cast<std::ptrdiff_t>(at),
                   unit.begin() + static_cast<std::ptrdiff_t>(at + count));
        at += count;
    }
    sink_.write(out.data(), out.size());
}

} // namespace MXF::Zelm::Essence::MPEG
