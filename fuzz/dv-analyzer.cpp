/// Cuts DV into edit units. The input is the first blocks of each frame, so that it stays small: the rest of
/// a frame is zeros. What is shorter than these blocks ends the stream as it is.
#include "MXF/Zelm/GenericContainer/Analyzers/DVAnalyzer.h"
#include "video.h"

using namespace MXF::Zelm;
using Essence::DV::FrameHeader;

namespace {

/// Header, subcode, VAUX, and the first blocks of sound and pictures.
constexpr std::size_t headSize = std::size_t{8} * Essence::DV::blockSize;

void addFrame(const unsigned char* head, std::vector<unsigned char>& frames) {
    std::vector<unsigned char> frame(head, head + headSize);
    frame.resize(FrameHeader::size);
    if (auto const header = FrameHeader::read(DataIO::Slice::copyOf(frame.data(), frame.size())))
        frame.resize(header->format->frameSize());
    frames.insert(frames.end(), frame.begin(), frame.end());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::vector<unsigned char> frames;
    std::size_t at = 0;
    for (; size - at >= headSize; at += headSize)
        addFrame(data + at, frames);
    frames.insert(frames.end(), data + at, data + size);
    Fuzz::checkVideo<GenericContainer::DVAnalyzer>(frames.data(), frames.size());
    return 0;
}
