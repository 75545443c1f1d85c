// Loading of texts: what they define, every fault that a person can make, and what a fault leaves behind.
#include "MXF/ZelmDictionary/Dictionary.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Types/Integers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;
using MetaMetadata::Dictionary;
namespace Identifiers = Types::Identifiers;

// One element and one class of a station, which the cases build on. Lines 1 to 6.
std::string const station = R"(zelm-dictionary 1
element 060e2b34.01010105.0e7f0101.01000000 ShelfNumber UInt32
type ShelfReference StrongReference Shelf
element 060e2b34.01010105.0e7f0101.03000000 Shelves ShelfReference
class 060e2b34.02530105.0e7f0102.01000000 Shelf
    attribute ShelfNumber 7e01 Req
)";

constexpr auto shelfKey = "060e2b34.02530105.0e7f0102.01000000"_key;
constexpr auto shelfNumber = "060e2b34.01010105.0e7f0101.01000000"_key;

std::string faultOf(Dictionary& dictionary, std::string_view text) {
    try {
        MXF::ZelmDictionary::load(dictionary, text, "private.zdict");
    } catch (Exceptions::InvalidFormat const& fault) {
        return fault.message();
    }
    return "";
}

std::size_t size(Dictionary const& dictionary) {
    return static_cast<std::size_t>(
        std::distance(dictionary.metaElementBegin(), dictionary.metaElementEnd()) +
        std::distance(dictionary.metaMetadataSetBegin(), dictionary.metaMetadataSetEnd()) +
        std::distance(dictionary.localTag2ULBegin(), dictionary.localTag2ULEnd()));
}

bool allows(Dictionary const& dictionary, KLV::Key const& element, KLV::Key const& target) {
    auto const* const holder =
        dynamic_cast<MetaMetadata::MetaReferenceHolder const*>(dictionary.findMetaElement(element));
    return holder != nullptr && !holder->allowedMetadataSets().empty() && holder->allows(target);
}

TEST(Load, DefinesWhatTheTextSays) {
    Dictionary dictionary;
    ASSERT_EQ(faultOf(dictionary, station), "");
    auto const* const shelf = dictionary.find(shelfKey);
    ASSERT_NE(shelf, nullptr);
    EXPECT_EQ(shelf->getProperty(u"name"), u"Shelf");
    auto const attribute = shelf->findMetaAttribute(shelfNumber);
    ASSERT_TRUE(attribute);
    EXPECT_EQ(&attribute->metaElement(), dictionary.findMetaElement(shelfNumber));
    EXPECT_EQ(attribute->metaElement().dataType(), Identifiers::UInt32);
    EXPECT_EQ(attribute->requiredStatus(), MetaMetadata::AttributeRequiredStatus::Required);
    ASSERT_NE(attribute->staticLocalTag(), nullptr);
    EXPECT_EQ(attribute->staticLocalTag()->value(), 0x7E01);
    ASSERT_NE(dictionary.find(Types::LocalTag(0x7E01)), nullptr);
    EXPECT_EQ(dictionary.find(Types::LocalTag(0x7E01))->key(), shelfNumber);
    EXPECT_TRUE(allows(dictionary, "060e2b34.01010105.0e7f0101.03000000"_key, shelfKey));
}

TEST(Load, ReadsWhatEditorsWrite) {
    Dictionary dictionary;
    std::string text = "\xEF\xBB\xBF\r\n  # a comment\r\n\t" + station;
    for (std::size_t at = text.find('\n', 20); at != std::string::npos; at = text.find('\n', at + 2))
        text.insert(at, "\r");
    while (text.back() == '\n' || text.back() == '\r')
        text.pop_back(); // no line feed at the end
    EXPECT_EQ(faultOf(dictionary, text), "");
    EXPECT_EQ(dictionary.find(shelfKey)->metaAttributeCount(), 1U);
}

