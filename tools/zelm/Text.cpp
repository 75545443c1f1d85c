#include "Text.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>

#include <algorithm>
#include <cstdio>

namespace Zelm {

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

void Table::add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

void Table::print(std::ostream& out) const {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        std::size_t width = displayWidth(columns_[i].heading);
        for (auto const& row : rows_)
            width = std::max(width, displayWidth(row[i]));
        widths.push_back(width);
    }
    auto const printRow = [&](auto const& cellOf) {
        std::string line;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            std::string const& cell = cellOf(i);
            std::string const padding(widths[i] - displayWidth(cell), ' ');
            line +=
                (i == 0 ? "" : "  ") + (columns_[i].align == Align::Right ? padding + cell : cell + padding);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << "\n";
    };
    printRow([this](std::size_t i) -> std::string const& { return columns_[i].heading; });
    for (auto const& row : rows_)
        printRow([&row](std::size_t i) -> std::string const& { return row[i]; });
}

std::string hex(std::uint64_t value) { return "0x" + MXF::Zelm::ByteCoders::toHexadecimal(value); }

std::string grouped(std::uint64_t value) {
    std::string text = std::to_string(value);
    for (std::size_t at = text.size(); at > 3;)
        text.insert(at -= 3, ",");
    return text;
}

std::string humanSize(std::uint64_t bytes) {
    constexpr const char* units[] = {"kB", "MB", "GB", "TB", "PB", "EB"};
    if (bytes < 1000)
        return std::to_string(bytes) + " bytes";
    double size = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    for (; size >= 999.95 && unit + 1 < std::size(units); size /= 1000)
        ++unit;
    char text[32];
    std::snprintf(text, sizeof text, "%.1f %s", size, units[unit]);
    return text;
}

std::size_t displayWidth(std::string const& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string printable(std::string const& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto const unit = static_cast<unsigned char>(text[i]);
        bool const c1Control =
            unit == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (unit >= 0x20 && unit != 0x7F && !c1Control) {
            out.push_back(text[i]);
            continue;
        }
        out += "\xEF\xBF\xBD";
        i += c1Control ? 1 : 0;
    }
    return out;
}

} // namespace Zelm
