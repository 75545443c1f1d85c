/// DV as DIF blocks, wrapped by frames or as a clip (SMPTE 383M).
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/DV/FrameHeader.h"
#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"

namespace MXF::Zelm::GenericContainer {

struct MXFZELM_EXPORT DVOptions {
    Wrapping wrapping = Wrapping::Frame;

    /// Bytes that are to come, if it is known.
    std::optional<std::uint64_t> byteCount = std::nullopt;
};

/// Reads frames of DIF blocks, 25, 50 or 100 Mb/s, one behind the other. All have the form of the first one
/// and its size. Pictures and the sound in the DIF blocks are one compound element with a picture track. A
/// stream that ends amid a frame ends with the frame before; `fault` then says so.
class MXFZELM_EXPORT DVAnalyzer : public BasicAnalyzer<CompoundAnalyzer> {
public:
    explicit DVAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, DVOptions const& options = {});

    using BasicAnalyzer::boundedEditUnitSize;
    using BasicAnalyzer::editRate;

    /// That of the form; 0/0 before `preload`.
    Templates::Rational<int> editRate() const override;

    /// False when the source does not stand at a frame of a known form.
    bool preload() override;

    Types::UniversalLabel universalLabel() const override;
    bool isCBE() const override { return true; }
    unsigned int boundedEditUnitSize() const override;
    Utils::TimeCode currentTimeCode() const override { return timecode_; }
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;
    std::optional<std::uint64_t> byteCount() const override;
    std::string fault() const override { return fault_; }

    /// The first frame. Throws Exceptions::InvalidStructure before `preload`.
    Essence::DV::FrameHeader const& header() const;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    bool hasMore() const override { return !next_.empty(); }
    std::uint64_t read(EditUnit& unit) override;

private:
    void fetch();

    Templates::SharedPtr<DataIO::SliceSource> source_;
    DVOptions options_;
    std::optional<Essence::DV::FrameHeader> header_;
    DataIO::Chain next_; // the frame that comes, whole
    Utils::TimeCode timecode_;
    std::string fault_;
};

} // namespace MXF::Zelm::GenericContainer
