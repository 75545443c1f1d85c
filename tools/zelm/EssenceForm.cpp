#include "EssenceForm.h"

#include "PacketUnits.h"
#include "WaveForm.h"

#include <MXF/Zelm/Essence/CodedSound/FrameHeader.h>
#include <MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h>
#include <MXF/Zelm/Metadata/Structural/DescriptorKeys.h>
#include <MXF/Zelm/Metadata/Structural/GenericPictureEssenceDescriptor.h>
#include <MXF/Zelm/Metadata/Structural/SoundDescriptors.h>

#include <algorithm>
#include <cctype>
#include <vector>

namespace Zelm {

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;
using GenericContainer::ElementKey;
using Shape = EssenceForm::Shape;
namespace Structural = Metadata::Structural;

namespace {

/// Many mappings share labels and element types: what tells them apart comes next.
constexpr const char* byCoding = "";

/// Uncompressed pictures: by the class of the descriptor.
constexpr const char* uncompressed = "raw";

/// Codings whose frames cannot be told apart in a stream, or which programs take frame by frame.
constexpr std::string_view framewise[] = {"j2c", "jxs", "exr", "tif", "icpf", "ffv1", "vc5"};

struct MappingRow {
    unsigned char mapping;
    const char* suffix;
};

// Byte 13 of the label of an essence container (SMPTE 379M and the documents of the mappings).
constexpr MappingRow mappingRows[] = {
    {0x01, "m2v"},                                      // D-10, SMPTE 386M
    {0x02, "dv"},                                       // SMPTE 383M
    {0x03, "d11"},                                      // SMPTE 387M
    {0x04, byCoding},                                   // MPEG elementary streams, SMPTE 381M
    {0x05, uncompressed},                               // SMPTE 384M
    {0x06, "wav"},                                      // SMPTE 382M
    {0x07, "pes"},                                      // MPEG, SMPTE 381M
    {0x08, "mpg"},        {0x09, "ts"},   {0x0A, "al"}, // A-law, SMPTE 388M
    {0x0C, "j2c"},                                      // SMPTE 422M
    {0x0D, "436m"},                                     // vertical blanking interval, SMPTE 436M
    {0x0E, "436m"},                                     // ancillary data
    {0x0F, "h264"},                                     // SMPTE 381-3
    {0x10, "h264"},       {0x11, "vc3"},                // SMPTE 2019-4
    {0x12, "vc1"},                                      // SMPTE 2037
    {0x13, "xml"},                                      // timed text, SMPTE 429-5
    {0x14, "tif"},                                      // TIFF/EP
    {0x15, "vc2"},                                      // SMPTE 2042-4
    {0x16, "aac"},                                      // SMPTE 381-4: ADIF
    {0x17, "aac"},                                      // ADTS
    {0x18, "latm"},                                     // LATM
    {0x19, "exr"},                                      // ACES, SMPTE 2065-5
    {0x1B, "vc5"},        {0x1C, "icpf"},               // SMPTE RDD 44
    {0x1D, "iab"},                                      // SMPTE 2067-201
    {0x1F, "h265"},                                     // SMPTE 381-5
    {0x20, "h265"},       {0x21, "jxs"},                // SMPTE 2124
    {0x23, "ffv1"},                                     // SMPTE RDD 48
    {0x25, "mga"},                                      // SMPTE 2127-1
};

struct CodingRow {
    unsigned char family;      // byte 12
    unsigned char first, last; // byte 13
    const char* suffix;
};

// PictureEssenceCoding: labels 04 01 02 02 of compressed pictures.
constexpr CodingRow codingRows[] = {
    {0x01, 0x01, 0x0F, "m2v"},  {0x01, 0x10, 0x1F, "m1v"},  {0x01, 0x20, 0x2F, "m4v"},
    {0x01, 0x31, 0x3F, "h264"}, {0x01, 0x41, 0x4F, "h265"}, {0x02, 0x00, 0xFF, "dv"},
    {0x03, 0x01, 0x01, "j2c"},  {0x03, 0x03, 0x03, "vc2"},  {0x03, 0x04, 0x04, "exr"},
    {0x03, 0x06, 0x06, "icpf"}, {0x03, 0x08, 0x08, "jxs"},  {0x03, 0x09, 0x09, "ffv1"},
    {0x71, 0x00, 0xFF, "vc3"},  {0x72, 0x00, 0xFF, "vc1"},
};

struct ElementRow {
    unsigned char item;
    unsigned char first, last; // element types
    const char* suffix;
};

constexpr ElementRow elementRows[] = {
    {0x05, 0x01, 0x01, "m2v"},        {0x06, 0x10, 0x10, "wav"},    {0x15, 0x01, 0x01, "d11"},
    {0x15, 0x02, 0x04, uncompressed}, {0x15, 0x05, 0x07, byCoding}, {0x15, 0x08, 0x09, "j2c"},
    {0x15, 0x0A, 0x0B, "vc1"},        {0x15, 0x0C, 0x0D, "vc3"},    {0x15, 0x0E, 0x0F, "tif"},
    {0x15, 0x10, 0x11, "vc2"},        {0x15, 0x12, 0x13, "exr"},    {0x15, 0x14, 0x16, "vc5"},
    {0x15, 0x17, 0x17, "icpf"},       {0x15, 0x1A, 0x1B, "jxs"},    {0x15, 0x1D, 0x1E, "ffv1"},
    {0x16, 0x01, 0x04, "wav"},        {0x16, 0x05, 0x07, byCoding}, {0x16, 0x08, 0x0A, "al"},
    {0x16, 0x0B, 0x0C, "wav"},        {0x16, 0x0D, 0x0D, "iab"},    {0x16, 0x0E, 0x0F, "mga"},
    {0x17, 0x01, 0x02, "436m"},       {0x17, 0x0B, 0x0B, "xml"},    {0x18, 0x01, 0x02, "dv"},
};

struct ContentRow {
    std::size_t offset;
    std::string_view bytes;
    const char* suffix;
};

using namespace std::string_view_literals;

constexpr ContentRow contentRows[] = {
    {0, "\0\0\1\xB3"sv, "m2v"},    {0, "\0\0\1\xBA"sv, "mpg"},       {0, "\0\0\1\x0F"sv, "vc1"},
    {0, "\0\0\2\x80"sv, "vc3"},    {0, "\0\0\1\x09"sv, "h264"}, // access unit delimiters
    {0, "\0\0\0\1\x09"sv, "h264"}, {0, "\0\0\0\1\x67"sv, "h264"},    {0, "\0\0\1\x67"sv, "h264"},
    {0, "\0\0\0\1\x46"sv, "h265"}, {0, "\0\0\0\1\x40"sv, "h265"},    {0, "\xFF\x4F\xFF\x51"sv, "j2c"},
    {0, "\xFF\x10"sv, "jxs"},      {0, "\x76\x2F\x31\x01"sv, "exr"}, {4, "icpf"sv, "icpf"},
    {0, "BBCD"sv, "vc2"},          {0, "\x1F\x07\0"sv, "dv"},
};

// By the numbers of Essence::CodedSound::Coding.
constexpr const char* codedSounds[] = {"mp1", "mp2", "mp3", "mp1", "mp2", "mp3", "ac3", "aac", "aac"};

struct SoundRow {
    unsigned char bytes[3]; // 12 to 14
    const char* suffix;
};

// SoundEssenceCompression: labels 04 02 02 02 of compressed sound.
constexpr SoundRow soundRows[] = {
    {{0x03, 0x02, 0x01}, "ac3"}, {{0x03, 0x02, 0x04}, "mp1"}, {{0x03, 0x02, 0x05}, "mp2"},
    {{0x03, 0x03, 0x01}, "aac"}, {{0x04, 0x01, 0x01}, "mp1"}, {{0x04, 0x01, 0x02}, "mp2"},
    {{0x04, 0x01, 0x03}, "mp3"}, {{0x04, 0x02, 0x01}, "mp1"}, {{0x04, 0x02, 0x02}, "mp2"},
    {{0x04, 0x02, 0x03}, "mp3"},
};

constexpr ContentRow documentRows[] = {
    {0, "<"sv, "xml"},
    {0, "\xEF\xBB\xBF<"sv, "xml"},
    {0, "<\0"sv, "xml"},
    {0, "\xFF\xFE<"sv, "xml"},
    {0, "\xFE\xFF\0<"sv, "xml"},
    {0, "\x89PNG"sv, "png"},
    {0, "\xFF\xD8\xFF"sv, "jpg"},
    {0, "\0\1\0\0"sv, "ttf"},
    {0, "OTTO"sv, "otf"},
    {0, "%PDF"sv, "pdf"},
    {0, "{"sv, "json"},
    {0, "II*\0"sv, "tif"},
    {0, "MM\0*"sv, "tif"},
};

struct MimeRow {
    std::string_view type;
    const char* suffix;
};

constexpr MimeRow mimeRows[] = {
    {"application/json", "json"},
    {"application/pdf", "pdf"},
    {"application/ttml+xml", "xml"},
    {"application/vnd.ms-opentype", "otf"},
    {"application/x-font-opentype", "otf"},
    {"application/x-font-truetype", "ttf"},
    {"application/x-font-ttf", "ttf"},
    {"application/xml", "xml"},
    {"font/otf", "otf"},
    {"font/ttf", "ttf"},
    {"font/woff", "woff"},
    {"font/woff2", "woff2"},
    {"image/gif", "gif"},
    {"image/jpeg", "jpg"},
    {"image/png", "png"},
    {"image/svg+xml", "svg"},
    {"image/tiff", "tif"},
    {"text/html", "html"},
    {"text/plain", "txt"},
    {"text/vtt", "vtt"},
    {"text/xml", "xml"},
};

std::string firstBytes(DataIO::Chain const& data) {
    unsigned char bytes[64];
    auto const count = static_cast<std::size_t>(data.copyTo(bytes, sizeof bytes));
    return {reinterpret_cast<const char*>(bytes), count};
}

template <std::size_t count>
const char* byContent(ContentRow const (&rows)[count], DataIO::Chain const& data) {
    std::string const first = firstBytes(data);
    for (auto const& row : rows)
        if (first.size() > row.offset && first.compare(row.offset, row.bytes.size(), row.bytes) == 0)
            return row.suffix;
    return nullptr;
}

/// True for labels of generic container mappings.
bool isMappingLabel(KLV::Key const& label) {
    constexpr KLV::Key mappings = "060E2B34.04010101.0D010301.02000000"_key;
    constexpr std::size_t version = 7, common = 13;
    return std::equal(mappings.rawBuffer(), mappings.rawBuffer() + version, label.rawBuffer()) &&
           std::equal(mappings.rawBuffer() + version + 1, mappings.rawBuffer() + common,
                      label.rawBuffer() + version + 1);
}

const char* byMapping(Structural::FileDescriptor const& descriptor, ElementKey element) {
    constexpr unsigned char lastOfPicturesAlone = 0x03;
    auto const* const label = descriptor.essenceContainer();
    if (label == nullptr || !isMappingLabel(label->key()))
        return nullptr;
    unsigned char const mapping = label->key()[13];
    if (mapping <= lastOfPicturesAlone && element.itemType() == ElementKey::Sound)
        return nullptr;
    auto const found = std::find_if(std::begin(mappingRows), std::end(mappingRows),
                                    [&](MappingRow const& row) { return row.mapping == mapping; });
    return found != std::end(mappingRows) ? found->suffix : nullptr;
}

const char* byPictureCoding(Structural::FileDescriptor const& descriptor) {
    constexpr unsigned char compressed[] = {0x04, 0x01, 0x02, 0x02};
    auto const* const picture = dynamic_cast<Structural::GenericPictureEssenceDescriptor const*>(&descriptor);
    auto const* const label = picture != nullptr ? picture->pictureEssenceCoding() : nullptr;
    if (label == nullptr)
        return nullptr;
    KLV::Key const& key = label->key();
    if (!std::equal(std::begin(compressed), std::end(compressed), key.rawBuffer() + 8))
        return nullptr;
    for (auto const& row : codingRows)
        if (key[12] == row.family && key[13] >= row.first && key[13] <= row.last)
            return row.suffix;
    return nullptr;
}

/// The label of a compressed sound; null for any other.
Types::UniversalLabel const* compressionOf(Structural::FileDescriptor const* descriptor) {
    constexpr unsigned char compressed[] = {0x04, 0x02, 0x02, 0x02};
    auto const* const sound = dynamic_cast<Structural::GenericSoundEssenceDescriptor const*>(descriptor);
    auto const* const label = sound != nullptr ? sound->soundEssenceCompression() : nullptr;
    bool const isCompressed =
        label != nullptr && std::equal(std::begin(compressed), std::end(compressed), label->rawBuffer() + 8);
    return isCompressed ? label : nullptr;
}

/// Sound in frames that tell what they are, else what its label says.
const char* byCodedSound(Structural::FileDescriptor const* descriptor, DataIO::Chain const& data) {
    std::string const first = firstBytes(data);
    auto const* const bytes = reinterpret_cast<const unsigned char*>(first.data());
    Essence::CodedSound::FrameHeader header;
    if (auto const* const format = Essence::CodedSound::formatAt(bytes, first.size()))
        if (format->read(bytes, header))
            return codedSounds[static_cast<std::size_t>(header.coding)];
    auto const* const label = compressionOf(descriptor);
    for (auto const& row : soundRows)
        if (label != nullptr &&
            std::equal(std::begin(row.bytes), std::end(row.bytes), label->rawBuffer() + 12))
            return row.suffix;
    return nullptr;
}

const char* byElement(ElementKey element) {
    for (auto const& row : elementRows)
        if (element.itemType() == row.item && element.elementType() >= row.first &&
            element.elementType() <= row.last)
            return row.suffix;
    return nullptr;
}

/// MPEG elementary streams of unknown coding.
const char* mpegByItem(char kind) { return kind == 'v' ? "m2v" : kind == 'a' ? "mpa" : "bin"; }

/// The suffix by what comes first of labels, element type and first bytes.
std::string suffixFor(MXFIO::EssenceTrack const* track, ElementKey element, DataIO::Chain const& data) {
    auto const isTold = [](const char* suffix) { return suffix != nullptr && *suffix != '\0'; };
    auto const* const descriptor = track != nullptr ? track->descriptor : nullptr;
    // All descriptors of D-10 carry its label; DV-DIF may have sounds beside it.
    bool const isCP = element.itemType() <= ElementKey::CPData;
    const char* const mapping = descriptor != nullptr && !isCP ? byMapping(*descriptor, element) : nullptr;
    const char* const coding = descriptor != nullptr && !isCP ? byPictureCoding(*descriptor) : nullptr;
    const char* const type = byElement(element);
    if (isTold(mapping))
        return mapping;
    if (coding != nullptr)
        return coding;
    if (isTold(type))
        return type;
    if (const char* const content = byContent(contentRows, data))
        return content;
    if (const char* const sound = kindOf(track, element) != 'v' ? byCodedSound(descriptor, data) : nullptr)
        return sound;
    if (mapping != nullptr || type != nullptr)
        return mpegByItem(kindOf(track, element));
    const char* const document = byContent(documentRows, data);
    return document != nullptr ? document : "bin";
}

/// A sound whose samples cannot be described stays as it is.
EssenceForm soundForm(MXFIO::EssenceTrack const* track, ElementKey element) {
    EssenceForm form{Shape::Samples, "wav", {}};
    bool const isEightChannels = element.itemType() == ElementKey::CPSound;
    auto const wave = track != nullptr ? waveFormat(*track, isEightChannels) : std::nullopt;
    if (!wave)
        return {Shape::Stream, isEightChannels ? "aes3" : "pcm", {}};
    form.wave = *wave;
    if (isEightChannels)
        form.shape = Shape::EightChannels;
    else if (hasOtherAuxiliaryBits(*track) && wave->sampleBytes == 3)
        form.shape = Shape::AES3Samples;
    return form;
}

/// SMPTE 302M in the elements of private stream 1, in PES packets or without them (SMPTE 381M). Other sounds,
/// which have a label, may be there as well: the first packet tells.
std::optional<Essence::Wave::WaveFormat> packetsIn(MXFIO::EssenceTrack const& track,
                                                   DataIO::Chain const& data) {
    constexpr unsigned char elementaryStream = 0x04, inPES = 0x07, privateStream1 = 0x3D;
    auto const* const label = track.descriptor != nullptr ? track.descriptor->essenceContainer() : nullptr;
    bool const isPrivate = label != nullptr && isMappingLabel(label->key()) &&
                           (label->key()[13] == elementaryStream || label->key()[13] == inPES) &&
                           label->key()[14] == privateStream1;
    bool const isOther = compressionOf(track.descriptor) != nullptr;
    auto const header = isPrivate && !isOther ? firstPacketHeader(data) : std::nullopt;
    if (!header)
        return std::nullopt;
    Essence::Wave::WaveFormat format;
    format.channels = header->numberOfChannels();
    format.samplingRate = 48000;
    format.sampleBytes = header->bitsPerSample() == 16 ? 2 : 3;
    format.validBits = header->bitsPerSample();
    return format;
}

} // namespace

char kindOf(MXFIO::EssenceTrack const* track, ElementKey element) {
    switch (element.itemType()) {
    case ElementKey::CPPicture:
    case ElementKey::Picture:
    case ElementKey::Compound:
        return 'v';
    case ElementKey::CPSound:
    case ElementKey::Sound:
        return 'a';
    case ElementKey::CPData:
    case ElementKey::Data:
        return 'd';
    default:
        break;
    }
    auto const* const descriptor = track != nullptr ? track->descriptor : nullptr;
    if (dynamic_cast<Structural::GenericPictureEssenceDescriptor const*>(descriptor) != nullptr)
        return 'v';
    return dynamic_cast<Structural::GenericSoundEssenceDescriptor const*>(descriptor) != nullptr ? 'a' : 'd';
}

EssenceForm essenceForm(MXFIO::EssenceTrack const* track, ElementKey element, DataIO::Chain const& data) {
    EssenceForm form;
    if (auto const samples = track != nullptr ? packetsIn(*track, data) : std::nullopt)
        return {Shape::Stream, beginsWithPES(data) ? "pes" : "302m", *samples};
    form.suffix = suffixFor(track, element, data);
    if (form.suffix == "wav")
        return soundForm(track, element);
    auto const* const descriptor = track != nullptr ? track->descriptor : nullptr;
    if (form.suffix == uncompressed &&
        dynamic_cast<Structural::CDCIEssenceDescriptor const*>(descriptor) != nullptr)
        form.suffix = "yuv";
    if (std::find(std::begin(framewise), std::end(framewise), form.suffix) != std::end(framewise))
        form.shape = Shape::Frames;
    return form;
}

std::string documentSuffix(std::string_view mimeType, DataIO::Chain const& data) {
    std::string type(mimeType.substr(0, mimeType.find(';')));
    while (!type.empty() && type.back() == ' ')
        type.pop_back();
    std::transform(type.begin(), type.end(), type.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    for (auto const& row : mimeRows)
        if (row.type == type)
            return row.suffix;
    const char* const content = byContent(documentRows, data);
    return content != nullptr ? content : "bin";
}

bool startsDecoding(std::string_view suffix, DataIO::Chain const& data) {
    std::string const first = firstBytes(data);
    auto const at = first.find("\0\0\1"sv);
    if (at == std::string::npos || at + 4 > first.size())
        return true;
    auto const code = [&](std::size_t place) { return static_cast<unsigned char>(first[place + 3]); };
    if (suffix == "m2v" || suffix == "m1v")
        return code(at) == 0xB3 || code(at) == 0xB8; // sequence, group of pictures
    if (suffix != "h264")
        return true;
    for (auto place = at; place != std::string::npos && place + 4 <= first.size();
         place = first.find("\0\0\1"sv, place + 3))
        if (unsigned const type = code(place) & 0x1Fu; type == 5 || type == 7) // IDR, sequence parameters
            return true;
    return false;
}

} // namespace Zelm
