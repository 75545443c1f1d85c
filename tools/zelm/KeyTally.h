/// Counts KLV packets by key. A hash table of places in a vector, since this runs once for every packet of a
/// file.
#pragma once

#include "KeyNames.h"
#include "KlvWalk.h"

#include <cstdint>
#include <vector>

namespace Zelm {

/// How many packets and bytes.
struct KlvCount {
    std::uint64_t packets = 0;
    std::uint64_t valueBytes = 0; ///< that the file holds
    std::uint64_t klvBytes = 0;   ///< with keys and lengths

    void add(KlvWalk::Packet const& packet) {
        ++packets;
        valueBytes += packet.present;
        klvBytes += packet.bytes();
    }
    void add(KlvWalk::Gap const& gap) {
        ++packets;
        valueBytes += gap.length;
        klvBytes += gap.length;
    }
};

class KeyTally {
public:
    struct Row {
        MXF::Zelm::KLV::Key key;
        KlvCount count;
    };

    void add(KlvWalk::Packet const& packet) {
        if (packet.key != lastKey_ || rows_.empty()) {
            lastKey_ = packet.key;
            last_ = place(packet.key);
        }
        rows_[last_].count.add(packet);
    }

    /// In the order of their first packets.
    std::vector<Row> const& rows() const { return rows_; }

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    std::size_t place(MXF::Zelm::KLV::Key const& key) {
        if (rows_.size() * 2 >= table_.size())
            grow();
        std::size_t slot = KeyHash()(key) & (table_.size() - 1);
        for (; table_[slot] != none; slot = (slot + 1) & (table_.size() - 1))
            if (rows_[table_[slot]].key == key)
                return table_[slot];
        table_[slot] = static_cast<std::uint32_t>(rows_.size());
        rows_.push_back({key, {}});
        return rows_.size() - 1;
    }

    void grow();

    std::vector<Row> rows_;
    std::vector<std::uint32_t> table_; // a power of two of slots, at most half of them taken
    MXF::Zelm::KLV::Key lastKey_;
    std::size_t last_ = 0;
};

} // namespace Zelm
