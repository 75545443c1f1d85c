#include "WrapTimedText.h"

#include "EssenceForm.h"

#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/Analyzers/TimedTextAnalyzer.h>
#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using DataIO::File::FileSliceSource;
using GenericContainer::TimedTextAnalyzer;
using GenericContainer::TimedTextOptions;
using GenericContainer::TimedTextResource;
using GenericContainer::Wrapping;

namespace {

/// Stream IDs of essence and index count up from 1.
constexpr std::uint32_t firstStream = 1001;

constexpr std::size_t uuidDigits = 36;

std::optional<Types::UUID> parseUuid(std::string const& text) {
    try {
        return Types::UUID::fromText(Platform::toUtf16(text));
    } catch (Exceptions::BaseException const&) {
        return std::nullopt;
    }
}

/// "image/png": what media types begin with tells them from the folders of a file.
bool isMediaType(std::string const& text) {
    static constexpr std::string_view tops[] = {"application/", "audio/", "font/",
                                                "image/",       "text/",  "video/"};
    return std::any_of(std::begin(tops), std::end(tops),
                       [&](std::string_view top) { return text.compare(0, top.size(), top) == 0; });
}

/// What --resource says: [UUID=][TYPE=]FILE.
struct Resource {
    std::string file, mediaType;
    std::optional<Types::UUID> id;

    explicit Resource(std::string text) {
        for (auto sign = text.find('='); sign != std::string::npos; sign = text.find('=')) {
            auto const word = text.substr(0, sign);
            auto const uuid = parseUuid(word);
            if (!uuid && !isMediaType(word))
                break;
            if (uuid)
                id = uuid;
            else
                mediaType = word;
            text.erase(0, sign + 1);
        }
        file = std::move(text);
    }
};

/// Of a file whose name ends with one, as zelm extract writes them.
std::optional<Types::UUID> uuidInName(std::string const& file) {
    auto const slash = file.find_last_of("/\\");
    std::string stem = file.substr(slash != std::string::npos ? slash + 1 : 0);
    stem = stem.substr(0, stem.rfind('.'));
    return stem.size() >= uuidDigits ? parseUuid(stem.substr(stem.size() - uuidDigits)) : std::nullopt;
}

/// As SMPTE 429-5 names them.
std::string mediaTypeOf(std::string const& file) {
    constexpr std::uint64_t enough = 64;
    DataIO::Chain first;
    FileSliceSource{std::string_view(file)}.read(enough, first);
    auto const suffix = documentSuffix({}, first);
    return suffix == "png"                      ? "image/png"
           : suffix == "ttf" || suffix == "otf" ? "application/x-font-opentype"
           : suffix == "jpg"                    ? "image/jpeg"
           : suffix == "xml"                    ? "text/xml"
                                                : "application/octet-stream";
}

TimedTextResource describe(Resource const& resource, std::uint32_t streamID) {
    auto const id = resource.id ? resource.id : uuidInName(resource.file);
    if (!id)
        throw CannotWrap("--resource " + resource.file +
                         ": its UUID is not told: UUID=FILE, or a name that ends with it");
    auto const type = resource.mediaType.empty() ? mediaTypeOf(resource.file) : resource.mediaType;
    return {*id, Platform::toUtf16(type), streamID};
}

/// Opens the resources; their sources go into `streams`.
Templates::vector<TimedTextResource> openResources(TrackMaking& making,
                                                   std::vector<MXFIO::GenericStream>& streams) {
    Templates::vector<TimedTextResource> resources;
    for (auto const& text : making.options.resources) {
        Resource const resource(text);
        resources.push_back(describe(resource, firstStream + making.streams++));
        auto source = std::make_unique<FileSliceSource>(std::string_view(resource.file), making.blocks);
        auto const size = source->size();
        MXFIO::GenericStream stream;
        stream.sid = resources.back().streamID;
        stream.source = std::make_shared<DataIO::BoundedDataSourceAdapter>(
            std::make_unique<DataIO::SliceSourceDataSource>(std::move(source)), size);
        streams.push_back(std::move(stream));
    }
    return resources;
}

} // namespace

bool isTimedText(InputHead const& head, TrackMaking const&) {
    return Essence::TimedText::Document::isDocument(
        {reinterpret_cast<const char*>(head.bytes.data()), head.bytes.size()});
}

void addTimedText(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    if (making.streams != 0 || (making.hasResources && !making.options.resources.empty()))
        throw CannotWrap(head.name + ": --resource belongs to one document of timed text, not to several");
    std::vector<MXFIO::GenericStream> streams;
    TimedTextOptions options;
    options.editRate = making.layout.rate().value_or(EditRate{});
    options.resources = openResources(making, streams);
    auto const analyzer = std::make_shared<TimedTextAnalyzer>(head.open(making), std::move(options));
    analyzer->preload();
    if (!making.isRateTold && !analyzer->document().frameRate.isKnown())
        throw CannotWrap(head.name + ": does not tell its frame rate: --rate says it");
    if (!making.isRateTold)
        making.rate = analyzer->document().frameRate;
    making.isRateTold = true;
    analyzer->editRate(making.rate);
    addTrack(tracks, 'd', head, "timed text", analyzer, making.sources++);
    tracks.back().wrapping = Wrapping::Clip;
    tracks.back().streams = std::move(streams);
}

} // namespace Zelm
