#include "MXF/Zelm/Essence/CodedSound/FrameHeader.h"

namespace MXF::Zelm::Essence::CodedSound {

std::span<Format const* const> formats() {
    static Format const* const all[] = {&mpegAudio(), &ac3(), &adts()};
    return all;
}

Format const* formatAt(const unsigned char* bytes, std::size_t size) {
    FrameHeader header;
    for (auto const* const format : formats())
        if (size >= format->headerSize && format->read(bytes, header))
            return format;
    return nullptr;
}

} // namespace MXF::Zelm::Essence::CodedSound
