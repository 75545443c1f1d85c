#include "MXF/Zelm/Metadata/SetCopy.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/DataIO/Memory/MemoryDataSink.h"
#include "MXF/Zelm/DataIO/Memory/MemoryViewDataSource.h"
#include "MXF/Zelm/KLV/Reader.h"

#include <deque>
#include <set>

namespace MXF::Zelm::Metadata {

namespace {

using UUIDs = Templates::map<Types::UUID, Types::UUID>;

/// Byte 5 of the keys of sets whose tags and lengths have two bytes.
constexpr unsigned char twoByteCoding = 0x53;
constexpr std::size_t itemHeadSize = 4, uuidSize = 16;
constexpr std::uint16_t instanceUIDTag = 0x3C0A;

/// One item of a set's value: tag, length, value.
struct Item {
    std::uint16_t tag;
    const unsigned char* begin;
    std::size_t size; // of the value
};

/// The items of a set of two-byte coding, as far as they are whole.
template <class Use>
void forItems(std::vector<unsigned char> const& value, Use use) {
    for (std::size_t at = 0; value.size() - at >= itemHeadSize;) {
        auto const* const head = value.data() + at;
        std::size_t const size = ByteCoders::decodeInteger<std::uint16_t>(head + 2);
        if (size > value.size() - at - itemHeadSize)
            return;
        use(Item{ByteCoders::decodeInteger<std::uint16_t>(head), head + itemHeadSize, size});
        at += itemHeadSize + size;
    }
}

template <class Integer>
void append(std::vector<unsigned char>& bytes, Integer number) {
    unsigned char coded[sizeof number];
    ByteCoders::codeInteger(number, coded);
    bytes.insert(bytes.end(), coded, coded + sizeof coded);
}

class SetCopier {
public:
    SetCopier(PartitionMetadata const& from, PartitionMetadata& to) : from_(from), to_(to) {}

    MetadataSet* copy(MetadataSet const& root) {
        MetadataSet* const copied = copyOne(root);
        while (!waiting_.empty()) {
            auto const target = waiting_.front();
            waiting_.pop_front();
            copyTarget(target);
        }
        for (auto* const set : copies_)
            renameTargets(*set);
        return copied;
    }

private:
    MetadataSet* copyOne(MetadataSet const& set) {
        if (auto const* const uid = set.instanceUID())
            seen_.insert(*uid);
        for (auto const& element : set)
            if (auto const* const holder = dynamic_cast<ReferenceHolder const*>(element.get());
                holder != nullptr && holder->isStrong())
                for (auto const& target : holder->targets())
                    if (seen_.insert(target).second)
                        waiting_.push_back(target);
        return load(set.key(), valueOf(set));
    }

    void copyTarget(Types::UUID const& target) {
        if (auto const* const set = from_.find(target)) {
            copyOne(*set);
            return;
        }
        for (auto dark = from_.darkBegin(); dark != from_.darkEnd(); ++dark)
            if (isCalled((*dark)->value().bytes(), target)) {
                load((*dark)->key(), (*dark)->value().bytes());
                return;
            }
    }

    static bool isCalled(std::vector<unsigned char> const& value, Types::UUID const& uid) {
        bool found = false;
        forItems(value, [&](Item const& item) {
            found = found ||
                    (item.tag == instanceUIDTag && item.size == uuidSize && Types::UUID(item.begin) == uid);
        });
        return found;
    }

    std::vector<unsigned char> valueOf(MetadataSet const& set) const {
        DataIO::Memory::MemoryDataSink sink;
        set.serialize(sink, from_.partitionDictionary(), true);
        DataIO::Memory::MemoryViewDataSource source(sink.rawBuffer(),
                                                    static_cast<std::size_t>(sink.serializedSize()));
        KLV::Reader reader(source);
        std::uint64_t skipped = 0;
        return reader.nextKLV(skipped, 0)->value().readRemaining();
    }

    /// Loads a copy under the tags of the new primer.
    MetadataSet* load(KLV::Key const& key, std::vector<unsigned char> const& value) {
        auto const bytes = key[5] == twoByteCoding ? retagged(value) : value;
        DataIO::Memory::MemoryViewDataSource source(bytes.data(), bytes.size());
        KLV::Packet packet(key, 4, bytes.size(), source, 0);
        auto* const set = to_.loadOrKeepDark(packet);
        if (set != nullptr)
            copies_.push_back(set);
        return set;
    }

    std::vector<unsigned char> retagged(std::vector<unsigned char> const& value) {
        std::vector<unsigned char> bytes;
        forItems(value, [&](Item const& item) {
            auto const tag = newTag(Types::LocalTag(item.tag));
            if (!tag)
                return;
            append(bytes, tag->value());
            append(bytes, static_cast<std::uint16_t>(item.size));
            if (item.tag == instanceUIDTag && item.size == uuidSize) {
                auto const uid = newUID(Types::UUID(item.begin));
                bytes.insert(bytes.end(), uid.rawBuffer(), uid.rawBuffer() + uuidSize);
            } else {
                bytes.insert(bytes.end(), item.begin, item.begin + item.size);
            }
        });
        return bytes;
    }

    /// Absent for a tag that nobody knows and that stands for something else in the new metadata.
    std::optional<Types::LocalTag> newTag(Types::LocalTag const& tag) {
        Types::UniversalLabel const* label = nullptr;
        auto& dictionary = to_.partitionDictionary();
        if (from_.partitionDictionary().resolve(tag, label) == PartitionDictionary::Resolution::Found)
            return dictionary.findOrGenerate(*label);
        if (dictionary.resolve(tag, label) == PartitionDictionary::Resolution::Found)
            return std::nullopt;
        dictionary.reserve(tag);
        return tag;
    }

    Types::UUID newUID(Types::UUID const& uid) {
        if (to_.find(uid) == nullptr)
            return uid;
        return renamed_.insert_or_assign(uid, Types::UUID::generate()).first->second;
    }

    void renameTargets(MetadataSet& set) const {
        for (auto const& element : set) {
            if (auto* const one = dynamic_cast<ReferenceElement*>(element.get())) {
                auto const targets = one->targets();
                auto const found =
                    one->isStrong() && !targets.empty() ? renamed_.find(targets[0]) : renamed_.end();
                if (auto* const target = found != renamed_.end() ? to_.find(found->second) : nullptr)
                    one->reference(*target);
            } else if (auto* const several = dynamic_cast<CollectionReferenceElement*>(element.get())) {
                renameMembers(*several);
            }
        }
    }

    void renameMembers(CollectionReferenceElement& element) const {
        auto const targets = element.targets();
        for (std::size_t i = 0; element.isStrong() && i < targets.size(); ++i)
            if (auto const found = renamed_.find(targets[i]); found != renamed_.end())
                element.set(i, Types::StrongReference(found->second));
    }

    PartitionMetadata const& from_;
    PartitionMetadata& to_;
    std::set<Types::UUID> seen_;
    std::deque<Types::UUID> waiting_;
    Templates::vector<MetadataSet*> copies_;
    UUIDs renamed_;
};

} // namespace

MetadataSet* copyWithReferenced(MetadataSet const& set, PartitionMetadata const& from,
                                PartitionMetadata& to) {
    return SetCopier(from, to).copy(set);
}

} // namespace MXF::Zelm::Metadata
