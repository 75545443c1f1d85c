#include "MXF/Zelm/DataIO/SliceSourceTee.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::DataIO {

namespace {

/// What is skipped is held in memory for the sink, no more than this at a time.
constexpr std::uint64_t largestPiece = 1 << 20;

} // namespace

SliceSourceTee::SliceSourceTee(Templates::SharedPtr<SliceSource> source, Templates::SharedPtr<SliceSink> sink)
    : source_(std::move(source)), sink_(std::move(sink)) {}

SliceSourceTee::~SliceSourceTee() = default;

std::uint64_t SliceSourceTee::absoluteOffset() const { return source_->absoluteOffset(); }

bool SliceSourceTee::endOfStream() const { return source_->endOfStream(); }

std::uint64_t SliceSourceTee::read(std::uint64_t size, Chain& chain) {
    Chain piece;
    std::uint64_t const count = source_->read(size, piece);
    sink_->write(piece);
    chain.append(std::move(piece));
    return count;
}

std::uint64_t SliceSourceTee::skip(std::uint64_t size) {
    std::uint64_t done = 0;
    while (done < size) {
        Chain passed;
        std::uint64_t const count = read(std::min(size - done, largestPiece), passed);
        if (count == 0)
            break;
        done += count;
    }
    return done;
}

} // namespace MXF::Zelm::DataIO
