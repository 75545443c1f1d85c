/// What the header metadata says of the essence in a file: containers, and the tracks in them.
#pragma once

#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"
#include "MXF/Zelm/MXFIO/Partition.h"
#include "MXF/Zelm/Templates/Rational.h"
#include "MXF/Zelm/Types/UMID.h"
#include "MXF/Zelm/Utils/TimeCode.h"

#include <optional>

namespace MXF::Zelm::Metadata::Structural {
class FileDescriptor;
class SourcePackage;
class Track;
} // namespace MXF::Zelm::Metadata::Structural

namespace MXF::Zelm::MXFIO {

/// Sound whose samples all have the same number of bytes.
struct MXFZELM_EXPORT SampleFormat {
    /// Bytes of one sample of all channels; 0 where samples have no size.
    std::uint32_t bytes = 0;

    /// Samples in a second.
    Templates::Rational<int> rate = {};

    /// Edit units of a cadence such as 1602, 1601, … that stand before the first one.
    std::uint8_t sequenceOffset = 0;
};

/// One track of a file package with essence in the container.
struct MXFZELM_EXPORT EssenceTrack {
    std::uint32_t trackID = 0;

    /// Bytes 12 to 15 of the keys of its elements.
    std::uint32_t trackNumber = 0;

    /// Edit units a second.
    Templates::Rational<int> editRate = {};

    /// Edit units before the track's zero point.
    std::int64_t origin = 0;

    /// In edit units, -1 while it is not known.
    std::int64_t duration = -1;

    GenericContainer::Wrapping wrapping = GenericContainer::Wrapping::Unknown;
    SampleFormat samples = {};

    /// Owned by the metadata; the descriptor is null when there is none.
    Metadata::Structural::Track const* track = nullptr;
    Metadata::Structural::FileDescriptor const* descriptor = nullptr;
};

/// The timecode of a package.
struct MXFZELM_EXPORT TimecodeTrack {
    struct Component {
        std::int64_t start = 0; // on the track, in its edit units
        Utils::TimeCode timecode = {};
    };

    Templates::Rational<int> editRate = {};
    Templates::vector<Component> components = {};

    /// At a time in seconds from the zero points of the tracks; undefined where there is none.
    Utils::TimeCode at(Templates::Rational<std::int64_t> const& seconds) const;
};

/// One essence container of the file. A value; one with a body SID alone serves for essence without metadata.
struct MXFZELM_EXPORT EssenceContainer {
    std::uint32_t bodySID = 0;

    /// 0 when the metadata names none.
    std::uint32_t indexSID = 0;

    /// The file package, null when there is none.
    Metadata::Structural::SourcePackage const* package = nullptr;

    Templates::vector<EssenceTrack> tracks = {};

    /// The first timecode track of the package that has timecode, its components in their order.
    TimecodeTrack timecode = {};

    /// Keeps the package and the tracks.
    Partition::MetadataPtr metadata = nullptr;

    /// The track with an ID, or with a number, null when there is none. Of numbers the element count is left
    /// out of account where none is the same.
    EssenceTrack const* trackByID(std::uint32_t trackID) const;
    EssenceTrack const* trackByNumber(std::uint32_t trackNumber) const;

    /// How the container is wrapped, as far as the labels of its tracks tell.
    GenericContainer::Wrapping wrapping() const;

    /// The edit rate of the first track that has one.
    Templates::Rational<int> editRate() const;
};

/// The containers that the content storage names, in its order. What it does not hold together is left out: a
/// container without a body SID, a track without a number.
MXFZELM_EXPORT Templates::vector<EssenceContainer> essenceContainers(Partition::MetadataPtr const& metadata);

/// A track and the container that its essence stands in.
struct MXFZELM_EXPORT FoundTrack {
    EssenceContainer const* container = nullptr;
    EssenceTrack const* track = nullptr;
};

/// A track of a file package, or the one that a track of any package of the metadata leads to by the first
/// source clip of each; absent when it leads to no essence of these containers.
MXFZELM_EXPORT std::optional<FoundTrack> findTrack(Templates::vector<EssenceContainer> const& containers,
                                                   Types::UMID32 const& packageUID, std::uint32_t trackID);

} // namespace MXF::Zelm::MXFIO
