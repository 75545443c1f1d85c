/// The labels of operational patterns (SMPTE 377M, 378M, 390M to 393M, 407, 408).
///
///     byte   0  06 0E 2B 34 04 01 01 vv 0D 01 02 01   vv: version, 02 for OP-Atom
///           12  item complexity; 10 for OP-Atom
///           13  package complexity
///           14  qualifiers: bit 0 always 1, 1 external essence, 2 no stream file, 3 multi-track
///           15  00
#pragma once

#include "MXF/Zelm/KLV/Key.h"

namespace MXF::Zelm::Metadata::Structural::OperationalPatterns {

using namespace KLV::Literals;

/// How the items of the material package follow one another.
enum class Items : unsigned char {
    Single = 1,   ///< one item of the whole length
    Playlist = 2, ///< one after the other, each used whole
    Edit = 3,     ///< parts of them
};

/// How many packages an item takes.
enum class Packages : unsigned char {
    Single = 1,    ///< "a": one
    Ganged = 2,    ///< "b": several at once
    Alternate = 3, ///< "c": several to choose from
};

struct Qualifiers {
    bool externalEssence = false; ///< some essence is outside the file
    bool streamFile = true;  ///< pictures, sound and data are interleaved, so that the file can be streamed
    bool multiTrack = false; ///< an essence container holds several essence tracks
};

/// Any of the patterns 1a to 3c.
constexpr KLV::Key generalized(Items items, Packages packages, Qualifiers const& qualifiers) {
    KLV::Key label = "060E2B34.04010101.0D010201.00000100"_key;
    label[12] = static_cast<unsigned char>(items);
    label[13] = static_cast<unsigned char>(packages);
    label[14] =
        static_cast<unsigned char>(0x01 | (qualifiers.externalEssence ? 0x02 : 0) |
                                   (qualifiers.streamFile ? 0 : 0x04) | (qualifiers.multiTrack ? 0x08 : 0));
    return label;
}

/// One item of one package (SMPTE 378M): the plainest pattern.
constexpr KLV::Key op1a(Qualifiers const& qualifiers) {
    return generalized(Items::Single, Packages::Single, qualifiers);
}

/// What the material package of an OP-Atom file has.
enum class Atom : unsigned char {
    OneTrackOneClip = 0,
    OneTrackSeveralClips = 1,
    SeveralTracksOneClipEach = 2,
    SeveralTracksSeveralClips = 3,
};

/// One essence track a file (SMPTE 390M).
constexpr KLV::Key opAtom(Atom atom) {
    KLV::Key label = "060E2B34.04010102.0D010201.10000000"_key;
    label[13] = static_cast<unsigned char>(atom);
    return label;
}

/// Whether a label is that of a pattern, whatever its version and qualifiers.
constexpr bool isSamePattern(KLV::Key const& a, KLV::Key const& b) {
    for (int i = 0; i < 14; ++i)
        if (a[i] != b[i] && i != 7)
            return false;
    return true;
}

} // namespace MXF::Zelm::Metadata::Structural::OperationalPatterns
