#if !defined(_WIN32)

#include "MXF/Zelm/DataIO/File/NativeFile.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace MXF::Zelm::DataIO::File {

namespace {

static_assert(sizeof(off_t) == 8, "large files need 64-bit offsets");

class PosixFile : public NativeFile {
public:
    PosixFile(std::string_view fileName, Access access) : NativeFile(fileName) {
        descriptor_ = retried([&] { return ::open(name().c_str(), flags(access), 0666); });
        if (descriptor_ < 0)
            fail("cannot open");
        // The destructor does not run when the constructor throws.
        try {
            refuseWhatCannotSeek();
        } catch (...) {
            ::close(descriptor_);
            throw;
        }
    }

    ~PosixFile() override {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }

    std::uint64_t size() const override {
        // A block device has no size in its inode, but an end that can be sought.
        off_t const end = ::lseek(descriptor_, 0, SEEK_END);
        if (end < 0)
            fail("cannot find the size");
        return static_cast<std::uint64_t>(end);
    }

    std::size_t readAt(std::uint64_t position, unsigned char* buffer, std::size_t count) override {
        std::size_t done = 0;
        while (done < count) {
            auto const got = retried([&] {
                return ::pread(descriptor_, buffer + done, count - done,
                               Templates::safeCast<off_t>(position + done));
            });
            if (got < 0)
                fail("cannot read");
            if (got == 0)
                break;
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

    void writeAt(std::uint64_t position, const unsigned char* buffer, std::size_t count) override {
        std::size_t done = 0;
        while (done < count) {
            auto const put = retried([&] {
                return ::pwrite(descriptor_, buffer + done, count - done,
                                Templates::safeCast<off_t>(position + done));
            });
            if (put < 0)
                fail("cannot write");
            done += static_cast<std::size_t>(put);
        }
    }

    void gatherAt(std::uint64_t position, std::span<Piece const> pieces) override {
        std::size_t done = 0; // of the first piece
        pass(pieces, done, 0);
        while (!pieces.empty()) {
            iovec batch[batchSize];
            int const count = fill(batch, pieces, done);
            auto const put = retried(
                [&] { return ::pwritev(descriptor_, batch, count, Templates::safeCast<off_t>(position)); });
            if (put < 0)
                fail("cannot write");
            position += static_cast<std::uint64_t>(put);
            pass(pieces, done, static_cast<std::size_t>(put));
        }
    }

    void truncate(std::uint64_t newSize) override {
        if (retried([&] { return ::ftruncate(descriptor_, Templates::safeCast<off_t>(newSize)); }) != 0)
            fail("cannot cut");
    }

    void synchronize() override {
        if (retried([&] { return ::fsync(descriptor_); }) != 0)
            fail("cannot bring to the device");
    }

    void beginSynchronizing(std::uint64_t position, std::uint64_t count) noexcept override {
#if defined(__linux__)
        ::sync_file_range(descriptor_, static_cast<off_t>(position), static_cast<off_t>(count),
                          SYNC_FILE_RANGE_WRITE);
#else
        static_cast<void>(position);
        static_cast<void>(count);
#endif
    }

    void close() override {
        int const descriptor = descriptor_;
        descriptor_ = -1;
        if (descriptor >= 0 && ::close(descriptor) != 0)
            fail("cannot close");
    }

private:
    static int flags(Access access) {
        switch (access) {
        case Access::CreateNew:
            return O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
        case Access::Replace:
            return O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC;
        case Access::Modify:
            return O_RDWR | O_CLOEXEC;
        case Access::Read:
            break;
        }
        return O_RDONLY | O_CLOEXEC;
    }

    /// What one call takes: systems allow at least so many pieces here, and a count of bytes that fits an
    /// ssize_t.
    static constexpr int batchSize = 256;
    static constexpr std::size_t batchBytes = std::size_t{1} << 30;

    /// The first pieces, less `done` bytes of the very first, as the system wants them; returns how many.
    static int fill(iovec* batch, std::span<Piece const> pieces, std::size_t done) {
        int count = 0;
        std::size_t bytes = 0;
        for (auto piece = pieces.begin(); piece != pieces.end() && count < batchSize && bytes < batchBytes;
             ++piece, ++count) {
            std::size_t const size = std::min(piece->size - done, batchBytes - bytes);
            batch[count] = {const_cast<unsigned char*>(piece->bytes + done), size};
            bytes += size;
            done = 0;
        }
        return count;
    }

    /// Passes over `count` bytes that are written, and over pieces without bytes.
    static void pass(std::span<Piece const>& pieces, std::size_t& done, std::size_t count) {
        while (!pieces.empty() && count >= pieces.front().size - done) {
            count -= pieces.front().size - done;
            pieces = pieces.subspan(1);
            done = 0;
        }
        done += count;
    }

    /// Runs a system call again while a signal interrupts it.
    template <class Call>
    static auto retried(Call call) -> decltype(call()) {
        decltype(call()) result;
        do
            result = call();
        while (result < 0 && errno == EINTR);
        return result;
    }

    void refuseWhatCannotSeek() {
        struct stat status {};
        if (::fstat(descriptor_, &status) != 0)
            fail("cannot open");
        if (S_ISDIR(status.st_mode))
            throw Exceptions::SystemError(name(), "cannot open", EISDIR);
        if (::lseek(descriptor_, 0, SEEK_CUR) < 0)
            fail("cannot seek");
    }

    [[noreturn]] void fail(const char* action) const { throw Exceptions::SystemError(name(), action, errno); }

    int descriptor_ = -1;
};

} // namespace

std::unique_ptr<NativeFile> NativeFile::open(std::string_view name, Access access) {
    return std::make_unique<PosixFile>(name, access);
}

} // namespace MXF::Zelm::DataIO::File

#endif
