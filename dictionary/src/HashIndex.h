/// A hash table of numbers: the things themselves stand elsewhere, in an array that the numbers index. One
/// block of memory, so that loading thousands of definitions does not cost as many allocations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace MXF::ZelmDictionary {

class HashIndex {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    /// Room for about `count` entries before the table grows; a power of two.
    explicit HashIndex(std::size_t count) : slots_(2 * count) {}

    /// The first number with this hash for which `matches(number)` holds, else `none`.
    template <class Matches>
    std::uint32_t find(std::size_t hash, Matches const& matches) const {
        for (std::size_t at = spread(hash); slots_[at & mask()].number != none; ++at) {
            auto const& slot = slots_[at & mask()];
            if (slot.hash == short_(hash) && matches(slot.number))
                return slot.number;
        }
        return none;
    }

    void add(std::size_t hash, std::uint32_t number) {
        if (2 * ++count_ > slots_.size())
            grow();
        place({short_(hash), number}, spread(hash));
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = none;
    };

    static std::uint32_t short_(std::size_t hash) { return static_cast<std::uint32_t>(hash); }
    static std::size_t spread(std::size_t hash) { return short_(hash) * 2654435769U >> 7; }
    std::size_t mask() const { return slots_.size() - 1; }

    void place(Slot slot, std::size_t at) {
        while (slots_[at & mask()].number != none)
            ++at;
        slots_[at & mask()] = slot;
    }

    void grow() {
        std::vector<Slot> old(2 * slots_.size());
        old.swap(slots_);
        for (auto const& slot : old)
            if (slot.number != none)
                place(slot, spread(slot.hash));
    }

    std::vector<Slot> slots_;
    std::size_t count_ = 0;
};

} // namespace MXF::ZelmDictionary
