#include "UnitRange.h"

#include "TimeText.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>

#include <algorithm>
#include <charconv>

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

Utils::TimeCode startOf(FileInfo const& info) {
    if (!info.startTimecode || info.startTimecode->start < 0 || info.startTimecode->base == 0)
        return {};
    auto const& timecode = *info.startTimecode;
    Utils::TimeBase const base(timecode.base, timecode.dropFrame && Utils::TimeBase::canDrop(timecode.base));
    return Utils::TimeCode(base, timecode.start);
}

/// Nothing, or a text with the three separators of a timecode.
bool isTimecodeOrEmpty(std::string_view text) {
    auto const isSeparator = [](char c) { return c == ':' || c == ';'; };
    return text.empty() || std::count_if(text.begin(), text.end(), isSeparator) == 3;
}

} // namespace

std::optional<std::int64_t> parseUnit(std::string_view text) {
    std::int64_t number = 0;
    auto const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::optional<UnitRange> parseUnits(std::string_view text) {
    std::size_t const colon = text.find(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    auto const first = text.substr(0, colon), last = text.substr(colon + 1);
    auto const from = first.empty() ? everyUnit.first : parseUnit(first);
    auto const to = last.empty() ? everyUnit.last : parseUnit(last);
    return from && to && *from < *to ? std::optional(UnitRange{*from, *to}) : std::nullopt;
}

std::optional<RangeChoice> parseRange(std::string_view text) {
    if (auto const units = parseUnits(text))
        return RangeChoice{*units, false, {}, {}};
    std::size_t const dash = text.find('-');
    if (dash == std::string_view::npos || text.size() == 1)
        return std::nullopt;
    auto const from = text.substr(0, dash), to = text.substr(dash + 1);
    if (!isTimecodeOrEmpty(from) || !isTimecodeOrEmpty(to))
        return std::nullopt;
    return RangeChoice{everyUnit, true, std::string(from), std::string(to)};
}

UnitTimecodes::UnitTimecodes(FileInfo const& info, EditRate const& editRate,
                             std::optional<std::int64_t> origin)
    : start_(startOf(info)), rate_(editRate), editRate_(editRate) {
    if (auto const* const timecodes = findTrack(info, "material", true))
        rate_ = timecodes->editRate.value_or(editRate);
    hasOwnRate_ = rate_ != editRate && editRate.numerator > 0 && editRate.denominator > 0;
    auto const* const essence = findTrack(info, "file", false);
    origin_ = origin ? *origin : essence != nullptr ? essence->origin.value_or(0) : 0;
}

std::int64_t UnitTimecodes::unitAt(std::string const& timecode) const {
    if (!isKnown())
        throw Exceptions::InvalidValue("the file has no start timecode: give the number of an edit unit");
    auto const wanted =
        Utils::TimeCode::fromText(Platform::toUtf16(timecode), start_.base().framesPerSecond());
    if (!wanted.isDefined() || wanted.base() != start_.base())
        throw Exceptions::InvalidValue("the timecode of the file begins at " +
                                       Platform::toUtf8(start_.toString()) + ": " + timecode +
                                       " is of another kind");
    std::int64_t position = (wanted - start_).frameCount();
    if (hasOwnRate_)
        position = Utils::secondsToFrames(Utils::framesToSeconds(position, rate_), editRate_);
    if (origin_ < 0 || origin_ > everyUnit.last - position)
        throw Exceptions::InvalidValue("the origin of the file package's track is " +
                                       std::to_string(origin_));
    return position + origin_;
}

UnitRange UnitTimecodes::units(RangeChoice const& choice) const {
    UnitRange range = choice.units;
    if (!choice.from.empty())
        range.first = unitAt(choice.from);
    if (!choice.to.empty())
        range.last = unitAt(choice.to);
    if (range.last <= range.first)
        throw Exceptions::InvalidValue("nothing lies between " + choice.from + " and " + choice.to);
    return range;
}

Utils::TimeCode UnitTimecodes::at(std::int64_t unit) const {
    if (!isKnown() || origin_ < 0 || unit < everyUnit.first + origin_)
        return {};
    if (!hasOwnRate_)
        return start_ + (unit - origin_);
    try {
        return start_ + Utils::secondsToFrames(Utils::framesToSeconds(unit - origin_, editRate_), rate_);
    } catch (Exceptions::InvalidValue const&) {
        return {}; // beyond all time
    }
}

} // namespace Zelm
