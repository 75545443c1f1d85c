/// What the multiplexer knows of one analyzer.
#pragma once

#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"

namespace MXF::Zelm::GenericContainer::Multiplexer {

struct AnalyzerEntry {
    EssenceAnalyzerPtr analyzer;
    unsigned char elementNumber = 0;
    Templates::Rational<std::int64_t> temporalOffset = {}; ///< in seconds
    bool isTimecodeSource = false;

    KLV::Key key = {};
    unsigned char berLength = 4;      ///< bytes of its length, where that fits in them
    std::uint64_t entryByteCount = 0; ///< key, length and fill included; 0 when it varies
    bool padsToItem = false;          ///< the last element of an item that is filled out

    // While packages are made:
    Templates::Rational<std::int64_t> position = {}; ///< how far it has been read, in seconds
    bool hasEnded = false;
    bool wasRead = false; ///< for this package; as are:
    DataIO::Chain data = {};
    EditUnitIndex index = {};                             ///< of the first edit unit
    std::shared_ptr<Utils::TimeCode const> timecode = {}; ///< of the first edit unit

    EssenceAnalyzer::EssenceAnalyzerType kind() const { return analyzer->essenceAnalyzerType(); }
    bool isSystem() const { return kind() == EssenceAnalyzer::SystemAnalyzer; }
};

} // namespace MXF::Zelm::GenericContainer::Multiplexer
