/// Descriptive metadata for `zelm dump --frameworks`: what the descriptive segments of a file say about which
/// stretch of which package (SMPTE 377M, SMPTE 380M).
#pragma once

#include "FileInfo.h"

#include <MXF/Zelm/Metadata/PartitionMetadata.h>

#include <optional>
#include <string>
#include <vector>

namespace MXF::Zelm::Metadata::Structural {
class GenericPackage;
class Track;
class DMSegment;
} // namespace MXF::Zelm::Metadata::Structural

namespace Zelm {

/// A framework and the segment that places it. Everything points into the metadata that it was found in.
struct FrameworkPlace {
    MXF::Zelm::Metadata::Structural::GenericPackage const* package = nullptr;
    MXF::Zelm::Metadata::Structural::Track const* track = nullptr;
    MXF::Zelm::Metadata::Structural::DMSegment const* segment = nullptr;
    MXF::Zelm::Metadata::MetadataSet const* framework = nullptr; ///< null when the reference dangles
    std::optional<EditRate> editRate;                            ///< of the track; none on a static track
    std::optional<std::int64_t> position;                        ///< edit units; none on a static track
    std::optional<std::int64_t> duration;                        ///< edit units
    std::vector<std::uint32_t> describedTracks;                  ///< none: all of the package
};

struct FrameworkReport {
    std::vector<FrameworkPlace> places; ///< in the order of packages, tracks and segments

    /// Descriptive sets that no segment reaches, those first that nothing refers to.
    std::vector<MXF::Zelm::Metadata::MetadataSet const*> unplaced;
};

FrameworkReport gatherFrameworks(MXF::Zelm::Metadata::PartitionMetadata const& metadata);

/// "Clip Framework", "SMPTE Universal Label Locator": the words of a register's name.
std::string words(std::string const& symbol);

void printFrameworksText(FrameworkReport const& report);
void printFrameworksJson(std::string const& file, FrameworkReport const& report);

} // namespace Zelm
