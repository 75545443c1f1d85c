/// The labels of the elements of descriptive metadata scheme 1 (SMPTE 380M), grouped by the set that brings
/// them in. `…Set` and `…Sets` are references to sets.
#pragma once

#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::DMS1::DMS1MetadataULs {

// All frameworks
MXFZELM_EXPORT Types::UniversalLabel const& frameworkTitle();
MXFZELM_EXPORT Types::UniversalLabel const& frameworkExtendedTextLanguageCode();
MXFZELM_EXPORT Types::UniversalLabel const& primaryExtendedSpokenLanguageCode();
MXFZELM_EXPORT Types::UniversalLabel const& secondaryExtendedSpokenLanguageCode();
MXFZELM_EXPORT Types::UniversalLabel const& originalExtendedSpokenLanguageCode();
MXFZELM_EXPORT Types::UniversalLabel const& frameworkThesaurusName();
MXFZELM_EXPORT Types::UniversalLabel const& contactsListSet();
MXFZELM_EXPORT Types::UniversalLabel const& frameworkLocationSets();
MXFZELM_EXPORT Types::UniversalLabel const& titlesSets();
MXFZELM_EXPORT Types::UniversalLabel const& annotationSets();
MXFZELM_EXPORT Types::UniversalLabel const& participantSets();
MXFZELM_EXPORT Types::UniversalLabel const& metadataServerLocators();

// Production and clip frameworks
MXFZELM_EXPORT Types::UniversalLabel const& pictureFormatSet();
MXFZELM_EXPORT Types::UniversalLabel const& projectSet();
MXFZELM_EXPORT Types::UniversalLabel const& captionsDescriptionSets();
MXFZELM_EXPORT Types::UniversalLabel const& contractSets();

// Production Framework
MXFZELM_EXPORT Types::UniversalLabel const& integrationIndication();
MXFZELM_EXPORT Types::UniversalLabel const& groupRelationshipSets();
MXFZELM_EXPORT Types::UniversalLabel const& identificationSets();
MXFZELM_EXPORT Types::UniversalLabel const& brandingSets();
MXFZELM_EXPORT Types::UniversalLabel const& eventSets();
MXFZELM_EXPORT Types::UniversalLabel const& awardSets();
MXFZELM_EXPORT Types::UniversalLabel const& productionSettingPeriodSets();

// Clip Framework
MXFZELM_EXPORT Types::UniversalLabel const& extendedClipID();
MXFZELM_EXPORT Types::UniversalLabel const& takeNumber();
MXFZELM_EXPORT Types::UniversalLabel const& clipNumber();
MXFZELM_EXPORT Types::UniversalLabel const& slateInformation();
MXFZELM_EXPORT Types::UniversalLabel const& clipKind();
MXFZELM_EXPORT Types::UniversalLabel const& processingSet();
MXFZELM_EXPORT Types::UniversalLabel const& scriptingSets();
MXFZELM_EXPORT Types::UniversalLabel const& clipShotSets();
MXFZELM_EXPORT Types::UniversalLabel const& deviceParametersSets();
MXFZELM_EXPORT Types::UniversalLabel const& clipCreationDateTime();

// Scene Framework
MXFZELM_EXPORT Types::UniversalLabel const& sceneNumber();
MXFZELM_EXPORT Types::UniversalLabel const& sceneSettingPeriodSets();
MXFZELM_EXPORT Types::UniversalLabel const& sceneShotSets();

// All sets with text
MXFZELM_EXPORT Types::UniversalLabel const& extendedTextLanguageCode();

// All sets that take words from a thesaurus
MXFZELM_EXPORT Types::UniversalLabel const& thesaurusName();

