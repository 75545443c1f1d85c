#include "AviNames.h"

#include <MXF/Zelm/ByteCoders/Hexadecimal.h>

#include <algorithm>
#include <iterator>

namespace Zelm {

using namespace MXF::Zelm::Essence::AVI;

namespace {

struct SoundRow {
    std::uint16_t tag;
    const char* name;
};

constexpr SoundRow soundRows[] = {
    {0x0002, "ADPCM sound"},          {0x0003, "floating-point sound"},
    {0x0006, "A-law sound"},          {0x0007, "\u00B5-law sound"},
    {0x0011, "IMA ADPCM sound"},      {0x0050, "MPEG-1 layer 1 or 2 sound"},
    {0x0055, "MPEG-1 layer 3 sound"}, {0x00FF, "AAC sound"},
    {0x2000, "AC-3 sound"},
};

} // namespace

std::string codeText(StreamHeader const& header) {
    if (header.content() == Content::PCM)
        return "PCM";
    if (header.sound) {
        auto const row = std::find_if(std::begin(soundRows), std::end(soundRows),
                                      [&](SoundRow const& each) { return each.tag == header.sound->tag; });
        return row != std::end(soundRows)
                   ? row->name
                   : "sound of format 0x" + MXF::Zelm::ByteCoders::toHexadecimal(header.sound->tag);
    }
    FourCC const code =
        header.video && header.video->compression != 0 ? header.video->compression : header.handler;
    std::string text;
    for (unsigned shift = 0; shift < 32; shift += 8)
        if (auto const character = code >> shift & 0xFF; character > ' ' && character < 0x7F)
            text += static_cast<char>(character);
    return text.empty() ? "uncompressed" : text;
}

} // namespace Zelm
