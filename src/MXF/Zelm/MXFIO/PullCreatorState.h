/// What PullCreator is made of: the sequence of partitions of a file.
#pragma once

#include "MXF/Zelm/MXFIO/FinalMetadata.h"
#include "MXF/Zelm/MXFIO/PullCreator.h"
#include "MXF/Zelm/MXFIO/WrittenPartitions.h"

#include <deque>

namespace MXF::Zelm::MXFIO {

struct PullCreator::State {
    using SegmentPtr = BodySource::SegmentPtr;
    using Segments = Templates::vector<SegmentPtr>;
    using Kind = Packs::PartitionPack::PartitionKind;
    using Status = Packs::PartitionPack::PartitionStatus;

    /// What comes next.
    enum class Phase { RunIn, Header, StreamsBefore, Body, StreamsAfter, Index, Footer, RandomIndex, Done };

    /// An essence container and the index segments that are to be written at the end.
    struct Container {
        Templates::auto_ptr<BodySource> body;
        Segments kept = {};
    };

    /// Index segments for a partition.
    struct Tail {
        std::uint32_t indexSID;
        Segments segments;
    };

    State(MetadataPtr metadata, CreatorSettings settings);

    void requireNotStarted() const;
    void requireFreeSID(std::uint32_t sid);
    void start();
    void requireLayout();
    void makeFormat();

    void pull(DataIO::Chain& out);
    void advance(DataIO::Chain& out);
    void open(Templates::auto_ptr<BasePartitionWriter> writer);
    void closeCurrent();

    void openHeader();
    void indexInHeader(CommonPartitionWriter& header);
    bool openStream(bool beforeEssence);
    bool openBody();
    bool openOwnIndex();
    bool openIndex();
    void openFooter();
    void openIndexPartition(Tail tail);
    Templates::auto_ptr<PartitionWriter> essenceWriter(Kind kind, Container& container);
    Container* nextContainer();
    Container* containerBehind();
    Segments segmentsBefore(Container& container);
    void gatherTails();
    bool takenByHeader(Segments const& segments);
    DataIO::Chain randomIndex() const;

    MetadataPtr metadata;
    CreatorSettings settings;
    PartitionFormat format = {};
    Templates::vector<Container> containers = {};
    std::deque<GenericStream> streams = {};
    Templates::vector<std::uint32_t> sids = {};

    Phase phase = Phase::RunIn;
    std::uint64_t offset = 0; // behind what was handed out, from the header partition pack on
    bool isPartitionStart = false;
    Templates::auto_ptr<BasePartitionWriter> current = nullptr;
    WrittenPartitions partitions = {};
    Container* last = nullptr; // whose body partition was closed last
    bool areTailsGathered = false;
    std::deque<Tail> tails = {};

    Templates::auto_ptr<FinalMetadata> header = nullptr;
    std::uint64_t headerIndexOffset = 0; // in the file: of the segments in the header partition
    std::uint64_t headerIndexLength = 0;
    std::vector<unsigned char> finalHeaderIndex = {};
};

} // namespace MXF::Zelm::MXFIO
