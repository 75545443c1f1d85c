/// What the channels of sound are: labels of channels and of the soundfields that they make (SMPTE 377-4),
/// which go into descriptors as sub-descriptors.
#pragma once

#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Types/UUID.h"

#include <string_view>
#include <vector>

namespace MXF::Zelm::Metadata::Structural {

/// A channel, or a soundfield group of several, by the registers.
struct MXFZELM_EXPORT SoundLabel {
    std::string_view symbol; ///< without what stands before it in a file: "L" of "chL", "51" of "sg51"
    KLV::Key label;
    std::u16string_view name;
};

/// The channels of a programme in their order, which may be spread over several tracks. A value.
class MXFZELM_EXPORT ChannelMap {
public:
    /// Symbols of channels, with commas between them and semicolons between soundfield groups:
    /// "L,R,C,LFE,Ls,Rs;L,R". The symbols are L, R, C, LFE, Ls, Rs, Lss, Rss, Lrs, Rrs, Lc, Rc, Cs, HI, VIN,
    /// M1, M2, Lt, Rt, Lst, Rst, S, and NSC1 to NSC127 of numbered sources; "ch" may stand before them.
    /// Throws Exceptions::InvalidFormat for others.
    explicit ChannelMap(std::string_view text);

    std::size_t channelCount() const { return channels_.size(); }

    /// True for the first channel of a group, counted from 0.
    bool beginsGroup(std::size_t channel) const;

    /// Labels the channels of `descriptor` as `count` channels of the map from `first` on, beginning again
    /// behind its end, and with them their groups, where channels make one that has a name. Groups that are
    /// spread over descriptors have the same link ID in each. Throws what
    /// PartitionMetadata::createMetadataSet throws.
    void label(PartitionMetadata& metadata, GenericSoundEssenceDescriptor& descriptor, std::size_t first,
               std::size_t count) const;

private:
    struct Channel {
        SoundLabel label;
        std::size_t group;
    };
    struct Group {
        SoundLabel const* label; // null for channels that make none with a name
        Types::UUID link;
    };

    void addGroup(std::string_view text);
    void addGroupLabel(PartitionMetadata& metadata, GenericSoundEssenceDescriptor& descriptor,
                       Group const& group) const;

    std::vector<Channel> channels_;
    std::vector<Group> groups_;
};

} // namespace MXF::Zelm::Metadata::Structural
