#include "MXF/Zelm/MXFIO/EssenceReader.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/ClipUnits.h"
#include "MXF/Zelm/MXFIO/ElementSource.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::MXFIO {

using GenericContainer::ElementKey;
using GenericContainer::PackageBoundary;
using GenericContainer::Wrapping;

namespace {

/// Clips of one container; they are looked through for each packet.
constexpr std::size_t mostClips = 256;

EssenceReader::Options onlyTrack(EssenceTrack const& track) {
    EssenceReader::Options options;
    options.trackNumbers.push_back(track.trackNumber);
    return options;
}

/// Whether by the index table two edit units of a constant size fit in `length` bytes.
bool holdsSeveral(IndexTables::IndexTable const* table, std::uint64_t length) {
    if (table == nullptr || table->size() == 0)
        return false;
    auto const& segment = *table->begin()->second;
    return segment.indexEntryCount() == 0 && segment.editUnitByteCount() != nullptr &&
           *segment.editUnitByteCount() != 0 && length / 2 >= segment.editUnitByteCount()->value();
}

} // namespace

bool EssenceOptions::isSelected(ElementKey key) const {
    return trackNumbers.empty() ||
           std::any_of(trackNumbers.begin(), trackNumbers.end(),
                       [&](std::uint32_t number) { return key.isSameElement(ElementKey(number)); });
}

EssenceReader::EssenceReader(Reader2& reader, EssenceContainer container, Options options)
    : reader_(reader),
      container_(std::move(container)),
      options_(std::move(options)),
      stream_(reader, container_.bodySID, options_.factory),
      seeker_(reader, stream_, container_.indexSID, options_.gatherer) {}

EssenceReader::EssenceReader(Reader2& reader, EssenceContainer container)
    : EssenceReader(reader, std::move(container), Options()) {}

EssenceReader::EssenceReader(Reader2& reader, FoundTrack const& track)
    : EssenceReader(reader, *track.container, onlyTrack(*track.track)) {}

EssenceReader::~EssenceReader() = default;

bool EssenceReader::next(EssenceUnit& unit) {
    if (!read(position_, unit))
        return false;
    ++position_;
    return true;
}

bool EssenceReader::previous(EssenceUnit& unit) {
    if (position_ <= 0 || !read(position_ - 1, unit))
        return false;
    --position_;
    return true;
}

bool EssenceReader::read(std::int64_t position, EssenceUnit& unit) {
    unit.bodySID = container_.bodySID;
    unit.position = position;
    unit.isContinued = false;
    if (position < 0)
        return false;
    return wrapping() == Wrapping::Clip ? readClip(position, unit) : readFrame(position, unit);
}

// Frame wrapped.

bool EssenceReader::readFrame(std::int64_t position, EssenceUnit& unit) {
    if (position == followingPosition_)
        return readPackage(position, followingOffset_, unit);
    auto const offset = seeker_.find(position);
    return offset && readPackage(position, *offset, unit);
}

bool EssenceReader::isWholeAtEnd() {
    if (demultiplexer_.boundary().empty())
        return false;
    return !stream_.isOpenEnded() || demultiplexer_.boundary().isLike(seeker_.firstPackage());
}

bool EssenceReader::readPackage(std::int64_t position, std::uint64_t streamOffset, EssenceUnit& unit) {
    std::swap(demultiplexer_.package(), unit.package); // the unit's memory serves again
    demultiplexer_.clear();
    stream_.seek(streamOffset);
    bool followed = false;
    while (auto const head = stream_.peekPacket()) {
        followed = demultiplexer_.startsNext(head->key);
        if (followed)
            break;
        if (demultiplexer_.boundary().empty())
            unit.streamOffset = head->streamOffset;
        takePacket(*head);
    }
    std::uint64_t const end = stream_.absoluteOffset();
    if (!followed && !isWholeAtEnd())
        return false;
    // What is added to an open-ended stream may still belong to its last edit unit.
    followingPosition_ = followed ? position + 1 : -1;
    followingOffset_ = end;
    std::swap(demultiplexer_.package(), unit.package);
    return true;
}

void EssenceReader::takePacket(PacketHead const& head) {
    auto* const element = demultiplexer_.add(head.key, head.fileOffset, head.headLength, head.length);
    if (element != nullptr && options_.isSelected(element->elementKey()))
        takeData(head.streamOffset + head.headLength, head.length, element->data);
    stream_.seek(head.end());
}

