/// What builders of whole files are told.
#pragma once

#include "MXF/Zelm/GenericContainer/ClipWrapper/Wrap.h"
#include "MXF/Zelm/GenericContainer/Multiplexer/Mux.h"
#include "MXF/Zelm/MXFIO/CreatorSettings.h"
#include "MXF/Zelm/Metadata/Structural/Building.h"

namespace MXF::Zelm::OPBuilders {

struct MXFZELM_EXPORT BuilderOptions {
    /// The application that writes the file.
    Metadata::Structural::Product product = {};
    Types::Timestamp date = Types::Timestamp::now(); ///< of the file and its packages
    Types::VersionType version{1, 2};                ///< 1.2 (SMPTE 377M) or 1.3 (SMPTE 377-1)

    /// Of the (first) material package.
    Types::UMID32 materialUID = Types::UMID32::generate(Types::UMIDMaterialType::NotIdentified);
    std::u16string materialName = {}; ///< empty for none

    /// The first timecode of material and file packages; undefined for packages without timecode.
    Utils::TimeCode startTimecode = {};

    /// Frames a second of the timecode tracks. Not known for that of the first essence track, in material
    /// packages, and for no timecode in file packages other than that of their essence.
    Templates::Rational<int> timecodeRate = {};

    /// How the file is laid out. Its `beforeFinalMetadata` is called behind the builder's own work.
    MXFIO::CreatorSettings layout = {};
};

/// A file package to be made.
struct MXFZELM_EXPORT FilePackageOptions {
    Types::UMID32 uid = Types::UMID32::generate(Types::UMIDMaterialType::NotIdentified);
    std::u16string name = {};

    /// Its first timecode, at the builder's rate; undefined for that of the builder.
    Utils::TimeCode startTimecode = {};

    /// Its essence is in another file.
    bool isExternal = false;

    /// 0 for the next free ones: 1 and 2, 3 and 4, … `hasIndex` false for no index table.
    std::uint32_t bodySID = 0;
    std::uint32_t indexSID = 0;
    bool hasIndex = true;
};

/// A track of a package in another file.
struct MXFZELM_EXPORT ForeignTrack {
    Types::UMID32 packageUID;
    std::uint32_t trackID = 0;
    Types::UniversalLabel dataDefinition = {};
    Templates::Rational<int> editRate = {};
    std::u16string name = {}; ///< empty for none
};

/// An essence container that is wrapped by frames: what a multiplexer is told.
struct MXFZELM_EXPORT FrameWrapping {
    Templates::Rational<int> packageRate = {}; ///< content packages a second
    Templates::vector<GenericContainer::EssenceAnalyzerPtr> analyzers = {};
    std::uint32_t kagSize = 1;
    Types::UniversalLabel label = {}; ///< of the container; all zero for the one that the analyzers share

    /// What else there is to set before the essence is looked at.
    std::function<void(GenericContainer::Multiplexer::Mux&)> configure = {};
};

/// An essence container that is one clip: what a clip wrapper is told.
struct MXFZELM_EXPORT ClipWrapping {
    GenericContainer::EssenceAnalyzerPtr analyzer = nullptr;
    Templates::Rational<int> editRate =
        {}; ///< edit units a second, for sound samples; 0/0 for the analyzer's
    std::uint32_t kagSize = 1;
    Types::UniversalLabel label = {}; ///< of the container; all zero for the analyzer's

    /// What else there is to set before the essence is looked at.
    std::function<void(GenericContainer::ClipWrapper::Wrap&)> configure = {};
};

} // namespace MXF::Zelm::OPBuilders
