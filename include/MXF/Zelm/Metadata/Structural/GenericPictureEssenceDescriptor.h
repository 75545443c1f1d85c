/// Descriptor of pictures (SMPTE 377M).
#pragma once

#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Types/ByteStrings.h"
#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {

/// Describes pictures by four rectangles, one in the other: stored, sampled, displayed and active. Widths are
/// in pixels; heights are in lines of one field when the fields are stored separately (or one is), else of
/// the frame. Offsets count from the upper left corner of the rectangle around.
class MXFZELM_EXPORT GenericPictureEssenceDescriptor : public FileDescriptor {
public:
    GenericPictureEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~GenericPictureEssenceDescriptor() override;

    static KLV::Key const& classKey();

    /// Values of `frameLayout`.
    enum FrameLayout : std::uint8_t {
        fullFrame,      ///< progressive
        separateFields, ///< two fields one after the other
        singleField,    ///< one field of each frame
        mixedFields,    ///< the lines of two fields in turn
        segmentedFrame, ///< a progressive frame, stored as two fields
        unknownLayout = 255
    };

    /// How the lines of a frame are stored: a FrameLayout.
    Types::UInt8 const* frameLayout() const;
    void frameLayout(Types::UInt8 const& layout);
    void resetFrameLayout();

    /// Width of the stored picture; 0 is unknown.
    Types::UInt32 const* storedWidth() const;
    void storedWidth(Types::UInt32 const& width);
    void resetStoredWidth();

    /// Height of the stored picture, whole macroblocks in MPEG; 0 is unknown.
    Types::UInt32 const* storedHeight() const;
    void storedHeight(Types::UInt32 const& height);
    void resetStoredHeight();

    /// Lines between the stored rectangle of field 2 and that of field 1: 0 (default) or 1. Optional.
    Types::Int32 const* storedF2Offset() const;
    void storedF2Offset(Types::Int32 const& offset);
    void resetStoredF2Offset();

    /// Width that was sampled; by default `storedWidth`. Optional.
    Types::UInt32 const* sampledWidth() const;
    void sampledWidth(Types::UInt32 const& width);
    void resetSampledWidth();

    /// Height that was sampled; by default `storedHeight`. Optional.
    Types::UInt32 const* sampledHeight() const;
    void sampledHeight(Types::UInt32 const& height);
    void resetSampledHeight();

    /// Left edge of the sampled rectangle in the stored one; by default 0. Optional.
    Types::Int32 const* sampledXOffset() const;
    void sampledXOffset(Types::Int32 const& offset);
    void resetSampledXOffset();

    /// Upper edge of the sampled rectangle in the stored one; by default 0. Optional.
    Types::Int32 const* sampledYOffset() const;
    void sampledYOffset(Types::Int32 const& offset);
    void resetSampledYOffset();

    /// Width to be shown; by default `sampledWidth`. Optional.
    Types::UInt32 const* displayWidth() const;
    void displayWidth(Types::UInt32 const& width);
    void resetDisplayWidth();

    /// Height to be shown; by default `sampledHeight`. Optional.
    Types::UInt32 const* displayHeight() const;
    void displayHeight(Types::UInt32 const& height);
    void resetDisplayHeight();

    /// Left edge of the displayed rectangle in the sampled one; by default 0. Optional.
    Types::Int32 const* displayXOffset() const;
    void displayXOffset(Types::Int32 const& offset);
    void resetDisplayXOffset();

    /// Upper edge of the displayed rectangle in the sampled one; by default 0. Optional.
    Types::Int32 const* displayYOffset() const;
    void displayYOffset(Types::Int32 const& offset);
    void resetDisplayYOffset();

    /// Lines between the displayed rectangle of field 2 and that of field 1: 0 (default) or -1. Optional.
    Types::Int32 const* displayF2Offset() const;
    void displayF2Offset(Types::Int32 const& offset);
    void resetDisplayF2Offset();

    /// Width of the image without the black at its sides. Optional.
    Types::UInt32 const* activeWidth() const;
    void activeWidth(Types::UInt32 const& width);
    void resetActiveWidth();

    /// Height of the image without the black above and below. Optional.
    Types::UInt32 const* activeHeight() const;
    void activeHeight(Types::UInt32 const& height);
    void resetActiveHeight();

    /// Left edge of the active rectangle in the displayed one. Optional.
    Types::UInt32 const* activeXOffset() const;
    void activeXOffset(Types::UInt32 const& offset);
    void resetActiveXOffset();

    /// Upper edge of the active rectangle in the displayed one. Optional.
    Types::UInt32 const* activeYOffset() const;
    void activeYOffset(Types::UInt32 const& offset);
    void resetActiveYOffset();

    /// Width to height as displayed, such as 16/9; 0/0 is unknown.
    Types::Rational const* aspectRatio() const;
    void aspectRatio(Types::Rational const& ratio);
    void resetAspectRatio();

