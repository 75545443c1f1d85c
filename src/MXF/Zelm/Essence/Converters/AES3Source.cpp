#include "MXF/Zelm/Essence/Converters/AES3Source.h"

#include "MXF/Zelm/Essence/AES3/SubframeWords.h"
#include "MXF/Zelm/Essence/AES3/TwentyBits.h"
#include "MXF/Zelm/Essence/Converters/SampleMover.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>
#include <utility>

namespace MXF::Zelm::Essence::Converters {

namespace {

PCMFormat formatOf(AES3::AES3Info const& info, unsigned bytesPerSample) {
    PCMFormat const format = {info.channels, info.bitsPerSample};
    if (format.bitsPerSample == 20)
        AES3::refuseTwentyBits();
    requireValid(format);
    if (format.bitsPerSample > 24)
        throw Exceptions::InvalidValue("AES3 has no samples of " + std::to_string(format.bitsPerSample) +
                                       " bits");
    if (bytesPerSample > AES3::subframeSize || bytesPerSample < format.sampleSize())
        throw Exceptions::InvalidFormat("AES3 has invalid bytes per Sample");
    return format;
}

} // namespace

AES3Source::AES3Source(Templates::SharedPtr<DataIO::SliceSource> source, AES3::AES3Info const& info,
                       unsigned bytesPerSample)
    : BlockConverter(std::move(source), std::size_t{info.channels} * bytesPerSample,
                     formatOf(info, bytesPerSample).instantSize()),
      format_(formatOf(info, bytesPerSample)),
      bytesPerSample_(bytesPerSample) {}

void AES3Source::convert(const unsigned char* in, std::size_t units, unsigned char* out) {
    if (bytesPerSample_ == AES3::subframeSize)
        return AES3::unpackSubframes(format_, in, units, format_.channels, out);
    PCMFormat const from = {format_.channels, 8 * bytesPerSample_};
    SampleMover(from, format_).moveAll(in, units, out);
}

} // namespace MXF::Zelm::Essence::Converters
