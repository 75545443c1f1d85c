/// The six forms of D-10 (SMPTE 356M, 386M).
#pragma once

#include "MXF/Zelm/Essence/MPEG/SequenceHeader.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::GenericContainer {

/// One of them. A value.
struct MXFZELM_EXPORT D10Format {
    std::uint8_t code;       ///< 1 to 6, as in the labels
    std::uint32_t lines;     ///< coded: 608 (625 lines) or 512 (525 lines)
    std::uint32_t megabits;  ///< a second: 50, 40 or 30
    std::uint32_t frameSize; ///< bytes of each picture element

    bool is625() const { return lines == 608; }

    /// Pictures a second.
    Templates::Rational<int> rate() const;

    /// Of the essence container with its defined template, and of the picture coding.
    Types::UniversalLabel containerLabel() const;
    Types::UniversalLabel codingLabel() const;

    /// The form of a stream by its sequence header; null when it is none of D-10.
    static D10Format const* find(Essence::MPEG::SequenceHeader const& sequence);

    /// By lines of the signal, 625 or 525, and bit rate; null when there is none.
    static D10Format const* find(unsigned signalLines, unsigned megabits);
};

/// The alignment grid of D-10 files, in bytes.
inline constexpr unsigned int d10KAGSize = 512;

} // namespace MXF::Zelm::GenericContainer
