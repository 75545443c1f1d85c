#include "ExtractPumps.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using GenericContainer::ElementKey;
using MXFIO::EssenceReader;
using MXFIO::EssenceUnit;

namespace {

/// An element with more bytes is read in pieces of this size.
constexpr std::uint64_t pieceSize = std::uint64_t{1} << 20;

/// Elements that tell what a clip is; files have a few.
constexpr std::size_t mostClips = 256;

/// Edit units that the metadata says there are, -1 when it does not.
std::int64_t expectedUnits(MXFIO::EssenceContainer const& container) {
    std::int64_t most = -1;
    for (auto const& track : container.tracks)
        if (track.editRate == container.editRate())
            most = std::max(most, track.duration);
    return most;
}

std::string unitsText(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " edit unit" : " edit units");
}

EssenceReader::Options optionsFor(std::vector<ExtractTrack*> const& only, SharedGatherer const& gatherer) {
    auto options = moderateOptions(gatherer);
    for (auto const* const track : only)
        options.trackNumbers.push_back(track->element.trackNumber());
    return options;
}

class UnitPump : public ExtractPump {
public:
    UnitPump(Input& input, MXFIO::EssenceContainer const& container, ExtractTracks& tracks,
             WantedUnits const& wanted, std::vector<ExtractTrack*> const& only,
             SharedGatherer const& gatherer)
        : container_(container),
          tracks_(tracks),
          reader_(input.reader, container, optionsFor(only, gatherer)),
          first_(wanted.first()),
          last_(wanted.last()) {
        reader_.seek(first_);
    }

    bool step() override {
        if (reader_.position() >= last_ || !reader_.next(unit_))
            return false;
        place_ = unit_.package.offset + unit_.package.length;
        giveUnit(unit_, tracks_, &reader_);
        return true;
    }

    std::string shortfall() override {
        std::int64_t const expected = expectedUnits(container_), end = reader_.position();
        std::int64_t const wanted = expected < 0 ? last_ : std::min(last_, expected);
        bool const isShort = expected >= 0 ? end < wanted : reader_.stream().isOpenEnded() && end < wanted;
        if (!isShort || end < first_)
            return {};
        return "the essence ends early, after " + unitsText(end) +
               (expected >= 0 ? " of " + std::to_string(expected) : "");
    }

    bool serves(ExtractTrack const& track) const override { return track.bodySID == container_.bodySID; }

private:
    MXFIO::EssenceContainer const& container_;
    ExtractTracks& tracks_;
    EssenceReader reader_;
    std::int64_t first_, last_;
    EssenceUnit unit_;
};

class ClipPump : public ExtractPump {
public:
    ClipPump(Input& input, MXFIO::EssenceContainer const& container, ExtractTrack& track,
             SharedGatherer const& gatherer)
        : track_(track), reader_(input.reader, container, placesOf(track, gatherer)) {
        auto& stream = reader_.stream();
        stream.seek(0);
        auto head = stream.nextCutPacket();
        while (head && !(ElementKey::isContent(head->key) && ElementKey(head->key) == track.element))
            head = stream.nextCutPacket();
        if (!head)
            return;
        begin_ = head->streamOffset + head->headLength;
        std::uint64_t const there = stream.length() - begin_;
        end_ = begin_ + std::min(head->length, there);
        isCut_ = head->length > there;
        limit(track.wanted.of(track.kind()));
        stream.seek(begin_);
    }

    std::optional<std::uint64_t> length() const override { return end_ - begin_; }

    bool step() override {
        auto& stream = reader_.stream();
        std::uint64_t const at = stream.absoluteOffset();
        if (at >= end_)
            return false;
        if (at == begin_)
            begin();
        piece_.clear();
        std::uint64_t const got = stream.read(std::min(pieceSize, end_ - at), piece_);
        place_ = stream.fileOffset(at).value_or(0) + got;
        track_.output->take(piece_);
        track_.bytes += got;
        if (got == 0 || at + got >= end_)
            track_.output->endUnit();
        return got != 0;
    }

    std::string shortfall() override {
        if (!isCut_ || isEnough_)
            return {};
        return "the essence of track " + track_.name + " ends early, " +
               (isAmid_ ? "amid an edit unit" : "after " + unitsText(first_ + units_));
    }

    bool serves(ExtractTrack const& track) const override { return &track == &track_; }

private:
    static EssenceReader::Options placesOf(ExtractTrack& track, SharedGatherer const& gatherer) {
        auto options = optionsFor({&track}, gatherer);
        options.largestElement = 0;
        return options;
    }

