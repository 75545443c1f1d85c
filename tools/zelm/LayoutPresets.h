/// Layouts that application documents ask for, by name.
#pragma once

#include <MXF/Zelm/GenericContainer/Wrapping.h>
#include <MXF/Zelm/MXFIO/CreatorSettings.h>

#include <optional>
#include <string>
#include <string_view>

namespace Zelm {

/// The operational patterns that can be written.
struct PatternRow {
    const char* name;       ///< "op1a", "atom"
    unsigned char items;    ///< byte 12 of the label: how items follow one another
    unsigned char packages; ///< byte 13: how many packages an item takes
};

/// Null for an unknown name.
PatternRow const* findPattern(std::string_view name);

/// "op1a, op1b, …".
std::string patternNames();

/// What an application document settles. What is absent is left to the user.
struct LayoutPreset {
    using Index = MXF::Zelm::MXFIO::CreatorSettings::Index;

    const char* name;
    const char* document; ///< "RDD 9"
    const char* pattern;
    std::optional<MXF::Zelm::GenericContainer::Wrapping> wrapping = std::nullopt;
    std::optional<std::uint32_t> kagSize = std::nullopt;
    std::optional<Index> index = std::nullopt;
    int partitionSeconds = 0; ///< as near as frames allow; 0 for one body partition
    bool essenceInHeader = false;
    bool systemItem = false;
    bool oneFilePerTrack = false;
    bool constantSound = false; ///< elements of sound are filled up to one size
    unsigned soundChannels = 1; ///< a track; 0 for as they come
    std::uint64_t reserve = 8192;
};

/// Null for an unknown name.
LayoutPreset const* findPreset(std::string_view name);

/// "rdd9, d10, …".
std::string presetNames();

/// Content packages of a body partition: 240 at 24 and 25 a second, 480 at 50, 300 and 600 at 30 and 60.
std::uint64_t packagesOfTenSeconds(MXF::Zelm::Templates::Rational<int> const& rate);

} // namespace Zelm
