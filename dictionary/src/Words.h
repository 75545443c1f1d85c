/// Cutting a text of definitions into lines and words, without copies: views of the text.
#pragma once

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace MXF::ZelmDictionary {

/// A word of a line. One in quotes may hold blanks and is given without its quotes; so may one that has a
/// quoted part (`name="two words"`), which is given with them.
struct Word {
    std::string_view text;
    bool quoted = false;

    explicit operator bool() const { return quoted || !text.empty(); }
};

/// A text without the quotes around it, if any.
inline std::string_view withoutQuotes(std::string_view text) {
    if (text.starts_with('"'))
        text.remove_prefix(1);
    if (text.ends_with('"'))
        text.remove_suffix(1);
    return text;
}

/// The words of one line from left to right.
class Words {
public:
    explicit Words(std::string_view line) : rest_(line) { skipBlanks(); }

    /// The next word; an empty one at the end of the line. A quote that is not closed reaches to the end.
    Word next() {
        if (!rest_.empty() && rest_.front() == '"')
            return quoted();
        std::size_t end = 0;
        while (end < rest_.size() && !isBlank(rest_[end]))
            end = rest_[end] == '"' ? pastQuote(end + 1) : end + 1;
        return {take(end), false};
    }

    /// All that is left, without blanks at either end.
    std::string_view remainder() {
        auto text = take(rest_.size());
        while (!text.empty() && isBlank(text.back()))
            text.remove_suffix(1);
        return text;
    }

private:
    /// Tabs and the carriage return before a line feed count as blanks, as do the other control characters.
    static bool isBlank(char character) { return static_cast<unsigned char>(character) <= ' '; }

    /// The place after the next quote from `from` on, or the end of the line.
    std::size_t pastQuote(std::size_t from) const {
        auto const quote = rest_.find('"', from);
        return quote == std::string_view::npos ? rest_.size() : quote + 1;
    }

    Word quoted() { return {withoutQuotes(take(pastQuote(1))), true}; }

    std::string_view take(std::size_t count) {
        auto const text = rest_.substr(0, count);
        rest_.remove_prefix(count);
        skipBlanks();
        return text;
    }

    void skipBlanks() {
        while (!rest_.empty() && isBlank(rest_.front()))
            rest_.remove_prefix(1);
    }

    std::string_view rest_;
};

/// 16 bytes out of 32 hexadecimal digits with dots wherever they help the eye; nothing for any other text.
inline std::optional<std::array<unsigned char, 16>> labelFromText(std::string_view text) {
    std::array<unsigned char, 16> bytes{};
    std::size_t digits = 0;
    for (char const character : text) {
        if (character == '.')
            continue;
        int const digit = Zelm::ByteCoders::hexadecimalDigit(static_cast<unsigned char>(character));
        if (digit < 0 || digits == 2 * bytes.size())
            return std::nullopt;
        auto& byte = bytes[digits / 2];
        byte = static_cast<unsigned char>(byte << 4 | digit);
        ++digits;
    }
    if (digits != 2 * bytes.size())
        return std::nullopt;
    return bytes;
}

} // namespace MXF::ZelmDictionary
