/// Hashes of edit units, to hold what a file gives against what went into it.
#pragma once

#include <MXF/Zelm/DataIO/Chain.h>

#include <optional>
#include <utility>
#include <vector>

namespace Zelm {

/// Of the bytes, however they are cut. To notice damage, not to withstand forgery.
std::uint64_t hashOf(MXF::Zelm::DataIO::Chain const& bytes);

/// One for each edit unit; of more of them than `mostSlots` one for two, four, … together, so that a file of
/// any length takes half a megabyte. The order of adding does not count.
class UnitHashes {
public:
    static constexpr std::size_t mostSlots = std::size_t{1} << 16;

    void add(std::uint64_t unit, std::uint64_t hash);

    /// Edit units from the first to before the last of those which differ first; none when all are the same.
    static std::optional<std::pair<std::uint64_t, std::uint64_t>> firstDifference(UnitHashes a, UnitHashes b);

private:
    void halve();

    std::vector<std::uint64_t> slots_;
    unsigned shift_ = 0; // a slot stands for 2^shift edit units
};

/// The same of a stream of bytes, for essence that is not cut into edit units: of pieces of one size.
class StreamHashes {
public:
    static constexpr std::uint64_t pieceSize = std::uint64_t{1} << 16;

    void add(MXF::Zelm::DataIO::Chain bytes);

    /// With what is left behind the last whole piece.
    UnitHashes finish();

private:
    MXF::Zelm::DataIO::Chain rest_;
    UnitHashes hashes_;
    std::uint64_t pieces_ = 0;
};

} // namespace Zelm