// Address
MXFZELM_EXPORT Types::UniversalLabel const& communicationsSets();
MXFZELM_EXPORT Types::UniversalLabel const& addressNameValueSets();
MXFZELM_EXPORT Types::UniversalLabel const& roomOrSuiteNumber();
MXFZELM_EXPORT Types::UniversalLabel const& streetNumber();
MXFZELM_EXPORT Types::UniversalLabel const& streetName();
MXFZELM_EXPORT Types::UniversalLabel const& postalTown();
MXFZELM_EXPORT Types::UniversalLabel const& city();
MXFZELM_EXPORT Types::UniversalLabel const& stateOrProvinceOrCounty();
MXFZELM_EXPORT Types::UniversalLabel const& postalCode();
MXFZELM_EXPORT Types::UniversalLabel const& country();
MXFZELM_EXPORT Types::UniversalLabel const& roomOrSuiteName();
MXFZELM_EXPORT Types::UniversalLabel const& buildingName();
MXFZELM_EXPORT Types::UniversalLabel const& placeName();
MXFZELM_EXPORT Types::UniversalLabel const& geographicalCoordinates();
MXFZELM_EXPORT Types::UniversalLabel const& astronomicalBodyName();

// Annotation
MXFZELM_EXPORT Types::UniversalLabel const& annotationSynopsis();
MXFZELM_EXPORT Types::UniversalLabel const& annotationDescription();
MXFZELM_EXPORT Types::UniversalLabel const& annotationKind();
MXFZELM_EXPORT Types::UniversalLabel const& relatedMaterialDescription();
MXFZELM_EXPORT Types::UniversalLabel const& annotationCueWordsSet();
MXFZELM_EXPORT Types::UniversalLabel const& annotationParticipantSets();
MXFZELM_EXPORT Types::UniversalLabel const& classificationSets();
MXFZELM_EXPORT Types::UniversalLabel const& relatedMaterialLocators();

// Award
MXFZELM_EXPORT Types::UniversalLabel const& festivalName();
MXFZELM_EXPORT Types::UniversalLabel const& awardName();
MXFZELM_EXPORT Types::UniversalLabel const& awardCategory();
MXFZELM_EXPORT Types::UniversalLabel const& nominationCategory();
MXFZELM_EXPORT Types::UniversalLabel const& awardParticipantSets();
MXFZELM_EXPORT Types::UniversalLabel const& festivalDateTime();

// Branding
MXFZELM_EXPORT Types::UniversalLabel const& brandMainTitle();
MXFZELM_EXPORT Types::UniversalLabel const& brandOriginalTitle();

// Captions Description
MXFZELM_EXPORT Types::UniversalLabel const& extendedCaptionsLanguageCode();
MXFZELM_EXPORT Types::UniversalLabel const& captionKind();

// Classification
MXFZELM_EXPORT Types::UniversalLabel const& contentClassification();
MXFZELM_EXPORT Types::UniversalLabel const& classificationNameValueSets();

// Communications
MXFZELM_EXPORT Types::UniversalLabel const& telephoneNumber();
MXFZELM_EXPORT Types::UniversalLabel const& faxNumber();
MXFZELM_EXPORT Types::UniversalLabel const& emailAddress();
MXFZELM_EXPORT Types::UniversalLabel const& centralTelephoneNumber();
MXFZELM_EXPORT Types::UniversalLabel const& mobileTelephoneNumber();
MXFZELM_EXPORT Types::UniversalLabel const& webPage();

// Persons, organisations and locations
MXFZELM_EXPORT Types::UniversalLabel const& contactID();
MXFZELM_EXPORT Types::UniversalLabel const& addressSets();
MXFZELM_EXPORT Types::UniversalLabel const& contactNameValueSets();

// Contacts List
MXFZELM_EXPORT Types::UniversalLabel const& personSets();
MXFZELM_EXPORT Types::UniversalLabel const& organisationSets();
MXFZELM_EXPORT Types::UniversalLabel const& locationSets();

// Contract
MXFZELM_EXPORT Types::UniversalLabel const& supplyContractNumber();
MXFZELM_EXPORT Types::UniversalLabel const& contractParticipantSets();
MXFZELM_EXPORT Types::UniversalLabel const& rightsSets();

// Cue Words
MXFZELM_EXPORT Types::UniversalLabel const& inCueWords();
MXFZELM_EXPORT Types::UniversalLabel const& outCueWords();

// Device Parameters
MXFZELM_EXPORT Types::UniversalLabel const& deviceDesignation();
MXFZELM_EXPORT Types::UniversalLabel const& deviceModel();
MXFZELM_EXPORT Types::UniversalLabel const& deviceSerialNumber();
MXFZELM_EXPORT Types::UniversalLabel const& iEEEDeviceIdentifier();
MXFZELM_EXPORT Types::UniversalLabel const& deviceKind();
MXFZELM_EXPORT Types::UniversalLabel const& deviceAssetNumber();
MXFZELM_EXPORT Types::UniversalLabel const& deviceManufacturerName();
MXFZELM_EXPORT Types::UniversalLabel const& deviceUsageDescription();
MXFZELM_EXPORT Types::UniversalLabel const& deviceParametersNameValueSets();

