#include "MXF/Zelm/Essence/Converters/ChannelSplitter.h"

#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/Essence/Converters/SampleMover.h"
#include "MXF/Zelm/Essence/PieceSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

namespace MXF::Zelm::Essence::Converters {

namespace {

constexpr std::size_t blockSize = std::size_t{64} << 10;

struct Group {
    Group(std::vector<unsigned> list, PCMFormat const& from)
        : channels(std::move(list)),
          format{static_cast<unsigned>(channels.size()), from.bitsPerSample, from.byteOrder},
          mover(from, format) {}

    std::vector<unsigned> channels;
    PCMFormat format;
    SampleMover mover;
    DataIO::Chain waiting = {};
    bool isGone = false;
};

} // namespace

/// The source and what waits for each group.
class ChannelSplitter::Shared {
public:
    Shared(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& format,
           std::uint64_t mostWaiting)
        : source_(std::move(source)), format_(format), mostWaiting_(mostWaiting) {}

    void add(std::vector<unsigned> channels) {
        for (unsigned const channel : channels)
            if (channel >= format_.channels)
                throw Exceptions::InvalidValue("Channel " + std::to_string(channel) + " of " +
                                               std::to_string(format_.channels));
        groups_.emplace_back(std::move(channels), format_);
    }

    bool endsFor(std::size_t group) const { return groups_[group].waiting.empty() && source_->endOfStream(); }

    bool produce(std::size_t group, DataIO::Chain& chain) {
        if (groups_[group].waiting.empty() && !readBlock())
            return false;
        chain.append(std::exchange(groups_[group].waiting, {}));
        return true;
    }

    void letGo(std::size_t group) {
        groups_[group].waiting.clear();
        groups_[group].isGone = true;
    }

private:
    bool readBlock() {
        requireRoom();
        DataIO::Chain input;
        source_->read(std::max<std::size_t>(blockSize / format_.instantSize(), 1) * format_.instantSize(),
                      input);
        auto const in = input.contiguous();
        std::size_t const instants = in.size() / format_.instantSize();
        if (instants == 0)
            return false;
        for (auto& group : groups_)
            if (!group.isGone)
                split(in.data(), instants, group);
        return true;
    }

    void requireRoom() const {
        auto const waiting =
            std::accumulate(groups_.begin(), groups_.end(), std::uint64_t{0},
                            [](std::uint64_t sum, Group const& group) { return sum + group.waiting.size(); });
        if (waiting > mostWaiting_)
            throw Exceptions::InvalidChange(
                "A group of channels is read too far ahead of others: " + std::to_string(waiting) +
                " bytes wait, " + std::to_string(mostWaiting_) + " are allowed");
    }

    void split(const unsigned char* in, std::size_t instants, Group& group) {
        std::size_t const size = instants * group.format.instantSize();
        auto block = blocks_.block(size);
        for (std::size_t i = 0; i < group.channels.size(); ++i)
            group.mover.move(in, group.channels[i], instants, block->bytes(), static_cast<unsigned>(i));
        group.waiting.append(DataIO::Slice(std::move(block), 0, size));
    }

    Templates::SharedPtr<DataIO::SliceSource> source_;
    PCMFormat format_;
    std::uint64_t mostWaiting_;
    DataIO::Memory::MemoryBlockFactory blocks_;
    std::vector<Group> groups_;
};

class ChannelSplitter::Output : public PieceSource {
public:
    Output(Templates::SharedPtr<Shared> shared, std::size_t group)
        : shared_(std::move(shared)), group_(group) {}
    ~Output() override { shared_->letGo(group_); }

private:
    bool produce(DataIO::Chain& chain) override { return shared_->produce(group_, chain); }
    bool nothingLeft() const override { return shared_->endsFor(group_); }

    Templates::SharedPtr<Shared> shared_;
    std::size_t group_;
};

ChannelSplitter::ChannelSplitter(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& format,
                                 std::vector<std::vector<unsigned>> groups, std::uint64_t mostWaiting) {
    requireValid(format);
    auto const shared = std::make_shared<Shared>(std::move(source), format, mostWaiting);
    for (auto& group : groups)
        shared->add(std::move(group));
    for (std::size_t i = 0; i < groups.size(); ++i)
        outputs_.push_back(std::make_shared<Output>(shared, i));
}

ChannelSplitter::~ChannelSplitter() = default;

std::vector<std::vector<unsigned>> ChannelSplitter::single(unsigned channels) {
    std::vector<std::vector<unsigned>> groups;
    for (unsigned channel = 0; channel < channels; ++channel)
        groups.push_back({channel});
    return groups;
}

Templates::SharedPtr<DataIO::SliceSource> ChannelSplitter::take(std::size_t group) {
    return group < outputs_.size() ? std::move(outputs_[group]) : nullptr;
}

} // namespace MXF::Zelm::Essence::Converters
