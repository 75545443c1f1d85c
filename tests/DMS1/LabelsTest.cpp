/// Descriptive metadata scheme 1: keys and labels agree with the standard dictionary.
#include "MXF/Zelm/Metadata/DMS1/DMS1MetadataKeys.h"
#include "MXF/Zelm/Metadata/DMS1/DMS1MetadataULs.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "support/Bytes.h"

#include <map>
#include <set>

namespace MXF::Zelm::Test {

using namespace Metadata;
using Types::UniversalLabel;

namespace {

std::string nameOf(MetaMetadata::PropertyMap const& definition) {
    auto const* const name = definition.findProperty(u"name");
    return name != nullptr ? Platform::toUtf8(*name) : "";
}

/// The name of a function after the register's name: Objects become Sets, and organisations keep their s.
std::string functionName(std::string name, std::map<std::string, std::string> const& others) {
    if (auto const other = others.find(name); other != others.end())
        return other->second;
    if (auto const z = name.find("Organization"); z != std::string::npos)
        name[z + 6] = 's';
    for (std::string const ending : {"Object", "Objects"})
        if (name.ends_with(ending))
            name.replace(name.size() - ending.size(), 6, "Set");
    name[0] = static_cast<char>(std::tolower(name[0]));
    return name;
}

struct Row {
    const char* name;
    UniversalLabel const& (*label)();
};

#define ROW(name)                                                                                            \
    { #name, &DMS1::DMS1MetadataULs::name }
// clang-format off
constexpr Row labels[] = {
    ROW(frameworkTitle), ROW(frameworkExtendedTextLanguageCode), ROW(primaryExtendedSpokenLanguageCode),
    ROW(secondaryExtendedSpokenLanguageCode), ROW(originalExtendedSpokenLanguageCode),
    ROW(frameworkThesaurusName), ROW(contactsListSet), ROW(frameworkLocationSets), ROW(titlesSets),
    ROW(annotationSets), ROW(participantSets), ROW(metadataServerLocators),
    ROW(pictureFormatSet), ROW(projectSet), ROW(captionsDescriptionSets), ROW(contractSets),
    ROW(integrationIndication), ROW(groupRelationshipSets), ROW(identificationSets), ROW(brandingSets),
    ROW(eventSets), ROW(awardSets), ROW(productionSettingPeriodSets),
    ROW(extendedClipID), ROW(takeNumber), ROW(clipNumber), ROW(slateInformation), ROW(clipKind),
    ROW(processingSet), ROW(scriptingSets), ROW(clipShotSets), ROW(deviceParametersSets),
    ROW(clipCreationDateTime),
    ROW(sceneNumber), ROW(sceneSettingPeriodSets), ROW(sceneShotSets),
    ROW(extendedTextLanguageCode),
    ROW(thesaurusName),
    ROW(communicationsSets), ROW(addressNameValueSets), ROW(roomOrSuiteNumber), ROW(streetNumber),
    ROW(streetName), ROW(postalTown), ROW(city), ROW(stateOrProvinceOrCounty), ROW(postalCode), ROW(country),
    ROW(roomOrSuiteName), ROW(buildingName), ROW(placeName), ROW(geographicalCoordinates),
    ROW(astronomicalBodyName),
    ROW(annotationSynopsis), ROW(annotationDescription), ROW(annotationKind), ROW(relatedMaterialDescription),
    ROW(annotationCueWordsSet), ROW(annotationParticipantSets), ROW(classificationSets),
    ROW(relatedMaterialLocators),
    ROW(festivalName), ROW(awardName), ROW(awardCategory), ROW(nominationCategory), ROW(awardParticipantSets),
    ROW(festivalDateTime),
    ROW(brandMainTitle), ROW(brandOriginalTitle),
    ROW(extendedCaptionsLanguageCode), ROW(captionKind),
    ROW(contentClassification), ROW(classificationNameValueSets),
    ROW(telephoneNumber), ROW(faxNumber), ROW(emailAddress), ROW(centralTelephoneNumber),
    ROW(mobileTelephoneNumber), ROW(webPage),
    ROW(contactID), ROW(addressSets), ROW(contactNameValueSets),
    ROW(personSets), ROW(organisationSets), ROW(locationSets),
    ROW(supplyContractNumber), ROW(contractParticipantSets), ROW(rightsSets),
    ROW(inCueWords), ROW(outCueWords),
    ROW(deviceDesignation), ROW(deviceModel), ROW(deviceSerialNumber), ROW(iEEEDeviceIdentifier),
    ROW(deviceKind), ROW(deviceAssetNumber), ROW(deviceManufacturerName), ROW(deviceUsageDescription),
    ROW(deviceParametersNameValueSets),
    ROW(eventIndication), ROW(publicationSets), ROW(eventAnnotationSets), ROW(eventStartDateTime),
    ROW(eventEndDateTime),
    ROW(programmingGroupKind), ROW(episodicStartNumber), ROW(episodicEndNumber), ROW(programmingGroupTitle),
    ROW(groupSynopsis), ROW(positionInSequence), ROW(totalNumberInTheSequence),
    ROW(identificationLocator), ROW(identifierKind), ROW(identifierValue),
    ROW(identificationIssuingAuthority),
    ROW(keypointKind), ROW(keypointValue), ROW(keypointPosition),
    ROW(locationDescription), ROW(locationKind),
    ROW(sMPTEUniversalLabelLocator), ROW(itemName), ROW(itemValue),
    ROW(organisationCode), ROW(organisationKind), ROW(contactDepartment), ROW(organisationMainName),
    ROW(participantID), ROW(contributionStatus), ROW(jobFunction), ROW(jobFunctionCode),
    ROW(roleOrIdentityName), ROW(participantPersonSets), ROW(participantOrganisationSets),
    ROW(familyName), ROW(firstGivenName), ROW(salutation), ROW(honorsQualifications), ROW(personDescription),
    ROW(otherGivenNames), ROW(alternateName), ROW(linkingName), ROW(nameSuffix), ROW(formerFamilyName),
    ROW(nationality), ROW(citizenship), ROW(personOrganisationSets),
    ROW(colorDescriptor), ROW(viewportAspectRatio), ROW(perceivedDisplayFormat),
    ROW(descriptiveComment), ROW(qualityFlag), ROW(logoFlag), ROW(graphicUsage), ROW(simpleFlagging),
    ROW(generationCopyNumber), ROW(generationCloneNumber),
    ROW(projectNumber), ROW(projectName),
    ROW(publishingOrganisationName), ROW(publishingServiceName), ROW(publishingMediumName),
    ROW(publishingRegionName),
    ROW(copyrightOwner), ROW(intellectualPropertyDescription), ROW(intellectualPropertyRight),
    ROW(rightsholder), ROW(rightsManagementAuthority), ROW(maxNumberOfUsages), ROW(rightsCondition),
    ROW(rightsComment), ROW(regionAreaOfIPLicense), ROW(rightsStartDateTime), ROW(rightsStopDateTime),
    ROW(scriptingKind), ROW(scriptingText), ROW(scriptingLocators),
    ROW(timePeriodKeyword), ROW(settingDateTime), ROW(settingPeriodDescription),
    ROW(shotTrackIDs), ROW(shotDescription), ROW(shotCommentKind), ROW(shotComment), ROW(shotCueWordsSet),
    ROW(keyPointSets), ROW(shotStartPosition), ROW(shotDuration),
    ROW(mainTitle), ROW(secondaryTitle), ROW(versionTitle), ROW(workingTitle), ROW(originalTitle),
};
#undef ROW

struct KeyRow {
    const char* name;
    KLV::Key const& (*key)();
};

#define ROW(name) {#name, &DMS1::DMS1MetadataKeys::name}
constexpr KeyRow keys[] = {
    ROW(address), ROW(annotation), ROW(award), ROW(branding), ROW(captionsDescription), ROW(classification),
    ROW(clipFramework), ROW(communications), ROW(contactsList), ROW(contract), ROW(cueWords),
    ROW(dMS1Identification), ROW(deviceParameters), ROW(event), ROW(groupRelationship), ROW(keyPoint),
    ROW(location), ROW(nameValue), ROW(organisation), ROW(participant), ROW(person), ROW(pictureFormat),
    ROW(processing), ROW(productionFramework), ROW(project), ROW(publication), ROW(rights),
    ROW(sceneFramework), ROW(scripting), ROW(settingPeriod), ROW(shot), ROW(titles),
};
#undef ROW
// clang-format on

} // namespace

TEST(DMS1, NamesTheElementsOfTheStandardDictionary) {
    std::map<std::string, std::string> const others = {
        {"TotalNumberInSequence", "totalNumberInTheSequence"},
        {"StateProvinceCounty", "stateOrProvinceOrCounty"},
        {"RoomSuiteNumber", "roomOrSuiteNumber"},
        {"RoomSuiteName", "roomOrSuiteName"},
        {"RoleName", "roleOrIdentityName"},
        {"ContactWebPage", "webPage"},
        {"AwardParticipants", "awardParticipantSets"},
        {"AnnotationParticipants", "annotationParticipantSets"},
        {"ContractParticipants", "contractParticipantSets"},
        {"Persons", "participantPersonSets"},
        {"Locations", "frameworkLocationSets"},
        {"ParticipantOrganizations", "participantOrganisationSets"},
        {"PersonOrganizations", "personOrganisationSets"},
    };
    auto const dictionary = ZelmDictionary::standard();
    EXPECT_EQ(std::size(labels), 193u);
    std::set<UniversalLabel> seen;
    for (auto const& [name, label] : labels) {
        auto const* const element = dictionary->findMetaElement(label());
        ASSERT_NE(element, nullptr) << name;
        EXPECT_EQ(name, functionName(nameOf(*element), others));
        EXPECT_TRUE(seen.insert(label()).second) << name;
    }
    std::map<std::string, std::string> const otherSets = {
        {"DMS1Annotation", "annotation"}, {"DMS1Event", "event"}, {"Keypoint", "keyPoint"}};
    std::set<UniversalLabel> used;
    for (auto const& [name, key] : keys) {
        auto const* const set = dictionary->find(key());
        ASSERT_NE(set, nullptr) << name;
        EXPECT_TRUE(KLV::isDescriptiveMetadataSet(key()));
        EXPECT_EQ(name, functionName(nameOf(*set), otherSets));
        for (auto const& label : seen)
            if (set->findMetaAttribute(label))
                used.insert(label);
    }
    EXPECT_EQ(std::size(keys), 32u);
    EXPECT_EQ(used, seen) << "each label belongs to a set";
}

} // namespace MXF::Zelm::Test
