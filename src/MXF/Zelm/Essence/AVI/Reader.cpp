#include "MXF/Zelm/Essence/AVI/Reader.h"

#include "MXF/Zelm/Essence/AVI/ChunkFinder.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <string>
#include <utility>

namespace MXF::Zelm::Essence::AVI {

namespace {

/// The parts of a file.
struct Layout {
    std::optional<Range> headers = {};
    std::vector<Range> movies = {};
    std::optional<Range> index = {};
};

void readParts(RIFFFile const& file, Range const& riff, Layout& layout) {
    file.forChunks(riff, [&](RIFFChunk const& chunk) {
        auto const content = chunk.content(riff.end);
        if (chunk.type == fourCC("hdrl") && !layout.headers)
            layout.headers = content;
        else if (chunk.type == fourCC("movi"))
            layout.movies.push_back(content);
        else if (chunk.id == fourCC("idx1") && !layout.index)
            layout.index = content;
        return !(chunk.isList() && chunk.size == 0); // goes on to the end
    });
}

Layout readLayout(RIFFFile const& file) {
    auto const first = file.chunkAt(0, file.size());
    if (!first || first->id != fourCC("RIFF") || first->type != fourCC("AVI "))
        throw Exceptions::at(0, Exceptions::InvalidFormat("There is no AVI file"));
    Layout layout;
    file.forChunks({0, file.size()}, [&](RIFFChunk const& chunk) {
        if (chunk.id != fourCC("RIFF"))
            return false;
        readParts(file, chunk.content(file.size()), layout);
        return chunk.size != 0;
    });
    if (!layout.headers)
        throw Exceptions::InvalidFormat("An AVI file has no list of headers");
    return layout;
}

} // namespace

Reader::Reader(Templates::SharedPtr<DataIO::RandomAccessDataSource> source)
    : Reader(std::move(source), Limits()) {}

Reader::Reader(Templates::SharedPtr<DataIO::RandomAccessDataSource> source, Limits const& limits)
    : source_(std::move(source)) {
    RIFFFile const file(source_);
    auto const layout = readLayout(file);
    auto headers = readHeaders(file, *layout.headers);
    if (headers.streams.empty())
        throw Exceptions::at(layout.headers->begin, Exceptions::InvalidFormat("An AVI file has no streams"));
    ChunkFinder finder(file, headers.streams, layout.movies, limits.mostChunks, faults_);
    auto lists = finder.byOpenDML();
    indexKind_ = IndexKind::OpenDML;
    if (!lists) {
        lists = finder.byIdx1(layout.index);
        indexKind_ = IndexKind::Idx1;
    }
    if (!lists) {
        lists = finder.byWalk();
        indexKind_ = IndexKind::Walk;
    }
    mainHeader_ = headers.main;
    for (std::size_t i = 0; i < headers.streams.size(); ++i)
        streams_.push_back({std::move(headers.streams[i].header), std::move((*lists)[i])});
}

Reader::~Reader() = default;

Templates::SharedPtr<ChunkSource> Reader::open(std::size_t stream) const {
    if (stream >= streams_.size())
        throw Exceptions::InvalidPosition("Stream " + std::to_string(stream) + " of " +
                                          std::to_string(streams_.size()));
    return std::make_shared<ChunkSource>(source_, streams_[stream].chunks);
}

} // namespace MXF::Zelm::Essence::AVI
