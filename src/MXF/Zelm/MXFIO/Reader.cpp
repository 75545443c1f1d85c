#include "MXF/Zelm/MXFIO/Reader.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/Offsets.h"
#include "MXF/Zelm/Platform/Licenser.h"

#include <limits>
#include <optional>

namespace MXF::Zelm::MXFIO {

namespace {

/// A random index pack has at least a key, a length byte and its final length.
constexpr std::uint32_t smallestRIP = 21;

[[noreturn]] void fail(const char* condition, const char* message, std::uint64_t offset,
                       Exceptions::SourceLocation where = Exceptions::SourceLocation::current()) {
    throw Exceptions::at(offset,
                         Exceptions::InvalidStructure(Exceptions::Condition{condition}, message, where));
}

/// The partition that a packet opens. The pack's class knows no generic stream partitions (SMPTE 410M): it
/// reads such a pack as that of a closed and complete body partition and is given its real key afterwards.
Packs::PartitionPack readPack(KLV::Packet& packet) {
    KLV::Key const key = packet.key();
    if (!Packs::isGenericStreamPartitionPack(key))
        return Packs::PartitionPack(packet);
    packet.key(
        Packs::buildPartitionPackKey(Packs::PartitionPack::Body, Packs::PartitionPack::ClosedComplete));
    Packs::PartitionPack pack(packet);
    pack.key(key);
    packet.key(key);
    return pack;
}

} // namespace

struct Reader::State {
    State(DataIO::RandomAccessDataSource& dataSource, DictionaryPtr sharedDictionary, std::uint64_t limit)
        : source(dataSource),
          klvReader(dataSource),
          dictionary(std::move(sharedDictionary)),
          searchLimit(limit) {}

    DataIO::RandomAccessDataSource& source;
    KLV::Reader klvReader;
    DictionaryPtr dictionary;
    std::uint64_t searchLimit;
    std::uint64_t runInLength = 0;
    std::optional<KLV::Value> runIn;
    Templates::map<std::uint64_t, Templates::auto_ptr<Partition>> partitions;
    RIPPtr rip;

