/// Several sounds as one.
#pragma once

#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/Essence/PCMFormat.h"
#include "MXF/Zelm/Essence/PieceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <memory>
#include <vector>

namespace MXF::Zelm::Essence::Converters {

class SampleMover;

/// Puts the channels of several sources side by side, those of the first before those of the second. Where a
/// source ends before others, its channels are silent. Bits and byte orders may differ.
class MXFZELM_EXPORT ChannelMerger : public PieceSource {
public:
    struct Part {
        Templates::SharedPtr<DataIO::SliceSource> source;
        PCMFormat format;
    };

    /// Gives samples of `bitsPerSample` bits. Throws Exceptions::InvalidValue when there is no part, or a
    /// format is not valid.
    ChannelMerger(std::vector<Part> parts, unsigned bitsPerSample,
                  PCMFormat::ByteOrder byteOrder = PCMFormat::ByteOrder::Little);
    ~ChannelMerger() override;

    /// What is read.
    PCMFormat const& format() const { return format_; }

private:
    bool produce(DataIO::Chain& chain) override;
    bool nothingLeft() const override;
    void fill(Part const& part, SampleMover const& mover, DataIO::Slice const& in, std::size_t instants,
              unsigned char* out, unsigned firstChannel) const;

    std::vector<Part> parts_;
    PCMFormat format_;
    std::vector<SampleMover> movers_;
    DataIO::Memory::MemoryBlockFactory blocks_;
};

} // namespace MXF::Zelm::Essence::Converters
