#include "MXF/Zelm/Essence/DV/Format.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::Essence::DV {

namespace {

constexpr auto iec = Format::Family::IEC, based = Format::Family::DVBased;

constexpr Format formats[] = {
    {iec, 25, 0x00, false, 1, 720, 480, false, 4, 1, {30000, 1001}},
    {iec, 25, 0x00, true, 1, 720, 576, false, 2, 2, {25, 1}},
    {based, 25, 0x00, false, 1, 720, 480, false, 4, 1, {30000, 1001}},
    {based, 25, 0x00, true, 1, 720, 576, false, 4, 1, {25, 1}},
    {based, 50, 0x04, false, 2, 720, 480, false, 2, 1, {30000, 1001}},
    {based, 50, 0x04, true, 2, 720, 576, false, 2, 1, {25, 1}},
    {based, 100, 0x14, false, 4, 1920, 1080, false, 2, 1, {30000, 1001}},
    {based, 100, 0x14, true, 4, 1920, 1080, false, 2, 1, {25, 1}},
    {based, 100, 0x18, false, 2, 1280, 720, true, 2, 1, {60000, 1001}},
    {based, 100, 0x18, true, 2, 1280, 720, true, 2, 1, {50, 1}},
};

/// 625 lines of 4:1:1 have a type of their own with some writers.
constexpr std::uint8_t otherType25 = 0x01;

} // namespace

/// Rates above 25 Mb/s are DV-based, whatever else is told.
Format const* Format::find(bool isIEC, bool is50, std::uint8_t signalType) {
    std::uint8_t const type = signalType == otherType25 ? std::uint8_t{0} : signalType;
    auto const family = isIEC && type == 0 ? Family::IEC : Family::DVBased;
    auto const* const found = std::find_if(std::begin(formats), std::end(formats), [&](Format const& format) {
        return format.family == family && format.is50 == is50 && format.signalType == type;
    });
    return found != std::end(formats) ? found : nullptr;
}

} // namespace MXF::Zelm::Essence::DV
