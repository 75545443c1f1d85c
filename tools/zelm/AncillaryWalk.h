/// Goes over the VBI lines and ancillary data packets of a file (SMPTE 436M).
#pragma once

#include "Faults.h"
#include "UnitRange.h"

#include <MXF/Zelm/Essence/Ancillary/Packet.h>
#include <MXF/Zelm/GenericContainer/ContentPackage.h>
#include <MXF/Zelm/GenericContainer/S436M/FrameElement.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Zelm {

/// A track of VBI or ANC, or elements of that kind without metadata.
struct AncillaryTrack {
    using Kind = MXF::Zelm::GenericContainer::S436M::ElementKind;

    Kind kind = Kind::ANC;
    std::uint32_t bodySID = 0;
    std::uint32_t number = 0;
    std::optional<std::uint32_t> id; ///< none without metadata
    EditRate editRate = {};          ///< 0/0 when it is not known
    UnitTimecodes timecodes;         ///< of the material package

    bool isANC() const { return kind == Kind::ANC; }
    const char* kindText() const { return isANC() ? "ANC" : "VBI"; }

    /// "30000/1001"; none when it is not known.
    std::optional<std::string> editRateText() const;

    /// "10:00:00:00"; none when it cannot be told.
    std::optional<std::string> timecodeText(std::int64_t unit) const;
};

struct AncillaryPacket {
    AncillaryTrack const& track;
    std::int64_t unit;
    std::uint64_t offset; ///< in the file
    MXF::Zelm::GenericContainer::S436M::FoundPacket const& found;
    MXF::Zelm::Essence::Ancillary::ReadPacket content; ///< of ANC
};

/// What is done with the packets. Tracks live as long as the walk.
class AncillaryUse {
public:
    virtual ~AncillaryUse() = default;

    /// Called for all tracks before anything else.
    virtual void track(AncillaryTrack const&) {}

    /// One for each edit unit; before its packets.
    virtual void element(AncillaryTrack const&, std::int64_t /*unit*/) {}
    virtual void packet(AncillaryPacket const&) = 0;

    /// Something is wrong with an element as a whole.
    virtual void fault(AncillaryTrack const&, std::int64_t /*unit*/, Fault const&) {}
};

/// The tracks of VBI and ANC in a file, and their packets.
class AncillaryWalk {
public:
    /// Reads the metadata; `input` must outlive the walk. Throws InvalidStructure when it is no MXF file.
    explicit AncillaryWalk(Input& input);
    ~AncillaryWalk();

    /// Only edit units of the range. Throws Exceptions::InvalidValue and InvalidFormat when it names
    /// timecodes that cannot be told.
    void select(RangeChoice const& range);

    /// Gives the packets, container after container.
    void run(AncillaryUse& use);

    /// What could not be read.
    std::vector<Fault> const& faults() const { return faults_; }

private:
    struct Container;

    void findTracks(FileInfo const& info, MXF::Zelm::MXFIO::Partition::MetadataPtr const& metadata);
    void findBodies(FileInfo const& info);
    void runContainer(Container const& container, AncillaryUse& use);
    void takeElement(AncillaryTrack const& track, std::int64_t unit,
                     MXF::Zelm::GenericContainer::Element const& element, AncillaryUse& use) const;
    void keep(MXF::Zelm::Exceptions::BaseException const& failure);

    Input& input_;
    unsigned lines_; ///< of the interface
    std::vector<Container> containers_;
    std::vector<std::unique_ptr<AncillaryTrack>> tracks_;
    std::vector<Fault> faults_;
};

} // namespace Zelm
