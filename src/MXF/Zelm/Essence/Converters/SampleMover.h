/// Moves samples between PCM formats.
#pragma once

#include "MXF/Zelm/Essence/PCMFormat.h"

#include <cstdint>

namespace MXF::Zelm::Essence::Converters {

/// Moves single channels from instants of one format into instants of another.
class SampleMover {
public:
    SampleMover(PCMFormat const& from, PCMFormat const& to);

    /// Copies channel `channel` of `instants` instants to channel `toChannel`.
    void move(const unsigned char* from, unsigned channel, std::size_t instants, unsigned char* to,
              unsigned toChannel) const;

    /// Copies all channels, of which both formats have as many.
    void moveAll(const unsigned char* from, std::size_t instants, unsigned char* to) const;

private:
    /// `count` samples, `step` bytes from one to the next, kept where `mask` is set.
    using Move = void (*)(const unsigned char* from, std::size_t step, unsigned char* to, std::size_t toStep,
                          std::size_t count, std::uint32_t mask);

    static Move const moves[6][6];

    PCMFormat from_, to_;
    std::uint32_t mask_; // the bits that both formats have
    Move move_;
};

} // namespace MXF::Zelm::Essence::Converters
