/// Descriptors of essence that is neither picture nor sound (SMPTE 377M, 436M, 385M).
#pragma once

#include "MXF/Zelm/Metadata/Structural/GenericDescriptor.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/UniversalLabel.h"

namespace MXF::Zelm::Metadata::Structural {

/// Describes data.
class MXFZELM_EXPORT GenericDataEssenceDescriptor : public FileDescriptor {
public:
    GenericDataEssenceDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~GenericDataEssenceDescriptor() override;

    static KLV::Key const& classKey();

    /// The label of the coding of the data.
    Types::UniversalLabel const* dataEssenceCoding() const;
    void dataEssenceCoding(Types::UniversalLabel const& label);
    void resetDataEssenceCoding();

protected:
    GenericDataEssenceDescriptor(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition,
                                 MetadataSetOwner* owner);
};

/// Describes ancillary data packets (SMPTE 436M).
class MXFZELM_EXPORT ANCPacketsDescriptor : public GenericDataEssenceDescriptor {
public:
    ANCPacketsDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~ANCPacketsDescriptor() override;

    static KLV::Key const& classKey();
};

/// Describes lines of the vertical blanking interval (SMPTE 436M).
class MXFZELM_EXPORT VBIDataDescriptor : public GenericDataEssenceDescriptor {
public:
    VBIDataDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~VBIDataDescriptor() override;

    static KLV::Key const& classKey();
};

/// Describes date and time stamps of system items (SMPTE 331M).
class MXFZELM_EXPORT SMPTE331MTimeDateItemDescriptor : public FileDescriptor {
public:
    SMPTE331MTimeDateItemDescriptor(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~SMPTE331MTimeDateItemDescriptor() override;

    static KLV::Key const& classKey();

    /// Stamps in a second; by default `sampleRate`. Optional.
    Types::Rational const* dateTimeRate() const;
    void dateTimeRate(Types::Rational const& rate);
    void resetDateTimeRate();

    /// True when stamps drop frame numbers; by default false. Optional.
    Types::Boolean const* dateTimeDropFrame() const;
    void dateTimeDropFrame(Types::Boolean const& dropFrame);
    void resetDateTimeDropFrame();

    /// True when the stamp lies inside the essence element. Optional.
    Types::Boolean const* dateTimeEmbedded() const;
    void dateTimeEmbedded(Types::Boolean const& embedded);
    void resetDateTimeEmbedded();

    /// The label of the kind of stamp.
    Types::UniversalLabel const* dateTimeKind() const;
    void dateTimeKind(Types::UniversalLabel const& label);
};

} // namespace MXF::Zelm::Metadata::Structural
