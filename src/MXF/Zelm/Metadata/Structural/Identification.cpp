#include "MXF/Zelm/Metadata/Structural/Identification.h"

#include "MXF/Zelm/Metadata/Structural/Access.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/StructuralMetadataKeys.h"

namespace MXF::Zelm::Metadata::Structural {

Identification::Identification(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner)
    : MetadataSet(classKey(), definition, owner) {}
Identification::~Identification() = default;

KLV::Key const& Identification::classKey() { return StructuralMetadataKeys::identification(); }

Types::UUID const* Identification::thisGenerationUID() const {
    return get(*this, Properties::thisGenerationUID);
}
void Identification::thisGenerationUID(Types::UUID const& generation) {
    put(*this, Properties::thisGenerationUID, generation);
}
Types::UTF16String const* Identification::companyName() const { return get(*this, Properties::companyName); }
void Identification::companyName(Types::UTF16String const& name) {
    put(*this, Properties::companyName, name);
}
Types::UTF16String const* Identification::productName() const { return get(*this, Properties::productName); }
void Identification::productName(Types::UTF16String const& name) {
    put(*this, Properties::productName, name);
}
Types::ProductVersion const* Identification::productVersion() const {
    return get(*this, Properties::productVersion);
}
void Identification::productVersion(Types::ProductVersion const& version) {
    put(*this, Properties::productVersion, version);
}
void Identification::resetProductVersion() { reset(*this, Properties::productVersion); }
Types::UTF16String const* Identification::versionString() const {
    return get(*this, Properties::versionString);
}
void Identification::versionString(Types::UTF16String const& version) {
    put(*this, Properties::versionString, version);
}
Types::UUID const* Identification::productUID() const { return get(*this, Properties::productUID); }
void Identification::productUID(Types::UUID const& product) { put(*this, Properties::productUID, product); }
Types::Timestamp const* Identification::modificationDate() const {
    return get(*this, Properties::modificationDate);
}
void Identification::modificationDate(Types::Timestamp const& date) {
    put(*this, Properties::modificationDate, date);
}
Types::ProductVersion const* Identification::toolkitVersion() const {
    return get(*this, Properties::toolkitVersion);
}
void Identification::toolkitVersion(Types::ProductVersion const& version) {
    put(*this, Properties::toolkitVersion, version);
}
void Identification::resetToolkitVersion() { reset(*this, Properties::toolkitVersion); }
Types::UTF16String const* Identification::platform() const { return get(*this, Properties::platform); }
void Identification::platform(Types::UTF16String const& platform) {
    put(*this, Properties::platform, platform);
}
void Identification::resetPlatform() { reset(*this, Properties::platform); }

} // namespace MXF::Zelm::Metadata::Structural
