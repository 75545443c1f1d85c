/// The kinds of input that `zelm wrap` knows: one row each, which recognises it by its first bytes and makes
/// its tracks. A further kind is a further row.
#pragma once

#include "WrapTracks.h"

namespace Zelm {

/// An input as recognisers see it.
struct InputHead {
    static constexpr std::size_t size = std::size_t{1} << 16;

    std::string name;
    std::uint64_t fileSize = 0;
    MXF::Zelm::DataIO::Slice bytes; ///< the first ones

    /// Reads them. Throws Exceptions::SystemError.
    explicit InputHead(std::string const& name);
};

struct InputKind {
    const char* name; ///< for people

    /// Looks at the first bytes; may look further into the file.
    bool (*recognises)(InputHead const& head, TrackMaking const& making);

    /// Its edit rate is in the input, and rules that of the content packages.
    bool hasRate;

    /// Opens the input once more and appends its tracks. Throws CannotWrap, and what analyzers throw.
    void (*addTracks)(InputHead const& head, TrackMaking& making, std::vector<WrapTrack>& tracks);
};

/// The kind of an input. Throws CannotWrap when nobody knows it.
InputKind const& kindOf(InputHead const& head, TrackMaking const& making);

} // namespace Zelm
