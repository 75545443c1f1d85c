/// Frameworks of descriptive metadata: built, written, read and followed.
#include "MXF/Zelm/Metadata/DMS1/ClipFramework.h"
#include "MXF/Zelm/Metadata/DMS1/DMS1MetadataKeys.h"
#include "MXF/Zelm/Metadata/DMS1/DMS1MetadataULs.h"
#include "support/SmallHeader.h"

namespace MXF::Zelm::Test {

using namespace Metadata;
using namespace Metadata::Structural;
using namespace Metadata::DMS1::DMS1MetadataULs;
using DMS1::ClipFrameworkClipKind;
using DMS1::createClipFramework;
namespace Keys = DMS1::DMS1MetadataKeys;
using Types::UTF16String;

namespace {

/// Hangs a framework on a new static track of the package.
void attach(SmallHeader& header, MetadataSet const& framework, std::uint32_t trackID) {
    auto& track = create<StaticTrack>(*header.metadata);
    auto& sequence = create<Sequence>(*header.metadata);
    auto& segment = create<DMSegment>(*header.metadata);
    header.package.addTrack(track);
    track.trackID(Types::UInt32(trackID));
    track.sequence(sequence);
    sequence.addStructuralComponent(segment);
    segment.dmFramework(framework);
}

/// The segment of a track that holds descriptive metadata.
DMSegment& segmentOf(Track const& track) {
    return dynamic_cast<DMSegment&>(*track.sequence()->structuralComponents().at(0));
}

std::unique_ptr<PartitionMetadata> reread(Bytes const& bytes) {
    DataIO::Memory::MemoryDataSource source(bytes);
    KLV::Reader reader(source);
    std::uint64_t skipped = 0;
    auto const metadata = standardMetadata();
    auto result = std::make_unique<PartitionMetadata>(std::make_unique<PartitionDictionary>(
        metadata->partitionDictionary().dictionary(),
        std::make_unique<Packs::PrimerPack>(*reader.nextKLV(skipped, 0))));
    while (!source.endOfStream())
        result->load(*reader.nextKLV(skipped, 0));
    return result;
}

} // namespace

TEST(DMS1, CreatesAClipFrameworkOnATrackOfItsOwn) {
    SmallHeader header;
    std::pair<unsigned, const char16_t*> const kinds[] = {
        {0, u"Unknown"}, {1, u"Still"}, {2, u"Graphic"}, {3, u"Moving Pictures"},
        {4, u"Sound"},   {5, u"Other"}, {6, u"Unknown"}};
    for (auto const& [kind, text] : kinds)
        EXPECT_EQ(DMS1::clipKindToWString(static_cast<ClipFrameworkClipKind>(kind)), text);

    MetadataSet* const clip =
        createClipFramework(*header.metadata, &header.track, "A-12", ClipFrameworkClipKind::MovingPictures);
    EXPECT_EQ(clip->key(), Keys::clipFramework());
    EXPECT_EQ(clip->value<Types::ISO7String>(clipNumber())->value(), "A-12");
    EXPECT_EQ(clip->value<UTF16String>(clipKind())->value(), u"Moving Pictures");
    createClipFramework(*header.metadata, &header.track, "", ClipFrameworkClipKind::Sound);
    auto const tracks = header.package.tracks();
    ASSERT_EQ(tracks.size(), 3u);
    EXPECT_EQ(tracks[1]->trackID()->value(), 1u) << "2 is the described track's";
    EXPECT_EQ(tracks[2]->trackID()->value(), 3u);
    DMSegment const& segment = segmentOf(*tracks[1]);
    EXPECT_EQ(segment.dmFramework(), clip);
    EXPECT_EQ(segment.trackIDs()->toString(), u"[2]");
    EXPECT_EQ(*segment.dataDefinition(), *tracks[1]->sequence()->dataDefinition());
    EXPECT_EQ(header.preface.dmSchemes()->count(), 1u);

    std::size_t const size = header.metadata->size();
    auto& loose = create<TimelineTrack>(*header.metadata);
    auto const refuse = [&](TimelineTrack* track, std::string const& number) {
        createClipFramework(*header.metadata, track, number, ClipFrameworkClipKind::Still);
    };
    EXPECT_THROW(refuse(nullptr, ""), Exceptions::InvalidValue);
    EXPECT_THROW(refuse(&loose, ""), Exceptions::InvalidStructure) << "no ID";
    loose.trackID(Types::UInt32(std::uint32_t{7}));
    EXPECT_THROW(refuse(&loose, ""), Exceptions::InvalidStructure) << "no package";
    EXPECT_THROW(refuse(&header.track, "\xE4"), Exceptions::InvalidValue);
    EXPECT_EQ(header.metadata->size(), size + 1) << "nothing is left behind";
    EXPECT_EQ(header.package.tracks().size(), 3u);
}

TEST(DMS1, FrameworksAreReadAsTheyWereWritten) {
    SmallHeader header;
    PartitionMetadata& metadata = *header.metadata;
    MetadataSet& production = metadata.createMetadataSet(Keys::productionFramework());
    MetadataSet& titles = metadata.createMetadataSet(Keys::titles());
    production.value(frameworkTitle(), UTF16String(u"The programme"));
    production.addReference(titlesSets(), titles);
    titles.value(mainTitle(), UTF16String(u"Main"));
    titles.value(workingTitle(), UTF16String(u"Working"));
    MetadataSet& scene = metadata.createMetadataSet(Keys::sceneFramework());
    MetadataSet& shot = metadata.createMetadataSet(Keys::shot());
    MetadataSet& words = metadata.createMetadataSet(Keys::cueWords());
    MetadataSet& role = metadata.createMetadataSet(Keys::participant());
    MetadataSet& person = metadata.createMetadataSet(Keys::person());
    scene.value(sceneNumber(), Types::ISO7String("7b"));
    scene.addReference(sceneShotSets(), shot);
    scene.addReference(participantSets(), role);
    role.value(roleOrIdentityName(), UTF16String(u"Hamlet"));
    shot.value(shotStartPosition(), Types::Position(std::int64_t{100}));
    shot.value(shotDuration(), Types::Length(std::int64_t{25}));
    shot.add(shotTrackIDs(), *header.track.trackID());
    shot.reference(shotCueWordsSet(), words);
    words.value(inCueWords(), UTF16String(u"To be"));
    person.value(familyName(), UTF16String(u"Hathaway"));
    attach(header, production, 10);
    attach(header, scene, 11);
    createClipFramework(metadata, &header.track, "A-12", ClipFrameworkClipKind::MovingPictures);

    Bytes const bytes = written(metadata, true, SerializationOrder::ForwardReferences);
    auto const again = reread(bytes);
    EXPECT_EQ(again->size(), metadata.size());
    EXPECT_EQ(again->darkSize(), 0u);
    EXPECT_TRUE(sameBytes(written(*again, true, SerializationOrder::AsLoaded), bytes));
    auto const* const package = dynamic_cast<MaterialPackage*>(again->packages().at(0));
    auto const frameworkOf = [&](std::size_t track) {
        return segmentOf(*package->tracks().at(track)).dmFramework();
    };
    MetadataSet const* const readTitles = frameworkOf(1)->referencedSets(titlesSets()).at(0);
    EXPECT_EQ(readTitles->value<UTF16String>(mainTitle())->value(), u"Main");
    MetadataSet const* const readShot = frameworkOf(2)->referencedSets(sceneShotSets()).at(0);
    EXPECT_EQ(readShot->value<Types::Length>(shotDuration())->value(), 25);
    EXPECT_EQ(readShot->referencedSet(shotCueWordsSet())->value<UTF16String>(inCueWords())->value(),
              u"To be");
    EXPECT_EQ(frameworkOf(3)->value<UTF16String>(clipKind())->value(), u"Moving Pictures");
    EXPECT_EQ(segmentOf(*package->tracks().at(3)).trackIDs()->toString(), u"[2]");
    for (auto const& [key, set] : *again)
        EXPECT_EQ(set->invalidSize(), 0u);
    EXPECT_THROW(scene.addReference(sceneShotSets(), header.track), Exceptions::InvalidElement);
}

} // namespace MXF::Zelm::Test
