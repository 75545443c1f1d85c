/// Integers, and the types that are integers with a meaning. All are big-endian in a file (SMPTE 377M).
#pragma once

#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

class MXFZELM_EXPORT Int8 final : public IntegerType<Int8, Identifiers::Int8, std::int8_t> {
public:
    using IntegerType::IntegerType;
};
class MXFZELM_EXPORT Int16 final : public IntegerType<Int16, Identifiers::Int16, std::int16_t> {
public:
    using IntegerType::IntegerType;
};
class MXFZELM_EXPORT Int32 final : public IntegerType<Int32, Identifiers::Int32, std::int32_t> {
public:
    using IntegerType::IntegerType;
};
class MXFZELM_EXPORT Int64 final : public IntegerType<Int64, Identifiers::Int64, std::int64_t> {
public:
    using IntegerType::IntegerType;
};
class MXFZELM_EXPORT UInt8 final : public IntegerType<UInt8, Identifiers::UInt8, std::uint8_t> {
public:
    using IntegerType::IntegerType;
};
class MXFZELM_EXPORT UInt16 final : public IntegerType<UInt16, Identifiers::UInt16, std::uint16_t> {
public:
    using IntegerType::IntegerType;
};
class MXFZELM_EXPORT UInt32 final : public IntegerType<UInt32, Identifiers::UInt32, std::uint32_t> {
public:
    using IntegerType::IntegerType;
};
class MXFZELM_EXPORT UInt64 final : public IntegerType<UInt64, Identifiers::UInt64, std::uint64_t> {
public:
    using IntegerType::IntegerType;
};

/// A position in edit units of its track; -1 is unknown.
class MXFZELM_EXPORT Position final : public IntegerType<Position, Identifiers::Position, std::int64_t> {
public:
    using IntegerType::IntegerType;
    bool isKnown() const { return value() != -1; }
};

/// A duration in edit units of its track; -1 is unknown.
class MXFZELM_EXPORT Length final : public IntegerType<Length, Identifiers::Length, std::int64_t> {
public:
    using IntegerType::IntegerType;
    bool isKnown() const { return value() != -1; }
};

/// How a picture is scanned (ScanningDirection), 0 left to right and top to bottom, to 7.
class MXFZELM_EXPORT Orientation final
    : public IntegerType<Orientation, Identifiers::Orientation, std::uint8_t> {
public:
    using IntegerType::IntegerType;
};

/// The signal standard of a picture: 0 none, 1 ITU-R BT.601, 2 BT.1358, 3 SMPTE 347M, 4 SMPTE 274M, 5 SMPTE
/// 296M, 6 SMPTE 349M, 7 SMPTE 428-1.
class MXFZELM_EXPORT SignalStandard final
    : public IntegerType<SignalStandard, Identifiers::SignalStandard, std::uint8_t> {
public:
    using IntegerType::IntegerType;
};

/// One byte; 0 is false and everything else true. Text: "true" or "false".
class MXFZELM_EXPORT Boolean final : public FixedSizeType<Boolean, Identifiers::Boolean, 1> {
public:
    using FixedSizeType::FixedSizeType;
    Boolean() = default;
    explicit Boolean(bool truth) { value(truth); }

    bool value() const { return bytes_[0] != 0; }
    void value(bool truth) { bytes_[0] = truth ? 1 : 0; }
    explicit operator bool() const { return value(); }

    std::u16string toString() const override { return value() ? u"true" : u"false"; }

    /// Throws Exceptions::InvalidFormat.
    static Boolean fromText(std::u16string_view text);
};

} // namespace MXF::Zelm::Types
