/// Where essence may be found that is not in this file (SMPTE 377M).
#pragma once

#include "MXF/Zelm/Metadata/Structural/TrackableMetadataSet.h"
#include "MXF/Zelm/Types/Strings.h"

namespace MXF::Zelm::Metadata::Structural {

/// One place.
class MXFZELM_EXPORT Locator : public TrackableMetadataSet {
public:
    ~Locator() override;

protected:
    Locator(KLV::Key const& key, MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
};

/// A place for machines.
class MXFZELM_EXPORT NetworkLocator : public Locator {
public:
    NetworkLocator(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~NetworkLocator() override;

    static KLV::Key const& classKey();

    /// An absolute or relative URL (RFC 3986).
    Types::UTF16String const* urlString() const;
    void urlString(Types::UTF16String const& url);
};

/// A place for people.
class MXFZELM_EXPORT TextLocator : public Locator {
public:
    TextLocator(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~TextLocator() override;

    static KLV::Key const& classKey();

    /// Such as the shelf that a tape stands on.
    Types::UTF16String const* locatorName() const;
    void locatorName(Types::UTF16String const& name);
};

} // namespace MXF::Zelm::Metadata::Structural
