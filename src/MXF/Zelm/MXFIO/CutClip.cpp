#include "MXF/Zelm/MXFIO/CutClip.h"

#include "MXF/Zelm/ByteCoders/BER.h"

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;
using GenericContainer::Wrapping;

namespace {

/// By the label; or by what the only element shows where the label tells nothing or of edit units, as some
/// writers have it: its length was to be set at the end, or it holds several edit units.
bool isClip(DataIO::RandomAccessDataSource& source, FileWalk const& walk, PacketHead const& cut,
            EssenceContainer const& container) {
    if (container.wrapping() == Wrapping::Clip)
        return true;
    if (!walk.isCutFirst())
        return false;
    std::uint64_t const value = cut.fileOffset + cut.headLength;
    return cut.length == 0 ||
           holdsSeveralUnits(source, container, {cut.key, value, walk.fileSize() - value, cut.length});
}

} // namespace

std::optional<CutClip> findCutClip(DataIO::RandomAccessDataSource& source, FileWalk const& walk,
                                   EssenceContainer const& container) {
    auto const& cut = walk.cutPacket();
    if (!cut || cut->fileOffset != walk.wholeEnd() || !ElementKey::isContent(cut->key) ||
        !isClip(source, walk, *cut, container))
        return std::nullopt;
    CutClip clip{.head = *cut};
    std::uint64_t const value = cut->fileOffset + cut->headLength, there = walk.fileSize() - value;
    auto const* const track = container.trackByNumber(ElementKey(cut->key).trackNumber());
    clip.unit = clipUnitSize(source, container, {cut->key, value, there, cut->length});
    std::uint64_t const grain =
        track != nullptr && track->samples.bytes != 0 ? track->samples.bytes : clip.unit.bytes;
    clip.length = there - (grain != 0 ? there % grain : 0);
    clip.holdsSeveral =
        container.wrapping() != Wrapping::Frame || clip.unit.bytes == 0 || clip.length / clip.unit.bytes > 1;
    return clip.length != 0 ? std::optional(clip) : std::nullopt;
}

std::optional<Bytes> lengthField(PacketHead const& head, std::uint64_t length) {
    auto const size = static_cast<unsigned char>(head.headLength - KLV::Key::size());
    if (size < ByteCoders::calculateBERSize(length))
        return std::nullopt;
    Bytes field(size);
    ByteCoders::codeBER(length, size, field.data());
    return field;
}

} // namespace MXF::Zelm::MXFIO
