#include "WrapRefusals.h"

#include <algorithm>
#include <iterator>

namespace Zelm {

namespace {

/// The bytes behind the first start code, where the input begins with one; else null. At least two are there.
const unsigned char* behindStartCode(InputHead const& head) {
    static constexpr unsigned char code[] = {0, 0, 1};
    constexpr std::size_t mostZeros = 8, needed = 2;
    auto const* const begin = head.bytes.data();
    auto const* const end = begin + std::min(head.bytes.size(), mostZeros);
    auto const* const found = std::search(begin, end, std::begin(code), std::end(code));
    bool const isThere = found != end && head.bytes.end() - found - 3 >= std::ptrdiff_t{needed};
    return isThere ? found + 3 : nullptr;
}

bool hasAt(InputHead const& head, std::size_t offset, std::string_view text) {
    return head.bytes.size() >= offset + text.size() &&
           std::equal(text.begin(), text.end(), head.bytes.data() + offset,
                      [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
}

bool isMp4(InputHead const& head) {
    return hasAt(head, 4, "ftyp") || hasAt(head, 4, "moov") || hasAt(head, 4, "wide");
}

bool isMatroska(InputHead const& head) { return hasAt(head, 0, "\x1A\x45\xDF\xA3"); }

/// A slice, supplemental information or a delimiter of AVC.
bool isAvcUnit(InputHead const& head) {
    static constexpr unsigned char types[] = {1, 5, 6, 9};
    auto const* const unit = behindStartCode(head);
    return unit != nullptr && (unit[0] & 0x80u) == 0 &&
           std::find(std::begin(types), std::end(types), unit[0] & 0x1Fu) != std::end(types);
}

} // namespace

/// Parameter sets and delimiters, which streams begin with, of the lowest layer: no units of AVC.
bool isHevc(InputHead const& head) {
    auto const* const unit = behindStartCode(head);
    constexpr unsigned firstSet = 32, delimiter = 35;
    return unit != nullptr && (unit[0] & 0x81u) == 0 && unit[0] >> 1u >= firstSet &&
           unit[0] >> 1u <= delimiter && unit[1] == 1;
}

bool isMpeg4Video(InputHead const& head) {
    auto const* const code = behindStartCode(head);
    constexpr unsigned char visualObjectSequence = 0xB0;
    return code != nullptr && code[0] == visualObjectSequence;
}

const char* refusalOf(InputHead const& head) {
    if (isHevc(head))
        return "is HEVC video, which cannot be wrapped";
    if (isMpeg4Video(head))
        return "is MPEG-4 video, which cannot be wrapped";
    if (isMp4(head))
        return "is an MP4 file: streams of such files cannot be wrapped";
    if (isMatroska(head))
        return "is a Matroska file: streams of such files cannot be wrapped";
    return nullptr;
}

const char* refusalOfUnknown(InputHead const& head) {
    if (isAvcUnit(head))
        return "looks like AVC video, but has no parameter sets among its first bytes: --as avc looks "
               "further";
    return nullptr;
}

} // namespace Zelm
