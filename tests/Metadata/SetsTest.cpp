/// Metadata sets and elements: loading, writing, setters.
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/References.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "support/SmallDictionary.h"

namespace MXF::Zelm::Test {

using namespace Metadata;
using MetaMetadata::UnknownAttribute;
using Types::LocalTag;
using Types::UniversalLabel;

namespace {

Bytes writtenSet(MetadataSet const& set, PartitionMetadata const& metadata, bool withInvalid = true) {
    Bytes const bytes = written(set, metadata.partitionDictionary(), withInvalid);
    EXPECT_EQ(set.serializedSize(withInvalid), bytes.size());
    return bytes;
}

/// What kind of element came of an item: "valid", "misplaced", or the reason of an unknown attribute.
struct Kind : MetaMetadata::AbstractMetaAttributeVisitor {
    void visit(MetaMetadata::MetaAttribute const&) override { name = "valid"; }
    void visit(MetaMetadata::MisplacedAttribute const&) override { name = "misplaced"; }
    void visit(UnknownAttribute const& attribute) override {
        constexpr const char* names[] = {"not in primer", "not in dictionary", "redefined",
                                         "invalid tag",   "repeated",          "malformed"};
        name = names[static_cast<int>(attribute.reason())];
    }
    std::string name;
};

std::string kindOf(Element const& element) {
    Kind kind;
    element.metaAttribute()->accept(kind);
    return kind.name;
}

Types::Array arrayOf(std::vector<std::int32_t> const& numbers) {
    Types::Array array(Types::Identifiers::Int32);
    for (auto const number : numbers)
        array.add(Types::Int32(number));
    return array;
}

} // namespace

TEST(MetadataSet, IsReadAndWrittenByteForByte) {
    auto const metadata = emptyMetadata();
    Bytes const value = uidItem(1) + // labels in ascending order
                        item(0x8002, hex("00000002 00000004 00000017 0000014A")) + // lines
                        item(0x8001, hex("0041 0000")) +                           // title, terminated
                        item(0x8003, hex("00112233 44554677 8899AABB CCDDEE07")) + // next
                        item(0x8004, hex("00000000 00000000"));                    // friends, none
    // Sorted by label: 01011502 (uid), 04010302 (lines) and so on; the file's own order may be another.
    auto* const set = load(*metadata, klv(thingKey, value, 9));
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->size(), 5u);
    EXPECT_EQ(set->invalidSize(), 0u);
    EXPECT_EQ(set->berLength(), 9);
    EXPECT_EQ(set->absoluteOffset(), 0u);
    EXPECT_EQ(set->find(title).absoluteOffset(), 25u + 20 + 20);
    EXPECT_EQ(set->find(title).name(), u"Title");
    EXPECT_EQ(set->name(), u"Thing");
    EXPECT_EQ(set->value<Types::UTF16String>(title)->value(), u"A");
    EXPECT_EQ(set->value<Types::UInt8>(title), nullptr);
    EXPECT_EQ(*set->instanceUID(), uid(1));
    Bytes const bytes = writtenSet(*set, *metadata);
    auto const other = emptyMetadata();
    EXPECT_TRUE(sameBytes(writtenSet(*load(*other, bytes), *other), bytes));
    EXPECT_TRUE(std::is_sorted(set->begin(), set->end(), [](auto const& a, auto const& b) {
        return *a->universalLabel() < *b->universalLabel();
    }));
    Templates::vector<Element*> semantics;
    metadata->getSemanticsValidationElements(semantics);
    EXPECT_EQ(semantics, (std::vector<Element*>{set->findElement(title)}));

    auto const empty = emptyMetadata();
    MetadataSet bare(thingKey, empty->partitionDictionary().dictionary()->find(thingKey), nullptr);
    OnePacket none(klv(thingKey, {}));
    bare.load(*none, empty->partitionDictionary());
    EXPECT_EQ(bare.size(), 0u);
    EXPECT_TRUE(sameBytes(writtenSet(bare, *empty), klv(thingKey, {})));
}