    /// Which part of the picture is of interest (SMPTE 2016-1): the code in bits 6 to 3, bit 2 set for 16:9.
    /// Files of the first editions hold the code alone in bits 3 to 0. Optional.
    Types::UInt8 const* activeFormatDescriptor() const;
    void activeFormatDescriptor(Types::UInt8 const& code);
    void resetActiveFormatDescriptor();

    /// Labels of the centre cuts, such as 4:3 and 14:9, that the picture may be shown with. Optional.
    Types::Batch const* alternativeCenterCuts() const;
    void alternativeCenterCuts(Types::Batch const& labels);
    void addAlternativeCenterCut(Types::UniversalLabel const& label);
    void resetAlternativeCenterCuts();

    /// Two Int32: the line numbers at which the image begins in field 1 and in field 2, 0 for the second when
    /// progressive. A first number of 0 is unknown.
    Types::Array const* videoLineMap() const;
    void videoLineMap(Types::Array const& lines);
    void videoLineMap(std::int32_t field1, std::int32_t field2);
    void addVideoLineMap(Types::Int32 const& line);
    void resetVideoLineMap();

    /// The field that comes first in time: 1 (default) or 2; 0 is unspecified. Optional.
    Types::UInt8 const* fieldDominance() const;
    void fieldDominance(Types::UInt8 const& field);
    void resetFieldDominance();

    /// The standard of the signal; by default 1, ITU-R BT.601. Optional.
    Types::SignalStandard const* signalStandard() const;
    void signalStandard(Types::SignalStandard const& standard);
    void resetSignalStandard();

    /// The label of the coding of the pictures.
    Types::UniversalLabel const* pictureEssenceCoding() const;
    void pictureEssenceCoding(Types::UniversalLabel const& label);
    void resetPictureEssenceCoding();

    /// The label of the curve between light and signal, such as ITU-R BT.709. Optional.
    Types::UniversalLabel const* transferCharacteristic() const;
    void transferCharacteristic(Types::UniversalLabel const& label);
    void resetTransferCharacteristic();

    /// The label of the matrix between RGB and colour differences, such as ITU-R BT.709. Optional.
    Types::UniversalLabel const* codingEquations() const;
    void codingEquations(Types::UniversalLabel const& label);
    void resetCodingEquations();

    /// The label of the colour primaries, such as ITU-R BT.2020. Optional.
    Types::UniversalLabel const* colorPrimaries() const;
    void colorPrimaries(Types::UniversalLabel const& label);
    void resetColorPrimaries();

    /// Which alpha is transparent: 0 the least (default), 1 the greatest. Optional.
    Types::UInt8 const* alphaTransparency() const;
    void alphaTransparency(Types::UInt8 const& transparency);
    void resetAlphaTransparency();

    /// Each stored picture begins at a multiple of so many bytes; 1 is unaligned, 0 undefined. Optional.
    Types::UInt32 const* imageAlignmentOffset() const;
    void imageAlignmentOffset(Types::UInt32 const& offset);
    void resetImageAlignmentOffset();

    /// Bytes of fill before each stored picture; by default 0. Optional.
    Types::UInt32 const* imageStartOffset() const;
    void imageStartOffset(Types::UInt32 const& offset);
    void resetImageStartOffset();

    /// Bytes of fill behind each stored picture; by default 0. Optional.
    Types::UInt32 const* imageEndOffset() const;
    void imageEndOffset(Types::UInt32 const& offset);
    void resetImageEndOffset();

    /// The primaries of the mastering display (SMPTE 2086): three pairs x, y of 16-bit integers, in units of
    /// 0.00002. Optional.
    Types::DataValue const* masteringDisplayPrimaries() const;
    void masteringDisplayPrimaries(Types::DataValue const& primaries);
    void resetMasteringDisplayPrimaries();

    /// The white point of the mastering display: a pair x, y of 16-bit integers, in units of 0.00002.
    /// Optional.
    Types::DataValue const* masteringDisplayWhitePointChromaticity() const;
    void masteringDisplayWhitePointChromaticity(Types::DataValue const& white);
    void resetMasteringDisplayWhitePointChromaticity();

    /// In units of 0.0001 cd/m². Optional.
    Types::UInt32 const* masteringDisplayMaximumLuminance() const;
    void masteringDisplayMaximumLuminance(Types::UInt32 const& luminance);
    void resetMasteringDisplayMaximumLuminance();

    /// In units of 0.0001 cd/m². Optional.
    Types::UInt32 const* masteringDisplayMinimumLuminance() const;
    void masteringDisplayMinimumLuminance(Types::UInt32 const& luminance);
    void resetMasteringDisplayMinimumLuminance();

protected:
    GenericPictureEssenceDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                                    MetadataSetOwner* owner);
};

} // namespace MXF::Zelm::Metadata::Structural
