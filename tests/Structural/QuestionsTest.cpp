/// Questions about structures that are broken, or made to harm.
#include "MXF/Zelm/Metadata/Structural/Building.h"
#include "MXF/Zelm/Metadata/Structural/BuildingDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Properties.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "MXF/Zelm/Types/References.h"
#include "support/Bytes.h"
#include "support/StandardMetadata.h"

#include <limits>

namespace MXF::Zelm::Test {

using namespace Metadata;
using namespace Metadata::Structural;

namespace {

using Seconds = Templates::Rational<std::int64_t>;
constexpr Templates::Rational<int> rate{25, 1};

/// Condition and message of what `action` throws.
template <class Action>
std::string assertion(Action action) {
    try {
        action();
    } catch (Exceptions::BaseException const& failure) {
        return failure.condition() + ": " + failure.message();
    }
    return "nothing was thrown";
}

/// A material package with a timecode track and a track of pictures, 50 long.
class Questions : public testing::Test {
protected:
    std::unique_ptr<PartitionMetadata> metadata = standardMetadata();
    Preface& preface =
        createPreface(*metadata, {.operationalPattern = OperationalPatterns::op1a({}), .product = {}});
    MaterialPackage& package = createMaterialPackage(*metadata);
    SourcePackage& file = createFilePackage(*metadata, {.bodySID = 1});
    TimelineTrack& timecode =
        addTimecodeTrack(*metadata, package, Utils::TimeCode(Utils::TimeBase(25), 7), rate, 50);
    TimelineTrack& picture = createTimelineTrack(*metadata, package, DataDefinitions::picture, 9, 0, rate);
    SourceClip& clip = addSourceClip(*metadata, picture.sequence(), DataDefinitions::picture, 50, 0);
    TimecodeComponent& component =
        dynamic_cast<TimecodeComponent&>(*timecode.sequence()->structuralComponents().at(0));
};

} // namespace

TEST_F(Questions, FailWithWhatATimecodeTrackLacks) {
    auto const ask = [&] { startTimecode(package); };
    auto const dropFrame = [&] { isDropFrame(&timecode); };
    component.dropFrame(Types::Boolean(true));
    EXPECT_EQ(startTimecode(package).toString(), u"00:00:00:07") << "25 cannot drop";
    component.roundedTimecodeBase(Types::UInt16(std::uint16_t{0}));
    EXPECT_FALSE(startTimecode(package).isDefined());
    EXPECT_EQ(packageDurationAsTimeCode(package).toString(), u"00:00:02:00");

    auto& lacking = Structural::create<TimecodeComponent>(*metadata);
    timecode.sequence()->removeStructuralComponent(component);
    timecode.sequence()->addStructuralComponent(lacking);
    EXPECT_EQ(thrownBy(dropFrame), "Timecode component does not have the 'dropFrame' element");
    timecode.sequence()->removeStructuralComponent(lacking);
    EXPECT_EQ(assertion(ask), "count != 0: Timecode track has no timecode components");
    timecode.sequence()->addStructuralComponent(clip);
    EXPECT_EQ(assertion(ask), "tc != 0: Timecode component has invalid type");
    EXPECT_EQ(assertion(dropFrame), "tc != 0: Timecode component has invalid type");

    auto& empty = Structural::create<TimelineTrack>(*metadata);
    EXPECT_EQ(assertion([&] { isDropFrame(&empty); }), "seq != 0: Timecode track has no sequence");
    thrownBy<Exceptions::InvalidValue>([] { isDropFrame(nullptr); });
}

TEST_F(Questions, FailWithWhatTheFileLacks) {
    auto& unnamed = Structural::create<SourcePackage>(*metadata);
    EXPECT_EQ(assertion([&] { isExternalEssence(*metadata, unnamed); }),
              "package.packageUID () != 0: Package has no packageUID");
    metadata->removeMetadataSet(*preface.contentStorage()->instanceUID());
    EXPECT_EQ(assertion([&] { hasExternalEssence(*metadata); }),
              "contentStorage != 0: Preface has no ContentStorage");
    metadata->createMetadataSet(Preface::classKey());
    EXPECT_EQ(thrownBy([&] { operationalPattern(*metadata); }),
              "More than one Preface found in PartitionMetadata");
    auto const none = standardMetadata();
    EXPECT_EQ(thrownBy([&] { findPreface(*none); }), "Preface not found in PartitionMetadata");
    none->createMetadataSet(Preface::classKey());
    EXPECT_TRUE(essenceContainers(*none)->empty());
    EXPECT_EQ(thrownBy([&] { operationalPattern(*none); }), "Preface has no OperationalPattern");
}

TEST_F(Questions, TellWhatLacksFromWhatIsThere) {
    EXPECT_FALSE(isEssenceTrack(nullptr));
    EXPECT_FALSE(isTimeCodeTrack(nullptr));
    EXPECT_EQ(essenceULOfTrack(file, nullptr), nullptr);
    EXPECT_EQ(fileDescriptorForTrack(file, 1), nullptr);
    EXPECT_EQ(getTimecodeTrack(file), nullptr);
    EXPECT_FALSE(startTimecode(file).isDefined());
    EXPECT_FALSE(packageDurationAsTimeCode(file).isDefined());
    EXPECT_FALSE(hasExternalEssence(*metadata));
    clip.sourcePackageID(Types::UMID32::generate(Types::UMIDMaterialType::Picture));
    EXPECT_TRUE(hasExternalEssence(*metadata)) << "the material package plays one that is not there";
    metadata->removeMetadataSet(*picture.sequence()->instanceUID());
    EXPECT_EQ(picture.sequence(), nullptr) << "dangling";
    EXPECT_FALSE(isEssenceTrack(&picture));
    EXPECT_EQ(durationOf(picture), -1);
    EXPECT_EQ(packageDurationInSeconds(package), (Seconds{2, 1})) << "of the timecode track";
}

TEST_F(Questions, BoundTracksInSeconds) {
    Seconds start{7, 7}, end{7, 7};
    picture.origin(Types::Position(10));
    picture.sequence()->duration(Types::Length(-1)); // its component tells
    ASSERT_TRUE(trackBoundsInSeconds(&picture, start, end));
    EXPECT_EQ(start, (Seconds{-2, 5}));
    EXPECT_EQ(end, (Seconds{8, 5}));
    start = end = {7, 7};
    clip.duration(Types::Length(-1));
    EXPECT_FALSE(trackBoundsInSeconds(&picture, start, end));
    clip.duration(Types::Length(std::numeric_limits<std::int64_t>::max()));
    for (auto const& origin : {std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        picture.origin(Types::Position(origin));
        EXPECT_FALSE(trackBoundsInSeconds(&picture, start, end)) << origin;
    }
    clip.duration(Types::Length(5));
    picture.editRate(Types::Rational(0, 1));
    EXPECT_FALSE(trackBoundsInSeconds(&picture, start, end));
    EXPECT_FALSE(trackBoundsInSeconds(nullptr, start, end));
    EXPECT_EQ(start.numerator, 7);
    EXPECT_EQ(end.denominator, 7);
}

TEST_F(Questions, SurviveCircularDescriptorsAndSetsOfAnotherClass) {
    auto& outer = Structural::create<MultipleDescriptor>(*metadata);
    auto& inner = Structural::create<MultipleDescriptor>(*metadata);
    auto& linked = Structural::create<AES3AudioEssenceDescriptor>(*metadata);
    linked.linkedTrackID(Types::UInt32(std::uint32_t{4}));
    file.descriptor(outer);
    outer.addFileDescriptor(inner);
    inner.addFileDescriptor(outer);
    inner.addFileDescriptor(linked);
    EXPECT_EQ(fileDescriptorForTrack(file, 4), &linked);
    EXPECT_EQ(fileDescriptorForTrack(file, 5), nullptr);

    // A file may refer to a set of another class: the track's sequence takes the instance UID of a package.
    auto const uid = *picture.sequence()->instanceUID();
    metadata->removeMetadataSet(uid);
    Structural::create<MaterialPackage>(*metadata).value(Properties::instanceUID.label, uid);
    EXPECT_EQ(picture.sequence(), nullptr);
    EXPECT_FALSE(isEssenceTrack(&picture));
    EXPECT_EQ(packageDurationInSeconds(package), (Seconds{2, 1}));
}

TEST_F(Questions, ListWhatASetLacks) {
    auto& track = Structural::create<StaticTrack>(*metadata);
    auto const lacking = [&] {
        std::vector<Types::UniversalLabel> labels;
        Templates::vector<MissingAttribute> missing;
        track.missingAttributes(missing);
        for (auto const& each : missing)
            labels.push_back(each.attribute->metaElement().universalLabel());
        return labels;
    };
    EXPECT_EQ(lacking(),
              (std::vector<Types::UniversalLabel>{Properties::trackNumber.label, Properties::trackID.label,
                                                  Properties::sequence.label}));
    track.trackID(Types::UInt32(std::uint32_t{1}));
    track.sequence(*picture.sequence());
    EXPECT_EQ(lacking(), std::vector<Types::UniversalLabel>{Properties::trackNumber.label});
}

TEST(DataDefinitions, AreToldInAnyVersion) {
    using namespace KLV::Literals;
    EXPECT_TRUE(isTimecodeDataDefinition("060E2B34.0401010D.01030201.02000000"_key));
    EXPECT_TRUE(isEssenceDataDefinition("060E2B34.0401010D.01030202.03000000"_key));
    EXPECT_TRUE(isEssenceDataDefinition(DataDefinitions::legacySound));
    EXPECT_FALSE(isEssenceDataDefinition(DataDefinitions::descriptiveMetadata));
    EXPECT_FALSE(isTimecodeDataDefinition(DataDefinitions::descriptiveMetadata));
}

TEST_F(Questions, SetAndRemoveAReference) {
    auto const& label = Properties::primaryPackage.label;
    setReferencedMetadataSet(&preface, label, &file);
    EXPECT_EQ(preface.primaryPackage(), &file);
    setReferencedMetadataSet(&preface, label, nullptr);
    EXPECT_EQ(preface.primaryPackage(), nullptr);
    thrownBy<Exceptions::InvalidElement>([&] { setReferencedMetadataSet(&preface, label, &clip); });
    thrownBy<Exceptions::InvalidValue>([&] { setReferencedMetadataSet(nullptr, label, &file); });
    thrownBy<Exceptions::InvalidChange>(
        [&] { setReferencedMetadataSet(&preface, Properties::contentStorage.label, nullptr); });
}

} // namespace MXF::Zelm::Test
