/// What the package metadata set of a system item holds (SMPTE 385M): the set that stands behind the pack.
///
///     key     16    06 0E 2B 34 02 43 01 01 0D 01 03 01 04 01 02 nn    nn: number of items
///     length   4
///     items         tag (1), length (2), value
#pragma once

#include "MXF/Zelm/DataIO/Slice.h"
#include "MXF/Zelm/Templates/Containers.h"
#include "MXF/Zelm/Types/UMID.h"

namespace MXF::Zelm::GenericContainer {

/// A host may write its own.
class MXFZELM_EXPORT SystemItemMetadataProvider : public Platform::Allocated {
public:
    struct Item {
        /// 83: a UMID. 88: a further KLV packet.
        unsigned char tag = 0;
        std::vector<unsigned char> value = {};
    };
    using Items = Templates::vector<Item>;

    SystemItemMetadataProvider() = default;
    SystemItemMetadataProvider(SystemItemMetadataProvider const&) = delete;
    SystemItemMetadataProvider& operator=(SystemItemMetadataProvider const&) = delete;
    virtual ~SystemItemMetadataProvider();

    /// The items of the next content package: at most 255, with values of at most 65535 bytes.
    virtual Items nextItems() = 0;

    /// Bytes that `nextItems` needs at most, tags and lengths included.
    virtual unsigned int maximumSize() const = 0;
};

/// The UMID of a package in every system item.
class MXFZELM_EXPORT UMIDMetadataProvider : public SystemItemMetadataProvider {
public:
    explicit UMIDMetadataProvider(Types::UMID32 const& umid) : umid_(umid) {}
    ~UMIDMetadataProvider() override;

    Items nextItems() override;
    unsigned int maximumSize() const override;

private:
    Types::UMID32 umid_;
};

/// The package metadata set as a whole. Throws Exceptions::InvalidLength for items beyond the limits above.
MXFZELM_EXPORT DataIO::Slice packageMetadataSet(SystemItemMetadataProvider::Items const& items);

} // namespace MXF::Zelm::GenericContainer
