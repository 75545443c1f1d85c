#include "MXF/Zelm/Essence/Converters/BlockConverter.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::Essence::Converters {

namespace {

/// Bytes that are converted at once, in or out: few enough for the processor's cache.
constexpr std::size_t blockSize = std::size_t{64} << 10;

} // namespace

BlockConverter::BlockConverter(Templates::SharedPtr<DataIO::SliceSource> source, std::size_t inSize,
                               std::size_t outSize)
    : source_(std::move(source)), inSize_(inSize), outSize_(outSize) {}

BlockConverter::~BlockConverter() = default;

bool BlockConverter::produce(DataIO::Chain& chain) {
    std::size_t const most = std::max<std::size_t>(blockSize / std::max(inSize_, outSize_), 1);
    source_->read(most * inSize_ - input_.size(), input_);
    auto const units = static_cast<std::size_t>(input_.size() / inSize_);
    if (units == 0)
        return false;
    auto const in = input_.splitFront(units * inSize_).contiguous();
    auto block = blocks_.block(units * outSize_);
    convert(in.data(), units, block->bytes());
    chain.append(DataIO::Slice(std::move(block), 0, units * outSize_));
    return true;
}

} // namespace MXF::Zelm::Essence::Converters
