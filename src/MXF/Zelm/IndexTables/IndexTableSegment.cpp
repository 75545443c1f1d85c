#include "MXF/Zelm/IndexTables/IndexTableSegment.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/IndexTables/IndexTableLocalTag.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <type_traits>

namespace MXF::Zelm::IndexTables {

namespace {

using Tag = IndexTableLocalTag;

constexpr std::uint64_t itemHeaderSize = 4; // tag and length
constexpr std::uint64_t mostItemBytes = std::numeric_limits<std::uint16_t>::max();
constexpr std::uint64_t arrayHeadSize = 8; // number and size of entries
constexpr KLV::Key writtenKey{KLV::INDEXTABLE_SEGMENT_KEY};

/// Byte 5 of the key, the coding of the set; what else it may say has a message of its own.
constexpr int codingByte = 5;
/// Byte 14 of the key is 1, in some files 0.
constexpr int variantByte = 14;

constexpr const char* shortItem = "Invalid data size in Value in the IndexTable Segment";

/// A segment's key in the one form that is written, whatever its coding and variant.
KLV::Key unified(KLV::Key key) {
    key[codingByte] = writtenKey[codingByte];
    if (key[variantByte] == 0)
        key[variantByte] = writtenKey[variantByte];
    return key;
}

void requireKey(KLV::Key const& key) {
    if (unified(key) != writtenKey)
        throw Exceptions::InvalidKey("Trying to load a Index Segment with an invalid key");
    if (key.localTagFieldLength() != 2 || key.lengthFieldLength() != 2)
        throw Exceptions::InvalidIndexSegment("Invalid MXF Index Segment set (local tag should be 2 bytes "
                                              "and length field 2 bytes.)");
}

/// Reads a value whose type fixes its size.
template <class T>
void read(KLV::Value& item, T& property) {
    try {
        property = T(item);
    } catch (Exceptions::InvalidLength const& failure) {
        throw Exceptions::InvalidLength(shortItem, failure.bytes());
    }
}

template <class T>
void read(KLV::Value& item, std::optional<T>& property) {
    read(item, property.emplace());
}

void read(KLV::Value& item, std::optional<DeltaEntryArray>& property) { property = DeltaEntryArray(item); }

/// A source of which some bytes were read to look at them: gives them again, then the rest.
class LookedInto : public DataIO::DataSource {
public:
    LookedInto(DataIO::DataSource& source, const unsigned char* bytes, std::uint64_t size)
        : source_(source), bytes_(bytes), left_(size) {}

    std::uint64_t absoluteOffset() const override { return source_.absoluteOffset() - left_; }
    bool endOfStream() const override { return left_ == 0 && source_.endOfStream(); }
    std::uint64_t read(unsigned char* buffer, std::uint64_t size) override {
        std::uint64_t const again = std::min(size, left_);
        std::copy_n(bytes_, static_cast<std::size_t>(again), buffer);
        pass(again);
        return again + (size > again ? source_.read(buffer + again, size - again) : 0);
    }
    std::uint64_t skip(std::uint64_t size) override {
        std::uint64_t const again = std::min(size, left_);
        pass(again);
        return again + (size > again ? source_.skip(size - again) : 0);
    }

private:
    void pass(std::uint64_t size) {
        bytes_ += size;
        left_ -= size;
    }

    DataIO::DataSource& source_;
    const unsigned char* bytes_;
    std::uint64_t left_;
};

/// Writes properties as items one after the other, or adds up what that would write.
class ItemWriter {
public:
    /// With a null sink nothing is written.
    explicit ItemWriter(DataIO::DataSink* sink) : sink_(sink) {}

    template <class T>
    void write(Types::LocalTag const& tag, T const& property) {
        std::uint64_t const size = property.serializedSize();
        size_ += itemHeaderSize + size;
        if (sink_ == nullptr)
            return;
        tag.serialize(*sink_);
        Types::UInt16(static_cast<std::uint16_t>(size)).serialize(*sink_);
        property.serialize(*sink_);
    }

    template <class T>
    void write(Types::LocalTag const& tag, std::optional<T> const& property) {
        if (property)
            write(tag, *property);
    }

