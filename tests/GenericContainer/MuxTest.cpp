/// Content packages as the multiplexer makes them: order, keys, tracks, fill, refusals; and their index.
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "support/StandardMetadata.h"
#include "support/TestMux.h"

namespace MXF::Zelm::Test {

using namespace GenericContainer;
using GenericContainer::Multiplexer::Mux;

namespace {

/// The failure of `action`: condition and message, and the file that it names.
template <class Action>
void expectRefusal(Action action, std::string const& condition, std::string const& message,
                   std::string const& file) {
    try {
        action();
        ADD_FAILURE() << "nothing was thrown, expected: " << message;
    } catch (Exceptions::BaseException const& failure) {
        EXPECT_EQ(failure.message(), message);
        EXPECT_EQ(failure.condition(), condition);
        EXPECT_EQ(failure.sourceFile(), "src/MXF/Zelm/GenericContainer/Multiplexer/" + file);
        EXPECT_GT(failure.sourceLine(), 0u);
    }
}

} // namespace

TEST(Mux, PutsPackagesTogetherInTheOrderOf379M) {
    TestMux test;
    test.add<FakeCompound>({.sizes = {4}, .itemType = 0x18, .elementType = 0x01, .tag = 0xCC})
        .add<FakeSound>(sound({6}))
        .add<FakeSound>(sound({7}))
        .add<FakeData>({.sizes = {0}, .itemType = 0x17, .elementType = 0x02})
        .add<FakePicture>({.sizes = {10, 11}})
        .system();
    auto const made = packagesOf(test);
    ASSERT_EQ(made.size(), 3u);
    auto const system = made[1].size() - (11 + 6 + 7 + 0 + 4 + 5 * 20);
    EXPECT_EQ(system, 97u);
    auto const unit = [](FakeEssence const& essence) { return fakeUnit(essence, 1); };
    Bytes const essence(made[1].begin() + 97, made[1].end());
    EXPECT_TRUE(sameBytes(essence, klv(elementKey(0x15010500), unit({.sizes = {10, 11}})) +
                                       klv(elementKey(0x16020300), unit(sound({6}))) +
                                       klv(elementKey(0x16020301), unit(sound({7}))) +
                                       klv(elementKey(0x17010200), {}) +
                                       klv(elementKey(0x18010100), hex("01 CC CC CC"))));
    SystemMetadataPack const pack = [&] {
        DataIO::SliceReader reader(DataIO::Slice::copyOf(made[1].data() + 20, 57));
        return SystemMetadataPack(reader);
    }();
    EXPECT_EQ(pack.userTimecode().frameCount(), 101);
    EXPECT_TRUE(pack.pictureItem() && pack.soundItem() && pack.dataItem());
}

TEST(Mux, MakesTracksAndTimecode) {
    auto const metadata = standardMetadata();
    Metadata::Structural::createPreface(*metadata, {});
    auto& package = Metadata::Structural::createFilePackage(*metadata, {.bodySID = 1});
    Utils::TimeCode const ten(Utils::TimeBase(25), 900000);
    TestMux test(&package);
    FakeEssence picture = {.count = 6, .label = "060E2B34.04010102.0D010301.02046001"_key};
    picture.timecodes = {{}, ten + 1, ten + 2, ten + 50, {}, ten + 52};
    test.add<FakePicture>(picture, atStart, true).add<FakeSound>(sound({5}));
    auto const source = test.mux.commit();
    EXPECT_EQ(source->sourcePackage(), &package);
    EXPECT_EQ(source->essenceContainerUL(),
              Types::UniversalLabel(Metadata::Structural::EssenceContainerLabels::multipleWrappings));
    packagesOf(*source);
    source->finalize();

    using namespace Metadata::Structural;
    std::string found;
    for (auto const* const track : package.tracks())
        found += std::to_string(track->trackID()->value()) + ":" +
                 ByteCoders::toHexadecimal(track->trackNumber()->value()) + ":" +
                 std::to_string(durationOf(*track).value()) + " ";
    EXPECT_EQ(found, "256:15010500:6 512:16010300:6 513:0:6 ");
    std::string components;
    for (auto const* const component : getTimecodeTrack(package)->sequence()->structuralComponents())
        components +=
            std::to_string(dynamic_cast<TimecodeComponent const&>(*component).startTimecode()->value()) +
            "+" + std::to_string(component->duration()->value()) + " ";
    EXPECT_EQ(components, "900000+3 900050+3 ");
}

TEST(Mux, KnowsTheStartTimecodeBeforeTheFirstPackage) {
    std::shared_ptr<Metadata::PartitionMetadata> const metadata = standardMetadata();
    Metadata::Structural::createPreface(*metadata, {});
    TestMux test(metadata);
    test.add<FakePicture>({}).system({Utils::TimeBase(25), 900000});
    auto const source = test.mux.commit();
    auto const& package = *source->sourcePackage();
    EXPECT_EQ(Metadata::Structural::startTimecode(package).frameCount(), 900000);
    packagesOf(*source);
    source->finalize();
    std::string found;
    for (auto const* const track : package.tracks())
        found += std::to_string(track->trackID()->value()) + ":" +
                 std::to_string(Metadata::Structural::durationOf(*track).value()) + " ";
    EXPECT_EQ(found, "1:3 256:3 ");
}

TEST(Mux, AlignsElements) {
    TestMux test;
    test.mux.kagSize(6);
    test.add<FakePicture>({.sizes = {492, 480, 472, 473}, .count = 4, .kag = 512});
    EXPECT_EQ(test.mux.kagSize(), 1536u) << "the least common multiple";
    test.mux.kagSize(512);
    auto made = packagesOf(test);
    EXPECT_EQ(layoutOf(made[0]), "512 [1024]");

    TestMux small;
    small.mux.kagSize(512);
    made = packagesOf(small.add<FakePicture>({.sizes = {492, 480, 472, 473}, .count = 4}));
    EXPECT_EQ(layoutOf(made[0]), "512");
    EXPECT_EQ(layoutOf(made[1]), "500 [524]") << "12 bytes are too few for a fill item";
    EXPECT_EQ(layoutOf(made[2]), "492 [20]");
    EXPECT_EQ(layoutOf(made[3]), "493 [531]");

    TestMux unaligned;
    unaligned.mux.kagSize(512);
    unaligned.mux.kagSize(0);
    EXPECT_EQ(unaligned.mux.kagSize(), 0u);
    EXPECT_EQ(layoutOf(packagesOf(unaligned.add<FakePicture>({.sizes = {70}}))[0]), "90");
}

TEST(Mux, FillsElementsOfConstantSize) {
    TestMux test;
    test.mux.kagSize(512);
    test.system()
        .add<FakePicture>({.sizes = {100, 492, 472}, .boundedSize = 492})
        .add<FakeSound>(sound({1}, 30));
    auto const source = test.mux.commit();
    EXPECT_TRUE(source->isCBE());
    auto const made = packagesOf(*source);
    EXPECT_EQ(layoutOf(made[0]), "77 20 [415] 120 [392] 21 [491]");
    EXPECT_EQ(layoutOf(made[1]), "77 20 [415] 512 21 [491]");
    EXPECT_EQ(layoutOf(made[2]), "77 20 [415] 492 [20] 21 [491]");

    TestMux large;
    large.add<FakePicture>({.sizes = {101}, .boundedSize = 100});
    expectRefusal([&] { packagesOf(large); }, "editUnitCurrentSize <= analyzerBytesPerEntry",
                  "One analyzer (CBE) has produced an edit unit larger than expected", "Worker_impl");
    TestMux tight;
    tight.add<FakePicture>({.sizes = {81}, .boundedSize = 100});
    expectRefusal([&] { packagesOf(tight); }, "editUnitFillItemSize >= klLength_",
                  "Not enough size to create filler in essence.", "Worker_impl");
}

TEST(Mux, PadsItemsAndPackages) {
    auto const padded = [](auto pad) {
        TestMux test;
        pad(test.mux);
        test.system()
            .add<FakePicture>({.sizes = {100}})
            .add<FakeSound>(sound({10}))
            .add<FakeSound>(sound({10}));
        auto const source = test.mux.commit();
        auto const isCBE = source->isCBE();
        return layoutOf(packagesOf(*source)[0]) + (isCBE ? " constant" : "");
    };
    EXPECT_EQ(padded([](Mux& mux) { mux.paddToItem(200, 0, 140, 100, 0); }),
              "77 20 [103] 120 [20] 30 30 [40] constant");
    EXPECT_EQ(padded([](Mux& mux) { mux.paddToEditUnit(500); }), "77 20 120 30 30 [223] constant");
    EXPECT_EQ(padded([](Mux& mux) { mux.paddToEditUnit(277); }), "77 20 120 30 30 constant");
    EXPECT_EQ(padded([](Mux& mux) {
                  mux.paddToEditUnit(500);
                  mux.paddToElement();
                  EXPECT_EQ(mux.paddingType(), Mux::PadToElement);
              }),
              "77 20 120 30 30");
    auto const* const full =
        "Trying to store more data in the Generic Container then the edit unit can hold.";
    auto const* const condition = "itemSize > sliceOffset_ - lastItemSliceOffset_";
    for (int const picture : {119, 120, -1})
        expectRefusal([&] { padded([=](Mux& mux) { mux.paddToItem(200, 0, picture, 100, 0); }); }, condition,
                      full, "Worker_impl");
    expectRefusal([&] { padded([](Mux& mux) { mux.paddToEditUnit(276); }); }, "editUnitSize >= sliceOffset_",
                  full, "Worker_impl");
    expectRefusal([&] { padded([](Mux& mux) { mux.paddToItem(200, 0, 139, 100, 0); }); },
                  "editUnitFillItemSize >= klLength_", "Not enough size to create filler in essence.",
                  "Worker_impl");
    expectRefusal(
        [&] { padded([](Mux& mux) { mux.paddToItem(96, 0, 140, 100, 0); }); },
        "static_cast <Platform::Int32> (entry.entryByteCount) <= systemItemMaximumSize",
        "Trying to force into the GC a system Item maximum value smaller then the system Item size. "
        "Please increate the system item maximum size",
        "Mux");
}

TEST(Mux, RefusesTheAnalyzerThatIsOneTooMany) {
    auto const fill = []<class Analyzer>(FakeEssence const& essence, Analyzer*) {
        auto test = std::make_unique<TestMux>();
        for (int i = 0; i < 128; ++i)
            test->add<Analyzer>(essence);
        expectRefusal(
            [&] { test->add<Analyzer>(essence); },
            std::is_same_v<Analyzer, FakeSound>     ? "sound_.size () <= MAXIMUM_ITEM_COUNT"
            : std::is_same_v<Analyzer, FakePicture> ? "picture_.size () <= MAXIMUM_ITEM_COUNT"
            : std::is_same_v<Analyzer, FakeData>    ? "data_.size () <= MAXIMUM_ITEM_COUNT"
                                                    : "compound_.size () <= MAXIMUM_ITEM_COUNT",
            std::is_same_v<Analyzer, FakeSound>     ? "Trying to add more than SoundAnalyzers than allowed"
            : std::is_same_v<Analyzer, FakePicture> ? "Trying to add more PictureAnalyzers than allowed"
            : std::is_same_v<Analyzer, FakeData>    ? "Trying to add more than DataAnalyzers than allowed"
                                                    : "Trying to add more CompoundAnalyzers than allowed",
            "Mux");
        return test;
    };
    fill({}, static_cast<FakePicture*>(nullptr));
    fill({}, static_cast<FakeData*>(nullptr));
    fill({}, static_cast<FakeCompound*>(nullptr));
    auto const sounds = fill(sound({2}), static_cast<FakeSound*>(nullptr));
    auto const made = packagesOf(*sounds);
    EXPECT_EQ(made[0].size(), 128u * 22u);
    Bytes const last(made[0].end() - 22, made[0].end());
    EXPECT_TRUE(sameBytes(last, klv(elementKey(0x1680037F), hex("00 55"))));
    TestMux twoSystems;
    twoSystems.system();
    expectRefusal([&] { twoSystems.system(); }, "system_.get () == 0",
                  "Trying to add more than one SystemAnalyzer", "Mux");
}

TEST(Mux, RefusesEssenceThatDoesNotFit) {
    FakeEssence const reordered = {.isReordered = true};
    TestMux two;
    two.add<FakePicture>(reordered).add<FakePicture>(reordered);
    expectRefusal(
        [&] { two.mux.commit(); }, "temporalReordoring_ == false",
        "Trying to set two sources with temporal reordoring to the same generic container. MXF only "
        "allows for one source with temporal reordoring.",
        "Mux");
    TestMux otherRate(nullptr, {50, 1});
    otherRate.add<FakePicture>(reordered);
    expectRefusal([&] { otherRate.mux.commit(); }, "preEntry.analyzer -> editRate () == rate_",
                  "Trying to set an essence analyzer with temporal reordoring and with editRate different "
                  "from the content package.",
                  "Mux");
    TestMux late;
    late.add<FakePicture>(reordered, {1, 25});
    expectRefusal([&] { late.mux.commit(); }, "preEntry.temporalOffset.numerator () == 0",
                  "A source with temporal reordoring must start at offset zero to the essence container.",
                  "Mux");
    TestMux invalid;
    invalid.add<FakePicture>({.isValid = false});
    expectRefusal([&] { invalid.mux.commit(); }, "isValid", "The essence format is invalid", "Mux");
}

TEST(Mux, ReadsAsManyEditUnitsAsAPackageLasts) {
    TestMux test;
    FakeEssence twice = sound({3});
    twice.count = 5;
    twice.rate = {50, 1};
    test.add<FakePicture>({.sizes = {10}, .count = 4}).add<FakeSound>(twice, {1, 25});
    auto const made = packagesOf(test);
    ASSERT_EQ(made.size(), 4u);
    EXPECT_EQ(layoutOf(made[0]), "30") << "the sound begins later";
    EXPECT_TRUE(sameBytes(Bytes(made[1].begin() + 50, made[1].end()), hex("00 55 55 01 55 55")));
    EXPECT_EQ(layoutOf(made[3]), "30 23") << "and ends with half a package";
    TestMux large;
    auto const unit = packagesOf(large.add<FakePicture>({.sizes = {0x1000000}, .count = 1}))[0];
    EXPECT_TRUE(sameBytes({unit.begin() + 16, unit.begin() + 27}, hex("88 00000000 01000000 00 AA")));
    TestMux none;
    auto const source = none.mux.commit();
    EXPECT_THROW(none.mux.kagSize(2), Exceptions::InvalidChange);
    EXPECT_TRUE(source->done());
    EXPECT_TRUE(packagesOf(*source).empty());
    EXPECT_TRUE(source->takeIndexSegments().empty());
}

} // namespace MXF::Zelm::Test
