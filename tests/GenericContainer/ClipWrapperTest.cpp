/// Essence that is wrapped as a whole.
#include "MXF/Zelm/GenericContainer/ClipWrapper/Wrap.h"
#include "MXF/Zelm/MXFIO/FutureUpdater.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "support/StandardMetadata.h"
#include "support/TestMux.h"

namespace MXF::Zelm::Test {

using namespace GenericContainer;
using GenericContainer::ClipWrapper::Wrap;

namespace {

/// A clip as it is on the sink: its bytes, and the bytes that are patched in the end.
struct Written {
    explicit Written(Source& source) {
        DataIO::Chain part;
        bool mayStart = false;
        Source::FutureUpdaterPtr updater;
        Templates::Rational<std::int64_t> position;
        for (; source.next(part, mayStart, updater, position); ++parts) {
            EXPECT_EQ(mayStart, parts == 0);
            EXPECT_EQ(updater != nullptr, parts == 0);
            if (parts == 0) {
                length = updater;
                length->written(1000);
            }
            lastPosition = position;
            auto const more = joined(part);
            bytes.insert(bytes.end(), more.begin(), more.end());
        }
        source.finalize();
        segments = source.takeIndexSegments();
        for (auto const& update : length->updates())
            std::copy(update.bytes.begin(), update.bytes.end(),
                      bytes.begin() + static_cast<std::ptrdiff_t>(update.offset - 1000));
    }

    std::size_t parts = 0;
    Bytes bytes;
    Templates::Rational<std::int64_t> lastPosition;
    Source::FutureUpdaterPtr length;
    Templates::vector<Source::SegmentPtr> segments;
};

class KnownSize : public FakeSound {
public:
    KnownSize(FakeEssence const& essence, std::uint64_t bytes) : FakeSound(essence), bytes_(bytes) {}
    std::optional<std::uint64_t> byteCount() const override { return bytes_; }

private:
    std::uint64_t bytes_;
};

FakeEssence samples(std::size_t count) {
    auto essence = sound({4800}, 6); // runs of 800 samples
    essence.count = count;
    essence.rate = {48000, 1};
    essence.elementType = 0x02;
    essence.label = "060E2B34.04010101.0D010301.02060200"_key;
    return essence;
}

} // namespace

TEST(ClipWrapper, CountsEditUnitsOfOneSize) {
    auto const metadata = standardMetadata();
    Metadata::Structural::createPreface(*metadata, {});
    auto& package = Metadata::Structural::createFilePackage(*metadata, {.bodySID = 1});
    auto const essence = samples(500);
    Wrap wrap(&package, {}, std::make_shared<FakeSound>(essence));
    wrap.kagSize(512);
    auto const source = wrap.commit();
    EXPECT_EQ(source->essenceContainerUL(), Types::UniversalLabel(essence.label));
    Written const clip(*source);
    Bytes value;
    for (std::size_t i = 0; i < essence.count; ++i)
        for (auto const byte : fakeUnit(essence, i))
            value.push_back(byte);
    auto const element = klv(elementKey(0x16010200), value, 9);
    EXPECT_TRUE(sameBytes(clip.bytes, element + fill(512 - element.size() % 512)));
    EXPECT_TRUE(clip.length->isRequired());
    EXPECT_EQ(clip.parts, 3u) << "of 1 MiB";
    EXPECT_EQ(clip.lastPosition, (Templates::Rational<std::int64_t>{2 * 219 * 800, 48000}));
    ASSERT_EQ(clip.segments.size(), 1u);
    EXPECT_EQ(*clip.segments[0]->editUnitByteCount(), 6u);
    EXPECT_EQ(clip.segments[0]->indexDuration().value(), 400'000);
    EXPECT_EQ(clip.segments[0]->indexEditRate().value(), (Templates::Rational<int>{48000, 1}));
    auto const* const track = dynamic_cast<Metadata::Structural::TimelineTrack*>(package.tracks().at(0));
    EXPECT_EQ(Metadata::Structural::durationOf(*track).value(), 400'000);
    EXPECT_EQ(*track->trackNumber(), 0x16010200u);
}

TEST(ClipWrapper, IndexesEditUnitsThatVary) {
    FakeEssence const essence = {
        .sizes = {10, 300, 7}, .isReordered = true, .index = {{0, 0, 0xC0}, {1, -1, 0x22}, {-1, -2, 0x33}}};
    Wrap wrap(nullptr, {}, std::make_shared<FakePicture>(essence));
    wrap.berLength(8);
    EXPECT_THROW(wrap.berLength(4), Exceptions::InvalidValue);
    Written const clip(*wrap.commit());
    EXPECT_TRUE(sameBytes({clip.bytes.begin(), clip.bytes.begin() + 24},
                          hex("060E2B34 01020101 0D010301 15010500 87 00000000 00013D")));
    ASSERT_EQ(clip.segments.at(0)->indexEntryCount(), 3u);
    std::string rows;
    for (std::size_t i = 0; i < 3; ++i) {
        auto const entry = clip.segments[0]->indexEntry(i);
        rows += std::to_string(entry.streamOffset()) + "/" + std::to_string(entry.temporalOffset()) + " ";
    }
    EXPECT_EQ(rows, "24/0 34/1 334/-1 ");
    EXPECT_EQ(clip.segments[0]->deltaEntry(0).posTableIndex(), -1);
    EXPECT_THROW(wrap.commit(), Exceptions::InvalidChange);
}

TEST(ClipWrapper, WritesAKnownLengthAtOnce) {
    for (std::uint64_t const claimed : {9600u, 9601u}) {
        auto const source = Wrap(nullptr, {}, std::make_shared<KnownSize>(samples(2), claimed)).commit();
        Written const clip(*source);
        EXPECT_FALSE(clip.length->isRequired());
        EXPECT_EQ(clip.length->updates().empty(), claimed == 9600) << "a wrong one is set right";
        EXPECT_EQ(ByteCoders::decodeInteger<std::uint64_t>(clip.bytes.data() + 17), 9600u);
    }
    auto odd = samples(2);
    odd.sizes = {7};
    EXPECT_THROW(Written(*Wrap(nullptr, {}, std::make_shared<FakeSound>(odd)).commit()),
                 Exceptions::InvalidFormat);
    EXPECT_EQ(thrownBy([] {
                  Wrap(nullptr, {}, std::make_shared<FakeSound>(FakeEssence{.isValid = false})).commit();
              }),
              "The essence format is invalid");
}

} // namespace MXF::Zelm::Test
