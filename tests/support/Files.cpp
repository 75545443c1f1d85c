#include "support/Files.h"

#include "MXF/Zelm/Platform/Random.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace MXF::Zelm::Test {

namespace {

std::filesystem::path pathOf(std::string_view name) {
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    unsigned char name[8];
    Platform::randomBytes(name, sizeof name);
    path_ = std::filesystem::temp_directory_path() / ("zelm-" + ByteCoders::toHexadecimal(name, sizeof name));
    std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::file(std::string_view name) const {
    auto const text = (path_ / pathOf(name)).u8string();
    return {text.begin(), text.end()};
}

Bytes readFile(std::string const& name) {
    std::ifstream in(pathOf(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(std::string const& name, Bytes const& bytes) {
    std::ofstream out(pathOf(name), std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}

std::vector<std::filesystem::path> sampleFiles() {
    std::vector<std::filesystem::path> files;
    std::error_code missing;
    for (auto const& entry : std::filesystem::directory_iterator(MXFZELM_SAMPLES_DIR, missing))
        if (entry.path().extension() == ".mxf")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace MXF::Zelm::Test
