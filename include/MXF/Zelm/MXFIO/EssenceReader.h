/// Reads the essence of one container, edit unit after edit unit: frame wrapped and clip wrapped alike, from
/// any position, forwards and backwards.
///
///     auto const containers = essenceContainers(reader.firstPartitionWithFinalMetadata()->metadata());
///     EssenceReader essence(reader, containers.front());
///     EssenceUnit unit;
///     for (essence.seek(250); essence.next(unit);)
///         if (auto const* const picture = unit.package.element(0x15010500))
///             use(picture->data);
#pragma once

#include "MXF/Zelm/GenericContainer/Demultiplexer.h"
#include "MXF/Zelm/MXFIO/EssenceContainer.h"
#include "MXF/Zelm/MXFIO/EssenceUnit.h"
#include "MXF/Zelm/MXFIO/Seeker.h"

namespace MXF::Zelm::MXFIO {

struct ClipPackets;
class ClipUnits;

class MXFZELM_EXPORT EssenceReader : public Platform::Allocated {
public:
    using Options = EssenceOptions;

    /// `reader` is not owned and must outlive the essence reader, which moves its source.
    EssenceReader(Reader2& reader, EssenceContainer container, Options options);
    EssenceReader(Reader2& reader, EssenceContainer container);

    /// One track.
    EssenceReader(Reader2& reader, FoundTrack const& track);
    EssenceReader(EssenceReader const&) = delete;
    EssenceReader& operator=(EssenceReader const&) = delete;
    ~EssenceReader();

    EssenceContainer const& container() const { return container_; }
    BodyStream& stream() { return stream_; }
    Seeker& seeker() { return seeker_; }

    /// How the essence is wrapped: by its label, or by what the body shows. Unknown where there is no essence
    /// yet.
    GenericContainer::Wrapping wrapping();

    /// The next edit unit, and moves behind it. False at the end; of a file that is cut off, after the last
    /// one that is whole. `unit` is overwritten. An element with more bytes than
    /// `Options::largestElement` comes without its data: `open` reads it. Throws as `BodyStream::peekPacket`
    /// does.
    bool next(EssenceUnit& unit);

    /// The edit unit before the position, and moves before it. False at the start.
    bool previous(EssenceUnit& unit);

    /// Edit unit `position`; moves nothing. False when there is none.
    bool read(std::int64_t position, EssenceUnit& unit);

    /// Where `next` reads on. Any position may be set, also one where there is nothing.
    std::int64_t position() const { return position_; }
    void seek(std::int64_t position) { position_ = position; }

    /// Behind the last whole edit unit. May walk over the container; absent when that was stopped.
    std::optional<std::int64_t> end();

    /// The flags of an edit unit in the file's index (`IndexTables::IndexEntry::Flag`), absent where it has
    /// none.
    std::optional<std::uint8_t> flags(std::int64_t position);

    /// When an edit unit begins: seconds from the zero point of its track. Throws Exceptions::InvalidValue
    /// when the edit rate is not known or the time is beyond 64 bits.
    Templates::Rational<std::int64_t> time(std::int64_t position) const;

    /// Its timecode by the file package; undefined when that has none. Throws as `time` does for a position
    /// beyond all time.
    Utils::TimeCode timecode(std::int64_t position) const;

    /// The value of an element, whatever its size. The source lives no longer than the reader and shares its
    /// file with it.
    Templates::auto_ptr<DataIO::SliceSource> open(GenericContainer::Element const& element);

    /// Looks for essence that was added to the file since; `BodyStream::refresh` says how. True when there is
    /// more.
    bool refresh();

private:
    bool readFrame(std::int64_t position, EssenceUnit& unit);
    bool readPackage(std::int64_t position, std::uint64_t streamOffset, EssenceUnit& unit);
    void takePacket(PacketHead const& head);
    void takeData(std::uint64_t streamOffset, std::uint64_t length, DataIO::Chain& data);
    bool isWholeAtEnd();
    bool isOneLongElement();
    bool isClipInParts(PacketHead const& first, PacketHead const& second);
    GenericContainer::Wrapping wrappingByBody();
    bool readClip(std::int64_t position, EssenceUnit& unit);
    GenericContainer::Element readPart(ClipUnits const& clip, std::int64_t position);
    Templates::vector<ClipPackets> clipPackets();
    Templates::vector<ClipUnits> const& clips();
    EssenceTrack const* mainTrack() const;
    Templates::Rational<int> editRate() const;

    Reader2& reader_;
    EssenceContainer container_;
    Options options_;
    BodyStream stream_;
    Seeker seeker_;
    GenericContainer::Wrapping wrapping_ = GenericContainer::Wrapping::Unknown;
    GenericContainer::Demultiplexer demultiplexer_;
    std::int64_t position_ = 0;
    std::int64_t followingPosition_ = -1; // the edit unit that begins at the following offset
    std::uint64_t followingOffset_ = 0;
    Templates::vector<ClipUnits> clips_; // of clip-wrapped essence, when they have been looked for
    bool clipsFound_ = false;
};

} // namespace MXF::Zelm::MXFIO
