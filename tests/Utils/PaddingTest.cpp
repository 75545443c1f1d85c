#include "MXF/Zelm/Utils/Padding.h"
#include "MXF/Zelm/Utils/Align.h"
#include "support/Bytes.h"

namespace MXF::Zelm::Test {

using Utils::alignBytes;

TEST(Align, FillsTheGapOrTheGapAndWholeSteps) {
    EXPECT_EQ(alignBytes(512, 1024, 20), 0u);
    EXPECT_EQ(alignBytes(512, 0, 20), 0u);
    EXPECT_EQ(alignBytes(512, 1004, 20), 20u);
    EXPECT_EQ(alignBytes(512, 1005, 20), 19u + 512);
    EXPECT_EQ(alignBytes(512, 1023, 20), 1u + 512);
    EXPECT_EQ(alignBytes(16, 17, 20), 15u + 32); // the minimum itself is rounded up
    EXPECT_EQ(alignBytes(1, 12345, 20), 0u);
    EXPECT_EQ(alignBytes(0, 12345, 20), 0u);
    EXPECT_EQ(alignBytes(0x80000000, 1, 20), 0x7FFFFFFFu);
    EXPECT_EQ(alignBytes(512, ~0ull, 20), 1u + 512);
}

TEST(Padding, MakesFillItemsOfOneBlock) {
    Utils::Padding const padding(100);
    DataIO::Chain chain;
    padding.appendFillItem(chain, 20);
    padding.appendFillItem(chain, 270);
    padding.appendZeros(chain, 0);
    EXPECT_TRUE(chain.equals((fill(20) + fill(270)).data(), 290));
    EXPECT_EQ(chain.slices().size(), 2u + 3);
    EXPECT_EQ(chain.slices()[2].data(), chain.slices()[3].data());
    EXPECT_THROW(padding.appendFillItem(chain, 19), Exceptions::InvalidLength);
    EXPECT_THROW(padding.appendFillItem(chain, 16, 0), Exceptions::InvalidLength);
    EXPECT_THROW(padding.appendFillItem(chain, 20 + (1u << 24)), Exceptions::InvalidLength);
    EXPECT_EQ(chain.size(), 290u);
    padding.appendFillItem(chain, 17, 1);
    EXPECT_EQ(chain.size(), 307u);
}

} // namespace MXF::Zelm::Test
