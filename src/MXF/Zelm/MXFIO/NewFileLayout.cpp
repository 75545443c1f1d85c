#include "MXF/Zelm/MXFIO/NewFileLayout.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using ByteCoders::decodeInteger;

namespace {

/// The largest KLV alignment grid (SMPTE 377M).
constexpr std::uint32_t largestGrid = 1 << 20;
/// More fill than any edit could want.
constexpr std::uint64_t largestReserve = 1 << 30;
/// An entry of a random index pack: body SID (4), offset (8); the pack's length (4) follows the last.
constexpr std::size_t entrySize = 12, entryOffsetAt = 4, lengthWordSize = 4;

std::uint64_t kagOf(SurveyedPartition const& partition) {
    auto const kag = partition.pack().kagSize();
    return kag >= 1 && kag <= largestGrid ? kag : 1;
}

} // namespace

NewFileLayout::NewFileLayout(UpdateContent const& content, std::uint64_t reserve) : content_(content) {
    requireSoundFile();
    if (reserve > largestReserve)
        throw Exceptions::InvalidValue("A reserve of " + std::to_string(reserve) + " bytes; the most are " +
                                       std::to_string(largestReserve));
    auto const& survey = content.file().survey();
    for (auto const& partition : survey.partitions)
        grid_ = std::max(grid_, kagOf(partition));
    std::uint64_t at = content.file().runInLength();
    for (std::size_t i = 0; i < survey.partitions.size(); ++i) {
        placed_.push_back(place(i, at, reserve));
        at = placed_.back().end();
    }
    addOld(0, content.file().runInLength());
    for (std::size_t i = 0; i < survey.partitions.size(); ++i) {
        describe(i);
        addPartition(i);
    }
    if (survey.hasRandomIndex()) {
        auto bytes = randomIndex();
        add({bytes.size(), {}, false, std::move(bytes)});
    }
    addOld(survey.randomIndexEnd, survey.fileSize - survey.randomIndexEnd);
    plan_.fileSize = survey.fileSize;
    for (auto const& piece : pieces_)
        plan_.newFileSize += piece.length;
}

void NewFileLayout::requireSoundFile() const {
    for (auto const& partition : content_.partitions())
        if (partition.packEnd() > partition.end)
            throw Exceptions::at(partition.offset(),
                                 Exceptions::InvalidStructure("The file cannot be laid out anew: a partition "
                                                              "begins inside another one's pack"));
    auto const& fault = content_.file().survey().walkFault;
    if (!fault)
        return;
    Exceptions::InvalidStructure failure("The file cannot be laid out anew, since its partitions are not all "
                                         "known: " +
                                         fault->message);
    failure.offset(*fault->offset);
    throw failure;
}

/// Partitions move by multiples of the largest grid of the file where that suits their own.
std::uint64_t NewFileLayout::gridOf(SurveyedPartition const& partition) const {
    return grid_ % kagOf(partition) == 0 ? grid_ : kagOf(partition);
}

NewFileLayout::Placed NewFileLayout::place(std::size_t index, std::uint64_t offset,
                                           std::uint64_t reserve) const {
    auto const& partition = content_.partitions()[index];
    auto const metadataStart = std::min(partition.metadataStart(), partition.end);
    auto const metadataEnd = std::min(partition.metadataEnd(), partition.end);
    auto const head = content_.headFor(index);
    Placed placed;
    placed.offset = offset;
    placed.leadSize = placed.oldLeadSize = metadataStart - partition.offset();
    if (head.bytes().size() != head.oldSize())
        placed.leadSize =
            areaSizeFor(partition.packEnd() - partition.offset() - head.oldSize() + head.bytes().size(), 0,
                        placed.oldLeadSize, gridOf(partition));
    placed.metadataSize = placed.oldMetadataSize = metadataEnd - metadataStart;
    if (auto const* const area = content_.areaToRewrite(index); area && area->content() != content_.content())
        placed.metadataSize = areaSizeFor(content_.content().size(), std::max(area->trailingFill(), reserve),
                                          area->size(), gridOf(partition));
    placed.essenceSize = partition.end - metadataEnd;
    return placed;
}

void NewFileLayout::describe(std::size_t index) {
    auto update = content_.describe(index);
    update.newOffset = placed_[index].offset;
    if (placed_[index].metadataSize != placed_[index].oldMetadataSize)
        update.newHeaderByteCount = placed_[index].metadataSize;
    plan_.partitions.push_back(std::move(update));
}

