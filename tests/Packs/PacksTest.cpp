#include "MXF/Zelm/Packs/PartitionPack.h"
#include "MXF/Zelm/Packs/PrimerPack.h"
#include "MXF/Zelm/Packs/RandomIndexPack.h"

#include "support/Bytes.h"

namespace MXF::Zelm::Test {

using Packs::PartitionPack;
using Packs::PrimerPack;
using Packs::RandomIndexPack;
using Types::LocalTag;
using Types::UniversalLabel;
using namespace KLV::Literals;

namespace {

Bytes const partitionValue = hex(R"(
    00 01  00 03                # version 1.3
    00 00 02 00                 # KAG size
    00 00 00 00 00 01 00 00     # this partition
    00 00 00 00 00 00 80 00     # previous partition
    00 00 00 01 00 00 00 00     # footer partition
    00 00 00 00 00 00 12 34     # header byte count
    00 00 00 00 00 00 05 67     # index byte count
    00 00 00 81                 # index SID
    00 00 00 02 00 00 00 07     # body offset
    00 00 00 01                 # body SID
    060E2B34.04010101.0D010201.01010900
    00 00 00 01  00 00 00 10    # one essence container
    060E2B34.04010102.0D010301.02060100
)");
constexpr KLV::Key bodyKey = "060E2B34.02050101.0D010201.01030400"_key;
constexpr KLV::Key labelA = "060E2B34.01010101.01011502.00000000"_key;
constexpr KLV::Key labelB = "060E2B34.01010102.06010104.02010000"_key;
constexpr KLV::Key labelC = "060E2B34.01010105.06010104.02010000"_key; // B in another version

template <class Pack>
Pack parse(Bytes const& bytes) {
    OnePacket in(bytes);
    return Pack(*in);
}

Templates::auto_ptr<Types::Batch> labels() {
    return std::make_unique<Types::Batch>(Types::Identifiers::UniversalLabel);
}

} // namespace

TEST(PartitionPack, IsReadAndWrittenByteForByte) {
    for (unsigned char const berLength : hex("02 04 09")) {
        Bytes const bytes = klv(bodyKey, partitionValue, berLength);
        auto const pack = parse<PartitionPack>(bytes);
        EXPECT_TRUE(sameBytes(written(pack), bytes));
        EXPECT_EQ(pack.serializedSize(), bytes.size());
        EXPECT_EQ(pack.berLength(), berLength);
    }
    auto const pack = parse<PartitionPack>(klv(bodyKey, partitionValue + hex("EE EE"))); // stays unread
    EXPECT_EQ(pack.key(), bodyKey);
    EXPECT_EQ(pack.majorVersion(), 1);
    EXPECT_EQ(pack.minorVersion(), 3);
    EXPECT_EQ(pack.kagSize(), 512u);
    EXPECT_EQ(pack.thisPartition(), 0x10000u);
    EXPECT_EQ(pack.previousPartition(), 0x8000u);
    EXPECT_EQ(pack.footerPartition(), 0x100000000u);
    EXPECT_EQ(pack.headerByteCount(), 0x1234u);
    EXPECT_EQ(pack.indexByteCount(), 0x567u);
    EXPECT_EQ(pack.indexSID(), 0x81u);
    EXPECT_EQ(pack.bodyOffset(), 0x200000007u);
    EXPECT_EQ(pack.bodySID(), 1u);
    EXPECT_EQ(pack.operationalPattern(), UniversalLabel("060E2B34.04010101.0D010201.01010900"_key));
    EXPECT_EQ(pack.essenceContainers().count(), 1u);
}

TEST(PartitionPack, StartsWithDefaultsAndIsSet) {
    PartitionPack pack(bodyKey, 512, 0x10000, 0x200000007,
                       UniversalLabel("060E2B34.04010101.0D010201.01010900"_key), labels());
    EXPECT_EQ(pack.berLength(), 4);
    EXPECT_EQ(pack.minorVersion(), 2);
    EXPECT_EQ(pack.previousPartition() + pack.footerPartition() + pack.headerByteCount() +
                  pack.indexByteCount() + pack.indexSID() + pack.bodySID(),
              0u);
    EXPECT_EQ(pack.serializedSize(), 16u + 4 + 80 + 8);
    PartitionPack const before = pack;
    pack.minorVersion(3);
    pack.previousPartition(0x8000);
    pack.footerPartition(0x100000000);
    pack.headerByteCount(0x1234);
    pack.indexByteCount(0x567);
    pack.indexSID(0x81);
    pack.bodySID(1);
    auto containers = labels();
    containers->add(UniversalLabel("060E2B34.04010102.0D010301.02060100"_key));
    pack.essenceContainers(std::move(containers));
    EXPECT_TRUE(sameBytes(written(pack), klv(bodyKey, partitionValue)));
    EXPECT_EQ(before.minorVersion(), 2); // a copy of its own
    EXPECT_THROW(pack.essenceContainers(nullptr), Exceptions::InvalidType);
    EXPECT_THROW(pack.essenceContainers(std::make_unique<Types::Batch>(Types::Identifiers::UUID)),
                 Exceptions::InvalidType);
}

TEST(PartitionPack, ValidatesItsKey) {
    auto const refused = [](KLV::Key const& key) {
        return [key] { parse<PartitionPack>(klv(key, partitionValue)); };
    };
    KLV::Key key = bodyKey;
    key[7] = 0x02;
    EXPECT_EQ(thrownBy<Exceptions::InvalidKey>(refused(key)), "The key is not a PartitionPack key");
    key = bodyKey;
    for (unsigned char const kind : hex("01 05")) {
        key[13] = kind;
        key[14] = 0x09; // the kind is checked first
        EXPECT_EQ(thrownBy<Exceptions::InvalidPartitionKind>(refused(key)),
                  "The key defines an invalid partition kind");
    }
    key = bodyKey;
    for (unsigned char const status : hex("00 05 11")) {
        key[14] = status;
        EXPECT_EQ(thrownBy<Exceptions::InvalidPartitionStatus>(refused(key)),
                  "The key defines an invalid partition status");
        EXPECT_THROW(PartitionPack(key, 1, 0, 0, UniversalLabel(), labels()),
                     Exceptions::InvalidPartitionStatus);
    }
    key = bodyKey;
    key[15] = 0xFF; // not checked
    EXPECT_EQ(parse<PartitionPack>(klv(key, partitionValue)).key(), key);
}

TEST(PartitionPack, TellsKindAndStatusByItsKey) {
    PartitionPack pack = parse<PartitionPack>(klv(bodyKey, partitionValue));
    struct {
        unsigned char kind, status;
        PartitionPack::PartitionKind expected;
        bool open, complete;
    } const rows[] = {
        {2, 1, PartitionPack::Header, true, false},     {3, 2, PartitionPack::Body, false, false},
        {4, 3, PartitionPack::Footer, true, true},      {4, 4, PartitionPack::Footer, false, true},
        {0x11, 0, PartitionPack::Footer, false, false}, {3, 0x11, PartitionPack::Body, false, false},
    };
    for (auto const& row : rows) {
        KLV::Key key = bodyKey;
        key[13] = row.kind;
        key[14] = row.status;
        pack.key(key);
        EXPECT_EQ(pack.partitionKind(), row.expected);
        EXPECT_EQ(pack.isOpen(), row.open);
        EXPECT_EQ(pack.isComplete(), row.complete);
        if (row.kind < 5 && row.status < 5) {
            EXPECT_EQ(Packs::buildPartitionPackKey(row.expected, row.open, row.complete), key);
            EXPECT_EQ(Packs::buildPartitionPackKey(row.expected, PartitionPack::PartitionStatus(row.status)),
                      key);
        }
    }
    EXPECT_TRUE(Packs::isGenericStreamPartitionPack("060E2B34.02050101.0D010201.01031100"_key));
    EXPECT_FALSE(Packs::isGenericStreamPartitionPack(bodyKey));
    EXPECT_FALSE(Packs::isPartitionPack(PrimerPack::key()));
    EXPECT_FALSE(Packs::isPartitionPack(RandomIndexPack::key()));
}

TEST(Packs, SurviveEveryFault) {
    survivesEveryFault(klv(bodyKey, partitionValue, 9),
                       [](Bytes const& bytes) { parse<PartitionPack>(bytes); });
    survivesEveryFault(klv(PrimerPack::key(), hex("00 00 00 01 00 00 00 12 3C 0A") + repeated(16, 6), 9),
                       [](Bytes const& bytes) { parse<PrimerPack>(bytes); });
    survivesEveryFault(klv(RandomIndexPack::key(), repeated(12, 1) + hex("00 00 00 25"), 9),
                       [](Bytes const& bytes) { parse<RandomIndexPack>(bytes); });
    // Counts and a length that lie: nothing is allocated for them.
    KLV::Key const key = bodyKey;
    Bytes lying =
        Bytes(key.rawBuffer(), key.rawBuffer() + 16) + hex("87 01 00 00 00 00 00 00") + partitionValue;
    std::fill_n(lying.begin() + 16 + 8 + 80, 4, 0xFF);
    EXPECT_THROW(parse<PartitionPack>(lying), Exceptions::InvalidLength);
    EXPECT_THROW(parse<PrimerPack>(klv(PrimerPack::key(), hex("FF FF FF FF 00 00 00 12"))),
                 Exceptions::InvalidLength);
}

TEST(PrimerPack, IsReadAndWrittenInTheOrderOfItsTags) {
    PrimerPack primer;
    EXPECT_TRUE(sameBytes(written(primer), klv(PrimerPack::key(), hex("00 00 00 00 00 00 00 12"))));
    UniversalLabel const c("060E2B34.01010105.0E0B0102.01010000"_key);
    primer.add(LocalTag(0x8002), labelB);
    primer.add(LocalTag(0x3C0A), labelA);
    primer.add(LocalTag(0x8001), c);
    Bytes const bytes = klv(PrimerPack::key(), hex(R"(
        00 00 00 03  00 00 00 12
        3C 0A  060E2B34.01010101.01011502.00000000
        80 01  060E2B34.01010105.0E0B0102.01010000
        80 02  060E2B34.01010102.06010104.02010000
    )"));
    EXPECT_TRUE(sameBytes(written(primer), bytes));
    EXPECT_EQ(primer.serializedSize(), bytes.size());
    EXPECT_EQ(primer.at(1).first, LocalTag(0x8001));
    EXPECT_TRUE(sameBytes(written(static_cast<PrimerPack const&>(parse<PrimerPack>(bytes))), bytes));
    Bytes const wide = klv(PrimerPack::key(), Bytes(bytes.begin() + 20, bytes.end()), 9);
    EXPECT_TRUE(sameBytes(written(static_cast<PrimerPack const&>(parse<PrimerPack>(wide))), wide));
    EXPECT_EQ(thrownBy([&] { primer.at(3); }), "Trying to access an element beyond the end of the data");
    EXPECT_EQ(thrownBy([&] { primer.atDuplicates(0); }),
              "Trying to access an element beyond the end of the data");
    EXPECT_EQ(thrownBy<Exceptions::InvalidKey>([&] { parse<PrimerPack>(klv(bodyKey, {})); }),
              "Trying to create a Primer from a KLV with a invalid primerPack Key.");
}

TEST(PrimerPack, KeepsTheFirstMappingAndTheDuplicatesApart) {
    auto primer = parse<PrimerPack>(klv(PrimerPack::key(), hex(R"(
        00 00 00 04  00 00 00 00                    # an item size that is not looked at
        3C 0A  060E2B34.01010101.01011502.00000000  # A
        3C 0A  060E2B34.01010102.06010104.02010000  # B under the tag of A
        80 01  060E2B34.01010101.01011502.00000000  # A under another tag
        3C 0A  060E2B34.01010101.01011502.00000000  # A once more
    )")));
    EXPECT_EQ(primer.count(), 1u);
    ASSERT_EQ(primer.countDuplicates(), 3u);
    EXPECT_EQ(primer.atDuplicates(0), PrimerPack::Entry(LocalTag(0x3C0A), labelB));
    EXPECT_EQ(primer.atDuplicates(1), PrimerPack::Entry(LocalTag(0x8001), labelA));
    EXPECT_EQ(*primer.find(LocalTag(0x3C0A)), UniversalLabel(labelA));
    EXPECT_EQ(*primer.find(UniversalLabel(labelA)), LocalTag(0x3C0A));
    EXPECT_EQ(primer.find(LocalTag(0x8001)), nullptr);
    EXPECT_EQ(primer.find(UniversalLabel(labelB)), nullptr);
    EXPECT_EQ(written(primer).size(), 16u + 4 + 8 + 18);

    primer.add(LocalTag(0x8001), labelB);
    EXPECT_EQ(*primer.findOfAnyVersion(labelC), LocalTag(0x8001));
    EXPECT_EQ(primer.find(UniversalLabel(labelC)), nullptr);
    EXPECT_TRUE(primer.remove(labelA));
    EXPECT_FALSE(primer.remove(labelA));
    EXPECT_EQ(primer.find(LocalTag(0x3C0A)), nullptr);
    primer.add(LocalTag(0x3C0A), labelA); // free again
    EXPECT_EQ(primer.count(), 2u);
}

TEST(RandomIndexPack, IsWrittenInTheOrderOfItsOffsets) {
    RandomIndexPack rip;
    rip.add(1, 0x5000);
    rip.add(0, 0);
    Bytes const bytes = klv(RandomIndexPack::key(), hex(R"(
        00 00 00 00  00 00 00 00 00 00 00 00
        00 00 00 01  00 00 00 00 00 00 50 00
        00 00 00 30                              # 48 bytes in all
    )"));
    EXPECT_TRUE(sameBytes(written(rip), bytes));
    EXPECT_EQ(rip.serializedSize(), 48u);
    EXPECT_EQ(rip.valueLength(), 28u);
    Bytes const wide = klv(RandomIndexPack::key(), Bytes(bytes.begin() + 20, bytes.end() - 1) + hex("35"), 9);
    EXPECT_TRUE(sameBytes(written(static_cast<RandomIndexPack const&>(parse<RandomIndexPack>(wide))), wide));
    rip.add(1, 0x6000);
    EXPECT_EQ(rip.find(1), (std::vector<std::uint64_t>{0x5000, 0x6000}));
    EXPECT_TRUE(rip.find(7).empty());
    EXPECT_EQ(rip.sidIndexedMap().size(), 3u);

    rip.add(2, 0x6000); // the pair is in both maps; the offset keeps its first stream
    EXPECT_EQ(rip.find(2), (std::vector<std::uint64_t>{0x6000}));
    EXPECT_EQ(rip.offsetIndexedMap().at(0x6000), 1u);
    EXPECT_EQ(rip.size(), 3u);
    EXPECT_EQ(written(rip).size(), rip.serializedSize());
}

TEST(RandomIndexPack, RefusesWhatIsCut) {
    EXPECT_EQ(thrownBy<Exceptions::InvalidKey>([] { parse<RandomIndexPack>(klv(PrimerPack::key(), {})); }),
              "Trying to create a RIP from a KLV with a invalid RIP Key.");
    for (std::size_t size = 0; size < 30; ++size) {
        auto const attempt = [size] {
            parse<RandomIndexPack>(klv(RandomIndexPack::key(), repeated(size, 1)));
        };
        if (size % 12 == 4) // whole entries and the final length, which is not compared
            EXPECT_NO_THROW(attempt()) << size;
        else
            EXPECT_EQ(thrownBy<Exceptions::InvalidLength>(attempt),
                      size % 12 < 4 ? "Not enough data to read Pack" : "Invalid data size in Value")
                << size;
    }
}

} // namespace MXF::Zelm::Test