// Event
MXFZELM_EXPORT Types::UniversalLabel const& eventIndication();
MXFZELM_EXPORT Types::UniversalLabel const& publicationSets();
MXFZELM_EXPORT Types::UniversalLabel const& eventAnnotationSets();
MXFZELM_EXPORT Types::UniversalLabel const& eventStartDateTime();
MXFZELM_EXPORT Types::UniversalLabel const& eventEndDateTime();

// Group Relationship
MXFZELM_EXPORT Types::UniversalLabel const& programmingGroupKind();
MXFZELM_EXPORT Types::UniversalLabel const& episodicStartNumber();
MXFZELM_EXPORT Types::UniversalLabel const& episodicEndNumber();
MXFZELM_EXPORT Types::UniversalLabel const& programmingGroupTitle();
MXFZELM_EXPORT Types::UniversalLabel const& groupSynopsis();
MXFZELM_EXPORT Types::UniversalLabel const& positionInSequence();
MXFZELM_EXPORT Types::UniversalLabel const& totalNumberInTheSequence();

// DMS1 Identification
MXFZELM_EXPORT Types::UniversalLabel const& identificationLocator();
MXFZELM_EXPORT Types::UniversalLabel const& identifierKind();
MXFZELM_EXPORT Types::UniversalLabel const& identifierValue();
MXFZELM_EXPORT Types::UniversalLabel const& identificationIssuingAuthority();

// Key Point
MXFZELM_EXPORT Types::UniversalLabel const& keypointKind();
MXFZELM_EXPORT Types::UniversalLabel const& keypointValue();
MXFZELM_EXPORT Types::UniversalLabel const& keypointPosition();

// Location
MXFZELM_EXPORT Types::UniversalLabel const& locationDescription();
MXFZELM_EXPORT Types::UniversalLabel const& locationKind();

// Name Value
MXFZELM_EXPORT Types::UniversalLabel const& sMPTEUniversalLabelLocator();
MXFZELM_EXPORT Types::UniversalLabel const& itemName();
MXFZELM_EXPORT Types::UniversalLabel const& itemValue();

// Organisation
MXFZELM_EXPORT Types::UniversalLabel const& organisationCode();
MXFZELM_EXPORT Types::UniversalLabel const& organisationKind();
MXFZELM_EXPORT Types::UniversalLabel const& contactDepartment();
MXFZELM_EXPORT Types::UniversalLabel const& organisationMainName();

// Participant
MXFZELM_EXPORT Types::UniversalLabel const& participantID();
MXFZELM_EXPORT Types::UniversalLabel const& contributionStatus();
MXFZELM_EXPORT Types::UniversalLabel const& jobFunction();
MXFZELM_EXPORT Types::UniversalLabel const& jobFunctionCode();
MXFZELM_EXPORT Types::UniversalLabel const& roleOrIdentityName();
MXFZELM_EXPORT Types::UniversalLabel const& participantPersonSets();
MXFZELM_EXPORT Types::UniversalLabel const& participantOrganisationSets();

// Person
MXFZELM_EXPORT Types::UniversalLabel const& familyName();
MXFZELM_EXPORT Types::UniversalLabel const& firstGivenName();
MXFZELM_EXPORT Types::UniversalLabel const& salutation();
MXFZELM_EXPORT Types::UniversalLabel const& honorsQualifications();
MXFZELM_EXPORT Types::UniversalLabel const& personDescription();
MXFZELM_EXPORT Types::UniversalLabel const& otherGivenNames();
MXFZELM_EXPORT Types::UniversalLabel const& alternateName();
MXFZELM_EXPORT Types::UniversalLabel const& linkingName();
MXFZELM_EXPORT Types::UniversalLabel const& nameSuffix();
MXFZELM_EXPORT Types::UniversalLabel const& formerFamilyName();
MXFZELM_EXPORT Types::UniversalLabel const& nationality();
MXFZELM_EXPORT Types::UniversalLabel const& citizenship();
MXFZELM_EXPORT Types::UniversalLabel const& personOrganisationSets();

