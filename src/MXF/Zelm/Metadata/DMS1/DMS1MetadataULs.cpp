#include "MXF/Zelm/Metadata/DMS1/DMS1MetadataULs.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

namespace MXF::Zelm::Metadata::DMS1::DMS1MetadataULs {

namespace {

using UL = Types::UniversalLabel;

UL makeLabel(std::uint64_t first, std::uint64_t last) {
    KLV::Key key;
    ByteCoders::codeInteger(first, &key[0]);
    ByteCoders::codeInteger(last, &key[8]);
    return key;
}

/// The one label with these bytes, made when it is first asked for.
template <std::uint64_t first, std::uint64_t last>
UL const& label() {
    static UL const made = makeLabel(first, last);
    return made;
}

} // namespace

// All frameworks
UL const& frameworkTitle() { return label<0x060E2B34'01010105, 0x01050F01'00000000>(); }
UL const& frameworkExtendedTextLanguageCode() { return label<0x060E2B34'01010107, 0x03010102'02130000>(); }
UL const& primaryExtendedSpokenLanguageCode() { return label<0x060E2B34'01010107, 0x03010102'03110000>(); }
UL const& secondaryExtendedSpokenLanguageCode() { return label<0x060E2B34'01010107, 0x03010102'03120000>(); }
UL const& originalExtendedSpokenLanguageCode() { return label<0x060E2B34'01010107, 0x03010102'03130000>(); }
UL const& frameworkThesaurusName() { return label<0x060E2B34'01010105, 0x03020102'15010000>(); }
UL const& contactsListSet() { return label<0x060E2B34'01010105, 0x06010104'02402200>(); }
UL const& frameworkLocationSets() { return label<0x060E2B34'01010105, 0x06010104'03401600>(); }
UL const& titlesSets() { return label<0x060E2B34'01010105, 0x06010104'05400400>(); }
UL const& annotationSets() { return label<0x060E2B34'01010105, 0x06010104'05400D00>(); }
UL const& participantSets() { return label<0x060E2B34'01010105, 0x06010104'05401300>(); }
UL const& metadataServerLocators() { return label<0x060E2B34'01010105, 0x06010104'060C0000>(); }

// Production and clip frameworks
UL const& pictureFormatSet() { return label<0x060E2B34'01010105, 0x06010104'02401D00>(); }
UL const& projectSet() { return label<0x060E2B34'01010105, 0x06010104'02402100>(); }
UL const& captionsDescriptionSets() { return label<0x060E2B34'01010105, 0x06010104'05400C00>(); }
UL const& contractSets() { return label<0x060E2B34'01010105, 0x06010104'05401900>(); }

// Production Framework
UL const& integrationIndication() { return label<0x060E2B34'01010104, 0x05010101'01000000>(); }
UL const& groupRelationshipSets() { return label<0x060E2B34'01010105, 0x06010104'05400500>(); }
UL const& identificationSets() { return label<0x060E2B34'01010105, 0x06010104'05400600>(); }
UL const& brandingSets() { return label<0x060E2B34'01010105, 0x06010104'05400800>(); }
UL const& eventSets() { return label<0x060E2B34'01010105, 0x06010104'05400900>(); }
UL const& awardSets() { return label<0x060E2B34'01010105, 0x06010104'05400B00>(); }
UL const& productionSettingPeriodSets() { return label<0x060E2B34'01010105, 0x06010104'05400E01>(); }

// Clip Framework
UL const& extendedClipID() { return label<0x060E2B34'01010107, 0x01011509'00000000>(); }
UL const& takeNumber() { return label<0x060E2B34'01010101, 0x01050700'00000000>(); }
UL const& clipNumber() { return label<0x060E2B34'01010104, 0x01050C00'00000000>(); }
UL const& slateInformation() { return label<0x060E2B34'01010104, 0x03020503'00000000>(); }
UL const& clipKind() { return label<0x060E2B34'01010105, 0x03020504'00000000>(); }
UL const& processingSet() { return label<0x060E2B34'01010105, 0x06010104'02402000>(); }
UL const& scriptingSets() { return label<0x060E2B34'01010105, 0x06010104'05400F00>(); }
UL const& clipShotSets() { return label<0x060E2B34'01010105, 0x06010104'05401102>(); }
UL const& deviceParametersSets() { return label<0x060E2B34'01010105, 0x06010104'05401E00>(); }
UL const& clipCreationDateTime() { return label<0x060E2B34'01010107, 0x07020110'01040000>(); }

// Scene Framework
UL const& sceneNumber() { return label<0x060E2B34'01010101, 0x01050600'00000000>(); }
UL const& sceneSettingPeriodSets() { return label<0x060E2B34'01010105, 0x06010104'05400E02>(); }
UL const& sceneShotSets() { return label<0x060E2B34'01010105, 0x06010104'05401101>(); }

// All sets with text
UL const& extendedTextLanguageCode() { return label<0x060E2B34'01010107, 0x03010102'02110000>(); }

// All sets that take words from a thesaurus
UL const& thesaurusName() { return label<0x060E2B34'01010104, 0x03020102'02010000>(); }

// Address
UL const& communicationsSets() { return label<0x060E2B34'01010105, 0x06010104'05401800>(); }
UL const& addressNameValueSets() { return label<0x060E2B34'01010107, 0x06010104'05401F04>(); }
UL const& roomOrSuiteNumber() { return label<0x060E2B34'01010103, 0x07012001'04010101>(); }
UL const& streetNumber() { return label<0x060E2B34'01010103, 0x07012001'04010201>(); }
UL const& streetName() { return label<0x060E2B34'01010103, 0x07012001'04010301>(); }
UL const& postalTown() { return label<0x060E2B34'01010103, 0x07012001'04010401>(); }
UL const& city() { return label<0x060E2B34'01010103, 0x07012001'04010501>(); }
UL const& stateOrProvinceOrCounty() { return label<0x060E2B34'01010103, 0x07012001'04010601>(); }
UL const& postalCode() { return label<0x060E2B34'01010103, 0x07012001'04010701>(); }
UL const& country() { return label<0x060E2B34'01010103, 0x07012001'04010801>(); }
UL const& roomOrSuiteName() { return label<0x060E2B34'01010105, 0x07012001'04011101>(); }
UL const& buildingName() { return label<0x060E2B34'01010105, 0x07012001'04011201>(); }
UL const& placeName() { return label<0x060E2B34'01010107, 0x07012001'04011401>(); }
UL const& geographicalCoordinates() { return label<0x060E2B34'01010107, 0x07012001'04011500>(); }
UL const& astronomicalBodyName() { return label<0x060E2B34'01010107, 0x07012001'04011601>(); }

// Annotation
UL const& annotationSynopsis() { return label<0x060E2B34'01010105, 0x03020106'09010000>(); }
UL const& annotationDescription() { return label<0x060E2B34'01010105, 0x03020106'0A010000>(); }
UL const& annotationKind() { return label<0x060E2B34'01010105, 0x03020106'0E010000>(); }
UL const& relatedMaterialDescription() { return label<0x060E2B34'01010105, 0x03020106'0F010000>(); }
UL const& annotationCueWordsSet() { return label<0x060E2B34'01010105, 0x06010104'02402301>(); }
UL const& annotationParticipantSets() { return label<0x060E2B34'01010107, 0x06010104'03401303>(); }
UL const& classificationSets() { return label<0x060E2B34'01010105, 0x06010104'05401000>(); }
UL const& relatedMaterialLocators() { return label<0x060E2B34'01010105, 0x06010104'060D0000>(); }

// Award
UL const& festivalName() { return label<0x060E2B34'01010104, 0x03020201'03010000>(); }
UL const& awardName() { return label<0x060E2B34'01010104, 0x03020201'04010000>(); }
UL const& awardCategory() { return label<0x060E2B34'01010104, 0x03020201'05010000>(); }
UL const& nominationCategory() { return label<0x060E2B34'01010108, 0x03020201'06010000>(); }
UL const& awardParticipantSets() { return label<0x060E2B34'01010105, 0x06010104'03401301>(); }
UL const& festivalDateTime() { return label<0x060E2B34'01010105, 0x07020102'07100100>(); }

// Branding
UL const& brandMainTitle() { return label<0x060E2B34'01010105, 0x01050D01'00000000>(); }
UL const& brandOriginalTitle() { return label<0x060E2B34'01010105, 0x01050E01'00000000>(); }

// Captions Description
UL const& extendedCaptionsLanguageCode() { return label<0x060E2B34'01010107, 0x03010102'02120000>(); }
UL const& captionKind() { return label<0x060E2B34'01010104, 0x04030101'01000000>(); }

// Classification
UL const& contentClassification() { return label<0x060E2B34'01010101, 0x03020102'04000000>(); }
UL const& classificationNameValueSets() { return label<0x060E2B34'01010105, 0x06010104'05401F01>(); }

// Communications
UL const& telephoneNumber() { return label<0x060E2B34'01010101, 0x07012001'10030100>(); }
UL const& faxNumber() { return label<0x060E2B34'01010101, 0x07012001'10030200>(); }
UL const& emailAddress() { return label<0x060E2B34'01010103, 0x07012001'10030301>(); }
UL const& centralTelephoneNumber() { return label<0x060E2B34'01010104, 0x07012001'10030400>(); }
UL const& mobileTelephoneNumber() { return label<0x060E2B34'01010104, 0x07012001'10030500>(); }
UL const& webPage() { return label<0x060E2B34'01010105, 0x07012001'10030601>(); }

// Persons, organisations and locations
UL const& contactID() { return label<0x060E2B34'01010108, 0x01011540'01020000>(); }
UL const& addressSets() { return label<0x060E2B34'01010105, 0x06010104'05401700>(); }
UL const& contactNameValueSets() { return label<0x060E2B34'01010105, 0x06010104'05401F02>(); }

// Contacts List
UL const& personSets() { return label<0x060E2B34'01010105, 0x06010104'05401400>(); }
UL const& organisationSets() { return label<0x060E2B34'01010105, 0x06010104'05401500>(); }
UL const& locationSets() { return label<0x060E2B34'01010105, 0x06010104'05401600>(); }

// Contract
UL const& supplyContractNumber() { return label<0x060E2B34'01010101, 0x02010200'00000000>(); }
UL const& contractParticipantSets() { return label<0x060E2B34'01010105, 0x06010104'03401302>(); }
UL const& rightsSets() { return label<0x060E2B34'01010105, 0x06010104'05401A00>(); }

// Cue Words
UL const& inCueWords() { return label<0x060E2B34'01010104, 0x03020102'0D010000>(); }
UL const& outCueWords() { return label<0x060E2B34'01010104, 0x03020102'0E010000>(); }

// Device Parameters
UL const& deviceDesignation() { return label<0x060E2B34'01010101, 0x01012001'00000000>(); }
UL const& deviceModel() { return label<0x060E2B34'01010101, 0x01012003'00000000>(); }
UL const& deviceSerialNumber() { return label<0x060E2B34'01010101, 0x01012004'00000000>(); }
UL const& iEEEDeviceIdentifier() { return label<0x060E2B34'01010102, 0x01012005'00000000>(); }
UL const& deviceKind() { return label<0x060E2B34'01010105, 0x01012008'01000000>(); }
UL const& deviceAssetNumber() { return label<0x060E2B34'01010105, 0x0101200C'00000000>(); }
UL const& deviceManufacturerName() { return label<0x060E2B34'01010102, 0x010A0101'01010000>(); }
UL const& deviceUsageDescription() { return label<0x060E2B34'01010105, 0x03030310'01010000>(); }
UL const& deviceParametersNameValueSets() { return label<0x060E2B34'01010105, 0x06010104'05401F03>(); }

// Event
UL const& eventIndication() { return label<0x060E2B34'01010104, 0x05010102'01000000>(); }
UL const& publicationSets() { return label<0x060E2B34'01010105, 0x06010104'05400A00>(); }
UL const& eventAnnotationSets() { return label<0x060E2B34'01010108, 0x06010104'05400D01>(); }
UL const& eventStartDateTime() { return label<0x060E2B34'01010101, 0x07020102'07020000>(); }
UL const& eventEndDateTime() { return label<0x060E2B34'01010101, 0x07020102'09020000>(); }

// Group Relationship
UL const& programmingGroupKind() { return label<0x060E2B34'01010105, 0x02020301'00000000>(); }
UL const& episodicStartNumber() { return label<0x060E2B34'01010104, 0x02020400'00000000>(); }
UL const& episodicEndNumber() { return label<0x060E2B34'01010104, 0x02020500'00000000>(); }
UL const& programmingGroupTitle() { return label<0x060E2B34'01010105, 0x02020601'00000000>(); }
UL const& groupSynopsis() { return label<0x060E2B34'01010105, 0x03020106'08010000>(); }
UL const& positionInSequence() { return label<0x060E2B34'01010101, 0x06100100'00000000>(); }
UL const& totalNumberInTheSequence() { return label<0x060E2B34'01010105, 0x06100400'00000000>(); }

// DMS1 Identification
UL const& identificationLocator() { return label<0x060E2B34'01010105, 0x01020202'00000000>(); }
UL const& identifierKind() { return label<0x060E2B34'01010104, 0x01080100'00000000>(); }
UL const& identifierValue() { return label<0x060E2B34'01010104, 0x01080200'00000000>(); }
UL const& identificationIssuingAuthority() { return label<0x060E2B34'01010105, 0x020A0101'00000000>(); }

// Key Point
UL const& keypointKind() { return label<0x060E2B34'01010104, 0x03020102'10010000>(); }
UL const& keypointValue() { return label<0x060E2B34'01010104, 0x03020102'11010000>(); }
UL const& keypointPosition() { return label<0x060E2B34'01010104, 0x07020103'01070000>(); }

// Location
UL const& locationDescription() { return label<0x060E2B34'01010104, 0x07012002'02010000>(); }
UL const& locationKind() { return label<0x060E2B34'01010104, 0x07012002'03010000>(); }

// Name Value
UL const& sMPTEUniversalLabelLocator() { return label<0x060E2B34'01010104, 0x01020201'00000000>(); }
UL const& itemName() { return label<0x060E2B34'01010105, 0x0301020A'01010000>(); }
UL const& itemValue() { return label<0x060E2B34'01010105, 0x0301020A'02010000>(); }

// Organisation
UL const& organisationCode() { return label<0x060E2B34'01010104, 0x010A0201'01000000>(); }
UL const& organisationKind() { return label<0x060E2B34'01010103, 0x02300201'01000000>(); }
UL const& contactDepartment() { return label<0x060E2B34'01010103, 0x02300602'01000000>(); }
UL const& organisationMainName() { return label<0x060E2B34'01010103, 0x02300603'03010100>(); }

// Participant
UL const& participantID() { return label<0x060E2B34'01010108, 0x01011540'01010000>(); }
UL const& contributionStatus() { return label<0x060E2B34'01010103, 0x02300102'01010000>(); }
UL const& jobFunction() { return label<0x060E2B34'01010103, 0x02300501'01000000>(); }
UL const& jobFunctionCode() { return label<0x060E2B34'01010103, 0x02300501'02000000>(); }
UL const& roleOrIdentityName() { return label<0x060E2B34'01010103, 0x02300502'01000000>(); }
UL const& participantPersonSets() { return label<0x060E2B34'01010105, 0x06010104'03401400>(); }
UL const& participantOrganisationSets() { return label<0x060E2B34'01010105, 0x06010104'03401501>(); }

// Person
UL const& familyName() { return label<0x060E2B34'01010103, 0x02300603'01010100>(); }
UL const& firstGivenName() { return label<0x060E2B34'01010103, 0x02300603'01020100>(); }
UL const& salutation() { return label<0x060E2B34'01010104, 0x02300603'01050100>(); }
UL const& honorsQualifications() { return label<0x060E2B34'01010104, 0x02300603'01060100>(); }
UL const& personDescription() { return label<0x060E2B34'01010103, 0x02300603'01070100>(); }
UL const& otherGivenNames() { return label<0x060E2B34'01010104, 0x02300603'01080100>(); }
UL const& alternateName() { return label<0x060E2B34'01010104, 0x02300603'01090100>(); }
UL const& linkingName() { return label<0x060E2B34'01010105, 0x02300603'010A0100>(); }
UL const& nameSuffix() { return label<0x060E2B34'01010105, 0x02300603'010B0100>(); }
UL const& formerFamilyName() { return label<0x060E2B34'01010105, 0x02300603'010C0100>(); }
UL const& nationality() { return label<0x060E2B34'01010105, 0x02300603'010D0100>(); }
UL const& citizenship() { return label<0x060E2B34'01010105, 0x02300603'010E0100>(); }
UL const& personOrganisationSets() { return label<0x060E2B34'01010105, 0x06010104'03401502>(); }

// Picture Format
UL const& colorDescriptor() { return label<0x060E2B34'01010103, 0x03020106'04010000>(); }
UL const& viewportAspectRatio() { return label<0x060E2B34'01010102, 0x04010101'03000000>(); }
UL const& perceivedDisplayFormat() { return label<0x060E2B34'01010103, 0x04010101'08000000>(); }

// Processing
UL const& descriptiveComment() { return label<0x060E2B34'01010103, 0x03020302'02010000>(); }
UL const& qualityFlag() { return label<0x060E2B34'01010101, 0x05010103'00000000>(); }
UL const& logoFlag() { return label<0x060E2B34'01010103, 0x05010104'00000000>(); }
UL const& graphicUsage() { return label<0x060E2B34'01010104, 0x05010107'01000000>(); }
UL const& simpleFlagging() { return label<0x060E2B34'01010101, 0x05010301'00000000>(); }
UL const& generationCopyNumber() { return label<0x060E2B34'01010105, 0x05010302'01000000>(); }
UL const& generationCloneNumber() { return label<0x060E2B34'01010105, 0x05010303'01000000>(); }

// Project
UL const& projectNumber() { return label<0x060E2B34'01010102, 0x01030106'00000000>(); }
UL const& projectName() { return label<0x060E2B34'01010105, 0x01030108'01000000>(); }

// Publication
UL const& publishingOrganisationName() { return label<0x060E2B34'01010104, 0x02100201'01010000>(); }
UL const& publishingServiceName() { return label<0x060E2B34'01010104, 0x02100201'02010000>(); }
UL const& publishingMediumName() { return label<0x060E2B34'01010104, 0x02100201'03010000>(); }
UL const& publishingRegionName() { return label<0x060E2B34'01010104, 0x02100201'04010000>(); }

// Rights
UL const& copyrightOwner() { return label<0x060E2B34'01010103, 0x02050102'01000000>(); }
UL const& intellectualPropertyDescription() { return label<0x060E2B34'01010103, 0x02050201'01000000>(); }
UL const& intellectualPropertyRight() { return label<0x060E2B34'01010103, 0x02050202'01000000>(); }
UL const& rightsholder() { return label<0x060E2B34'01010103, 0x02050301'01000000>(); }
UL const& rightsManagementAuthority() { return label<0x060E2B34'01010103, 0x02050302'01000000>(); }
UL const& maxNumberOfUsages() { return label<0x060E2B34'01010101, 0x02050401'00000000>(); }
UL const& rightsCondition() { return label<0x060E2B34'01010103, 0x02050403'01000000>(); }
UL const& rightsComment() { return label<0x060E2B34'01010108, 0x02050404'01000000>(); }
UL const& regionAreaOfIPLicense() { return label<0x060E2B34'01010103, 0x07012001'03050100>(); }
UL const& rightsStartDateTime() { return label<0x060E2B34'01010104, 0x07020120'02000000>(); }
UL const& rightsStopDateTime() { return label<0x060E2B34'01010104, 0x07020120'03000000>(); }

// Scripting
UL const& scriptingKind() { return label<0x060E2B34'01010105, 0x03020106'0B010000>(); }
UL const& scriptingText() { return label<0x060E2B34'01010105, 0x03020106'0C010000>(); }
UL const& scriptingLocators() { return label<0x060E2B34'01010108, 0x06010104'060E0000>(); }

// Setting Period
UL const& timePeriodKeyword() { return label<0x060E2B34'01010104, 0x07020108'01010000>(); }
UL const& settingDateTime() { return label<0x060E2B34'01010104, 0x07020108'02000000>(); }
UL const& settingPeriodDescription() { return label<0x060E2B34'01010105, 0x07020108'03010000>(); }

// Shot
UL const& shotTrackIDs() { return label<0x060E2B34'01010105, 0x01070107'00000000>(); }
UL const& shotDescription() { return label<0x060E2B34'01010105, 0x03020106'0D010000>(); }
UL const& shotCommentKind() { return label<0x060E2B34'01010107, 0x03020501'01000000>(); }
UL const& shotComment() { return label<0x060E2B34'01010107, 0x03020502'01000000>(); }
UL const& shotCueWordsSet() { return label<0x060E2B34'01010105, 0x06010104'02402302>(); }
UL const& keyPointSets() { return label<0x060E2B34'01010105, 0x06010104'05401200>(); }
UL const& shotStartPosition() { return label<0x060E2B34'01010105, 0x07020103'01090000>(); }
UL const& shotDuration() { return label<0x060E2B34'01010105, 0x07020201'02040000>(); }

// Titles
UL const& mainTitle() { return label<0x060E2B34'01010103, 0x01050201'00000000>(); }
UL const& secondaryTitle() { return label<0x060E2B34'01010103, 0x01050301'00000000>(); }
UL const& versionTitle() { return label<0x060E2B34'01010103, 0x01050801'00000000>(); }
UL const& workingTitle() { return label<0x060E2B34'01010104, 0x01050A01'00000000>(); }
UL const& originalTitle() { return label<0x060E2B34'01010104, 0x01050B01'00000000>(); }

} // namespace MXF::Zelm::Metadata::DMS1::DMS1MetadataULs
