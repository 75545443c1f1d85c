/// Header metadata built from nothing, written and read again.
#include "MXF/Zelm/Metadata/Structural/BuildingDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/ContentStorage.h"
#include "MXF/Zelm/Metadata/Structural/EssenceContainerData.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "support/HeaderMetadata.h"
#include "support/StandardMetadata.h"

#include <limits>

namespace MXF::Zelm::Test {

using namespace Metadata;
using namespace Metadata::Structural;

namespace {

using namespace KLV::Literals;

constexpr Templates::Rational<int> rate{30000, 1001};
constexpr KLV::Key pictureWrapping = "060E2B34.04010102.0D010301.02046001"_key;
constexpr KLV::Key pictureCoding = "060E2B34.04010103.04010202.01011100"_key;
constexpr KLV::Key soundWrapping = "060E2B34.04010101.0D010301.02060100"_key;
constexpr KLV::Key clipWrapping = "060E2B34.04010101.0D010301.02060200"_key;

PrefaceOptions prefaceOptions(KLV::Key const& pattern) {
    return {.operationalPattern = pattern,
            .product = {u"Company", u"Product", u"1.0", Types::UUID::generate()}};
}

/// A picture, four sounds and timecode.
std::unique_ptr<PartitionMetadata> builtOp1a(std::uint64_t length) {
    auto metadata = standardMetadata();
    createPreface(*metadata, prefaceOptions(OperationalPatterns::op1a({.multiTrack = true})));
    auto& material = createMaterialPackage(*metadata, {.name = u"Material"});
    auto& file = createFilePackage(*metadata, {.bodySID = 1, .indexSID = 2});
    addTimecodeTrack(*metadata, material, Utils::TimeCode(Utils::TimeBase(30, true), {.hours = 1}), rate,
                     length);
    auto& picture =
        createPictureDescriptor<CDCIEssenceDescriptor>(*metadata, {.essenceContainer = pictureWrapping,
                                                                   .coding = pictureCoding,
                                                                   .frameRate = rate,
                                                                   .width = 720,
                                                                   .height = 480,
                                                                   .firstLine = {23, 286}});
    addMaterialTrack(
        *metadata, material, file,
        addEssenceTrack(*metadata, file, picture, {DataDefinitions::picture, rate, 0x15010500, length}));
    for (std::uint8_t channel = 1; channel <= 4; ++channel) {
        auto& sound = createSoundDescriptor<WAVEAudioEssenceDescriptor>(*metadata, {soundWrapping, rate});
        addMaterialTrack(
            *metadata, material, file,
            addEssenceTrack(*metadata, file, sound,
                            {DataDefinitions::sound, rate, makeTrackNumber(0x16, 4, 1, channel), length}));
    }
    return metadata;
}

/// Names of what is missing or has no value yet.
std::vector<std::u16string> gaps(PartitionMetadata const& metadata) {
    std::vector<std::u16string> names;
    Templates::vector<MissingAttribute> missing;
    metadata.missingAttributes(missing);
    for (auto const& each : missing)
        names.push_back(each.set->name() + u"." + each.attribute->metaElement().getProperty(u"name"));
    Templates::vector<Element*> elements;
    metadata.openElements(elements);
    metadata.incompleteElements(elements);
    for (auto const* const element : elements)
        names.push_back(element->metadataSet().name() + u"." + element->name());
    return names;
}

std::unique_ptr<PartitionMetadata> readAgain(PartitionMetadata& metadata) {
    auto const bytes = written(metadata, false, SerializationOrder::ForwardReferences);
    auto again = loadAgain(bytes, metadata.partitionDictionary().dictionary());
    EXPECT_TRUE(sameBytes(written(*again, false, SerializationOrder::ForwardReferences), bytes));
    EXPECT_EQ(again->darkSize(), 0u);
    return again;
}

template <class Package>
Package& packageOf(PartitionMetadata const& metadata) {
    return dynamic_cast<Package&>(metadata.find(Package::classKey()));
}

SourceClip& clipOf(Track const& track) {
    return dynamic_cast<SourceClip&>(*track.sequence()->structuralComponents().at(0));
}

} // namespace

TEST(Building, MakesACompleteOp1aHeader) {
    auto const built = builtOp1a(300);
    EXPECT_EQ(gaps(*built), std::vector<std::u16string>{});
    auto const metadata = readAgain(*built);
    EXPECT_EQ(metadata->size(), built->size());
    EXPECT_EQ(operationalPattern(*metadata), "060E2B34.04010101.0D010201.01010900"_key);
    auto const containers = essenceContainers(*metadata);
    ASSERT_EQ(containers->count(), 3u);
    EXPECT_EQ(containers->at(2), Types::UniversalLabel(EssenceContainerLabels::multipleWrappings));
    EXPECT_FALSE(hasExternalEssence(*metadata));

    auto const& material = packageOf<MaterialPackage>(*metadata);
    auto const& file = packageOf<SourcePackage>(*metadata);
    Templates::list<TimelineTrack*> played;
    getAllEssenceTracks(material, played);
    Templates::list<TimelineTrack*> essence;
    getAllEssenceTracks(file, essence);
    ASSERT_EQ(played.size(), 5u);
    ASSERT_EQ(essence.size(), 5u);
    auto source = essence.begin();
    for (auto const* const track : played) {
        EXPECT_EQ(*clipOf(*track).sourcePackageID(), *file.packageUID());
        EXPECT_EQ(*clipOf(*track).sourceTrackID(), *(*source)->trackID());
        EXPECT_EQ(durationOf(*track), 300);
        EXPECT_TRUE(clipOf(**source).sourcePackageID()->isNull());
        auto const* const descriptor = fileDescriptorForTrack(file, *(*source)->trackID());
        ASSERT_NE(descriptor, nullptr);
        EXPECT_EQ(*descriptor->containerDuration(), 300);
        EXPECT_EQ(*essenceULOfTrack(file, *source),
                  Types::UniversalLabel(track == played.front() ? pictureWrapping : soundWrapping));
        ++source;
    }
    EXPECT_EQ(*essence.back()->trackNumber(), 0x16040104u);
    EXPECT_EQ(*dynamic_cast<MultipleDescriptor&>(*file.descriptor()).essenceContainer(),
              Types::UniversalLabel(EssenceContainerLabels::multipleWrappings));
    EXPECT_EQ(startTimecode(material).toString(), u"01:00:00;00");
    EXPECT_TRUE(isDropFrame(getTimecodeTrack(material)));
    EXPECT_EQ(packageDurationAsTimeCode(material).toString(), u"00:00:10;00");
    EXPECT_EQ(packageDurationInSeconds(file), (Templates::Rational<std::int64_t>{1001, 100}));
}

TEST(Building, MakesAnOpAtomHeaderWhoseLengthComesLater) {
    auto const built = standardMetadata();
    createPreface(*built,
                  prefaceOptions(OperationalPatterns::opAtom(OperationalPatterns::Atom::OneTrackOneClip)));
    auto& file = createFilePackage(*built, {.bodySID = 1, .indexSID = 2});
    constexpr Templates::Rational<int> soundRate{48000, 1};
    auto& sound = createSoundDescriptor<WAVEAudioEssenceDescriptor>(
        *built, {.essenceContainer = clipWrapping, .editRate = soundRate, .channels = 2, .bits = 20});
    auto& track = addEssenceTrack(*built, file, sound, {DataDefinitions::sound, soundRate, 0x16010200});
    auto& material = createMaterialPackage(*built);
    auto& playing = addMaterialTrack(*built, material, file, track);
    EXPECT_EQ(packageDurationInSeconds(material), (Templates::Rational<std::int64_t>{0, 0}));
    EXPECT_FALSE(packageDurationAsTimeCode(material).isDefined());
    EXPECT_EQ(gaps(*built).size(), 4u) << "durations of two sequences and two clips";
    setTrackLength(track, 48000);
    setTrackLength(playing, 48000);
    EXPECT_EQ(gaps(*built), std::vector<std::u16string>{});

    auto const metadata = readAgain(*built);
    EXPECT_EQ(operationalPattern(*metadata), "060E2B34.04010102.0D010201.10000000"_key);
    EXPECT_EQ(essenceContainers(*metadata)->count(), 1u);
    auto const& read = packageOf<SourcePackage>(*metadata);
    auto const& descriptor = dynamic_cast<WAVEAudioEssenceDescriptor&>(*read.descriptor());
    EXPECT_EQ(*descriptor.blockAlign(), 6);
    EXPECT_EQ(*descriptor.avgBps(), 288000u);
    EXPECT_EQ(fileDescriptorForTrack(read, 1), read.descriptor());
    EXPECT_EQ(packageDurationInSeconds(read), (Templates::Rational<std::int64_t>{1, 1}));
    EXPECT_FALSE(packageDurationAsTimeCode(read).isDefined()) << "samples are no frames";
    auto const data = findPreface(*metadata).contentStorage()->essenceContainerData();
    ASSERT_EQ(data.size(), 1u);
    EXPECT_EQ(*data[0]->linkedPackageUID(), *read.packageUID());
}

TEST(Building, GivesAMultipleDescriptorTheLabelThatAllShare) {
    auto const metadata = standardMetadata();
    createPreface(*metadata, prefaceOptions(OperationalPatterns::op1a({})));
    auto& file = createFilePackage(*metadata, {});
    for (int i = 0; i < 2; ++i)
        addEssenceTrack(*metadata, file,
                        createSoundDescriptor<WAVEAudioEssenceDescriptor>(*metadata, {soundWrapping, rate}),
                        {DataDefinitions::sound, rate});
    auto const& several = dynamic_cast<MultipleDescriptor&>(*file.descriptor());
    EXPECT_EQ(several.fileDescriptors().size(), 2u);
    EXPECT_EQ(*several.essenceContainer(), Types::UniversalLabel(soundWrapping));
    EXPECT_EQ(essenceContainers(*metadata)->count(), 1u);
    EXPECT_TRUE(isExternalEssence(*metadata, file)) << "there is no body SID";
    EXPECT_TRUE(hasExternalEssence(*metadata));
}

TEST(Building, RefusesWhatCannotBeAndChangesNothing) {
    auto const metadata = builtOp1a(10);
    auto& material = packageOf<MaterialPackage>(*metadata);
    auto& file = packageOf<SourcePackage>(*metadata);
    auto* const sequence = material.tracks().at(1)->sequence();
    auto const before = metadata->size();
    constexpr std::uint64_t longest = std::numeric_limits<std::int64_t>::max();
    auto const addClip = [&](Sequence* to, std::uint64_t length) {
        addSourceClip(*metadata, to, DataDefinitions::picture, length, 0);
    };
    thrownBy([&] { createPreface(*metadata, prefaceOptions(OperationalPatterns::op1a({}))); });
    thrownBy<Exceptions::InvalidValue>([&] { addClip(nullptr, 1); });
    thrownBy<Exceptions::InvalidValue>([&] { addClip(sequence, longest + 1); });
    thrownBy<Exceptions::InvalidValue>([&] { addClip(sequence, longest); });
    thrownBy<Exceptions::InvalidValue>(
        [&] { createTimelineTrack(*metadata, material, DataDefinitions::data, 1, 0, rate); });
    thrownBy<Exceptions::InvalidValue>([&] { addTimecodeTrack(*metadata, file, Utils::TimeCode(), rate); });
    EXPECT_EQ(metadata->size(), before);
    EXPECT_EQ(*sequence->duration(), 10);
    addClip(sequence, unknownLength);
    EXPECT_EQ(*sequence->duration(), -1);
    thrownBy<Exceptions::InvalidStructure>(
        [&] { setTrackLength(dynamic_cast<TimelineTrack&>(*material.tracks().at(1)), 1); });
    auto& bare = Structural::create<CDCIEssenceDescriptor>(*metadata);
    thrownBy<Exceptions::InvalidStructure>([&] {
        addEssenceTrack(*metadata, file, bare, {DataDefinitions::picture, rate});
    });
}

TEST(Building, NamesOperationalPatterns) {
    using namespace OperationalPatterns;
    EXPECT_EQ(generalized(Items::Edit, OperationalPatterns::Packages::Alternate,
                          {.externalEssence = true, .streamFile = false, .multiTrack = true}),
              "060E2B34.04010101.0D010201.03030F00"_key);
    EXPECT_EQ(opAtom(Atom::SeveralTracksSeveralClips), "060E2B34.04010102.0D010201.10030000"_key);
    EXPECT_TRUE(isSamePattern(op1a({}), "060E2B34.0401010D.0D010201.01010F10"_key));
    EXPECT_FALSE(isSamePattern(op1a({}), opAtom(Atom::OneTrackOneClip)));
}

} // namespace MXF::Zelm::Test
