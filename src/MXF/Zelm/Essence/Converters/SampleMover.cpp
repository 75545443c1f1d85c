#include "MXF/Zelm/Essence/Converters/SampleMover.h"

#include "MXF/Zelm/Essence/Converters/Words.h"

#include <algorithm>

namespace MXF::Zelm::Essence::Converters {

namespace {

/// Steps that are known when this is compiled make the loop a fast one.
template <class From, class To>
void moveSide(const unsigned char* from, unsigned char* to, std::size_t count, std::uint32_t mask) {
    for (std::size_t i = 0; i < count; ++i)
        To::store(From::load(from + i * From::bytes) & mask, to + i * To::bytes);
}

template <class From, class To>
void moveSamples(const unsigned char* from, std::size_t step, unsigned char* to, std::size_t toStep,
                 std::size_t count, std::uint32_t mask) {
    if (step == From::bytes && toStep == To::bytes)
        return moveSide<From, To>(from, to, count, mask);
    for (; count > 0; --count, from += step, to += toStep)
        To::store(From::load(from) & mask, to);
}

using L2 = Word<2, std::endian::little>;
using L3 = Word<3, std::endian::little>;
using L4 = Word<4, std::endian::little>;
using B2 = Word<2, std::endian::big>;
using B3 = Word<3, std::endian::big>;
using B4 = Word<4, std::endian::big>;

/// Row and column of a format in the table of moves.
std::size_t place(PCMFormat const& format) {
    return format.sampleSize() - 2 + (format.byteOrder == PCMFormat::ByteOrder::Big ? 3 : 0);
}

} // namespace

SampleMover::Move const SampleMover::moves[6][6] = {
    {moveSamples<L2, L2>, moveSamples<L2, L3>, moveSamples<L2, L4>, moveSamples<L2, B2>, moveSamples<L2, B3>,
     moveSamples<L2, B4>},
    {moveSamples<L3, L2>, moveSamples<L3, L3>, moveSamples<L3, L4>, moveSamples<L3, B2>, moveSamples<L3, B3>,
     moveSamples<L3, B4>},
    {moveSamples<L4, L2>, moveSamples<L4, L3>, moveSamples<L4, L4>, moveSamples<L4, B2>, moveSamples<L4, B3>,
     moveSamples<L4, B4>},
    {moveSamples<B2, L2>, moveSamples<B2, L3>, moveSamples<B2, L4>, moveSamples<B2, B2>, moveSamples<B2, B3>,
     moveSamples<B2, B4>},
    {moveSamples<B3, L2>, moveSamples<B3, L3>, moveSamples<B3, L4>, moveSamples<B3, B2>, moveSamples<B3, B3>,
     moveSamples<B3, B4>},
    {moveSamples<B4, L2>, moveSamples<B4, L3>, moveSamples<B4, L4>, moveSamples<B4, B2>, moveSamples<B4, B3>,
     moveSamples<B4, B4>}};

SampleMover::SampleMover(PCMFormat const& from, PCMFormat const& to) : from_(from), to_(to) {
    requireValid(from);
    requireValid(to);
    mask_ = ~std::uint32_t{0} << (32 - std::min(from.bitsPerSample, to.bitsPerSample));
    move_ = moves[place(from)][place(to)];
}

void SampleMover::move(const unsigned char* from, unsigned channel, std::size_t instants, unsigned char* to,
                       unsigned toChannel) const {
    move_(from + channel * from_.sampleSize(), from_.instantSize(), to + toChannel * to_.sampleSize(),
          to_.instantSize(), instants, mask_);
}

void SampleMover::moveAll(const unsigned char* from, std::size_t instants, unsigned char* to) const {
    move_(from, from_.sampleSize(), to, to_.sampleSize(), instants * from_.channels, mask_);
}

} // namespace MXF::Zelm::Essence::Converters
