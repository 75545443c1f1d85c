/// Reading the text forms of values: a cursor over the text that raises Exceptions::InvalidFormat with the
/// whole text and the type's name.
#pragma once

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Platform/Text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace MXF::Zelm::Types {

class TextCursor {
public:
    TextCursor(std::u16string_view text, std::string_view typeName) : text_(text), typeName_(typeName) {}

    bool atEnd() const { return at_ == text_.size(); }

    /// The next character, 0 at the end.
    char16_t peek() const { return atEnd() ? u'\0' : text_[at_]; }

    /// The next character, which is passed over.
    char16_t next() {
        if (atEnd())
            fail();
        return text_[at_++];
    }

    /// Passes over `expected` when it stands next.
    bool take(std::u16string_view expected) {
        if (!text_.substr(at_).starts_with(expected))
            return false;
        at_ += expected.size();
        return true;
    }

    /// Passes over `expected`, which must stand next.
    void require(std::u16string_view expected) {
        if (!take(expected))
            fail();
    }

    void requireEnd() const {
        if (!atEnd())
            fail();
    }

    /// A decimal number without sign, at most `largest`.
    std::uint64_t number(std::uint64_t largest) {
        if (peek() < u'0' || peek() > u'9')
            fail();
        std::uint64_t value = 0;
        while (peek() >= u'0' && peek() <= u'9') {
            auto const digit = static_cast<std::uint64_t>(next() - u'0');
            if (value > (largest - digit) / 10)
                fail();
            value = value * 10 + digit;
        }
        return value;
    }

    /// A decimal number with or without a minus sign, `smallest` being negative or 0 and `largest` positive.
    std::int64_t signedNumber(std::int64_t smallest, std::int64_t largest) {
        if (!take(u"-"))
            return static_cast<std::int64_t>(number(static_cast<std::uint64_t>(largest)));
        std::uint64_t const magnitude = number(0 - static_cast<std::uint64_t>(smallest));
        return static_cast<std::int64_t>(0 - magnitude);
    }

    [[noreturn]] void fail() const {
        throw Exceptions::InvalidFormat("'" + Platform::toUtf8(text_) + "' is not a value of type " +
                                        std::string(typeName_));
    }

private:
    std::u16string_view text_;
    std::string_view typeName_;
    std::size_t at_ = 0;
};

} // namespace MXF::Zelm::Types
