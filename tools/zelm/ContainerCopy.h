/// An essence container on its way from a file, or from several, into a new one.
#pragma once

#include "Input.h"
#include "MetadataParts.h"
#include "UnitRange.h"

#include <MXF/Zelm/GenericContainer/Source.h>
#include <MXF/Zelm/MXFIO/EssenceContainer.h>
#include <MXF/Zelm/MXFIO/PassThroughSource.h>
#include <MXF/Zelm/Metadata/Structural/GenericDescriptor.h>
#include <MXF/Zelm/Metadata/Structural/GenericPackage.h>
#include <MXF/Zelm/Metadata/Structural/StructuralComponent.h>

#include <functional>
#include <list>
#include <memory>
#include <optional>

namespace Zelm {

struct CopiedTrack {
    MXF::Zelm::MXFIO::EssenceTrack const* source = nullptr; ///< of the input's container
    std::uint32_t trackID = 0;                              ///< in the package that is written
};

/// Tracks of a container of an input, which outlives it.
struct CopiedEssence {
    Input* input = nullptr;
    std::shared_ptr<MXF::Zelm::MXFIO::EssenceContainer const> container = nullptr;
    std::vector<CopiedTrack> tracks = {};

    std::int64_t origin() const { return container->tracks.empty() ? 0 : container->tracks.front().origin; }
};

/// The time from a first moment to before a last one.
struct TimeSpan {
    Seconds first = {0, 1};
    Seconds last = {0, 1};
};

struct ContainerCopy {
    using TrackChange = MXF::Zelm::MXFIO::PassThroughSourceOptions::TrackChange;
    using SourcePackage = MXF::Zelm::Metadata::Structural::SourcePackage;

    CopiedEssence essence = {};
    std::vector<CopiedEssence> beside = {};    ///< goes into the same content packages
    std::vector<CopiedEssence> following = {}; ///< goes on where the essence ends

    // In the new file.
    std::uint32_t bodySID = 0, indexSID = 0;
    SourcePackage* package = nullptr;
    std::vector<TrackChange> changes = {};
    bool hasSystemItem = true; ///< if the essence has

    /// What of the package's time is kept; all when absent.
    std::optional<TimeSpan> span = std::nullopt;

    // When there is a source.
    std::unique_ptr<MXF::Zelm::GenericContainer::Source> source = nullptr;
    std::function<std::int64_t()> units = {};   ///< handed out so far
    std::function<bool()> knowsUnits = {};      ///< whether that is certain
    MXF::Zelm::Templates::Rational<int> rate{}; ///< edit units a second
    std::int64_t preCharge = 0;
    std::int64_t origin = 0; ///< edit units before what is shown
    bool isClip = false;

    /// Edit units that have to come; absent when nothing tells.
    std::optional<std::int64_t> expected = std::nullopt;

    MXF::Zelm::MXFIO::EssenceContainer const& container() const { return *essence.container; }

    /// What of the container is wanted, in the order of showing, counted from its start.
    UnitRange wanted() const;
};

using ContainerCopies = std::list<ContainerCopy>;

std::int64_t inRate(std::int64_t units, MXF::Zelm::Templates::Rational<int> const& from,
                    MXF::Zelm::Templates::Rational<int> const& to);

/// The descriptor of a file package, and those that it is made up of.
std::vector<MXF::Zelm::Metadata::Structural::FileDescriptor*>
descriptorsOf(MXF::Zelm::Metadata::Structural::SourcePackage const& package);

/// Null when the package has none with that ID.
MXF::Zelm::Metadata::Structural::TimelineTrack*
timelineTrack(MXF::Zelm::Metadata::Structural::GenericPackage const& package, std::uint32_t trackID);

/// The source clips of a track.
std::vector<MXF::Zelm::Metadata::Structural::SourceClip*>
clipsOf(MXF::Zelm::Metadata::Structural::Track const& track);

/// The copy that goes into a package; null when none does.
ContainerCopy* copyInto(ContainerCopies& copies, MXF::Zelm::Types::UMID32 const* packageUID);

/// The one with the (first) picture, else the first.
ContainerCopy& leadingCopy(ContainerCopies& copies);

} // namespace Zelm
