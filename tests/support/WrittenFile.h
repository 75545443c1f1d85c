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

    /// Adds all that is to be written. The metadata describes a picture and two sounds a container, and gets
    /// its durations when the sources are finalized.
    template <class AnyCreator>
    void addTo(AnyCreator& creator, MXFIO::Partition::MetadataPtr const& metadata) const;

    /// Header metadata for these containers, its durations unknown.
    MXFIO::Partition::MetadataPtr makeMetadata() const;

    /// The whole file, by a creator with a sink that can seek, or without.
    Bytes write() const;

    void addSources(
        MXFIO::Partition::MetadataPtr const& metadata,
        std::function<void(std::unique_ptr<FakeSource>, std::uint32_t, std::uint32_t)> const& add) const;
};

template <class AnyCreator>
void WrittenFile::addTo(AnyCreator& creator, MXFIO::Partition::MetadataPtr const& metadata) const {
    addSources(metadata,
               [&](std::unique_ptr<FakeSource> source, std::uint32_t bodySID, std::uint32_t indexSID) {
                   creator.addSource(std::move(source), bodySID, indexSID);
               });
    for (auto const& stream : streams)
        creator.addGenericStream(stream);
}

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
