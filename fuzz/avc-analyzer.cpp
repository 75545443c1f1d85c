/// Cuts a byte stream of AVC into edit units.
#include "MXF/Zelm/GenericContainer/Analyzers/AVCAnalyzer.h"
#include "video.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    MXF::Zelm::Fuzz::checkVideo<MXF::Zelm::GenericContainer::AVCAnalyzer>(data, size);
    return 0;
}
