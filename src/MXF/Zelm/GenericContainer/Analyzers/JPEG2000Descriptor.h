/// What the metadata say of JPEG 2000 pictures (SMPTE 422M).
#pragma once

#include "MXF/Zelm/GenericContainer/Analyzers/JPEG2000Analyzer.h"

namespace MXF::Zelm::GenericContainer {

/// What is known of the pictures. Refers to header and options, which must live as long.
struct JPEG2000Pictures {
    Essence::JPEG2000::CodestreamHeader const& header;
    JPEG2000Options const& options;
    std::optional<std::uint32_t> colourSpace; ///< as a JP2 file names it

    /// Never Unknown; of one component RGB, which has its luma alone.
    JPEG2000Options::Colour colour() const;
    bool isSubsampled() const;
    bool isOfFields() const;
};

/// The coding label by the capabilities of the codestream, of which the profiles are a part.
Types::UniversalLabel jpeg2000CodingLabel(std::uint16_t rsiz);

/// The descriptor, CDCI or RGBA, with its sub-descriptor; that which `present` points at when there is one.
/// Throws as `presentOrNew`.
Metadata::Structural::FileDescriptor& describeJPEG2000(Metadata::PartitionMetadata& metadata,
                                                       Metadata::Structural::FileDescriptor* present,
                                                       JPEG2000Pictures const& pictures);

} // namespace MXF::Zelm::GenericContainer
