/// Takes PCM out of SMPTE 302M packets and SMPTE 331M elements, in one piece and in small ones, with the same
/// result; what a stream of packets gives comes back out of packets of its own. Packets that are wrapped as
/// they are have the bytes of the stream from its beginning on.
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Essence/AES3/S302M/Source.h"
#include "MXF/Zelm/Essence/Converters/FrameSources.h"
#include "MXF/Zelm/GenericContainer/Analyzers/S302MAnalyzer.h"
#include "support.h"

#include <algorithm>

using namespace MXF::Zelm;
using namespace MXF::Zelm::Essence;

namespace {

using Source = Templates::SharedPtr<DataIO::SliceSource>;

Source sourceOf(DataIO::Chain chain) { return std::make_shared<DataIO::BufferSliceSource>(std::move(chain)); }

/// What a source gives before it ends or throws.
DataIO::Chain contentOf(DataIO::SliceSource& source, std::uint64_t piece) {
    DataIO::Chain chain;
    Fuzz::passingOverBadInput([&] {
        while (source.read(piece, chain) != 0)
            continue;
    });
    Fuzz::require(source.absoluteOffset() == chain.size());
    return chain;
}

void useElements(DataIO::Chain const& whole, DataIO::Chain const& pieces) {
    Converters::S331MToPCM one(sourceOf(whole), {8, 20}), other(sourceOf(pieces), {8, 20});
    Fuzz::require(contentOf(one, ~0ull) == contentOf(other, 777));
}

void usePackets(DataIO::Chain const& whole, DataIO::Chain const& pieces) {
    constexpr auto in24Bits = AES3::S302M::Source::TwentyBits::In24Bits;
    AES3::S302M::Source one(sourceOf(whole), in24Bits), other(sourceOf(pieces), in24Bits);
    auto const pcm = contentOf(one, ~0ull);
    Fuzz::require(pcm == contentOf(other, 777));
    if (pcm.empty())
        return;
    auto const again = std::make_shared<Converters::PCMToS302M>(
        sourceOf(pcm), AES3::S302M::PacketWriter(one.info(), {30000, 1001}));
    AES3::S302M::Source back(again, in24Bits);
    Fuzz::require(contentOf(back, 999) == pcm);
}

void wrapPackets(DataIO::Chain const& whole, DataIO::Chain const& pieces) {
    GenericContainer::S302MAnalyzer analyzer(sourceOf(pieces));
    DataIO::Chain wrapped;
    Fuzz::passingOverBadInput([&] {
        analyzer.editRate({25, 1});
        if (!analyzer.preload())
            return;
        for (GenericContainer::EditUnit unit; analyzer.nextEditUnit(unit);)
            wrapped.append(unit.data);
    });
    Fuzz::require(wrapped.size() <= whole.size() && wrapped == whole.part(0, wrapped.size()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    DataIO::Chain const whole(DataIO::Slice::copyOf(data, size));
    DataIO::Chain pieces;
    for (std::size_t at = 0; at < size; at += 5)
        pieces.append(DataIO::Slice::copyOf(data + at, std::min<std::size_t>(5, size - at)));
    usePackets(whole, pieces);
    useElements(whole, pieces);
    wrapPackets(whole, pieces);
    return 0;
}
