#include "IndexRebuild.h"

#include "Progress.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/MXFIO/EssenceReader.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using IndexTables::IndexTableSegment;

namespace {

using Containers = Templates::vector<MXFIO::EssenceContainer>;

bool isPositive(EditRate const& rate) { return rate.numerator > 0 && rate.denominator > 0; }

/// Those that the metadata names, and those that only the partition packs know.
Containers allContainers(PartitionSurvey const& partitions, MXFIO::Partition::MetadataPtr const& metadata) {
    Containers containers = MXFIO::essenceContainers(metadata);
    for (auto const& partition : partitions.partitions) {
        auto const bodySID = partition.pack().bodySID();
        bool const isKnown = std::any_of(containers.begin(), containers.end(),
                                         [&](auto const& known) { return known.bodySID == bodySID; });
        if (bodySID != 0 && !isKnown && !partition.partition->isGenericStream())
            containers.push_back({.bodySID = bodySID});
    }
    std::stable_sort(containers.begin(), containers.end(),
                     [](auto const& a, auto const& b) { return a.bodySID < b.bodySID; });
    return containers;
}

class Rebuilder {
public:
    Rebuilder(Input& input, IndexSurvey const& own)
        : input_(input), own_(own), progress_("walking over the essence", input.source.size()) {
        rebuilt_.survey.partitions = own.partitions;
        rebuilt_.survey.faults = own.faults;
    }

    RebuiltIndex run(Containers const& containers) {
        for (auto const& container : containers)
            try {
                rebuild(container);
            } catch (Exceptions::SystemError const&) {
                throw;
            } catch (Exceptions::BaseException const& failure) {
                fail(failure);
            }
        return std::move(rebuilt_);
    }

private:
    void rebuild(MXFIO::EssenceContainer const& container);
    void walk(MXFIO::EssenceReader& essence, FoundTable const* own);
    void cutClip(MXFIO::EssenceReader& essence, FoundTable const* own);
    void keep(FoundTable table, FoundTable const* own, bool flagsKnown);
    FoundTable const* ownTable(std::uint32_t bodySID) const;

    void fail(Exceptions::BaseException const& failure) {
        rebuilt_.survey.faults.push_back({failure.message(), failure.offset().value_or(0)});
    }

