#include "MXF/Zelm/Essence/MPEG/VideoUnit.h"
#include "support/Bytes.h"

#include <algorithm>

namespace MXF::Zelm::Test {

using namespace Essence::MPEG;

namespace {

DataIO::Chain chain(Bytes const& bytes, std::size_t piece = SIZE_MAX) {
    DataIO::Chain chain;
    for (std::size_t at = 0; at < bytes.size(); at += std::min(piece, bytes.size() - at))
        chain.append(DataIO::Slice::copyOf(bytes.data() + at, std::min(piece, bytes.size() - at)));
    return chain;
}

// The head of a D-10 picture, 625 lines, 50 Mb/s.
Bytes const d10 = hex(R"(
    00 00 01 B3  2D 02 60 23 7A 12 23 D8    # 720 x 608, 4:3, 25, 50 Mb/s, no matrices
    00 00 01 B5  18 54 00 01 00 80          # 4:2:2 at main, interlaced, 4:2:2, low delay
    00 00 01 B5  23 05 05 04 0B 42 12 00    # component, BT.470 and BT.601 colours, 720 x 576
    00 00 01 B8  94 1A 63 C0                # drop frame 05:01:19:07, closed
    00 00 01 00  00 0F FF F8                # reference 0, I, variable delay
    00 00 01 B5  8F FF F7 98 00             # no vectors, 9 bits, frame, top field first
    00 00 01 01  12 34
)");

// Two fields of an open group: I and P, with both matrices.
Bytes const fields =
    hex("00 00 01 B3 78 04 38 37 FF FF E0 02") + repeated(63, 0x10) + hex("11") + repeated(64, 0x12) + hex(R"(
    00 00 01 B5  14 42 00 01 00 00
    00 00 01 B8  00 08 00 20                # broken link
    00 00 01 00  00 8A 12 30                # reference 2, I
    00 00 01 B5  81 12 21 00 00             # top field
    00 00 01 01  80
    00 00 01 00  00 92 12 30 00             # reference 2, P
    00 00 01 B5  81 12 22 00 00             # bottom field
    00 00 01 01  80
    00 00 01 B7
)");

} // namespace

TEST(MPEGVideoUnit, ReadsTheHeadersOfD10HoweverTheyAreCut) {
    for (std::size_t const piece : {SIZE_MAX, std::size_t{1}, std::size_t{5}}) {
        auto const unit = VideoUnit::read(chain(d10, piece));
        ASSERT_TRUE(unit.sequence && unit.group && unit.picture && unit.picture->coding);
        auto const& sequence = *unit.sequence;
        EXPECT_EQ(sequence.width(), 720u);
        EXPECT_EQ(sequence.height(), 608u);
        EXPECT_EQ(sequence.aspectRatio(), (Templates::Rational<int>{4, 3}));
        EXPECT_EQ(sequence.frameRate(), (Templates::Rational<int>{25, 1}));
        EXPECT_EQ(sequence.bitRate(), 50'000'000u);
        ASSERT_TRUE(sequence.extension && sequence.display);
        EXPECT_EQ(sequence.extension->profileAndLevel, 0x85);
        EXPECT_TRUE(sequence.extension->lowDelay);
        EXPECT_FALSE(sequence.isProgressive());
        EXPECT_EQ(sequence.chromaFormat(), 2);
        EXPECT_EQ(sequence.display->displayWidth, 720);
        EXPECT_EQ(sequence.display->displayHeight, 576);
        EXPECT_EQ(sequence.display->matrixCoefficients, 4);
        EXPECT_TRUE(unit.group->dropFrame && unit.group->closed && !unit.group->brokenLink);
        EXPECT_EQ(unit.group->hours, 5);
        EXPECT_EQ(unit.group->minutes, 1);
        EXPECT_EQ(unit.group->seconds, 19);
        EXPECT_EQ(unit.group->pictures, 7);
        EXPECT_EQ(unit.picture->type, PictureType::I);
        EXPECT_EQ(unit.picture->vbvDelay, 0xFFFF);
        EXPECT_EQ(unit.picture->coding->structure, PictureStructure::Frame);
        EXPECT_EQ(unit.picture->coding->intraDCPrecision, 1);
        EXPECT_TRUE(unit.picture->coding->topFieldFirst);
        EXPECT_TRUE(unit.reachesSlices);
    }
}

TEST(MPEGVideoUnit, TwoFieldsAreOneFrame) {
    auto const head = VideoUnit::read(chain(fields));
    EXPECT_TRUE(head.reachesSlices && !head.secondField && !head.endsSequence);
    auto const unit = VideoUnit::read(chain(fields, 7), VideoUnit::Part::Whole);
    ASSERT_TRUE(unit.picture && unit.secondField && unit.secondField->coding);
    EXPECT_EQ(unit.picture->temporalReference, 2);
    EXPECT_EQ(unit.picture->type, PictureType::I);
    EXPECT_EQ(unit.picture->coding->structure, PictureStructure::TopField);
    EXPECT_EQ(unit.secondField->type, PictureType::P);
    EXPECT_EQ(unit.secondField->coding->structure, PictureStructure::BottomField);
    EXPECT_TRUE(unit.endsSequence);
    EXPECT_TRUE(unit.group->brokenLink && !unit.group->closed);
    EXPECT_EQ(unit.sequence->width(), 1920u);
    EXPECT_EQ(unit.sequence->frameRate(), (Templates::Rational<int>{60000, 1001}));
    EXPECT_TRUE(unit.sequence->extension); // found behind the matrices
}

TEST(MPEGVideoUnit, WithoutExtensionItIsMPEG1) {
    auto const unit = VideoUnit::read(chain(hex("00 00 01 B3 16 01 20 83 FF FF E0 A0"
                                                "00 00 01 00 00 97 FF F8 80 00 00 01 01")));
    ASSERT_TRUE(unit.sequence && unit.picture);
    EXPECT_TRUE(unit.sequence->isMPEG1() && unit.sequence->isProgressive());
    EXPECT_EQ(unit.sequence->aspectRatio(), (Templates::Rational<int>{4, 3}));
    EXPECT_FALSE(unit.sequence->bitRate()); // variable
    EXPECT_EQ(unit.picture->type, PictureType::P);
    EXPECT_FALSE(unit.picture->isField());
}

TEST(MPEGVideoUnit, CutAndChangedBytesAreNoFault) {
    for (auto const& bytes : {d10, fields}) {
        survivesEveryFault(
            bytes, [](Bytes const& changed) { VideoUnit::read(chain(changed), VideoUnit::Part::Whole); });
        auto const head = VideoUnit::read(chain(Bytes(bytes.begin(), bytes.begin() + 20)));
        EXPECT_FALSE(head.reachesSlices || head.picture);
    }
}

} // namespace MXF::Zelm::Test
