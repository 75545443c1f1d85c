#include "MXF/Zelm/KLV/Key.h"

#include "MXF/Zelm/KLV/Value.h"
#include "support/Bytes.h"

#include <sstream>

namespace MXF::Zelm::Test {

using KLV::Key;
using Encoding = Types::StringRepresentationEncodingType;
using namespace KLV::Literals;

namespace {

constexpr Key preface = "060E2B34.02530101.0D010101.01012F00"_key;

struct Predicate {
    const char* name;
    bool (*holds)(Key const&);
};
constexpr Predicate predicates[] = {
    {"local set", KLV::isLocalSet},
    {"default local set", KLV::isMXFDefaultLocalSet},
    {"fixed pack", KLV::isFixedPack},
    {"structural", KLV::isStructuralMetadataSet},
    {"descriptive", KLV::isDescriptiveMetadataSet},
    {"metadata set", KLV::isMetadataSet},
    {"index segment", KLV::isIndexTableKlvSegment},
    {"fill", KLV::isFillItem},
    {"essence", KLV::isEssence},
};

std::string namesOfWhatHolds(Key const& key) {
    std::string names;
    for (auto const& predicate : predicates)
        if (predicate.holds(key))
            names += std::string(names.empty() ? "" : ", ") + predicate.name;
    return names;
}

} // namespace

TEST(Key, IsClassifiedByItsBytes) {
    struct {
        Key key;
        const char* what;
    } const rows[] = {
        {preface, "local set, default local set, structural, metadata set"},
        {"060E2B34.02530105.0D010101.01012F00"_key, "local set, default local set"}, // byte 7
        {"060E2B34.02530101.0D010101.0102FF00"_key, "local set, default local set, structural, metadata set"},
        {"060E2B34.02530101.0D010101.01012F01"_key, "local set, default local set"}, // byte 15
        {"060E2B34.02130101.0D010101.01012F00"_key, "local set"},                    // BER lengths
        {"060E2B34.01530101.0D010101.01012F00"_key, ""},                             // no group
        {"060E2B34.02530101.0D010401.01010100"_key,
         "local set, default local set, descriptive, metadata set"},
        {"060E2B34.02130101.0D010401.FFFFFFFF"_key, "local set, descriptive, metadata set"},
        {"060E2B34.02530101.0D010201.01100100"_key, "local set, default local set, index segment"},
        {"060E2B34.02530101.0D010201.01100000"_key, "local set, default local set, index segment"},
        {"060E2B34.02530101.0D010201.01100200"_key, "local set, default local set"},
        {"060E2B34.02530101.0D010201.01100101"_key, "local set, default local set"},
        {"060E2B34.01010101.03010210.01000000"_key, "fill"},
        {"060E2B34.010101FF.03010210.01000000"_key, "fill"}, // any version
        {"060E2B34.01010201.03010210.01000000"_key, ""},
        {"060E2B34.01010101.03010210.01000001"_key, ""},
        {"060E2B34.01020101.0D010301.15010500"_key, "essence"},
        {"060E2B34.01020102.0D010301.15010500"_key, ""}, // essence of another version
        {"060E2B34.02050101.0D010301.04010100"_key, "fixed pack, essence"},
        {"060E2B34.02430101.0D010301.04010200"_key, "local set, essence"},
        {"060E2B34.02630101.0D010301.14020000"_key, "local set, essence"},
        {"060E2B34.02040101.0D010301.04010100"_key, ""}, // variable-length pack
        {"060E2B34.02D30101.0D010301.04010100"_key, ""}, // bit 7 of byte 5
        {"060E2B34.02050101.0D010201.01020400"_key, "fixed pack"},
        {Key(), ""},
    };
    for (auto const& row : rows)
        EXPECT_EQ(namesOfWhatHolds(row.key), row.what) << row.key;
    EXPECT_TRUE(KLV::isFillItem(KLV::fillItemKey()));
    EXPECT_EQ(&KLV::fillItemKey(), &KLV::fillItemKey());
    EXPECT_EQ(KLV::fillItemKey(), Key(KLV::FILL_ITEM_PACK_KEY));
}

TEST(Key, TellsTheWidthsOfTagsAndLengths) {
    struct {
        unsigned char coding;
        unsigned tag, length;
    } const rows[] = {{0x53, 2, 2}, {0x13, 2, 0}, {0x33, 2, 1}, {0x73, 2, 4}, {0x63, 1, 4}, {0x7B, 4, 4},
                      {0x03, 1, 0}, {0x0B, 1, 0}, {0x1B, 4, 0}, {0x5B, 4, 2}, {0x05, 0, 0}, {0xD3, 0, 0}};
    for (auto const& row : rows) {
        Key key = preface;
        key[5] = row.coding;
        EXPECT_EQ(key.localTagFieldLength(), row.tag) << +row.coding;
        EXPECT_EQ(key.lengthFieldLength(), row.length) << +row.coding;
    }
    Key const essence = "060E2B34.01530101.0D010301.15010500"_key; // byte 4 is not 02
    EXPECT_EQ(essence.localTagFieldLength(), 0u);
    EXPECT_EQ(essence.lengthFieldLength(), 0u);
}

TEST(Key, IsOrderedByItsFirstDifferentByte) {
    Key later = preface;
    later[7] = 0xFF;
    EXPECT_NE(later, preface);
    EXPECT_LT(preface, later);
    later[6] = 0x00;
    EXPECT_LT(later, preface);
    EXPECT_TRUE(KLV::equalButForVersion("060E2B34.02530105.0D010101.01012F00"_key, preface));
    EXPECT_FALSE(KLV::equalButForVersion("060E2B34.02530101.0D010101.01012F01"_key, preface));
    EXPECT_EQ(Key::size(), 16u);
    EXPECT_EQ(preface.serializedSize(), 16u);
}

TEST(Key, IsReadFromAValue) {
    DataIO::Memory::MemoryDataSource source(Bytes(preface.rawBuffer(), preface.rawBuffer() + 16) +
                                            hex("01 02"));
    KLV::Value value(source, 18);
    EXPECT_EQ(Key(value), preface);
    EXPECT_EQ(thrownBy<Exceptions::InvalidLength>([&] { Key key(value); }), "Invalid data size in Value");
}

TEST(Key, HasTextForms) {
    struct {
        Encoding encoding;
        std::u16string text;
    } const rows[] = {
        {Encoding::PlainHexadecimal, u"0x060E2B34025301010D01010101012F00"},
        {Encoding::SeparatedHexadecimal, u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00"},
        {Encoding::URN, u"urn:smpte:ul:060e2b34.02530101.0d010101.01012f00"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(preface.toString(row.encoding), row.text);
        EXPECT_EQ(Key(row.text, row.encoding), preface);
    }
    EXPECT_EQ(Key(u"0x060e2B34025301010d01010101012f00", Encoding::PlainHexadecimal), preface);
    EXPECT_EQ(Key(u"06-0e 2B_34z02.53.01.01.0D.01.01.01.01.01.2F.00", Encoding::SeparatedHexadecimal),
              preface);
    std::ostringstream out;
    out << preface;
    EXPECT_EQ(out.str(), "06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00");
    EXPECT_EQ(thrownBy([] { Key(u"1.3.52.2.83", Encoding::OID); }),
              "Don't know how to initialize Key in the given string representation format");
    EXPECT_EQ(thrownBy([] { preface.toString(Encoding::OID); }),
              "Don't know how to represent Key in the given string representation format");
}

TEST(FixedLengthIdentificationType, RefusesTextsThatAreWrong) {
    constexpr auto plain = Encoding::PlainHexadecimal;
    constexpr auto separated = Encoding::SeparatedHexadecimal;
    constexpr auto none = "Not enough data";
    constexpr auto noDigit = "Label contains non Hexadecimal characters";
    constexpr auto no0x = "Expecting 0x in the start of the plain hexadecimal string representation";
    constexpr auto notThisForm =
        "Can't retrieve in the requested type for the given StringRepresentationEncodingType";
    std::u16string const oid = u"1.3.52.2.83.1.1.13.1.1.1.1.1.47";
    struct {
        Encoding encoding;
        std::u16string text;
        const char* message;
    } const rows[] = {
        {plain, u"", none},
        {plain, u"0x", none},
        {plain, u"0x060E2B34025301010D01010101012F0", none},
        {plain, u"0x060E2B34025301010D01010101012F0000", none},
        {plain, u"060E2B34025301010D01010101012F0000", no0x},
        {plain, u"0x060E2B34025301010D01010101012F0G", noDigit},
        {separated, u"", none},
        {separated, u"06.0E.2B.34", none},
        {separated, u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00.", none},
        {separated, u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2FA00",
         "Expections an separator that was not a hexadecimal character"},
        {separated, u"06.0E.2B.34.02.5x.01.01.0D.01.01.01.01.01.2F.00", noDigit},
        {Encoding::OID, u"", none},
        {Encoding::OID, u"1.3", none},
        {Encoding::OID, u"1.3.52", none},
        {Encoding::OID, oid, none},
        {Encoding::OID, oid + u".", none},
        {Encoding::OID, oid + u".256", "OID contains values not in [0 - 255]."},
        {Encoding::OID, oid + u".99999999999999999999", "OID contains values not in [0 - 255]."},
        {Encoding::OID, oid + u".-1", "OID contains values not in [0 - 255]."},
        {Encoding::OID, oid + u".0.0", "OID contains more elements than expected"},
        {Encoding::OID, u"1.3.53" + oid.substr(6) + u".0",
         "OID contains initial values not according to type"},
        {Encoding::OID, u"2", "OID contains initial values not according to type"},
        {Encoding::URN, u"urn:uuid:060e2b34.02530101.0d010101.01012f00", notThisForm},
        {Encoding::URN, u"urn:smpte:ul:060e2b34.02530101.0d010101.01012f", none},
        {Encoding(99), u"0x", notThisForm},
    };
    for (auto const& row : rows) {
        unsigned char bytes[16] = {0xEE};
        EXPECT_EQ(thrownBy([&] {
                      KLV::identificationFromText(row.text, bytes, 16, KLV::IdentificationKind::Label,
                                                  row.encoding);
                  }),
                  row.message);
        EXPECT_EQ(bytes[0], 0xEE); // nothing is changed
    }
    unsigned char bytes[16];
    KLV::identificationFromText(oid + u".0", bytes, 16, KLV::IdentificationKind::Label, Encoding::OID);
    EXPECT_EQ(Key(bytes), preface);
    EXPECT_EQ(KLV::identificationToText(bytes, 16, KLV::IdentificationKind::Label, Encoding::OID),
              oid + u".0");
    constexpr auto notExpressible =
        "Can't represent the requested type in the given StringRepresentationEncodingType";
    EXPECT_EQ(
        thrownBy([&] { KLV::identificationToText(bytes, 16, KLV::IdentificationKind::Uuid, Encoding::OID); }),
        notExpressible);
    bytes[0] = 0x07; // no SMPTE label
    EXPECT_EQ(thrownBy([&] {
                  KLV::identificationToText(bytes, 16, KLV::IdentificationKind::Label, Encoding::OID);
              }),
              notExpressible);
}

} // namespace MXF::Zelm::Test
