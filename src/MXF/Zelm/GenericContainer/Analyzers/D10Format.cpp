#include "MXF/Zelm/GenericContainer/Analyzers/D10Format.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;

constexpr D10Format formats[] = {
    {1, 608, 50, 250000}, {2, 512, 50, 208541}, {3, 608, 40, 200000},
    {4, 512, 40, 166833}, {5, 608, 30, 150000}, {6, 512, 30, 125125},
};

constexpr std::uint8_t profile422AtMainLevel = 0x85;

Types::UniversalLabel withCode(KLV::Key key, std::size_t at, std::uint8_t code) {
    key.rawBuffer()[at] = code;
    return key;
}

template <class Wanted>
D10Format const* findFormat(Wanted wanted) {
    auto const* const found = std::find_if(std::begin(formats), std::end(formats), wanted);
    return found != std::end(formats) ? found : nullptr;
}

} // namespace

Templates::Rational<int> D10Format::rate() const {
    return is625() ? Templates::Rational<int>{25, 1} : Templates::Rational<int>{30000, 1001};
}

Types::UniversalLabel D10Format::containerLabel() const {
    return withCode("060E2B34.04010101.0D010301.02010001"_key, 14, code);
}

Types::UniversalLabel D10Format::codingLabel() const {
    return withCode("060E2B34.04010101.04010202.01020100"_key, 15, code);
}

D10Format const* D10Format::find(Essence::MPEG::SequenceHeader const& sequence) {
    if (!sequence.extension || sequence.extension->profileAndLevel != profile422AtMainLevel ||
        sequence.extension->progressive || sequence.width() != 720)
        return nullptr;
    return findFormat([&](D10Format const& format) {
        return format.lines == sequence.height() && format.rate() == sequence.frameRate() &&
               sequence.bitRate() == std::uint64_t{format.megabits} * 1'000'000;
    });
}

D10Format const* D10Format::find(unsigned signalLines, unsigned megabits) {
    return findFormat([&](D10Format const& format) {
        return signalLines == (format.is625() ? 625u : 525u) && format.megabits == megabits;
    });
}

} // namespace MXF::Zelm::GenericContainer
