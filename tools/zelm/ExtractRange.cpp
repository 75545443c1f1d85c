#include "ExtractRange.h"

#include "EssenceForm.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

namespace Zelm {

using namespace MXF::Zelm;
using IndexTables::EditUnitLocator;

namespace {

/// Display order differs from stored order by no more than an Int8 says.
constexpr std::int64_t farthestReorder = 256;

/// Pictures that are looked at in search of one that decoding can begin with.
constexpr std::int64_t farthestKeyFrame = 1024;

bool isTimecodes(std::string const& text) {
    return std::count_if(text.begin(), text.end(), [](char c) { return c == ':' || c == ';'; }) >= 3;
}

/// Stored pictures that show the display positions of `wanted`, and what they need before.
void reorder(EditUnitLocator const& index, WantedUnits& wanted) {
    UnitRange const shown = wanted.pictures;
    auto const firstShown = index.decodingRange(shown.first);
    if (!firstShown)
        return;
    std::int64_t first = firstShown->first;
    std::int64_t const end = std::min(shown.last, index.end().value_or(shown.last));
    for (std::int64_t i = shown.first; i < end && i - shown.first < farthestReorder; ++i)
        if (auto const stored = index.storedPosition(i))
            first = std::min(first, *stored);
    std::int64_t last = end;
    for (std::int64_t i = std::max(shown.first, end - farthestReorder); i < end; ++i)
        if (auto const stored = index.storedPosition(i))
            last = std::max(last, *stored + 1);
    // What is stored behind the last one that is shown, and shown later, is not wanted.
    auto const isWanted = [&](std::int64_t stored) {
        auto const display = index.displayPosition(stored);
        return !display || shown.contains(*display);
    };
    while (last - 1 > first && !isWanted(last - 1))
        --last;
    wanted.pictures = {first, shown.last == allUnits.last ? shown.last : last};
    wanted.preCharge = firstShown->last - first;
}

/// The last edit unit at or before `position` whose picture decoding can begin with.
std::int64_t keyFrameByContent(MXFIO::EssenceReader& reader, std::int64_t position,
                               std::string const& suffix) {
    MXFIO::EssenceUnit unit;
    for (std::int64_t i = position; i >= 0 && position - i < farthestKeyFrame && reader.read(i, unit); --i)
        for (auto const& element : unit.package.elements)
            if (kindOf(nullptr, element.elementKey()) == 'v' && startsDecoding(suffix, element.data))
                return i;
    return position;
}

} // namespace

ExtractRange::ExtractRange(std::string const& text, bool display) : isAll_(false), display_(display) {
    if (auto const units = parseUnits(text)) {
        units_ = {std::max<std::int64_t>(units->first, 0), std::max<std::int64_t>(units->last, 0)};
        return;
    }
    auto const dash = text.find('-');
    bool const isRange = dash != std::string::npos && isTimecodes(text);
    if (!isRange)
        throw Exceptions::InvalidFormat("\"" + text +
                                        "\" is neither a range A:B of edit units nor A-B of timecodes");
    firstTimecode_ = text.substr(0, dash);
    lastTimecode_ = text.substr(dash + 1);
    display_ = true;
}

UnitRange ExtractRange::units(FileInfo const& info, EditRate const& rate) const {
    UnitRange range = units_;
    if (!firstTimecode_.empty())
        range.first = UnitTimecodes(info, rate).unitAt(firstTimecode_);
    if (!lastTimecode_.empty())
        range.last = UnitTimecodes(info, rate).unitAt(lastTimecode_);
    if (range.first >= range.last)
        throw Exceptions::InvalidValue("the range ends before it begins");
    return range;
}

WantedUnits ExtractRange::wanted(FileInfo const& info, MXFIO::EssenceReader& reader,
                                 std::string const& suffix) const {
    WantedUnits wanted;
    if (isAll_)
        return wanted;
    auto const* const table = reader.seeker().table();
    EditRate const rate = table != nullptr && table->editRate().numerator > 0 ? table->editRate()
                                                                              : reader.container().editRate();
    wanted.pictures = wanted.others = units(info, rate);
    auto const* const index = reader.seeker().index();
    if (index != nullptr && display_) {
        reorder(*index, wanted);
        return wanted;
    }
    std::int64_t const first = wanted.pictures.first;
    auto const key = index != nullptr ? index->keyFrame(first) : std::nullopt;
    std::int64_t const from = key ? *key : keyFrameByContent(reader, first, suffix);
    if (from < 0 || from > first)
        return wanted;
    wanted.pictures.first = from;
    wanted.preCharge = first - from;
    return wanted;
}

} // namespace Zelm
