#include "MXF/Zelm/GenericContainer/Analyzers/SizeStatistics.h"

namespace MXF::Zelm::GenericContainer {

void SizeStatistics::add(std::uint64_t size) {
    if (total_ == 0) {
        first_ = size;
    } else {
        smallest_ = std::min(smallest_, size);
        largest_ = std::max(largest_, size);
    }
    total_ += size;
    sumOfSecond_ += size;
    second_.push_back(size);
    if (second_.size() > inSecond_) {
        sumOfSecond_ -= second_.front();
        second_.pop_front();
    }
    mostInSecond_ = std::max(mostInSecond_, sumOfSecond_);
}

std::uint64_t SizeStatistics::constantSize(std::uint64_t allowance) const {
    bool const isConstant = smallest_ == largest_ && first_ >= largest_ && first_ - largest_ <= allowance;
    return isConstant ? largest_ : 0;
}

} // namespace MXF::Zelm::GenericContainer
