/// Text for people: tables, sizes, offsets.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace Zelm {

/// Rows of cells in columns as wide as their widest cell; the first row is the heading.
class Table {
public:
    enum class Align { Left, Right };

    /// One column for each heading.
    struct Column {
        std::string heading;
        Align align = Align::Left;
    };

    explicit Table(std::vector<Column> columns);

    /// As many cells as there are columns.
    void add(std::vector<std::string> cells);
    void print(std::ostream& out) const;

private:
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

/// "0x1A40".
std::string hex(std::uint64_t value);

/// "1,234,567".
std::string grouped(std::uint64_t value);

/// "1.8 GB" (10^9), with the exact number of bytes up to a kilobyte.
std::string humanSize(std::uint64_t bytes);

/// Columns that `text`, UTF-8, takes on a terminal: one for each code point.
std::size_t displayWidth(std::string const& text);

/// `text` from a file as it may go to a terminal: control characters become U+FFFD.
std::string printable(std::string const& text);

} // namespace Zelm
