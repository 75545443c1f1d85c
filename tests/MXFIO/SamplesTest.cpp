/// The header metadata of files that independent programs made: loaded, written and loaded again. The files
/// lie in ../shared/samples; without them the tests skip.
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "MXF/ZelmDictionary/Names.h"
#include "support/HeaderMetadata.h"
#include "support/SmallDictionary.h"

#include <map>

namespace MXF::Zelm::Test {

using namespace Metadata;

namespace {

/// All that a partition's metadata holds, as text: by set, element by element, invalid and dark bytes
/// included.
std::map<std::string, std::string> contentOf(PartitionMetadata const& metadata) {
    std::map<std::string, std::string> content;
    auto const text = [](Types::BaseType const& value) {
        DataIO::Memory::MemoryDataSink sink;
        value.serialize(sink);
        return ByteCoders::toHexadecimal(sink.rawBuffer(), static_cast<std::size_t>(sink.serializedSize()));
    };
    for (auto const& [key, set] : metadata) {
        std::string& lines = content["set " + Platform::toUtf8(set->instanceUID()->toString())];
        lines = Platform::toUtf8(set->name()) + "\n";
        for (auto const& element : *set)
            lines += Platform::toUtf8(element->name()) + " " + text(*element->baseValue()) + "\n";
        for (auto element = set->invalidBegin(); element != set->invalidEnd(); ++element)
            lines += Platform::toUtf8(static_cast<InvalidElement const&>(**element).tag().toString()) + " " +
                     text(*(*element)->baseValue()) + "\n";
    }
    std::size_t dark = 0;
    for (auto at = metadata.darkBegin(); at != metadata.darkEnd(); ++at) {
        Bytes const bytes = written(**at);
        content["dark " + std::to_string(dark++)] = ByteCoders::toHexadecimal(bytes.data(), bytes.size());
    }
    return content;
}

/// True when the file has the elements of a set in the order that the library writes.
bool isInOrder(MetadataSet const& set) {
    std::uint64_t last = 0;
    auto const follows = [&last](auto const& element) {
        std::uint64_t const before = last;
        last = *element->absoluteOffset();
        return last > before;
    };
    return std::all_of(set.begin(), set.end(), follows) &&
           std::all_of(set.invalidBegin(), set.invalidEnd(), follows);
}

/// True for a label that the standard dictionary's registers define.
bool isStandard(Types::UniversalLabel const& label, MetaMetadata::Dictionary const& dictionary) {
    return dictionary.findMetaElementOfAnyVersion(label) != nullptr;
}

using Samples = SampleTest;

} // namespace

TEST_F(Samples, AreTheSameAfterWritingAndLoadingAgain) {
    for (auto const& dictionary : {std::make_shared<MetaMetadata::Dictionary>(), ZelmDictionary::standard()})
        forEachMetadata(dictionary, [&](PartitionMetadata& metadata, Bytes const&, std::string const& where) {
            auto const before = contentOf(metadata);
            for (auto const order : {SerializationOrder::AsLoaded, SerializationOrder::ByKey}) {
                Bytes const bytes = written(metadata, true, order);
                EXPECT_EQ(bytes.size(), metadata.serializedSize(true)) << where;
                auto const again = loadAgain(bytes, dictionary);
                EXPECT_EQ(contentOf(*again), before) << where;
                EXPECT_TRUE(sameBytes(written(*again, true, order), bytes)) << where;
            }
        });
}

TEST_F(Samples, AreWrittenByteForByteWhereTheirOrderIsTheLibrarys) {
    std::size_t sets = 0, inOrder = 0;
    forEachMetadata(ZelmDictionary::standard(), [&](PartitionMetadata& metadata, Bytes const& file,
                                                    std::string const& where) {
        auto const fromFile = [&file](std::uint64_t offset, std::size_t size) {
            auto const begin = file.begin() + static_cast<std::ptrdiff_t>(offset);
            return Bytes(begin, begin + static_cast<std::ptrdiff_t>(size));
        };
        for (auto const& [key, set] : metadata) {
            ++sets;
            if (!isInOrder(*set))
                continue;
            ++inOrder;
            Bytes const bytes = written(*set, metadata.partitionDictionary(), true);
            EXPECT_TRUE(sameBytes(bytes, fromFile(*set->absoluteOffset(), bytes.size()))) << where;
        }
        for (auto at = metadata.darkBegin(); at != metadata.darkEnd(); ++at) {
            Bytes const bytes = written(**at);
            EXPECT_TRUE(sameBytes(bytes, fromFile(*(*at)->absoluteOffset(), bytes.size()))) << where;
        }
    });
    EXPECT_GT(inOrder, 0u) << "of " << sets;
}

TEST_F(Samples, HoldNothingOfTheRegistersThatIsNotUnderstood) {
    auto const dictionary = ZelmDictionary::standard();
    forEachMetadata(dictionary, [&](PartitionMetadata& metadata, Bytes const&, std::string const& where) {
        for (auto at = metadata.darkBegin(); at != metadata.darkEnd(); ++at)
            EXPECT_EQ(ZelmDictionary::className((*at)->key()), "") << where << ": " << (*at)->reason();
        for (auto const& fault : metadata.faults())
            ADD_FAILURE() << where << ": " << fault.message;
        for (auto const& [key, set] : metadata)
            for (auto element = set->invalidBegin(); element != set->invalidEnd(); ++element) {
                auto const* const label = (*element)->universalLabel();
                EXPECT_TRUE(label != nullptr && !isStandard(*label, *dictionary))
                    << where << ": " << Platform::toUtf8(set->name()) << " "
                    << (label != nullptr ? Platform::toUtf8(label->toString()) : "no label") << " "
                    << Platform::toUtf8((*element)->name()) << " "
                    << Platform::toUtf8((*element)->baseValue()->toString()).substr(0, 80);
            }
    });
}

} // namespace MXF::Zelm::Test
