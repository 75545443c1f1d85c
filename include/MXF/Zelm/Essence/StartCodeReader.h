/// The bytes of a stream of start codes, as they are cut into units.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/DataIO/SyncWordFinder.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <string>

namespace MXF::Zelm::Essence {

/// Reads a source as far as it is asked to, and holds the bytes from the start of the unit that is being read
/// on. Positions are those of the source.
///
///     while (auto const code = reader.next())
///         if (code begins a unit)
///             use(reader.cut(code->position));        // the one before
class MXFZELM_EXPORT StartCodeReader : public Platform::Allocated {
public:
    /// No unit is larger, in bytes: where none ends, the stream is something else.
    static constexpr std::uint64_t largestUnit = std::uint64_t{64} << 20;

    static constexpr std::uint64_t codeSize = 4;

    /// 00 00 01 and a byte.
    struct Code {
        std::uint64_t position;
        std::uint8_t value;
    };

    /// Reads `source` from where it stands. `essence` is what it is, for messages: "MPEG video".
    StartCodeReader(Templates::SharedPtr<DataIO::SliceSource> source, std::string essence);

    /// The next start code, absent at the end of the stream. Throws Exceptions::InvalidFormat for a unit
    /// above `largestUnit`.
    std::optional<Code> next();

    /// Passes over up to `maximumToSkip` bytes to the first start code for which `begins` holds, where the
    /// first unit then begins, or at a zero before it if it `takesZero`. Absent when there is none.
    std::optional<Code> find(bool (*begins)(std::uint8_t code), std::uint64_t maximumToSkip,
                             bool takesZero = false);

    /// The position of the zero byte before `position`, if there is one in the unit; else `position`.
    std::uint64_t zeroBefore(std::uint64_t position) const;

    /// Where the unit begins that is being read, and the bytes from there on that were read.
    std::uint64_t start() const { return start_; }
    DataIO::Chain const& bytes() const { return bytes_; }

    /// Bytes from `position` on, `size` or as many as the stream has.
    DataIO::Chain read(std::uint64_t position, std::uint64_t size);

    /// Ends the unit before `end`: slices of the source, not copied.
    DataIO::Chain cut(std::uint64_t end);

    /// All that is left.
    DataIO::Chain cutRest() { return cut(start_ + bytes_.size()); }

private:
    bool readMore();
    bool require(std::uint64_t end);
    std::optional<Code> codeAt(std::uint64_t position);

    Templates::SharedPtr<DataIO::SliceSource> source_;
    std::string essence_;
    DataIO::SyncWordFinder finder_;
    DataIO::Chain bytes_;
    std::uint64_t start_;
};

} // namespace MXF::Zelm::Essence
