#include "MXF/Zelm/Essence/Converters/ChannelSplitter.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace MXF::Zelm::Essence::Converters {

namespace {

/// Read at once, as far as instants fit.
constexpr std::size_t readSize = std::size_t{256} << 10;

template <std::size_t size>
void copyFixed(const unsigned char* from, std::size_t step, std::size_t count, unsigned char* to) {
    for (std::size_t i = 0; i < count; ++i, from += step, to += size)
        std::memcpy(to, from, size);
}

/// Copies `count` pieces of `size` bytes that stand `step` bytes apart. The usual sizes of samples are copied
/// without a call.
void copyPieces(const unsigned char* from, std::size_t step, std::size_t size, std::size_t count,
                unsigned char* to) {
    switch (size) {
    case 2:
        return copyFixed<2>(from, step, count, to);
    case 3:
        return copyFixed<3>(from, step, count, to);
    case 4:
        return copyFixed<4>(from, step, count, to);
    case 6:
        return copyFixed<6>(from, step, count, to);
    default:
        for (std::size_t i = 0; i < count; ++i, from += step, to += size)
            std::memcpy(to, from, size);
    }
}

} // namespace

/// What is read once. Knows its outputs, which share it.
class ChannelSplitter::Input : public Platform::Allocated {
public:
    Input(Templates::SharedPtr<DataIO::SliceSource> source, unsigned channels, unsigned sampleBytes)
        : source_(std::move(source)), channels_(channels), sampleBytes_(sampleBytes) {}

    unsigned channels() const { return channels_; }
    unsigned sampleBytes() const { return sampleBytes_; }
    void add(Output& output) { outputs_.push_back(&output); }
    void remove(Output& output) { std::erase(outputs_, &output); }

    /// Gives all outputs more; false at the end.
    bool fill();

private:
    std::size_t instantSize() const { return std::size_t{channels_} * sampleBytes_; }

    Templates::SharedPtr<DataIO::SliceSource> source_;
    unsigned channels_;
    unsigned sampleBytes_;
    DataIO::Chain rest_; // of an instant
    std::vector<Output*> outputs_;
};

class ChannelSplitter::Output : public DataIO::SliceSource {
public:
    Output(Templates::SharedPtr<Input> input, unsigned first, unsigned count)
        : input_(std::move(input)),
          from_(std::size_t{first} * input_->sampleBytes()),
          size_(std::size_t{count} * input_->sampleBytes()) {
        input_->add(*this);
    }
    ~Output() override { input_->remove(*this); }

    std::uint64_t absoluteOffset() const override { return position_; }
    bool endOfStream() const override { return waiting_.empty() && !input_->fill(); }

    std::uint64_t read(std::uint64_t size, DataIO::Chain& chain) override {
        std::uint64_t done = 0;
        while (done < size && !endOfStream()) {
            auto piece = waiting_.splitFrontUpTo(size - done);
            done += piece.size();
            position_ += piece.size();
            chain.append(std::move(piece));
        }
        return done;
    }

    std::uint64_t skip(std::uint64_t size) override {
        DataIO::Chain passed;
        std::uint64_t done = 0;
        for (; done < size && !endOfStream(); passed.clear())
            done += read(std::min<std::uint64_t>(size - done, readSize), passed);
        return done;
    }

    bool hasRoom() const { return waiting_.size() <= largestLead; }

    void take(DataIO::Slice const& instants, std::size_t instantSize) {
        std::size_t const count = instants.size() / instantSize;
        auto const block = DataIO::Block::make(count * size_);
        copyPieces(instants.data() + from_, instantSize, size_, count, block->bytes());
        waiting_.append(DataIO::Slice::adopt(block));
    }

private:
    Templates::SharedPtr<Input> input_;
    std::size_t from_; // in an instant
    std::size_t size_; // of an instant
    DataIO::Chain waiting_;
    std::uint64_t position_ = 0;
};

bool ChannelSplitter::Input::fill() {
    if (!std::all_of(outputs_.begin(), outputs_.end(), [](auto const* output) { return output->hasRoom(); }))
        throw Exceptions::InvalidStructure("Channels of one sound are read too far ahead of others");
    while (rest_.size() < instantSize())
        if (source_->read(std::max(readSize / instantSize(), std::size_t{1}) * instantSize() - rest_.size(),
                          rest_) == 0)
            return false;
    auto const instants = rest_.splitFront(rest_.size() / instantSize() * instantSize()).contiguous();
    for (auto* const output : outputs_)
        output->take(instants, instantSize());
    return true;
}

ChannelSplitter::ChannelSplitter(Templates::SharedPtr<DataIO::SliceSource> samples, unsigned channels,
                                 unsigned sampleBytes)
    : input_(std::make_shared<Input>(std::move(samples), channels, sampleBytes)) {
    if (channels == 0 || sampleBytes == 0)
        throw Exceptions::InvalidValue("Sound without channels or samples cannot be split");
}

ChannelSplitter::~ChannelSplitter() = default;

Templates::SharedPtr<DataIO::SliceSource> ChannelSplitter::channels(unsigned first, unsigned count) {
    if (count == 0 || first >= input_->channels() || count > input_->channels() - first)
        throw Exceptions::InvalidValue("Channels " + std::to_string(first) + " and " + std::to_string(count) +
                                       " on are not among " + std::to_string(input_->channels()));
    return std::make_shared<Output>(input_, first, count);
}

} // namespace MXF::Zelm::Essence::Converters
