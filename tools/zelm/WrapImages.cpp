#include "WrapImages.h"

#include <MXF/Zelm/DataIO/File/FileSliceSource.h>
#include <MXF/Zelm/Essence/JPEG2000/CodestreamCutter.h>
#include <MXF/Zelm/GenericContainer/Analyzers/JPEG2000Analyzer.h>

namespace Zelm {

using namespace MXF::Zelm;
using DataIO::File::FileSliceSource;
using GenericContainer::JPEG2000Analyzer;
using GenericContainer::JPEG2000Options;
using GenericContainer::Wrapping;

namespace {

/// Opens one file of a sequence after the other.
JPEG2000Analyzer::NextSource filesOf(InputHead const& head, TrackMaking const& making) {
    return [names = head.sequence, blocks = making.blocks,
            i = std::size_t{0}]() mutable -> Templates::SharedPtr<DataIO::SliceSource> {
        return i < names.size() ? std::make_shared<FileSliceSource>(std::string_view(names[i++]), blocks)
                                : nullptr;
    };
}

} // namespace

bool isJpeg2000(InputHead const& head, TrackMaking const&) {
    return Essence::JPEG2000::CodestreamCutter::isCodestream(head.bytes.data(), head.bytes.size());
}

void addJpeg2000(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    if (!making.isRateTold)
        throw CannotWrap(head.name + ": JPEG 2000 does not tell its frame rate: --rate says it");
    JPEG2000Options options;
    options.editRate = making.rate;
    options.wrapping = making.layout.wrapping().value_or(Wrapping::Frame);
    auto const analyzer = head.sequence.empty()
                              ? std::make_shared<JPEG2000Analyzer>(head.open(making), options)
                              : std::make_shared<JPEG2000Analyzer>(filesOf(head, making), options);
    if (!analyzer->preload())
        throw CannotWrap(head.name + ": has no whole picture" +
                         (analyzer->fault().empty() ? "" : ": " + analyzer->fault()));
    addTrack(tracks, 'v', head, "JPEG 2000", analyzer, making.sources++);
    tracks.back().wrapping = options.wrapping;
}

} // namespace Zelm
