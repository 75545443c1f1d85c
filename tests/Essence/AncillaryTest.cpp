/// Ancillary data packets: words, checksums, what they hold.
#include "MXF/Zelm/Essence/Ancillary/ActiveFormat.h"
#include "MXF/Zelm/Essence/Ancillary/CaptionPacket.h"
#include "MXF/Zelm/Essence/Ancillary/Identifiers.h"
#include "MXF/Zelm/Essence/Ancillary/LineCaptions.h"
#include "MXF/Zelm/Essence/Ancillary/Packet.h"
#include "MXF/Zelm/Essence/Ancillary/Timecode.h"
#include "MXF/Zelm/Platform/Text.h"
#include "support/Bytes.h"

namespace MXF::Zelm::Test {

using namespace Essence::Ancillary;

namespace {

using Words = std::vector<Word>;

/// 61/01 with AA BB CC, calculated by hand after SMPTE 291M.
const Words words10 = {0x161, 0x101, 0x203, 0x2AA, 0x2BB, 0x2CC, 0x296};
const Words words8 = {0x61, 0x01, 0x03, 0xAA, 0xBB, 0xCC};

Words with(Words words, std::size_t at, Word word) {
    words[at] = word;
    return words;
}

template <class Content>
Bytes bytesOf(Content const& content) {
    auto const bytes = content.bytes();
    return {bytes.begin(), bytes.end()};
}

Words cut(Words words, std::size_t size) {
    words.resize(size);
    return words;
}

} // namespace

TEST(AncillaryPacket, HasWordsWithParityAndChecksum) {
    auto const packet = Packet::ofBytes(0x61, 0x01, hex("AA BB CC"));
    EXPECT_EQ(wordsOf(packet, Precision::Bits10, true), words10);
    EXPECT_EQ(wordsOf(packet, Precision::Bits8, false), words8);
    for (auto const& [words, precision] : {std::pair(words10, Precision::Bits10),
                                           {cut(words10, 6), Precision::Bits10},
                                           {words8, Precision::Bits8}}) {
        auto const read = readPacket(words, precision);
        EXPECT_EQ(read.packet, packet);
        EXPECT_EQ(read.faults, 0u);
        EXPECT_EQ(read.checksum.has_value(), words.size() == 7);
    }
    EXPECT_EQ(readPacket(Words{0x00, 0xFF, 0xFF, 0x61, 0x01, 0x00, 0x62}, Precision::Bits8).faults, 0u)
        << "data flag and checksum";
    EXPECT_EQ(readPacket(Words{0x61, 0x01, 0x01, 0xAA, 0, 0, 0}, Precision::Bits8).faults, 0u) << "filled up";
    EXPECT_THROW(wordsOf({0x61, 0x01, Words(256)}, Precision::Bits8, false), Exceptions::InvalidLength);
}

TEST(AncillaryPacket, TellsWhatIsWrongAndKeepsTheRest) {
    auto const faults10 = [](Words const& words) { return readPacket(words, Precision::Bits10).faults; };
    EXPECT_EQ(faults10(with(words10, 6, 0x297)), unsigned{ReadPacket::WrongChecksum});
    EXPECT_EQ(faults10(with(words10, 3, 0x2AB)), unsigned{ReadPacket::WrongChecksum});
    EXPECT_EQ(faults10(with(words10, 0, 0x261)), ReadPacket::WrongParity | ReadPacket::WrongChecksum);
    EXPECT_EQ(faults10(cut(words10, 2)), unsigned{ReadPacket::TooShort});
    EXPECT_EQ(faults10({}), unsigned{ReadPacket::TooShort});
    EXPECT_EQ(readPacket(with(words8, 2, 2), Precision::Bits8).faults, unsigned{ReadPacket::WrongChecksum});
    EXPECT_EQ(readPacket(with(words8, 2, 1), Precision::Bits8).faults,
              ReadPacket::WrongChecksum | ReadPacket::WordsBehind);
    auto const tooMany = readPacket(with(words8, 2, 200), Precision::Bits8);
    EXPECT_EQ(tooMany.faults, unsigned{ReadPacket::CountTooLarge});
    EXPECT_EQ(tooMany.dataCount, 200u);
    EXPECT_EQ(tooMany.packet.bytes(), hex("AA BB CC"));
}

TEST(AncillaryIdentifiers, HaveNames) {
    EXPECT_NE(identifierName(0x61, 0x01).find("708"), std::string_view::npos);
    EXPECT_EQ(identifierName(0x61, 0x77), "");
    EXPECT_EQ(identifierName(0xFF, 0x01), identifierName(0xFF, 0xE9)) << "the block number names nothing";
}

TEST(ActiveFormat, SaysWhatIsMeantToBeSeen) {
    auto const bytes = hex("54 00 00 C0  0014 0234"); // 16:9 centre in 16:9; lines 20 and 564
    auto const read = readActiveFormat(bytes);
    ASSERT_TRUE(read);
    EXPECT_STREQ(read->text(), "16:9 centre");
    EXPECT_TRUE(read->isWide);
    EXPECT_EQ(read->top, 20);
    EXPECT_EQ(read->bottom, 564);
    EXPECT_FALSE(read->left || read->right);
    EXPECT_TRUE(sameBytes(bytesOf(*read), bytes));
    EXPECT_EQ(readActiveFormat(hex("40 00 00 F0 0001 0002"))->left, std::nullopt) << "two bars at most";
    EXPECT_FALSE(readActiveFormat(hex("54 00 00 C0 0014 02")));
}

TEST(AncillaryTimecode, CarriesTimeGroupsAndSource) {
    // 10:59:58:24 with groups 1 to 8, from vertical timecode; DBB 2 is 81.
    auto const bytes = hex("48 10 20 30 80 50 50 70  98 20 50 40 00 60 10 88");
    auto read = readTimecode(bytes, 25);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->time.toString(), u"10:59:58:24");
    EXPECT_STREQ(read->sourceText(), "VITC 1");
    EXPECT_EQ(read->flags, 0x81);
    std::string groups;
    for (unsigned group = 1; group <= 8; ++group)
        groups += std::to_string(read->time.binaryGroup(group));
    EXPECT_EQ(groups, "13572468");
    EXPECT_TRUE(sameBytes(bytesOf(*read), bytes));
    EXPECT_FALSE(readTimecode(Bytes(bytes.begin(), bytes.end() - 1), 25));
    EXPECT_FALSE(readTimecode(repeated(16, 0xF0), 25)->time.isDefined());
}

