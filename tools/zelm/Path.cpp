#include "Path.h"

#include "ClassTree.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>
#include <charconv>
#include <numeric>

namespace Zelm {

using MXF::Zelm::Exceptions::InvalidValue;

namespace {

constexpr std::size_t mostSuggestions = 5;
constexpr std::size_t longestName = 128; ///< of a step; the distance of two names takes the square of it

PathStep parseStep(std::string_view text) {
    PathStep step;
    auto const bracket = text.find('[');
    step.name = std::string(text.substr(0, bracket));
    if (step.name.empty() || step.name.size() > longestName)
        throw InvalidValue("'" + std::string(text) + "' is no step of a path: a name is wanted");
    if (bracket == std::string_view::npos)
        return step;
    auto const inner = text.substr(bracket + 1, text.size() - bracket - 2);
    auto const [end, error] = std::from_chars(inner.data(), inner.data() + inner.size(), step.number);
    bool const isNumber = error == std::errc() && end == inner.data() + inner.size() && step.number != 0;
    if (text.back() != ']' || !(isNumber || inner == "last" || inner == "*"))
        throw InvalidValue("'" + std::string(text) + "': in brackets stand a number from 1, last, or *");
    step.choice = inner == "last" ? PathStep::Choice::Last
                  : inner == "*"  ? PathStep::Choice::All
                                  : PathStep::Choice::Number;
    return step;
}

std::string lowerCase(std::string text) {
    for (char& c : text)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text;
}

/// Letters to be added, taken out or exchanged to make one text of the other.
std::size_t distance(std::string const& a, std::string const& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            std::size_t const exchanged = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

std::string PathStep::text() const {
    switch (choice) {
    case Choice::Only:
        return name;
    case Choice::Number:
        return name + "[" + std::to_string(number) + "]";
    case Choice::Last:
        return name + "[last]";
    case Choice::All:
        break;
    }
    return name + "[*]";
}

std::vector<PathStep> parsePath(std::string_view path) {
    std::vector<PathStep> steps;
    for (;;) {
        auto const slash = path.find('/');
        steps.push_back(parseStep(path.substr(0, slash)));
        if (slash == std::string_view::npos)
            return steps;
        path.remove_prefix(slash + 1);
    }
}

std::vector<std::string> nearMisses(std::string const& name, std::vector<std::string> const& names) {
    std::string const wanted = lowerCase(name);
    std::vector<std::pair<std::size_t, std::string>> found;
    for (auto const& candidate : names) {
        std::string const other = lowerCase(candidate);
        bool const holds = wanted.size() > 2 && other.find(wanted) != std::string::npos;
        std::size_t const letters = holds ? 1 : distance(wanted, other);
        if (letters <= std::max<std::size_t>(2, wanted.size() / 3))
            found.emplace_back(letters, candidate);
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    std::vector<std::string> likeliest;
    for (std::size_t i = 0; i < std::min(found.size(), mostSuggestions); ++i)
        likeliest.push_back(found[i].second);
    return likeliest;
}

std::string suggestion(std::vector<std::string> const& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "; did you mean " : i + 1 == names.size() ? " or " : ", ") + names[i];
    return names.empty() ? text : text + "?";
}

} // namespace Zelm
