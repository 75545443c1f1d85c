/// Files that have a number in their names, and are one input: frame00001.j2c, frame00002.j2c, …
#pragma once

#include <MXF/Zelm/DataIO/Block.h>
#include <MXF/Zelm/DataIO/SliceSource.h>
#include <MXF/Zelm/Templates/Memory.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Zelm {

class FileSequence {
public:
    /// Whether a name stands for a sequence: "%d" or "%05d" is in its last part, and no file has that name.
    static bool isPattern(std::string const& name);

    /// Finds the files from the number `first` on; absent for the first that is there. Throws CannotWrap when
    /// there is none, or one is missing before the last.
    FileSequence(std::string const& pattern, std::optional<std::uint64_t> first);

    /// In their order.
    std::vector<std::string> const& names() const { return names_; }

    /// Of all files together, as far as the system tells.
    std::uint64_t bytes() const;

    /// All bytes in a row; each file is opened when its turn comes.
    MXF::Zelm::Templates::SharedPtr<MXF::Zelm::DataIO::SliceSource>
    open(std::shared_ptr<MXF::Zelm::DataIO::BlockFactory> const& blocks) const;

private:
    std::vector<std::string> names_;
};

} // namespace Zelm
