/// The file as a whole for `zelm info`: pattern, history, partitions, completeness. Nothing here walks the
/// file.
#include "DumpReport.h"
#include "MetadataChoice.h"
#include "SetValues.h"
#include "Text.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Metadata/Structural/Identification.h>
#include <MXF/Zelm/Metadata/Structural/Preface.h>
#include <MXF/ZelmDictionary/Names.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
namespace Structural = Metadata::Structural;

namespace {

void takePack(Packs::PartitionPack const& pack, FileInfo& info) {
    info.version = std::to_string(pack.majorVersion()) + "." + std::to_string(pack.minorVersion());
    info.operationalPattern =
        NamedLabel{pack.operationalPattern(), MXF::ZelmDictionary::labelName(pack.operationalPattern())};
    info.partitions.kagSize = pack.kagSize();
    for (std::size_t i = 0; i < pack.essenceContainers().count(); ++i) {
        auto const& container = pack.essenceContainers().at<Types::UniversalLabel>(i);
        info.essenceContainers.push_back({container, MXF::ZelmDictionary::labelName(container)});
    }
}

WriterInfo gatherWriter(Structural::Identification const& set) {
    std::string version = text(set.versionString());
    return {text(set.companyName()), text(set.productName()),
            version.empty() ? text(set.productVersion()) : version, text(set.platform()),
            text(set.modificationDate())};
}

void takePreface(Structural::Preface const& preface, FileInfo& info) {
    info.modified = text(preface.lastModifiedDate());
    info.descriptiveSchemes = labels(preface.dmSchemes());
    for (auto const* const identification : preface.identifications())
        info.writers.push_back(gatherWriter(*identification));
    auto const pattern = label(preface.operationalPattern());
    if (pattern && info.operationalPattern && pattern->label != info.operationalPattern->label)
        info.odd.push_back("The operational pattern of the Preface, " +
                           (pattern->name.empty() ? "another label" : pattern->name) +
                           ", is not that of the partition pack");
}

/// Null when there is no Preface, or more than one: the packages say so.
Structural::Preface const* prefaceOf(Metadata::PartitionMetadata const& metadata) {
    try {
        return dynamic_cast<Structural::Preface const*>(&metadata.preface());
    } catch (Exceptions::BaseException const&) {
        return nullptr;
    }
}

/// The footer where the header or, when that does not say, the random index pack has it; null when it is not
/// there.
MXFIO::Partition* footerOf(Input& input, Packs::PartitionPack const& header) {
    std::uint64_t offset = header.footerPartition();
    if (offset == 0 && input.reader.rip() && input.reader.rip()->size() != 0)
        offset = input.reader.rip()->offsetIndexedMap().rbegin()->first;
    if (offset == 0)
        return nullptr;
    auto* const footer = input.reader.partitionAtOffset(offset);
    return footer != nullptr && footer->partitionPack().partitionKind() == Packs::PartitionPack::Footer
               ? footer
               : nullptr;
}

void gatherPartitions(Input& input, MXFIO::Partition const& header, FileInfo& info) {
    auto const& pack = header.partitionPack();
    info.partitions.header = partitionStatusText(header);
    info.partitions.hasRandomIndexPack = input.reader.loadRIP();
    if (info.partitions.hasRandomIndexPack)
        info.partitions.count = input.reader.rip()->size();
    if (pack.partitionKind() == Packs::PartitionPack::Footer) {
        info.odd.push_back("The file begins with a footer partition");
    } else if (pack.partitionKind() == Packs::PartitionPack::Body) {
        info.odd.push_back("The file begins with a body partition");
    }
    auto const* const footer = footerOf(input, pack);
    if (footer != nullptr)
        info.partitions.footerOffset = footer->partitionAbsoluteOffset();
    else if (pack.footerPartition() != 0)
        info.odd.push_back("The file is cut off or damaged: no footer partition at " +
                           hex(pack.footerPartition() + info.runIn) + ", the file ends at " + hex(info.size));
    else if (pack.isOpen())
        info.odd.push_back("The file was not finished: its header partition is open and names no footer");
    if (footer != nullptr && pack.isOpen())
        info.odd.push_back("The header partition was left open; the final metadata is in the footer");
    if (!info.partitions.hasRandomIndexPack)
        info.odd.push_back("There is no random index pack");
}

/// Complete: the metadata shown is closed and complete, and the file is there to its footer, if it says it
/// has one.
void judge(MXFIO::Partition const& header, MXFIO::Partition const& shown, FileInfo& info) {
    auto const& pack = shown.partitionPack();
    bool const footerMissing = header.partitionPack().footerPartition() != 0 && !info.partitions.footerOffset;
    info.complete = !pack.isOpen() && pack.isComplete() && !footerMissing && info.faults.empty();
    if (!pack.isOpen() && !pack.isComplete())
        info.odd.push_back("The header metadata is closed but incomplete: some values are not known");
    if (pack.isOpen())
        info.odd.push_back("The header metadata is open: durations and dates may still change");
}

void noteDarkSets(Metadata::PartitionMetadata const& metadata, FileInfo& info) {
    auto const unknown = std::count_if(metadata.darkBegin(), metadata.darkEnd(),
                                       [](auto const* set) { return set->reason().empty(); });
    if (unknown != 0)
        info.odd.push_back("Metadata sets of classes that the dictionary does not define: " +
                           std::to_string(unknown) + " (zelm dump shows them)");
}

} // namespace

FileInfo gatherInfo(Input& input) {
    FileInfo info;
    info.file = input.name;
    info.size = input.source.size();
    MXFIO::Partition const& header = requireHeader(input);
    info.runIn = input.reader.runInLength();
    takePack(header.partitionPack(), info);
    gatherPartitions(input, header, info);

    auto choice = chooseFinal(input, true);
    info.faults = std::move(choice.faults);
    info.metadataOffset = choice.partition->partitionAbsoluteOffset();
    info.metadataPartition =
        partitionKindText(*choice.partition) + ", " + partitionStatusText(*choice.partition);
    MXFIO::Partition::MetadataPtr metadata;
    try {
        metadata = choice.partition->metadata();
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        info.faults.push_back({failure.offset(), failure.message()});
    }
    if (metadata) {
        if (auto const* const preface = prefaceOf(*metadata))
            takePreface(*preface, info);
        gatherPackages(*metadata, info);
        noteDarkSets(*metadata, info);
        info.faults.insert(info.faults.end(), metadata->faults().begin(), metadata->faults().end());
    } else if (info.faults.empty()) {
        info.odd.push_back("The file has no header metadata");
    }
    judge(header, *choice.partition, info);
    return info;
}

} // namespace Zelm
