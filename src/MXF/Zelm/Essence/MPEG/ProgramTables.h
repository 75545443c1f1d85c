/// The tables of a transport stream that say which packets belong to a program (ISO/IEC 13818-1, 2.4.4).
#pragma once

#include "MXF/Zelm/Essence/MPEG/StreamInfo.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace MXF::Zelm::Essence::MPEG {

/// Gathers the sections that the packets of one identifier carry.
///
///     pointer (1)    end of a section    section    section …    FF
class SectionCollector {
public:
    /// The payload of a packet. Returns the sections that are whole with it, as they are, CRC included; those
    /// whose CRC is wrong are left out.
    std::vector<std::vector<unsigned char>> push(const unsigned char* payload, std::size_t size,
                                                 bool beginsSection);

private:
    using Sections = std::vector<std::vector<unsigned char>>;
    void add(const unsigned char* bytes, std::size_t size, Sections& sections);

    std::vector<unsigned char> bytes_;
    bool isRunning_ = false;
};

/// Where the map of a program is.
struct ProgramEntry {
    std::uint16_t program;
    std::uint16_t mapId;
};

/// The entries of a section of the program association table; none for any other section.
std::vector<ProgramEntry> readAssociation(std::vector<unsigned char> const& section);

/// A section of a program's map.
struct ProgramMap {
    std::uint16_t program = 0;
    std::vector<StreamInfo> streams = {};
};

/// None for any other section.
std::optional<ProgramMap> readProgramMap(std::vector<unsigned char> const& section);

} // namespace MXF::Zelm::Essence::MPEG
