#include "MXF/Zelm/MXFIO/SequentialReader.h"

#include "MXF/Zelm/DataIO/Memory/MemoryDataSource.h"
#include "MXF/Zelm/GenericContainer/Demultiplexer.h"
#include "MXF/Zelm/IndexTables/IndexTableSegment.h"
#include "MXF/Zelm/KLV/Packet.h"
#include "MXF/Zelm/MXFIO/ClipUnits.h"
#include "MXF/Zelm/MXFIO/Offsets.h"
#include "MXF/Zelm/MXFIO/PacketParser.h"
#include "MXF/Zelm/Packs/PrimerPack.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;
using GenericContainer::PackageBoundary;
using GenericContainer::Wrapping;

namespace {

/// A pack or set with more bytes is passed over.
constexpr std::uint64_t largestSet = std::uint64_t{64} << 20;

/// A clip whose edit units have more bytes is given as one without.
constexpr std::uint64_t largestUnit = std::uint64_t{64} << 20;

/// Part of a clip that has no edit units.
constexpr std::uint64_t partSize = std::uint64_t{1} << 20;

/// What is known of one container.
struct Body {
    GenericContainer::Demultiplexer demultiplexer;
    PackageBoundary first; // the first content package
    std::int64_t position = 0;
    std::uint64_t length = 0; // of the stream, up to the content package that is being read
    bool isFollowed = false;  // by another partition
};

/// The clip that is being read.
struct Clip {
    PacketHead element;
    SampleGrid grid;
    std::uint64_t done = 0; // bytes of its value
    std::uint64_t units = 0;
};

} // namespace

struct SequentialReader::State {
    State(DataIO::DataSource& source, DictionaryPtr sharedDictionary, std::uint64_t limit, Options wanted)
        : dictionary(std::move(sharedDictionary)),
          searchLimit(limit),
          options(std::move(wanted)),
          window(source, options.factory) {}

    bool next(EssenceUnit& unit);

    void findHeader();
    void takeOther(PacketHead const& head);
    void enterPartition(PacketHead const& head);
    void endMetadata();
    bool takeContent(PacketHead const& head, EssenceUnit& unit);
    bool isClip(ElementKey key) const;
    void beginClip(PacketHead const& head);
    bool nextOfClip(EssenceUnit& unit);
    bool isThere(std::uint64_t offset, std::uint64_t length);
    void endAmidElement(Body& body);
    void give(std::uint32_t sid, Body& body, EssenceUnit& unit);
    bool giveRest(EssenceUnit& unit);
    struct Held;
    Templates::auto_ptr<Held> hold(PacketHead const& head);
    void takeFill(PacketHead const& head);
    void beginMetadata(PacketHead const& head);
    void takeSet(PacketHead const& head);
    EssenceTrack const* track(ElementKey key) const;
    EssenceContainer const* container() const;
    void passOver(PacketHead const& head) { at = addOffsets(at, addOffsets(head.headLength, head.length)); }

    DictionaryPtr dictionary;
    std::uint64_t searchLimit;
    Options options;
    BlockWindow window;
    std::uint64_t at = 0; // where the next packet begins
    bool headerFound = false;
    std::optional<Packs::PartitionPack> pack;
    std::uint32_t bodySID = 0;
    Partition::MetadataPtr loading; // while its sets are read
    Partition::MetadataPtr metadata;
    Templates::vector<EssenceContainer> containers;
    Templates::map<std::uint32_t, Body> bodies;
    std::optional<Clip> clip;
};

SequentialReader::SequentialReader(DataIO::DataSource& source, DictionaryPtr dictionary,
                                   std::uint64_t searchLimit, Options options)
    : state_(std::make_unique<State>(source, std::move(dictionary), searchLimit, std::move(options))) {}

SequentialReader::SequentialReader(DataIO::DataSource& source, DictionaryPtr dictionary,
                                   std::uint64_t searchLimit)
    : SequentialReader(source, std::move(dictionary), searchLimit, Options()) {}

SequentialReader::~SequentialReader() = default;

Partition::MetadataPtr const& SequentialReader::metadata() const { return state_->metadata; }
Templates::vector<EssenceContainer> const& SequentialReader::containers() const { return state_->containers; }
Packs::PartitionPack const* SequentialReader::partitionPack() const {
    return state_->pack ? &*state_->pack : nullptr;
}
bool SequentialReader::next(EssenceUnit& unit) { return state_->next(unit); }