TEST(MetadataSet, KeepsWhatItsClassDoesNotAccept) {
    struct {
        Bytes item;
        const char* kind;
        bool hasLabel;
    } const rows[] = {
        {item(0x8005, hex("07")), "misplaced", true},
        {item(0x3B03, repeated(16, 1)), "misplaced", true}, // of another class, by its static tag
        {item(0x9999, hex("01 02")), "not in primer", false},
        {item(0x0102, {}), "not in primer", false},
        {item(0x8010, hex("FF")), "not in dictionary", true},
        {item(0x0000, hex("FF")), "invalid tag", false},
        {item(0x1901, hex("FF")), "redefined", true},
        {uidItem(9), "repeated", true},
        {item(0x8002, hex("00000002 00000004 00000017")), "malformed", true},
        {item(0x8003, repeated(15, 1)), "malformed", true},
        {item(0x8003, repeated(17, 1)), "malformed", true}, // too long
    };
    for (auto const& row : rows) {
        auto const metadata = emptyMetadata();
        metadata->partitionDictionary().primer().add(LocalTag(0x8010), unknownKey);
        metadata->partitionDictionary().primer().add(LocalTag(0x1901),
                                                     unknownKey == stranger ? title : prefaceKey);
        Bytes const bytes = klv(thingKey, uidItem(1) + row.item);
        auto const* const set = load(*metadata, bytes);
        ASSERT_EQ(set->invalidSize(), 1u) << row.kind;
        Element const& element = **set->invalidBegin();
        EXPECT_EQ(kindOf(element), row.kind);
        EXPECT_EQ(element.universalLabel() != nullptr, row.hasLabel) << row.kind;
        EXPECT_TRUE(sameBytes(writtenSet(*set, *metadata, true), bytes)) << row.kind;
        EXPECT_TRUE(sameBytes(writtenSet(*set, *metadata, false), klv(thingKey, uidItem(1)))) << row.kind;
    }
    auto const metadata = emptyMetadata();
    auto* const set = load(*metadata, klv(thingKey, item(0x9999, {1}) + uidItem(1) + item(0x9999, {2})));
    Element* const first = set->invalidBegin()->get();
    EXPECT_TRUE(sameBytes(writtenSet(*set, *metadata),
                          klv(thingKey, uidItem(1) + item(0x9999, {1}) + item(0x9999, {2}))));
    set->removedInvalidElement(first);
    EXPECT_EQ(set->invalidSize(), 1u);
    EXPECT_EQ(thrownBy([&] { set->removedInvalidElement(set->findElement(instanceUID)); }),
              "Element not found in Invalid Element list!");
    EXPECT_THROW((*set->invalidBegin())->baseValue(Types::UInt8(std::uint8_t{1})), Exceptions::InvalidType);
    DataIO::Memory::MemoryDataSource source(hex("AB"));
    KLV::Value value(source, 1);
    set->createInvalidElement(
        std::make_shared<UnknownAttribute>(LocalTag(0x7000), UnknownAttribute::Reason::NotInPrimer),
        LocalTag(0x7000), value);
    EXPECT_TRUE(sameBytes(writtenSet(*set, *metadata),
                          klv(thingKey, uidItem(1) + item(0x9999, {2}) + item(0x7000, {0xAB}))));
    EXPECT_THROW(ElementFactory::create((*set->invalidBegin())->metaAttribute(), set),
                 Exceptions::InvalidElement);
    EXPECT_EQ(thrownBy([&] { ElementFactory::create(nullptr, set); }), "Null Meta Attribute");
}

TEST(MetadataSet, ReadsLabelsOfOtherVersionsAndWritesThemUnderTheirTags) {
    auto const dictionary = smallDictionary();
    auto primer = std::make_unique<Packs::PrimerPack>();
    KLV::Key older = title;
    older[7] = 0x01;
    KLV::Key newerStranger = stranger;
    newerStranger[7] = 0x0E;
    primer->add(LocalTag(0x8001), older);
    primer->add(LocalTag(0x8002), newerStranger);
    PartitionMetadata metadata(std::make_unique<PartitionDictionary>(dictionary, std::move(primer)));
    Bytes const bytes = klv(thingKey, uidItem(1) + item(0x8001, hex("0041")) + item(0x8002, hex("01")));
    auto const* const set = load(metadata, bytes);
    EXPECT_NE(set->findElement(title), nullptr);
    EXPECT_EQ(kindOf(**set->invalidBegin()), "misplaced");
    EXPECT_TRUE(sameBytes(writtenSet(*set, metadata), bytes));
    metadata.generateLocalTags();
    EXPECT_EQ(metadata.partitionDictionary().primer().count(), 3u) << "only 3C.0A was missing";
    EXPECT_EQ(metadata.partitionDictionary().find(UniversalLabel(title)), LocalTag(0x8001));
    metadata.partitionDictionary().primer().remove(older);
    EXPECT_THROW(metadata.partitionDictionary().find(UniversalLabel(title)), Exceptions::NotFoundInPrimer);
}

