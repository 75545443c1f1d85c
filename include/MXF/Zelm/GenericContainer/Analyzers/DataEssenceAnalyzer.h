/// Data of any kind: files or pieces of a stream as edit units.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"

#include <functional>
#include <optional>

namespace MXF::Zelm::GenericContainer {

struct MXFZELM_EXPORT DataEssenceOptions {
    /// The mapping: label of the container, byte 14 of the keys of its elements, byte 12 if it is no data of
    /// the generic container.
    Types::UniversalLabel essenceContainer;
    unsigned char elementType = 0;
    unsigned char itemType = ElementKey::Data;

    /// Edit units a second; a multiplexer sets it.
    Templates::Rational<int> editRate = {};

    /// For the descriptor, when it is known.
    std::optional<Types::UniversalLabel> coding = std::nullopt;

    /// Bytes of each edit unit when all have the same, else 0.
    unsigned int constantSize = 0;
};

class MXFZELM_EXPORT DataEssenceAnalyzer : public BasicAnalyzer<DataAnalyzer> {
public:
    /// Gives the source of the next edit unit, all of whose bytes make it; null at the end.
    using NextSource = std::function<Templates::SharedPtr<DataIO::SliceSource>()>;

    /// The largest edit unit, in bytes.
    static constexpr std::uint64_t largestUnit = std::uint64_t{256} << 20;

    DataEssenceAnalyzer(NextSource next, DataEssenceOptions options);

    /// Files, in their order; names are UTF-8. Each is opened when its turn comes.
    static Templates::SharedPtr<DataEssenceAnalyzer> ofFiles(Templates::vector<std::string> names,
                                                             DataEssenceOptions options);

    /// A stream in pieces of `options.constantSize` bytes. The last one may have fewer. Throws
    /// Exceptions::InvalidValue for a size of 0.
    static Templates::SharedPtr<DataEssenceAnalyzer>
    ofPieces(Templates::SharedPtr<DataIO::SliceSource> stream, DataEssenceOptions options);
    ~DataEssenceAnalyzer() override;

    bool preload() override;
    Types::UniversalLabel universalLabel() const override;
    bool isCBE() const override;
    using BasicAnalyzer::boundedEditUnitSize;
    unsigned int boundedEditUnitSize() const override;
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    bool hasMore() const override;
    std::uint64_t read(EditUnit& unit) override;

private:
    NextSource next_;
    DataEssenceOptions options_;
    Templates::SharedPtr<DataIO::SliceSource> ahead_; // the next edit unit, null at the end
    bool isLoaded_ = false;
};

} // namespace MXF::Zelm::GenericContainer
