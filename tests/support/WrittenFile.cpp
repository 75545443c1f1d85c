#include "support/WrittenFile.h"

#include "MXF/Zelm/Metadata/Structural/BuildingDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "support/StandardMetadata.h"

namespace MXF::Zelm::Test {

using namespace Metadata::Structural;
using namespace KLV::Literals;

namespace {

constexpr Templates::Rational<int> rate{25, 1};
constexpr KLV::Key pictureWrapping = "060E2B34.04010102.0D010301.02046001"_key;
constexpr KLV::Key pictureCoding = "060E2B34.04010103.04010202.01011100"_key;

TimelineTrack& addContainer(Metadata::PartitionMetadata& metadata, std::uint32_t bodySID) {
    auto& file = createFilePackage(metadata, {.bodySID = bodySID, .indexSID = bodySID + 1});
    auto& picture =
        createPictureDescriptor<CDCIEssenceDescriptor>(metadata, {.essenceContainer = pictureWrapping,
                                                                  .coding = pictureCoding,
                                                                  .frameRate = rate,
                                                                  .width = 720,
                                                                  .height = 288,
                                                                  .firstLine = {23, 335}});
    return addEssenceTrack(
        metadata, file, picture,
        {.dataDefinition = DataDefinitions::picture, .editRate = rate, .trackNumber = pictureTrack});
}

} // namespace

MXFIO::Partition::MetadataPtr WrittenFile::makeMetadata() {
    MXFIO::Partition::MetadataPtr metadata = standardMetadata();
    createPreface(*metadata, {.operationalPattern = OperationalPatterns::op1a({.multiTrack = true}),
                              .product = {u"Company", u"Product", u"1.0", Types::UUID::generate()}});
    createMaterialPackage(*metadata);
    for (std::uint32_t bodySID = 1; auto& essence : containers) {
        essence.whenFinalized = [&track = addContainer(*metadata, bodySID), metadata](std::size_t length) {
            setTrackLength(track, length);
        };
        bodySID += 2;
    }
    return metadata;
}

Bytes WrittenFile::write() {
    SeekableSink sink;
    MXFIO::Creator creator(sink, makeMetadata(), settings);
    addTo(creator);
    creator.run();
    return sink.bytes();
}

OpenFile::OpenFile(Bytes bytes)
    : source(std::move(bytes)),
      reader(source, standardMetadata()->partitionDictionary().dictionary(), 65536) {}

Templates::vector<MXFIO::EssenceContainer> OpenFile::containers() {
    auto* const partition = reader.backwardFirstPartitionWithFinalMetadata();
    return partition == nullptr ? Templates::vector<MXFIO::EssenceContainer>()
                                : MXFIO::essenceContainers(partition->metadata());
}

std::size_t OpenFile::readPackages(std::size_t container, FakePackages const& essence) {
    MXFIO::EssenceReader body(reader, containers().at(container));
    MXFIO::EssenceUnit unit;
    std::size_t count = 0;
    for (; body.next(unit); ++count) {
        auto const expected = essence.constantSize
                                  ? number(static_cast<std::uint32_t>(count)) + repeated(90, 0xCC)
                                  : elementValue(count, pictureTrack);
        auto const* const picture = unit.package.element(pictureTrack);
        EXPECT_TRUE(picture != nullptr && sameBytes(joined(picture->data), expected)) << "package " << count;
    }
    return count;
}

std::vector<MXFIO::Partition*> OpenFile::partitions() {
    std::vector<MXFIO::Partition*> all;
    for (auto* partition = reader.headerPartition(); partition != nullptr;
         partition = reader.nextPartition(partition))
        all.push_back(partition);
    return all;
}

} // namespace MXF::Zelm::Test
