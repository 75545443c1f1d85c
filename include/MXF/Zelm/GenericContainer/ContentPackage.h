/// The essence of one edit unit as it stands in a generic container (SMPTE 379M): a system item, then the
/// elements of the pictures, sounds and data, each a KLV packet, fill items between them.
#pragma once

#include "MXF/Zelm/DataIO/Chain.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/Templates/Containers.h"

namespace MXF::Zelm::GenericContainer {

/// One KLV packet of a content package.
struct MXFZELM_EXPORT Element {
    KLV::Key key = {};

    /// Where it begins, in the source that it was read from.
    std::uint64_t offset = 0;

    /// Bytes of its key and length.
    std::uint32_t headLength = 0;

    /// Bytes of its value.
    std::uint64_t length = 0;

    /// The value; empty when it was passed over.
    DataIO::Chain data = {};

    std::uint64_t valueOffset() const { return offset + headLength; }
    ElementKey elementKey() const { return ElementKey(key); }
    std::uint32_t trackNumber() const { return elementKey().trackNumber(); }
};

struct MXFZELM_EXPORT ContentPackage {
    /// Where it begins: its first packet.
    std::uint64_t offset = 0;

    /// Bytes up to the end of its last packet, fill items included.
    std::uint64_t length = 0;

    /// The packs and sets of the system item, and all other elements, each in their order.
    Templates::vector<Element> systemItems = {};
    Templates::vector<Element> elements = {};

    bool empty() const { return elements.empty() && systemItems.empty(); }

    /// The element of a track, null when there is none. Where no track number is the same, the element count
    /// in it is left out of account.
    Element const* element(std::uint32_t trackNumber) const;

    /// Makes it empty; keeps its memory.
    void clear();
};

} // namespace MXF::Zelm::GenericContainer
