#include "MXF/Zelm/Essence/Converters/ChannelMerger.h"

#include "MXF/Zelm/Essence/Converters/SampleMover.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace MXF::Zelm::Essence::Converters {

namespace {

constexpr std::size_t blockSize = std::size_t{64} << 10;

} // namespace

ChannelMerger::ChannelMerger(std::vector<Part> parts, unsigned bitsPerSample, PCMFormat::ByteOrder byteOrder)
    : parts_(std::move(parts)), format_{0, bitsPerSample, byteOrder} {
    for (auto const& part : parts_) {
        requireValid(part.format);
        format_.channels += part.format.channels;
    }
    requireValid(format_);
    for (auto const& part : parts_)
        movers_.emplace_back(part.format, format_);
}

ChannelMerger::~ChannelMerger() = default;

bool ChannelMerger::nothingLeft() const {
    return std::all_of(parts_.begin(), parts_.end(),
                       [](Part const& part) { return part.source->endOfStream(); });
}

bool ChannelMerger::produce(DataIO::Chain& chain) {
    std::size_t const most = std::max<std::size_t>(blockSize / format_.instantSize(), 1);
    std::vector<DataIO::Slice> inputs;
    std::size_t instants = 0;
    for (auto const& part : parts_) {
        DataIO::Chain input;
        part.source->read(most * part.format.instantSize(), input);
        inputs.push_back(input.contiguous());
        instants = std::max(instants, inputs.back().size() / part.format.instantSize());
    }
    if (instants == 0)
        return false;
    std::size_t const size = instants * format_.instantSize();
    auto block = blocks_.block(size);
    unsigned channel = 0;
    for (std::size_t i = 0; i < parts_.size(); channel += parts_[i++].format.channels)
        fill(parts_[i], movers_[i], inputs[i], instants, block->bytes(), channel);
    chain.append(DataIO::Slice(std::move(block), 0, size));
    return true;
}

/// The channels of one part in `instants` instants, silent behind its end.
void ChannelMerger::fill(Part const& part, SampleMover const& mover, DataIO::Slice const& in,
                         std::size_t instants, unsigned char* out, unsigned firstChannel) const {
    std::size_t const there = in.size() / part.format.instantSize();
    for (unsigned channel = 0; there != 0 && channel < part.format.channels; ++channel)
        mover.move(in.data(), channel, there, out, firstChannel + channel);
    unsigned char* silent = out + there * format_.instantSize() + firstChannel * format_.sampleSize();
    for (std::size_t i = there; i < instants; ++i, silent += format_.instantSize())
        std::memset(silent, 0, part.format.instantSize() / part.format.sampleSize() * format_.sampleSize());
}

} // namespace MXF::Zelm::Essence::Converters
