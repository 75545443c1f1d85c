#include "SilentTail.h"

#include <MXF/Zelm/Templates/SafeCast.h>

#include <algorithm>
#include <limits>

namespace Zelm {

using namespace MXF::Zelm;

SilentTail::SilentTail(Templates::SharedPtr<DataIO::SliceSource> samples,
                       Essence::Wave::WaveFormat const& format, std::optional<Utils::SampleCadence> cadence,
                       Extent extent)
    : samples_(std::move(samples)), format_(format), cadence_(cadence), extent_(extent) {}

bool SilentTail::endOfStream() const { return samples_->endOfStream() && silenceWanted(1) == 0; }

/// Bytes of silence that follow what has been given, `size` at most.
std::uint64_t SilentTail::silenceWanted(std::uint64_t size) const {
    if (extent_ == Extent::Endless)
        return size;
    std::uint64_t const align = format_.blockAlign();
    if (!cadence_)
        return std::min(size, (align - given_ % align) % align);
    std::uint64_t const instants = (given_ + align - 1) / align;
    std::uint64_t unit = instants / cadence_->mostSamples();
    while (cadence_->samplesBefore(unit) < instants)
        ++unit;
    return std::min(size, cadence_->samplesBefore(unit) * align - given_);
}

std::uint64_t SilentTail::read(std::uint64_t size, DataIO::Chain& chain) {
    std::uint64_t done = samples_->read(size, chain);
    given_ += done;
    if (done == size)
        return done;
    auto const silent = Templates::safeCast<std::size_t>(silenceWanted(size - done));
    unsigned char const value = format_.sampleBytes == 1 ? 0x80 : 0;
    chain.append(DataIO::Slice::adopt(std::vector<unsigned char>(silent, value)));
    given_ += silent;
    silence_ += silent;
    return done + silent;
}

std::uint64_t SilentTail::skip(std::uint64_t size) {
    DataIO::Chain passed;
    return read(size, passed);
}

} // namespace Zelm
