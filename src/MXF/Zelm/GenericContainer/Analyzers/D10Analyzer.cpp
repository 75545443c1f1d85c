#include "MXF/Zelm/GenericContainer/Analyzers/D10Analyzer.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"

namespace MXF::Zelm::GenericContainer {

namespace {

using Metadata::Structural::CDCIEssenceDescriptor;

constexpr unsigned char d10Picture = 0x01;

} // namespace

D10Analyzer::D10Analyzer(Templates::SharedPtr<DataIO::SliceSource> source)
    : MPEG2VideoAnalyzer(std::move(source)) {}

D10Analyzer::~D10Analyzer() = default;

bool D10Analyzer::preload() {
    if (!MPEG2VideoAnalyzer::preload())
        return false;
    format_ = isIntraOnly() ? D10Format::find(sequence()) : nullptr;
    return format_ != nullptr;
}

D10Format const& D10Analyzer::format() const {
    if (format_ == nullptr)
        throw Exceptions::InvalidStructure("The D-10 video has not been looked at yet");
    return *format_;
}

Types::UniversalLabel D10Analyzer::universalLabel() const { return format().containerLabel(); }
unsigned char D10Analyzer::itemTypeIdentifier() const { return ElementKey::CPPicture; }
unsigned char D10Analyzer::essenceElementType() const { return d10Picture; }
unsigned int D10Analyzer::requiredKAGSize() const { return d10KAGSize; }
bool D10Analyzer::isCBE() const { return true; }
unsigned int D10Analyzer::boundedEditUnitSize() const { return format().frameSize; }

Metadata::Structural::FileDescriptor& D10Analyzer::describe(Metadata::PartitionMetadata& metadata,
                                                            Metadata::Structural::FileDescriptor* present) {
    auto& descriptor = presentOrNew<CDCIEssenceDescriptor>(metadata, present);
    describePictures(descriptor);
    descriptor.pictureEssenceCoding(format().codingLabel());
    descriptor.paddingBits(Types::Int16(0));
    descriptor.reversedByteOrder(Types::Boolean(false));
    return descriptor;
}

std::uint64_t D10Analyzer::read(EditUnit& unit) {
    std::uint64_t const units = MPEG2VideoAnalyzer::read(unit);
    std::uint64_t const size = unit.data.size(), wanted = format().frameSize;
    if (size > wanted)
        throw Exceptions::InvalidFormat("D-10 picture " + std::to_string(unitsGiven()) + " has " +
                                        std::to_string(size) + " bytes, more than " + std::to_string(wanted));
    padding_.appendZeros(unit.data, wanted - size);
    return units;
}

} // namespace MXF::Zelm::GenericContainer
