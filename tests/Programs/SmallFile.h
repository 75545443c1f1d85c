/// A small MXF file to be doctored: header, two body and a footer partition, and a random index pack.
///
///     header    closed and complete; primer pack and one set
///     body 1    an index table of one segment, two essence elements of SID 1, fill
///     body 2    one essence element of SID 1
///     footer    nothing but its pack
#pragma once

#include "support/Files.h"

namespace MXF::Zelm::Test {

/// Where the fields of a partition pack stand, counted from its key; the length field has 4 bytes.
namespace PackField {
inline constexpr std::size_t status = 14;
inline constexpr std::size_t thisPartition = 28;
inline constexpr std::size_t previousPartition = 36;
inline constexpr std::size_t footerPartition = 44;
inline constexpr std::size_t headerByteCount = 52;
inline constexpr std::size_t indexByteCount = 60;
inline constexpr std::size_t indexSID = 68;
inline constexpr std::size_t bodyOffset = 72;
inline constexpr std::size_t bodySID = 80;
inline constexpr std::size_t operationalPattern = 84;
inline constexpr std::size_t essenceContainers = 108;
} // namespace PackField

struct SmallFile {
    SmallFile();

    Bytes bytes;
    std::size_t body1 = 0, body2 = 0, footer = 0, randomIndex = 0;
    std::size_t essence1 = 0; ///< the first essence element
    std::size_t packets = 0;  ///< KLV packets in all
};

/// Bytes in a file of its own.
class FileOnDisk {
public:
    explicit FileOnDisk(Bytes const& bytes) : name_(folder_.file("small.mxf")) { writeFile(name_, bytes); }

    std::string const& name() const { return name_; }

private:
    TemporaryFolder folder_;
    std::string name_;
};

} // namespace MXF::Zelm::Test
