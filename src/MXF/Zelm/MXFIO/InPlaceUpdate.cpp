#include "MXF/Zelm/MXFIO/InPlaceUpdate.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>

namespace MXF::Zelm::MXFIO {

using Role = PartitionUpdate::Role;

namespace {

/// Equal bytes between two differences that are written along: to describe a piece of its own in the undo
/// record would take about as many.
constexpr std::size_t shortestGap = 16;

/// Bytes of index tables and bodies.
std::uint64_t essenceBytes(FileSurvey const& survey) {
    std::uint64_t bytes = 0;
    for (auto const& partition : survey.partitions)
        bytes += partition.end - std::min(partition.end, partition.metadataEnd());
    return bytes;
}

} // namespace

InPlaceUpdate::InPlaceUpdate(UpdateContent const& content) : content_(content) {
    plan_.fileSize = plan_.newFileSize = content.file().survey().fileSize;
    plan_.fitsInPlace = true;
    for (std::size_t i = 0; i < content.partitions().size(); ++i)
        fit(i);
    for (std::size_t i = 0; i < content.partitions().size() && plan_.fitsInPlace; ++i)
        patch(i);
    for (auto const& patch : patches_)
        plan_.ranges.push_back({patch.position, patch.after.size()});
    requireNoEssence();
}

/// Finds out whether what is new of a partition fits where the old stands. A copy that does not fit is left
/// as it is; anything else that does not keeps the whole update from being done in place.
void InPlaceUpdate::fit(std::size_t index) {
    auto update = content_.describe(index);
    if (update.packChanges) {
        auto const head = content_.headFor(index);
        if (head.bytes().size() != head.oldSize())
            update.remark = "the partition pack takes " + std::to_string(head.bytes().size()) +
                            " bytes instead of " + std::to_string(head.oldSize());
    }
    if (auto const* const area = content_.areaToRewrite(index); area && update.remark.empty()) {
        update.newMetadataBytes = area->fitted(content_.content()).size();
        update.remark = area->whyNot(update.newMetadataBytes);
    }
    bool const written = update.role != Role::Different && update.role != Role::Unread;
    update.fits = !written || update.remark.empty();
    if (!update.fits && update.role == Role::Copy) {
        update.role = Role::CopyLeft;
        update.newMetadataBytes = update.metadataBytes;
        update.packChanges = false;
    } else if (!update.fits && plan_.fitsInPlace) {
        plan_.fitsInPlace = false;
        plan_.reason = update.remark;
    }
    plan_.partitions.push_back(std::move(update));
}

void InPlaceUpdate::patch(std::size_t index) {
    auto const& update = plan_.partitions[index];
    auto& source = content_.file().source();
    if (update.packChanges) {
        auto const head = content_.headFor(index);
        addDifferences(head.offset(), readBytes(source, head.offset(), head.oldSize()), head.bytes());
    }
    auto const* const area = content_.areaToRewrite(index);
    if (area == nullptr || update.role == Role::CopyLeft)
        return;
    auto const image = area->image(area->fitted(content_.content()), content_.fillKey(index));
    addDifferences(area->offset(), readBytes(source, area->offset(), image.size()), image);
}

/// Appends the pieces in which `after` differs from `before`.
void InPlaceUpdate::addDifferences(std::uint64_t position, Bytes const& before, Bytes const& after) {
    for (std::size_t at = 0; at < after.size();) {
        if (before[at] == after[at]) {
            ++at;
            continue;
        }
        std::size_t end = at + 1; // behind the last difference
        for (std::size_t i = end; i < after.size() && i - end < shortestGap; ++i)
            if (before[i] != after[i])
                end = i + 1;
        auto const piece = [&](Bytes const& bytes) { return Bytes(bytes.data() + at, bytes.data() + end); };
        patches_.push_back({position + at, piece(before), piece(after)});
        at = end;
    }
}

/// Holds every range against the index tables and bodies of all partitions that are known.
void InPlaceUpdate::requireNoEssence() const {
    for (auto const& range : plan_.ranges)
        for (auto const& partition : content_.partitions())
            if (range.offset < partition.end && range.offset + range.length > partition.metadataEnd())
                throw Exceptions::at(range.offset, Exceptions::InvalidStructure(
                                                       "The header metadata and the body of a partition "
                                                       "overlap"));
}

void InPlaceUpdate::requireFileAsLoaded() const {
    DataIO::File::FileDataSource now(content_.file().name());
    auto const& area = content_.file().area();
    bool same = now.size() == plan_.fileSize &&
                readBytes(now, area.offset(), area.content().size()) == area.content();
    for (auto const& patch : patches_)
        same = same && readBytes(now, patch.position, patch.before.size()) == patch.before;
    if (!same)
        throw Exceptions::InvalidChange(content_.file().name() +
                                        ": somebody has changed the file since it was opened");
}

/// Writes while the record stands. When the system refuses, puts the old bytes back.
void InPlaceUpdate::writePatches(WritableFile& file, UndoRecord& record) const {
    try {
        for (auto const& patch : patches_)
            file.writeAt(patch.position, patch.after.data(), patch.after.size());
        file.synchronize();
    } catch (Exceptions::SystemError const& failure) {
        try {
            record.restore();
        } catch (Exceptions::BaseException const&) {
            throw Exceptions::SystemError(content_.file().name(),
                                          "cannot write, nor put the old bytes back, which " +
                                              record.recordName() + " holds",
                                          failure.code());
        }
        throw;
    }
}

UpdateReport InPlaceUpdate::write(FileOperations& operations) const {
    UpdateReport report{plan_, content_.changes(), 0, essenceBytes(content_.file().survey())};
    auto const& name = content_.file().name();
    if (!plan_.fitsInPlace)
        throw Exceptions::InvalidChange(name + ": the changes do not fit in place: " + plan_.reason);
    if (patches_.empty())
        return report;
    if (UndoRecord::exists(name))
        throw Exceptions::InvalidChange(
            name + ": somebody else is editing the file: " + UndoRecord::nameFor(name) + " is there");
    auto const file = operations.open(name, FileOperations::Mode::Modify);
    requireFileAsLoaded();
    std::vector<UndoRecord::Piece> pieces;
    for (auto const& patch : patches_) {
        pieces.push_back({patch.position, patch.before});
        report.bytesWritten += patch.after.size();
    }
    UndoRecord record(name, plan_.fileSize, std::move(pieces), &operations);
    record.write();
    writePatches(*file, record);
    file->close();
    record.discard();
    return report;
}

} // namespace MXF::Zelm::MXFIO
