#if defined(_WIN32)

#include "MXF/Zelm/DataIO/File/FileFunctions.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#if !defined(NOMINMAX)
#define NOMINMAX // or windows.h hides std::min
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace MXF::Zelm::DataIO::File {

namespace {

[[noreturn]] void fail(std::string_view name, const char* action) {
    throw Exceptions::SystemError(std::string(name), action, static_cast<long>(GetLastError()));
}

class WideName {
public:
    explicit WideName(std::string_view name) : text_(Platform::toUtf16(name)) {}
    operator const wchar_t*() const { return reinterpret_cast<const wchar_t*>(text_.c_str()); }

private:
    std::u16string text_;
};

bool nothingThere() {
    DWORD const error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

/// What tells a file from all others; false when there is none of that name.
bool identify(std::string_view name, BY_HANDLE_FILE_INFORMATION& identity) {
    HANDLE const handle = CreateFileW(WideName(name), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        if (!nothingThere())
            fail(name, "cannot look at");
        return false;
    }
    bool const known = GetFileInformationByHandle(handle, &identity) != 0;
    CloseHandle(handle);
    if (!known)
        fail(name, "cannot look at");
    return true;
}

} // namespace

bool exists(std::string_view name) {
    if (GetFileAttributesW(WideName(name)) != INVALID_FILE_ATTRIBUTES)
        return true;
    if (!nothingThere())
        fail(name, "cannot look at");
    return false;
}

bool sameFile(std::string_view a, std::string_view b) {
    BY_HANDLE_FILE_INFORMATION first, second;
    return identify(a, first) && identify(b, second) &&
           first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

std::string followLink(std::string_view name) { return std::string(name); }

void rename(std::string_view from, std::string_view to, bool replace) {
    DWORD const flags = MOVEFILE_WRITE_THROUGH | (replace ? DWORD{MOVEFILE_REPLACE_EXISTING} : DWORD{0});
    if (!MoveFileExW(WideName(from), WideName(to), flags))
        fail(to, "cannot rename to it");
}

void remove(std::string_view name) {
    if (!DeleteFileW(WideName(name)))
        fail(name, "cannot remove");
}

void synchronizeEntry(std::string_view) {
    // The file system's journal does it; the system offers nothing for folders.
}

} // namespace MXF::Zelm::DataIO::File

#endif
