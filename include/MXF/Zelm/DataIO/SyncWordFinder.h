/// Where the units of an elementary stream begin.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"

#include <cstddef>
#include <optional>
#include <span>

namespace MXF::Zelm::DataIO {

/// What stands before every start code of MPEG video and systems (ISO/IEC 13818).
inline constexpr unsigned char startCodePrefix[3] = {0, 0, 1};

/// Finds every place where a sync word of 1 to 8 bytes stands in a stream, also where slices cut it: the
/// start code prefix 00 00 01 of MPEG, the sync words of audio streams. The stream comes in as slices of any
/// size; the finder holds them until they are searched and remembers no more than a sync word of what went
/// before.
///
///     SyncWordFinder finder(startCodePrefix);
///     while (source.read(size, piece) …) {
///         finder.push(piece);
///         while (auto const position = finder.next()) …
///     }
///
/// Occurrences that overlap are all found, in rising order. Sync words stand at whole bytes.
class MXFZELM_EXPORT SyncWordFinder : public Platform::Allocated {
public:
    static constexpr std::size_t longestWord = 8;

    /// Throws Exceptions::InvalidValue for a word that is empty or longer than 8 bytes. `position` is where
    /// the first byte to come stands in its stream.
    explicit SyncWordFinder(std::span<const unsigned char> word, std::uint64_t position = 0);

    /// The next bytes of the stream.
    void push(Slice slice);
    void push(Chain const& chain);

    /// Position in the stream of the first byte of the next sync word; none when all bytes that are there are
    /// searched. More may then be pushed, and the search goes on behind the last one that was found.
    std::optional<std::uint64_t> next();

    /// No sync word that is still to be found begins before this position.
    std::uint64_t searchedTo() const;

    /// Forgets all bytes and begins anew at `position`, after a jump.
    void reset(std::uint64_t position);

private:
    std::optional<std::uint64_t> searchBorder(Slice const& slice);
    std::optional<std::uint64_t> searchInside(Slice const& slice);
    void leave(Slice const& slice);

    unsigned char word_[longestWord] = {};
    std::size_t wordSize_;
    SliceList pending_;
    std::uint64_t position_;                   // of the first pending slice
    std::size_t searched_ = 0;                 // places in it that are done
    unsigned char tail_[longestWord - 1] = {}; // the bytes before it, at most the word less one
    std::size_t tailSize_ = 0;
    std::size_t tailSearched_ = 0; // places in the tail that are done
};

} // namespace MXF::Zelm::DataIO
