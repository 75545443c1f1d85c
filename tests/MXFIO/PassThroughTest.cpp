/// Essence that is passed on unchanged, with its descriptors.
#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/MXFIO/PassThroughAnalyzer.h"
#include "MXF/Zelm/Metadata/SetCopy.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/Initialize.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/SubDescriptors.h"
#include "MXF/Zelm/Utils/SampleCadence.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "support/AnalyzerPackage.h"
#include "support/EssenceBody.h"
#include "support/Files.h"
#include "support/HeaderMetadata.h"

#include <map>

namespace MXF::Zelm::Test {

using namespace MXFIO;
using GenericContainer::EditUnit;
using GenericContainer::Wrapping;
using Metadata::MetadataSet;

namespace {

struct Sample {
    explicit Sample(std::string const& name)
        : source(std::string_view(name)), reader(source, dictionary(), 65536) {
        if (auto* const partition = reader.firstPartitionWithFinalMetadata())
            containers = essenceContainers(partition->metadata());
    }

    static Reader::DictionaryPtr dictionary() {
        Metadata::Structural::initialize();
        return ZelmDictionary::standard();
    }

    DataIO::File::FileDataSource source;
    Reader2 reader;
    Templates::vector<EssenceContainer> containers;
};

/// The bytes of a track, in edit units and joined.
Bytes readTrack(Sample& sample, EssenceContainer const& container, EssenceTrack const& track) {
    EssenceReader reader(sample.reader, FoundTrack{&container, &track});
    Bytes all;
    for (EssenceUnit unit; reader.next(unit);)
        if (auto const* const element = unit.package.element(track.trackNumber))
            all = all + joined(element->data);
    return all;
}

/// Whether all properties of a set are in its copy, and those of the sets below it, but for what belongs to
/// the new file.
void expectCopied(MetadataSet const& original, MetadataSet const& copy, std::string const& where) {
    EXPECT_EQ(original.key(), copy.key());
    EXPECT_EQ(original.invalidSize(), copy.invalidSize()) << where;
    std::map<std::u16string, bool> const own = {{u"EssenceLength", true}, {u"LinkedTrackID", true}};
    for (auto const& element : original) {
        auto const* const same = copy.findElement(*element->universalLabel());
        if (own.contains(element->name()))
            continue;
        ASSERT_NE(same, nullptr) << where;
        EXPECT_EQ(element->baseValue()->toString(), same->baseValue()->toString()) << where;
    }
    if (auto const* const descriptor = dynamic_cast<Metadata::Structural::FileDescriptor const*>(&original)) {
        auto const below = descriptor->subDescriptors();
        auto const copied = dynamic_cast<Metadata::Structural::FileDescriptor const&>(copy).subDescriptors();
        ASSERT_EQ(below.size(), copied.size()) << where;
        for (std::size_t i = 0; i < below.size(); ++i)
            expectCopied(*below[i], *copied[i], where);
    }
}

void expectPassedOn(Sample& sample, EssenceContainer const& container, std::string const& where) {
    auto const input = std::make_shared<PassThroughReader>(sample.reader, container);
    std::vector<std::unique_ptr<PassThroughAnalyzer>> analyzers;
    for (auto const& track : container.tracks)
        analyzers.push_back(std::make_unique<PassThroughAnalyzer>(input, track.trackNumber));
    std::vector<Bytes> found(analyzers.size());
    EssenceReader reference(sample.reader, container);
    for (auto const& analyzer : analyzers)
        ASSERT_TRUE(analyzer->preload());
    std::int64_t position = 0;
    for (bool more = true; more; ++position) {
        more = false;
        for (std::size_t i = 0; i < analyzers.size(); ++i) {
            EditUnit unit;
            if (!analyzers[i]->nextEditUnit(unit))
                continue;
            more = true;
            found[i] = found[i] + joined(unit.data);
            auto const flags = reference.flags(position);
            if (analyzers[i]->essenceAnalyzerType() == GenericContainer::EssenceAnalyzer::PictureAnalyzer &&
                flags) {
                EXPECT_EQ(unit.index.flags, *flags) << where << position;
            }
        }
    }
    for (std::size_t i = 0; i < analyzers.size(); ++i) {
        auto const& track = container.tracks[i];
        EXPECT_TRUE(sameBytes(found[i], readTrack(sample, container, track))) << where;
        if (track.descriptor == nullptr)
            continue;
        AnalyzerPackage package;
        auto const& copy = package.describedBy<Metadata::Structural::FileDescriptor>(*analyzers[i]);
        expectCopied(*track.descriptor, copy, where);
    }
}

} // namespace

class PassThrough : public SampleTest {};

TEST_F(PassThrough, KeepsEditUnitsFlagsAndDescriptorsOfEverySample) {
    std::size_t containers = 0;
    for (auto const& file : sampleFiles()) {
        Sample sample(file.string());
        for (auto const& container : sample.containers) {
            expectPassedOn(sample, container, file.filename().string() + " ");
            ++containers;
        }
    }
    EXPECT_GT(containers, 5u);
}

TEST_F(PassThrough, GivesSoundOfAClipAsFrames) {
    Sample sample(MXFZELM_SAMPLES_DIR "/pcm-51-mca-clip.mxf");
    ASSERT_EQ(sample.containers.size(), 1u);
    auto const& container = sample.containers.front();
    auto const& track = container.tracks.front();
    auto const input = std::make_shared<PassThroughReader>(
        sample.reader, container,
        PassThroughOptions{.first = 1, .end = 3, .wrapping = Wrapping::Frame, .editRate = {25, 1}});
    PassThroughAnalyzer analyzer(input, track.trackNumber);
    ASSERT_TRUE(analyzer.preload());
    auto const samples = static_cast<std::size_t>(track.samples.rate.numerator / 25);
    Bytes found;
    EditUnit unit;
    int units = 0;
    for (; analyzer.nextEditUnit(unit); ++units)
        found = found + joined(unit.data);
    auto const whole = readTrack(sample, container, track);
    auto const size = static_cast<std::ptrdiff_t>(samples * track.samples.bytes);
    ASSERT_GE(std::ssize(whole), 3 * size);
    EXPECT_EQ(units, 2);
    EXPECT_TRUE(sameBytes(found, Bytes(whole.begin() + size, whole.begin() + 3 * size)));
    EXPECT_EQ(analyzer.universalLabel()[14], 1);
    EXPECT_EQ(analyzer.essenceElementType(), 1);
    EXPECT_THROW(PassThroughAnalyzer(input, 0x15010500), Exceptions::InvalidStructure);
}

TEST_F(PassThrough, TellsWhereInTheCadenceARangeBegins) {
    Sample sample(MXFZELM_SAMPLES_DIR "/pcm-51-mca-clip.mxf");
    ASSERT_EQ(sample.containers.size(), 1u);
    auto const& track = sample.containers.front().tracks.front();
    for (std::int64_t const first : {0, 2, 5, 8}) {
        PassThroughOptions const options{
            .first = first, .wrapping = Wrapping::Frame, .editRate = {30000, 1001}};
        PassThroughAnalyzer analyzer(
            std::make_shared<PassThroughReader>(sample.reader, sample.containers.front(), options),
            track.trackNumber);
        ASSERT_TRUE(analyzer.preload());
        AnalyzerPackage package;
        auto const& descriptor =
            package.describedBy<Metadata::Structural::WAVEAudioEssenceDescriptor>(analyzer);
        auto const* const place = descriptor.sequenceOffset();
        EXPECT_EQ(place != nullptr ? place->value() : 0, first % 5);
        Utils::SampleCadence const cadence(48000u, {30000, 1001});
        EditUnit unit;
        for (std::int64_t i = first % 5; i < first % 5 + 3 && analyzer.nextEditUnit(unit); ++i, unit = {})
            EXPECT_EQ(unit.data.size(),
                      cadence.samplesOf(static_cast<std::uint64_t>(i)) * track.samples.bytes);
    }
}

TEST(SetCopy, KeepsPrivatePropertiesWhateverTheirTags) {
    using namespace Metadata::Structural;
    using Reason = MetaMetadata::UnknownAttribute::Reason;
    Types::LocalTag const tag(std::uint16_t{0xFFF0});
    constexpr KLV::Key privateLabel = "060E2B34.01010101.0E7F0101.01010101"_key;
    constexpr KLV::Key otherLabel = "060E2B34.01010101.0E7F0101.02020202"_key;
    auto const from = standardMetadata(), to = standardMetadata();
    from->partitionDictionary().primer().add(tag, privateLabel);
    to->partitionDictionary().primer().add(tag, otherLabel);
    auto& descriptor = create<MPEG2VideoDescriptor>(*from);
    auto& below = create<JPEG2000PictureSubDescriptor>(*from);
    descriptor.addSubDescriptor(below);
    below.xsiz(Types::UInt32(77));
    DataIO::Memory::MemoryDataSource bytes(hex("C0 FF EE"));
    KLV::Value value(bytes, 3);
    below.createInvalidElement(std::make_shared<MetaMetadata::UnknownAttribute>(
                                   tag, Reason::NotInDictionary, Types::UniversalLabel(privateLabel)),
                               tag, value);
    from->generateLocalTags();
    for (int copies = 0; copies < 2; ++copies) { // the second time all instance UIDs are taken
        auto const* const copy =
            dynamic_cast<MPEG2VideoDescriptor*>(Metadata::copyWithReferenced(descriptor, *from, *to));
        ASSERT_NE(copy, nullptr);
        ASSERT_EQ(copy->subDescriptors().size(), 1u);
        auto const& under = dynamic_cast<JPEG2000PictureSubDescriptor&>(*copy->subDescriptors().front());
        EXPECT_EQ(*under.xsiz(), 77u);
        EXPECT_EQ(*under.instanceUID() == *below.instanceUID(), copies == 0);
        ASSERT_EQ(under.invalidSize(), 1u);
        EXPECT_EQ(*(*under.invalidBegin())->universalLabel(), Types::UniversalLabel(privateLabel));
        EXPECT_EQ(to->size(), 2u * static_cast<unsigned>(copies + 1));
    }
}

} // namespace MXF::Zelm::Test
