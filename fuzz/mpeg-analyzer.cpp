/// Cuts MPEG video into edit units.
#include "MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h"
#include "video.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    MXF::Zelm::Fuzz::checkVideo<MXF::Zelm::GenericContainer::MPEG2VideoAnalyzer>(data, size);
    return 0;
}
