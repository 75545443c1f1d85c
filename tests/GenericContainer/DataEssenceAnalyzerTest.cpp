#include "MXF/Zelm/GenericContainer/Analyzers/DataEssenceAnalyzer.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"
#include "support/AnalyzerPackage.h"
#include "support/Bytes.h"

namespace MXF::Zelm::Test {

using GenericContainer::DataEssenceAnalyzer;
using GenericContainer::EditUnit;
using namespace KLV::Literals;

TEST(DataEssenceAnalyzer, GivesPiecesAndSourcesAsEditUnits) {
    constexpr auto label = "060E2B34.04010109.0D010301.020E0000"_key;
    auto const source = [](std::size_t size) {
        return std::make_shared<DataIO::BufferSliceSource>(Bytes(size).data(), size);
    };
    auto const sizes = [](DataEssenceAnalyzer& analyzer) {
        std::vector<std::uint64_t> found;
        EXPECT_TRUE(analyzer.preload());
        for (EditUnit unit; analyzer.nextEditUnit(unit);)
            found.push_back(unit.data.size());
        EXPECT_TRUE(analyzer.done());
        return found;
    };
    auto const pieces = DataEssenceAnalyzer::ofPieces(
        source(250), {.essenceContainer = label, .elementType = 2, .editRate = {25, 1}, .constantSize = 100});
    EXPECT_TRUE(pieces->isCBE());
    EXPECT_EQ(sizes(*pieces), (std::vector<std::uint64_t>{100, 100, 50}));
    std::size_t next = 0;
    DataEssenceAnalyzer several([&] { return ++next <= 3 ? source(next * 10) : nullptr; },
                                {.essenceContainer = label, .elementType = 2, .editRate = {25, 1}});
    EXPECT_FALSE(several.isCBE());
    AnalyzerPackage package;
    auto const& descriptor = package.describedBy<Metadata::Structural::GenericDataEssenceDescriptor>(several);
    EXPECT_EQ(sizes(several), (std::vector<std::uint64_t>{10, 20, 30}));
    EXPECT_TRUE(several.finalize());
    EXPECT_EQ(*descriptor.containerDuration(), 3);
    EXPECT_EQ(*Metadata::Structural::dataDefinitionOf(package.track()),
              Types::UniversalLabel(Metadata::Structural::DataDefinitions::data));
    auto const missing = DataEssenceAnalyzer::ofFiles({"no such file"}, {.essenceContainer = label});
    EXPECT_THROW(missing->preload(), Exceptions::SystemError);
}

} // namespace MXF::Zelm::Test
