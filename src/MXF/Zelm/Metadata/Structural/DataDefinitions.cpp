#include "MXF/Zelm/Metadata/Structural/DataDefinitions.h"

#include <algorithm>
#include <initializer_list>

namespace MXF::Zelm::Metadata::Structural {

namespace {

bool isOneOf(Types::UniversalLabel const& label, std::initializer_list<KLV::Key> const& labels) {
    return std::any_of(labels.begin(), labels.end(),
                       [&](KLV::Key const& each) { return KLV::equalButForVersion(label.key(), each); });
}

} // namespace

bool isEssenceDataDefinition(Types::UniversalLabel const& label) {
    using namespace DataDefinitions;
    return isOneOf(label, {picture, sound, data, legacyPicture, legacySound});
}

bool isTimecodeDataDefinition(Types::UniversalLabel const& label) {
    using namespace DataDefinitions;
    return isOneOf(label, {timecode, timecodeWithUserBits, dateTimecode, legacyTimecode});
}

} // namespace MXF::Zelm::Metadata::Structural
