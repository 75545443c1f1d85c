/// Identifiers of a fixed number of bytes (keys, labels, UUIDs, UMIDs): the bytes, held inline, and their
/// text forms.
#pragma once

#include "MXF/Zelm/KLV/StringRepresentation.h"
#include "MXF/Zelm/Platform/Export.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace MXF::Zelm::KLV {

/// What an identifier is, which decides the text forms it has.
enum class IdentificationKind {
    Label, ///< a SMPTE universal label (SMPTE 298M): all forms
    Uuid,  ///< a UUID (RFC 4122): all but OID
    Umid,  ///< a UMID (SMPTE 330M): all but OID
};

/// The text of the identifier of `size` bytes. Throws Exceptions::BaseException with "Can't represent the
/// requested type in the given StringRepresentationEncodingType" when the kind, or a label not of SMPTE, has
/// no such form.
MXFZELM_EXPORT std::u16string identificationToText(const unsigned char* bytes, std::size_t size,
                                                   IdentificationKind kind,
                                                   Types::StringRepresentationEncodingType encoding);

/// Reads the text of an identifier of `size` bytes into `bytes`, which are changed only when all of it is
/// right. Throws Exceptions::InvalidLength ("Not enough data") or Exceptions::BaseException with what is
/// wrong.
MXFZELM_EXPORT void identificationFromText(std::u16string_view text, unsigned char* bytes, std::size_t size,
                                           IdentificationKind kind,
                                           Types::StringRepresentationEncodingType encoding);

/// A holder of exactly N bytes.
template <std::size_t N>
class FixedLengthIdentificationType {
public:
    static constexpr std::size_t length = N;

    /// All bytes zero.
    constexpr FixedLengthIdentificationType() = default;

    /// Copies N bytes.
    constexpr explicit FixedLengthIdentificationType(const unsigned char* bytes) {
        std::copy_n(bytes, N, bytes_.begin());
    }

    constexpr explicit FixedLengthIdentificationType(std::array<unsigned char, N> const& bytes)
        : bytes_(bytes) {}

    constexpr const unsigned char* rawBuffer() const { return bytes_.data(); }
    constexpr unsigned char* rawBuffer() { return bytes_.data(); }
    static constexpr std::size_t size() { return N; }
    static constexpr std::size_t serializedSize() { return N; }

    /// Byte `index`, 0 to N-1; not checked.
    constexpr unsigned char operator[](int index) const { return bytes_[static_cast<std::size_t>(index)]; }
    constexpr unsigned char& operator[](int index) { return bytes_[static_cast<std::size_t>(index)]; }

    std::u16string toText(IdentificationKind kind, Types::StringRepresentationEncodingType encoding) const {
        return identificationToText(bytes_.data(), N, kind, encoding);
    }
    void fromText(std::u16string_view text, IdentificationKind kind,
                  Types::StringRepresentationEncodingType encoding) {
        identificationFromText(text, bytes_.data(), N, kind, encoding);
    }

    /// Byte by byte, the first difference decides.
    friend constexpr bool operator==(FixedLengthIdentificationType const&,
                                     FixedLengthIdentificationType const&) = default;
    friend constexpr auto operator<=>(FixedLengthIdentificationType const&,
                                      FixedLengthIdentificationType const&) = default;

private:
    std::array<unsigned char, N> bytes_{};
};

} // namespace MXF::Zelm::KLV
