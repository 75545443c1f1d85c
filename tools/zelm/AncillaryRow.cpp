#include "AncillaryRow.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>

namespace Zelm {

using namespace MXF::Zelm;

std::vector<AncillaryRow::Word> AncillaryRow::values(const char* member, std::size_t digits) const {
    auto const all = text(member);
    if (all.size() % digits != 0)
        throw BadAncillaryText("\"" + std::string(member) + "\" does not hold whole values");
    std::vector<Word> values;
    for (std::size_t at = 0; at < all.size(); ++at) {
        int const digit = ByteCoders::hexadecimalDigit(static_cast<unsigned char>(all[at]));
        if (digit < 0)
            throw BadAncillaryText("\"" + std::string(member) + "\" is not hexadecimal");
        if (at % digits == 0)
            values.push_back(0);
        values.back() =
            static_cast<Word>((std::uint64_t{values.back()} << 4 | static_cast<unsigned>(digit)) & mostWord);
    }
    return values;
}

std::vector<unsigned char> AncillaryRow::bytes(const char* member) const {
    auto const found = values(member, 2);
    return {found.begin(), found.end()};
}

} // namespace Zelm
