/// D-10 pictures (SMPTE 356M), wrapped as in SMPTE 386M.
#pragma once

#include "MXF/Zelm/GenericContainer/Analyzers/D10Format.h"
#include "MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h"
#include "MXF/Zelm/Utils/Padding.h"

namespace MXF::Zelm::GenericContainer {

/// Reads the MPEG-2 stream of D-10: intra pictures that all have the size which goes with lines and bit rate.
/// Smaller ones are filled up with zeros, larger ones refused. Its key ends in 05 01 01 00 when it is the
/// package's only picture.
class MXFZELM_EXPORT D10Analyzer : public MPEG2VideoAnalyzer {
public:
    explicit D10Analyzer(Templates::SharedPtr<DataIO::SliceSource> source);
    ~D10Analyzer() override;

    /// False for MPEG-2 video that is no D-10 by its headers.
    bool preload() override;

    /// Throws Exceptions::InvalidStructure before `preload`.
    D10Format const& format() const;

    Types::UniversalLabel universalLabel() const override;
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;
    unsigned int requiredKAGSize() const override;
    bool isCBE() const override;
    using MPEG2VideoAnalyzer::boundedEditUnitSize;
    unsigned int boundedEditUnitSize() const override;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    std::uint64_t read(EditUnit& unit) override;

private:
    D10Format const* format_ = nullptr;
    Utils::Padding padding_;
};

} // namespace MXF::Zelm::GenericContainer
