/// Which metadata sets of two files play the same role, and which identifiers stand for each other.
#pragma once

#include "Alignment.h"
#include "SetPaths.h"

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace Zelm {

/// How a property is compared.
enum class Treatment {
    Compare,
    Rename, ///< an identifier: always the same one in the other file for the same one here
    Ignore,
};

struct DiffOptions;
Treatment treatmentOf(MXF::Zelm::Metadata::Element const& element, DiffOptions const& options);

/// Identifiers of two files that stand for each other.
class Renaming {
public:
    /// True when `a` and `b` stand for each other: as they do from now on when both are new.
    bool pair(std::string const& a, std::string const& b);

private:
    std::map<std::string, std::string> toB_, toA_;
};

/// The bytes of a value, strings without their end.
std::string comparableBytes(MXF::Zelm::Types::BaseType const& value);

/// Pairs the members of two lists of sets (what a reference of each file points to): by the identifier of
/// their role (UMID, track ID, …) where both lists have the same ones, else by content, class and order.
class SetMatcher {
public:
    using Sets = std::vector<MXF::Zelm::Metadata::MetadataSet*>;

    SetMatcher(ClassTree const& classes, DiffOptions const& options) : classes_(classes), options_(options) {}

    std::vector<AlignedPair> match(Sets const& a, Sets const& b) const;

private:
    std::vector<std::string> roles(Sets const& sets) const;
    std::vector<std::string> kinds(Sets const& sets) const;
    std::vector<std::string> contents(Sets const& sets) const;

    ClassTree const& classes_;
    DiffOptions const& options_;
};

} // namespace Zelm
