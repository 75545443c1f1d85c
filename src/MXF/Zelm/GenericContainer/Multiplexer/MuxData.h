/// What the multiplexer hands to its worker.
#pragma once

#include "MXF/Zelm/GenericContainer/MetadataBuilder.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/AnalyzerEntry.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/Mux.h"

#include <array>
#include <optional>

namespace MXF::Zelm::GenericContainer::Multiplexer {

struct MuxData {
    /// Key and length of a fill item.
    static constexpr std::uint32_t fillKLLength = 20;

    /// That of an item or content package that is not filled out.
    static constexpr std::int32_t unset = -1;

    Mux::PartitionMetadataPtr metadata = {}; ///< null when only the package is known
    Metadata::Structural::SourcePackage* package = nullptr;
    Templates::Rational<int> packageRate = {};
    std::uint32_t kagSize = 1;
    Types::UniversalLabel essenceContainer = {};
    Templates::vector<AnalyzerEntry> entries = {}; ///< in the order of the content package
    Mux::PaddingKind padding = Mux::PadToElement;
    std::array<std::int32_t, 5> itemSizes = {unset, unset, unset, unset, unset}; ///< by analyzer type
    std::int32_t editUnitSize = unset;
    bool indexFillPackets = false;

    /// Makes tracks; none when the essence is described nowhere.
    std::optional<MetadataBuilder> builder = {};

    std::int32_t systemItemMaximumSize() const { return itemSizes[EssenceAnalyzer::SystemAnalyzer]; }
};

} // namespace MXF::Zelm::GenericContainer::Multiplexer
