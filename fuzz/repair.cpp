/// Repairs a file, in memory: whatever is repaired is read again, and nothing is wrong with it then.
#include "MXF/Zelm/MXFIO/Repairer.h"
#include "support.h"

#include <filesystem>
#include <fstream>
#include <random>

using namespace MXF::Zelm;

namespace {

constexpr std::uint64_t searchLimit = 256;

/// A file that is overwritten for each input.
std::string const& fileName() {
    static std::string const name = (std::filesystem::temp_directory_path() /
                                     ("fuzz-repair-" + std::to_string(std::random_device()()) + ".mxf"))
                                        .string();
    static struct Remover {
        ~Remover() { std::filesystem::remove(name); }
    } const remover;
    return name;
}

void write(unsigned char const* data, std::size_t size) {
    std::ofstream(fileName(), std::ios::binary)
        .write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
}

/// Keeps what is written, and no file of it.
class MemoryOperations : public MXFIO::FileOperations {
public:
    Templates::auto_ptr<MXFIO::WritableFile> open(std::string const&, Mode) override {
        return std::make_unique<File>(bytes);
    }
    void rename(std::string const&, std::string const&, bool) override {}
    void remove(std::string const&) override {}
    void synchronizeEntry(std::string const&) override {}

    std::vector<unsigned char> bytes;

private:
    class File : public MXFIO::WritableFile {
    public:
        explicit File(std::vector<unsigned char>& bytes) : bytes_(bytes) {}
        void writeAt(std::uint64_t position, unsigned char const* data, std::uint64_t size) override {
            Fuzz::require(position == bytes_.size());
            bytes_.insert(bytes_.end(), data, data + size);
        }
        void truncate(std::uint64_t) override {}
        void synchronize() override {}
        void close() override {}

    private:
        std::vector<unsigned char>& bytes_;
    };
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    write(data, size);
    MemoryOperations operations;
    Fuzz::passingOverBadInput([&] {
        MXFIO::Repairer(std::string_view(fileName()), Fuzz::dictionary(), searchLimit, {}, &operations)
            .writeToFile(fileName() + ".repaired");
    });
    if (operations.bytes.empty())
        return 0;
    write(operations.bytes.data(), operations.bytes.size());
    MXFIO::Repairer const again(std::string_view(fileName()), Fuzz::dictionary(), searchLimit);
    Fuzz::require(again.isSound());
    return 0;
}
