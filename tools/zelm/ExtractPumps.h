/// How the essence of one container or clip gets to its outputs, step by step.
#pragma once

#include "ExtractTracks.h"
#include "Input.h"

#include <MXF/Zelm/MXFIO/EssenceReader.h>

namespace Zelm {

class ExtractPump {
public:
    virtual ~ExtractPump() = default;

    /// Reads some and hands it out. False when there is no more.
    virtual bool step() = 0;

    /// After the last step, why there is less than there should be; empty when there is not.
    virtual std::string shortfall() = 0;

    virtual bool serves(ExtractTrack const& track) const = 0;

    /// Bytes that are handed out in all, if that is known.
    virtual std::optional<std::uint64_t> length() const { return std::nullopt; }

    /// Where in the file the last step ended.
    std::uint64_t place() const { return place_; }

protected:
    std::uint64_t place_ = 0;
};

/// Index tables, read once for all containers.
using SharedGatherer = std::shared_ptr<MXF::Zelm::MXFIO::IndexTableGatherer>;

/// Edit unit after edit unit of a container. With `only` no other tracks are read than those.
std::unique_ptr<ExtractPump> makeUnitPump(Input& input, MXF::Zelm::MXFIO::EssenceContainer const& container,
                                          ExtractTracks& tracks, WantedUnits const& wanted,
                                          std::vector<ExtractTrack*> const& only,
                                          SharedGatherer const& gatherer);

/// The bytes of an element that holds all edit units of its track.
std::unique_ptr<ExtractPump> makeClipPump(Input& input, MXF::Zelm::MXFIO::EssenceContainer const& container,
                                          ExtractTrack& track, SharedGatherer const& gatherer);

/// Reads no elements at once that are too large for it.
MXF::Zelm::MXFIO::EssenceOptions moderateOptions(SharedGatherer const& gatherer);

/// The elements of a container that is wrapped as clips, each with its first bytes only.
MXF::Zelm::MXFIO::EssenceUnit clipElements(MXF::Zelm::MXFIO::EssenceReader& reader);

/// Hands an edit unit to the tracks that want it. `reader` reads elements that came without their data, null
/// for none. With `continues` it is the rest of the last one.
void giveUnit(MXF::Zelm::MXFIO::EssenceUnit const& unit, ExtractTracks& tracks,
              MXF::Zelm::MXFIO::EssenceReader* reader, bool continues = false);

} // namespace Zelm
