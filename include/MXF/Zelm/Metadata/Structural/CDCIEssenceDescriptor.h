/// Descriptors of pictures in luma and colour differences, and of MPEG-2 video among them (SMPTE 377M, 381M).
#pragma once

#include "MXF/Zelm/Metadata/Structural/GenericPictureEssenceDescriptor.h"
#include "MXF/Zelm/Types/Integers.h"

namespace MXF::Zelm::Metadata::Structural {

/// Describes pictures in luma and colour differences (colour difference component image).
class MXFZELM_EXPORT CDCIEssenceDescriptor : public GenericPictureEssenceDescriptor {
public:
    CDCIEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~CDCIEssenceDescriptor() override;

    static KLV::Key const& classKey();

    /// Values of `colorSiting`.
    enum ColorSiting : std::uint8_t {
        cositing,           ///< with the first luma sample
        horizontalMidpoint, ///< halfway between two luma samples of a line
        threeTap,
        quincunx,         ///< in the middle of four luma samples
        rec601,           ///< as in ITU-R BT.601
        lineAlternating,  ///< Cb and Cr on lines in turn
        verticalMidpoint, ///< halfway between two lines
        unknownSiting = 255
    };

    /// Active bits of a sample: 8, 10, 12, 16; 253, 254 and 255 are floats of 16, 32 and 64 bits. 0 is
    /// unknown.
    Types::UInt32 const* componentDepth() const;
    void componentDepth(Types::UInt32 const& depth);
    void resetComponentDepth();

    /// Luma samples to a colour difference sample along a line: 1 (4:4:4), 2 (4:2:2, 4:2:0), 4 (4:1:1); 0 is
    /// unknown.
    Types::UInt32 const* horizontalSubsampling() const;
    void horizontalSubsampling(Types::UInt32 const& ratio);
    void resetHorizontalSubsampling();

    /// The same from line to line: 1 (default), 2 (4:2:0). Optional.
    Types::UInt32 const* verticalSubsampling() const;
    void verticalSubsampling(Types::UInt32 const& ratio);
    void resetVerticalSubsampling();

    /// Where colour difference samples lie: a ColorSiting. Optional.
    Types::UInt8 const* colorSiting() const;
    void colorSiting(Types::UInt8 const& siting);
    void resetColorSiting();

    /// Luma of black, 64 for 10 bits; by default 0. Optional.
    Types::UInt32 const* blackRefLevel() const;
    void blackRefLevel(Types::UInt32 const& level);
    void resetBlackRefLevel();

    /// Luma of white, 940 for 10 bits; by default the greatest value. Optional.
    Types::UInt32 const* whiteRefLevel() const;
    void whiteRefLevel(Types::UInt32 const& level);
    void resetWhiteRefLevel();

    /// Number of colour difference values, 897 for 10 bits; by default all but two. Optional.
    Types::UInt32 const* colorRange() const;
    void colorRange(Types::UInt32 const& range);
    void resetColorRange();

    /// Bits of an alpha sample; by default 0, no alpha. Optional.
    Types::UInt32 const* alphaSampleDepth() const;
    void alphaSampleDepth(Types::UInt32 const& depth);
    void resetAlphaSampleDepth();

    /// Bits that fill each sample up; by default 0. An Int16 in the registers and UInt16 in SMPTE 377M.
    /// Optional.
    Types::Int16 const* paddingBits() const;
    void paddingBits(Types::Int16 const& bits);
    void resetPaddingBits();

    /// False (default) for Cb Y Cr Y as in ITU-R BT.601, true for the reverse. Optional.
    Types::Boolean const* reversedByteOrder() const;
    void reversedByteOrder(Types::Boolean const& reversed);
    void resetReversedByteOrder();

protected:
    CDCIEssenceDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                          MetadataSetOwner* owner);
};

/// Describes MPEG-2 video (SMPTE 381M), by what its headers say.
class MXFZELM_EXPORT MPEG2VideoDescriptor : public CDCIEssenceDescriptor {
public:
    MPEG2VideoDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~MPEG2VideoDescriptor() override;

    static KLV::Key const& classKey();

    /// True when there is only one sequence header in all of the essence. Optional.
    Types::Boolean const* singleSequence() const;
    void singleSequence(Types::Boolean const& single);
    void resetSingleSequence();

    /// True when the number of B pictures between anchors is always the same; by default false. Optional.
    Types::Boolean const* constantBFrames() const;
    void constantBFrames(Types::Boolean const& constant);
    void resetConstantBFrames();

    /// 0 unknown (default), 1 progressive, 2 interlaced, 3 both. Optional.
    Types::UInt8 const* codedContentType() const;
    void codedContentType(Types::UInt8 const& type);
    void resetCodedContentType();

    /// `low_delay` of the sequence extension; by default false. Optional.
    Types::Boolean const* lowDelay() const;
    void lowDelay(Types::Boolean const& lowDelay);
    void resetLowDelay();

    /// True when all groups of pictures are closed; by default false. Optional.
    Types::Boolean const* closedGOP() const;
    void closedGOP(Types::Boolean const& closed);
    void resetClosedGOP();

    /// True when all groups of pictures have the same structure; by default false. Optional.
    Types::Boolean const* identicalGOP() const;
    void identicalGOP(Types::Boolean const& identical);
    void resetIdenticalGOP();

    /// The most pictures in a group; 0 (default) is unknown. Optional.
    Types::UInt16 const* maxGOP() const;
    void maxGOP(Types::UInt16 const& pictures);
    void resetMaxGOP();

    /// The most B pictures in a row. Optional.
    Types::UInt16 const* bPictureCount() const;
    void bPictureCount(Types::UInt16 const& pictures);
    void resetBPictureCount();

    /// Bits in a second, at most. Optional.
    Types::UInt32 const* bitRate() const;
    void bitRate(Types::UInt32 const& rate);
    void resetBitRate();

    /// `profile_and_level_indication` of the sequence extension. Optional.
    Types::UInt8 const* profileAndLevel() const;
    void profileAndLevel(Types::UInt8 const& indication);
    void resetProfileAndLevel();
};

} // namespace MXF::Zelm::Metadata::Structural