    Input& input_;
    IndexSurvey const& own_;
    Progress progress_;
    RebuiltIndex rebuilt_;
    std::uint64_t walked_ = 0; // bytes of the containers before
};

FoundTable const* Rebuilder::ownTable(std::uint32_t bodySID) const {
    auto const found = std::find_if(own_.tables.begin(), own_.tables.end(), [&](FoundTable const& table) {
        return table.table->bodySID() == bodySID;
    });
    return found != own_.tables.end() ? &*found : nullptr;
}

void Rebuilder::rebuild(MXFIO::EssenceContainer const& container) {
    MXFIO::EssenceReader essence(input_.reader, container);
    if (essence.stream().length() == 0)
        return;
    auto const* const own = ownTable(container.bodySID);
    if (essence.wrapping() == GenericContainer::Wrapping::Clip)
        cutClip(essence, own);
    else
        walk(essence, own);
    walked_ += essence.stream().length();
}

std::uint32_t indexSIDOf(MXFIO::EssenceContainer const& container, FoundTable const* own) {
    return own != nullptr ? own->table->indexSID() : container.indexSID;
}

EditRate editRateOf(MXFIO::EssenceContainer const& container, FoundTable const* own) {
    auto const rate = container.editRate();
    return isPositive(rate) || own == nullptr ? rate : own->table->editRate();
}

void Rebuilder::walk(MXFIO::EssenceReader& essence, FoundTable const* own) {
    using MXFIO::WalkedIndex;
    WalkedIndex index(essence.stream(), 0, 0, WalkedIndex::Learn::Pictures);
    try {
        index.walk([this](std::uint64_t done, std::uint64_t) {
            progress_.update(walked_ + done);
            return true;
        });
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        fail(failure);
    }
    FoundTable table;
    table.table = index.table(indexSIDOf(essence.container(), own), editRateOf(essence.container(), own));
    keep(std::move(table), own, index.knowsPictures());
}

/// Samples have a size, by which a clip of sound is cut; for other essence the track's duration says how many
/// edit units there are, and they are taken to have one size if the bytes can be shared out.
struct ClipCut {
    std::uint64_t bytes = 0;
    EditRate rate = {};
};

ClipCut cutOf(MXFIO::EssenceTrack const& track, std::uint64_t length, EditRate const& ownRate) {
    auto const& samples = track.samples;
    if (samples.bytes == 0 || !isPositive(samples.rate)) {
        auto const units = static_cast<std::uint64_t>(track.duration);
        return track.duration > 0 && length % units == 0 ? ClipCut{length / units, track.editRate}
                                                         : ClipCut{};
    }
    if (!isPositive(ownRate))
        return {samples.bytes, samples.rate};
    auto const over = std::int64_t{samples.rate.numerator} * ownRate.denominator;
    auto const under = std::int64_t{samples.rate.denominator} * ownRate.numerator;
    return over % under == 0 ? ClipCut{samples.bytes * static_cast<std::uint64_t>(over / under), ownRate}
                             : ClipCut{samples.bytes, samples.rate};
}

/// As many edit units as `length` bytes hold.
std::unique_ptr<IndexTables::IndexTable> constantTable(std::uint32_t indexSID, std::uint32_t bodySID,
                                                       ClipCut const& cut, std::uint64_t length) {
    auto segment = std::make_unique<IndexTableSegment>(std::uint8_t{4});
    segment->indexEditRate(Types::Rational(cut.rate));
    segment->indexDuration(Types::Length(static_cast<std::int64_t>(length / cut.bytes)));
    segment->indexSID(Types::UInt32(indexSID));
    segment->bodySID(Types::UInt32(bodySID));
    segment->editUnitByteCount(Types::UInt32(static_cast<std::uint32_t>(cut.bytes)));
    auto table = std::make_unique<IndexTables::IndexTable>(indexSID, bodySID);
    table->add(std::move(segment), false);
    return table;
}

void Rebuilder::cutClip(MXFIO::EssenceReader& essence, FoundTable const* own) {
    essence.stream().seek(0);
    std::optional<MXFIO::PacketHead> head;
    do
        head = essence.stream().nextCutPacket();
    while (head && !GenericContainer::ElementKey::isContent(head->key));
    if (!head)
        return;
    auto const* const track =
        essence.container().trackByNumber(GenericContainer::ElementKey(head->key).trackNumber());
    std::uint64_t const length =
        std::min(head->length, essence.stream().length() - head->streamOffset - head->headLength);
    auto const cut = track != nullptr
                         ? cutOf(*track, length, own != nullptr ? own->table->editRate() : EditRate())
                         : ClipCut();
    if (cut.bytes == 0 || cut.bytes > UINT32_MAX) {
        rebuilt_.notes.push_back("the essence of BodySID " + std::to_string(essence.container().bodySID) +
                                 " is one clip: nothing but an index table tells where its edit units begin");
        return;
    }
    FoundTable table;
    table.clipStart = head->streamOffset + head->headLength;
    table.clipEnd = table.clipStart + length;
    table.table =
        constantTable(indexSIDOf(essence.container(), own), essence.container().bodySID, cut, length);
    keep(std::move(table), own, false);
}

void Rebuilder::keep(FoundTable table, FoundTable const* own, bool flagsKnown) {
    completeTable(input_, table);
    table.isRebuilt = true;
    IndexComparison comparison;
    if (own != nullptr)
        comparison = compareIndex(*own, table, flagsKnown);
    rebuilt_.comparisons.push_back(std::move(comparison));
    rebuilt_.survey.tables.push_back(std::move(table));
}

} // namespace

RebuiltIndex rebuildIndex(Input& input, IndexSurvey const& own,
                          MXFIO::Partition::MetadataPtr const& metadata) {
    return Rebuilder(input, own).run(allContainers(own.partitions, metadata));
}

} // namespace Zelm
