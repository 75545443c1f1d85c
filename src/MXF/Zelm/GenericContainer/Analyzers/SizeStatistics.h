/// How many bytes the pictures of a stream have.
#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>

namespace MXF::Zelm::GenericContainer {

class SizeStatistics {
public:
    /// Pictures that are shown in a second; set before the first one comes.
    void picturesInSecond(std::size_t count) { inSecond_ = count; }

    void add(std::uint64_t size);

    /// Of all pictures together, and the most of as many in a row as are shown in a second.
    std::uint64_t total() const { return total_; }
    std::uint64_t mostInSecond() const { return mostInSecond_; }

    /// All pictures but the first have this size; 0 when they differ, or there are none. The first one may
    /// have `allowance` bytes more.
    std::uint64_t constantSize(std::uint64_t allowance) const;

private:
    std::size_t inSecond_ = 1;
    std::deque<std::uint64_t> second_; // the last pictures
    std::uint64_t total_ = 0, sumOfSecond_ = 0, mostInSecond_ = 0;
    std::uint64_t first_ = 0, smallest_ = UINT64_MAX, largest_ = 0;
};

} // namespace MXF::Zelm::GenericContainer
