/// What the pictures of a walk tell for index entries.
#pragma once

#include "MXF/Zelm/Essence/PictureParser.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/MXFIO/BodyStream.h"

#include <vector>

namespace MXF::Zelm::MXFIO {

/// The last edit unit may be taken back: it waits until another comes.
class WalkedPictures {
public:
    /// True for elements that hold MPEG video or AVC.
    static bool isCoded(GenericContainer::ElementKey key);

    /// The next edit unit. `element` is its picture element, null when it has none; reads its head, and
    /// leaves the stream anywhere.
    void add(BodyStream& stream, PacketHead const* element);

    /// Forgets the last edit unit.
    void removeLast() { last_.reset(); }

    bool any() const { return found_ != 0 || (last_ && last_->isFound); }
    std::uint64_t unread() const { return unread_ + (last_ && !last_->isFound ? 1 : 0); }

    /// The entries of all edit units.
    std::vector<Essence::PictureEntry> entries() const;

private:
    struct Last {
        Essence::Picture picture;
        bool isFound;
    };
    void confirm();

    Essence::PictureParser parser_;
    Essence::PictureOrder order_;
    std::vector<Essence::PictureEntry> entries_;
    std::optional<Last> last_;
    std::int64_t lastOrder_ = 0;
    std::uint64_t found_ = 0, unread_ = 0;
};

} // namespace MXF::Zelm::MXFIO
