#include "MXF/Zelm/MXFIO/MetadataArea.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/KLV/Reader.h"
#include "MXF/Zelm/Metadata/Labels.h"
#include "MXF/Zelm/Packs/PartitionPack.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <set>

namespace MXF::Zelm::MXFIO {

using namespace Metadata;

namespace {

/// Field of a length in four bytes, and the largest length that it holds.
constexpr std::uint64_t usualBerSize = 4, usualBerMost = 0xFFFFFF;
/// A primer's value: count and item size of four bytes each, then the entries.
constexpr std::size_t primerEntriesAt = 8, primerEntrySize = 18;

[[noreturn]] void cannotRewrite(std::uint64_t offset, std::string const& why) {
    throw Exceptions::at(
        offset, Exceptions::InvalidStructure("The header metadata cannot be rewritten without loss: " + why));
}

template <class Set, class... Arguments>
Bytes serialized(Set const& set, Arguments const&... arguments) {
    DataIO::Memory::MemoryDataSink sink;
    set.serialize(sink, arguments...);
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

void append(Bytes& bytes, Bytes const& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

/// One set of metadata, dark or not, as it is written now.
struct WrittenSet {
    std::uint64_t place; // where it was read from
    Bytes bytes;
};

/// A new set comes behind all others, a new Preface before them.
std::uint64_t placeOf(std::optional<std::uint64_t> offset, KLV::Key const& key) {
    return offset.value_or(key == prefaceKey ? 0 : ~std::uint64_t{0});
}

/// All sets in the order of the file.
std::vector<WrittenSet> writtenSets(PartitionMetadata const& metadata) {
    std::vector<WrittenSet> sets;
    for (auto const& [key, set] : metadata)
        sets.push_back(
            {placeOf(set->absoluteOffset(), key), serialized(*set, metadata.partitionDictionary(), true)});
    for (auto at = metadata.darkBegin(); at != metadata.darkEnd(); ++at)
        sets.push_back({placeOf((*at)->absoluteOffset(), (*at)->key()), serialized(**at)});
    std::stable_sort(sets.begin(), sets.end(),
                     [](WrittenSet const& a, WrittenSet const& b) { return a.place < b.place; });
    return sets;
}

/// Where the packets of whole content begin.
std::vector<std::size_t> packetsOf(Bytes const& content) {
    DataIO::Memory::MemoryViewDataSource source(content.data(), content.size());
    KLV::Reader reader(source);
    std::vector<std::size_t> offsets;
    while (!source.endOfStream()) {
        std::uint64_t skipped = 0;
        auto const packet = reader.nextKLV(skipped, 0);
        offsets.push_back(static_cast<std::size_t>(packet->keyAbsoluteOffset()));
        packet->value().discard();
    }
    return offsets;
}

/// Makes the length field of the packet at `offset` longer or shorter by up to `wanted` bytes, as far as its
/// length allows; returns by how many.
std::size_t resizeLength(Bytes& content, std::size_t offset, std::size_t wanted, bool longer) {
    auto const field = content.begin() + static_cast<std::ptrdiff_t>(offset + KLV::Key::size());
    unsigned char const size = ByteCoders::decodeBERSize(*field);
    std::uint64_t const length = ByteCoders::decodeBER(&*field, size);
    unsigned char const shortest = ByteCoders::calculateBERSize(length);
    int const possible = longer ? static_cast<int>(ByteCoders::maximumBERSize) - size : size - shortest;
    auto const by = std::min(wanted, static_cast<std::size_t>(std::max(possible, 0)));
    if (longer)
        content.insert(field, by, 0);
    else
        content.erase(field, field + static_cast<std::ptrdiff_t>(by));
    ByteCoders::codeBER(length, static_cast<unsigned char>(longer ? size + by : size - by),
                        content.data() + offset + KLV::Key::size());
    return by;
}

} // namespace

Bytes readBytes(DataIO::RandomAccessDataSource& source, std::uint64_t offset, std::uint64_t size) {
    if (source.seek(offset) != offset || source.remaining() < size)
        throw Exceptions::at(
            offset, Exceptions::InvalidLength("The file ends before " + std::to_string(size) + " bytes"));
    Bytes bytes(Templates::safeCast<std::size_t>(size));
    if (source.read(bytes.data(), size) != size)
        throw Exceptions::at(offset, Exceptions::InvalidLength("The file became shorter while it was open"));
    return bytes;
}

Bytes fillHeader(KLV::Key const& key, std::uint64_t gap) {
    std::uint64_t const rest = gap - KLV::Key::size();
    unsigned char const berSize = rest < usualBerSize                   ? 1
                                  : rest - usualBerSize <= usualBerMost ? usualBerSize
                                                                        : ByteCoders::maximumBERSize;
    Bytes header(key.rawBuffer(), key.rawBuffer() + KLV::Key::size());
    header.resize(header.size() + berSize);
    ByteCoders::codeBER(rest - berSize, berSize, header.data() + KLV::Key::size());
    return header;
}

std::uint64_t areaSizeFor(std::uint64_t content, std::uint64_t fill, std::uint64_t oldArea,
                          std::uint64_t grid) {
    std::uint64_t size = content + fill;
    size += (grid + oldArea % grid - size % grid) % grid;
    while (!canBeFilled(size - content))
        size += grid;
    return size;
}

MetadataArea::MetadataArea(DataIO::RandomAccessDataSource& source, std::uint64_t offset, std::uint64_t size)
    : offset_(offset), size_(size) {
    walk(source);
    content_ = readBytes(source, offset, contentSize_);
}

void MetadataArea::walk(DataIO::RandomAccessDataSource& source) {
    KLV::Reader reader(source);
    for (std::uint64_t at = 0; at < size_;) {
        std::uint64_t skipped = 0;
        source.seek(offset_ + at);
        Templates::auto_ptr<KLV::Packet> packet;
        try {
            packet = reader.nextKLV(skipped, 0);
        } catch (Exceptions::SystemError const&) {
            throw;
        } catch (Exceptions::BaseException const& failure) {
            cannotRewrite(offset_ + at, failure.message());
        }
        auto const& key = packet->key();
        if ((at == 0) != (key == Packs::PrimerPack::key()))
            cannotRewrite(offset_ + at,
                          at == 0 ? "it does not begin with a primer pack" : "a second primer pack");
        if (Packs::isPartitionPack(key) || KLV::isEssence(key) || KLV::isIndexTableKlvSegment(key) ||
            key == Packs::RandomIndexPack::key())
            cannotRewrite(offset_ + at, "it ends before its byte count says");
        std::uint64_t const length = packet->klvLength();
        if (length > size_ - at || packet->value().remaining() != packet->length())
            cannotRewrite(offset_ + at, "a packet of " + std::to_string(length) + " bytes where " +
                                            std::to_string(size_ - at) + " are left");
        if (!KLV::isFillItem(key)) {
            packets_.emplace(at, length);
            contentSize_ = meaningSize_ = at + length;
        } else {
            fillKey_ = key;
            if (contentSize_ == at)
                meaningSize_ = at + KLV::Key::size() + packet->berLength();
        }
        at += length;
    }
}

Bytes MetadataArea::contentFor(PartitionMetadata& edited, PartitionMetadata const& original) const {
    auto const& oldPrimer = original.partitionDictionary().primer();
    for (std::size_t i = 0; i < oldPrimer.countDuplicates(); ++i)
        edited.partitionDictionary().reserve(oldPrimer.atDuplicates(i).first);
    edited.generateLocalTags();
    std::map<std::uint64_t, Bytes> originals;
    for (auto& set : writtenSets(original))
        originals.emplace(set.place, std::move(set.bytes));

    Bytes content = primerFor(edited.partitionDictionary().primer(), oldPrimer);
    for (auto const& set : writtenSets(edited)) {
        if (!isUnchanged(set.bytes, set.place, originals)) {
            append(content, set.bytes);
            continue;
        }
        auto const at = set.place - offset_;
        auto const first = content_.begin() + static_cast<std::ptrdiff_t>(at);
        content.insert(content.end(), first, first + static_cast<std::ptrdiff_t>(packets_.at(at)));
    }
    return content;
}

bool MetadataArea::isUnchanged(Bytes const& edited, std::uint64_t offset,
                               std::map<std::uint64_t, Bytes> const& originals) const {
    auto const original = originals.find(offset);
    return original != originals.end() && original->second == edited && offset >= offset_ &&
           packets_.contains(offset - offset_);
}

/// The old primer's bytes with the new entries between its last entry and what stands behind that; written
/// from scratch when an entry was taken out.
Bytes MetadataArea::primerFor(Packs::PrimerPack const& edited, Packs::PrimerPack const& original) const {
    auto const old = original.entries();
    std::set<Packs::PrimerPack::Entry> const oldEntries(old.begin(), old.end());
    Bytes added;
    std::uint32_t count = 0;
    for (auto const& entry : edited.entries())
        if (!oldEntries.contains(entry)) {
            append(added, serialized(entry.first));
            append(added, serialized(entry.second));
            ++count;
        }
    if (edited.count() != original.count() + count)
        return serialized(edited);

    Bytes primer(content_.begin(), content_.begin() + static_cast<std::ptrdiff_t>(packets_.at(0)));
    std::size_t const berSize = ByteCoders::decodeBERSize(primer[KLV::Key::size()]);
    std::size_t const valueAt = KLV::Key::size() + berSize;
    std::uint32_t const oldCount = ByteCoders::decodeInteger<std::uint32_t>(primer.data() + valueAt);
    auto const entriesEnd = valueAt + primerEntriesAt + std::size_t{oldCount} * primerEntrySize;
    std::uint64_t const length = primer.size() - valueAt + added.size();
    if (count == 0)
        return primer;
    if (ByteCoders::calculateBERSize(length) > berSize)
        return serialized(edited);
    ByteCoders::codeBER(length, static_cast<unsigned char>(berSize), primer.data() + KLV::Key::size());
    ByteCoders::codeInteger(oldCount + count, primer.data() + valueAt);
    primer.insert(primer.begin() + static_cast<std::ptrdiff_t>(entriesEnd), added.begin(), added.end());
    return primer;
}

std::string MetadataArea::whyNot(std::uint64_t contentSize) const {
    if (contentSize > size_)
        return "the metadata takes " + std::to_string(contentSize) + " bytes, there is room for " +
               std::to_string(size_);
    std::uint64_t const gap = size_ - contentSize;
    if (!canBeFilled(gap))
        return "the metadata would leave " + std::to_string(gap) + " bytes, too few for a fill item";
    return {};
}

Bytes MetadataArea::fitted(Bytes const& content) const {
    bool const longer = content.size() <= size_;
    auto missing = static_cast<std::size_t>(longer ? size_ - content.size() : content.size() - size_);
    if (longer && canBeFilled(missing))
        return content;
    Bytes fitted = content;
    auto const packets = packetsOf(content);
    for (auto packet = packets.rbegin(); packet != packets.rend() && missing > 0; ++packet)
        missing -= resizeLength(fitted, *packet, missing, longer);
    return missing == 0 ? fitted : content;
}

Bytes MetadataArea::image(Bytes const& fitted, KLV::Key const& fillKey) const {
    if (auto const reason = whyNot(fitted.size()); !reason.empty())
        throw Exceptions::InvalidChange(reason);
    Bytes image = fitted;
    if (fitted.size() == content_.size())
        return image;
    if (fitted.size() < size_)
        append(image, fillHeader(fillKey, size_ - fitted.size()));
    image.resize(std::max(image.size(), static_cast<std::size_t>(meaningSize_)));
    return image;
}

} // namespace MXF::Zelm::MXFIO
