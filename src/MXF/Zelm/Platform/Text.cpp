#include "MXF/Zelm/Platform/Text.h"

namespace MXF::Zelm::Platform {

namespace {

constexpr char32_t replacement = 0xFFFD;

constexpr bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void appendUtf8(std::string& out, char32_t point) {
    auto const put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (point < 0x80) {
        put(point);
    } else if (point < 0x800) {
        put(0xC0 | (point >> 6));
        put(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        put(0xE0 | (point >> 12));
        put(0x80 | ((point >> 6) & 0x3F));
        put(0x80 | (point & 0x3F));
    } else {
        put(0xF0 | (point >> 18));
        put(0x80 | ((point >> 12) & 0x3F));
        put(0x80 | ((point >> 6) & 0x3F));
        put(0x80 | (point & 0x3F));
    }
}

/// Reads one code point at `at` and moves `at` past it; past one byte only where the sequence is not well
/// formed (too short, overlong, a surrogate, beyond U+10FFFF).
char32_t takeUtf8(std::string_view text, std::size_t& at) {
    auto const first = static_cast<unsigned char>(text[at++]);
    if (first < 0x80)
        return first;
    int const further = first >= 0xF0 && first < 0xF5   ? 3
                        : first >= 0xE0 && first < 0xF0 ? 2
                        : first >= 0xC2 && first < 0xE0 ? 1
                                                        : 0;
    if (further == 0 || text.size() - at < static_cast<std::size_t>(further))
        return replacement;
    char32_t point = static_cast<char32_t>(first & (0x3F >> further));
    for (int i = 0; i < further; ++i) {
        auto const next = static_cast<unsigned char>(text[at + static_cast<std::size_t>(i)]);
        if ((next & 0xC0) != 0x80)
            return replacement;
        point = (point << 6) | (next & 0x3Fu);
    }
    constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    if (point < smallest[further] || point > 0x10FFFF || isHighSurrogate(point) || isLowSurrogate(point))
        return replacement;
    at += static_cast<std::size_t>(further);
    return point;
}

} // namespace

std::string toUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t point = text[i];
        if (isHighSurrogate(point) && i + 1 < text.size() && isLowSurrogate(text[i + 1]))
            point = 0x10000 + ((point - 0xD800) << 10) + (text[++i] - 0xDC00u);
        else if (isHighSurrogate(point) || isLowSurrogate(point))
            point = replacement;
        appendUtf8(out, point);
    }
    return out;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        char32_t const point = takeUtf8(text, at);
        if (point < 0x10000) {
            out.push_back(static_cast<char16_t>(point));
        } else {
            out.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
        }
    }
    return out;
}

} // namespace MXF::Zelm::Platform
