/// Edits of real files: a longer name and another date for the material package, in place and into a new
/// file.
#include "MXF/Zelm/DataIO/File/FileDataSource.h"
#include "MXF/Zelm/MXFIO/Updater.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "support/Files.h"
#include "support/Program.h"
#include "support/SmallDictionary.h"

namespace MXF::Zelm::Test {

using namespace MXFIO;

namespace {

constexpr KLV::Key materialPackageKey = "060E2B34.02530101.0D010101.01013600"_key;
constexpr KLV::Key nameLabel = "060E2B34.01010101.01030302.01000000"_key;
constexpr KLV::Key dateLabel = "060E2B34.01010102.07020110.02050000"_key;

std::string nameOf(std::filesystem::path const& path) {
    auto const text = path.u8string();
    return {text.begin(), text.end()};
}

/// The text of a value, empty when the set has none.
std::u16string textOf(Metadata::MetadataSet const& set, Types::UniversalLabel const& label) {
    auto const* const element = set.findElement(label);
    return element != nullptr ? element->baseValue()->toString() : std::u16string();
}

/// Returns the new name.
std::u16string edit(Updater& updater) {
    auto& package = updater.metadata().find(materialPackageKey);
    auto const name = textOf(package, nameLabel) + u", a longer name – přepsaný";
    package.value(nameLabel, Types::UTF16String(name));
    package.value(dateLabel, Types::Timestamp(2031, 2, 3, 4, 5, 6, 0));
    return name;
}

/// All that an edit must leave alone: index tables and bodies, dark sets, and the kinds of the partitions.
struct Kept {
    explicit Kept(std::string const& name, Reader::DictionaryPtr const& dictionary) {
        Bytes const bytes = readFile(name);
        DataIO::File::FileDataSource source(name);
        Reader2 reader(source, dictionary, 65536);
        auto* const chosen = reader.backwardFirstPartitionWithFinalMetadata();
        auto const metadata = chosen->metadata();
        for (auto at = metadata->darkBegin(); at != metadata->darkEnd(); ++at)
            dark.push_back(written(**at));
        for (auto* at = reader.headerPartition(); at != nullptr; at = reader.nextPartition(at)) {
            auto const* const next = reader.nextPartition(at);
            auto const end = next != nullptr ? next->partitionAbsoluteOffset() : bytes.size();
            auto const start =
                std::min<std::uint64_t>(at->bodyAbsoluteOffset() - at->partitionPack().indexByteCount(), end);
            bodies.emplace_back(bytes.data() + start, bytes.data() + end);
            if (next == nullptr && reader.loadRIP()) // its offsets may change
                bodies.back().resize(bodies.back().size() -
                                     static_cast<std::size_t>(reader.rip()->serializedSize()));
            keys.push_back(at->partitionPack().key());
        }
        auto const& package = metadata->find(materialPackageKey);
        packageName = textOf(package, nameLabel);
        packageDate = textOf(package, dateLabel);
    }

    std::vector<Bytes> dark, bodies;
    std::vector<KLV::Key> keys;
    std::u16string packageName, packageDate;
};

/// What `zelm partitions` has to say against the file.
std::string complaints(std::string const& name) {
    auto const run = runZelm({"partitions", name});
    return run.status == 0 ? std::string() : run.output + run.errors;
}

void expectEdited(std::string const& name, std::string const& original,
                  Reader::DictionaryPtr const& dictionary, std::u16string const& packageName) {
    Kept const before(original, dictionary), after(name, dictionary);
    EXPECT_EQ(before.dark, after.dark);
    EXPECT_EQ(before.keys, after.keys);
    EXPECT_TRUE(before.bodies == after.bodies);
    EXPECT_EQ(after.packageName, packageName);
    EXPECT_EQ(after.packageDate, u"2031-02-03T04:05:06.000Z");
    EXPECT_TRUE(!complaints(original).empty() || complaints(name).empty()) << complaints(name);
}

} // namespace

TEST(UpdaterSamples, TakeALongerNameAndADateInPlaceAndIntoANewFile) {
    auto const files = sampleFiles();
    if (files.empty())
        GTEST_SKIP() << "no sample files in " << MXFZELM_SAMPLES_DIR;
    auto const dictionary = ZelmDictionary::standard();
    TemporaryFolder folder;
    for (auto const& path : files) {
        SCOPED_TRACE(path);
        std::string const sample = nameOf(path), copy = folder.file("copy.mxf"),
                          fresh = folder.file("new.mxf");
        std::filesystem::remove(fresh);
        writeFile(copy, readFile(sample));
        {
            Updater updater(copy, dictionary, 65536);
            auto const packageName = edit(updater);
            EXPECT_EQ(updater.changes().size(), 2u);
            auto const report = updater.writeToFile(fresh);
            EXPECT_EQ(report.plan.newFileSize, readFile(fresh).size());
            expectEdited(fresh, sample, dictionary, packageName);
        }
        // The samples have fill enough, and the new file has in any case.
        for (auto const& original : {sample, fresh}) {
            writeFile(copy, readFile(original));
            Updater updater(copy, dictionary, 65536);
            auto const packageName = edit(updater);
            auto const report = updater.writeInPlace();
            EXPECT_LT(report.bytesWritten, 256u * 1024);
            expectEdited(copy, original, dictionary, packageName);
        }
    }
}

} // namespace MXF::Zelm::Test
