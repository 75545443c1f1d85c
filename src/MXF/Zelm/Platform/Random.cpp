#include "MXF/Zelm/Platform/Random.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace MXF::Zelm::Platform {

void randomBytes(unsigned char* buffer, std::size_t size) {
    thread_local std::random_device device;
    while (size != 0) {
        auto const word = device();
        std::size_t const count = std::min(size, sizeof word);
        std::memcpy(buffer, &word, count);
        buffer += count;
        size -= count;
    }
}

} // namespace MXF::Zelm::Platform
