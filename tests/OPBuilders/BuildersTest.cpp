/// Files of the operational patterns, written and read back: labels, material packages, durations, essence.
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "MXF/Zelm/OPBuilders/OPAtomBuilder.h"
#include "support/FakeAnalyzer.h"
#include "support/StandardMetadata.h"
#include "support/WrittenFile.h"

#include <set>

namespace MXF::Zelm::Test {

using namespace Metadata::Structural;
using namespace OPBuilders;
using namespace KLV::Literals;
using Interleaving = MXFIO::CreatorSettings::Interleaving;

namespace {

constexpr Templates::Rational<int> rate{25, 1};

FakeEssence pictureEssence(std::size_t count) {
    return {.sizes = {300, 100, 200}, .count = count, .label = "060E2B34.04010102.0D010301.02046001"_key};
}

FakeEssence soundEssence(std::size_t count) {
    return {.sizes = {96},
            .count = count,
            .boundedSize = 96,
            .itemType = 0x16,
            .elementType = 0x01,
            .tag = 0x55,
            .label = "060E2B34.04010101.0D010301.02060100"_key};
}

GenericContainer::EssenceAnalyzerPtr picture(std::size_t count) {
    return std::make_shared<FakePicture>(pictureEssence(count));
}

GenericContainer::EssenceAnalyzerPtr sound(std::size_t count) {
    return std::make_shared<FakeSound>(soundEssence(count));
}

BuilderOptions options(MXFIO::CreatorSettings layout = {}) {
    return {.product = {u"Company", u"Product", u"1.0", Types::UUID::generate()},
            .materialName = u"Clip",
            .startTimecode = Utils::TimeCode(Utils::TimeBase(25), {.hours = 10}),
            .layout = std::move(layout)};
}

auto dictionary() { return standardMetadata()->partitionDictionary().dictionary(); }

OpenFile fileOf(GenericOPBuilder& builder) {
    SeekableSink sink;
    builder.creator(sink)->run();
    return OpenFile(sink.bytes()); // in place: the reader refers to the source
}

using Add = std::function<void(GenericOPBuilder&)>;

struct Pattern {
    const char* name;
    Add build;
    KLV::Key label;
    std::string tracks; ///< start and length of each clip of the essence tracks of the material packages
    MXFIO::CreatorSettings layout = {};
};

SourcePackage const* addPicture(GenericOPBuilder& builder, std::size_t count) {
    return &builder.addFrameWrapped({.packageRate = rate, .analyzers = {picture(count)}});
}

SourcePackage const* addProgramme(GenericOPBuilder& builder, std::size_t count) {
    return &builder.addFrameWrapped(
        {.packageRate = rate, .analyzers = {picture(count), sound(count), sound(count)}, .kagSize = 512});
}

std::vector<Pattern> patterns() {
    MXFIO::CreatorSettings const inTurn{.interleaving = Interleaving::ByTime, .partitions = {.packages = 4}};
    return {
        {"1a, one track", [](auto& builder) { addPicture(builder, 10); },
         "060E2B34.04010101.0D010201.01010100"_key, "0+10 | "},
        {"1a", [](auto& builder) { addProgramme(builder, 10); }, "060E2B34.04010101.0D010201.01010900"_key,
         "0+10 | 0+10 | 0+10 | "},
        {"1b",
         [](auto& builder) {
             addPicture(builder, 10);
             builder.addFrameWrapped({.packageRate = rate, .analyzers = {sound(10), sound(10)}});
         },
         "060E2B34.04010101.0D010201.01020D00"_key, "0+10 | 0+10 | 0+10 | "},
        {"1b in turn",
         [](auto& builder) {
             addPicture(builder, 10);
             builder.addFrameWrapped({.packageRate = rate, .analyzers = {sound(10)}});
         },
         "060E2B34.04010101.0D010201.01020100"_key, "0+10 | 0+10 | ", inTurn},
        {"1c",
         [](auto& builder) {
             auto const* const first = addProgramme(builder, 10);
             auto const* const second = addProgramme(builder, 10);
             builder.addItem({{first}});
             builder.addMaterialPackage({.name = u"Other"});
             builder.addItem({{second}});
         },
         "060E2B34.04010101.0D010201.01030D00"_key, "0+10 | 0+10 | 0+10 | 0+10 | 0+10 | 0+10 | "},
        {"2a",
         [](auto& builder) {
             auto const* const first = addPicture(builder, 10);
             auto const* const second = addPicture(builder, 7);
             builder.addItem({{first}});
             builder.addItem({{second}});
         },
         "060E2B34.04010101.0D010201.02010100"_key, "0+10 0+7 | "},
        {"2b",
         [](auto& builder) {
             auto const* const first = addPicture(builder, 10);
             auto const* const second = addPicture(builder, 10);
             builder.addItem({{first}, {second}});
             builder.addItem({{second}, {first}});
         },
         "060E2B34.04010101.0D010201.02020500"_key, "0+10 0+10 | 0+10 0+10 | ", inTurn},
        {"3a",
         [](auto& builder) {
             auto const* const package = addProgramme(builder, 10);
             builder.addItem({{package, 6, 2}});
             builder.addItem({{package, 3}});
             builder.addItem({{package, 8, 5}}); // more than there is
         },
         "060E2B34.04010101.0D010201.03010900"_key, "6+2 3+7 8+2 | 6+2 3+7 8+2 | 6+2 3+7 8+2 | "},
        {"1b, one external",
         [](auto& builder) {
             addPicture(builder, 10);
             auto& external = builder.addFilePackage({.isExternal = true});
             auto& descriptor = create<GenericSoundEssenceDescriptor>(*builder.metadata());
             descriptor.essenceContainer(soundEssence(1).label);
             descriptor.sampleRate(Types::Rational(rate));
             addEssenceTrack(*builder.metadata(), external, descriptor,
                             {.dataDefinition = DataDefinitions::sound, .editRate = rate, .length = 10});
         },
         "060E2B34.04010101.0D010201.01020700"_key, "0+10 | 0+10 | "},
    };
}

std::vector<MaterialPackage*> materialPackages(Metadata::PartitionMetadata const& metadata) {
    std::vector<MaterialPackage*> found;
    for (auto* const package : metadata.packages())
        if (auto* const material = dynamic_cast<MaterialPackage*>(package))
            found.push_back(material);
    return found;
}

std::string clipsOf(Metadata::PartitionMetadata const& metadata) {
    std::string text;
    for (auto const* const package : materialPackages(metadata))
        for (auto const* const track : package->tracks()) {
            if (!isEssenceDataDefinition(*track->sequence()->dataDefinition()))
                continue;
            std::int64_t sum = 0;
            for (auto const* const component : track->sequence()->structuralComponents()) {
                auto const& clip = dynamic_cast<SourceClip const&>(*component);
                text += std::to_string(clip.startPosition()->value()) + "+" +
                        std::to_string(clip.duration()->value()) + " ";
                sum += clip.duration()->value();
            }
            EXPECT_EQ(track->sequence()->duration()->value(), sum);
            text += "| ";
        }
    return text;
}

/// Bytes of all edit units of the picture and sound that the analyzers gave.
void expectEssence(OpenFile& file, MXFIO::EssenceContainer const& container) {
    MXFIO::EssenceReader essence(file.reader, container);
    MXFIO::EssenceUnit unit;
    std::size_t count = 0;
    for (; essence.next(unit); ++count)
        for (auto const& element : unit.package.elements) {
            bool const isPicture = element.elementKey().itemType() == GenericContainer::ElementKey::Picture;
            EXPECT_TRUE(sameBytes(joined(element.data),
                                  fakeUnit(isPicture ? pictureEssence(1) : soundEssence(1), count)));
        }
    EXPECT_EQ(static_cast<std::int64_t>(count), container.tracks.at(0).duration);
    MXFIO::IndexTableGatherer gatherer(file.reader);
    auto const table = gatherer.table(container.bodySID);
    ASSERT_TRUE(table);
    EXPECT_EQ(table->firstGap(0), static_cast<std::int64_t>(count));
}

} // namespace

TEST(GenericOPBuilder, patternsAreReadBack) {
    for (auto const& pattern : patterns()) {
        SCOPED_TRACE(pattern.name);
        GenericOPBuilder builder(dictionary(), options(pattern.layout));
        pattern.build(builder);
        auto file = fileOf(builder);
        auto* const header = file.reader.headerPartition();
        EXPECT_TRUE(header->partitionPack().isComplete());
        EXPECT_EQ(header->partitionPack().operationalPattern(), pattern.label);
        auto const& metadata = *header->metadata();
        EXPECT_EQ(operationalPattern(metadata), pattern.label);
        EXPECT_EQ(clipsOf(metadata), pattern.tracks);
        std::set<std::uint32_t> ids;
        for (auto const& container : file.containers()) {
            expectEssence(file, container);
            for (auto const& track : container.tracks)
                EXPECT_TRUE(ids.insert(track.trackID).second) << track.trackID; // none twice in a file
        }
        Templates::vector<Metadata::Element*> open;
        metadata.openElements(open);
        EXPECT_TRUE(open.empty());
        auto const& material = *materialPackages(metadata).front();
        EXPECT_EQ(startTimecode(material).toString(), u"10:00:00:00");
        EXPECT_EQ(*material.tracks().front()->sequence()->duration(),
                  *material.tracks().back()->sequence()->duration());
    }
}

TEST(GenericOPBuilder, refusesWhatDoesNotFit) {
    auto const message = [](Add const& build) {
        return thrownBy([&] {
            GenericOPBuilder builder(dictionary(), options());
            build(builder);
            builder.pullCreator();
        });
    };
    EXPECT_EQ(message([](auto&) {}), "A file has at least one file package");
    EXPECT_EQ(message([](auto& builder) { builder.addFilePackage(); }),
              "A file package has no essence, which is to be in this file");
    EXPECT_EQ(message([](auto& builder) {
                  builder.addItem({{addPicture(builder, 1)}});
                  builder.addItem({{addProgramme(builder, 1)}});
              }),
              "Track 2 of an item does not go on with what the item before has");
    EXPECT_EQ(message([](auto& builder) {
                  builder.addItem({{addProgramme(builder, 1)}});
                  builder.addItem({{addPicture(builder, 1)}});
              }),
              "An item has 1 tracks, those before 3");
    EXPECT_EQ(message([](auto& builder) {
                  SourcePackage const* const package = addPicture(builder, 1);
                  builder.addItem({{package, -1}});
              }),
              "A part cannot have a negative start or length");
    EXPECT_EQ(message([](auto& builder) { builder.addItem({{nullptr}}); }),
              "The file package is none that the builder made");
}

TEST(OPAtomBuilder, fileOfOneTrack) {
    auto const other = Types::UMID32::generate(Types::UMIDMaterialType::NotIdentified);
    OPAtomBuilder builder(
        dictionary(), options({.index = MXFIO::CreatorSettings::Index::Body, .partitions = {.packages = 2}}));
    builder.addFrameWrapped({.packageRate = rate, .analyzers = {picture(10)}});
    builder.addForeignTrack({other, 2, DataDefinitions::sound, {48000, 1}});
    auto file = fileOf(builder);
    auto const partitions = file.partitions();
    ASSERT_EQ(partitions.size(), 3u);
    auto const& header = partitions[0]->partitionPack();
    EXPECT_EQ(header.operationalPattern(), "060E2B34.04010102.0D010201.10020000"_key);
    EXPECT_TRUE(header.isComplete() && !header.isOpen());
    std::uint64_t const reserve = OPAtomBuilder::smallestReserve;
    EXPECT_GE(header.headerByteCount(), reserve);
    EXPECT_EQ(partitions[2]->partitionPack().indexSID(), 2u);
    EXPECT_EQ(clipsOf(*partitions[0]->metadata()), "0+10 | 0+19200 | ");
    expectEssence(file, file.containers().at(0));

    OPAtomBuilder clip(dictionary(), options());
    clip.addClipWrapped({.analyzer = sound(10)});
    auto clipFile = fileOf(clip);
    auto* const body = clipFile.partitions().at(1);
    EXPECT_EQ(body->nextBodyKLV(0)->value().remaining(), 960u) << "set right at the end";
    EXPECT_EQ(clipsOf(*clipFile.reader.headerPartition()->metadata()), "0+10 | ");
    MXFIO::IndexTableGatherer gatherer(clipFile.reader);
    EXPECT_EQ(gatherer.table(1)->firstGap(0), 10);

    OPAtomBuilder two(dictionary(), options());
    EXPECT_EQ(thrownBy([&] {
                  two.addFrameWrapped({.packageRate = rate, .analyzers = {picture(1), sound(1)}});
              }),
              "An OP-Atom file has one essence track, this has 2");
    EXPECT_THROW(two.addFilePackage(), Exceptions::InvalidStructure);
}

} // namespace MXF::Zelm::Test
