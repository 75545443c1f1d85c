/// The essence of files that independent programs made. The files lie in ../shared/samples; without them the
/// tests skip.
#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/MXFIO/EssenceReader.h"
#include "MXF/Zelm/Metadata/Structural/GenericPackage.h"
#include "MXF/Zelm/Metadata/Structural/Initialize.h"
#include "MXF/Zelm/Metadata/Structural/Track.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "support/EssenceBody.h"
#include "support/Files.h"

#include <fstream>

namespace MXF::Zelm::Test {

using namespace MXFIO;

namespace {

struct Sample {
    explicit Sample(std::string const& name)
        : source(std::string_view(MXFZELM_SAMPLES_DIR "/" + name)),
          reader(source, dictionary(), 65536),
          containers(essenceContainers(reader.firstPartitionWithFinalMetadata()->metadata())) {}

    static Reader::DictionaryPtr dictionary() {
        Metadata::Structural::initialize();
        return ZelmDictionary::standard();
    }

    DataIO::File::FileDataSource source;
    Reader2 reader;
    Templates::vector<EssenceContainer> containers;
};

/// "TRACK NUMBER: EDIT UNITS, BYTES" of each track.
std::string essenceOf(Sample& sample) {
    std::map<std::uint32_t, std::pair<std::size_t, std::uint64_t>> sums;
    for (auto const& container : sample.containers) {
        EssenceReader reader(sample.reader, container);
        EssenceUnit unit;
        while (reader.next(unit))
            for (auto const& element : unit.package.elements) {
                ++sums[element.trackNumber()].first;
                sums[element.trackNumber()].second += element.data.size();
            }
        EXPECT_EQ(reader.end(), reader.position());
    }
    std::string text;
    for (auto const& [number, sum] : sums)
        text += ByteCoders::toHexadecimal(number) + ": " + std::to_string(sum.first) + ", " +
                std::to_string(sum.second) + "; ";
    return text;
}

bool haveSamples() { return std::ifstream(MXFZELM_SAMPLES_DIR "/timed-text.mxf").good(); }

} // namespace

TEST(EssenceSamples, GiveTheirEditUnits) {
    if (!haveSamples())
        GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
    for (auto const& [name, expected] : std::vector<std::pair<std::string, std::string>>{
             {"aces-picture-frame-wrapped", "15011201: 4, 1047168; "},
             {"d10-imx50-op1a", "15010500: 2, 500040; 16010300: 2, 46080; "},
             {"d10-open-incomplete-header", "15010500: 1, 568832; "},
             {"dms-text-no-essence", ""},
             {"iab-generic-streams", "16010D01: 5, 1758209; "},
             {"jpeg2000-op1a-final-footer", "15010800: 1, 695; "},
             {"pcm-51-mca-clip", "16010200: 35232, 211392; "},
             {"timed-text", "17010B01: 1, 20247; "},
             {"wave-opatom-clip", "16010101: 1, 16; "}}) {
        Sample sample(name + ".mxf");
        EXPECT_EQ(essenceOf(sample), expected) << name;
    }
}

TEST(EssenceSamples, AreReadTrackByTrack) {
    if (!haveSamples())
        GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
    Sample sample("d10-imx50-op1a.mxf");
    ASSERT_EQ(sample.containers.size(), 1u);
    auto const& container = sample.containers[0];
    auto const* const sound = container.trackByNumber(0x16010300);
    ASSERT_NE(sound, nullptr);
    EXPECT_EQ(container.trackByID(sound->trackID), sound);
    auto const found = findTrack(sample.containers, *container.package->packageUID(), sound->trackID);
    ASSERT_TRUE(found);
    EssenceReader reader(sample.reader, *found);
    EssenceUnit unit;
    ASSERT_TRUE(reader.read(1, unit));
    EXPECT_EQ(unit.package.element(0x16010300)->data.size(), 23040u);
    EXPECT_TRUE(unit.package.element(0x15010500)->data.empty());
    EXPECT_EQ(reader.time(1),
              (Templates::Rational<std::int64_t>{sound->editRate.denominator, sound->editRate.numerator}));
    EXPECT_EQ(reader.timecode(1), container.timecode.components[0].timecode + 1);

    // The material package's tracks lead to the same.
    bool isFound = false;
    for (auto const* const set : container.metadata->packages())
        if (auto const* const material = dynamic_cast<Metadata::Structural::MaterialPackage const*>(set))
            for (auto const* const track : material->tracks()) {
                auto const end =
                    findTrack(sample.containers, *material->packageUID(), track->trackID()->value());
                isFound = isFound || (end && end->track == sound);
            }
    EXPECT_TRUE(isFound);
}

} // namespace MXF::Zelm::Test
