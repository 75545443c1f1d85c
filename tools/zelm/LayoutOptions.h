/// The options that say how a new MXF file is laid out, shared by the commands that write one.
#pragma once

#include "FileInfo.h"
#include "Input.h"
#include "LayoutPresets.h"

#include <MXF/Zelm/OPBuilders/BuilderOptions.h>

#include <CLI/CLI.hpp>

#include <map>

namespace Zelm {

/// As they were given.
struct LayoutOptions {
    void declare(CLI::App& parser);

    std::string pattern, preset, rate, startTimecode, partitionEvery, index;
    bool frame = false, clip = false, drop = false, systemItem = false, repeatHeader = false;
    std::optional<std::uint32_t> kagSize;
    std::optional<std::uint64_t> reserve;
    std::vector<std::string> metadata;    ///< PATH=VALUE
    std::vector<std::string> trackLabels; ///< TRACK=TEXT
};

/// What they come to, the preset's and the usual values in place of those that were not given.
class Layout {
public:
    using Wrapping = MXF::Zelm::GenericContainer::Wrapping;
    using Index = MXF::Zelm::MXFIO::CreatorSettings::Index;

    /// Throws Exceptions::InvalidValue for values that cannot be, and for those against the preset.
    explicit Layout(LayoutOptions const& options);

    PatternRow const& pattern() const { return *pattern_; }
    bool isAtom() const { return pattern_->items == 0x10; }
    bool isPlaylist() const { return pattern_->items == 2 || pattern_->items == 3; }

    /// Null when there is none.
    LayoutPreset const* preset() const { return preset_; }
    bool isPreset(std::string_view name) const { return preset_ != nullptr && preset_->name == name; }

    /// A file for each track: of OP-Atom, or of a preset that wants it.
    bool isOneFilePerTrack() const { return isAtom() || (preset_ != nullptr && preset_->oneFilePerTrack); }

    /// Of a track that is alone in its container; absent when it is left to what the essence prefers.
    std::optional<Wrapping> wrapping() const { return wrapping_; }

    /// Content packages a second, if it was given.
    std::optional<EditRate> const& rate() const { return rate_; }

    std::uint32_t kagSize() const { return kagSize_; }
    bool systemItem() const { return systemItem_; }

    /// Was it given?
    bool hasStartTimecode() const { return !startTimecode_.empty(); }

    /// The first timecode at a rate: the one that was given, else the one that the essence tells, else
    /// 00:00:00:00; of drop frame if that was asked for. Throws Exceptions::InvalidValue when it is none at
    /// that rate.
    MXF::Zelm::Utils::TimeCode startTimecode(EditRate const& rate,
                                             MXF::Zelm::Utils::TimeCode const& told = {}) const;

    /// What the builders are told for content packages of that rate.
    MXF::Zelm::OPBuilders::BuilderOptions builderOptions(EditRate const& rate,
                                                         MXF::Zelm::Utils::TimeCode const& start) const;

    /// Changes what --meta and --track-label want changed. Tracks are numbered by kind as zelm extract does:
    /// v1, a1, a2, d1, in the order of the material package. Labels for tracks that are not there are passed
    /// over; they are returned. Throws Exceptions::InvalidValue for paths that lead nowhere.
    std::vector<std::string> apply(MXF::Zelm::Metadata::PartitionMetadata& metadata,
                                   SharedDictionary const& dictionary) const;

private:
    void choosePreset(LayoutOptions const& options);
    void chooseWrapping(LayoutOptions const& options);
    void choosePartitions(std::string const& text);
    void chooseIndex(std::string const& name);
    void checkAgainstPreset(LayoutOptions const& options) const;

    PatternRow const* pattern_ = nullptr;
    LayoutPreset const* preset_ = nullptr;
    std::optional<Wrapping> wrapping_;
    std::optional<EditRate> rate_;
    std::uint32_t kagSize_ = 1;
    std::uint64_t reserve_ = 8192;
    bool systemItem_ = false, repeatHeader_ = false;
    std::string startTimecode_;
    bool drop_ = false;
    std::optional<MXF::Zelm::MXFIO::PartitionLimits> partitions_; ///< if they were given
    Index index_ = Index::Footer;
    std::vector<std::string> metadata_;
    std::map<std::string, std::string> trackLabels_;
};

/// "25", "30000/1001", "29.97", "23.976". Throws Exceptions::InvalidValue for what is no rate.
EditRate parseRate(std::string const& text);

} // namespace Zelm