TEST(MetadataSet, RefusesWhatIsNoLocalSetOfItsCoding) {
    auto const metadata = emptyMetadata();
    EXPECT_EQ(thrownBy([&] { load(*metadata, klv(byteTagsKey, uidItem(1))); }),
              "Invalid Metadata Set local field length or length field length");
    struct {
        Bytes value;
        const char* message;
    } const rows[] = {
        {uidItem(1) + hex("80 01 00 02 41"),
         "Invalid data size in Value to create an element in the metadataSet."},
        {hex("80 01 FF FF"), "Invalid data size in Value to create an element in the metadataSet."},
        {hex("80 01 00"), "Invalid data size in Value"},
        {hex("80"), "Invalid data size in Value"},
        {item(0x8001, hex("0041")), "InstanceUID not found in Metadata Set with key "
                                    "urn:smpte:ul:060e2b34.02530101.0d010101.01013600 Check "
                                    "Metadata Set builder."},
    };
    for (auto const& row : rows)
        EXPECT_EQ(thrownBy([&] { load(*metadata, klv(thingKey, row.value)); }), row.message);
    EXPECT_EQ(metadata->size() + metadata->darkSize(), 0u) << "nothing is kept";
    load(*metadata, klv(thingKey, uidItem(1)));
    EXPECT_EQ(
        thrownBy<Exceptions::InvalidMetadataSet>([&] { load(*metadata, klv(prefaceKey, uidItem(1))); }),
        "The Preface metadataSet has an instance UID, urn:uuid:00112233-4455-4677-8899-aabbccddee01, already "
        "defined!");
    auto const* const definition = metadata->partitionDictionary().dictionary()->find(thingKey);
    EXPECT_EQ(thrownBy([&] { MetadataSet(storageKey, definition, nullptr); }),
              "MetadataSet Key and MetaMetadataSet do not agree");
    EXPECT_EQ(thrownBy([&] { MetadataSet(storageKey, nullptr, nullptr); }),
              "MetadataSet Key and MetaMetadataSet do not agree");
}

TEST(MetadataSet, CodesLengthsOf1And4Bytes) {
    for (int const width : {1, 4}) {
        KLV::Key key = unknownKey;
        key[5] = width == 1 ? 0x33 : 0x73;
        auto const dictionary = smallDictionary();
        dictionary->add(key, MetaMetadata::MetaMetadataSet(key, *dictionary->find(thingKey)));
        auto const metadata = emptyMetadata(dictionary);
        Bytes const zeros = repeated(static_cast<std::size_t>(width - 1), 0);
        Types::UUID const uuid = uid(1);
        Bytes const bytes =
            klv(key, hex("3C 0A") + zeros + hex("10") + Bytes(uuid.rawBuffer(), uuid.rawBuffer() + 16) +
                         hex("80 01") + zeros + hex("02 00 41"));
        auto* const set = load(*metadata, bytes);
        EXPECT_TRUE(sameBytes(writtenSet(*set, *metadata), bytes));
        set->value(title, Types::UTF16String(std::u16string(200, u'x')));
        if (width == 1)
            EXPECT_EQ(thrownBy<Exceptions::InvalidElementLength>([&] { writtenSet(*set, *metadata); }),
                      "Value 'Title' has 400 bytes, more than a length field of 1 bytes can say");
        else
            EXPECT_EQ(writtenSet(*set, *metadata).size(), bytes.size() + 398);
    }
    auto const metadata = emptyMetadata();
    auto* const set = load(*metadata, klv(thingKey, uidItem(1), 1));
    EXPECT_EQ(writtenSet(*set, *metadata)[16], 20); // the short form is kept while it is enough
    set->value(title, Types::UTF16String(std::u16string(200, u'x')));
    Bytes const longer = writtenSet(*set, *metadata);
    EXPECT_TRUE(sameBytes(Bytes(longer.begin() + 16, longer.begin() + 19), hex("82 01 A8")));
}

