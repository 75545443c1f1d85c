#include "MXF/Zelm/Essence/MPEG/StreamInfo.h"

namespace MXF::Zelm::Essence::MPEG {

namespace {

template <class Key>
struct Row {
    Key key;
    Coding coding;
};

constexpr Row<std::uint8_t> streamTypes[] = {
    {0x01, Coding::MPEG1Video}, {0x02, Coding::MPEG2Video}, {0x03, Coding::MPEGAudio},
    {0x04, Coding::MPEGAudio},  {0x0F, Coding::AAC},        {0x10, Coding::MPEG4Video},
    {0x11, Coding::AAC},        {0x1B, Coding::AVC},        {0x21, Coding::JPEG2000},
    {0x24, Coding::HEVC},       {0x81, Coding::AC3},
};

constexpr Row<std::uint32_t> registrations[] = {
    {0x42535344, Coding::S302M}, // BSSD
    {0x41432D33, Coding::AC3},   // AC-3
    {0x48455643, Coding::HEVC},  // HEVC
};

template <class Key, std::size_t count>
Coding find(Row<Key> const (&table)[count], Key key) {
    for (auto const& row : table)
        if (row.key == key)
            return row.coding;
    return Coding::Unknown;
}

} // namespace

Coding codingOf(std::uint8_t streamType, std::uint32_t registration) {
    Coding const registered = find(registrations, registration);
    return registered != Coding::Unknown ? registered : find(streamTypes, streamType);
}

} // namespace MXF::Zelm::Essence::MPEG
