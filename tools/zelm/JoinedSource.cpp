#include "JoinedSource.h"

#include <MXF/Zelm/Utils/TimeBase.h>

namespace Zelm {

using namespace MXF::Zelm;
using IndexTables::IndexTableSegment;

namespace {

/// The entries of a segment with other stream offsets.
IndexTables::IndexEntryArray moved(IndexTables::IndexEntryArray const& entries, std::uint64_t bytes) {
    IndexTables::IndexEntryArray result(entries.sliceCount(), entries.posTableCount());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        auto entry = entries.at(i);
        entry.streamOffset(entry.streamOffset() + bytes);
        result.append(entry);
    }
    return result;
}

} // namespace

void JoinedSource::add(std::unique_ptr<Part> part) {
    if (part->wrapping() == GenericContainer::Wrapping::Clip)
        throw Exceptions::InvalidValue(
            "clips cannot be joined (zelm rewrap --frame cuts sound in edit units)");
    parts_.push_back(std::move(part));
}

bool JoinedSource::next(DataIO::Chain& out, bool& mayStartPartition, FutureUpdaterPtr& updater,
                        Templates::Rational<std::int64_t>& position) {
    out.clear();
    while (!done()) {
        if (parts_[current_]->next(out, mayStartPartition, updater, position)) {
            position = Utils::framesToSeconds(units() - 1, packageRate());
            bytes_ += out.size();
            return true;
        }
        finalize();
    }
    return false;
}

bool JoinedSource::doNextContentPackage(DataIO::Chain& out, Templates::Rational<std::int64_t>& position) {
    bool mayStartPartition = false;
    FutureUpdaterPtr updater;
    return next(out, mayStartPartition, updater, position);
}

/// Ends the current part; at the end, and where writing ends before, the last.
void JoinedSource::finalize() {
    if (done())
        return;
    auto& part = *parts_[current_];
    part.finalize();
    takeSegments(part);
    unitsBefore_ += part.units();
    bytesBefore_ = bytes_;
    ++current_;
}

std::int64_t JoinedSource::units() const { return unitsBefore_ + (done() ? 0 : parts_[current_]->units()); }

void JoinedSource::takeSegments(Part& part) {
    for (auto const& segment : part.takeIndexSegments()) {
        segment->indexStartPosition(Types::Position(segment->indexStartPosition().value() + unitsBefore_));
        if (segment->indexEntryArray() != nullptr && bytesBefore_ != 0)
            segment->indexEntryArray(moved(*segment->indexEntryArray(), bytesBefore_));
        segments_.push_back(segment);
    }
}

Templates::vector<JoinedSource::SegmentPtr> JoinedSource::takeIndexSegments() {
    if (!done())
        takeSegments(*parts_[current_]);
    return std::exchange(segments_, {});
}

} // namespace Zelm