bool SequentialReader::State::next(EssenceUnit& unit) {
    unit.isContinued = false;
    if (!headerFound)
        findHeader();
    for (;;) {
        if (clip && nextOfClip(unit))
            return true;
        PacketHead head;
        head.fileOffset = at;
        if (!parseHead(window, mostHeadBytes, head))
            return giveRest(unit);
        if (!ElementKey::isContent(head.key) || bodySID == 0)
            takeOther(head);
        else if (takeContent(head, unit))
            return true;
    }
}

/// Passes over the run-in.
void SequentialReader::State::findHeader() {
    for (; at <= searchLimit && window.available(at, KLV::Key::size()) == KLV::Key::size(); ++at) {
        headerFound = Packs::isPartitionPack(KLV::Key(window.data(at)));
        if (headerFound)
            return;
    }
    throw Exceptions::at(0, Exceptions::InvalidStructure("No header partition found"));
}

/// A pack or set in memory.
struct SequentialReader::State::Held {
    DataIO::Memory::MemoryDataSource source;
    KLV::Packet packet;

    Held(PacketHead const& head, std::vector<unsigned char> value)
        : source(std::move(value)),
          packet(head.key, static_cast<unsigned char>(head.headLength - KLV::Key::size()), head.length,
                 source, head.fileOffset) {}
};

/// Null for one that is not whole or too large.
Templates::auto_ptr<SequentialReader::State::Held> SequentialReader::State::hold(PacketHead const& head) {
    DataIO::Chain value;
    if (head.length > largestSet ||
        window.append(head.fileOffset + head.headLength, head.length, value) != head.length)
        return nullptr;
    std::vector<unsigned char> bytes(static_cast<std::size_t>(head.length));
    value.copyTo(bytes.data(), bytes.size());
    return std::make_unique<Held>(head, std::move(bytes));
}

/// Takes whatever is no essence: packs, sets, segments, fill.
void SequentialReader::State::takeOther(PacketHead const& head) {
    if (Packs::isPartitionPack(head.key))
        enterPartition(head);
    else if (KLV::isFillItem(head.key))
        takeFill(head);
    else if (head.key == Packs::PrimerPack::key())
        beginMetadata(head);
    else if (loading && KLV::isLocalSet(head.key) && !IndexTables::IndexTableSegment::isSegmentKey(head.key))
        takeSet(head);
    else
        endMetadata();
    passOver(head);
}

void SequentialReader::State::takeFill(PacketHead const& head) {
    if (auto const body = bodies.find(bodySID); body != bodies.end())
        body->second.demultiplexer.add(head.key, head.fileOffset, head.headLength, head.length);
}

void SequentialReader::State::beginMetadata(PacketHead const& head) {
    endMetadata();
    if (auto const primer = hold(head))
        loading =
            std::make_shared<Metadata::PartitionMetadata>(std::make_unique<Metadata::PartitionDictionary>(
                dictionary, std::make_unique<Packs::PrimerPack>(primer->packet)));
}

void SequentialReader::State::takeSet(PacketHead const& head) {
    if (auto const set = hold(head))
        loading->loadOrKeepDark(set->packet);
}

void SequentialReader::State::endMetadata() {
    if (!loading)
        return;
    metadata = std::move(loading);
    loading.reset();
    containers = essenceContainers(metadata);
}

void SequentialReader::State::enterPartition(PacketHead const& head) {
    endMetadata();
    if (auto const body = bodies.find(bodySID); body != bodies.end())
        body->second.isFollowed = true;
    bodySID = 0;
    auto const held = Packs::isGenericStreamPartitionPack(head.key) ? nullptr : hold(head);
    if (held == nullptr)
        return;
    pack.emplace(held->packet);
    bodySID = pack->bodySID();
    if (bodySID == 0)
        return;
    Body& body = bodies[bodySID];
    body.isFollowed = false;
    if (body.demultiplexer.boundary().empty())
        body.length = std::max(body.length, pack->bodyOffset());
}

EssenceContainer const* SequentialReader::State::container() const {
    auto const found = std::find_if(containers.begin(), containers.end(),
                                    [this](auto const& each) { return each.bodySID == bodySID; });
    return found != containers.end() ? &*found : nullptr;
}

EssenceTrack const* SequentialReader::State::track(ElementKey key) const {
    auto const* const known = container();
    return known != nullptr ? known->trackByNumber(key.trackNumber()) : nullptr;
}

