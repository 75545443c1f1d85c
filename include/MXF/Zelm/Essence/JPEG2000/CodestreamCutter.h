/// Cuts a stream of JPEG 2000 codestreams into single ones, and takes them out of the boxes of a JP2 file
/// (ISO/IEC 15444-1 annexes A and I).
///
///     stream       SOC … SOT … SOT … EOC | SOC … SOT … EOC | …
///     JP2 file     signature | file type | header: size, colour | codestream: SOC … EOC
///
/// A tile-part tells its length; the last one of a codestream may leave it to the end marker. Zeros or ones
/// behind an end marker fill a file up: they belong to no codestream, and are passed over.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <optional>
#include <string>

namespace MXF::Zelm::Essence::JPEG2000 {

class MXFZELM_EXPORT CodestreamCutter : public Platform::Allocated {
public:
    /// No codestream is larger, in bytes.
    static constexpr std::uint64_t largestUnit = std::uint64_t{256} << 20;

    /// Values of the enumerated colour spaces of a JP2 file.
    enum ColourSpace : std::uint32_t { sRGB = 16, greyscale = 17, sYCC = 18 };

    struct Unit {
        /// A codestream; slices of the source, not copied.
        DataIO::Chain data = {};

        /// Where it stands in the source.
        std::uint64_t offset = 0;
    };

    /// Reads `source` from where it stands.
    explicit CodestreamCutter(Templates::SharedPtr<DataIO::SliceSource> source);
    ~CodestreamCutter();

    /// Whether these are the first bytes of a codestream or of a JP2 file.
    static bool isCodestream(const unsigned char* bytes, std::size_t size);

    /// The next codestream; `unit` is overwritten. False at the end. One that is cut off is left out there.
    /// Throws Exceptions::InvalidFormat with the offset for what is neither codestream nor box, and above
    /// `largestUnit`.
    bool next(Unit& unit);

    /// What the last colour box before the last codestream says, if there was one that names a space.
    std::optional<std::uint32_t> const& colourSpace() const { return colourSpace_; }

    /// Why the stream ended where it did, when that is amid a codestream or box; else empty.
    std::string const& fault() const { return fault_; }

private:
    bool require(std::uint64_t size);
    std::uint32_t integerAt(std::uint64_t position, unsigned bytes) const;
    std::uint64_t drop(std::uint64_t size);
    bool endAmid(const char* what, std::uint64_t offset);
    std::uint64_t paddingSize() const;
    void passPadding();
    bool passBox();
    bool passBoxes();
    void takeHeaderBox(std::uint64_t begin, std::uint64_t end);
    std::optional<std::uint64_t> endOfUnit();
    std::optional<std::uint64_t> endOfTilePart(std::uint64_t position);
    std::optional<std::uint64_t> findEndMarker(std::uint64_t position);

    Templates::SharedPtr<DataIO::SliceSource> source_;
    DataIO::Chain bytes_; // from the start of the unit on
    std::uint64_t start_; // its position
    bool isBehindCodestream_ = false;
    std::optional<std::uint32_t> colourSpace_;
    std::string fault_;
};

} // namespace MXF::Zelm::Essence::JPEG2000