    /// Of a clip that is cut off the whole edit units, or all of it when nobody knows where they end.
    void limit(UnitRange const& wanted) {
        std::int64_t const there = reader_.end().value_or(0);
        units_ = there;
        isAmid_ = isCut_ && there == 0;
        isEnough_ = wanted.last <= there;
        bool const isOne = there <= 1; // a document; or nobody knows
        track_.isUncut = isOne && (wanted.first > 0 || wanted.last != allUnits.last);
        if (isOne || (wanted.first <= 0 && wanted.last >= there && !isCut_))
            return;
        first_ = std::clamp<std::int64_t>(wanted.first, 0, there);
        units_ = std::clamp<std::int64_t>(wanted.last, first_, there) - first_;
        EssenceUnit unit;
        if (units_ == 0 || !reader_.read(first_, unit)) {
            end_ = begin_;
            return;
        }
        begin_ = unit.streamOffset;
        if (reader_.read(first_ + units_ - 1, unit))
            end_ = unit.streamOffset + unit.package.length;
    }

    void begin() {
        track_.firstUnit = first_;
        track_.units = static_cast<std::uint64_t>(std::max<std::int64_t>(units_, 1));
        track_.output->beginUnit(first_);
    }

    ExtractTrack& track_;
    EssenceReader reader_;
    std::uint64_t begin_ = 0, end_ = 0; // in the stream
    std::int64_t first_ = 0, units_ = 0;
    bool isCut_ = false;
    bool isAmid_ = false;   // it ends where no edit unit is known to end
    bool isEnough_ = false; // what is wanted ends before
    DataIO::Chain piece_;
};

void takeLarge(ExtractTrack& track, GenericContainer::Element const& element, EssenceReader& reader) {
    auto const source = reader.open(element);
    DataIO::Chain piece;
    while (source->read(pieceSize, piece) != 0) {
        track.output->take(piece);
        piece.clear();
    }
}

} // namespace

MXFIO::EssenceOptions moderateOptions(SharedGatherer const& gatherer) {
    MXFIO::EssenceOptions options;
    options.gatherer = gatherer;
    options.largestElement = 4 * pieceSize;
    return options;
}

EssenceUnit clipElements(EssenceReader& reader) {
    constexpr std::uint64_t enough = 64;
    EssenceUnit unit;
    unit.bodySID = reader.container().bodySID;
    unit.position = 0;
    auto& stream = reader.stream();
    stream.seek(0);
    for (auto head = stream.nextCutPacket(); head; head = stream.nextCutPacket()) {
        ElementKey const key(head->key);
        auto& elements = unit.package.elements;
        bool const isNew = std::none_of(elements.begin(), elements.end(),
                                        [&](auto const& each) { return each.key == head->key; });
        if (!ElementKey::isContent(head->key) || key.isSystem() || !isNew || elements.size() == mostClips)
            continue;
        GenericContainer::Element element;
        element.key = head->key;
        element.length = head->length;
        stream.seek(head->streamOffset + head->headLength);
        stream.read(std::min(enough, head->length), element.data);
        elements.push_back(std::move(element));
        stream.seek(head->end());
    }
    return unit;
}

void giveUnit(EssenceUnit const& unit, ExtractTracks& tracks, EssenceReader* reader, bool continues) {
    for (auto const& element : unit.package.elements) {
        auto* const track = tracks.find(unit.bodySID, element.elementKey());
        if (track == nullptr || !track->output || !track->wanted.of(track->kind()).contains(unit.position))
            continue;
        if (!continues) {
            track->output->beginUnit(unit.position);
            track->firstUnit = track->units++ == 0 ? unit.position : track->firstUnit;
        }
        if (element.data.size() == element.length)
            track->output->take(element.data);
        else if (reader != nullptr)
            takeLarge(*track, element, *reader);
        else
            throw Exceptions::at(element.offset, Exceptions::InvalidLength(
                                                     "an element of " + std::to_string(element.length) +
                                                     " bytes is too large for a source that cannot seek"));
        track->bytes += element.length;
        if (!unit.isContinued)
            track->output->endUnit();
    }
}

std::unique_ptr<ExtractPump> makeUnitPump(Input& input, MXFIO::EssenceContainer const& container,
                                          ExtractTracks& tracks, WantedUnits const& wanted,
                                          std::vector<ExtractTrack*> const& only,
                                          SharedGatherer const& gatherer) {
    return std::make_unique<UnitPump>(input, container, tracks, wanted, only, gatherer);
}

std::unique_ptr<ExtractPump> makeClipPump(Input& input, MXFIO::EssenceContainer const& container,
                                          ExtractTrack& track, SharedGatherer const& gatherer) {
    return std::make_unique<ClipPump>(input, container, track, gatherer);
}

} // namespace Zelm
