/// The header metadata as it is at the end, and how it comes into the place of what was written at first.
#pragma once

#include "MXF/Zelm/MXFIO/FutureUpdater.h"
#include "MXF/Zelm/Metadata/PartitionMetadata.h"
#include "MXF/Zelm/Packs/PartitionPack.h"

#include <vector>

namespace MXF::Zelm::MXFIO {

class FinalMetadata {
public:
    /// What was written at first: `contentLength` bytes of primer and sets in an area of `areaLength` bytes,
    /// filled up by a fill item of `fillKey`.
    FinalMetadata(std::uint64_t fileOffset, std::uint64_t contentLength, std::uint64_t areaLength,
                  KLV::Key const& fillKey)
        : fileOffset_(fileOffset), oldLength_(contentLength), areaLength_(areaLength), fillKey_(fillKey) {}

    /// Takes the metadata as it is now.
    void take(Metadata::PartitionMetadata& metadata, Metadata::SerializationOrder order);

    /// It can be written over the old one.
    bool fits() const;

    /// Its sets stand where they stood: to write over them changes values alone.
    bool hasOldLayout() const { return content_.size() == oldLength_; }

    /// Closed; complete when all is known that should be.
    Packs::PartitionPack::PartitionStatus status() const { return status_; }

    /// What puts it into its place.
    FileUpdate update() const;

private:
    std::uint64_t fileOffset_;
    std::uint64_t oldLength_;
    std::uint64_t areaLength_;
    KLV::Key fillKey_;
    std::vector<unsigned char> content_;
    Packs::PartitionPack::PartitionStatus status_ = Packs::PartitionPack::ClosedComplete;
};

} // namespace MXF::Zelm::MXFIO
