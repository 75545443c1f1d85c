#include "WrapAncillary.h"

#include "AncillaryList.h"

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using namespace GenericContainer::S436M;

namespace {

/// The whole text stands in memory while it is read.
constexpr std::uint64_t mostText = std::uint64_t{512} << 20;

AncillaryList listOf(InputHead const& head, TrackMaking const& making) {
    DataIO::Chain text;
    if (head.open(making)->read(mostText + 1, text) > mostText)
        throw CannotWrap(head.name + ": has more than 512 MiB of packets");
    auto const bytes = text.contiguous();
    try {
        return readAncillary({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    } catch (BadAncillaryText const& failure) {
        throw CannotWrap(head.name + ": " + failure.what());
    }
}

GenericContainer::EssenceAnalyzerPtr analyzerOf(ElementKind kind, AncillaryList::Track const& track) {
    std::shared_ptr<PacketAnalyzer> analyzer;
    if (kind == ElementKind::ANC)
        analyzer = std::make_shared<ANCAnalyzer>(track.frames);
    else
        analyzer = std::make_shared<VBIAnalyzer>(track.frames);
    analyzer->editRate(track.editRate);
    return analyzer;
}

} // namespace

bool isAncillary(InputHead const& head, TrackMaking const&) {
    constexpr char member[] = {'"', 'p', 'a', 'c', 'k', 'e', 't', 's', '"'};
    constexpr char space[] = {' ', '\t', '\r', '\n'};
    auto const first = std::find_if(head.bytes.begin(), head.bytes.end(), [&](unsigned char byte) {
        return std::find(std::begin(space), std::end(space), byte) == std::end(space);
    });
    return first != head.bytes.end() && *first == '{' &&
           std::search(first, head.bytes.end(), std::begin(member), std::end(member)) != head.bytes.end();
}

void addAncillary(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    auto const list = listOf(head, making);
    if (list.tracks.empty())
        throw CannotWrap(head.name + ": has no packets of ANC or VBI");
    for (auto const& [kind, track] : list.tracks) {
        addTrack(tracks, 'd', head, kind == ElementKind::ANC ? "ancillary data" : "VBI lines",
                 analyzerOf(kind, track), making.sources++);
        tracks.back().openEnd = track.frames;
    }
    if (list.leftOut != 0)
        making.notes->insert(
            head.name + ": " + std::to_string(list.leftOut) +
            " packets of further tracks, or of elements that could not be read, are left out");
}

} // namespace Zelm