    std::uint64_t size() const { return size_; }

private:
    DataIO::DataSink* sink_;
    std::uint64_t size_ = 0;
};

template <class T>
T const* pointerTo(std::optional<T> const& property) {
    return property ? &*property : nullptr;
}

void requireItemSize(EntryArray const* entries) {
    if (entries != nullptr && entries->serializedSize() > std::numeric_limits<std::uint16_t>::max())
        throw Exceptions::InvalidElementLength(
            std::to_string(entries->size()) + " entries of " + std::to_string(entries->elementSize()) +
            " bytes do not fit in one index table segment, whose items have at most 65535 bytes");
}

} // namespace

IndexTableSegmentListener::~IndexTableSegmentListener() = default;

struct IndexTableSegment::State {
    unsigned char berLength;
    Types::UUID instanceUID;
    Types::Rational indexEditRate;
    Types::Position indexStartPosition;
    Types::Length indexDuration;
    std::optional<Types::UInt32> editUnitByteCount;
    std::optional<Types::UInt32> indexSID;
    Types::UInt32 bodySID;
    std::optional<Types::UInt8> sliceCount;
    std::optional<Types::UInt8> posTableCount;
    std::optional<DeltaEntryArray> deltaEntries;
    std::optional<IndexEntryArray> indexEntries;
    Templates::vector<UnknownElement> unknown;

    explicit State(unsigned char berSize) : berLength(berSize) {}

    std::uint8_t slices() const { return sliceCount ? sliceCount->value() : std::uint8_t{0}; }
    std::uint8_t posTables() const { return posTableCount ? posTableCount->value() : std::uint8_t{0}; }

    /// Calls `use(tag, property)` for each property, in the order in which they are written.
    template <class Self, class Use>
    static void forEachProperty(Self& self, Use use) {
        use(Tag::instanceID(), self.instanceUID);
        use(Tag::indexEditRate(), self.indexEditRate);
        use(Tag::indexStartPosition(), self.indexStartPosition);
        use(Tag::indexDuration(), self.indexDuration);
        use(Tag::editUnitByteCount(), self.editUnitByteCount);
        use(Tag::indexSID(), self.indexSID);
        use(Tag::bodySID(), self.bodySID);
        use(Tag::sliceCount(), self.sliceCount);
        use(Tag::posTableCount(), self.posTableCount);
        use(Tag::deltaEntryArray(), self.deltaEntries);
        use(Tag::indexEntryArray(), self.indexEntries);
    }

    /// Reads the property with this tag; an unknown one is kept.
    void readItem(Types::LocalTag const& tag, KLV::Value& item) {
        bool known = false;
        forEachProperty(*this, [&](Types::LocalTag const& own, auto& property) {
            if (tag != own)
                return;
            known = true;
            if constexpr (std::is_same_v<decltype(property), std::optional<IndexEntryArray>&>)
                property = IndexEntryArray(item); // held against the counts when all items are read
            else
                read(item, property);
        });
        if (!known)
            unknown.emplace_back(tag, item.readRemaining());
    }

