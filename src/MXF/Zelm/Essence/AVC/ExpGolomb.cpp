#include "MXF/Zelm/Essence/AVC/ExpGolomb.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <bit>
#include <string>

namespace MXF::Zelm::Essence::AVC {

namespace {

/// As many zeros as the number behind them has bits beside the first.
std::uint32_t readCode(DataIO::BitSliceReader& bits) {
    auto const ahead = static_cast<std::uint32_t>(bits.peek(32));
    auto const zeros = static_cast<unsigned>(std::countl_zero(ahead));
    if (zeros >= 32)
        throw Exceptions::InvalidValue("A number of more than 32 bits in a header of AVC");
    bits.skip(zeros);
    return static_cast<std::uint32_t>(bits.read(zeros + 1) - 1);
}

} // namespace

std::uint32_t readUnsigned(DataIO::BitSliceReader& bits, std::uint32_t most) {
    std::uint32_t const value = readCode(bits);
    if (value > most)
        throw Exceptions::InvalidValue(std::to_string(value) + " in a header of AVC, at most " +
                                       std::to_string(most) + " expected");
    return value;
}

std::int32_t readSigned(DataIO::BitSliceReader& bits) {
    std::int64_t const code = readCode(bits);
    return static_cast<std::int32_t>(code % 2 != 0 ? (code + 1) / 2 : -(code / 2));
}

} // namespace MXF::Zelm::Essence::AVC
