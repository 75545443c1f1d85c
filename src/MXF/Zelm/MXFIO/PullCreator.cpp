#include "MXF/Zelm/MXFIO/PullCreatorState.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/MXFIO/WrittenBytes.h"

namespace MXF::Zelm::MXFIO {

PullCreator::PullCreator(MetadataPtr metadata, CreatorSettings settings)
    : state_(std::make_unique<State>(std::move(metadata), std::move(settings))) {}

PullCreator::~PullCreator() = default;

void PullCreator::addSource(Templates::auto_ptr<GenericContainer::Source> source, std::uint32_t bodySID,
                            std::uint32_t indexSID) {
    state_->requireNotStarted();
    state_->requireFreeSID(bodySID);
    if (indexSID != 0)
        state_->requireFreeSID(indexSID);
    state_->containers.push_back(
        {std::make_unique<BodySource>(std::move(source), bodySID, indexSID, state_->settings.canUpdate)});
}

void PullCreator::addGenericStream(GenericStream stream) {
    state_->requireNotStarted();
    state_->requireFreeSID(stream.sid);
    state_->streams.push_back(std::move(stream));
}

bool PullCreator::next(DataIO::Chain& out) {
    out.clear();
    while (out.empty() && !done()) {
        if (!state_->current)
            state_->advance(out);
        else
            state_->pull(out);
    }
    return !out.empty();
}

void PullCreator::finish() {
    for (auto const& container : state_->containers)
        container.body->stop();
}

bool PullCreator::done() const { return state_->phase == State::Phase::Done; }

bool PullCreator::isPartitionStart() const { return state_->isPartitionStart; }

std::uint64_t PullCreator::fileOffset() const {
    return state_->phase == State::Phase::RunIn ? 0 : state_->settings.runIn.size() + state_->offset;
}

std::uint64_t PullCreator::packages(std::size_t index) const {
    return index < state_->containers.size() ? state_->containers[index].body->packages() : 0;
}

bool PullCreator::isHeaderClosed() const {
    return done() && state_->settings.canUpdate && state_->header->fits();
}

Templates::vector<FileUpdate> PullCreator::updates() const {
    Templates::vector<FileUpdate> updates;
    auto const& state = *state_;
    if (!done() || !state.settings.canUpdate)
        return updates;
    for (auto const& container : state.containers)
        for (auto& update : container.body->updates())
            updates.push_back(std::move(update));
    if (!state.finalHeaderIndex.empty())
        updates.push_back({state.headerIndexOffset, state.finalHeaderIndex});
    std::uint64_t const runIn = state.settings.runIn.size();
    unsigned char const ber = state.format.packBerLength;
    state.partitions.appendClosing(updates, state.header->status(), runIn, ber);
    if (state.header->fits())
        updates.push_back(state.header->update());
    updates.push_back(state.partitions.footerUpdate(runIn, ber));
    if (state.header->fits())
        updates.push_back(WrittenPartitions::statusUpdate(runIn, state.header->status()));
    return updates;
}

} // namespace MXF::Zelm::MXFIO
