#include "WrapPictures.h"

#include <MXF/Zelm/Essence/AVC/AccessUnit.h>
#include <MXF/Zelm/GenericContainer/Analyzers/AVCAnalyzer.h>
#include <MXF/Zelm/GenericContainer/Analyzers/D10Analyzer.h>
#include <MXF/Zelm/GenericContainer/Analyzers/DVAnalyzer.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::Wrapping;

namespace {

Wrapping pictureWrapping(TrackMaking const& making) {
    return making.layout.wrapping().value_or(Wrapping::Frame);
}

/// Whether a start code with this value stands among the first bytes.
bool hasStartCode(InputHead const& head, unsigned char value) {
    const unsigned char code[] = {0, 0, 1, value};
    auto const* const end = head.bytes.data() + head.bytes.size();
    return std::search(head.bytes.data(), end, std::begin(code), std::end(code)) != end;
}

constexpr unsigned char sequenceHeaderCode = 0xB3, packHeaderCode = 0xBA;

/// A recording may begin amid a long group of large pictures.
constexpr std::uint64_t mostToSkip = std::uint64_t{64} << 20;

void addVideo(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks, const char* essence,
              Templates::SharedPtr<GenericContainer::MPEG2VideoAnalyzer> const& analyzer) {
    analyzer->maximumToSkip(mostToSkip);
    if (!analyzer->preload())
        throw CannotWrap(head.name + ": has no picture with a known size and frame rate");
    addTrack(tracks, 'v', head, essence, analyzer, making.sources++);
}

} // namespace

bool isVideo(InputHead const& head, TrackMaking const&) {
    return hasStartCode(head, sequenceHeaderCode) && !hasStartCode(head, packHeaderCode);
}

bool isD10(InputHead const& head, TrackMaking const& making) {
    return isVideo(head, making) && GenericContainer::D10Analyzer(head.open(making)).preload();
}

void addD10(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    addVideo(head, making, tracks, "D-10 video",
             std::make_shared<GenericContainer::D10Analyzer>(head.open(making)));
}

void addMpeg(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    auto const wrapping = pictureWrapping(making);
    auto const analyzer = std::make_shared<GenericContainer::MPEG2VideoAnalyzer>(head.open(making), wrapping);
    addVideo(head, making, tracks, "MPEG-2 video", analyzer);
    if (analyzer->sequence().isMPEG1())
        tracks.back().essence = "MPEG-1 video";
    tracks.back().wrapping = wrapping;
}

/// Parameter sets and a slice that goes with them, in a stream that begins with a start code.
bool isAvc(InputHead const& head, TrackMaking const&) {
    static constexpr unsigned char code[] = {0, 0, 1};
    constexpr std::size_t mostZeros = 8;
    auto const* const begin = head.bytes.data();
    auto const* const end = begin + std::min(head.bytes.size(), mostZeros);
    if (std::search(begin, end, std::begin(code), std::end(code)) == end)
        return false;
    Essence::AVC::ParameterSets sets;
    return Essence::AVC::AccessUnit::read(head.bytes, sets, Essence::AVC::AccessUnit::Part::Whole)
        .slice.has_value();
}

bool isDv(InputHead const& head, TrackMaking const&) {
    return Essence::DV::FrameHeader::read(head.bytes).has_value();
}

void addAvc(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    auto const analyzer =
        std::make_shared<GenericContainer::AVCAnalyzer>(head.open(making), pictureWrapping(making));
    analyzer->editRate(making.layout.rate().value_or(EditRate{}));
    analyzer->maximumToSkip(mostToSkip);
    if (!analyzer->preload())
        throw CannotWrap(head.name + (analyzer->editRate().isKnown()
                                          ? ": has no picture that can be read"
                                          : ": does not tell its frame rate: --rate does"));
    addTrack(tracks, 'v', head, "AVC video", analyzer, making.sources++);
    tracks.back().wrapping = analyzer->wrapping();
}

void addDv(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks) {
    GenericContainer::DVOptions options;
    options.wrapping = pictureWrapping(making);
    if (head.fileSize != 0)
        options.byteCount = head.fileSize;
    auto const analyzer = std::make_shared<GenericContainer::DVAnalyzer>(head.open(making), options);
    if (!analyzer->preload())
        throw CannotWrap(head.name + ": does not begin with a whole frame of DV");
    if (analyzer->header().sound)
        making.notes->insert(head.name + ": the sound inside of its frames gets no track of its own");
    addTrack(tracks, 'v', head, "DV video", analyzer, making.sources++);
    tracks.back().wrapping = options.wrapping;
}

} // namespace Zelm
