#include "MXF/Zelm/MXFIO/WalkedPictures.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;

namespace {

/// More of an edit unit is not read to find a picture in it.
constexpr std::uint64_t mostRead = std::uint64_t{16} << 20;

void take(Essence::PictureOrder& order, std::vector<Essence::PictureEntry>& entries) {
    while (auto const entry = order.next())
        entries.push_back(*entry);
}

} // namespace

/// MPEG elementary streams (SMPTE 381M and its parts), and D-10 (386M).
bool WalkedPictures::isCoded(ElementKey key) {
    if (key.itemType() == ElementKey::CPPicture)
        return key.elementType() == 0x01;
    return key.itemType() == ElementKey::Picture && key.elementType() >= 0x05 && key.elementType() <= 0x07;
}

void WalkedPictures::add(BodyStream& stream, PacketHead const* element) {
    confirm();
    constexpr auto typeI = Essence::Picture::Type::I;
    constexpr auto noAccess = Essence::Picture::Access::None;
    last_ = Last{{typeI, false, noAccess, false, false, false, lastOrder_}, false};
    if (element == nullptr)
        return;
    std::uint64_t const most = std::min(element->length, mostRead);
    std::uint64_t size = std::min(most, Essence::PictureParser::usualHead);
    for (;; size = std::min(most, 8 * size)) {
        DataIO::Chain head;
        stream.seek(element->streamOffset + element->headLength);
        bool const isAll = stream.read(size, head) != size || size == most;
        if (parser_.take(head, isAll) || isAll)
            break;
    }
    if (parser_.picture())
        last_ = Last{*parser_.picture(), true};
    lastOrder_ = last_->picture.order;
}

void WalkedPictures::confirm() {
    if (!last_)
        return;
    order_.add(last_->picture);
    ++(last_->isFound ? found_ : unread_);
    last_.reset();
    take(order_, entries_);
}

std::vector<Essence::PictureEntry> WalkedPictures::entries() const {
    auto entries = entries_;
    auto order = order_;
    if (last_)
        order.add(last_->picture);
    order.finish();
    take(order, entries);
    return entries;
}

} // namespace MXF::Zelm::MXFIO
