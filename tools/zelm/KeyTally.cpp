#include "KeyTally.h"

namespace Zelm {

void KeyTally::grow() {
    std::size_t const slots = table_.empty() ? 256 : table_.size() * 2;
    table_.assign(slots, none);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        std::size_t slot = KeyHash()(rows_[i].key) & (slots - 1);
        while (table_[slot] != none)
            slot = (slot + 1) & (slots - 1);
        table_[slot] = static_cast<std::uint32_t>(i);
    }
}

} // namespace Zelm
