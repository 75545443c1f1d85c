/// From coded pictures in stored order to what index entries say of them: flags, offsets in time and to key
/// frames (SMPTE 377M, 381M).
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"

#include <cstdint>
#include <deque>
#include <optional>

namespace MXF::Zelm::Essence {

/// One picture, as its headers tell.
struct MXFZELM_EXPORT Picture {
    enum class Type : std::uint8_t { I, P, B };

    /// Whether decoders may begin here.
    enum class Access : std::uint8_t {
        None,

        /// What is stored behind and shown before it may need earlier pictures.
        Open,

        /// All that is shown from here on can be decoded.
        Full
    };

    Type type = Type::I;

    /// Pictures that are stored and shown behind it need none before it.
    bool isKey = true;

    Access access = Access::Full;

    /// No picture behind needs one before this; of a key picture.
    bool isClosed = true;

    bool hasSequenceHeader = false;

    /// `order` counts anew from here: all pictures that were stored before are shown before those to come.
    bool beginsCount = false;

    /// Rises in the order in which pictures are shown; numbers may be left out.
    std::int64_t order = 0;
};

/// What an index entry says beside offsets in bytes. The temporal offset is that of the display position with
/// the entry's number.
struct MXFZELM_EXPORT PictureEntry {
    /// Bits 1 and 0 of the flags, by SMPTE 381M: 0 I, 2 P, 3 B. The other bits are those of
    /// `IndexTables::IndexEntry::Flag`.
    static constexpr std::uint8_t typeMask = 0x03;

    std::int8_t temporalOffset = 0;
    std::int8_t keyFrameOffset = 0;
    std::uint8_t flags = 0;

    friend bool operator==(PictureEntry const&, PictureEntry const&) = default;
};

/// The entry of a picture, and where it goes itself.
struct MXFZELM_EXPORT PlacedPicture : PictureEntry {
    /// Pictures from the place where it is stored to the one at which it is shown: above 0 for one that waits
    /// for others stored behind it, below 0 for those.
    std::int32_t shownLater = 0;
};

/// Takes the pictures one by one and gives the entries in the same order, as many, each as soon as the
/// pictures are known that tell when it is shown: those of a group when the next one has come.
///
///     for (each edit unit) {
///         order.add(picture);
///         while (auto const entry = order.next()) …
///     }
///     order.finish();
///     while (auto const entry = order.next()) …
///
/// Where it is known how many pictures wait for others at most, entries come as soon as so many more have
/// come.
///
/// Display positions count pictures: where the order leaves numbers out, positions do not.
class MXFZELM_EXPORT PictureOrder : public Platform::Allocated {
public:
    /// Pictures that wait at most. A group that is longer is cut where it can be.
    static constexpr std::size_t mostWaiting = 600;

    /// As above, while it is known how many wait.
    static constexpr std::size_t mostWaitingForFew = 128;

    /// As many pictures at most stand before a picture and are shown behind it; absent when it is not known,
    /// as at first. 0 where pictures are shown in stored order. Holds for pictures to come.
    void mostReordered(std::optional<std::size_t> pictures) { mostReordered_ = pictures; }

    /// The next picture in stored order.
    void add(Picture const& picture);

    /// No more pictures come, or those that come belong to nothing that came.
    void finish();

    /// The entry of the next picture whose entry was not given; absent while it is not known.
    std::optional<PlacedPicture> next();

private:
    struct Waiting {
        Picture picture;
        std::int64_t keyDistance = 0; // to the picture where decoding must begin, 0 or less
        bool usesEarlier = true;      // of a B picture: it is predicted from earlier pictures too
        bool hasLeading = false;      // pictures that are stored behind it are shown before it
        bool isShown = false;         // its place in display order is known

        PlacedPicture place() const;
    };

    void findKey(Waiting& waiting);
    void markLeading();
    void takeGroups();
    void takeShown();
    void cutLongGroup();
    bool isCut(std::size_t at) const;
    void give(std::size_t count);

    std::deque<Waiting> waiting_;
    std::deque<PlacedPicture> ready_;
    std::optional<std::size_t> mostReordered_;
    std::size_t mark_ = 0;        // the last key picture that waits, but the first
    std::int64_t count_ = 0;      // pictures that came
    std::int64_t key_ = -1;       // stored position of the last key picture, -1 for none
    std::int64_t keyBefore_ = -1; // and of the one before
    Picture keyPicture_;
};

} // namespace MXF::Zelm::Essence
