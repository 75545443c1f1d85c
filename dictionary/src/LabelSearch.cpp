/// Labels by their names: the rows of the registers, and the operational patterns, whose names are put
/// together from their bytes (LabelNames.cpp).
#include "MXF/ZelmDictionary/Names.h"

#include "NameTable.h"

#include <algorithm>

namespace MXF::ZelmDictionary {

using namespace Zelm::KLV::Literals;
using Zelm::KLV::Key;
using Zelm::Types::UniversalLabel;

namespace {

constexpr int categoryByte = 4;
constexpr unsigned char labelCategory = 0x04;

constexpr Key patternBase = "060E2B34.04010101.0D010201.00000000"_key;
constexpr Key atomBase = "060E2B34.04010102.0D010201.10000000"_key;

char lowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isWordCharacter(char c) {
    c = lowerCase(c);
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

/// How a name answers to what is searched.
enum class Match { None, Beginning, Whole };

Match match(std::string_view name, std::string_view wanted) {
    bool const begins = !wanted.empty() && name.size() >= wanted.size() &&
                        std::equal(wanted.begin(), wanted.end(), name.begin(),
                                   [](char a, char b) { return lowerCase(a) == lowerCase(b); });
    if (!begins)
        return Match::None;
    if (name.size() == wanted.size())
        return Match::Whole;
    return isWordCharacter(name[wanted.size()]) ? Match::None : Match::Beginning;
}

/// Calls `visit` for the patterns that can be put into words (SMPTE 377M, 390M).
template <class Visit>
void forEachPattern(Visit visit) {
    Key label = patternBase;
    for (unsigned char items = 1; items <= 3; ++items)
        for (unsigned char packages = 1; packages <= 3; ++packages)
            for (unsigned char qualifiers = 1; qualifiers <= 0x0F; qualifiers += 2)
                for (unsigned char joins = 0; joins <= (items == 1 ? 0 : 0x10); joins += 0x10) {
                    label[12] = items;
                    label[13] = packages;
                    label[14] = qualifiers;
                    label[15] = joins;
                    visit(label);
                }
    label = atomBase;
    for (label[13] = 0; label[13] <= 3; ++label[13])
        visit(label);
}

} // namespace

std::vector<UniversalLabel> labelsNamed(std::string_view name) {
    std::vector<Key> whole, beginning;
    auto const take = [&](Key const& label, std::string_view own) {
        auto const found = match(own, name);
        if (found != Match::None)
            (found == Match::Whole ? whole : beginning).push_back(label);
    };
    forEachPattern([&](Key const& label) { take(label, labelName(UniversalLabel(label))); });
    forEachName([&](Key const& label, std::string_view own) {
        if (label[categoryByte] == labelCategory)
            take(label, own);
    });
    auto& found = whole.empty() ? beginning : whole;
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return std::vector<UniversalLabel>(found.begin(), found.end());
}

} // namespace MXF::ZelmDictionary
