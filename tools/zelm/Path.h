/// The path of a set or a property of header metadata:
///
///     MaterialPackage/Track[2]/TrackName
///     step "/" step "/" …      step: a name, and perhaps a number in brackets: from 1, "last", or "*" for
///     all
///
/// docs/zelm.1 tells what a step may be called.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Zelm {

struct PathStep {
    enum class Choice { Only, Number, Last, All };

    std::string name;
    Choice choice = Choice::Only; ///< without brackets: there has to be one
    std::size_t number = 0;       ///< from 1

    /// "Track[2]".
    std::string text() const;
};

/// Throws Exceptions::InvalidValue when `path` is not built like one.
std::vector<PathStep> parsePath(std::string_view path);

/// Those of `names` that `name` may have been meant to be, the likeliest first.
std::vector<std::string> nearMisses(std::string const& name, std::vector<std::string> const& names);

/// "; did you mean A, B or C?", empty for none.
std::string suggestion(std::vector<std::string> const& names);

} // namespace Zelm
