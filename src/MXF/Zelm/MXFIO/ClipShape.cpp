#include "MXF/Zelm/MXFIO/ClipShape.h"

#include "MXF/Zelm/MXFIO/ClipUnits.h"
#include "MXF/Zelm/MXFIO/MetadataArea.h"
#include "MXF/Zelm/Metadata/Structural/GenericPictureEssenceDescriptor.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;

namespace {

/// Bytes at the start of a clip that are looked for again, and how far.
constexpr std::size_t patternSize = 6;
constexpr std::uint64_t mostSearched = 8 << 20;

/// Edit units that must begin in the same way, and the most that are looked at.
constexpr std::uint64_t fewestUnits = 3, mostUnits = 64;

/// Pixels for which a coded picture has a byte at the least. Lines of an uncompressed picture, which may
/// begin alike too, have fewer bytes.
constexpr std::uint64_t pixelsPerByte = 64;

bool isPositive(Templates::Rational<int> const& rate) { return rate.numerator > 0 && rate.denominator > 0; }

/// Element types that are clips (SMPTE 381M, 422M, 2019-4; 382M and 388M).
bool hasClipKey(ElementKey const& key) {
    constexpr unsigned char pictures[] = {0x06, 0x09, 0x0D}, sounds[] = {0x02, 0x04, 0x06, 0x09};
    auto const isAmong = [&](auto const& types) {
        return std::find(std::begin(types), std::end(types), key.elementType()) != std::end(types);
    };
    return (key.itemType() == ElementKey::Picture && isAmong(pictures)) ||
           (key.itemType() == ElementKey::Sound && isAmong(sounds));
}

std::uint64_t leastUnitSize(EssenceTrack const* track) {
    using Metadata::Structural::GenericPictureEssenceDescriptor;
    auto const* const picture =
        track != nullptr ? dynamic_cast<GenericPictureEssenceDescriptor const*>(track->descriptor) : nullptr;
    if (picture == nullptr || picture->storedWidth() == nullptr || picture->storedHeight() == nullptr)
        return 1;
    return 1 +
           std::uint64_t{picture->storedWidth()->value()} * picture->storedHeight()->value() / pixelsPerByte;
}

/// Whether the edit units of a clip, if they have `size` bytes, begin as the first does: as many as there
/// are, or some at even distances.
bool beginsAlike(DataIO::RandomAccessDataSource& source, ElementPlace const& clip, std::uint64_t size,
                 Bytes const& pattern) {
    std::uint64_t const units = clip.length / size;
    std::uint64_t const step = std::max<std::uint64_t>(units / mostUnits, 1);
    for (std::uint64_t unit = 1; unit < units; unit += unit < fewestUnits ? 1 : step)
        if (readBytes(source, clip.offset + unit * size, patternSize) != pattern)
            return false;
    return true;
}

/// The distance at which the start of a clip comes again, from `least` bytes on; 0 where it does not.
std::uint64_t repeatedUnitSize(DataIO::RandomAccessDataSource& source, ElementPlace const& clip,
                               std::uint64_t least) {
    auto const bytes = readBytes(source, clip.offset, std::min(clip.length, mostSearched));
    if (bytes.size() < patternSize || least >= bytes.size())
        return 0;
    Bytes const pattern(bytes.begin(), bytes.begin() + patternSize);
    if (std::count(pattern.begin(), pattern.end(), pattern.front()) == patternSize)
        return 0; // silence or black tells nothing
    for (auto found = bytes.begin() + static_cast<std::ptrdiff_t>(least);; ++found) {
        found = std::search(found, bytes.end(), pattern.begin(), pattern.end());
        auto const size = static_cast<std::uint64_t>(found - bytes.begin());
        if (found == bytes.end() || clip.length / size < fewestUnits)
            return 0;
        if (beginsAlike(source, clip, size, pattern))
            return size;
    }
}

/// One sample, or an edit unit where all have as many.
ClipUnitSize sampleUnitSize(EssenceTrack const& track) {
    auto const& samples = track.samples;
    if (!isPositive(track.editRate))
        return {samples.bytes, samples.rate};
    auto const over = std::int64_t{samples.rate.numerator} * track.editRate.denominator;
    auto const under = std::int64_t{samples.rate.denominator} * track.editRate.numerator;
    return over % under == 0
               ? ClipUnitSize{samples.bytes * static_cast<std::uint64_t>(over / under), track.editRate}
               : ClipUnitSize{samples.bytes, samples.rate};
}

} // namespace

ClipUnitSize clipUnitSize(DataIO::RandomAccessDataSource& source, EssenceContainer const& container,
                          ElementPlace const& clip) {
    auto const* const track = container.trackByNumber(ElementKey(clip.key).trackNumber());
    if (track != nullptr && track->samples.bytes != 0 && isPositive(track->samples.rate))
        return sampleUnitSize(*track);
    auto const units =
        static_cast<std::uint64_t>(track != nullptr ? std::max<std::int64_t>(track->duration, 0) : 0);
    if (units != 0 && clip.declared != 0 && clip.declared % units == 0)
        return {clip.declared / units, track->editRate};
    return {repeatedUnitSize(source, clip, leastUnitSize(track)), container.editRate()};
}

bool holdsSeveralUnits(DataIO::RandomAccessDataSource& source, EssenceContainer const& container,
                       ElementPlace const& element) {
    ElementKey const key(element.key);
    auto const* const track = container.trackByNumber(key.trackNumber());
    SampleGrid const grid =
        track != nullptr ? SampleGrid(track->samples, container.editRate()) : SampleGrid();
    if (hasClipKey(key) || grid.isKnown())
        return hasClipKey(key) || element.declared >= grid.offset(2);
    return repeatedUnitSize(source, element, leastUnitSize(track)) != 0;
}

} // namespace MXF::Zelm::MXFIO
