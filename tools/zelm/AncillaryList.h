/// Packets of VBI and ANC out of the JSON that `zelm ancillary --dump` prints.
#pragma once

#include "AncillaryRow.h"
#include "WrapTracks.h"

#include <MXF/Zelm/GenericContainer/S436M/PacketAnalyzers.h>

#include <map>
#include <string_view>

namespace Zelm {

/// The packets of one track, frame by frame; frames without any are empty.
class AncillaryFrames : public MXF::Zelm::GenericContainer::S436M::PacketProvider, public OpenEnd {
public:
    using StoredPacket = MXF::Zelm::GenericContainer::S436M::StoredPacket;

    bool nextFrame(MXF::Zelm::Templates::vector<StoredPacket>& packets) override;
    void add(std::uint64_t frame, StoredPacket packet);

    /// It has at least so many frames.
    void reach(std::uint64_t frames);

    void goOn() override { isEndless_ = true; }

    /// An analyzer asks for a frame more than it gives.
    bool isExhausted() const override { return next_ > frames_; }

private:
    std::map<std::uint64_t, MXF::Zelm::Templates::vector<StoredPacket>> packets_;
    std::uint64_t frames_ = 0, next_ = 0;
    bool isEndless_ = false;
};

struct AncillaryList {
    using Kind = MXF::Zelm::GenericContainer::S436M::ElementKind;

    struct Track {
        std::shared_ptr<AncillaryFrames> frames = std::make_shared<AncillaryFrames>();
        EditRate editRate = {}; ///< 0/0 when it is not told
        std::string name = {};  ///< tells tracks of a kind apart
    };

    /// A file has one track of each kind.
    std::map<Kind, Track> tracks = {};

    /// Packets of further tracks, and elements that could not be read.
    std::uint64_t leftOut = 0;
};

/// Throws BadAncillaryText.
AncillaryList readAncillary(std::string_view text);

} // namespace Zelm