TEST(Element, RefusesValuesThatDoNotSuit) {
    auto const metadata = emptyMetadata();
    auto& set = metadata->createMetadataSet(thingKey);
    auto& preface = metadata->createMetadataSet(prefaceKey);
    set.value(title, Types::UTF16String(u"old"));
    set.value(lines, arrayOf({1, 2}));
    set.value(next, Types::StrongReference(uid(99))); // dangling: may come later
    auto& array = dynamic_cast<ArrayElement&>(set.find(lines));
    auto& reference = dynamic_cast<ReferenceElement&>(set.find(next));
    auto& friendsElement = dynamic_cast<BatchReferenceElement&>(
        set.value(friends, Types::Batch(Types::Identifiers::WeakReference)));
    Bytes const before = writtenSet(set, *metadata);
    metadata->generateLocalTags();
    MetadataSet loose(thingKey, set.metaMetadataSet(), nullptr);
    struct {
        std::function<void()> action;
        const char* message;
    } const rows[] = {
        {[&] { set.value(title, Types::UInt8(std::uint8_t{1})); },
         "Setting value with an invalid type. Value Type of new value: UInt8 Value type of "
         "elementUTF16String"},
        {[&] {
             set.value(lines, arrayOf({1, 2, 3, 4}));
         },
         "Value 'Lines': Schema only allows to add 3 elements to this collection."},
        {[&] { set.value(lines, arrayOf({1})); },
         "Value 'Lines': Schema does not allow less than 2 elements in the collection."},
        {[&] { set.value(lines, Types::Array(Types::Identifiers::UInt8)); },
         "Value 'Lines': Setting collection with an invalid Sub Type."},
        {[&] { set.value(lines, Types::Batch(Types::Identifiers::Int32)); },
         "Value 'Lines': Collection can not be changed to another type!"},
        {[&] { array.add(Types::UInt8(std::uint8_t{1})); },
         "Value 'Lines': Setting value with an invalid Sub Type in a collection."},
        {[&] { array.set(2, Types::Int32(1)); }, "Index out of bounds"},
        {[&] { array.remove(2); }, "Index out of bounds"},
        {[&] { array.remove(0); },
         "Value 'Lines': Schema does not allow less than 2 elements in the collection."},
        {[&] { array.value().at(2); }, "Trying to access a element beyond the end of data"},
        {[&] { friendsElement.addReference(preface); },
         "ReferenceElement with UL urn:smpte:ul:060e2b34.01010104.06010103.0b000000 cannot reference set "
         "with key "
         "'urn:smpte:ul:060e2b34.02530101.0d010101.01012f00'"},
        {[&] { preface.value(storage, Types::StrongReference(*set.instanceUID())); },
         "ReferenceElement with UL urn:smpte:ul:060e2b34.01010102.06010104.02010000 cannot reference set "
         "with key "
         "'urn:smpte:ul:060e2b34.02530101.0d010101.01013600'"},
        {[&] { reference.value(Types::WeakReference(uid(1))); },
         "Trying to set a value to a ReferenceElement that differs from its MetaAttribute information"},
        {[&] { reference.reference(loose); }, "Value 'Next' cannot refer to a set without instance UID"},
        {[&] { set.value(stranger, Types::UInt8(std::uint8_t{1})); },
         "No element with this Universal Label was found: urn:smpte:ul:060e2b34.01010105.0e0b0102.01010000"},
        {[&] { set.find(stranger); },
         "No element with this Universal Label was found: urn:smpte:ul:060e2b34.01010105.0e0b0102.01010000"},
        {[&] {
             loose.value(instanceUID, Types::UUID());
             loose.removeElement(instanceUID);
         },
         "Value 'InstanceUID' is required according to Schema"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(thrownBy(row.action), row.message);
        EXPECT_TRUE(sameBytes(writtenSet(set, *metadata), before)) << row.message;
    }
    EXPECT_EQ(preface.findElement(storage), nullptr);
    array.add(Types::Int32(3));
    EXPECT_THROW(array.add(Types::Int32(4)), Exceptions::InvalidChange);
    array.set(0, Types::Int32(7));
    array.remove(1);
    EXPECT_EQ(array.value().toString(), u"[7][3]");
    reference.reference(preface); // any class
    EXPECT_EQ(set.referencedSet(next), &preface);
    friendsElement.addReference(set);
    EXPECT_EQ(friendsElement.targets(), (std::vector<Types::UUID>{*set.instanceUID()}));
    EXPECT_FALSE(friendsElement.isStrong());
    EXPECT_TRUE(reference.isStrong());
    EXPECT_TRUE(set.removeElement(title));
    EXPECT_FALSE(set.removeElement(title));
}

TEST(Element, LetsACollectionThatBreaksItsLimitsBeRepaired) {
    auto const metadata = emptyMetadata();
    auto const holding = [&](unsigned char last, std::uint32_t count) -> ArrayElement& {
        Bytes const value = number(count) + hex("00000004") + repeated(4 * count, 1);
        return dynamic_cast<ArrayElement&>(
            load(*metadata, klv(thingKey, uidItem(last) + item(0x8002, value)))->find(lines));
    };
    ArrayElement& few = holding(1, 0); // two to three are allowed
    few.add(Types::Int32(1));
    few.add(Types::Int32(2));
    EXPECT_EQ(few.value().count(), 2u);
    ArrayElement& many = holding(2, 5);
    many.remove(0);
    many.remove(0);
    EXPECT_EQ(many.value().count(), 3u);
    ArrayElement& one = holding(3, 1);
    EXPECT_EQ(one.metadataSet().clone(true, nullptr)->find(lines).baseValue()->toString(), u"[16843009]");
}

TEST(MetadataSet, IsClonedWithAllThatItHolds) {
    auto const metadata = emptyMetadata();
    auto const* const set =
        load(*metadata, klv(thingKey, item(0x9999, {1}) + uidItem(1) + item(0x8001, hex("0041 0000")), 9));
    auto const same = set->clone(false, nullptr);
    EXPECT_TRUE(sameBytes(writtenSet(*same, *metadata), writtenSet(*set, *metadata)));
    auto const other = set->clone(true, metadata.get());
    EXPECT_NE(*other->instanceUID(), uid(1));
    EXPECT_EQ(other->owner(), metadata.get());
    EXPECT_EQ(other->size(), 2u);
}

TEST(MetadataSet, SurvivesEveryFault) {
    Bytes const bytes = klv(thingKey, uidItem(1) + item(0x8001, hex("0041")) +
                                          item(0x8002, hex("00000002 00000004 00000017 0000014A")) +
                                          item(0x8003, repeated(16, 2)));
    survivesEveryFault(bytes, [](Bytes const& broken) {
        auto const metadata = emptyMetadata();
        OnePacket in(broken);
        metadata->loadOrKeepDark(*in);
        written(*metadata, true, SerializationOrder::AsLoaded);
    });
}

TEST(DarkMetadataSet, IsWrittenByteForByte) {
    for (unsigned char const berLength : hex("01 04 09")) {
        Bytes const bytes = klv(unknownKey, hex("00 01 02"), berLength);
        OnePacket in(bytes);
        DarkMetadataSet dark(*in);
        EXPECT_TRUE(sameBytes(written(dark), bytes));
        EXPECT_EQ(dark.serializedSize(), bytes.size());
        dark.value(std::make_unique<Types::Unknown>(repeated(200, 7))); // needs a longer length field, once
        EXPECT_TRUE(sameBytes(written(dark),
                              klv(unknownKey, repeated(200, 7), std::max<unsigned char>(berLength, 2))));
        EXPECT_THROW(dark.value(nullptr), Exceptions::InvalidValue);
    }
    Bytes bytes = klv(unknownKey, hex("00"));
    bytes[17] = 0x7F; // a length that lies
    OnePacket in(bytes);
    EXPECT_THROW(DarkMetadataSet dark(*in), Exceptions::InvalidLength);
}

} // namespace MXF::Zelm::Test
