#include "StreamSound.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// Bytes that are given at once, at most.
constexpr std::uint64_t pieceSize = std::uint64_t{1} << 16;

} // namespace

StreamSound::StreamSound(Source samples, Essence::Wave::WaveFormat const& format, std::int64_t shift,
                         Note note)
    : samples_(std::move(samples)), silentByte_(format.sampleBytes == 1 ? 0x80 : 0), note_(std::move(note)) {
    (shift > 0 ? silence_ : dropped_) =
        static_cast<std::uint64_t>(shift > 0 ? shift : -shift) * format.blockAlign();
}

bool StreamSound::nothingLeft() const { return isCut_ || (silence_ == 0 && samples_->endOfStream()); }

bool StreamSound::produce(DataIO::Chain& chain) {
    return silence_ != 0 ? giveSilence(chain) : !isCut_ && readSamples(chain);
}

bool StreamSound::giveSilence(DataIO::Chain& chain) {
    auto const size = std::min(silence_, pieceSize);
    chain.append(
        DataIO::Slice::adopt(std::vector<unsigned char>(static_cast<std::size_t>(size), silentByte_)));
    silence_ -= size;
    return true;
}

bool StreamSound::readSamples(DataIO::Chain& chain) {
    std::uint64_t const before = chain.size();
    try {
        if (dropped_ != 0)
            samples_->skip(std::exchange(dropped_, 0));
        samples_->read(pieceSize, chain);
    } catch (Exceptions::InvalidLength const& failure) {
        isCut_ = true;
        note_("ends early: " + failure.message());
    }
    return chain.size() != before;
}

} // namespace Zelm
