#include "MXF/Zelm/Essence/AVI/Headers.h"

#include "MXF/Zelm/Essence/LittleEndian.h"

namespace MXF::Zelm::Essence::AVI {

namespace {

constexpr std::size_t mostStreams = 100, largestFormat = std::size_t{64} << 10, longestName = 1024;

/// Fields of a chunk; those behind its end are 0.
class Fields {
public:
    explicit Fields(std::vector<unsigned char> const& bytes) : bytes_(bytes) {}

    template <class Integer>
    Integer at(std::size_t offset) const {
        bool const isThere = offset <= bytes_.size() && bytes_.size() - offset >= sizeof(Integer);
        return isThere ? littleEndian<Integer>(bytes_.data() + offset) : Integer{0};
    }
    std::uint32_t long_(std::size_t index) const { return at<std::uint32_t>(4 * index); }

private:
    std::vector<unsigned char> const& bytes_;
};

MainHeader readMain(Fields const& fields) {
    MainHeader header;
    header.microsecondsPerFrame = fields.long_(0);
    header.flags = fields.long_(3);
    header.totalFrames = fields.long_(4);
    header.streams = fields.long_(6);
    header.width = fields.long_(8);
    header.height = fields.long_(9);
    return header;
}

void readStream(Fields const& fields, StreamHeader& header) {
    std::uint32_t const scale = fields.long_(5), rate = fields.long_(6);
    header.type = fields.long_(0);
    header.handler = fields.long_(1);
    if (scale != 0 && rate != 0)
        header.rate = {rate, scale};
    header.start = fields.long_(7);
    header.length = fields.long_(8);
    header.sampleSize = fields.long_(11);
}

VideoFormat readVideo(Fields const& fields) {
    return {static_cast<std::int32_t>(fields.long_(1)), static_cast<std::int32_t>(fields.long_(2)),
            fields.at<std::uint16_t>(14), fields.long_(4)};
}

SoundFormat readSound(Fields const& fields) {
    constexpr std::uint16_t extensible = 0xFFFE;
    constexpr std::size_t subFormatAt = 24;
    SoundFormat format = {fields.at<std::uint16_t>(0), fields.at<std::uint16_t>(2), fields.long_(1),
                          fields.at<std::uint16_t>(12), fields.at<std::uint16_t>(14)};
    if (format.tag == extensible)
        format.tag = fields.at<std::uint16_t>(subFormatAt);
    return format;
}

void readFormat(StreamHeader& header) {
    Fields const fields(header.format);
    if (header.isVideo() && !header.format.empty())
        header.video = readVideo(fields);
    else if (header.isSound() && !header.format.empty())
        header.sound = readSound(fields);
}

StreamEntry readEntry(RIFFFile const& file, Range const& range) {
    StreamEntry entry;
    file.forChunks(range, [&](RIFFChunk const& chunk) {
        auto const content = chunk.content(range.end);
        if (chunk.id == fourCC("strh"))
            readStream(Fields(file.read(content, 64)), entry.header);
        else if (chunk.id == fourCC("strf"))
            entry.header.format = file.read(content, largestFormat);
        else if (chunk.id == fourCC("indx"))
            entry.superIndex = content;
        else if (chunk.id == fourCC("strn")) {
            auto const name = file.read(content, longestName);
            entry.header.name.assign(name.begin(), std::find(name.begin(), name.end(), 0));
        }
        return true;
    });
    readFormat(entry.header);
    return entry;
}

constexpr FourCC codesOfDV[] = {fourCC("dvsd"), fourCC("DVSD"), fourCC("dvhd"), fourCC("dvsl"),
                                fourCC("dv25"), fourCC("DV25"), fourCC("dv50"), fourCC("DV50"),
                                fourCC("dvh1"), fourCC("dvcp"), fourCC("cdvc")};
constexpr FourCC codesOfMJPEG[] = {fourCC("MJPG"), fourCC("mjpg"), fourCC("dmb1"), fourCC("AVRn")};

template <std::size_t count>
bool isAmong(FourCC const (&codes)[count], FourCC code) {
    return std::find(std::begin(codes), std::end(codes), code) != std::end(codes);
}

} // namespace

Content StreamHeader::content() const {
    constexpr std::uint16_t pcm = 1;
    if (type == fourCC("iavs"))
        return isAmong(codesOfDV, handler) ? Content::InterleavedDV : Content::Unknown;
    if (isSound())
        return sound && sound->tag == pcm ? Content::PCM : Content::Unknown;
    if (!isVideo())
        return Content::Unknown;
    FourCC const code = video && video->compression != 0 ? video->compression : handler;
    return isAmong(codesOfDV, code)      ? Content::DV
           : isAmong(codesOfMJPEG, code) ? Content::MJPEG
                                         : Content::Unknown;
}

Headers readHeaders(RIFFFile const& file, Range const& range) {
    Headers headers;
    file.forChunks(range, [&](RIFFChunk const& chunk) {
        if (chunk.id == fourCC("avih"))
            headers.main = readMain(Fields(file.read(chunk.content(range.end), 64)));
        else if (chunk.type == fourCC("strl"))
            headers.streams.push_back(readEntry(file, chunk.content(range.end)));
        return headers.streams.size() < mostStreams;
    });
    return headers;
}

} // namespace MXF::Zelm::Essence::AVI
