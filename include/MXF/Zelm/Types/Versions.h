/// Version numbers: of the file format (two bytes) and of products (five 16-bit integers).
#pragma once

#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

/// Major and minor version in one byte each: 01 02 is 1.2.
class MXFZELM_EXPORT VersionType final : public FixedSizeType<VersionType, Identifiers::VersionType, 2> {
public:
    using FixedSizeType::FixedSizeType;
    VersionType() = default;
    VersionType(std::uint8_t major, std::uint8_t minor) { bytes_ = {major, minor}; }

    std::uint8_t majorVersion() const { return bytes_[0]; }
    std::uint8_t minorVersion() const { return bytes_[1]; }

    /// "1.2".
    std::u16string toString() const override;

    /// Throws Exceptions::InvalidFormat.
    static VersionType fromText(std::u16string_view text);
};

class MXFZELM_EXPORT ProductVersion final
    : public FixedSizeType<ProductVersion, Identifiers::ProductVersion, 10> {
public:
    enum class Release : std::uint16_t { Unknown, Released, Development, Patched, Beta, PrivateBuild };

    using FixedSizeType::FixedSizeType;
    ProductVersion() = default;
    ProductVersion(std::uint16_t major, std::uint16_t minor, std::uint16_t patch, std::uint16_t build,
                   Release release);

    std::uint16_t majorVersion() const { return part(0); }
    std::uint16_t minorVersion() const { return part(1); }
    std::uint16_t patch() const { return part(2); }
    std::uint16_t build() const { return part(3); }

    /// A file may hold values that the enumeration does not name.
    Release release() const { return static_cast<Release>(part(4)); }

    /// "2.7.3.0 released".
    std::u16string toString() const override;

    /// Reads the same form; the word may also be the number. Throws Exceptions::InvalidFormat.
    static ProductVersion fromText(std::u16string_view text);

private:
    std::uint16_t part(std::size_t index) const {
        return ByteCoders::decodeInteger<std::uint16_t>(bytes_.data() + 2 * index);
    }
};

} // namespace MXF::Zelm::Types
