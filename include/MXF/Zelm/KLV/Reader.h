/// Walks a source KLV packet by KLV packet (SMPTE 336M). The reader never reads a value: the caller reads,
/// skips or discards it, and the next call goes on wherever the source then stands.
#pragma once

#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/KLV/Packet.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <optional>

namespace MXF::Zelm::KLV {

class MXFZELM_EXPORT Reader : public Platform::Allocated {
public:
    /// `source` is not owned and must outlive the reader and its packets.
    explicit Reader(DataIO::DataSource& source);

    DataIO::DataSource& source() const { return *source_; }

    /// Finds and reads the next key and remembers it; the length is not read. At most `maximumToSkip` stray
    /// bytes are passed over; `skipped` receives their number. A second call reads nothing unless the source
    /// was moved. Throws Exceptions::BaseException with "Not enough data" at the end, or "Exceeded maximum
    /// bytes to skip …".
    Key peekNextKey(std::uint64_t& skipped, std::uint64_t maximumToSkip);

    /// The next packet, its value not read. Searches for the key as `peekNextKey` does, or uses the one
    /// remembered. Throws also "Invalid BER size: 0x…" for a length field that is indefinite or longer than
    /// nine bytes.
    Templates::auto_ptr<Packet> nextKLV(std::uint64_t& skipped, std::uint64_t maximumToSkip);

private:
    void searchKey(std::uint64_t& skipped, std::uint64_t maximumToSkip);
    bool keyIsRemembered() const;

    DataIO::DataSource* source_;
    std::optional<Key> key_;
    std::uint64_t afterKey_ = 0;
};

} // namespace MXF::Zelm::KLV