// Picture Format
MXFZELM_EXPORT Types::UniversalLabel const& colorDescriptor();
MXFZELM_EXPORT Types::UniversalLabel const& viewportAspectRatio();
MXFZELM_EXPORT Types::UniversalLabel const& perceivedDisplayFormat();

// Processing
MXFZELM_EXPORT Types::UniversalLabel const& descriptiveComment();
MXFZELM_EXPORT Types::UniversalLabel const& qualityFlag();
MXFZELM_EXPORT Types::UniversalLabel const& logoFlag();
MXFZELM_EXPORT Types::UniversalLabel const& graphicUsage();
MXFZELM_EXPORT Types::UniversalLabel const& simpleFlagging();
MXFZELM_EXPORT Types::UniversalLabel const& generationCopyNumber();
MXFZELM_EXPORT Types::UniversalLabel const& generationCloneNumber();

// Project
MXFZELM_EXPORT Types::UniversalLabel const& projectNumber();
MXFZELM_EXPORT Types::UniversalLabel const& projectName();

// Publication
MXFZELM_EXPORT Types::UniversalLabel const& publishingOrganisationName();
MXFZELM_EXPORT Types::UniversalLabel const& publishingServiceName();
MXFZELM_EXPORT Types::UniversalLabel const& publishingMediumName();
MXFZELM_EXPORT Types::UniversalLabel const& publishingRegionName();

// Rights
MXFZELM_EXPORT Types::UniversalLabel const& copyrightOwner();
MXFZELM_EXPORT Types::UniversalLabel const& intellectualPropertyDescription();
MXFZELM_EXPORT Types::UniversalLabel const& intellectualPropertyRight();
MXFZELM_EXPORT Types::UniversalLabel const& rightsholder();
MXFZELM_EXPORT Types::UniversalLabel const& rightsManagementAuthority();
MXFZELM_EXPORT Types::UniversalLabel const& maxNumberOfUsages();
MXFZELM_EXPORT Types::UniversalLabel const& rightsCondition();
MXFZELM_EXPORT Types::UniversalLabel const& rightsComment();
MXFZELM_EXPORT Types::UniversalLabel const& regionAreaOfIPLicense();
MXFZELM_EXPORT Types::UniversalLabel const& rightsStartDateTime();
MXFZELM_EXPORT Types::UniversalLabel const& rightsStopDateTime();

// Scripting
MXFZELM_EXPORT Types::UniversalLabel const& scriptingKind();
MXFZELM_EXPORT Types::UniversalLabel const& scriptingText();
MXFZELM_EXPORT Types::UniversalLabel const& scriptingLocators();

// Setting Period
MXFZELM_EXPORT Types::UniversalLabel const& timePeriodKeyword();
MXFZELM_EXPORT Types::UniversalLabel const& settingDateTime();
MXFZELM_EXPORT Types::UniversalLabel const& settingPeriodDescription();

// Shot
MXFZELM_EXPORT Types::UniversalLabel const& shotTrackIDs();
MXFZELM_EXPORT Types::UniversalLabel const& shotDescription();
MXFZELM_EXPORT Types::UniversalLabel const& shotCommentKind();
MXFZELM_EXPORT Types::UniversalLabel const& shotComment();
MXFZELM_EXPORT Types::UniversalLabel const& shotCueWordsSet();
MXFZELM_EXPORT Types::UniversalLabel const& keyPointSets();
MXFZELM_EXPORT Types::UniversalLabel const& shotStartPosition();
MXFZELM_EXPORT Types::UniversalLabel const& shotDuration();

// Titles
MXFZELM_EXPORT Types::UniversalLabel const& mainTitle();
MXFZELM_EXPORT Types::UniversalLabel const& secondaryTitle();
MXFZELM_EXPORT Types::UniversalLabel const& versionTitle();
MXFZELM_EXPORT Types::UniversalLabel const& workingTitle();
MXFZELM_EXPORT Types::UniversalLabel const& originalTitle();

} // namespace MXF::Zelm::Metadata::DMS1::DMS1MetadataULs