/// FooterPartition of a partition: 0 stays 0, and becomes 0 where it led to no footer.
std::uint64_t NewFileLayout::footerFor(std::size_t index) const {
    auto const& partitions = content_.partitions();
    bool const isKnown = partitions[index].pack().footerPartition() != 0 && partitions.back().isFooter();
    return isKnown ? relative(placed_.back().offset) : 0;
}

PackHead NewFileLayout::headFor(std::size_t index) const {
    auto head = content_.headFor(index);
    head.thisPartition(relative(placed_[index].offset));
    head.previousPartition(index == 0 ? 0 : relative(placed_[index - 1].offset));
    head.footerPartition(footerFor(index));
    if (placed_[index].metadataSize != placed_[index].oldMetadataSize)
        head.headerByteCount(placed_[index].metadataSize);
    return head;
}

void NewFileLayout::add(Piece piece) {
    if (piece.length != 0)
        pieces_.push_back(std::move(piece));
}

void NewFileLayout::addOld(std::uint64_t offset, std::uint64_t length, bool isEssence) {
    add({length, offset, isEssence, {}});
}

void NewFileLayout::addFill(KLV::Key const& key, std::uint64_t length) {
    if (length == 0)
        return;
    auto header = fillHeader(key, length);
    std::uint64_t const rest = length - header.size();
    add({header.size(), {}, false, std::move(header)});
    add({rest, {}, false, {}});
}

void NewFileLayout::addPartition(std::size_t index) {
    auto const& partition = content_.partitions()[index];
    auto const& placed = placed_[index];
    auto const head = headFor(index);
    std::uint64_t const packRest = partition.packEnd() - partition.offset() - head.oldSize();
    add({head.bytes().size(), {}, false, head.bytes()});
    if (head.bytes().size() == head.oldSize()) {
        addOld(partition.offset() + head.oldSize(), placed.oldLeadSize - head.oldSize());
    } else {
        addOld(partition.offset() + head.oldSize(), packRest);
        addFill(content_.fillKey(index), placed.leadSize - packRest - head.bytes().size());
    }
    addMetadata(index);
    addOld(partition.end - placed.essenceSize, placed.essenceSize, true);
}

void NewFileLayout::addMetadata(std::size_t index) {
    auto const& placed = placed_[index];
    auto const& content = content_.content();
    auto const* const area = content_.areaToRewrite(index);
    if (area == nullptr || area->content() == content) {
        addOld(content_.partitions()[index].offset() + placed.oldLeadSize, placed.oldMetadataSize);
        return;
    }
    add({content.size(), {}, false, content});
    addFill(content_.fillKey(index), placed.metadataSize - content.size());
}

Bytes NewFileLayout::randomIndex() const {
    auto const& survey = content_.file().survey();
    auto pack = readBytes(content_.file().source(), survey.randomIndexStart,
                          survey.randomIndexEnd - survey.randomIndexStart);
    unsigned char const berLength = ByteCoders::decodeBERSize(pack.at(KLV::Key::size()));
    return patchRandomIndex(pack) ? pack : makeRandomIndex(berLength);
}

/// Puts the new offsets where the old ones stand, order and body SIDs unchanged; false when the entries do
/// not name each partition once.
bool NewFileLayout::patchRandomIndex(Bytes& pack) const {
    Templates::map<std::uint64_t, std::uint64_t> moved; // new offsets by old ones
    for (std::size_t i = 0; i < placed_.size(); ++i)
        moved.emplace(relative(content_.partitions()[i].offset()), relative(placed_[i].offset));
    std::size_t at = KLV::Key::size() + ByteCoders::decodeBERSize(pack.at(KLV::Key::size()));
    for (; pack.size() - at >= entrySize + lengthWordSize; at += entrySize) {
        auto const entry = moved.find(decodeInteger<std::uint64_t>(pack.data() + at + entryOffsetAt));
        if (entry == moved.end())
            return false;
        ByteCoders::codeInteger(entry->second, pack.data() + at + entryOffsetAt);
        moved.erase(entry);
    }
    return moved.empty() && pack.size() - at == lengthWordSize;
}

Bytes NewFileLayout::makeRandomIndex(unsigned char berLength) const {
    Packs::RandomIndexPack index;
    for (std::size_t i = 0; i < placed_.size(); ++i)
        index.add(content_.partitions()[i].pack().bodySID(), relative(placed_[i].offset));
    index.berLength(std::max(berLength, ByteCoders::calculateBERSize(index.valueLength())));
    DataIO::Memory::MemoryDataSink sink;
    index.serialize(sink);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

} // namespace MXF::Zelm::MXFIO
