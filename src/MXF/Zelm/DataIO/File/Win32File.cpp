#if defined(_WIN32)

#include "MXF/Zelm/DataIO/File/NativeFile.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>

#if !defined(NOMINMAX)
#define NOMINMAX // or windows.h hides std::min
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace MXF::Zelm::DataIO::File {

namespace {

class Win32File : public NativeFile {
public:
    Win32File(std::string_view fileName, Access access) : NativeFile(fileName) {
        std::u16string const wide = Platform::toUtf16(name());
        DWORD const wanted = access == Access::Read ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
        handle_ = CreateFileW(reinterpret_cast<const wchar_t*>(wide.c_str()), wanted,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              disposition(access), FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle_ == INVALID_HANDLE_VALUE)
            fail("cannot open");
        if (GetFileType(handle_) != FILE_TYPE_DISK) {
            CloseHandle(handle_);
            throw Exceptions::SystemError(name(), "cannot seek", ERROR_SEEK_ON_DEVICE);
        }
    }

    ~Win32File() override {
        if (handle_ != INVALID_HANDLE_VALUE)
            CloseHandle(handle_);
    }

    std::uint64_t size() const override {
        LARGE_INTEGER found;
        if (!GetFileSizeEx(handle_, &found))
            fail("cannot find the size");
        return static_cast<std::uint64_t>(found.QuadPart);
    }

    std::size_t readAt(std::uint64_t position, unsigned char* buffer, std::size_t count) override {
        std::size_t done = 0;
        while (done < count) {
            OVERLAPPED place = at(position + done);
            DWORD got = 0;
            if (!ReadFile(handle_, buffer + done, piece(count - done), &got, &place)) {
                if (GetLastError() == ERROR_HANDLE_EOF)
                    break;
                fail("cannot read");
            }
            if (got == 0)
                break;
            done += got;
        }
        return done;
    }

    void writeAt(std::uint64_t position, const unsigned char* buffer, std::size_t count) override {
        std::size_t done = 0;
        while (done < count) {
            OVERLAPPED place = at(position + done);
            DWORD put = 0;
            if (!WriteFile(handle_, buffer + done, piece(count - done), &put, &place))
                fail("cannot write");
            done += put;
        }
    }

    /// The system gathers whole pages only, and unbuffered.
    void gatherAt(std::uint64_t position, std::span<Piece const> pieces) override {
        for (auto const& piece : pieces) {
            writeAt(position, piece.bytes, piece.size);
            position += piece.size;
        }
    }

    void truncate(std::uint64_t newSize) override {
        LARGE_INTEGER end;
        end.QuadPart = static_cast<LONGLONG>(newSize);
        if (!SetFilePointerEx(handle_, end, nullptr, FILE_BEGIN) || !SetEndOfFile(handle_))
            fail("cannot cut");
    }

    void synchronize() override {
        if (!FlushFileBuffers(handle_))
            fail("cannot bring to the device");
    }

    void beginSynchronizing(std::uint64_t, std::uint64_t) noexcept override {}

    void close() override {
        HANDLE const handle = handle_;
        handle_ = INVALID_HANDLE_VALUE;
        if (handle != INVALID_HANDLE_VALUE && !CloseHandle(handle))
            fail("cannot close");
    }

private:
    static DWORD disposition(Access access) {
        switch (access) {
        case Access::CreateNew:
            return CREATE_NEW;
        case Access::Replace:
            return CREATE_ALWAYS;
        case Access::Modify:
        case Access::Read:
            break;
        }
        return OPEN_EXISTING;
    }

    static OVERLAPPED at(std::uint64_t position) {
        OVERLAPPED place = {};
        place.Offset = static_cast<DWORD>(position & 0xFFFFFFFFu);
        place.OffsetHigh = static_cast<DWORD>(position >> 32);
        return place;
    }

    /// One call moves at most 1 GiB.
    static DWORD piece(std::size_t count) {
        return static_cast<DWORD>(std::min<std::size_t>(count, 1u << 30));
    }

    [[noreturn]] void fail(const char* action) const {
        throw Exceptions::SystemError(name(), action, static_cast<long>(GetLastError()));
    }

    HANDLE handle_ = INVALID_HANDLE_VALUE;
};

} // namespace

std::unique_ptr<NativeFile> NativeFile::open(std::string_view name, Access access) {
    return std::make_unique<Win32File>(name, access);
}

} // namespace MXF::Zelm::DataIO::File

#endif
