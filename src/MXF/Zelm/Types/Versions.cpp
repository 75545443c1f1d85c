#include "MXF/Zelm/Types/Versions.h"

#include "MXF/Zelm/Types/TextParsing.h"

namespace MXF::Zelm::Types {

namespace {

constexpr std::u16string_view releaseNames[] = {u"unknown", u"released", u"development",
                                                u"patched", u"beta",     u"private build"};

} // namespace

std::u16string VersionType::toString() const {
    return Platform::toUtf16(std::to_string(majorVersion()) + "." + std::to_string(minorVersion()));
}

VersionType VersionType::fromText(std::u16string_view text) {
    TextCursor cursor(text, "VersionType");
    auto const major = static_cast<std::uint8_t>(cursor.number(255));
    cursor.require(u".");
    auto const minor = static_cast<std::uint8_t>(cursor.number(255));
    cursor.requireEnd();
    return {major, minor};
}

ProductVersion::ProductVersion(std::uint16_t major, std::uint16_t minor, std::uint16_t patch,
                               std::uint16_t build, Release release) {
    std::uint16_t const parts[] = {major, minor, patch, build, static_cast<std::uint16_t>(release)};
    for (std::size_t i = 0; i < std::size(parts); ++i)
        ByteCoders::codeInteger(parts[i], bytes_.data() + 2 * i);
}

std::u16string ProductVersion::toString() const {
    std::string text;
    for (std::size_t i = 0; i < 4; ++i)
        text += (i == 0 ? "" : ".") + std::to_string(part(i));
    text += " ";
    auto const release = part(4);
    return Platform::toUtf16(text) + (release < std::size(releaseNames)
                                          ? std::u16string(releaseNames[release])
                                          : integerToText(std::uint64_t{release}));
}

ProductVersion ProductVersion::fromText(std::u16string_view text) {
    TextCursor cursor(text, "ProductVersion");
    std::uint16_t parts[5] = {};
    for (std::size_t i = 0; i < 4; ++i) {
        if (i != 0)
            cursor.require(u".");
        parts[i] = static_cast<std::uint16_t>(cursor.number(65535));
    }
    if (cursor.take(u" ")) {
        std::size_t release = 0;
        while (release < std::size(releaseNames) && !cursor.take(releaseNames[release]))
            ++release;
        parts[4] =
            static_cast<std::uint16_t>(release < std::size(releaseNames) ? release : cursor.number(65535));
    }
    cursor.requireEnd();
    return {parts[0], parts[1], parts[2], parts[3], static_cast<Release>(parts[4])};
}

} // namespace MXF::Zelm::Types
