/// Folders for the files of one test, and the sample files.
#pragma once

#include "support/Bytes.h"

#include <filesystem>

namespace MXF::Zelm::Test {

/// A new empty folder that goes with the object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    /// The path of a file in it, in UTF-8.
    std::string file(std::string_view name) const;

private:
    std::filesystem::path path_;
};

Bytes readFile(std::string const& name);
void writeFile(std::string const& name, Bytes const& bytes);

/// The sample files that are MXF files from their header partition on; empty when the folder is missing.
std::vector<std::filesystem::path> sampleFiles();

} // namespace MXF::Zelm::Test