    std::int64_t signedSearchLimit() const {
        constexpr auto largest = std::numeric_limits<std::int64_t>::max();
        return searchLimit > static_cast<std::uint64_t>(largest) ? largest
                                                                 : static_cast<std::int64_t>(searchLimit);
    }
};

Reader::Reader(DataIO::RandomAccessDataSource& source, DictionaryPtr dictionary, std::uint64_t searchLimit)
    : state_(std::make_unique<State>(source, std::move(dictionary), searchLimit)) {
    Platform::Licenser::check("MXFIO.Reader");
}

Reader::~Reader() = default;

Reader::RIPPtr Reader::rip() const { return state_->rip; }
std::uint64_t Reader::runInLength() const { return state_->runInLength; }
Reader::DictionaryPtr const& Reader::dictionary() const { return state_->dictionary; }
DataIO::RandomAccessDataSource& Reader::source() const { return state_->source; }
KLV::Reader& Reader::klvReader() const { return state_->klvReader; }
std::uint64_t Reader::searchLimit() const { return state_->searchLimit; }

std::uint64_t Reader::absoluteOffset(std::uint64_t packOffset) const {
    return addOffsets(packOffset, state_->runInLength);
}

Partition* Reader::find(std::uint64_t absoluteOffset) const {
    auto const found = state_->partitions.find(absoluteOffset);
    return found != state_->partitions.end() ? found->second.get() : nullptr;
}

Partition* Reader::lastLoadedPartition() const {
    return state_->partitions.empty() ? nullptr : state_->partitions.rbegin()->second.get();
}

/// Makes the partition whose pack's key the KLV reader has just peeked at.
Partition* Reader::readPeekedPartition() {
    auto& source = state_->source;
    if (Partition* const known = find(source.absoluteOffset() - KLV::Key::size())) {
        source.seek(known->metadataAbsoluteOffset());
        return known;
    }
    std::uint64_t skipped = 0;
    auto const packet = state_->klvReader.nextKLV(skipped, 0);
    Templates::auto_ptr<Partition> partition(new Partition(*this, *packet, readPack(*packet)));
    return state_->partitions.emplace(packet->keyAbsoluteOffset(), std::move(partition)).first->second.get();
}

Partition* Reader::readPartition(std::int64_t limit, bool unlimited, std::uint64_t& skipped,
                                 bool& essenceSeen) {
    auto& source = state_->source;
    skipped = 0;
    bool keyFound = false;
    try {
        while (!source.endOfStream() && limit >= 0) {
            std::uint64_t skippedBefore = 0;
            keyFound = false;
            auto const key = state_->klvReader.peekNextKey(skippedBefore, static_cast<std::uint64_t>(limit));
            keyFound = true;
            skipped += skippedBefore;
            if (Packs::isPartitionPack(key))
                return readPeekedPartition();
            auto const packet = state_->klvReader.nextKLV(skippedBefore, 0);
            essenceSeen = essenceSeen || KLV::isEssence(key);
            skipped = addOffsets(skipped, packet->klvLength());
            if (!unlimited && packet->klvLength() > static_cast<std::uint64_t>(limit))
                return nullptr;
            if (!unlimited)
                limit -= static_cast<std::int64_t>(packet->klvLength());
            packet->value().discard();
        }
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        // The limit is used up before a key, or the source ends amid a packet: an unfinished file.
        if (keyFound && !source.endOfStream())
            throw;
    }
    return nullptr;
}

Partition* Reader::readPartitionAt(std::uint64_t packOffset) {
    std::uint64_t const offset = absoluteOffset(packOffset);
    if (state_->source.seek(offset) != offset)
        return nullptr;
    std::uint64_t skipped = 0;
    bool essenceSeen = false;
    return readPartition(state_->signedSearchLimit(), false, skipped, essenceSeen);
}

Partition* Reader::headerPartition() {
    if (!state_->partitions.empty())
        if (Partition* const known = find(state_->runInLength))
            return known;
    state_->source.seek(0);
    std::uint64_t skipped = 0;
    bool essenceSeen = false;
    Partition* const header = readPartition(state_->signedSearchLimit(), false, skipped, essenceSeen);
    if (header != nullptr)
        state_->runInLength = skipped;
    return header;
}

Partition& Reader::requireHeaderPartition() {
    Partition* const header = headerPartition();
    if (header == nullptr)
        fail("header != 0", "No header partition found", 0);
    return *header;
}

KLV::Value* Reader::runIn() {
    if (state_->runInLength == 0)
        return nullptr;
    state_->source.seek(0);
    if (!state_->runIn)
        state_->runIn.emplace(state_->source, state_->runInLength);
    return &*state_->runIn;
}

bool Reader::loadRIP() {
    auto& source = state_->source;
    state_->rip.reset();
    source.seek(0);
    std::uint64_t const size = source.remaining();
    unsigned char lengthBytes[4];
    if (size < sizeof lengthBytes)
        return false;
    source.seek(size - sizeof lengthBytes);
    if (source.read(lengthBytes, sizeof lengthBytes) != sizeof lengthBytes)
        return false;
    auto const length = ByteCoders::decodeInteger<std::uint32_t>(lengthBytes);
    if (length < smallestRIP || length >= size)
        return false;
    source.seek(size - length);
    try {
        KLV::Reader fresh(source);
        std::uint64_t skipped = 0;
        auto const packet = fresh.nextKLV(skipped, 0);
        state_->rip = std::make_shared<Packs::RandomIndexPack const>(*packet);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        return false;
    }
    return true;
}

void Reader::positionSource(Partition* partition) { state_->source.seek(partition->bodyAbsoluteOffset()); }

Partition* Reader::nextPartition(Partition* current) {
    auto const& pack = current->partitionPack();
    if (pack.partitionKind() == Packs::PartitionPack::Footer)
        return nullptr;
    auto const following = state_->partitions.upper_bound(current->partitionAbsoluteOffset());
    if (following != state_->partitions.end() &&
        absoluteOffset(following->second->partitionPack().previousPartition()) ==
            current->partitionAbsoluteOffset())
        return following->second.get();
    positionSource(current);
    std::uint64_t skipped = 0;
    bool essenceSeen = false;
    Partition* const next = readPartition(state_->signedSearchLimit(), true, skipped, essenceSeen);
    if (next != nullptr && next->partitionPack().previousPartition() > pack.thisPartition())
        fail("next == 0 || next -> partitionPack ().previousPartition () <= current -> partitionPack "
             "().thisPartition ()",
             "The Partition Pack has an invalid PreviousPartition value", next->partitionAbsoluteOffset());
    return next;
}

Partition* Reader::previousPartition(Partition* current) {
    auto const& pack = current->partitionPack();
    if (pack.partitionKind() == Packs::PartitionPack::Header)
        return nullptr;
    Partition* previous = find(absoluteOffset(pack.previousPartition()));
    if (previous == nullptr)
        previous = readPartitionAt(pack.previousPartition());
    if (previous == current || previous == nullptr)
        fail("previous != current && previous != 0", "A Partition has an invalid PreviousPartition value",
             current->partitionAbsoluteOffset());
    if (previous->partitionPack().thisPartition() >= pack.thisPartition())
        fail("previous -> partitionPack ().thisPartition () < current -> partitionPack ().thisPartition ()",
             "Partitions have inconsistent ThisPartition values", current->partitionAbsoluteOffset());
    return previous;
}

namespace {

/// Steps from partition to partition until one suits; null when there are no more.
template <class Step, class Suits>
Partition* walkTo(Partition* current, Step step, Suits suits) {
    do
        current = step(current);
    while (current != nullptr && !suits(current->partitionPack()));
    return current;
}

} // namespace

Partition* Reader::nextPartition(Partition* current, std::uint32_t bodySID) {
    return walkTo(
        current, [this](Partition* from) { return nextPartition(from); },
        [bodySID](Packs::PartitionPack const& pack) { return pack.bodySID() == bodySID; });
}

Partition* Reader::previousPartition(Partition* current, std::uint32_t bodySID) {
    return walkTo(
        current, [this](Partition* from) { return previousPartition(from); },
        [bodySID](Packs::PartitionPack const& pack) { return pack.bodySID() == bodySID; });
}

Partition* Reader::nextIndexPartition(Partition* current, std::uint32_t indexSID) {
    return walkTo(
        current, [this](Partition* from) { return nextPartition(from); },
        [indexSID](Packs::PartitionPack const& pack) { return pack.indexSID() == indexSID; });
}

Partition* Reader::previousIndexPartition(Partition* current, std::uint32_t indexSID) {
    return walkTo(
        current, [this](Partition* from) { return previousPartition(from); },
        [indexSID](Packs::PartitionPack const& pack) { return pack.indexSID() == indexSID; });
}

Partition* Reader::nextCompletePartition(Partition* current) {
    return walkTo(
        current, [this](Partition* from) { return nextPartition(from); },
        [](Packs::PartitionPack const& pack) { return pack.isComplete(); });
}

Partition* Reader::nextClosedPartition(Partition* current) {
    return walkTo(
        current, [this](Partition* from) { return nextPartition(from); },
        [](Packs::PartitionPack const& pack) { return !pack.isOpen(); });
}

Partition* Reader::firstPartitionWithFinalMetadata() {
    Partition* const header = &requireHeaderPartition();
    Partition* last = header;
    for (Partition* current = header; current != nullptr; current = nextPartition(current)) {
        auto const& pack = current->partitionPack();
        if (pack.headerByteCount() == 0)
            continue;
        last = current;
        if (!pack.isOpen())
            break;
    }
    return last;
}

} // namespace MXF::Zelm::MXFIO
