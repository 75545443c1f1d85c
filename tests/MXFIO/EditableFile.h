/// A small file with all that an edit has to keep, for tests of the updater.
#pragma once

#include "MXF/Zelm/MXFIO/Updater.h"

#include "support/Files.h"
#include "support/MxfFile.h"

namespace MXF::Zelm::Test {

/// A set class that no dictionary here knows.
inline constexpr KLV::Key privateKey = "060E2B34.02530101.0E0B0101.01010100"_key;
inline constexpr KLV::Key packageName = "060E2B34.01010101.01030302.01000000"_key;
inline constexpr KLV::Key operationalPattern = "060E2B34.01010105.01020203.00000000"_key;
inline constexpr KLV::Key essenceContainers = "060E2B34.01010105.01020210.02010000"_key;

MXFIO::Reader::DictionaryPtr editingDictionary();

/// A primer with a duplicate, a Preface with an unknown item, a material package with the name "old", a dark
/// set, and `fillSize` bytes of fill.
Bytes editableMetadata(std::size_t fillSize, unsigned char packageUID = 3);

/// Header (run-in before it, metadata with room for 300 bytes, KAG 32, index and essence), body partition,
/// generic stream, footer with the same metadata and room for 100 bytes, random index pack.
std::vector<Part> editableParts();
Bytes editableFile(std::vector<Part> const& parts = editableParts(),
                   Layout const& layout = {hex("0102030405")});

/// A file in a folder of its own, and the updater's view of it.
class EditableFile {
public:
    explicit EditableFile(Bytes bytes = editableFile()) : original(std::move(bytes)) { reset(); }

    void reset() const { writeFile(name, original); }
    Bytes content() const { return readFile(name); }
    std::unique_ptr<MXFIO::Updater> open(MXFIO::FileOperations* operations = nullptr) const;

    TemporaryFolder folder;
    std::string name = folder.file("clip.mxf");
    Bytes original;
};

/// Gives the package a name of `length` letters.
void rename(MXFIO::Updater& updater, std::size_t length);

/// The length of that name in the chosen metadata of a file; the index tables, bodies and dark sets as well.
struct FileState {
    explicit FileState(std::string const& fileName);

    std::size_t nameLength = 0;
    Bytes essence;
    std::vector<Bytes> darkSets;
    std::vector<std::size_t> nameLengths; // of each partition with metadata
    std::vector<std::uint64_t> grid;      // where each body begins on its partition's grid
};

} // namespace MXF::Zelm::Test
