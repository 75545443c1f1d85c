/// Cutting a text of definitions into lines and words, without copies: views of the text.
#pragma once

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"

#include <array>
#include <optional>
#include <string_view>

namespace MXF::ZelmDictionary {

/// A word of a line. One in quotes may hold blanks and is given without its quotes.
struct Word {
    std::string_view text;
    bool quoted = false;

    explicit operator bool() const { return quoted || !text.empty(); }
};

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
            ++end;
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

    Word quoted() {
        rest_.remove_prefix(1);
        auto const end = std::min(rest_.find('"'), rest_.size());
        auto const text = rest_.substr(0, end);
        take(std::min(end + 1, rest_.size()));
        return {text, true};
    }

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
