#include "MXF/Zelm/GenericContainer/Analyzers/DataEssenceAnalyzer.h"

#include "MXF/Zelm/DataIO/BoundedSliceSource.h"
#include "MXF/Zelm/DataIO/File/FileSliceSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/DataDescriptors.h"

namespace MXF::Zelm::GenericContainer {

using Metadata::Structural::GenericDataEssenceDescriptor;

DataEssenceAnalyzer::DataEssenceAnalyzer(NextSource next, DataEssenceOptions options)
    : next_(std::move(next)), options_(std::move(options)) {
    editRate(options_.editRate);
}

DataEssenceAnalyzer::~DataEssenceAnalyzer() = default;

Templates::SharedPtr<DataEssenceAnalyzer> DataEssenceAnalyzer::ofFiles(Templates::vector<std::string> names,
                                                                       DataEssenceOptions options) {
    auto next = [names = std::move(names), at = std::size_t{0}]() mutable {
        return at < names.size()
                   ? std::make_shared<DataIO::File::FileSliceSource>(std::string_view(names[at++]))
                   : nullptr;
    };
    return std::make_shared<DataEssenceAnalyzer>(std::move(next), std::move(options));
}

Templates::SharedPtr<DataEssenceAnalyzer>
DataEssenceAnalyzer::ofPieces(Templates::SharedPtr<DataIO::SliceSource> stream, DataEssenceOptions options) {
    if (options.constantSize == 0)
        throw Exceptions::InvalidValue("A stream of data cannot be cut in pieces of 0 bytes");
    auto next = [stream = std::move(stream), size = options.constantSize] {
        return stream->endOfStream() ? nullptr : std::make_shared<DataIO::BoundedSliceSource>(stream, size);
    };
    return std::make_shared<DataEssenceAnalyzer>(std::move(next), std::move(options));
}

bool DataEssenceAnalyzer::preload() {
    if (!isLoaded_)
        ahead_ = next_();
    isLoaded_ = true;
    return true;
}

Types::UniversalLabel DataEssenceAnalyzer::universalLabel() const { return options_.essenceContainer; }
unsigned char DataEssenceAnalyzer::itemTypeIdentifier() const { return options_.itemType; }
unsigned char DataEssenceAnalyzer::essenceElementType() const { return options_.elementType; }
bool DataEssenceAnalyzer::isCBE() const { return boundedEditUnitSize() != 0; }

unsigned int DataEssenceAnalyzer::boundedEditUnitSize() const {
    return options_.constantSize != 0 ? options_.constantSize : BasicAnalyzer::boundedEditUnitSize();
}

Metadata::Structural::FileDescriptor&
DataEssenceAnalyzer::describe(Metadata::PartitionMetadata& metadata,
                              Metadata::Structural::FileDescriptor* present) {
    auto& descriptor = presentOrNew<GenericDataEssenceDescriptor>(metadata, present);
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    descriptor.dataEssenceCoding(options_.coding.value_or(Types::UniversalLabel()));
    return descriptor;
}

bool DataEssenceAnalyzer::hasMore() const { return ahead_ != nullptr; }

std::uint64_t DataEssenceAnalyzer::read(EditUnit& unit) {
    constexpr std::uint64_t readSize = std::uint64_t{1} << 20;
    while (ahead_->read(readSize, unit.data) != 0)
        if (unit.data.size() > largestUnit)
            throw Exceptions::InvalidFormat("Edit unit " + std::to_string(unitsGiven()) +
                                            " of the data has more than " + std::to_string(largestUnit) +
                                            " bytes");
    ahead_ = next_();
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
