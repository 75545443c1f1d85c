#include "UnitHashes.h"

#include <algorithm>
#include <cstring>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

constexpr std::uint64_t odd1 = 0x9E3779B97F4A7C15, odd2 = 0xC2B2AE3D27D4EB4F;

std::uint64_t mix(std::uint64_t value) {
    value = (value ^ (value >> 32)) * odd1;
    value = (value ^ (value >> 29)) * odd2;
    return value ^ (value >> 32);
}

constexpr std::size_t lanes = 4, word = 8, blockSize = lanes * word;

/// Takes 32 bytes at a time into four sums that do not wait for each other.
class Hasher {
public:
    void add(const unsigned char* bytes, std::size_t size) {
        total_ += size;
        if (kept_ != 0) {
            std::size_t const part = std::min(size, blockSize - kept_);
            std::memcpy(rest_ + kept_, bytes, part);
            kept_ += part;
            bytes += part;
            size -= part;
            if (kept_ < blockSize)
                return;
            addBlock(rest_);
            kept_ = 0;
        }
        for (; size >= blockSize; bytes += blockSize, size -= blockSize)
            addBlock(bytes);
        std::memcpy(rest_, bytes, size);
        kept_ = size;
    }

    std::uint64_t finish() {
        std::memset(rest_ + kept_, 0, blockSize - kept_);
        addBlock(rest_);
        std::uint64_t sum = total_ * odd2;
        for (auto const lane : sums_)
            sum = mix(sum ^ lane);
        return sum;
    }

private:
    void addBlock(const unsigned char* bytes) {
        for (std::size_t i = 0; i < lanes; ++i) {
            std::uint64_t value = 0;
            std::memcpy(&value, bytes + i * word, word);
            std::uint64_t const sum = sums_[i] + value * odd2;
            sums_[i] = ((sum << 31) | (sum >> 33)) * odd1;
        }
    }

    std::uint64_t sums_[lanes] = {odd1, odd2, 1, 2};
    std::uint64_t total_ = 0;
    unsigned char rest_[blockSize] = {};
    std::size_t kept_ = 0;
};

} // namespace

std::uint64_t hashOf(DataIO::Chain const& bytes) {
    Hasher hasher;
    for (auto const& slice : bytes)
        hasher.add(slice.data(), slice.size());
    return hasher.finish();
}

void UnitHashes::add(std::uint64_t unit, std::uint64_t hash) {
    while ((unit >> shift_) >= mostSlots)
        halve();
    auto const slot = static_cast<std::size_t>(unit >> shift_);
    if (slot >= slots_.size())
        slots_.resize(slot + 1);
    slots_[slot] ^= mix(hash ^ mix(unit + odd1));
}

void UnitHashes::halve() {
    std::size_t const count = (slots_.size() + 1) / 2;
    for (std::size_t i = 0; i < count; ++i)
        slots_[i] = slots_[2 * i] ^ (2 * i + 1 < slots_.size() ? slots_[2 * i + 1] : 0);
    slots_.resize(count);
    ++shift_;
}

std::optional<std::pair<std::uint64_t, std::uint64_t>> UnitHashes::firstDifference(UnitHashes a,
                                                                                   UnitHashes b) {
    while (a.shift_ < b.shift_)
        a.halve();
    while (b.shift_ < a.shift_)
        b.halve();
    std::size_t const size = std::max(a.slots_.size(), b.slots_.size());
    a.slots_.resize(size);
    b.slots_.resize(size);
    auto const found = std::mismatch(a.slots_.begin(), a.slots_.end(), b.slots_.begin()).first;
    if (found == a.slots_.end())
        return std::nullopt;
    auto const slot = static_cast<std::uint64_t>(found - a.slots_.begin());
    return std::pair{slot << a.shift_, (slot + 1) << a.shift_};
}

void StreamHashes::add(DataIO::Chain bytes) {
    rest_.append(std::move(bytes));
    while (rest_.size() >= pieceSize)
        hashes_.add(pieces_++, hashOf(rest_.splitFront(pieceSize)));
}

UnitHashes StreamHashes::finish() {
    if (!rest_.empty())
        hashes_.add(pieces_++, hashOf(rest_));
    rest_.clear();
    return hashes_;
}

} // namespace Zelm
