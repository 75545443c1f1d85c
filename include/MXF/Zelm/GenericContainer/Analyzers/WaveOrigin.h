/// The Wave file that sound came from, as header metadata tells of it (SMPTE 382M): a source package behind
/// the file package, with a WAVEAudioPhysicalDescriptor that has the coding history and all chunks that no
/// property stands for, and a timecode track for the time reference.
///
///     material package ─ file package ─ source package ─ WAVEAudioPhysicalDescriptor ─ UnknownChunkSet …
#pragma once

#include "MXF/Zelm/Essence/Wave/WaveReader.h"
#include "MXF/Zelm/Metadata/Structural/PhysicalDescriptors.h"
#include "MXF/Zelm/Templates/Rational.h"
#include "MXF/Zelm/Types/UMID.h"
#include "MXF/Zelm/Utils/TimeCode.h"

#include <optional>
#include <string>
#include <vector>

namespace MXF::Zelm::Metadata {
class PartitionMetadata;
namespace Structural {
class SourcePackage;
}
} // namespace MXF::Zelm::Metadata

namespace MXF::Zelm::GenericContainer {

/// A value.
struct MXFZELM_EXPORT WaveOrigin {
    /// Takes over what a Wave file says, and reads the chunks behind its samples: all but those of format,
    /// samples, sizes and padding. Its samples cannot be read afterwards.
    explicit WaveOrigin(Essence::Wave::WaveReader& wave);

    /// What a clock shows when the sound begins, at a rate in frames a second; undefined when the file does
    /// not tell. Drop frame where that keeps to the clock. Throws Exceptions::InvalidValue for a rate that is
    /// not positive.
    Utils::TimeCode startTimecode(Templates::Rational<int> const& rate) const;

    /// The same package in all files that are made of the Wave file.
    Types::UMID32 packageUID = Types::UMID32::generate(Types::UMIDMaterialType::NotIdentified);
    Essence::Wave::WaveFormat format;
    std::optional<Essence::Wave::BroadcastExtension> broadcast;
    std::optional<std::uint64_t> sampleCount;
    std::vector<Essence::Wave::KeptChunk> chunks;

    /// Names of chunks that were too large to be kept (`WaveReader::mostKept`).
    std::vector<std::string> leftOut;
};

/// Makes the clip of a track of `package` refer to the source package of `origin`, which is made when it is
/// not there, with timecode at `rate`. A chunk of more than 65535 bytes, which a property cannot hold,
/// becomes several sets in a row that each have the chunk's whole length. Does nothing when the track has no
/// clip or is linked already.
MXFZELM_EXPORT void linkOrigin(Metadata::PartitionMetadata& metadata,
                               Metadata::Structural::SourcePackage const& package, unsigned trackID,
                               WaveOrigin const& origin, Templates::Rational<int> const& rate);

/// The chunks of the Wave file that a track came from; none when it came from something else. Sets that
/// contradict themselves are passed over.
MXFZELM_EXPORT std::vector<Essence::Wave::KeptChunk>
originChunks(Metadata::PartitionMetadata const& metadata, Metadata::Structural::SourcePackage const& package,
             unsigned trackID);

} // namespace MXF::Zelm::GenericContainer