/// True for an element that is wrapped as a clip by its label.
bool SequentialReader::State::isClip(ElementKey key) const {
    auto const* const known = container();
    return known != nullptr && !key.isSystem() && known->wrapping() == Wrapping::Clip;
}

/// Takes an element into its content package; true when that was one too many and a package is given.
bool SequentialReader::State::takeContent(PacketHead const& head, EssenceUnit& unit) {
    endMetadata();
    ElementKey const key(head.key);
    Body& body = bodies[bodySID];
    if (isClip(key)) {
        beginClip(head);
        return false;
    }
    if (body.demultiplexer.startsNext(head.key)) {
        if (body.first.empty())
            body.first = body.demultiplexer.boundary();
        give(bodySID, body, unit);
        return true;
    }
    auto* const element = body.demultiplexer.add(head.key, head.fileOffset, head.headLength, head.length);
    std::uint64_t const value = head.fileOffset + head.headLength;
    bool const isRead = options.isSelected(key) && head.length <= options.largestElement;
    if (isRead ? window.append(value, head.length, element->data) == head.length
               : isThere(value, head.length))
        passOver(head);
    else
        endAmidElement(body);
    return false;
}

bool SequentialReader::State::isThere(std::uint64_t offset, std::uint64_t length) {
    return length == 0 || window.available(addOffsets(offset, length) - 1, 1) != 0;
}

/// The source ends, and the content package is not whole.
void SequentialReader::State::endAmidElement(Body& body) {
    body.demultiplexer.clear();
    at = ~std::uint64_t{0};
}

void SequentialReader::State::give(std::uint32_t sid, Body& body, EssenceUnit& unit) {
    unit.bodySID = sid;
    unit.position = body.position++;
    unit.streamOffset = body.length;
    std::swap(unit.package, body.demultiplexer.package());
    body.demultiplexer.clear();
    body.length = addOffsets(body.length, unit.package.length);
}

/// At the end of the source, what is whole of the last edit units.
bool SequentialReader::State::giveRest(EssenceUnit& unit) {
    endMetadata();
    for (auto& [sid, body] : bodies) {
        auto const& boundary = body.demultiplexer.boundary();
        if (boundary.empty())
            continue;
        if (body.isFollowed || body.first.empty() || boundary.isLike(body.first)) {
            give(sid, body, unit);
            return true;
        }
        body.demultiplexer.clear();
    }
    return false;
}

void SequentialReader::State::beginClip(PacketHead const& head) {
    ElementKey const key(head.key);
    Clip begun{head, {}, 0, 0};
    if (auto const* const known = track(key))
        begun.grid =
            SampleGrid(known->samples, options.editRate.isKnown() ? options.editRate : known->editRate);
    if (begun.grid.isKnown() && begun.grid.offset(1) > std::max(largestUnit, options.largestElement))
        begun.grid = {};
    if (options.isSelected(key))
        clip = begun;
    passOver(head);
}

/// The next edit unit of the clip, or a part of it; false at its end.
bool SequentialReader::State::nextOfClip(EssenceUnit& unit) {
    PacketHead const& head = clip->element;
    std::uint64_t const left = head.length - clip->done;
    std::uint64_t wanted =
        std::min(left, left <= options.largestElement && clip->done == 0 ? left : partSize);
    if (clip->grid.isKnown())
        wanted = std::min(left, clip->grid.offset(clip->units + 1) - clip->grid.offset(clip->units));
    std::uint64_t const offset = head.fileOffset + head.headLength + clip->done;
    GenericContainer::Element part;
    if (wanted == 0 || window.append(offset, wanted, part.data) != wanted) {
        clip.reset();
        return false;
    }
    part.key = head.key;
    part.offset = offset;
    part.length = wanted;
    unit.bodySID = bodySID;
    unit.position = static_cast<std::int64_t>(clip->units);
    unit.streamOffset = bodies[bodySID].length + head.headLength + clip->done;
    unit.package.clear();
    unit.package.offset = offset;
    unit.package.length = wanted;
    unit.package.elements.push_back(std::move(part));
    clip->done += wanted;
    clip->units += clip->grid.isKnown() ? 1 : 0;
    unit.isContinued = !clip->grid.isKnown() && clip->done < head.length;
    return true;
}

} // namespace MXF::Zelm::MXFIO