TEST(Load, EnumeratedAndDistinguishedValues) {
    Dictionary dictionary;
    ASSERT_EQ(faultOf(dictionary, R"(zelm-dictionary 1
type Kind UInt8
    value 0 Unknown
    value 2 Near line storage
type SpecialKind Kind
type Kinds Array Kind
type Code DataValue
    value "ab" Two letters
element 060e2b34.01010105.0e7f0101.01000000 kind@Thing SpecialKind type=Kind note="two words"
element 060e2b34.01010105.0e7f0101.02000000 kinds Kinds
element 060e2b34.01010105.0e7f0101.03000000 code Code
class 060e2b34.02530105.0e7f0102.01000000 Thing
    attribute kind@Thing dyn B.Effort 0
    attribute 060e2b34010101050e7f010102000000 dyn Opt 2,0
    attribute code dyn E/req "x y"
)"),
              "");
    auto const* const thing = dictionary.find(shelfKey);
    auto const at = [thing](unsigned char number) {
        auto label = shelfNumber;
        label[12] = number;
        return thing->findMetaAttribute(label);
    };
    auto const& kind = dynamic_cast<MetaMetadata::MetaSimpleElement const&>(at(1)->metaElement());
    EXPECT_EQ(kind.getProperty(u"name"), u"kind");
    EXPECT_EQ(kind.getProperty(u"type"), u"Kind");
    EXPECT_EQ(kind.getProperty(u"note"), u"two words");
    ASSERT_EQ(kind.enumeration().size(), 2U);
    EXPECT_EQ(*kind.enumerationNames()->findName(Types::UInt8(std::uint8_t{2})), u"Near line storage");
    EXPECT_EQ(*at(1)->getDistinguishedValue(), Types::UInt8(std::uint8_t{0}));
    EXPECT_EQ(at(2)->getDistinguishedValue()->toString(), u"[2][0]");
    EXPECT_EQ(dynamic_cast<MetaMetadata::MetaCollection const&>(at(2)->metaElement()).enumeration().size(),
              2U);
    EXPECT_EQ(at(3)->getDistinguishedValue()->toString(), u"0x782079");
}

struct Fault {
    const char* line;
    const char* message; ///< after "private.zdict:7: "
};

// Each is line 7, after those of `station`.
constexpr Fault faults[] = {
    {"elemant X", "unknown statement 'elemant'"},
    {"type", "no name given"},
    {"type T", "no type given"},
    {"type T Int33", "unknown type 'Int33'"},
    {"type UInt32 Int32", "the type 'UInt32' is defined already"},
    {"type T Array", "no member type given"},
    {"type T UInt8 Shelf", "unexpected 'Shelf'"},
    {"type T StrongReference Nowhere", "unknown class 'Nowhere'"},
    {"value 1", "a value without a type before it"},
    {"element", "no label given"},
    {"element 060e2b34 X UInt8", "'060e2b34' is no label of 32 hexadecimal digits"},
    {"element 060e2b34.01010105.0e7f0101.0500000g X UInt8",
     "'060e2b34.01010105.0e7f0101.0500000g' is no label of 32 hexadecimal digits"},
    {"element 060e2b34.01010105.0e7f0101.05000000", "no symbol given"},
    {"element 060e2b34.01010105.0e7f0101.05000000 X", "no type given"},
    {"element 060e2b34.01010105.0e7f0101.05000000 X Text", "unknown type 'Text'"},
    {"element 060e2b34.01010105.0e7f0101.05000000 X UInt8 more", "unexpected 'more'"},
    {"element 060e2b34.01010105.0e7f0101.05000000 X UInt8 =more", "unexpected '=more'"},
    {"element 060e2b34.01010105.0e7f0101.01000000 X UInt8", "the label is that of the element 'ShelfNumber'"},
    {"element 060e2b34.01010105.0e7f0101.05000000 ShelfNumber UInt8",
     "the element 'ShelfNumber' is defined already"},
    {"class 060e2b34.02530105.0e7f0102.0100 X",
     "'060e2b34.02530105.0e7f0102.0100' is no key of 32 hexadecimal digits"},
    {"class 060e2b34.02050105.0e7f0102.02000000 X", "the key is not that of a local set"},
    {"class 060e2b34.02530105.0e7f0102.01000000 X", "the key is that of the class 'Shelf'"},
    {"class 060e2b34.02530105.0e7f0102.02000000 Shelf", "the class 'Shelf' is defined already"},
    {"class 060e2b34.02530105.0e7f0102.02000000 X : Nothing", "unknown class 'Nothing'"},
    {"class 060e2b34.02530105.0e7f0102.02000000 X :", "no parent given"},
    {"class 060e2b34.02530105.0e7f0102.02000000 X concrete", "unexpected 'concrete'"},
    {"extend Nothing", "unknown class 'Nothing'"},
    {"extend Shelf X", "unexpected 'X'"},
    {"attribute", "no element given"},
    {"attribute Nothing dyn Opt", "unknown element 'Nothing'"},
    {"attribute Shelves", "no tag given"},
    {"attribute Shelves 123 Opt", "'123' is neither a tag of 4 hexadecimal digits nor 'dyn'"},
    {"attribute Shelves 8000 Opt", "the tag '8000' is not static: those lie between 0001 and 7fff"},
    {"attribute Shelves 0000 Opt", "the tag '0000' is not static: those lie between 0001 and 7fff"},
    {"attribute Shelves 7e01 Opt", "the tag 7E.01 stands for the element 'ShelfNumber'"},
    {"attribute Shelves dyn", "no required status given"},
    {"attribute Shelves dyn Often",
     "unknown required status 'Often': Opt, B.Effort, D/req, E/req or Req expected"},
    {"attribute Shelves dyn Opt 0", "a reference has no distinguished value"},
    {"attribute Shelves dyn Opt 0 1", "unexpected '1'"},
    {"attribute ShelfNumber 7e01 Opt",
     "A MetaAttribute with UL urn:smpte:ul:060e2b34.01010105.0e7f0101.01000000 already exists in this "
     "MetaMetadataSet"},
};

