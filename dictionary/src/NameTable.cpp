#include "NameTable.h"

#include "Texts.h"
#include "Words.h"

#include <cstring>

namespace MXF::ZelmDictionary {

using Zelm::KLV::Key;

namespace {

constexpr int versionByte = 7;
constexpr std::size_t labelLength = 35; // four groups of eight digits and the dots between them

/// One line of the table.
struct Row {
    Key label;
    std::string_view name;
    std::size_t begin; ///< offset of the line in the text
    std::size_t end;   ///< offset of the next line
};

/// The line that holds the byte at `offset`.
Row rowAt(std::string_view text, std::size_t offset) {
    auto const before = offset == 0 ? std::string_view::npos : text.rfind('\n', offset - 1);
    auto const begin = before == std::string_view::npos ? 0 : before + 1;
    auto const end = std::min(text.find('\n', begin), text.size() - 1);
    auto const line = text.substr(begin, end - begin);
    auto const label = labelFromText(line.substr(0, labelLength));
    return {label ? Key(label->data()) : Key(), line.substr(std::min(labelLength + 1, line.size())), begin,
            end + 1};
}

/// The order of the table: all bytes but the version.
int compareButForVersion(Key const& a, Key const& b) {
    int const front = std::memcmp(a.rawBuffer(), b.rawBuffer(), versionByte);
    return front != 0 ? front
                      : std::memcmp(a.rawBuffer() + versionByte + 1, b.rawBuffer() + versionByte + 1,
                                    Key::length - versionByte - 1);
}

std::string_view rows() {
    auto text = namesText();
    text.remove_prefix(text.find('\n') + 1); // name and version of the format
    return text;
}

} // namespace

std::string_view findName(Key const& key) {
    auto const text = rows();
    std::size_t low = 0;
    for (std::size_t high = text.size(); low < high;) {
        auto const row = rowAt(text, low + (high - low) / 2);
        if (compareButForVersion(row.label, key) < 0)
            low = row.end;
        else
            high = row.begin;
    }
    std::string_view newest;
    for (std::size_t at = low; at < text.size();) {
        auto const row = rowAt(text, at);
        if (compareButForVersion(row.label, key) != 0)
            break;
        newest = row.name;
        if (row.label == key)
            break;
        at = row.end;
    }
    return newest;
}

void forEachName(std::function<void(Key const&, std::string_view)> const& visit) {
    auto const text = rows();
    for (std::size_t at = 0; at < text.size();) {
        auto const row = rowAt(text, at);
        visit(row.label, row.name);
        at = row.end;
    }
}

} // namespace MXF::ZelmDictionary
