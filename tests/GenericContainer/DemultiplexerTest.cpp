/// Content packages, and what keys and labels say of essence.
#include "MXF/Zelm/GenericContainer/Demultiplexer.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"
#include "support/EssenceBody.h"

namespace MXF::Zelm::Test {

using namespace GenericContainer;

namespace {

/// The packages of packets with these track numbers (0: a fill item; 04… and 14…: system items), each as
/// "system items+elements:bytes".
std::string grouped(std::vector<std::uint32_t> const& numbers) {
    Demultiplexer demultiplexer;
    std::string all;
    std::uint64_t offset = 0;
    auto const take = [&] {
        auto const& package = demultiplexer.package();
        all += std::to_string(package.systemItems.size()) + "+" + std::to_string(package.elements.size()) +
               ":" + std::to_string(package.length) + " ";
        demultiplexer.clear();
    };
    for (auto const number : numbers) {
        auto key = number == 0 ? KLV::fillItemKey() : elementKey(number);
        if (number >> 24 == 0x04 || number >> 24 == 0x14) {
            key[4] = 0x02;
            key[5] = 0x53;
        }
        if (demultiplexer.startsNext(key))
            take();
        auto const* const element = demultiplexer.add(key, offset, 20, 80);
        EXPECT_EQ(element == nullptr, number == 0);
        EXPECT_TRUE(element == nullptr || element->valueOffset() == offset + 20);
        offset += 100;
    }
    take();
    return all;
}

} // namespace

TEST(Demultiplexer, EndsPackagesWhereTheyBeginAgain) {
    EXPECT_EQ(grouped({0x15010500, 0x15010500, 0, 0, 0x15010500}), "0+1:100 0+1:300 0+1:100 ");
    EXPECT_EQ(grouped({0, 0x15010500, 0, 0x16020300, 0x16020301, 0x15010500, 0x16020300}),
              "0+3:400 0+2:200 ");
    EXPECT_EQ(grouped({0x04010100, 0x04010201, 0x15010500, 0x04010100, 0x04010201, 0x15010500, 0x14010100}),
              "2+1:300 2+1:300 1+0:100 ");
    // A wrong element count makes no other element.
    EXPECT_EQ(grouped({0x15010500, 0x16010300, 0x15020500}), "0+2:200 0+1:100 ");
}

TEST(ContentPackage, FindsElementsByTrackNumber) {
    ContentPackage package;
    for (std::uint32_t const number : {0x16020300u, 0x16020301u}) {
        package.elements.emplace_back();
        package.elements.back().key = elementKey(number);
    }
    EXPECT_EQ(package.element(0x16020301), &package.elements[1]);
    EXPECT_EQ(package.element(0x16080301), &package.elements[1]) << "the count does not matter";
    EXPECT_EQ(package.element(0x16020302), nullptr);
}

TEST(ElementKey, TellsEssenceFromWhatStandsBesideIt) {
    EXPECT_TRUE(ElementKey::isContent(elementKey(0x15010500)));
    EXPECT_TRUE(ElementKey::isContent(systemKey));
    EXPECT_TRUE(ElementKey::isContent("060E2B34.01020101.0E040301.15010500"_key)) << "private";
    EXPECT_FALSE(ElementKey::isContent(KLV::fillItemKey()));
    EXPECT_FALSE(ElementKey::isContent(KLV::Key(KLV::INDEXTABLE_SEGMENT_KEY)));
    EXPECT_FALSE(ElementKey::isContent("060E2B34.02050101.0D010201.01030400"_key)) << "a partition pack";
    ElementKey const key(elementKey(0x16080301));
    EXPECT_EQ(key.itemType(), ElementKey::Sound);
    EXPECT_EQ(key.elementCount(), 8);
    EXPECT_EQ(key.elementType(), 3);
    EXPECT_EQ(key.elementNumber(), 1);
    EXPECT_TRUE(ElementKey(0x04010100).isSystem());
}

TEST(Wrapping, IsWhatTheLabelSays) {
    auto const of = [](std::uint32_t last) {
        auto label = "060E2B34.04010102.0D010301.02000000"_key;
        ByteCoders::codeInteger(last, label.rawBuffer() + 12);
        return wrappingOf(label);
    };
    for (std::uint32_t const frame :
         {0x02010101u, 0x02020101u, 0x02046001u, 0x02046007u, 0x02056503u, 0x02060100u, 0x02060300u,
          0x020C0100u, 0x020C0600u, 0x020D0000u, 0x02106009u, 0x021C0100u})
        EXPECT_EQ(of(frame), Wrapping::Frame) << std::hex << frame;
    for (std::uint32_t const clip : {0x02020102u, 0x02046002u, 0x02050102u, 0x02060200u, 0x02060400u,
                                     0x020C0200u, 0x02110200u, 0x02130101u, 0x021D0101u})
        EXPECT_EQ(of(clip), Wrapping::Clip) << std::hex << clip;
    for (std::uint32_t const unknown : {0x027F0100u, 0x020460FFu, 0x02FF0100u, 0x03010000u, 0x00000000u})
        EXPECT_EQ(of(unknown), Wrapping::Unknown) << std::hex << unknown;
}

} // namespace MXF::Zelm::Test
