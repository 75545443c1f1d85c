/// All value types through the factory: golden bytes and text, both ways.
#include "MXF/Zelm/Types/BaseTypeFactory.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/J2KTypes.h"
#include "MXF/Zelm/Types/LocalTag.h"
#include "MXF/Zelm/Types/RGBALayout.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/References.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UMID.h"
#include "MXF/Zelm/Types/UniversalLabel.h"
#include "MXF/Zelm/Types/Versions.h"

#include "MXF/Zelm/Platform/Text.h"
#include "support/Bytes.h"

#include <set>

namespace MXF::Zelm::Test {

using namespace Types;
namespace Id = Types::Identifiers;
using Id::Identifier;

namespace {

Factories::BaseTypeFactory& factory() { return Factories::BaseTypeFactory::instance(); }

/// A value of some bytes with its source.
struct InMemory {
    explicit InMemory(Bytes bytes) : source(std::move(bytes)), value(source, source.remaining()) {}
    DataIO::Memory::MemoryDataSource source;
    KLV::Value value;
};

struct Row {
    Identifier type;
    const char* bytes;
    std::u16string text;
};

constexpr auto umid =
    u"urn:smpte:umid:060a2b34.01010105.01010d20.13000000.00112233.44554677.8899aabb.ccddeeff";
constexpr auto umidBytes = "060A2B34.01010105.01010D20.13000000.00112233.44554677.8899AABB.CCDDEEFF";
std::string const extended = std::string(umidBytes) + std::string(64, '5');

/// Bytes and text belong together in both directions.
Row const rows[] = {
    {Id::Int8, "80", u"-128"},
    {Id::Int8, "7F", u"127"},
    {Id::Int16, "FF FE", u"-2"},
    {Id::Int32, "80 00 00 00", u"-2147483648"},
    {Id::Int64, "80 00 00 00 00 00 00 00", u"-9223372036854775808"},
    {Id::Int64, "7F FF FF FF FF FF FF FF", u"9223372036854775807"},
    {Id::UInt8, "FF", u"255"},
    {Id::UInt16, "01 02", u"258"},
    {Id::UInt32, "FF FF FF FF", u"4294967295"},
    {Id::UInt64, "FF FF FF FF FF FF FF FF", u"18446744073709551615"},
    {Id::Boolean, "00", u"false"},
    {Id::Boolean, "01", u"true"},
    {Id::ISO7String, "65 6E", u"en"},
    {Id::ISO7String, "", u""},
    {Id::UTF16String, "00 49 00 41 00 42", u"IAB"},
    {Id::UTF16String, "D8 3D DE 00", u"\U0001F600"},
    {Id::UTF16String, "", u""},
    {Id::Rational, "00 00 75 30 00 00 03 E9", u"30000/1001"},
    {Id::Rational, "FF FF FF FF 00 00 00 00", u"-1/0"},
    {Id::Timestamp, "07 E8 09 0A 15 34 0C 69", u"2024-09-10T21:52:12.420Z"},
    {Id::Timestamp, "00 00 00 00 00 00 00 00", u"unknown"},
    {Id::Position, "FF FF FF FF FF FF FF FF", u"-1"},
    {Id::Length, "00 00 00 00 00 00 00 10", u"16"},
    {Id::ProductVersion, "00 02 00 07 00 03 00 00 00 01", u"2.7.3.0 released"},
    {Id::ProductVersion, "00 00 00 00 00 00 00 00 00 05", u"0.0.0.0 private build"},
    {Id::ProductVersion, "FF FF 00 00 00 00 00 00 00 09", u"65535.0.0.0 9"},
    {Id::VersionType, "01 03", u"1.3"},
    {Id::UUID, "00112233.44554677.8899AABB.CCDDEEFF", u"urn:uuid:00112233-4455-4677-8899-aabbccddeeff"},
    {Id::UMID32, umidBytes, umid},
    {Id::UMID64, extended.c_str(),
     std::u16string(umid) + u".55555555.55555555.55555555.55555555.55555555.55555555.55555555.55555555"},
    {Id::UniversalLabel, "060E2B34.0401010D.0D010301.02060100",
     u"urn:smpte:ul:060e2b34.0401010d.0d010301.02060100"},
    {Id::UniversalLabel, "8899AABB.CCDDEEFF.00112233.44554677",
     u"urn:uuid:8899aabb-ccdd-eeff-0011-223344554677"},
    {Id::LocalTag, "3C 0A", u"3C.0A"},
    {Id::StrongReference, "00112233.44554677.8899AABB.CCDDEEFF",
     u"urn:uuid:00112233-4455-4677-8899-aabbccddeeff"},
    {Id::WeakReference, "00112233.44554677.8899AABB.CCDDEEFF",
     u"urn:uuid:00112233-4455-4677-8899-aabbccddeeff"},
    {Id::RGBALayout, "52 0C 47 0C 42 0C 46 04 00 00 00 00 00 00 00 00", u"R:12 G:12 B:12 F:4"},
    {Id::RGBALayout, "D8 0C 30 08 00 01 20 02 00 00 00 00 00 00 00 00", u"0xD8:12 0:8 0x00:1 0x20:2"},
    {Id::RGBALayout, "59 08 59 08 59 08 59 08 59 08 59 08 59 08 59 FF", u"Y:8 Y:8 Y:8 Y:8 Y:8 Y:8 Y:8 Y:255"},
    {Id::RGBALayout, "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", u"none"},
    {Id::Orientation, "07", u"7"},
    {Id::SignalStandard, "04", u"4"},
    {Id::DataStream, "00 01", u"0x0001"},
    {Id::DataValue, "DE AD", u"0xDEAD"},
    {Id::DataValue, "", u"0x"},
    {Id::Unknown, "FF", u"0xFF"},
    {Id::J2KCodingStyleDefault, "01 04 00 01 01 06 03 03 00 00 77 88",
     u"Scod=01 order=CPRL layers=1 mct=1 levels=6 xcb=3 ycb=3 style=00 transform=9-7 precincts=77.88"},
    {Id::J2KCodingStyleDefault, "01 05 00 01 01 06 03 03 00 00", u"0x01050001010603030000"}, // no such order
    {Id::J2KCodingStyleDefault, "01 04", u"0x0104"},
    {Id::J2KPictureComponent, "0B 01 02", u"12 bit unsigned 1x2"},
    {Id::J2KPictureComponent, "A5 FF 01", u"38 bit signed 255x1"},
    {Id::J2KQuantisationDefault, "22 00 01 7F 1E", u"style=2 guard=1 steps=0001.7F1E"},
    {Id::J2KQuantisationDefault, "40 90 98", u"style=0 guard=2 steps=90.98"},
    {Id::J2KQuantisationDefault, "22 00", u"0x2200"}, // half a step
};

} // namespace

TEST(Values, HaveGoldenBytesAndTextsBothWays) {
    std::set<int> seen;
    for (auto const& row : rows) {
        Bytes const bytes = hex(row.bytes);
        InMemory in(bytes);
        auto const read = factory().create(row.type, in.value);
        std::string const what = std::string(Id::toText(row.type)) + " " + Platform::toUtf8(row.text);
        EXPECT_TRUE(in.value.endOfStream()) << what;
        EXPECT_EQ(read->identifier(), row.type) << what;
        EXPECT_EQ(read->toString(), row.text) << what;
        EXPECT_TRUE(sameBytes(written(*read), bytes)) << what;
        EXPECT_EQ(read->serializedSize(), bytes.size()) << what;
        EXPECT_TRUE(*factory().create(row.type, row.text) == *read) << what;
        EXPECT_TRUE(*read->clone() == *read && *read->copy() == *read) << what;
        EXPECT_TRUE(seen.count(row.type) == 1 || !(*factory().create(row.type) == *read) || bytes.empty() ||
                    bytes == Bytes(bytes.size(), 0))
            << what;
        seen.insert(row.type);
        std::size_t const wire = factory().wireSize(row.type);
        if (wire != 0) { // a byte less is refused
            EXPECT_EQ(bytes.size(), wire) << what;
            InMemory cut(Bytes(bytes.begin(), bytes.end() - 1));
            EXPECT_THROW(factory().create(row.type, cut.value), Exceptions::InvalidLength) << what;
        }
        EXPECT_EQ(Id::fromText(Id::toText(row.type)), row.type);
    }
    EXPECT_EQ(seen.size(), static_cast<std::size_t>(Id::Array)) << "a type has no row";
    EXPECT_FALSE(Id::fromText("Int7"));
    for (auto const type : {Id::Array, Id::Batch, Identifier(200)})
        EXPECT_THROW(factory().create(type), Exceptions::InvalidType);
}

TEST(Values, ReadOtherTextsAndRefuseWrongOnes) {
    Row const alsoRead[] = {
        {Id::Boolean, "01", u"1"},
        {Id::Rational, "00 00 00 19 00 00 00 01", u"25"},
        {Id::Timestamp, "07 E8 02 1D 00 00 00 00", u"2024-02-29"},
        {Id::Timestamp, "07 E8 02 1D 17 3B 00 00", u"2024-02-29 23:59"},
        {Id::Timestamp, "07 E8 02 1D 17 3B 3B F9", u"2024-02-29T23:59:59.999"},
        {Id::LocalTag, "3C 0A", u"0x3c0a"},
        {Id::UUID, "00112233.44554677.8899AABB.CCDDEEFF", u"00112233-4455-4677-8899-AABBCCDDEEFF"},
        {Id::UUID, "00112233.44554677.8899AABB.CCDDEEFF", u"0x00112233445546778899AABBCCDDEEFF"},
        {Id::UniversalLabel, "060E2B34.0401010D.0D010301.02060100", u"1.3.52.4.1.1.13.13.1.3.1.2.6.1.0"},
        {Id::ProductVersion, "00 01 00 02 00 03 00 04 00 00", u"1.2.3.4"},
    };
    for (auto const& row : alsoRead)
        EXPECT_TRUE(sameBytes(written(*factory().create(row.type, row.text)), hex(row.bytes)))
            << Platform::toUtf8(row.text);

    struct {
        Identifier type;
        std::vector<std::u16string> texts;
    } const wrong[] = {
        {Id::Int8, {u"", u"128", u"-129", u"1 ", u"+1", u"--1", u"x", u"0x1"}},
        {Id::UInt8, {u"256", u"-1", u"-0"}},
        {Id::UInt64, {u"18446744073709551616", u"99999999999999999999999"}},
        {Id::Int64, {u"9223372036854775808", u"-9223372036854775809"}},
        {Id::Boolean, {u"", u"TRUE", u"2"}},
        {Id::Rational, {u"", u"/1", u"1/", u"1/2/3", u"2147483648/1"}},
        {Id::Timestamp,
         {u"", u"2024", u"2024-13-01", u"2024-00-01", u"2024-01-32", u"2024-01-01T24:00", u"2024-01-01T00:60",
          u"2024-01-01T00:00:60", u"2024-01-01T00:00:00.1234"}},
        {Id::ProductVersion, {u"1.2.3", u"1.2.3.65536", u"1.2.3.4 final", u"1.2.3.4 released "}},
        {Id::VersionType, {u"1", u"1.256", u"1.2.3"}},
        {Id::UUID,
         {u"", u"00112233-4455-4677-8899-AABBCCDDEEF", u"urn:smpte:ul:060e2b34.0401010d.0d010301.02060100"}},
        {Id::UMID32, {u"", u"urn:uuid:00112233-4455-4677-8899-aabbccddeeff"}},
        {Id::LocalTag, {u"", u"3C", u"3C.0", u"3C.0A0", u"3G0A", u"0x"}},
        {Id::RGBALayout,
         {u"R", u"R:", u"R:256", u"R:8  G:8", u"0xG0:1", u"\u00E9:8",
          u"R:1 R:1 R:1 R:1 R:1 R:1 R:1 R:1 R:1"}},
        {Id::DataValue, {u"", u"DEAD", u"0xD", u"0xDX"}},
        {Id::ISO7String, {u"\u0080"}},
        {Id::J2KPictureComponent,
         {u"", u"0 bit signed 1x1", u"39 bit signed 1x1", u"12 bit 1x1", u"12 bit unsigned 1x256"}},
    };
    for (auto const& row : wrong)
        for (auto const& text : row.texts)
            EXPECT_THROW(factory().create(row.type, text), Exceptions::BaseException)
                << Id::toText(row.type) << " " << Platform::toUtf8(text);
    EXPECT_EQ(thrownBy<Exceptions::InvalidFormat>([] { factory().create(Id::UInt8, u"256"); }),
              "'256' is not a value of type UInt8");
    EXPECT_THROW(factory().create(Id::J2KPictureComponent, u"39 bit signed 1x1"), Exceptions::InvalidFormat);
}

TEST(Values, KeepBytesThatAreNoneOfTheirs) {
    struct {
        Identifier type;
        const char* bytes;
        std::u16string text;
    } const odd[] = {
        {Id::Boolean, "FE", u"true"},
        {Id::UTF16String, "00 41 00 00 00 42 43", u"A"}, // text behind the end, an odd byte
        {Id::ISO7String, "41 FF 00 42", u"A\uFFFD"},
        {Id::Timestamp, "FF FF 0D 20 18 3C 3C FF", u"-001-13-32T24:60:60.1020Z"},
        {Id::RGBALayout, "52 08 00 00 47 08 00 00 00 00 00 00 00 00 00 00", u"R:8"},
        {Id::J2KPictureComponent, "7F 00 00", u"128 bit unsigned 0x0"},
    };
    for (auto const& row : odd) {
        InMemory in(hex(row.bytes));
        auto const value = factory().create(row.type, in.value);
        EXPECT_EQ(value->toString(), row.text);
        EXPECT_TRUE(sameBytes(written(*value), hex(row.bytes)));
    }
}

TEST(Values, HaveAccessors) {
    Timestamp const time(2024, 9, 10, 21, 52, 12, 423);
    EXPECT_EQ(time.millisecond(), 420u);
    EXPECT_EQ(time.year(), 2024);
    EXPECT_EQ(Timestamp(2024, 1, 1, 0, 0, 0, 999).millisecond(), 996u);
    EXPECT_THROW(Timestamp(2024, 1, 1, 0, 0, 60, 0), Exceptions::InvalidValue);
    EXPECT_TRUE(Timestamp::now().isKnown());
    EXPECT_GE(Timestamp::now().year(), 2024);
    EXPECT_FALSE(Position(-1).isKnown());
    EXPECT_TRUE(Length(0).isKnown());
    EXPECT_THROW(ISO7String("\xC3\xA9"), Exceptions::InvalidValue);
    EXPECT_THROW(RGBALayout(std::vector<RGBALayout::Component>(9)), Exceptions::InvalidLength);
    InMemory style(hex("01 04 00 05 01 06 03 03 00 01"));
    J2KCodingStyleDefault const coding(style.value);
    EXPECT_EQ(coding.progressionOrder(), "CPRL");
    EXPECT_EQ(coding.layers(), 5u);
    EXPECT_EQ(coding.decompositionLevels(), 6u);
    EXPECT_TRUE(coding.isReversible());
    EXPECT_EQ(J2KCodingStyleDefault().layers() + J2KQuantisationDefault().style(), 0u);
    J2KQuantisationDefault const quantisation(hex("42"));
    EXPECT_EQ(quantisation.style(), 2u);
    EXPECT_EQ(quantisation.guardBits(), 2u);
    UniversalLabel const label(KLV::fillItemKey());
    EXPECT_EQ(label.key(), KLV::fillItemKey());
    EXPECT_TRUE(Rational(50, 2).value() == Rational(25, 1).value());
    EXPECT_FALSE(Rational(50, 2) == Rational(25, 1)); // values compare by their bytes
}

TEST(Identifiers, AreGeneratedNewEachTime) {
    std::set<UUID> uuids;
    for (int i = 0; i < 1000; ++i) {
        UUID const uuid = UUID::generate();
        EXPECT_EQ(uuid[6] >> 4, 4);
        EXPECT_EQ(uuid[8] >> 6, 2);
        uuids.insert(uuid);
    }
    EXPECT_EQ(uuids.size(), 1000u);
    UMID32 const one = UMID32::generate(UMIDMaterialType::Mixed);
    EXPECT_TRUE(sameBytes(Bytes(one.rawBuffer(), one.rawBuffer() + 16),
                          hex("06 0A 2B 34 01 01 01 05 01 01 0D 20 13 00 00 00")));
    EXPECT_NE(one, UMID32::generate(UMIDMaterialType::Mixed));
    EXPECT_EQ(one.materialType(), UMIDMaterialType::Mixed);
    EXPECT_EQ(one.materialNumber()[6] >> 4, 4);
    EXPECT_EQ(one.instanceNumber(), 0u);
    UMID64 const whole(one);
    EXPECT_EQ(whole[12], 0x33);
    EXPECT_EQ(whole.basic(), one);
    EXPECT_TRUE(UMID32().isNull() && UUID().isNull());
}

namespace {

/// Tells which operation was called.
struct Named : Visitors::Visitor {
    void visit(UInt8 const&) override { name = "UInt8"; }
    void visit(Batch const&) override { name = "Batch"; }
    void visitOther(BaseType const& value) override {
        name = "other " + std::string(Id::toText(value.identifier()));
    }
    std::string name;
};
struct Doubling : Visitors::NonConstVisitor {
    void visit(UInt8& value) override { value.value(static_cast<std::uint8_t>(value * 2)); }
};

} // namespace

TEST(Values, AcceptVisitors) {
    Named visitor;
    for (unsigned type = 0; type < Id::Array; ++type) {
        factory().create(Identifier(type))->accept(visitor);
        EXPECT_EQ(visitor.name,
                  (type == Id::UInt8 ? "" : "other ") + std::string(Id::toText(Identifier(type))));
    }
    factory().createCollection(Id::Batch, Id::UInt8)->accept(visitor);
    EXPECT_EQ(visitor.name, "Batch");
    UInt8 number(21);
    Doubling doubling;
    static_cast<BaseType&>(number).accept(doubling);
    EXPECT_EQ(number.value(), 42);
    UInt16 other(21);
    static_cast<BaseType&>(other).accept(doubling);
    EXPECT_EQ(other.value(), 21);
    EXPECT_EQ(valueCast<UInt8>(&other), nullptr);
    EXPECT_EQ(valueCast<UInt16>(&other), &other);
}

TEST(Collection, IsReadAndWritten) {
    Bytes const bytes = hex(R"(
        00 00 00 02  00 00 00 04   # count, item size
        00 00 00 17  00 00 01 4A
    )");
    InMemory in(bytes);
    auto const lines = factory().createCollection(Id::Array, Id::Int32, in.value);
    ASSERT_EQ(lines->count(), 2u);
    EXPECT_EQ(lines->at<Int32>(1).value(), 330);
    EXPECT_EQ(lines->toString(), u"[23][330]");
    EXPECT_TRUE(sameBytes(written(*lines), bytes));
    EXPECT_EQ(lines->serializedSize(), bytes.size());
    EXPECT_TRUE(*lines->copy() == *lines);
    InMemory again(bytes);
    EXPECT_FALSE(*factory().createCollection(Id::Batch, Id::Int32, again.value) == *lines);

    Array array(Id::Int32);
    EXPECT_TRUE(sameBytes(written(array), hex("00 00 00 00 00 00 00 04")));
    array.add(Int32(5));
    array.add(Int32(6));
    array.set(0, Int32(7));
    EXPECT_TRUE(array.contains(Int32(7)) && !array.contains(Int32(5)));
    array.remove(0);
    EXPECT_TRUE(sameBytes(written(array), hex("00 00 00 01 00 00 00 04 00 00 00 06")));
    EXPECT_EQ(thrownBy([&] { array.at(1); }), "Trying to access a element beyond the end of data");
    EXPECT_THROW(array.add(UInt32(5)), Exceptions::InvalidType);
    EXPECT_THROW(array.at<UInt32>(0), Exceptions::InvalidType);
    EXPECT_THROW(Array{Id::Batch}, Exceptions::InvalidType);
    EXPECT_THROW(factory().createCollection(Id::UInt8, Id::UInt8), Exceptions::InvalidType);

    for (auto const* const empty : {"00 00 00 00 00 00 00 10", "00 00 00 00 00 00 00 00"}) { // both are seen
        InMemory none(hex(empty));
        EXPECT_TRUE(
            sameBytes(written(*factory().createCollection(Id::Batch, Id::UUID, none.value)), hex(empty)));
    }
}

TEST(Collection, HoldsCountsAgainstTheBytesThatAreThere) {
    struct {
        Identifier subType;
        const char* bytes;
        std::uint64_t length; // of the value; 0: what is there
    } const hostile[] = {
        {Id::UInt8, "00 00 00", 0},
        {Id::UInt8, "FF FF FF FF 00 00 00 01 00", 0},
        {Id::UInt8, "FF FF FF FF FF FF FF FF 00", 0},
        {Id::UInt8, "FF FF FF FF 00 00 00 00 00", 0},          // no item size
        {Id::Int32, "00 00 00 01 00 00 00 02 00 00 00 00", 0}, // another item size
        {Id::Int32, "00 00 00 01 00 00 00 08 00 00 00 00 00 00 00 00", 0},
        {Id::UInt8, "FF FF FF FF 00 00 00 01 00", 1ull << 40}, // a length that lies
        {Id::DataValue, "FF FF FF FF 00 00 00 01 00", 1ull << 40},
        {Id::UUID, "0F FF FF FF 00 00 00 10 00", 1ull << 40},
    };
    for (auto const& row : hostile) {
        DataIO::Memory::MemoryDataSource source(hex(row.bytes));
        KLV::Value value(source, row.length != 0 ? row.length : source.remaining());
        Batch batch(row.subType);
        batch.add(*factory().create(row.subType));
        EXPECT_THROW(batch.load(value), Exceptions::InvalidLength) << row.bytes;
        EXPECT_EQ(batch.count(), 1u) << "the old items are kept";
    }
}

} // namespace MXF::Zelm::Test
