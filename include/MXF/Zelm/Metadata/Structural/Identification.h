/// Which application wrote or changed the file, and when (SMPTE 377M, Identification set).
#pragma once

#include "MXF/Zelm/Metadata/MetadataSet.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UUID.h"
#include "MXF/Zelm/Types/Versions.h"

namespace MXF::Zelm::Metadata::Structural {

/// The one structural class that does not itself belong to a generation: it is one.
class MXFZELM_EXPORT Identification : public MetadataSet {
public:
    Identification(MetaMetadata::MetaMetadataSet const* definition, MetadataSetOwner* owner);
    ~Identification() override;

    static KLV::Key const& classKey();

    /// Names this generation; sets that were changed in it refer to it by `generationUID`.
    Types::UUID const* thisGenerationUID() const;
    void thisGenerationUID(Types::UUID const& generation);

    /// Who made the application.
    Types::UTF16String const* companyName() const;
    void companyName(Types::UTF16String const& name);

    /// What the application is called.
    Types::UTF16String const* productName() const;
    void productName(Types::UTF16String const& name);

    /// The application's version in numbers. Optional.
    Types::ProductVersion const* productVersion() const;
    void productVersion(Types::ProductVersion const& version);
    void resetProductVersion();

    /// The application's version in words.
    Types::UTF16String const* versionString() const;
    void versionString(Types::UTF16String const& version);

    /// The same for all files of one product, whatever its version.
    Types::UUID const* productUID() const;
    void productUID(Types::UUID const& product);

    /// When the file was written or changed.
    Types::Timestamp const* modificationDate() const;
    void modificationDate(Types::Timestamp const& date);

    /// The version of the library that the application used. Optional.
    Types::ProductVersion const* toolkitVersion() const;
    void toolkitVersion(Types::ProductVersion const& version);
    void resetToolkitVersion();

    /// The operating system, and whatever else the application ran on. Optional.
    Types::UTF16String const* platform() const;
    void platform(Types::UTF16String const& platform);
    void resetPlatform();
};

} // namespace MXF::Zelm::Metadata::Structural
