#include "MXF/Zelm/Essence/PCMFormat.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>

namespace MXF::Zelm::Essence {

void requireValid(PCMFormat const& format) {
    constexpr unsigned mostChannels = 1024; // keeps blocks of instants small
    unsigned const bits = format.bitsPerSample;
    bool const known = bits == 16 || bits == 20 || bits == 24 || bits == 32;
    if (!known || format.channels < 1 || format.channels > mostChannels)
        throw Exceptions::InvalidValue("There is no PCM of " + std::to_string(format.channels) +
                                       " channels with samples of " + std::to_string(bits) + " bits");
}

} // namespace MXF::Zelm::Essence
