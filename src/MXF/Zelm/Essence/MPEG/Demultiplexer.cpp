#include "MXF/Zelm/Essence/MPEG/Demultiplexer.h"

#include "MXF/Zelm/Essence/MPEG/DemultiplexerCore.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <utility>

namespace MXF::Zelm::Essence::MPEG {

namespace {

constexpr std::uint64_t largestPacket = std::uint64_t{64} << 20;

} // namespace

ElementaryStream::ElementaryStream(Templates::SharedPtr<DemultiplexerCore> core, std::size_t index)
    : core_(std::move(core)), index_(index) {}

ElementaryStream::~ElementaryStream() { core_->collector(index_).close(); }

StreamInfo const& ElementaryStream::info() const { return core_->streams()[index_]; }

bool ElementaryStream::nothingLeft() const {
    return core_->hasEnded() && core_->collector(index_).ready().empty();
}

bool ElementaryStream::produce(DataIO::Chain& chain) {
    if (!core_->fill(index_))
        return false;
    auto piece = core_->collector(index_).take();
    if (!first_.presentation)
        first_ = piece.timestamps;
    follow(piece.timestamps);
    chain.append(DataIO::Slice::adopt(std::move(piece.bytes)));
    return true;
}

/// Pictures are decoded in the order of their packets; what has no time for it is so when it is shown. The
/// clock starts anew after 33 bits.
void ElementaryStream::follow(Timestamps const& timestamps) {
    constexpr std::int64_t ticksPerSecond = 90000, turn = std::int64_t{1} << 33;
    auto const decoding = timestamps.decoding ? timestamps.decoding : timestamps.presentation;
    if (!decoding)
        return;
    auto const before = std::exchange(lastDecoding_, decoding);
    if (!before)
        return;
    auto ticks = static_cast<std::int64_t>(*decoding) - static_cast<std::int64_t>(*before);
    ticks += ticks < -turn / 2 ? turn : ticks > turn / 2 ? -turn : 0;
    if (ticks >= -ticksPerSecond && ticks <= 2 * ticksPerSecond)
        return;
    if (leaps_++ == 0)
        firstLeap_ = static_cast<double>(ticks) / static_cast<double>(ticksPerSecond);
}

std::vector<StreamFault> const& ElementaryStream::faults() const { return core_->faults(); }

std::uint64_t ElementaryStream::faultCount() const { return core_->faultCount(); }

bool ElementaryStream::nextPacket(PESPacket& packet) {
    packet = {};
    if (!core_->fill(index_))
        return false;
    auto& ready = core_->collector(index_).ready();
    packet.timestamps = ready.front().timestamps;
    do {
        if (packet.payload.size() > largestPacket)
            throw Exceptions::InvalidLength("A PES packet is longer than " + std::to_string(largestPacket) +
                                            " bytes");
        packet.payload.append(next(~std::uint64_t{0}));
    } while (core_->fill(index_) && !ready.front().beginsPacket);
    return true;
}

Demultiplexer::Demultiplexer(Templates::SharedPtr<DemultiplexerCore> core) : core_(std::move(core)) {}

Demultiplexer::~Demultiplexer() = default;

std::vector<StreamInfo> const& Demultiplexer::streams() const { return core_->streams(); }

std::vector<StreamFault> const& Demultiplexer::faults() const { return core_->faults(); }

std::uint64_t Demultiplexer::faultCount() const { return core_->faultCount(); }

Templates::SharedPtr<ElementaryStream> Demultiplexer::take(std::size_t index) {
    core_->take(index);
    return std::make_shared<ElementaryStream>(core_, index);
}

Templates::SharedPtr<ElementaryStream> Demultiplexer::takeFirst(bool (StreamInfo::*isWanted)() const) {
    for (std::size_t i = 0; i < streams().size(); ++i)
        if ((streams()[i].*isWanted)())
            return core_->isTaken(i) ? nullptr : take(i);
    return nullptr;
}

Templates::SharedPtr<ElementaryStream> Demultiplexer::takeVideo() { return takeFirst(&StreamInfo::isVideo); }

Templates::SharedPtr<ElementaryStream> Demultiplexer::takeSound() { return takeFirst(&StreamInfo::isSound); }

} // namespace MXF::Zelm::Essence::MPEG
