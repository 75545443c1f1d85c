/// The list of `zelm diff`, grouped by area. Short values stand in columns, long ones on lines of their own.
#include "Diff.h"
#include "Text.h"

#include <algorithm>
#include <iostream>

namespace Zelm {

namespace {

struct AreaRow {
    DiffArea area;
    const char* title;
};

constexpr AreaRow areaRows[] = {
    {DiffArea::Partitions, "Partitions"}, {DiffArea::Metadata, "Header metadata"},
    {DiffArea::History, "History"},       {DiffArea::Index, "Index tables"},
    {DiffArea::Essence, "Essence"},       {DiffArea::Layout, "Offsets and sizes"},
};

constexpr std::size_t longestCell = 44;

std::string valueText(std::optional<DiffValue> const& value) {
    return value ? printable(value->text) : "(none)";
}

bool isShort(Difference const& difference) {
    return displayWidth(valueText(difference.a)) <= longestCell &&
           displayWidth(valueText(difference.b)) <= longestCell;
}

std::string padded(std::string text, std::size_t width) {
    text.append(width - std::min(width, displayWidth(text)), ' ');
    return text;
}

void printArea(AreaRow const& row, std::vector<Difference const*> const& differences) {
    std::size_t pathWidth = 0, valueWidth = 0;
    for (auto const* const difference : differences)
        if (isShort(*difference)) {
            pathWidth = std::max(pathWidth, displayWidth(difference->path));
            valueWidth = std::max(valueWidth, displayWidth(valueText(difference->a)));
        }
    std::cout << "\n" << row.title << "\n";
    for (auto const* const difference : differences) {
        std::string const path = printable(difference->path);
        if (isShort(*difference))
            std::cout << "  " << padded(path, pathWidth) << "  "
                      << padded(valueText(difference->a), valueWidth) << "  ->  " << valueText(difference->b)
                      << "\n";
        else
            std::cout << "  " << path << "\n      " << valueText(difference->a) << "\n  ->  "
                      << valueText(difference->b) << "\n";
    }
}

/// "3 differences: 1 in the partitions, 2 in the header metadata".
std::string summary(std::vector<std::pair<std::string, std::size_t>> const& counts) {
    std::size_t total = 0;
    std::string parts;
    for (auto const& [title, count] : counts) {
        total += count;
        parts += (parts.empty() ? "" : ", ") + title + " " + grouped(count);
    }
    return grouped(total) + (total == 1 ? " difference: " : " differences: ") + parts;
}

/// What is there but was not asked for: "not counted: …", empty for nothing.
std::string notes(DiffFindings const& findings) {
    auto const count = [&](DiffArea area) {
        return std::count_if(findings.all().begin(), findings.all().end(), [&](auto const& difference) {
            return difference.area == area && !findings.counts(difference);
        });
    };
    std::string text;
    if (auto const moved = count(DiffArea::Layout); moved != 0)
        text += std::to_string(moved) + (moved == 1 ? " change" : " changes") +
                " of offsets and sizes (--layout shows them)";
    if (auto const sets = count(DiffArea::History); sets != 0)
        text += (text.empty() ? "" : ", ") + std::to_string(sets) + " Identification " +
                (sets == 1 ? "set" : "sets") + " of one file alone (--history)";
    return text.empty() ? text : "not counted: " + text;
}

} // namespace

bool DiffReport::equal() const {
    return std::none_of(findings.all().begin(), findings.all().end(),
                        [this](auto const& difference) { return findings.counts(difference); });
}

void printDiffText(DiffReport const& report, bool brief) {
    std::vector<std::pair<std::string, std::size_t>> counts;
    if (!brief && !report.equal())
        std::cout << "--- " << printable(report.a.input.name) << "\n+++ " << printable(report.b.input.name)
                  << "\n";
    for (auto const& row : areaRows) {
        std::vector<Difference const*> differences;
        for (auto const& difference : report.findings.all())
            if (difference.area == row.area && report.findings.counts(difference))
                differences.push_back(&difference);
        if (differences.empty())
            continue;
        counts.emplace_back(areaName(row.area), differences.size());
        if (!brief)
            printArea(row, differences);
    }
    std::string const note = brief ? "" : notes(report.findings);
    if (report.equal())
        std::cout << "equal: " << printable(report.a.input.name) << " and " << printable(report.b.input.name)
                  << (note.empty() ? "" : " (" + note + ")") << "\n";
    else
        std::cout << (brief ? "" : "\n") << summary(counts) << "\n" << note << (note.empty() ? "" : "\n");
}

} // namespace Zelm
