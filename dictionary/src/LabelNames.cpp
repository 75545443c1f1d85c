/// Labels in words. Most are rows of the registers; operational patterns (SMPTE 377M, 378M and its kin, 390M)
/// and the container labels of D-10 (386M), MPEG (381M), AVC (381-3) and HEVC (381-5) carry parameters in
/// their bytes 12 to 15, which are put into words here. Byte numbers are 0-based.
#include "MXF/ZelmDictionary/Names.h"

#include "NameTable.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"

#include <algorithm>
#include <cstring>

namespace MXF::ZelmDictionary {

using Zelm::KLV::Key;

namespace {

struct ByteName {
    unsigned char value;
    const char* name;
};

template <std::size_t N>
ByteName const* findRow(ByteName const (&table)[N], unsigned char value) {
    auto const* const found = std::find_if(std::begin(table), std::end(table),
                                           [value](ByteName const& row) { return row.value == value; });
    return found != std::end(table) ? found : nullptr;
}

/// The name of a byte; `what` and its value in hexadecimal for one that the table does not hold.
template <std::size_t N>
std::string nameOf(ByteName const (&table)[N], unsigned char value, const char* what) {
    if (auto const* const row = findRow(table, value))
        return row->name;
    return std::string(what) + " 0x" + Zelm::ByteCoders::toHexadecimal(value);
}

/// Byte 13 of OP-Atom.
constexpr const char* atomKinds[] = {
    "one track, one source clip",
    "one track, several source clips",
    "several tracks, one source clip each",
    "several tracks, several source clips",
};

/// Byte 14 of D-10 containers.
constexpr ByteName d10Formats[] = {
    {0x01, "625-line 50i, 50 Mb/s"}, {0x02, "525-line 59.94i, 50 Mb/s"},
    {0x03, "625-line 50i, 40 Mb/s"}, {0x04, "525-line 59.94i, 40 Mb/s"},
    {0x05, "625-line 50i, 30 Mb/s"}, {0x06, "525-line 59.94i, 30 Mb/s"},
};

/// Byte 15 of D-10 containers.
constexpr ByteName d10Templates[] = {
    {0x01, "defined template"},
    {0x02, "extended template"},
    {0x7F, "picture only"},
};

/// Byte 13 of the containers that carry an MPEG stream identifier.
constexpr ByteName streamFamilies[] = {
    {0x04, "MPEG elementary stream"}, {0x07, "MPEG packetized elementary stream"},
    {0x08, "MPEG program stream"},    {0x09, "MPEG transport stream"},
    {0x0F, "AVC NAL unit stream"},    {0x10, "AVC byte stream"},
    {0x1F, "HEVC NAL unit stream"},   {0x20, "HEVC byte stream"},
};

/// Byte 14 of those: the stream identifier of ISO/IEC 13818-1 without its top bit.
constexpr ByteName streams[] = {
    {0x3C, "program stream map"},
    {0x3D, "private stream 1"},
    {0x3E, "padding stream"},
    {0x3F, "private stream 2"},
    {0x70, "ECM stream"},
    {0x71, "EMM stream"},
    {0x72, "DSM-CC stream"},
    {0x73, "ISO/IEC 13522 stream"},
    {0x74, "H.222.1 type A"},
    {0x75, "H.222.1 type B"},
    {0x76, "H.222.1 type C"},
    {0x77, "H.222.1 type D"},
    {0x78, "H.222.1 type E"},
    {0x79, "ancillary stream"},
    {0x7A, "SL-packetized stream"},
    {0x7B, "FlexMux stream"},
    {0x7F, "program stream directory"},
};

constexpr unsigned char firstAudioStream = 0x40, lastAudioStream = 0x5F;
constexpr unsigned char firstVideoStream = 0x60, lastVideoStream = 0x6F;

/// Byte 15 of those.
constexpr ByteName wrappings[] = {
    {0x01, "frame wrapped"},
    {0x02, "clip wrapped"},
    {0x03, "custom wrapped by stripes"},
    {0x04, "custom wrapped by PES packets"},
    {0x05, "custom wrapped with a fixed audio size"},
    {0x06, "custom wrapped by splices"},
    {0x07, "custom wrapped by closed GOPs"},
    {0x08, "custom wrapped as a slave"},
    {0x09, "field wrapped"},
    {0x7F, "custom wrapped without constraints"},
};

/// Bytes 8 to 11 of a label of any version.
bool isLabelOf(Key const& label, unsigned char const (&designator)[4]) {
    constexpr unsigned char prefix[] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01};
    return std::memcmp(label.rawBuffer(), prefix, sizeof prefix) == 0 &&
           std::memcmp(label.rawBuffer() + 8, designator, sizeof designator) == 0;
}

/// Bytes 12 to 15: items 01 to 03, packages 01 to 03 (a to c), qualifiers, processing at the joins; or 10 for
/// OP-Atom, kind, 00, 00.
std::string operationalPatternName(Key const& label) {
    constexpr unsigned char atom = 0x10;
    auto const items = label[12], packages = label[13], qualifiers = label[14];
    if (items == atom && packages < std::size(atomKinds))
        return std::string("OP-Atom, ") + atomKinds[packages];
    if (items < 1 || items > 3 || packages < 1 || packages > 3 || qualifiers == 0)
        return {};
    std::string name = "OP";
    name += static_cast<char>('0' + items);
    name += static_cast<char>('a' + packages - 1);
    name += (qualifiers & 0x02) != 0 ? ", external essence" : ", internal essence";
    name += (qualifiers & 0x04) != 0 ? ", not for streaming" : ", stream";
    name += (qualifiers & 0x08) != 0 ? ", multi-track" : ", uni-track";
    if (items > 1)
        name += (label[15] & 0x10) != 0 ? ", processing at joins" : ", no processing at joins";
    return name;
}

std::string streamName(unsigned char stream) {
    if (firstAudioStream <= stream && stream <= lastAudioStream)
        return "audio stream " + std::to_string(stream - firstAudioStream);
    if (firstVideoStream <= stream && stream <= lastVideoStream)
        return "video stream " + std::to_string(stream - firstVideoStream);
    return nameOf(streams, stream, "stream");
}

/// Bytes 12 to 15: 02 for the generic container, the mapping and its two parameters.
std::string containerName(Key const& label) {
    constexpr unsigned char genericContainer = 0x02, d10 = 0x01;
    auto const mapping = label[13], first = label[14], second = label[15];
    if (label[12] != genericContainer || first == 0)
        return {};
    if (mapping == d10)
        return "D-10, " + nameOf(d10Formats, first, "format") + ", " +
               nameOf(d10Templates, second, "template");
    auto const* const family = findRow(streamFamilies, mapping);
    if (family == nullptr)
        return {};
    return std::string(family->name) + ", " + nameOf(wrappings, second, "wrapping") + ", " +
           streamName(first);
}

} // namespace

std::string labelName(Zelm::Types::UniversalLabel const& universalLabel) {
    auto const label = universalLabel.key();
    std::string name;
    if (isLabelOf(label, {0x0D, 0x01, 0x02, 0x01}))
        name = operationalPatternName(label);
    else if (isLabelOf(label, {0x0D, 0x01, 0x03, 0x01}))
        name = containerName(label);
    return name.empty() ? std::string(findName(label)) : name;
}

} // namespace MXF::ZelmDictionary