void EssenceReader::takeData(std::uint64_t streamOffset, std::uint64_t length, DataIO::Chain& data) {
    if (length > options_.largestElement)
        return;
    stream_.seek(streamOffset);
    if (stream_.read(length, data) != length)
        throw Exceptions::at(stream_.fileOffset(streamOffset).value_or(0),
                             Exceptions::InvalidLength("The source ends amid an element"));
}

// How it is wrapped.

Wrapping EssenceReader::wrapping() {
    if (wrapping_ != Wrapping::Unknown)
        return wrapping_;
    auto const found = wrappingByBody();
    // What is added to an open-ended stream may show something else.
    if (found == container_.wrapping() || !stream_.isOpenEnded())
        wrapping_ = found;
    return found;
}

/// Whether a finished body is one element alone that holds several edit units, by the duration of a track or
/// the index table: a clip, whatever its label says.
bool EssenceReader::isOneLongElement() {
    if (stream_.isOpenEnded())
        return false;
    std::optional<PacketHead> only;
    stream_.seek(0);
    while (auto const head = stream_.nextPacket()) {
        if (!ElementKey::isContent(head->key))
            continue;
        if (only)
            return false;
        only = head;
    }
    bool const isLong = std::any_of(container_.tracks.begin(), container_.tracks.end(),
                                    [](EssenceTrack const& track) { return track.duration > 1; });
    return only && (isLong || holdsSeveral(seeker_.table(), only->length));
}

/// Whether the first element of a body, which comes again at `second`, holds more than one edit unit, by what
/// else is known: the index, the size of samples, or the number of edit units.
bool EssenceReader::isClipInParts(PacketHead const& first, PacketHead const& second) {
    if (auto const* const index = seeker_.index())
        if (auto const unit = index->locate(1))
            return unit->streamOffset < second.streamOffset;
    auto const* const track = container_.trackByNumber(ElementKey(second.key).trackNumber());
    if (track == nullptr)
        return false;
    if (SampleGrid const grid(track->samples, track->editRate); grid.isKnown())
        return first.length > grid.offset(1) + track->samples.bytes; // a cadence has a sample more or less
    constexpr std::int64_t mostParts = 1000;
    std::int64_t parts = 1;
    stream_.seek(second.streamOffset);
    for (auto head = stream_.nextCutPacket(); head && parts <= mostParts; head = stream_.nextCutPacket())
        parts += ElementKey(head->key).isSameElement(ElementKey(second.key)) ? 1 : 0;
    return parts <= mostParts && parts < track->duration;
}

/// What the label says, unless the body shows that it cannot be: the first element of a clip comes again with
/// another edit unit, or the only element of edit units holds several of them. Without a label a body of one
/// element, as far as there is one, is a clip.
Wrapping EssenceReader::wrappingByBody() {
    auto const byLabel = container_.wrapping();
    if (stream_.length() == 0)
        return byLabel;
    if (byLabel == Wrapping::Frame)
        return isOneLongElement() ? Wrapping::Clip : byLabel;
    PackageBoundary body;
    PacketHead first;
    bool isCut = false;
    stream_.seek(0);
    for (auto head = stream_.nextCutPacket(); head && !isCut; head = stream_.nextCutPacket()) {
        if (!ElementKey::isContent(head->key))
            continue;
        if (body.startsNext(ElementKey(head->key)))
            return wrapping_ = byLabel == Wrapping::Clip && isClipInParts(first, *head) ? Wrapping::Clip
                                                                                        : Wrapping::Frame;
        if (body.empty())
            first = *head;
        body.add(ElementKey(head->key));
        isCut = head->length > stream_.length() - head->streamOffset;
    }
    if (byLabel == Wrapping::Clip || body.empty())
        return byLabel;
    return body.count() == 1 && isCut == stream_.isOpenEnded() ? Wrapping::Clip : Wrapping::Frame;
}

// Clip wrapped.

