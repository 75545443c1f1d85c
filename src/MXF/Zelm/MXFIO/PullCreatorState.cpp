#include "MXF/Zelm/MXFIO/PullCreatorState.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/WrittenBytes.h"
#include "MXF/Zelm/Metadata/Structural/Packages.h"
#include "MXF/Zelm/Metadata/Structural/Preface.h"

#include <algorithm>
#include <string>

namespace MXF::Zelm::MXFIO {

using Packs::PartitionPack;

namespace {

/// SMPTE 377M: a run-in is shorter.
constexpr std::size_t runInLimit = 65536;

Templates::vector<Types::UniversalLabel> labelsOf(Types::Batch const& batch) {
    Templates::vector<Types::UniversalLabel> labels;
    for (std::size_t i = 0; i < batch.count(); ++i)
        labels.push_back(batch.at<Types::UniversalLabel>(i));
    return labels;
}

std::uint16_t minorVersionOf(Metadata::PartitionMetadata const& metadata) {
    auto const* const version = Metadata::Structural::findPreface(metadata).version();
    return version != nullptr && version->majorVersion() == 1 ? version->minorVersion() : 2;
}

std::uint64_t lengthOf(BodySource::SegmentPtr const& segment) { return segment->serializedSize(); }

[[noreturn]] void refuse(std::string const& what) { throw Exceptions::InvalidValue(what); }

} // namespace

PullCreator::State::State(MetadataPtr metadataToWrite, CreatorSettings settingsToUse)
    : metadata(std::move(metadataToWrite)), settings(std::move(settingsToUse)) {
    if (settings.runIn.size() >= runInLimit)
        refuse("A run-in of " + std::to_string(settings.runIn.size()) + " bytes is too long");
    if (settings.packBerLength < 4 || settings.packBerLength > 9)
        refuse("A partition pack's length cannot have " + std::to_string(settings.packBerLength) + " bytes");
    if (settings.fillVersion != 1 && settings.fillVersion != 2)
        refuse("There is no version " + std::to_string(settings.fillVersion) + " of fill items");
}

void PullCreator::State::requireNotStarted() const {
    if (phase != Phase::RunIn)
        throw Exceptions::InvalidChange("The file has been begun: nothing can be added to it");
}

void PullCreator::State::requireFreeSID(std::uint32_t sid) {
    if (sid == 0 || std::find(sids.begin(), sids.end(), sid) != sids.end())
        refuse("A stream cannot have the SID " + std::to_string(sid) + (sid == 0 ? "" : ", which is taken"));
    sids.push_back(sid);
}

/// Fetches the first package of each source, so that whatever they find out by it stands in the header.
void PullCreator::State::start() {
    for (auto& container : containers)
        container.body->fetch();
    requireLayout();
    makeFormat();
}

void PullCreator::State::requireLayout() {
    if (settings.index != CreatorSettings::Index::Header)
        return;
    if (containers.size() != 1 || !containers.front().body->source().isCBE())
        throw Exceptions::InvalidStructure("An index table in the header takes one essence container whose "
                                           "content packages all have the same size");
}

void PullCreator::State::makeFormat() {
    std::uint32_t grid = settings.kagSize;
    for (auto const& container : containers)
        if (settings.kagSize == 0)
            grid = std::max(grid, container.body->source().kagSize());
    format = {.minorVersion = settings.minorVersion ? *settings.minorVersion : minorVersionOf(*metadata),
              .kagSize = std::max<std::uint32_t>(grid, 1),
              .packBerLength = settings.packBerLength,
              .fillVersion = settings.fillVersion,
              .operationalPattern = Metadata::Structural::operationalPattern(*metadata),
              .essenceContainers = labelsOf(*Metadata::Structural::essenceContainers(*metadata))};
}

void PullCreator::State::pull(DataIO::Chain& out) {
    bool const isFirst = current->written() == 0;
    if (!current->next(out)) {
        closeCurrent();
        return;
    }
    isPartitionStart = isFirst;
    offset += out.size();
}

/// Opens the partition that comes next, gives the bytes that stand in none, or goes on to the next phase.
void PullCreator::State::advance(DataIO::Chain& out) {
    auto const goOn = [this](bool hasMore, Phase next) { phase = hasMore ? phase : next; };
    switch (phase) {
    case Phase::RunIn:
        start();
        out = DataIO::Slice::adopt(settings.runIn);
        return goOn(false, Phase::Header);
    case Phase::Header:
        openHeader();
        return goOn(false, Phase::StreamsBefore);
    case Phase::StreamsBefore:
        return goOn(openStream(true), Phase::Body);
    case Phase::Body:
        return goOn(openBody(), Phase::StreamsAfter);
    case Phase::StreamsAfter:
        return goOn(openStream(false), Phase::Index);
    case Phase::Index:
        return goOn(openIndex(), Phase::Footer);
    case Phase::Footer:
        openFooter();
        return goOn(false, Phase::RandomIndex);
    case Phase::RandomIndex:
        out = randomIndex();
        isPartitionStart = true;
        offset += out.size();
        return goOn(false, Phase::Done);
    case Phase::Done:
        return;
    }
}

void PullCreator::State::open(Templates::auto_ptr<BasePartitionWriter> writer) {
    writer->place(offset, partitions.lastOffset());
    auto const& pack = writer->partitionPack();
    bool const staysOpen = settings.metadataInBody && phase == Phase::Body && pack.bodySID() != 0;
    partitions.add(offset, pack.bodySID(), !staysOpen && !Packs::isGenericStreamPartitionPack(pack.key()));
    current = std::move(writer);
}

void PullCreator::State::closeCurrent() {
    if (!header) {
        auto const& writer = static_cast<CommonPartitionWriter const&>(*current);
        auto const& pack = writer.partitionPack();
        std::uint64_t const metadataOffset = settings.runIn.size() + writer.leadLength();
        header = std::make_unique<FinalMetadata>(metadataOffset, writer.metadataLength(),
                                                 pack.headerByteCount(), fillKey(settings.fillVersion));
        headerIndexOffset = metadataOffset + pack.headerByteCount();
    }
    current.reset();
}

void PullCreator::State::openHeader() {
    Templates::auto_ptr<CommonPartitionWriter> writer;
    if (auto* const container = settings.essenceInHeader ? nextContainer() : nullptr)
        writer = essenceWriter(PartitionPack::Header, *container);
    else
        writer = std::make_unique<CommonPartitionWriter>(format, PartitionPack::Header,
                                                         PartitionPack::OpenIncomplete);
    writer->metadata(*metadata, settings.metadataReserve);
    writer->serializationOrder(settings.serializationOrder);
    if (settings.index == CreatorSettings::Index::Header)
        indexInHeader(*writer);
    open(std::move(writer));
}

void PullCreator::State::indexInHeader(CommonPartitionWriter& writer) {
    auto segments = containers.front().body->takeIndexSegments();
    for (auto const& segment : segments)
        headerIndexLength += lengthOf(segment);
    writer.index(containers.front().body->indexSID(), std::move(segments));
}

bool PullCreator::State::openStream(bool beforeEssence) {
    auto const stream = std::find_if(streams.begin(), streams.end(), [&](GenericStream const& candidate) {
        return candidate.beforeEssence == beforeEssence;
    });
    if (stream == streams.end())
        return false;
    open(std::make_unique<GenericStreamPartitionWriter>(format, std::move(*stream)));
    streams.erase(stream);
    return true;
}

bool PullCreator::State::openBody() {
    if (openOwnIndex())
        return true;
    auto* const container = nextContainer();
    if (container == nullptr)
        return false;
    auto writer = essenceWriter(PartitionPack::Body, *container);
    if (container->body->packages() != 0)
        writer->index(container->body->indexSID(), segmentsBefore(*container));
    if (settings.metadataInBody) {
        writer->metadata(*metadata, 0);
        writer->serializationOrder(settings.serializationOrder);
    }
    open(std::move(writer));
    return true;
}

/// The index partition behind the body partition that was closed last.
bool PullCreator::State::openOwnIndex() {
    if (settings.index != CreatorSettings::Index::OwnPartitions || last == nullptr)
        return false;
    Tail tail{last->body->indexSID(), last->body->takeIndexSegments()};
    last = nullptr;
    if (tail.segments.empty())
        return false;
    openIndexPartition(std::move(tail));
    return true;
}

Templates::auto_ptr<PartitionWriter> PullCreator::State::essenceWriter(Kind kind, Container& container) {
    last = &container;
    return std::make_unique<PartitionWriter>(format, kind, PartitionPack::OpenIncomplete, *container.body,
                                             settings.partitions, settings.runIn.size());
}

/// The container that goes on; null when all have ended.
PullCreator::State::Container* PullCreator::State::nextContainer() {
    if (settings.interleaving == CreatorSettings::Interleaving::ByTime)
        return containerBehind();
    auto const next = std::find_if(containers.begin(), containers.end(),
                                   [](Container& container) { return container.body->fetch(); });
    return next == containers.end() ? nullptr : &*next;
}

/// The one whose next package is the earliest.
PullCreator::State::Container* PullCreator::State::containerBehind() {
    Container* behind = nullptr;
    for (auto& container : containers)
        if (container.body->fetch() && (behind == nullptr || container.body->position().toDouble() <
                                                                 behind->body->position().toDouble()))
            behind = &container;
    return behind;
}

/// What a body partition has of the index of the partitions before it.
PullCreator::State::Segments PullCreator::State::segmentsBefore(Container& container) {
    if (settings.index != CreatorSettings::Index::Body &&
        settings.index != CreatorSettings::Index::BodyAndFooter)
        return {};
    auto segments = container.body->takeIndexSegments();
    if (settings.index == CreatorSettings::Index::BodyAndFooter)
        container.kept.insert(container.kept.end(), segments.begin(), segments.end());
    return segments;
}

void PullCreator::State::gatherTails() {
    for (auto& container : containers) {
        auto segments = container.body->takeIndexSegments();
        segments.insert(segments.begin(), container.kept.begin(), container.kept.end());
        container.kept.clear();
        if (!segments.empty() && !takenByHeader(segments))
            tails.push_back({container.body->indexSID(), std::move(segments)});
    }
}

/// Whether the final index can be written over the one in the header.
bool PullCreator::State::takenByHeader(Segments const& segments) {
    std::uint64_t length = 0;
    for (auto const& segment : segments)
        length += lengthOf(segment);
    if (!settings.canUpdate || headerIndexLength == 0 || length != headerIndexLength)
        return false;
    for (auto const& segment : segments) {
        auto const bytes = bytesOf(*segment);
        finalHeaderIndex.insert(finalHeaderIndex.end(), bytes.begin(), bytes.end());
    }
    return true;
}

/// Partitions of the index segments that the footer does not take: it has those of one container.
bool PullCreator::State::openIndex() {
    if (!areTailsGathered) {
        areTailsGathered = true;
        gatherTails();
    }
    std::size_t const inFooter = settings.index == CreatorSettings::Index::OwnPartitions ? 0 : 1;
    if (tails.size() <= inFooter)
        return false;
    openIndexPartition(std::move(tails.front()));
    tails.pop_front();
    return true;
}

void PullCreator::State::openIndexPartition(Tail tail) {
    auto writer =
        std::make_unique<CommonPartitionWriter>(format, PartitionPack::Body, PartitionPack::OpenIncomplete);
    writer->index(tail.indexSID, std::move(tail.segments));
    open(std::move(writer));
}

void PullCreator::State::openFooter() {
    if (settings.beforeFinalMetadata)
        settings.beforeFinalMetadata();
    header->take(*metadata, settings.serializationOrder);
    auto writer = std::make_unique<CommonPartitionWriter>(format, PartitionPack::Footer, header->status());
    if (settings.metadataInFooter || !settings.canUpdate || !header->hasOldLayout()) {
        writer->metadata(*metadata, 0);
        writer->serializationOrder(settings.serializationOrder);
    }
    if (!tails.empty())
        writer->index(tails.front().indexSID, std::move(tails.front().segments));
    writer->footerPartition(offset);
    open(std::move(writer));
}

DataIO::Chain PullCreator::State::randomIndex() const {
    auto const pack = partitions.randomIndex();
    return sliceOf(pack);
}

} // namespace MXF::Zelm::MXFIO
