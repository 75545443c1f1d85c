#include "MXF/Zelm/Essence/MPEG/SequenceHeader.h"

#include "MXF/Zelm/Essence/MPEG/BitFields.h"

#include <iterator>

namespace MXF::Zelm::Essence::MPEG {

namespace {

using Ratio = Templates::Rational<int>;

constexpr Ratio frameRates[] = {{0, 0},  {24000, 1001}, {24, 1},       {25, 1}, {30000, 1001},
                                {30, 1}, {50, 1},       {60000, 1001}, {60, 1}};

constexpr unsigned quantiserMatrixBits = 64 * 8;

/// What the bit rate of MPEG-1 says when it varies.
constexpr std::uint32_t variableRate = 0x3FFFF;

template <class Integer>
Integer number(DataIO::BitSliceReader& bits, unsigned count) {
    return static_cast<Integer>(bits.read(count));
}

/// MPEG-1 codes the shape of samples: those of the two usual formats, as the pictures that they make.
Ratio aspectRatioOfMPEG1(std::uint8_t code) {
    switch (code) {
    case 3:
    case 6:
        return {16, 9};
    case 8:
    case 12:
        return {4, 3};
    default:
        return {};
    }
}

} // namespace

SequenceExtension SequenceExtension::read(DataIO::BitSliceReader& bits) {
    SequenceExtension read;
    BitFields fields(bits, 44);
    read.profileAndLevel = fields.take<std::uint8_t>(8);
    read.progressive = fields.takeFlag();
    read.chromaFormat = fields.take<std::uint8_t>(2);
    read.widthExtension = fields.take<std::uint8_t>(2);
    read.heightExtension = fields.take<std::uint8_t>(2);
    read.bitRateExtension = fields.take<std::uint16_t>(12);
    fields.pass(1); // marker
    read.vbvBufferSizeExtension = fields.take<std::uint8_t>(8);
    read.lowDelay = fields.takeFlag();
    read.frameRateN = fields.take<std::uint8_t>(2);
    read.frameRateD = fields.take<std::uint8_t>(5);
    return read;
}

SequenceDisplayExtension SequenceDisplayExtension::read(DataIO::BitSliceReader& bits) {
    SequenceDisplayExtension read;
    read.videoFormat = number<std::uint8_t>(bits, 3);
    if (bits.readFlag()) {
        read.colourPrimaries = number<std::uint8_t>(bits, 8);
        read.transferCharacteristics = number<std::uint8_t>(bits, 8);
        read.matrixCoefficients = number<std::uint8_t>(bits, 8);
    }
    read.displayWidth = number<std::uint16_t>(bits, 14);
    bits.skip(1); // marker
    read.displayHeight = number<std::uint16_t>(bits, 14);
    return read;
}

SequenceHeader SequenceHeader::read(DataIO::BitSliceReader& bits) {
    SequenceHeader read;
    BitFields fields(bits, 62);
    read.widthValue = fields.take<std::uint16_t>(12);
    read.heightValue = fields.take<std::uint16_t>(12);
    read.aspectRatioCode = fields.take<std::uint8_t>(4);
    read.frameRateCode = fields.take<std::uint8_t>(4);
    read.bitRateValue = fields.take<std::uint32_t>(18);
    fields.pass(1); // marker
    read.vbvBufferSizeValue = fields.take<std::uint16_t>(10);
    read.constrainedParameters = fields.takeFlag();
    for (int matrix = 0; matrix < 2; ++matrix) // intra, non-intra
        if (bits.readFlag())
            bits.skip(quantiserMatrixBits);
    return read;
}

std::uint32_t SequenceHeader::width() const {
    return widthValue | (extension ? std::uint32_t{extension->widthExtension} << 12 : 0);
}

std::uint32_t SequenceHeader::height() const {
    return heightValue | (extension ? std::uint32_t{extension->heightExtension} << 12 : 0);
}

Ratio SequenceHeader::frameRate() const {
    if (frameRateCode >= std::size(frameRates) || frameRateCode == 0)
        return {};
    Ratio rate = frameRates[frameRateCode];
    if (extension) {
        rate.numerator *= extension->frameRateN + 1;
        rate.denominator *= extension->frameRateD + 1;
    }
    return rate;
}

Ratio SequenceHeader::aspectRatio() const {
    int const columns = static_cast<int>(width()), lines = static_cast<int>(height());
    if (aspectRatioCode == 1)
        return columns != 0 && lines != 0 ? Ratio{columns, lines} : Ratio{};
    if (isMPEG1())
        return aspectRatioOfMPEG1(aspectRatioCode);
    switch (aspectRatioCode) {
    case 2:
        return {4, 3};
    case 3:
        return {16, 9};
    case 4:
        return {221, 100};
    default:
        return {};
    }
}

std::optional<std::uint64_t> SequenceHeader::bitRate() const {
    constexpr unsigned unit = 400;
    if (isMPEG1() && bitRateValue == variableRate)
        return std::nullopt;
    return (bitRateValue | (extension ? std::uint64_t{extension->bitRateExtension} << 18 : 0)) * unit;
}

std::uint64_t SequenceHeader::vbvBufferSize() const {
    constexpr unsigned unit = 16384;
    std::uint64_t const high = extension ? std::uint64_t{extension->vbvBufferSizeExtension} << 10 : 0;
    return (vbvBufferSizeValue | high) * unit;
}

} // namespace MXF::Zelm::Essence::MPEG
