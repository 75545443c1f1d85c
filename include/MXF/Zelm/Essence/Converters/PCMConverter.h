/// PCM in another format.
#pragma once

#include "MXF/Zelm/Essence/Converters/BlockConverter.h"
#include "MXF/Zelm/Essence/PCMFormat.h"

#include <memory>
#include <vector>

namespace MXF::Zelm::Essence::Converters {

class SampleMover;

/// Changes bits, byte order and choice of channels. Samples of more bits get zeros below; of fewer bits, the
/// lowest are cut off, without rounding or dither, so that what was widened before comes back as it was.
class MXFZELM_EXPORT PCMConverter : public BlockConverter {
public:
    /// Stands for a channel of zeros.
    static constexpr unsigned silence = ~0u;

    /// All channels of `source` in their order. Throws Exceptions::InvalidValue for a format that is not
    /// valid, or formats of different numbers of channels.
    PCMConverter(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& from,
                 PCMFormat const& to);

    /// Channel i comes from channel `channels[i]` of the source, counted from 0, or is `silence`; there are
    /// as many as `to` says. Throws Exceptions::InvalidValue for a format that is not valid, a channel that
    /// is not there, or another number of them.
    PCMConverter(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& from, PCMFormat const& to,
                 std::vector<unsigned> channels);
    ~PCMConverter() override;

    /// What is read.
    PCMFormat const& format() const { return to_; }

private:
    void convert(const unsigned char* in, std::size_t units, unsigned char* out) override;

    PCMFormat to_;
    std::vector<unsigned> channels_; // empty for all
    std::unique_ptr<SampleMover> mover_;
};

} // namespace MXF::Zelm::Essence::Converters
