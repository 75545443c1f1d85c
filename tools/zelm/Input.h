/// A file that a command works on, opened for reading.
#pragma once

#include <MXF/Zelm/DataIO/File/FileDataSource.h>
#include <MXF/Zelm/MXFIO/Reader2.h>

#include <string>
#include <vector>

namespace Zelm {

using SharedDictionary = MXF::Zelm::MXFIO::Reader::DictionaryPtr;

/// Most bytes passed over in search of a key: a run-in is shorter than 64 KiB (SMPTE 377M).
inline constexpr std::uint64_t searchLimit = 65536;

/// The standard dictionary and, on top of it, the definitions in `files`. Throws SystemError for a file that
/// cannot be read, InvalidFormat for one that is no dictionary.
SharedDictionary loadDictionary(std::vector<std::string> const& files);

/// Source and reader of one file. Throws SystemError when it cannot be opened.
struct Input {
    Input(std::string const& fileName, SharedDictionary dictionary)
        : name(fileName),
          source(std::string_view(fileName)),
          reader(source, std::move(dictionary), searchLimit) {}

    std::string name;
    MXF::Zelm::DataIO::File::FileDataSource source;
    MXF::Zelm::MXFIO::Reader2 reader;
};

} // namespace Zelm
