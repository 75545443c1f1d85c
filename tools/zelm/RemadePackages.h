/// Essence of one file package or several, put into new content packages by a multiplexer: side by side, with
/// a system item, or cut in other edit units than before.
#pragma once

#include "ContainerCopy.h"

#include <MXF/Zelm/GenericContainer/Multiplexer/Mux.h>
#include <MXF/Zelm/MXFIO/PassThroughAnalyzer.h>

#include <map>

namespace Zelm {

class RemadePackages {
public:
    using Rate = MXF::Zelm::Templates::Rational<int>;

    /// `units`, in stored order, go into packages of that rate.
    RemadePackages(ContainerCopy& copy, Rate const& rate, UnitRange const& units);

    /// Frames have the rate of the packages, clips hold samples; throws Exceptions::InvalidValue when it is
    /// otherwise. The first to be added rules.
    void add(CopiedEssence const& essence);

    /// Its timecode is that of the file package, else that of the material package.
    void addSystemItem(MXF::Zelm::Metadata::PartitionMetadata const& metadata);

    /// Gives the copy its source, and its tracks the numbers and rates that they have now. The alignment grid
    /// in bytes.
    void commit(std::uint32_t kagSize);

private:
    using Analyzer = std::shared_ptr<MXF::Zelm::MXFIO::PassThroughAnalyzer>;
    struct Stream {
        Analyzer analyzer;
        CopiedTrack track;
        unsigned char number; // of the element
    };

    MXF::Zelm::Types::UniversalLabel label() const;
    MXF::Zelm::Utils::TimeCode startTimecode(MXF::Zelm::Metadata::PartitionMetadata const& metadata) const;

    ContainerCopy& copy_;
    Rate rate_;
    UnitRange units_;
    MXF::Zelm::GenericContainer::Multiplexer::Mux mux_;
    std::vector<Stream> streams_;
    std::map<int, unsigned char> counts_; // of elements, by kind of analyzer
};

/// Where an element stands among those of its kind.
struct ElementPlace {
    unsigned char count, number;
};

/// Gives a track and its descriptor number, label and rate of what the analyzer gives.
void describeRemade(MXF::Zelm::Metadata::Structural::SourcePackage& package, std::uint32_t trackID,
                    MXF::Zelm::GenericContainer::EssenceAnalyzer const& analyzer, ElementPlace place,
                    RemadePackages::Rate const& rate);

/// Takes the origin of the copy from its first track.
void findOrigin(ContainerCopy& copy);

} // namespace Zelm