TEST(Load, FaultsNameSourceLineAndCauseAndChangeNothing) {
    for (auto const& fault : faults) {
        Dictionary dictionary;
        EXPECT_EQ(faultOf(dictionary, station + fault.line + "\nextend Shelf\n"),
                  std::string("private.zdict:7: ") + fault.message)
            << fault.line;
        EXPECT_EQ(size(dictionary), 0U) << fault.line;
    }
}

// Two lines: the fault is in the second.
constexpr Fault faultsAfterALine[] = {
    {"type T Array UInt8\ntype U Batch T", "a collection cannot be the member of another"},
    {"type T Array UInt8\nvalue 1", "a reference or collection cannot have enumerated values"},
    {"type T UInt8\nvalue", "no value given"},
    {"type T UInt8\nvalue 256", "'256' is not a value of type UInt8"},
    {"type T UInt8\nattribute ShelfNumber dyn Opt", "an attribute without a class before it"},
    {"class 060e2b34.02530105.0e7f0102.02000000 X\nattribute ShelfNumber 7e02 Opt",
     "the element has another static tag than 7E.02"},
    {"class 060e2b34.02530105.0e7f0102.02000000 X\nattribute ShelfNumber dyn Opt many",
     "'many' is not a value of type UInt32"},
};

TEST(Load, FaultsInTheContext) {
    for (auto const& fault : faultsAfterALine) {
        Dictionary dictionary;
        auto const message = faultOf(dictionary, station + fault.line);
        EXPECT_EQ(message, std::string("private.zdict:8: ") + fault.message);
        EXPECT_EQ(size(dictionary), 0U);
    }
}

TEST(Load, RefusesWhatIsNoDictionary) {
    Dictionary dictionary;
    EXPECT_EQ(faultOf(dictionary, ""),
              "private.zdict:1: this is no dictionary: it has no line 'zelm-dictionary 1'");
    EXPECT_EQ(faultOf(dictionary, "# nothing\n\n"),
              "private.zdict:2: this is no dictionary: it has no line 'zelm-dictionary 1'");
    EXPECT_EQ(faultOf(dictionary, std::string_view("\x06\x0E\x2B\x34\0\0", 6)).substr(0, 36),
              "private.zdict:1: this is no dictiona");
    EXPECT_EQ(faultOf(dictionary, "zelm-dictionary 2"),
              "private.zdict:1: version '2' of the format is not known");
}

TEST(Load, InheritanceIsBounded) {
    std::string text = "zelm-dictionary 1\nclass 060e2b34.02530105.0e7f0102.00000000 C0\n";
    for (int i = 1; i < 100; ++i)
        text += "class 060e2b34.02530105.0e7f0102.000000" + std::to_string(i + 10).substr(0, 2) + " C" +
                std::to_string(i) + " : C" + std::to_string(i - 1) + "\n";
    Dictionary dictionary;
    EXPECT_EQ(faultOf(dictionary, text), "private.zdict:66: classes inherit over more than 64 levels");
}

