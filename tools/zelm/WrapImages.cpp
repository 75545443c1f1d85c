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

constexpr struct {
    const char* name;
    JPEG2000Options::Scan scan;
} scans[] = {
    {"progressive", JPEG2000Options::Scan::Progressive},
    {"two-fields", JPEG2000Options::Scan::TwoFields},
    {"field", JPEG2000Options::Scan::Field},
};

/// Opens one file of a sequence after the other; `current` gets the name of each.
JPEG2000Analyzer::NextSource filesOf(InputHead const& head, TrackMaking const& making,
                                     std::shared_ptr<std::string> const& current) {
    return [names = head.sequence, blocks = making.blocks, current,
            i = std::size_t{0}]() mutable -> Templates::SharedPtr<DataIO::SliceSource> {
        if (i == names.size())
            return nullptr;
        *current = names[i++];
        return std::make_shared<FileSliceSource>(std::string_view(*current), blocks);
    };
}

JPEG2000Options::Scan scanOf(TrackMaking const& making) {
    for (auto const& row : scans)
        if (making.options.scan == row.name)
            return row.scan;
    return JPEG2000Options::Scan::Undefined;
}

} // namespace

std::vector<std::string> scanNames() {
    std::vector<std::string> names;
    for (auto const& row : scans)
        names.emplace_back(row.name);
    return names;
}

bool isJpeg2000(InputHead const& head, TrackMaking const&) {
    return Essence::JPEG2000::CodestreamCutter::isCodestream(head.bytes.data(), head.bytes.size());
}

void addJpeg2000(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    if (!making.isRateTold)
        throw CannotWrap(head.name + ": JPEG 2000 does not tell its frame rate: --rate says it");
    JPEG2000Options options;
    options.editRate = making.rate;
    options.wrapping = making.layout.wrapping().value_or(Wrapping::Frame);
    options.scan = scanOf(making);
    auto const current = std::make_shared<std::string>(head.name);
    bool const isOneStream = head.sequence.empty() || options.scan == JPEG2000Options::Scan::TwoFields;
    auto const analyzer = isOneStream
                              ? std::make_shared<JPEG2000Analyzer>(head.open(making), options)
                              : std::make_shared<JPEG2000Analyzer>(filesOf(head, making, current), options);
    if (!analyzer->preload())
        throw CannotWrap(*current + ": has no whole picture" +
                         (analyzer->fault().empty() ? "" : ": " + analyzer->fault()));
    addTrack(tracks, 'v', head, "JPEG 2000", analyzer, making.sources++);
    tracks.back().current = current;
    making.hasScans = true;
    tracks.back().wrapping = options.wrapping;
}

} // namespace Zelm