namespace {

const Bytes captions = hex(R"(
    9669 34 4F FA 1234              # 52 bytes, 29.97 a second, timecode, data and services, active
    71 D0 A3 45 92                  # 10:23:45;12
    72 E3  FC 94 2C  FD 80 80  FE 41 42   # a pair, a pair of field 2, a part of a packet
    73 F2  01 65 6E 67 01 3F FF     # English of CEA-608, field 2 being the flag
           E1 66 72 61 C1 FF FF     # French of CEA-708, service 1, easy reader, wide
    75 02 AA BB                     # a section of the future
    74 1234 00)");

Bytes summedUp(Bytes bytes) {
    bytes.at(2) = static_cast<unsigned char>(bytes.size());
    auto& checksum = bytes.at(bytes.size() - 1);
    unsigned sum = 0;
    checksum = 0;
    for (auto const byte : bytes)
        sum += byte;
    checksum = static_cast<unsigned char>(256 - sum % 256);
    return bytes;
}

} // namespace

TEST(CaptionPacket, IsRead) {
    auto const read = readCaptionPacket(summedUp(captions));
    EXPECT_EQ(read.faults, 0u);
    EXPECT_EQ(read.frameRate, (Templates::Rational<int>{30000, 1001}));
    EXPECT_TRUE(read.isCaptionServiceActive);
    EXPECT_EQ(read.sequence, 0x1234);
    EXPECT_EQ(read.timecode.toString(), u"10:23:45;12");
    Templates::vector<CaptionData> const data = {{true, CaptionData::Field1, {0x94, 0x2C}},
                                                 {true, CaptionData::Field2, {0x80, 0x80}},
                                                 {true, CaptionData::DTVCCContinues, {0x41, 0x42}}};
    EXPECT_EQ(read.data, data);
    Templates::vector<CaptionService> const services = {{2, false, "eng", false, false},
                                                        {1, true, "fra", true, true}};
    EXPECT_EQ(read.services, services);
}

