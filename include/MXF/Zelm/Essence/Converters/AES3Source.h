/// PCM out of AES3 subframes.
#pragma once

#include "MXF/Zelm/Essence/AES3/AES3Info.h"
#include "MXF/Zelm/Essence/Converters/BlockConverter.h"
#include "MXF/Zelm/Essence/PCMFormat.h"

namespace MXF::Zelm::Essence::Converters {

/// Reads subframes, those of all channels of an instant in turn: of 4 bytes, the words of SMPTE 331M; of 3 or
/// 2 bytes, the sample alone (SMPTE 382M). Gives samples of the stream's bits; lower ones are cut off.
class MXFZELM_EXPORT AES3Source : public BlockConverter {
public:
    /// Subframes of `bytesPerSample` bytes. Throws Exceptions::InvalidFormat when the samples are of 20 bits,
    /// and "AES3 has invalid bytes per Sample" for other than 4 bytes, 3, or 2 where the samples are of 16
    /// bits. Throws Exceptions::InvalidValue for other than 16 and 24 bits.
    AES3Source(Templates::SharedPtr<DataIO::SliceSource> source, AES3::AES3Info const& info,
               unsigned bytesPerSample);

    /// What is read.
    PCMFormat const& format() const { return format_; }

private:
    void convert(const unsigned char* in, std::size_t units, unsigned char* out) override;

    PCMFormat format_;
    unsigned bytesPerSample_;
};

} // namespace MXF::Zelm::Essence::Converters
