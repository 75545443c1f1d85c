/// Files that a creator writes from made-up essence, and their reading back.
#pragma once

#include "MXF/Zelm/DataIO/Memory/MemoryDataSource.h"
#include "MXF/Zelm/MXFIO/Creator.h"
#include "MXF/Zelm/MXFIO/EssenceReader.h"
#include "MXF/Zelm/MXFIO/IndexTableGatherer.h"

#include "support/FakeSource.h"
#include "support/TestSinks.h"

namespace MXF::Zelm::Test {

/// One or two essence containers, and how they are to be written. Container `i` has body SID `2i + 1` and
/// index SID `2i + 2`.
struct WrittenFile {
    std::vector<FakePackages> containers = {{}};
    MXFIO::CreatorSettings settings = {};
    std::vector<MXFIO::GenericStream> streams = {};

    /// Header metadata for these containers: a picture track in each, which gets its duration when the source
    /// is finalized.
    MXFIO::Partition::MetadataPtr makeMetadata();

    /// Adds all that is to be written; behind `makeMetadata`.
    template <class AnyCreator>
    void addTo(AnyCreator& creator) const {
        for (std::uint32_t bodySID = 1; auto const& essence : containers) {
            creator.addSource(std::make_unique<FakeSource>(essence), bodySID, bodySID + 1);
            bodySID += 2;
        }
        for (auto const& stream : streams)
            creator.addGenericStream(stream);
    }

    /// The whole file, by a creator with a sink that can seek.
    Bytes write();
};

/// A file in memory, open for reading.
struct OpenFile {
    explicit OpenFile(Bytes bytes);

    /// Containers as the metadata names them that is to be used.
    Templates::vector<MXFIO::EssenceContainer> containers();

    /// Reads all content packages of a container; each must be the one that was written. Returns how many.
    std::size_t readPackages(std::size_t container, FakePackages const& essence);

    /// All partitions, in the order of the file.
    std::vector<MXFIO::Partition*> partitions();

    DataIO::Memory::MemoryDataSource source;
    MXFIO::Reader2 reader;
};

} // namespace MXF::Zelm::Test
