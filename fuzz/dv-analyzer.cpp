/// Cuts DV into edit units.
#include "MXF/Zelm/GenericContainer/Analyzers/DVAnalyzer.h"
#include "video.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    MXF::Zelm::Fuzz::checkVideo<MXF::Zelm::GenericContainer::DVAnalyzer>(data, size);
    return 0;
}
