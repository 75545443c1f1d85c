/// The validation lists: which elements keep header metadata from being closed and complete.
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "support/SmallDictionary.h"

namespace MXF::Zelm::Test {

using namespace Metadata;

namespace {

/// One element for each required status, all with the distinguished value -1, and one without any.
constexpr const char* text = R"(zelm-dictionary 1
element 060e2b34.01010101.0e7f0101.01000000 Required Int32
element 060e2b34.01010101.0e7f0101.02000000 EncoderRequired Int32
element 060e2b34.01010101.0e7f0101.03000000 DecoderRequired Int32
element 060e2b34.01010101.0e7f0101.04000000 BestEffort Int32
element 060e2b34.01010101.0e7f0101.05000000 Optional Int32 RequiresSemanticsValidation=true
element 060e2b34.01010101.0e7f0101.06000000 Plain Int32
class 060e2b34.02530101.0d010101.01017d00 Validated
    attribute 060e2b34.01010101.01011502.00000000 3c0a Req
    attribute Required dyn Req -1
    attribute EncoderRequired dyn E/req -1
    attribute DecoderRequired dyn D/req -1
    attribute BestEffort dyn B.Effort -1
    attribute Optional dyn Opt -1
    attribute Plain dyn Req
)";

using List = void (PartitionMetadata::*)(Templates::vector<Element*>&) const;

std::u16string namesIn(PartitionMetadata const& metadata, List list) {
    Templates::vector<Element*> elements;
    (metadata.*list)(elements);
    std::u16string names;
    for (auto const* const element : elements)
        names += element->name() + u" ";
    return names;
}

} // namespace

TEST(ValidationLists, HoldUnknownValuesByTheirRequiredStatus) {
    auto const dictionary = smallDictionary();
    ZelmDictionary::load(*dictionary, text, "validated.zdict");
    auto const metadata = emptyMetadata(dictionary);
    KLV::Key const key = "060E2B34.02530101.0D010101.01017D00"_key;
    MetadataSet& set = metadata->createMetadataSet(key);
    auto const fill = [&](std::int32_t value) {
        KLV::Key label = "060E2B34.01010101.0E7F0101.00000000"_key;
        for (label[12] = 1; label[12] <= 6; ++label[12])
            set.value(label, Types::Int32(value));
    };
    fill(0);
    for (List const list :
         {&PartitionMetadata::openElements, &PartitionMetadata::incompleteElements,
          &PartitionMetadata::possiblyOpenElements, &PartitionMetadata::possiblyIncompleteElements,
          &PartitionMetadata::possiblyForbiddenElements})
        EXPECT_EQ(namesIn(*metadata, list), u"") << "all values are known";
    fill(-1);
    load(*metadata, klv(thingKey, uidItem(1) + item(0x8005, hex("07")) + item(0x9999, {})));
    std::pair<List, const char16_t*> const rows[] = {
        {&PartitionMetadata::openElements, u"Required EncoderRequired "},
        {&PartitionMetadata::possiblyOpenElements, u"DecoderRequired "},
        {&PartitionMetadata::incompleteElements, u"BestEffort "},
        {&PartitionMetadata::possiblyIncompleteElements, u"Optional "},
        {&PartitionMetadata::possiblyForbiddenElements, u"Stranger "},
        {&PartitionMetadata::getSemanticsValidationElements, u"Optional "},
    };
    for (auto const& [list, names] : rows)
        EXPECT_EQ(namesIn(*metadata, list), names);
}

} // namespace MXF::Zelm::Test