// A text that is cut anywhere is refused with a line, or means what is left of it.
TEST(Load, CutTexts) {
    std::string const text = station + R"(type Kind UInt8
    value 0 "Unknown"
extend Shelf
    attribute Shelves dyn Opt
)";
    for (std::size_t length = 0; length < text.size(); ++length) {
        Dictionary dictionary;
        auto const fault = faultOf(dictionary, std::string_view(text).substr(0, length));
        if (!fault.empty()) {
            EXPECT_TRUE(fault.starts_with("private.zdict:")) << fault;
            EXPECT_EQ(size(dictionary), 0U) << length;
        }
    }
}

constexpr auto timelineTrack = "060e2b34.02530101.0d010101.01013b00"_key;
constexpr auto packageTracks = "060e2b34.01010102.06010104.06050000"_key;
constexpr auto trackId = "060e2b34.01010102.01070101.00000000"_key;

TEST(Overlay, APrivateClassInheritsAStandardOne) {
    auto const dictionary = MXF::ZelmDictionary::standard();
    ASSERT_EQ(faultOf(*dictionary, station + R"(
class 060e2b34.02530105.0e7f0102.02000000 StationTrack : TimelineTrack
    attribute ShelfNumber 7e01 Opt
class 060e2b34.02530105.0e7f0102.03000000 SpecialTrack : StationTrack
)"),
              "");
    auto const special = "060e2b34.02530105.0e7f0102.03000000"_key;
    auto const* const own = dictionary->find(special);
    auto const* const standard = dictionary->find(timelineTrack);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own->metaAttributeCount(), standard->metaAttributeCount() + 1);
    EXPECT_EQ(own->findMetaAttribute(trackId), standard->findMetaAttribute(trackId))
        << "attributes are shared";
    EXPECT_TRUE(allows(*dictionary, packageTracks, special));
    EXPECT_FALSE(allows(*dictionary, packageTracks, shelfKey));
}

TEST(Overlay, ExtendingAClassReachesItsSubclasses) {
    auto const dictionary = MXF::ZelmDictionary::standard();
    auto const before = dictionary->find(timelineTrack)->metaAttributeCount();
    ASSERT_EQ(faultOf(*dictionary, station + "extend Track\n attribute ShelfNumber 7e01 Opt\n"), "");
    auto const* const after = dictionary->find(timelineTrack);
    EXPECT_EQ(after->metaAttributeCount(), before + 1);
    EXPECT_TRUE(after->findMetaAttribute(shelfNumber));
    EXPECT_EQ(after->getProperty(u"parent"), u"Track");
    auto const materialPackage = "060e2b34.02530101.0d010101.01013600"_key;
    EXPECT_FALSE(dictionary->find(materialPackage)->findMetaAttribute(shelfNumber));
}

TEST(Overlay, WhatTheDictionaryHoldsIsNotRedefined) {
    auto const dictionary = MXF::ZelmDictionary::standard();
    auto const before = size(*dictionary);
    EXPECT_EQ(faultOf(*dictionary, "zelm-dictionary 1\nclass 060e2b34.02530101.0d010101.01013b00 Mine\n"),
              "private.zdict:2: the key is that of the class 'TimelineTrack'");
    EXPECT_EQ(faultOf(*dictionary, "zelm-dictionary 1\n"
                                   "element 060e2b34.01010105.0e7f0101.01000000 X UInt8\n"
                                   "extend Preface\nattribute X 3c0a Opt\n"),
              "private.zdict:4: the tag 3C.0A stands for the element 'InstanceID'");
    EXPECT_EQ(faultOf(*dictionary, "zelm-dictionary 1\nextend Preface\nattribute NamespaceURI dyn Opt\n"),
              "private.zdict:3: there are several elements 'NamespaceURI': give the label");
    EXPECT_THROW(MXF::ZelmDictionary::loadStandard(*dictionary), Exceptions::InvalidFormat);
    EXPECT_EQ(size(*dictionary), before);
}

} // namespace
