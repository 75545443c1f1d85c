/// An analyzer of a host's own: each line of a text file is an edit unit of data, put into content packages.
///
///     example-analyzer TEXT
#include <MXF/Zelm/DataIO/Slice.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h>
#include <MXF/Zelm/GenericContainer/Multiplexer/Mux.h>
#include <MXF/Zelm/Metadata/Structural/DataDescriptors.h>
#include <MXF/Zelm/Metadata/Structural/Initialize.h>
#include <MXF/Zelm/Metadata/Structural/Packages.h>
#include <MXF/ZelmDictionary/Dictionary.h>

#include <fstream>
#include <iostream>
#include <memory>

namespace {

using namespace MXF::Zelm;
using namespace MXF::Zelm::KLV::Literals;

/// All that an analyzer needs beyond what BasicAnalyzer does.
class Lines : public GenericContainer::BasicAnalyzer<GenericContainer::DataAnalyzer> {
public:
    explicit Lines(std::string const& name) : file_(name) { std::getline(file_, next_); }

    Types::UniversalLabel universalLabel() const override {
        return "060E2B34.0401010D.0D010301.027E0100"_key;
    }
    unsigned char itemTypeIdentifier() const override { return 0x17; }
    unsigned char essenceElementType() const override { return 0x7E; }

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override {
        using Descriptor = Metadata::Structural::GenericDataEssenceDescriptor;
        auto& descriptor = GenericContainer::presentOrNew<Descriptor>(metadata, present);
        descriptor.sampleRate(Types::Rational(editRate()));
        descriptor.essenceContainer(universalLabel());
        descriptor.dataEssenceCoding(Types::UniversalLabel());
        return descriptor;
    }
    bool hasMore() const override { return bool(file_); }
    std::uint64_t read(GenericContainer::EditUnit& unit) override {
        unit.data.append(DataIO::Slice::adopt(std::vector<unsigned char>(next_.begin(), next_.end())));
        std::getline(file_, next_);
        return 1;
    }

private:
    std::ifstream file_;
    std::string next_;
};

} // namespace

int main(int count, char** arguments) try {
    namespace Structural = Metadata::Structural;
    if (count != 2)
        return 2;
    Structural::initialize();
    auto const metadata = Structural::createPartitionMetadata(MXF::ZelmDictionary::standard());
    Structural::createPreface(*metadata, {.operationalPattern = {}, .product = {}});
    auto& package = Structural::createFilePackage(*metadata, {.bodySID = 1, .indexSID = 2});
    GenericContainer::Multiplexer::Mux mux(&package, {}, {25, 1});
    mux.addAnalyzer(std::make_shared<Lines>(arguments[1]), false, {0, 1});
    auto const source = mux.commit();
    DataIO::Chain out;
    bool mayStartPartition = false;
    GenericContainer::Source::FutureUpdaterPtr updater;
    Templates::Rational<std::int64_t> position;
    while (source->next(out, mayStartPartition, updater, position))
        std::cout << position.toDouble() << " s: " << out.size() << " bytes\n";
    source->finalize();
    return 0;
} catch (MXF::Zelm::Exceptions::BaseException const& fault) {
    std::cerr << fault.message() << "\n";
    return 1;
}
