/// Bytes that are known only after they had to be written: the length of a clip, durations in the header
/// metadata, the offset of the footer.
#pragma once

#include "MXF/Zelm/Platform/MemoryManager.h"

#include <cstdint>
#include <vector>

namespace MXF::Zelm::MXFIO {

/// Bytes to be written over those at an offset of the file.
struct MXFZELM_EXPORT FileUpdate {
    std::uint64_t offset = 0; ///< in the file, run-in included
    std::vector<unsigned char> bytes = {};
};

/// Stands for one run of bytes, or several near each other. Whoever gives the bytes to a writer makes one and
/// hands it over with them; the writer tells it where they went, and asks it at the end.
class MXFZELM_EXPORT FutureUpdater : public Platform::Allocated {
public:
    virtual ~FutureUpdater();

    /// The bytes have been written, the first of them at `fileOffset`.
    virtual void written(std::uint64_t fileOffset) = 0;

    /// False when the bytes, as they were written, are good enough for a sink that cannot seek.
    virtual bool isRequired() const = 0;

    /// What is to be written over them, after all of the file has been written; empty for nothing.
    virtual std::vector<FileUpdate> updates() = 0;
};

} // namespace MXF::Zelm::MXFIO