/// The packets of the elements that are read, each a clip.
Templates::vector<ClipPackets> EssenceReader::clipPackets() {
    Templates::vector<ClipPackets> found;
    stream_.seek(0);
    while (auto const head = stream_.nextCutPacket()) {
        ElementKey const key(head->key);
        if (ElementKey::isContent(head->key) && !key.isSystem() && options_.isSelected(key)) {
            auto known = std::find_if(found.begin(), found.end(), [&](ClipPackets const& packets) {
                return ElementKey(packets.first.key).isSameElement(key);
            });
            if (known == found.end() && found.size() < mostClips)
                known = found.emplace(known);
            if (known != found.end())
                known->add(*head, stream_.length(), stream_.isOpenEnded());
        }
        if (head->length > stream_.length() - head->streamOffset)
            break;
    }
    return found;
}

Templates::vector<ClipUnits> const& EssenceReader::clips() {
    if (clipsFound_)
        return clips_;
    auto const* const table = seeker_.table();
    auto const* const index = seeker_.index();
    for (auto& packets : clipPackets()) {
        auto const* const track = container_.trackByNumber(ElementKey(packets.first.key).trackNumber());
        clips_.emplace_back(std::move(packets), track, table, index, options_.editRate);
    }
    clipsFound_ = !clips_.empty();
    return clips_;
}

/// Its offset is where it begins, also where it goes on in another packet.
GenericContainer::Element EssenceReader::readPart(ClipUnits const& clip, std::int64_t position) {
    GenericContainer::Element part;
    part.key = clip.element().key;
    auto const ranges = clip.ranges(position);
    if (!ranges.empty())
        part.offset = stream_.fileOffset(ranges.front().offset).value_or(0);
    for (auto const& range : ranges)
        part.length += range.length;
    if (part.length <= options_.largestElement)
        for (auto const& range : ranges)
            takeData(range.offset, range.length, part.data);
    return part;
}

bool EssenceReader::readClip(std::int64_t position, EssenceUnit& unit) {
    unit.package.clear();
    for (auto const& clip : clips()) {
        auto part = readPart(clip, position);
        if (part.length == 0)
            continue;
        if (unit.package.empty()) {
            unit.streamOffset = clip.ranges(position).front().offset;
            unit.package.offset = part.offset;
        }
        unit.package.length += part.length;
        unit.package.elements.push_back(std::move(part));
    }
    return !unit.package.empty();
}

// Positions.

std::optional<std::int64_t> EssenceReader::end() {
    if (wrapping() != Wrapping::Clip)
        return seeker_.end();
    std::int64_t last = 0;
    for (auto const& clip : clips())
        last = std::max(last, clip.count());
    return last;
}

std::optional<std::uint8_t> EssenceReader::flags(std::int64_t position) {
    auto const* const index = seeker_.index();
    return index != nullptr ? index->flags(position) : std::nullopt;
}

/// The first track that is read, of all that the metadata knows.
EssenceTrack const* EssenceReader::mainTrack() const {
    for (std::uint32_t const number : options_.trackNumbers)
        if (auto const* const track = container_.trackByNumber(number))
            return track;
    return container_.tracks.empty() ? nullptr : &container_.tracks.front();
}

Templates::Rational<int> EssenceReader::editRate() const {
    if (wrapping_ != Wrapping::Frame && options_.editRate.isKnown())
        return options_.editRate;
    auto const* const track = mainTrack();
    return track != nullptr ? track->editRate : Templates::Rational<int>();
}

Templates::Rational<std::int64_t> EssenceReader::time(std::int64_t position) const {
    auto const* const track = mainTrack();
    auto const origin = static_cast<std::uint64_t>(track != nullptr ? track->origin : 0);
    return Utils::framesToSeconds(static_cast<std::int64_t>(static_cast<std::uint64_t>(position) - origin),
                                  editRate());
}

Utils::TimeCode EssenceReader::timecode(std::int64_t position) const {
    auto const rate = editRate();
    if (rate.numerator <= 0 || rate.denominator <= 0)
        return {};
    return container_.timecode.at(time(position));
}

Templates::auto_ptr<DataIO::SliceSource> EssenceReader::open(GenericContainer::Element const& element) {
    return std::make_unique<ElementSource>(reader_.source(), element.valueOffset(), element.length,
                                           options_.factory);
}

bool EssenceReader::refresh() {
    bool const grown = stream_.refresh();
    seeker_.refresh();
    clips_.clear();
    clipsFound_ = false;
    return grown;
}

} // namespace MXF::Zelm::MXFIO
