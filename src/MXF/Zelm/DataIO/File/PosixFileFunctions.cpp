#if !defined(_WIN32)

#include "MXF/Zelm/DataIO/File/FileFunctions.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace MXF::Zelm::DataIO::File {

namespace {

[[noreturn]] void fail(std::string_view name, const char* action) {
    throw Exceptions::SystemError(std::string(name), action, errno);
}

bool nothingThere() { return errno == ENOENT || errno == ENOTDIR; }

std::string folderOf(std::string const& name) {
    auto const slash = name.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : name.substr(0, slash);
}

/// True for the file systems' ways of saying that they have no hard links.
bool noHardLinks() {
    return errno == EPERM || errno == ENOTSUP || errno == EOPNOTSUPP || errno == ENOSYS || errno == EMLINK;
}

/// Devices, pipes and sockets.
bool isNoFile(std::string const& name) {
    struct stat status {};
    return ::lstat(name.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode) &&
           !S_ISLNK(status.st_mode);
}

/// A hard link refuses a name that is taken, in one step; renaming would not.
void renameToNew(std::string const& from, std::string const& to) {
    if (::link(from.c_str(), to.c_str()) == 0) {
        if (::unlink(from.c_str()) != 0)
            fail(from, "cannot remove");
        return;
    }
    if (!noHardLinks())
        fail(to, "cannot rename to it");
    errno = EEXIST;
    if (exists(to) || ::rename(from.c_str(), to.c_str()) != 0)
        fail(to, "cannot rename to it");
}

} // namespace

bool exists(std::string_view name) {
    struct stat status {};
    if (::lstat(std::string(name).c_str(), &status) == 0)
        return true;
    if (!nothingThere())
        fail(name, "cannot look at");
    return false;
}

bool sameFile(std::string_view a, std::string_view b) {
    struct stat first {
    }, second{};
    for (auto const& [name, status] : {std::pair(a, &first), std::pair(b, &second)})
        if (::stat(std::string(name).c_str(), status) != 0) {
            if (!nothingThere())
                fail(name, "cannot look at");
            return false;
        }
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

std::string followLink(std::string_view name) {
    std::string const text(name);
    struct stat status {};
    if (::lstat(text.c_str(), &status) != 0 || !S_ISLNK(status.st_mode))
        return text;
    std::unique_ptr<char, decltype(&std::free)> const target(::realpath(text.c_str(), nullptr), std::free);
    return target ? std::string(target.get()) : text;
}

void rename(std::string_view from, std::string_view to, bool replace) {
    std::string const oldName(from), newName(to);
    if (!replace)
        return renameToNew(oldName, newName);
    if (isNoFile(newName))
        throw Exceptions::SystemError(newName, "cannot rename to it", EEXIST);
    if (::rename(oldName.c_str(), newName.c_str()) != 0)
        fail(to, "cannot rename to it");
}

void remove(std::string_view name) {
    if (::unlink(std::string(name).c_str()) != 0)
        fail(name, "cannot remove");
}

void synchronizeEntry(std::string_view name) {
    std::string const folder = folderOf(std::string(name));
    int const descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return; // a folder that may be written in but not read
    int const result = ::fsync(descriptor);
    int const error = errno;
    ::close(descriptor);
    if (result != 0 && error != EINVAL && error != ENOTSUP && error != EROFS)
        throw Exceptions::SystemError(folder, "cannot bring to the device", error);
}

} // namespace MXF::Zelm::DataIO::File

#endif
