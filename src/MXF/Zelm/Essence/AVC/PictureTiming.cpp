#include "MXF/Zelm/Essence/AVC/PictureTiming.h"

#include "MXF/Zelm/DataIO/BitSliceReader.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <iterator>

namespace MXF::Zelm::Essence::AVC {

namespace {

/// By the structure of the picture: fields, and repetitions of them.
constexpr unsigned clocks[] = {1, 1, 1, 2, 2, 3, 3, 2, 3};

/// The way of counting by which drop frame timecode goes.
constexpr unsigned dropsTwoFrames = 4;

std::uint8_t number(DataIO::BitSliceReader& bits, unsigned count) {
    return static_cast<std::uint8_t>(bits.read(count));
}

/// Seconds, minutes and hours follow each other as long as a flag says so.
void readPartialTime(DataIO::BitSliceReader& bits, ClockTimestamp& clock) {
    if (!bits.readFlag())
        return;
    clock.seconds = number(bits, 6);
    if (!bits.readFlag())
        return;
    clock.minutes = number(bits, 6);
    clock.isFull = bits.readFlag();
    if (clock.isFull)
        clock.hours = number(bits, 5);
}

ClockTimestamp readClock(DataIO::BitSliceReader& bits) {
    ClockTimestamp clock;
    bits.skip(3); // scanning, field based
    auto const counting = static_cast<unsigned>(bits.read(5));
    clock.dropFrame = counting == dropsTwoFrames;
    clock.isFull = bits.readFlag();
    bits.skip(2); // discontinuity, dropped
    clock.frames = number(bits, 8);
    if (clock.isFull) {
        clock.seconds = number(bits, 6);
        clock.minutes = number(bits, 6);
        clock.hours = number(bits, 5);
    } else {
        readPartialTime(bits, clock);
    }
    return clock;
}

} // namespace

PictureTiming PictureTiming::read(DataIO::Chain const& message, VideoUsability const& usability) {
    DataIO::BitSliceReader bits(message);
    PictureTiming timing;
    try {
        if (usability.hasDelays)
            bits.skip(std::uint64_t{usability.removalDelayBits} + usability.outputDelayBits);
        if (!usability.tellsPictureStructure)
            return timing;
        auto const structure = number(bits, 4);
        if (structure >= std::size(clocks))
            return timing;
        timing.structure = structure;
        for (unsigned i = 0; i < clocks[structure] && !timing.clock; ++i)
            if (bits.readFlag())
                timing.clock = readClock(bits);
    } catch (Exceptions::InvalidLength const&) {
        // The message is cut off.
    }
    return timing;
}

} // namespace MXF::Zelm::Essence::AVC
