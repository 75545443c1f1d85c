/// The sequence header of MPEG video and its extensions (ISO/IEC 13818-2, and 11172-2, which has none).
#pragma once

#include "MXF/Zelm/DataIO/BitSliceReader.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <optional>

namespace MXF::Zelm::Essence::MPEG {

/// Behind a sequence header of MPEG-2; its absence tells MPEG-1.
struct MXFZELM_EXPORT SequenceExtension {
    /// The profile and level indication, such as 0x85 for 4:2:2 at main level.
    std::uint8_t profileAndLevel = 0;

    /// Only progressive frames.
    bool progressive = false;

    /// 1 4:2:0, 2 4:2:2, 3 4:4:4; 0 is reserved.
    std::uint8_t chromaFormat = 0;

    /// What is put before the numbers of the sequence header: 2 bits of the sizes, 12 of the bit rate, 8 of
    /// the buffer size.
    std::uint8_t widthExtension = 0;
    std::uint8_t heightExtension = 0;
    std::uint16_t bitRateExtension = 0;
    std::uint8_t vbvBufferSizeExtension = 0;

    /// No B pictures.
    bool lowDelay = false;

    /// The frame rate of the header is multiplied by (n + 1) / (d + 1).
    std::uint8_t frameRateN = 0;
    std::uint8_t frameRateD = 0;

    /// Reads what follows the extension's identifier. Throws Exceptions::InvalidLength.
    static SequenceExtension read(DataIO::BitSliceReader& bits);
};

/// What is to be shown, and its colours.
struct MXFZELM_EXPORT SequenceDisplayExtension {
    /// 0 component, 1 PAL, 2 NTSC, 3 SECAM, 4 MAC, 5 unspecified.
    std::uint8_t videoFormat = 5;

    /// By the tables of the standard; 2 where it is not said.
    std::uint8_t colourPrimaries = 2;
    std::uint8_t transferCharacteristics = 2;
    std::uint8_t matrixCoefficients = 2;

    /// In samples and frame lines.
    std::uint16_t displayWidth = 0;
    std::uint16_t displayHeight = 0;

    /// Reads what follows the extension's identifier. Throws Exceptions::InvalidLength.
    static SequenceDisplayExtension read(DataIO::BitSliceReader& bits);
};

/// The numbers as they are coded, and what they say together with the extension's.
struct MXFZELM_EXPORT SequenceHeader {
    std::uint16_t widthValue = 0;
    std::uint16_t heightValue = 0;
    std::uint8_t aspectRatioCode = 0;
    std::uint8_t frameRateCode = 0;
    std::uint32_t bitRateValue = 0;
    std::uint16_t vbvBufferSizeValue = 0;
    bool constrainedParameters = false;

    std::optional<SequenceExtension> extension = std::nullopt;
    std::optional<SequenceDisplayExtension> display = std::nullopt;

    /// Reads what follows the start code, the quantiser matrices included, which are passed over. Throws
    /// Exceptions::InvalidLength.
    static SequenceHeader read(DataIO::BitSliceReader& bits);

    bool isMPEG1() const { return !extension; }

    /// In samples, and in lines of a frame.
    std::uint32_t width() const;
    std::uint32_t height() const;

    /// Frames a second, 0/0 for a code that is reserved.
    Templates::Rational<int> frameRate() const;

    /// Width to height of the picture as it is shown, 0/0 for a code that is reserved.
    Templates::Rational<int> aspectRatio() const;

    /// Bits a second. Of MPEG-1 none when the rate varies.
    std::optional<std::uint64_t> bitRate() const;

    /// Bits of the decoder's buffer.
    std::uint64_t vbvBufferSize() const;

    /// Without the extension MPEG-1's: progressive, 4:2:0.
    bool isProgressive() const { return !extension || extension->progressive; }
    std::uint8_t chromaFormat() const { return extension ? extension->chromaFormat : std::uint8_t{1}; }
};

} // namespace MXF::Zelm::Essence::MPEG
