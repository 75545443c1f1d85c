// Labels, keys and classes in words.
#include "MXF/ZelmDictionary/Names.h"

#include <gtest/gtest.h>

namespace {

using namespace MXF::Zelm::KLV::Literals;
using MXF::Zelm::KLV::Key;
using MXF::ZelmDictionary::className;
using MXF::ZelmDictionary::keyName;
using MXF::ZelmDictionary::labelName;

struct Case {
    Key key;
    const char* name;
};

Case const labels[] = {
    {"060E2B34.04010101.0D010201.01010900"_key, "OP1a, internal essence, stream, multi-track"},
    {"060E2B34.04010101.0D010201.01010100"_key, "OP1a, internal essence, stream, uni-track"},
    {"060E2B34.04010101.0D010201.02030710"_key,
     "OP2c, external essence, not for streaming, uni-track, processing at joins"},
    {"060E2B34.04010102.0D010201.10030000"_key, "OP-Atom, several tracks, several source clips"},
    {"060E2B34.04010101.0D010201.01010000"_key, "MXF OP1a SingleItem SinglePackage"},
    {"060E2B34.04010101.0D010301.02010101"_key, "D-10, 625-line 50i, 50 Mb/s, defined template"},
    {"060E2B34.04010102.0D010301.0201097F"_key, "D-10, format 0x9, picture only"},
    {"060E2B34.04010102.0D010301.02046001"_key, "MPEG elementary stream, frame wrapped, video stream 0"},
    {"060E2B34.0401010A.0D010301.02106001"_key, "AVC byte stream, frame wrapped, video stream 0"},
    {"060E2B34.0401010D.0D010301.021F6109"_key, "HEVC NAL unit stream, field wrapped, video stream 1"},
    {"060E2B34.04010102.0D010301.02074142"_key,
     "MPEG packetized elementary stream, wrapping 0x42, audio stream 1"},
    {"060E2B34.04010102.0D010301.02093D02"_key, "MPEG transport stream, clip wrapped, private stream 1"},
    {"060E2B34.04010101.0D010301.02060100"_key, "MXF-GC Frame-wrapped Broadcast Wave audio data"},
    {"060E2B34.04010103.0D010301.027F0100"_key, "MXF-GC Generic Essence Multiple Mappings"},
    {"060E2B34.04010101.01030202.01000000"_key, "Picture Essence Track"},
    {"060E2B34.0401010D.03020101.00000000"_key, "Left Audio Channel"},
    // The register has version 01: another one is found all the same.
    {"060E2B34.0401010D.01030202.01000000"_key, "Picture Essence Track"},
    {"060E2B34.04010101.FF000000.00000000"_key, ""},
    {"807D0060.08143E6F.6F3C8CE1.6CEF11D2"_key, ""},
    {Key(), ""},
};

TEST(Names, Labels) {
    for (auto const& [key, name] : labels)
        EXPECT_EQ(labelName(key), name) << key;
}

TEST(Names, LabelsOfAName) {
    using MXF::ZelmDictionary::labelsNamed;
    for (auto const* const name : {"OP3b, external essence, stream, uni-track, processing at joins",
                                   "picture essence TRACK", "OP-Atom, one track, one source clip"}) {
        auto const found = labelsNamed(name);
        ASSERT_EQ(found.size(), 1u) << name;
        EXPECT_EQ(labelsNamed(labelName(found[0])), found) << name;
    }
    EXPECT_EQ(labelsNamed("OP1a").size(), 8u) << "the beginning of several";
    EXPECT_TRUE(labelsNamed("OP1").empty()) << "the beginning of a word";
    EXPECT_TRUE(labelsNamed("").empty());
    EXPECT_TRUE(labelsNamed("MPEG picture element, frame wrapped").empty()) << "a key";
}

Case const keys[] = {
    {"060E2B34.02050101.0D010201.01020100"_key, "header partition pack, open and incomplete"},
    {"060E2B34.02050101.0D010201.01030200"_key, "body partition pack, closed and incomplete"},
    {"060E2B34.02050101.0D010201.01040400"_key, "footer partition pack, closed and complete"},
    {"060E2B34.02050101.0D010201.01031100"_key, "generic stream partition pack"},
    {"060E2B34.02050101.0D010201.01020900"_key, "header partition pack, status 0x9"},
    {"060E2B34.02050101.0D010201.01050100"_key, "primer pack"},
    {"060E2B34.02050101.0D010201.01110100"_key, "random index pack"},
    {"060E2B34.02530101.0D010201.01100100"_key, "index table segment"},
    {"060E2B34.01010101.03010210.01000000"_key, "fill item"},
    {"060E2B34.01010102.03010210.01000000"_key, "fill item"},
    {"060E2B34.02050101.0D010301.04010100"_key, "system metadata pack"},
    {"060E2B34.02430101.0D010301.04010201"_key, "package metadata set"},
    {"060E2B34.02630101.0D010301.14020100"_key, "GC system item, element type 0x1"},
    {"060E2B34.01020101.0D010301.15010501"_key, "MPEG picture element 1 of 1, frame wrapped"},
    {"060E2B34.01020101.0D010301.16040302"_key, "AES3 sound element 2 of 4, frame wrapped"},
    {"060E2B34.01020101.0D010301.05010100"_key, "Type D-10 element 0 of 1"},
    {"060E2B34.01020101.0D010301.17010B01"_key, "timed text data element 1 of 1"},
    {"060E2B34.01020101.0D010301.17010101"_key, "VBI data element 1 of 1, frame wrapped"},
    {"060E2B34.01020101.0D010301.15027E01"_key, "GC picture element 1 of 2, type 0x7E"},
    {"060E2B34.01020101.0D010301.2A027E01"_key, "item 0x2A element 1 of 2, type 0x7E"},
    {"060E2B34.0101010C.0D010509.01000000"_key, "generic stream data, big-endian or bytes"},
    {"060E2B34.0101010C.0D01050D.03000000"_key, "generic stream data, byte order unknown, access units"},
    {"060E2B34.02530101.0D010101.01012F00"_key, "Preface"},
    {"060E2B34.02130101.0D010101.01010900"_key, "Filler"},
    {"060E2B34.02530101.0D010401.01100100"_key, "Titles"},
    {"060E2B34.02040107.0D010301.027E0100"_key, "Encrypted Triplet"},
    {"060E2B34.02530105.0E7F0102.01000000"_key, "unknown"},
    {"060E2B34.01020105.0E7F0102.01000000"_key, "unknown"},
    {Key(), "unknown"},
};

TEST(Names, Keys) {
    for (auto const& [key, name] : keys)
        EXPECT_EQ(keyName(key), name) << key;
}

TEST(Names, Classes) {
    EXPECT_EQ(className("060E2B34.02530101.0D010101.01014800"_key), "WAVEPCMDescriptor");
    EXPECT_EQ(className("060E2B34.02050101.0D010201.01110100"_key), "") << "a pack is no set class";
    EXPECT_EQ(className("060E2B34.02530105.0E7F0102.01000000"_key), "");
}

} // namespace
