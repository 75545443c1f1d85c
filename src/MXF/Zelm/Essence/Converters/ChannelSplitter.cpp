#include "MXF/Zelm/Essence/Converters/ChannelSplitter.h"

#include "MXF/Zelm/DataIO/Memory/MemoryBlockFactory.h"
#include "MXF/Zelm/Essence/PieceSource.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>
#include <utility>

namespace MXF::Zelm::Essence::Converters {

namespace {

/// Read at once, as far as instants fit: few enough for the processor's cache.
constexpr std::size_t blockSize = std::size_t{64} << 10;

constexpr unsigned mostChannels = 0xFFFF;
constexpr std::size_t mostSampleBytes = 8;

/// Channels that stand side by side in the input as well as in an output, in bytes of an instant.
struct Run {
    std::size_t from, to, size;
};

std::vector<Run> runsOf(std::vector<unsigned> const& channels, std::size_t sampleBytes) {
    std::vector<Run> runs;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        if (i > 0 && channels[i] == channels[i - 1] + 1)
            runs.back().size += sampleBytes;
        else
            runs.push_back({channels[i] * sampleBytes, i * sampleBytes, sampleBytes});
    }
    return runs;
}

/// From one instant to the next, in bytes.
struct Steps {
    std::size_t from, to;
};

template <std::size_t size>
void copyFixed(const unsigned char* from, unsigned char* to, Steps const& steps, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, from += steps.from, to += steps.to)
        std::memcpy(to, from, size);
}

/// Copies pieces of `size` bytes out of `count` instants. The usual sizes are copied without a call.
void copyPieces(const unsigned char* from, unsigned char* to, Steps const& steps, std::size_t size,
                std::size_t count) {
    switch (size) {
    case 2:
        return copyFixed<2>(from, to, steps, count);
    case 3:
        return copyFixed<3>(from, to, steps, count);
    case 4:
        return copyFixed<4>(from, to, steps, count);
    case 6:
        return copyFixed<6>(from, to, steps, count);
    default:
        for (std::size_t i = 0; i < count; ++i, from += steps.from, to += steps.to)
            std::memcpy(to, from, size);
    }
}

} // namespace

/// What is read once. Knows its outputs, which share it.
class ChannelSplitter::Input : public Platform::Allocated {
public:
    Input(Templates::SharedPtr<DataIO::SliceSource> source, unsigned channels, std::size_t sampleBytes,
          std::uint64_t mostWaiting)
        : source_(std::move(source)),
          channels_(channels),
          sampleBytes_(sampleBytes),
          mostWaiting_(mostWaiting) {}

    unsigned channels() const { return channels_; }
    std::size_t sampleBytes() const { return sampleBytes_; }
    void add(Output& output) { outputs_.push_back(&output); }
    void remove(Output& output) { std::erase(outputs_, &output); }

    /// Gives all outputs more; false at the end.
    bool fill();

private:
    std::size_t instantSize() const { return channels_ * sampleBytes_; }
    void requireRoom() const;

    Templates::SharedPtr<DataIO::SliceSource> source_;
    unsigned channels_;
    std::size_t sampleBytes_;
    std::uint64_t mostWaiting_;
    DataIO::Chain rest_; // read, and not given yet
    DataIO::Memory::MemoryBlockFactory blocks_;
    std::vector<Output*> outputs_;
};

class ChannelSplitter::Output : public PieceSource {
public:
    Output(Templates::SharedPtr<Input> input, std::vector<unsigned> const& channels)
        : input_(std::move(input)),
          runs_(runsOf(channels, input_->sampleBytes())),
          size_(channels.size() * input_->sampleBytes()) {
        input_->add(*this);
    }
    ~Output() override { input_->remove(*this); }

    std::uint64_t waiting() const { return waiting_.size(); }

    void take(DataIO::Slice const& instants, std::size_t instantSize, DataIO::BlockFactory& blocks) {
        std::size_t const count = instants.size() / instantSize;
        auto block = blocks.block(count * size_);
        for (auto const& run : runs_)
            copyPieces(instants.data() + run.from, block->bytes() + run.to, {instantSize, size_}, run.size,
                       count);
        waiting_.append(DataIO::Slice(std::move(block), 0, count * size_));
    }

private:
    bool produce(DataIO::Chain& chain) override {
        if (nothingLeft())
            return false;
        chain.append(waiting_.splitFrontUpTo(waiting_.begin()->size()));
        return true;
    }
    bool nothingLeft() const override { return waiting_.empty() && !input_->fill(); }

    Templates::SharedPtr<Input> input_;
    std::vector<Run> runs_;
    std::size_t size_; // of an instant
    DataIO::Chain waiting_;
};

bool ChannelSplitter::Input::fill() {
    std::size_t const atOnce = std::max<std::size_t>(blockSize / instantSize(), 1) * instantSize();
    while (rest_.size() < instantSize())
        if (source_->read(atOnce - rest_.size(), rest_) == 0)
            return false;
    requireRoom();
    auto const instants = rest_.splitFront(rest_.size() / instantSize() * instantSize()).contiguous();
    for (auto* const output : outputs_)
        output->take(instants, instantSize(), blocks_);
    return true;
}

void ChannelSplitter::Input::requireRoom() const {
    auto const waiting =
        std::accumulate(outputs_.begin(), outputs_.end(), std::uint64_t{0},
                        [](std::uint64_t sum, auto const* output) { return sum + output->waiting(); });
    if (waiting > mostWaiting_)
        throw Exceptions::InvalidStructure(
            "Channels of one sound are read too far ahead of others: " + std::to_string(waiting) +
            " bytes wait, " + std::to_string(mostWaiting_) + " are allowed");
}

ChannelSplitter::ChannelSplitter(Templates::SharedPtr<DataIO::SliceSource> samples, unsigned channels,
                                 std::size_t sampleBytes, std::uint64_t mostWaiting)
    : input_(std::make_shared<Input>(std::move(samples), channels, sampleBytes, mostWaiting)) {
    if (channels == 0 || channels > mostChannels || sampleBytes == 0 || sampleBytes > mostSampleBytes)
        throw Exceptions::InvalidValue("Sound of " + std::to_string(channels) + " channels with samples of " +
                                       std::to_string(sampleBytes) + " bytes cannot be split");
}

ChannelSplitter::~ChannelSplitter() = default;

Templates::SharedPtr<DataIO::SliceSource> ChannelSplitter::group(std::vector<unsigned> const& channels) {
    if (channels.empty())
        throw Exceptions::InvalidValue("A part of a sound without channels");
    for (unsigned const channel : channels)
        if (channel >= input_->channels())
            throw Exceptions::InvalidValue("Channel " + std::to_string(channel) + " of " +
                                           std::to_string(input_->channels()));
    return std::make_shared<Output>(input_, channels);
}

Templates::SharedPtr<DataIO::SliceSource> ChannelSplitter::range(unsigned first, unsigned count) {
    if (first >= input_->channels() || count > input_->channels() - first)
        throw Exceptions::InvalidValue(std::to_string(count) + " channels from " + std::to_string(first) +
                                       " on are not among " + std::to_string(input_->channels()));
    std::vector<unsigned> channels(count);
    std::iota(channels.begin(), channels.end(), first);
    return group(channels);
}

} // namespace MXF::Zelm::Essence::Converters
