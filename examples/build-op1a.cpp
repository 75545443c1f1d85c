/// Builds the header metadata of an OP1a file with a picture, four sounds and timecode, and writes it as a
/// file that is a header partition and nothing else.
#include <MXF/Zelm/DataIO/File/FileDataSink.h>
#include <MXF/Zelm/DataIO/Memory/MemoryDataSink.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/BuildingDescriptors.h>
#include <MXF/Zelm/Metadata/Structural/Initialize.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/Zelm/Packs/PartitionPack.h>
#include <MXF/ZelmDictionary/Dictionary.h>

#include <iostream>

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;
using namespace MXF::Zelm::Metadata::Structural;

constexpr Templates::Rational<int> rate{25, 1};
constexpr std::uint64_t frames = 250;
constexpr KLV::Key mpeg2Frames = "060E2B34.04010102.0D010301.02046001"_key;
constexpr KLV::Key mpeg2HighLevel422 = "060E2B34.04010103.04010202.01040300"_key;
constexpr KLV::Key waveFrames = "060E2B34.04010101.0D010301.02060100"_key;

int main(int count, char** arguments) try {
    initialize();
    auto const metadata = createPartitionMetadata(MXF::ZelmDictionary::standard());
    createPreface(*metadata,
                  {.operationalPattern = OperationalPatterns::op1a({.multiTrack = true}),
                   .product = {u"Example Company", u"build-op1a", u"1.0", Types::UUID::generate()}});
    auto& material = createMaterialPackage(*metadata, {.name = u"Example"});
    auto& file = createFilePackage(*metadata, {.bodySID = 1, .indexSID = 2});
    Utils::TimeCode const start(Utils::TimeBase(25), {.hours = 10});
    addTimecodeTrack(*metadata, material, start, rate, frames);
    addTimecodeTrack(*metadata, file, start, rate, frames);

    auto& picture = createPictureDescriptor<MPEG2VideoDescriptor>(
        *metadata, {.essenceContainer = mpeg2Frames,
                    .coding = mpeg2HighLevel422,
                    .frameRate = rate,
                    .width = 1920,
                    .height = 540,
                    .frameLayout = MPEG2VideoDescriptor::separateFields,
                    .firstLine = {21, 584}});
    auto& track = addEssenceTrack(*metadata, file, picture,
                                  {DataDefinitions::picture, rate, makeTrackNumber(0x15, 1, 5, 0), frames});
    addMaterialTrack(*metadata, material, file, track);
    for (std::uint8_t channel = 1; channel <= 4; ++channel) {
        auto& sound = createSoundDescriptor<WAVEAudioEssenceDescriptor>(*metadata, {waveFrames, rate});
        addMaterialTrack(
            *metadata, material, file,
            addEssenceTrack(*metadata, file, sound,
                            {DataDefinitions::sound, rate, makeTrackNumber(0x16, 4, 1, channel), frames}));
    }

    DataIO::Memory::MemoryDataSink header;
    metadata->serialize(header, false, Metadata::SerializationOrder::ForwardReferences);
    using Packs::PartitionPack;
    PartitionPack pack(buildPartitionPackKey(PartitionPack::Header, PartitionPack::ClosedComplete), 1, 0, 0,
                       operationalPattern(*metadata), essenceContainers(*metadata));
    pack.headerByteCount(header.serializedSize());
    DataIO::File::FileDataSink sink{std::string_view(count > 1 ? arguments[1] : "op1a.mxf")};
    pack.serialize(sink);
    sink.write(header.rawBuffer(), header.serializedSize());
    sink.close();
} catch (Exceptions::BaseException const& fault) {
    std::cerr << fault.message() << "\n";
    return 1;
}
