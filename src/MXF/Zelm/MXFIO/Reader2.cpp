#include "MXF/Zelm/MXFIO/Reader2.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

namespace {

/// One step of the backward search, and the bytes searched at each: a key that straddles two steps is still
/// found.
constexpr std::uint64_t searchStep = 0x1800;
constexpr std::uint64_t searchSpan = searchStep + KLV::Key::size();

bool isFooter(Partition const* partition) {
    return partition != nullptr && partition->partitionPack().partitionKind() == Packs::PartitionPack::Footer;
}

} // namespace

Reader2::~Reader2() = default;

Partition* Reader2::partitionAtOffset(std::uint64_t offset) {
    Partition* const known = find(absoluteOffset(offset));
    if (known != nullptr && known->partitionPack().thisPartition() == offset)
        return known;
    return readPartitionAt(offset);
}

Partition* Reader2::lastPartitionFromHeaderFooterOffset() {
    std::uint64_t const footerOffset = requireHeaderPartition().partitionPack().footerPartition();
    Partition* const known = find(absoluteOffset(footerOffset));
    if (isFooter(known))
        return known;
    if (footerOffset == 0)
        return nullptr;
    Partition* found = nullptr;
    try {
        found = readPartitionAt(footerOffset);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        // What stands there is no footer either.
    }
    if (!isFooter(found))
        throw Exceptions::at(absoluteOffset(footerOffset),
                             Exceptions::BaseException("Footer not found where indicated in primer"));
    return found;
}

Partition* Reader2::lastPartitionFromRIP() {
    if (!loadRIP() || rip()->size() == 0)
        return nullptr;
    std::uint64_t const offset = rip()->offsetIndexedMap().rbegin()->first;
    Partition* const known = find(absoluteOffset(offset));
    if (known == nullptr || known->partitionPack().thisPartition() != offset)
        return readPartitionAt(offset);
    if (!isFooter(known))
        throw Exceptions::at(
            absoluteOffset(offset),
            Exceptions::InvalidStructure(
                Exceptions::Condition{
                    "partition -> partitionPack ().partitionKind () == PartitionPack::FOOTER_PARTITION"},
                "Last Partition indicated by RIP is not a Footer Partition"));
    return known;
}

Partition* Reader2::searchLastPartition(bool footerOnly) {
    source().seek(0);
    std::uint64_t const size = source().remaining();
    std::uint64_t skipped = 0;
    bool essenceSeen = false;
    Partition* last = nullptr;
    for (std::uint64_t start = size - std::min(size, searchStep);; start -= std::min(start, searchStep)) {
        source().seek(start);
        try {
            last = readPartition(static_cast<std::int64_t>(std::min(searchSpan, size - start)), false,
                                 skipped, essenceSeen);
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const&) {
            // What looked like a packet is none.
        }
        if (last != nullptr || start == 0)
            break;
    }
    if (last == nullptr)
        throw Exceptions::InvalidStructure(Exceptions::Condition{"partition != 0"}, "No partition found");
    for (Partition* next = last; next != nullptr;
         next = readPartition(static_cast<std::int64_t>(searchSpan), true, skipped, essenceSeen))
        last = next;
    return !footerOnly || isFooter(last) ? last : nullptr;
}

Partition* Reader2::lastPartition() {
    if (footer_ != nullptr)
        return footer_;
    Partition* last = lastPartitionFromHeaderFooterOffset();
    if (last == nullptr)
        last = lastPartitionFromRIP();
    if (last == nullptr)
        last = searchLastPartition(false);
    if (isFooter(last))
        footer_ = last;
    return last;
}

Partition* Reader2::footerPartition() {
    if (footer_ != nullptr)
        return footer_;
    Partition* found = lastPartitionFromHeaderFooterOffset();
    if (!isFooter(found))
        found = lastPartitionFromRIP();
    if (!isFooter(found))
        found = searchLastPartition(true);
    footer_ = found;
    return footer_;
}

Partition* Reader2::backwardFirstPartitionWithFinalMetadata() {
    Partition* const header = &requireHeaderPartition();
    if (header->partitionPack().headerByteCount() != 0 && !header->partitionPack().isOpen())
        return header;
    Partition* current = lastPartition();
    while (current != nullptr && current->partitionPack().headerByteCount() == 0)
        current = previousPartition(current);
    return current;
}

} // namespace MXF::Zelm::MXFIO
