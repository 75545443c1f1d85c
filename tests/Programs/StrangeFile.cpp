// Files of essence that nobody knows, and what zelm rewrap and join make of them.
#include "StrangeFile.h"

#include "support/Files.h"
#include "support/StandardMetadata.h"

#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Tracks.h"
#include "MXF/Zelm/OPBuilders/GenericOPBuilder.h"

#include <algorithm>

namespace MXF::Zelm::Test {

using namespace KLV::Literals;
using namespace Metadata::Structural;
using OPBuilders::GenericOPBuilder;

namespace {

constexpr KLV::Key privateLabel = "060E2B34.04010101.0F770301.02AA0100"_key;
constexpr KLV::Key privateElement = "060E2B34.01020101.0F770301.00000000"_key;
constexpr KLV::Key privateSet = "060E2B34.02530101.0F770101.01230000"_key;

/// Elements under keys of the maker's own, each an edit unit of some bytes.
template <class Fake>
class Strange : public Fake {
public:
    using Fake::Fake;
    KLV::Key proposeKey(KLV::Key const& key) const override {
        KLV::Key strange = privateElement;
        std::copy_n(key.rawBuffer() + 12, 4, strange.rawBuffer() + 12);
        return strange;
    }
};

} // namespace

FakeEssence pictureEssence(std::size_t count) {
    return {.sizes = {3000, 17, 200, 1}, .count = count, .elementType = 0x7E, .label = privateLabel};
}

FakeEssence reorderedEssence(std::size_t groups) {
    auto essence = pictureEssence(4 * groups);
    essence.isReordered = true;
    for (std::size_t i = 0; i < groups; ++i)
        for (auto const& unit :
             {GenericContainer::EditUnitIndex{0, 0, 0xC0}, {2, -1, 0x22}, {-1, -2, 0x33}, {-1, -3, 0x33}})
            essence.index.push_back(unit);
    return essence;
}

Bytes strangeFile(FakeEssence const& picture, Templates::Rational<int> const& rate) {
    FakeEssence sound{.sizes = {96},
                      .count = picture.count,
                      .boundedSize = 96,
                      .itemType = 0x16,
                      .elementType = 0x7F,
                      .tag = 0x55,
                      .label = privateLabel};
    sound.rate = rate;
    auto shown = picture;
    shown.rate = rate;
    GenericOPBuilder builder(standardMetadata()->partitionDictionary().dictionary(),
                             {.product = {u"Company", u"Product", u"1.0", Types::UUID::generate()},
                              .materialName = u"Clip",
                              .startTimecode = Utils::TimeCode(Utils::TimeBase(25), {.hours = 10}),
                              .layout = {.partitions = {.packages = 3}}});
    builder.addFrameWrapped({.packageRate = rate,
                             .analyzers = {std::make_shared<Strange<FakePicture>>(shown),
                                           std::make_shared<Strange<FakeSound>>(sound),
                                           std::make_shared<Strange<FakeSound>>(sound)},
                             .kagSize = 256});
    Bytes const value = repeated(40, 0x3C);
    DataIO::Memory::MemoryDataSource source(value);
    KLV::Packet packet(privateSet, 4, value.size(), source, 0);
    builder.metadata()->addDarkMetadataSet(std::make_unique<Metadata::DarkMetadataSet>(packet));
    builder.addGenericStream({.sid = 99, .data = DataIO::Slice::adopt(repeated(500, 0x77))});
    SeekableSink sink;
    builder.creator(sink)->run();
    return sink.bytes();
}

std::vector<Bytes> unitsOf(OpenFile& file, std::size_t element, std::size_t container) {
    std::vector<Bytes> units;
    MXFIO::EssenceReader reader(file.reader, file.containers().at(container));
    for (MXFIO::EssenceUnit unit; reader.next(unit);)
        units.push_back(element < unit.package.elements.size() ? joined(unit.package.elements[element].data)
                                                               : Bytes());
    return units;
}

std::vector<std::uint8_t> flagsOf(OpenFile& file) {
    std::vector<std::uint8_t> flags;
    MXFIO::EssenceReader reader(file.reader, file.containers().front());
    for (std::int64_t i = 0; reader.flags(i); ++i)
        flags.push_back(*reader.flags(i));
    return flags;
}

bool contains(Bytes const& bytes, Bytes const& part) {
    return std::search(bytes.begin(), bytes.end(), part.begin(), part.end()) != bytes.end();
}

std::string lengthsOf(OpenFile& file) {
    std::string text;
    auto const metadata = file.reader.backwardFirstPartitionWithFinalMetadata()->metadata();
    for (auto const* const set : metadata->packages())
        for (auto const* const track : dynamic_cast<GenericPackage const&>(*set).tracks()) {
            auto const* const timeline = dynamic_cast<TimelineTrack const*>(track);
            auto const origin = timeline->origin() != nullptr ? timeline->origin()->value() : 0;
            text += std::to_string(durationOf(*track).value()) +
                    (origin != 0 ? "-" + std::to_string(origin) : "") + " ";
        }
    return text;
}

} // namespace MXF::Zelm::Test
