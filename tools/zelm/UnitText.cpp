#include "UnitText.h"

#include "TimeText.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/Zelm/Utils/TimeCode.h>

#include <charconv>
#include <limits>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// The timecode track, or the first essence track of the file package.
TrackInfo const* findTrack(FileInfo const& info, const char* package, bool timecode) {
    for (auto const& candidate : info.packages)
        if (candidate.kind == package)
            for (auto const& track : candidate.tracks)
                if (timecode ? track.timecode.has_value()
                             : track.kind == "picture" || track.kind == "sound" || track.kind == "data")
                    return &track;
    return nullptr;
}

/// Frames from the start timecode of the material package to the timecode `text`. Throws InvalidValue and
/// InvalidFormat when that cannot be told.
std::int64_t framesFromStart(FileInfo const& info, std::string const& text) {
    if (!info.startTimecode || info.startTimecode->start < 0)
        throw Exceptions::InvalidValue("the file has no start timecode: give the number of an edit unit");
    auto const& timecode = *info.startTimecode;
    Utils::TimeBase const base(timecode.base, timecode.dropFrame && Utils::TimeBase::canDrop(timecode.base));
    auto const wanted = Utils::TimeCode::fromText(Platform::toUtf16(text), timecode.base);
    if (!wanted.isDefined() || wanted.base() != base)
        throw Exceptions::InvalidValue("the timecode of the file begins at " + timecodeText(timecode) + ": " +
                                       text + " is of another kind");
    return (wanted - Utils::TimeCode(base, timecode.start)).frameCount();
}

} // namespace

bool parseNumber(std::string_view text, std::int64_t& number) {
    auto const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

std::optional<UnitRange> parseUnits(std::string_view text) {
    UnitRange range{std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()};
    std::size_t const colon = text.find(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    auto const first = text.substr(0, colon), last = text.substr(colon + 1);
    bool const read =
        (first.empty() || parseNumber(first, range.first)) && (last.empty() || parseNumber(last, range.last));
    return read && range.first < range.last ? std::optional(range) : std::nullopt;
}

std::int64_t unitAtTimecode(FileInfo const& info, std::string const& text, EditRate const& unitRate) {
    std::int64_t position = framesFromStart(info, text);
    auto const* const timecodes = findTrack(info, "material", true);
    EditRate const rate = timecodes != nullptr ? timecodes->editRate.value_or(unitRate) : unitRate;
    if (rate != unitRate && unitRate.numerator > 0 && unitRate.denominator > 0)
        position = Utils::secondsToFrames(Utils::framesToSeconds(position, rate), unitRate);
    auto const* const essence = findTrack(info, "file", false);
    std::int64_t const origin = essence != nullptr ? essence->origin.value_or(0) : 0;
    if (origin < 0 || origin > std::numeric_limits<std::int64_t>::max() - position)
        throw Exceptions::InvalidValue("the origin of the file package's track is " + std::to_string(origin));
    return position + origin;
}

} // namespace Zelm
