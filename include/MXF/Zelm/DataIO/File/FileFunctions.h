/// What the system does with files as a whole. Names are UTF-8, or UTF-16 in the second form of each
/// function. All throw Exceptions::SystemError with the file's name and the system's text.
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/Text.h"

#include <string>
#include <string_view>

namespace MXF::Zelm::DataIO::File {

/// True when something has that name: a file, a folder, a link.
MXFZELM_EXPORT bool exists(std::string_view name);

/// True when both names lead to one file: the same name, another path to it, a link. False when one of them
/// leads to none.
MXFZELM_EXPORT bool sameFile(std::string_view a, std::string_view b);

/// The name of the file that a symbolic link leads to; the name as it is when it is not one.
MXFZELM_EXPORT std::string followLink(std::string_view name);

/// Gives a file another name in the same file system. A file that has that name already is replaced in one
/// step if `replace`; else it is an error, as it always is for a device or a pipe.
MXFZELM_EXPORT void rename(std::string_view from, std::string_view to, bool replace);

/// Removes a file.
MXFZELM_EXPORT void remove(std::string_view name);

/// Has the system bring the folder's entry of a file to the device: after the file was made, renamed or
/// removed. Does nothing where the system or the file system offers no such thing.
MXFZELM_EXPORT void synchronizeEntry(std::string_view name);

inline bool exists(std::u16string_view name) { return exists(Platform::toUtf8(name)); }
inline bool sameFile(std::u16string_view a, std::u16string_view b) {
    return sameFile(Platform::toUtf8(a), Platform::toUtf8(b));
}
inline std::string followLink(std::u16string_view name) { return followLink(Platform::toUtf8(name)); }
inline void rename(std::u16string_view from, std::u16string_view to, bool replace) {
    rename(Platform::toUtf8(from), Platform::toUtf8(to), replace);
}
inline void remove(std::u16string_view name) { remove(Platform::toUtf8(name)); }
inline void synchronizeEntry(std::u16string_view name) { synchronizeEntry(Platform::toUtf8(name)); }

} // namespace MXF::Zelm::DataIO::File