TEST(CaptionPacket, IsMade) {
    auto packet = readCaptionPacket(summedUp(captions));
    EXPECT_TRUE(sameBytes(packet.bytes(), summedUp(hex(R"(
        9669 00 4F F7 1234
        71 D0 A3 45 92
        72 E3  FC 94 2C  FD 80 80  FE 41 42
        73 D2  A0 65 6E 67 7F 3F FF  A1 66 72 61 C1 FF FF
        74 1234 00)"))));
    packet.services[1].number = 40;
    packet.frameRate = {50, 1};
    packet.timecode = Utils::TimeCode::fromText(u"10:00:00:03", 50);
    auto const again = readCaptionPacket(packet.bytes());
    EXPECT_EQ(again.faults, 0u);
    EXPECT_EQ(again.services, packet.services);
    EXPECT_EQ(again.timecode, packet.timecode);
    packet.frameRate = {25, 1};
    EXPECT_THROW(packet.bytes(), Exceptions::InvalidValue) << "the timecode counts 50";
    packet.timecode = {};
    packet.data.resize(CaptionPacket::mostData);
    packet.services.resize(CaptionPacket::mostServices, packet.services[0]);
    EXPECT_EQ(readCaptionPacket(packet.bytes()).faults, 0u) << "the largest one";
    packet.data.emplace_back();
    EXPECT_THROW(packet.bytes(), Exceptions::InvalidValue);
}

TEST(CaptionPacket, TellsWhatIsWrong) {
    auto const faultsWith = [](std::size_t at, unsigned char byte) {
        auto bytes = summedUp(captions);
        bytes[at] = byte;
        return readCaptionPacket(bytes).faults;
    };
    EXPECT_EQ(faultsWith(20, 0x55), unsigned{CaptionPacket::WrongChecksum});
    EXPECT_EQ(faultsWith(0, 0x55), unsigned{CaptionPacket::NotCaptions});
    EXPECT_EQ(faultsWith(2, 0xFF), unsigned{CaptionPacket::WrongLength} | CaptionPacket::WrongChecksum);
    EXPECT_TRUE(faultsWith(13, 0xFF) & CaptionPacket::CutOff);
    EXPECT_TRUE(faultsWith(12, 0x11) & CaptionPacket::UnknownSection);
    EXPECT_TRUE(faultsWith(captions.size() - 2, 0x11) & CaptionPacket::OtherSequence);
    survivesEveryFault(summedUp(captions), [](Bytes const& bytes) { readCaptionPacket(bytes); });
}

namespace {

unsigned char withOddParity(unsigned char byte) {
    return static_cast<unsigned char>(std::popcount(byte) % 2 != 0 ? byte : byte | 0x80);
}

/// "channel: text" for each row that pairs without parity give.
std::vector<std::string> captionsOf(unsigned field, std::string_view pairs) {
    LineCaptions decoder;
    Templates::vector<CaptionRow> rows;
    auto const bytes = hex(pairs);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        decoder.take(field, {withOddParity(bytes[i]), withOddParity(bytes[i + 1])}, rows);
    decoder.finish(rows);
    std::vector<std::string> texts;
    for (auto const& row : rows)
        texts.push_back(std::to_string(row.channel) + ": " + Platform::toUtf8(row.text));
    return texts;
}

using Texts = std::vector<std::string>;

} // namespace

TEST(LineCaptions, AreRowsOfText) {
    // Codes come twice. Pop on: row 15, then row 14, which stands above it, with a note and "E" become "é".
    EXPECT_EQ(
        captionsOf(1, "1420 1420 1460 1460 4142 1440 1440 1137 1137 4500 1221 1221 142F 142F 142C 142C"),
        Texts({"1: \xE2\x99\xAA\xC3\x89", "1: AB"}));
    EXPECT_EQ(captionsOf(1, "1C29 4142 1429 4344 1C2C"), Texts({"2: AB", "1: CD"}));
    // Roll up by two rows, on channel 2 of field 2; the last row never ends.
    EXPECT_EQ(captionsOf(2, "1D25 1D25 1D2D 4869 1D2D 1D2D 2179 1D21 1D21 6F00"), Texts({"4: Hi", "4: !o"}));
    EXPECT_EQ(captionsOf(1, "142A 4142 1429 1429 4344"), Texts({"1: CD"})) << "text channels are left out";
    EXPECT_EQ(captionsOf(2, "1529 4142 0103 5858 0F10 5959"), Texts({"3: ABYY"})) << "as are other data";
    std::string many = "1429";
    for (int i = 0; i < 100; ++i)
        many += "4142";
    EXPECT_EQ(captionsOf(1, many).at(0).size(), 3 + LineCaptions::mostColumns);

    Templates::vector<CaptionRow> rows;
    LineCaptions decoder;
    decoder.take(1, {0x94, 0x29}, rows);
    decoder.take(1, {0x41, 0xC1}, rows);
    decoder.finish(rows);
    EXPECT_EQ(rows, (Templates::vector<CaptionRow>{{1, u"\u2588A"}})) << "wrong parity";
    EXPECT_THROW(decoder.take(0, {0, 0}, rows), Exceptions::InvalidValue);
}

} // namespace MXF::Zelm::Test
