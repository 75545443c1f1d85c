#include "MXF/Zelm/Metadata/Structural/BuildingDescriptors.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <limits>

namespace MXF::Zelm::Metadata::Structural {

namespace {

template <class Integer>
Integer fitting(std::uint64_t value, const char* what) {
    if (value > std::numeric_limits<Integer>::max())
        throw Exceptions::InvalidValue(std::string("Sound with ") + std::to_string(value) + " " + what +
                                       " cannot be described");
    return static_cast<Integer>(value);
}

} // namespace

void describePicture(CDCIEssenceDescriptor& descriptor, PictureOptions const& options) {
    descriptor.sampleRate(Types::Rational(options.frameRate));
    descriptor.essenceContainer(options.essenceContainer);
    descriptor.pictureEssenceCoding(options.coding);
    descriptor.frameLayout(Types::UInt8(options.frameLayout));
    descriptor.storedWidth(Types::UInt32(options.width));
    descriptor.storedHeight(Types::UInt32(options.height));
    descriptor.aspectRatio(Types::Rational(options.aspectRatio));
    descriptor.videoLineMap(options.firstLine[0], options.firstLine[1]);
    descriptor.componentDepth(Types::UInt32(options.componentDepth));
    descriptor.horizontalSubsampling(Types::UInt32(options.horizontalSubsampling));
    descriptor.verticalSubsampling(Types::UInt32(options.verticalSubsampling));
}

void describeSound(WAVEAudioEssenceDescriptor& descriptor, SoundOptions const& options) {
    if (options.samplingRate.numerator <= 0 || options.samplingRate.denominator <= 0)
        throw Exceptions::InvalidValue("Sound without a sampling rate cannot be described");
    auto const blockAlign = fitting<std::uint16_t>(
        std::uint64_t{options.channels} * ((std::uint64_t{options.bits} + 7) / 8), "bytes a sample");
    auto const rate = static_cast<std::uint64_t>(options.samplingRate.numerator);
    auto const bytesPerSecond = fitting<std::uint32_t>(
        rate * blockAlign / static_cast<std::uint64_t>(options.samplingRate.denominator), "bytes a second");
    descriptor.sampleRate(Types::Rational(options.editRate));
    descriptor.essenceContainer(options.essenceContainer);
    descriptor.audioSamplingRate(Types::Rational(options.samplingRate));
    descriptor.locked(Types::Boolean(options.locked));
    descriptor.channelCount(Types::UInt32(options.channels));
    descriptor.quantizationBits(Types::UInt32(options.bits));
    descriptor.blockAlign(Types::UInt16(blockAlign));
    descriptor.avgBps(Types::UInt32(bytesPerSecond));
}

} // namespace MXF::Zelm::Metadata::Structural
