#include "support/Bytes.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/Hexadecimal.h"

#include <algorithm>
#include <stdexcept>

namespace MXF::Zelm::Test {

Bytes hex(std::string_view text) {
    Bytes bytes;
    int high = -1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '#')
            i = std::min(text.find('\n', i), text.size() - 1);
        int const digit = ByteCoders::hexadecimalDigit(static_cast<unsigned char>(text[i]));
        if (digit < 0 && std::string_view(" \n.").find(text[i]) == std::string_view::npos)
            throw std::invalid_argument("no hexadecimal text: " + std::string(text));
        if (digit < 0)
            continue;
        if (high >= 0)
            bytes.push_back(static_cast<unsigned char>(high << 4 | digit));
        high = high >= 0 ? -1 : digit;
    }
    if (high >= 0)
        throw std::invalid_argument("an odd number of digits: " + std::string(text));
    return bytes;
}

Bytes operator+(Bytes a, Bytes const& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes klv(KLV::Key const& key, Bytes const& value, unsigned char berLength) {
    Bytes field(berLength);
    ByteCoders::codeBER(value.size(), berLength, field.data());
    return Bytes(key.rawBuffer(), key.rawBuffer() + KLV::Key::size()) + field + value;
}

Bytes fill(std::size_t size) { return klv(KLV::fillItemKey(), repeated(size - 20, 0)); }

testing::AssertionResult sameBytes(Bytes const& found, Bytes const& expected) {
    auto const [at, other] = std::mismatch(found.begin(), found.end(), expected.begin(), expected.end());
    if (at == found.end() && other == expected.end())
        return testing::AssertionSuccess();
    auto const offset = at - found.begin();
    auto const dump = [offset](Bytes const& bytes) {
        auto const begin = std::max<std::ptrdiff_t>(offset - 8, 0);
        auto const end = std::min<std::ptrdiff_t>(offset + 24, std::ssize(bytes));
        return ByteCoders::toHexadecimal(bytes.data() + begin, static_cast<std::size_t>(end - begin), ' ');
    };
    return testing::AssertionFailure()
           << found.size() << " bytes, expected " << expected.size() << "; first difference at 0x" << std::hex
           << offset << "; from 8 bytes before it\n  found    " << dump(found) << "\n  expected "
           << dump(expected);
}

void survivesEveryFault(Bytes const& bytes, std::function<void(Bytes const&)> const& parse) {
    auto const attempt = [&parse](Bytes const& broken, std::size_t at) {
        try {
            parse(broken);
        } catch (Exceptions::BaseException const&) {
            // What bad input is to give.
        } catch (std::exception const& failure) {
            ADD_FAILURE() << "byte " << at << ": " << typeid(failure).name() << ": " << failure.what();
        }
    };
    for (std::size_t size = 0; size <= bytes.size(); ++size)
        attempt(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)), size);
    for (std::size_t at = 0; at < bytes.size(); ++at)
        for (unsigned char const byte : hex("00 7F 80 FF")) {
            Bytes broken = bytes;
            broken[at] = byte;
            attempt(broken, at);
        }
}

} // namespace MXF::Zelm::Test