    void write(ItemWriter& items) const {
        forEachProperty(
            *this, [&](Types::LocalTag const& tag, auto const& property) { items.write(tag, property); });
    }
};

KLV::Key const& IndexTableSegment::key() { return writtenKey; }

bool IndexTableSegment::isSegmentKey(KLV::Key const& key) {
    return key[codingByte] == writtenKey[codingByte] && unified(key) == writtenKey;
}

IndexTableSegment::IndexTableSegment(unsigned char berLength)
    : state_(Templates::ValuePtr<State>::make(berLength)) {}

IndexTableSegment::IndexTableSegment(KLV::Packet& packet, IndexTableSegmentListener* listener)
    : IndexTableSegment(packet.berLength()) {
    try {
        requireKey(packet.key());
        while (packet.value().remaining() != 0)
            readItem(packet.value());
        settleEntries();
    } catch (Exceptions::BaseException& failure) {
        failure.offset(packet.keyAbsoluteOffset());
        throw;
    }
    listener_ = listener;
}

IndexTableSegment::IndexTableSegment(IndexTableSegment const& other) : state_(other.state_) {}

IndexTableSegment::~IndexTableSegment() = default;

void IndexTableSegment::readItem(KLV::Value& value) {
    std::uint64_t const offset = value.absoluteOffset();
    try {
        Types::LocalTag tag;
        Types::UInt16 length;
        read(value, tag);
        read(value, length);
        if (length.value() > value.remaining())
            throw Exceptions::InvalidLength(shortItem, value.readRemaining());
        bool const isArray = tag == Tag::indexEntryArray() || tag == Tag::deltaEntryArray();
        if (isArray && value.remaining() > mostItemBytes)
            return readLongArray(tag, length.value(), value);
        KLV::Value item(value, length.value());
        readValue(tag, item);
    } catch (Exceptions::BaseException& failure) {
        failure.offset(offset);
        throw;
    }
}

void IndexTableSegment::readValue(Types::LocalTag const& tag, KLV::Value& item) {
    state_->readItem(tag, item);
    if (item.remaining() != 0)
        throw Exceptions::InvalidLength(
            "Invalid data size in Local Value. Value still contains data to be read.", item.readRemaining());
}

/// An array where the set has more bytes than an item can have. Some writers put arrays into one segment that
/// are longer than an item's length can say, which then has the low 16 bits alone: number and size of the
/// entries tell the length, if the set has as many bytes.
void IndexTableSegment::readLongArray(Types::LocalTag const& tag, std::uint16_t declared, KLV::Value& set) {
    unsigned char head[arrayHeadSize];
    set.readValue(head, arrayHeadSize);
    std::uint64_t const entries = std::uint64_t{ByteCoders::decodeInteger<std::uint32_t>(head)} *
                                  ByteCoders::decodeInteger<std::uint32_t>(head + 4);
    bool const isWrapped = entries + arrayHeadSize > mostItemBytes && entries <= set.remaining() &&
                           static_cast<std::uint16_t>(entries + arrayHeadSize) == declared;
    LookedInto source(set, head, arrayHeadSize);
    KLV::Value item(source, isWrapped ? entries + arrayHeadSize : declared);
    readValue(tag, item);
}

void IndexTableSegment::settleEntries() {
    if (state_->indexEntries)
        state_->indexEntries->settle(state_->slices(), state_->posTables());
}

void IndexTableSegment::changed() {
    if (listener_ != nullptr)
        listener_->segmentChanged(*this);
}

unsigned char IndexTableSegment::berLength() const { return state_->berLength; }

Types::UUID const& IndexTableSegment::instanceUID() const { return state_->instanceUID; }
void IndexTableSegment::instanceUID(Types::UUID const& uid) {
    state_->instanceUID = uid;
    changed();
}

Types::Rational const& IndexTableSegment::indexEditRate() const { return state_->indexEditRate; }
void IndexTableSegment::indexEditRate(Types::Rational const& rate) {
    state_->indexEditRate = rate;
    changed();
}

Types::Position const& IndexTableSegment::indexStartPosition() const { return state_->indexStartPosition; }
void IndexTableSegment::indexStartPosition(Types::Position const& position) {
    state_->indexStartPosition = position;
    changed();
}

Types::Length const& IndexTableSegment::indexDuration() const { return state_->indexDuration; }
void IndexTableSegment::indexDuration(Types::Length const& duration) {
    state_->indexDuration = duration;
    changed();
}

Types::UInt32 const* IndexTableSegment::editUnitByteCount() const {
    return pointerTo(state_->editUnitByteCount);
}
void IndexTableSegment::editUnitByteCount(Types::UInt32 const& count) {
    state_->editUnitByteCount = count;
    changed();
}
void IndexTableSegment::resetEditUnitByteCount() {
    state_->editUnitByteCount.reset();
    changed();
}

Types::UInt32 const* IndexTableSegment::indexSID() const { return pointerTo(state_->indexSID); }
void IndexTableSegment::indexSID(Types::UInt32 const& sid) {
    state_->indexSID = sid;
    changed();
}
void IndexTableSegment::resetIndexSID() {
    state_->indexSID.reset();
    changed();
}

Types::UInt32 const& IndexTableSegment::bodySID() const { return state_->bodySID; }
void IndexTableSegment::bodySID(Types::UInt32 const& sid) {
    state_->bodySID = sid;
    changed();
}

Types::UInt8 const* IndexTableSegment::sliceCount() const { return pointerTo(state_->sliceCount); }
void IndexTableSegment::sliceCount(Types::UInt8 const& count) {
    if (indexEntryCount() != 0)
        throw Exceptions::BaseException(
            "IndexEntryArray still contains value. Please empty IndexEntryArray before setting sliceCount");
    state_->sliceCount = count;
    settleEntries();
    changed();
}

Types::UInt8 const* IndexTableSegment::posTableCount() const { return pointerTo(state_->posTableCount); }
void IndexTableSegment::posTableCount(Types::UInt8 const& count) {
    if (indexEntryCount() != 0)
        throw Exceptions::BaseException("IndexEntryArray still contains value. Please empty IndexEntryArray "
                                        "before setting posTableCount");
    state_->posTableCount = count;
    settleEntries();
    changed();
}

DeltaEntryArray const* IndexTableSegment::deltaEntryArray() const { return pointerTo(state_->deltaEntries); }
void IndexTableSegment::deltaEntryArray(DeltaEntryArray const& entries) {
    state_->deltaEntries = entries;
    changed();
}
void IndexTableSegment::resetDeltaEntryArray() {
    state_->deltaEntries.reset();
    changed();
}

IndexEntryArray const* IndexTableSegment::indexEntryArray() const { return pointerTo(state_->indexEntries); }
void IndexTableSegment::indexEntryArray(IndexEntryArray const& entries) {
    requireCounts(entries.sliceCount(), entries.posTableCount());
    state_->indexEntries = entries;
    changed();
}
void IndexTableSegment::resetIndexEntryArray() {
    state_->indexEntries.reset();
    changed();
}

std::size_t IndexTableSegment::deltaEntryCount() const {
    return state_->deltaEntries ? state_->deltaEntries->size() : 0;
}
std::size_t IndexTableSegment::indexEntryCount() const {
    return state_->indexEntries ? state_->indexEntries->size() : 0;
}

DeltaEntry IndexTableSegment::deltaEntry(std::size_t index) const {
    if (index >= deltaEntryCount())
        throw Exceptions::BaseException("IndexTableSegment::deltaEntry IndexOutOfBounds");
    return state_->deltaEntries->at(index);
}

IndexEntry IndexTableSegment::indexEntry(std::size_t index) const {
    if (index >= indexEntryCount())
        throw Exceptions::BaseException("IndexTableSegment::indexEntry IndexOutOfBounds");
    return state_->indexEntries->at(index);
}

void IndexTableSegment::addDeltaEntry(std::size_t position, DeltaEntry const& entry) {
    if (state_->deltaEntries) {
        state_->deltaEntries->insertAt(position, entry);
    } else {
        DeltaEntryArray entries;
        entries.insertAt(position, entry);
        state_->deltaEntries = std::move(entries);
    }
    changed();
}

void IndexTableSegment::removeDeltaEntry(std::size_t position) {
    if (!state_->deltaEntries)
        throw Exceptions::BaseException("Trying to remove element from empty deltaEntryArray.");
    state_->deltaEntries->remove(position);
    changed();
}

void IndexTableSegment::requireCounts(std::size_t sliceOffsets, std::size_t posTables) const {
    if (sliceOffsets == state_->slices() && posTables == state_->posTables())
        return;
    throw Exceptions::BaseException(
        "Error: NSL in segment has value: " + std::to_string(state_->slices()) +
        " while IndexEntry has NSL: " + std::to_string(sliceOffsets) + "Error: NPE in segment has value: " +
        std::to_string(state_->posTables()) + " while IndexEntry has NPE: " + std::to_string(posTables));
}

void IndexTableSegment::addIndexEntry(std::size_t position, IndexEntry const& entry) {
    if (state_->indexEntries) {
        state_->indexEntries->insertAt(position, entry);
    } else {
        requireCounts(entry.sliceOffsetCount(), entry.posTableCount());
        IndexEntryArray entries(state_->slices(), state_->posTables());
        entries.insertAt(position, entry);
        state_->indexEntries = std::move(entries);
    }
    changed();
}

void IndexTableSegment::removeIndexEntry(std::size_t position) {
    if (!state_->indexEntries)
        throw Exceptions::BaseException("Trying to remove element from empty indexEntryArray.");
    state_->indexEntries->remove(position);
    changed();
}

Templates::vector<IndexTableSegment::UnknownElement> const& IndexTableSegment::unknownElements() const {
    return state_->unknown;
}

std::uint64_t IndexTableSegment::valueLength() const {
    ItemWriter items(nullptr);
    state_->write(items);
    return items.size();
}

void IndexTableSegment::serialize(DataIO::DataSink& sink) const {
    requireItemSize(deltaEntryArray());
    requireItemSize(indexEntryArray());
    std::uint64_t const length = valueLength();
    unsigned char field[ByteCoders::maximumBERSize];
    ByteCoders::codeBER(length, state_->berLength, field);
    if (ByteCoders::calculateBERSize(length) > state_->berLength)
        throw Exceptions::InvalidElementLength("An index table segment of " + std::to_string(length) +
                                               " bytes needs a longer length field than one of " +
                                               std::to_string(state_->berLength) + " bytes");
    sink.write(writtenKey.rawBuffer(), KLV::Key::size());
    sink.write(field, state_->berLength);
    ItemWriter items(&sink);
    state_->write(items);
}

std::uint64_t IndexTableSegment::serializedSize() const {
    return KLV::Key::size() + state_->berLength + valueLength();
}

} // namespace MXF::Zelm::IndexTables
