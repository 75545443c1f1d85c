#include "MXF/Zelm/Metadata/DMS1/DMS1MetadataKeys.h"

namespace MXF::Zelm::Metadata::DMS1::DMS1MetadataKeys {

namespace {

using namespace KLV::Literals;

constexpr KLV::Key addressKey = "060E2B34.02530101.0D010401.011B0100"_key;
constexpr KLV::Key annotationKey = "060E2B34.02530101.0D010401.01170100"_key;
constexpr KLV::Key awardKey = "060E2B34.02530101.0D010401.01150100"_key;
constexpr KLV::Key brandingKey = "060E2B34.02530101.0D010401.01130100"_key;
constexpr KLV::Key captionsDescriptionKey = "060E2B34.02530101.0D010401.01160100"_key;
constexpr KLV::Key classificationKey = "060E2B34.02530101.0D010401.01170400"_key;
constexpr KLV::Key clipFrameworkKey = "060E2B34.02530101.0D010401.01010200"_key;
constexpr KLV::Key communicationsKey = "060E2B34.02530101.0D010401.011B0200"_key;
constexpr KLV::Key contactsListKey = "060E2B34.02530101.0D010401.01190100"_key;
constexpr KLV::Key contractKey = "060E2B34.02530101.0D010401.011C0100"_key;
constexpr KLV::Key cueWordsKey = "060E2B34.02530101.0D010401.01170800"_key;
constexpr KLV::Key dMS1IdentificationKey = "060E2B34.02530101.0D010401.01110100"_key;
constexpr KLV::Key deviceParametersKey = "060E2B34.02530101.0D010401.011E0100"_key;
constexpr KLV::Key eventKey = "060E2B34.02530101.0D010401.01140100"_key;
constexpr KLV::Key groupRelationshipKey = "060E2B34.02530101.0D010401.01120100"_key;
constexpr KLV::Key keyPointKey = "060E2B34.02530101.0D010401.01170600"_key;
constexpr KLV::Key locationKey = "060E2B34.02530101.0D010401.011A0400"_key;
constexpr KLV::Key nameValueKey = "060E2B34.02530101.0D010401.011F0100"_key;
constexpr KLV::Key organisationKey = "060E2B34.02530101.0D010401.011A0300"_key;
constexpr KLV::Key participantKey = "060E2B34.02530101.0D010401.01180100"_key;
constexpr KLV::Key personKey = "060E2B34.02530101.0D010401.011A0200"_key;
constexpr KLV::Key pictureFormatKey = "060E2B34.02530101.0D010401.011D0100"_key;
constexpr KLV::Key processingKey = "060E2B34.02530101.0D010401.01200100"_key;
constexpr KLV::Key productionFrameworkKey = "060E2B34.02530101.0D010401.01010100"_key;
constexpr KLV::Key projectKey = "060E2B34.02530101.0D010401.01200200"_key;
constexpr KLV::Key publicationKey = "060E2B34.02530101.0D010401.01140200"_key;
constexpr KLV::Key rightsKey = "060E2B34.02530101.0D010401.011C0200"_key;
constexpr KLV::Key sceneFrameworkKey = "060E2B34.02530101.0D010401.01010300"_key;
constexpr KLV::Key scriptingKey = "060E2B34.02530101.0D010401.01170300"_key;
constexpr KLV::Key settingPeriodKey = "060E2B34.02530101.0D010401.01170200"_key;
constexpr KLV::Key shotKey = "060E2B34.02530101.0D010401.01170500"_key;
constexpr KLV::Key titlesKey = "060E2B34.02530101.0D010401.01100100"_key;

} // namespace

KLV::Key const& address() { return addressKey; }
KLV::Key const& annotation() { return annotationKey; }
KLV::Key const& award() { return awardKey; }
KLV::Key const& branding() { return brandingKey; }
KLV::Key const& captionsDescription() { return captionsDescriptionKey; }
KLV::Key const& classification() { return classificationKey; }
KLV::Key const& clipFramework() { return clipFrameworkKey; }
KLV::Key const& communications() { return communicationsKey; }
KLV::Key const& contactsList() { return contactsListKey; }
KLV::Key const& contract() { return contractKey; }
KLV::Key const& cueWords() { return cueWordsKey; }
KLV::Key const& dMS1Identification() { return dMS1IdentificationKey; }
KLV::Key const& deviceParameters() { return deviceParametersKey; }
KLV::Key const& event() { return eventKey; }
KLV::Key const& groupRelationship() { return groupRelationshipKey; }
KLV::Key const& keyPoint() { return keyPointKey; }
KLV::Key const& location() { return locationKey; }
KLV::Key const& nameValue() { return nameValueKey; }
KLV::Key const& organisation() { return organisationKey; }
KLV::Key const& participant() { return participantKey; }
KLV::Key const& person() { return personKey; }
KLV::Key const& pictureFormat() { return pictureFormatKey; }
KLV::Key const& processing() { return processingKey; }
KLV::Key const& productionFramework() { return productionFrameworkKey; }
KLV::Key const& project() { return projectKey; }
KLV::Key const& publication() { return publicationKey; }
KLV::Key const& rights() { return rightsKey; }
KLV::Key const& sceneFramework() { return sceneFrameworkKey; }
KLV::Key const& scripting() { return scriptingKey; }
KLV::Key const& settingPeriod() { return settingPeriodKey; }
KLV::Key const& shot() { return shotKey; }
KLV::Key const& titles() { return titlesKey; }

} // namespace MXF::Zelm::Metadata::DMS1::DMS1MetadataKeys
