/// Changes samples on their way from the essence of a file into Wave files.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"

#include <vector>

namespace MXF::Zelm::Essence::Converters {

/// Appends 24-bit samples, little-endian, with their lowest four bits cleared: of AES3 sound (SMPTE 382M)
/// whose auxiliary bits hold no part of the sample. Bytes of a sample that is not whole stay as they are.
MXFZELM_EXPORT void appendWithoutAuxiliaryBits(DataIO::Chain const& samples,
                                               std::vector<unsigned char>& result);

/// Puts the channels of several sounds side by side: of each instant those of the first sound, then those of
/// the second, and so on. Keeps what one sound is ahead of the others.
class MXFZELM_EXPORT Interleaver : public Platform::Allocated {
public:
    /// Bytes of one instant of each sound, at least 1 each.
    explicit Interleaver(std::vector<std::uint32_t> instantSizes);
    ~Interleaver();

    /// Takes samples of a sound; they may be cut anywhere.
    void add(std::size_t sound, DataIO::Chain samples);

    /// Appends the instants that are there of all sounds.
    void takeInto(std::vector<unsigned char>& result);

    /// Lengthens the shorter sounds to the longest by bytes of silence: 0x80 for samples of one byte, else 0.
    void fill(unsigned char silence);

    /// Bytes that wait for other sounds.
    std::uint64_t waiting() const;

private:
    struct Sound {
        std::uint32_t instantSize;
        DataIO::Chain samples;
    };

    std::vector<Sound> sounds_;
    std::uint32_t instantSize_ = 0; // of all
};

} // namespace MXF::Zelm::Essence::Converters
