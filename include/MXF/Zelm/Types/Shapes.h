/// The shapes that the simple value types share: a fixed number of bytes, any number of bytes, an integer. A
/// type adds its accessors and its text form.
#pragma once

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/KLV/Value.h"
#include "MXF/Zelm/Types/BaseType.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <type_traits>
#include <vector>

namespace MXF::Zelm::Types {

/// What every concrete simple type has in common: its identifier, its visits, its copies.
template <class Derived, Identifiers::Identifier Id, class Base>
class MXFZELM_EXPORT_TEMPLATE ConcreteType : public Base {
public:
    static constexpr Identifiers::Identifier typeIdentifier = Id;

    Identifiers::Identifier identifier() const override { return Id; }
    void accept(Visitors::Visitor& visitor) const override {
        visitor.visit(static_cast<Derived const&>(*this));
    }
    void accept(Visitors::NonConstVisitor& visitor) override { visitor.visit(static_cast<Derived&>(*this)); }
    Templates::auto_ptr<SimpleDataType> clone() const override {
        return Templates::auto_ptr<SimpleDataType>(new Derived(static_cast<Derived const&>(*this)));
    }
};

/// A value of exactly N bytes, held inline.
template <class Derived, Identifiers::Identifier Id, std::size_t N, class Base = SimpleDataType>
class MXFZELM_EXPORT_TEMPLATE FixedSizeType : public ConcreteType<Derived, Id, Base> {
public:
    static constexpr std::size_t wireSize = N;

    /// All bytes zero.
    FixedSizeType() = default;

    /// Copies N bytes. (A template, so that the 0 of `Position(0)` is a number and no pointer.)
    template <class Byte>
    requires std::is_same_v<Byte const, unsigned char const>
    explicit FixedSizeType(Byte* bytes) { std::copy_n(bytes, N, bytes_.begin()); }

    /// Reads exactly N bytes. Throws Exceptions::InvalidLength when fewer are left.
    explicit FixedSizeType(KLV::Value& value) { value.readValue(bytes_.data(), N); }

    const unsigned char* rawBuffer() const override { return bytes_.data(); }
    std::size_t size() const override { return N; }

    friend bool operator==(Derived const& a, Derived const& b) { return a.bytes_ == b.bytes_; }

protected:
    std::array<unsigned char, N> bytes_{};
};

/// A value of any number of bytes: everything that the item holds.
template <class Derived, Identifiers::Identifier Id>
class MXFZELM_EXPORT_TEMPLATE VariableSizeType : public ConcreteType<Derived, Id, SimpleDataType> {
public:
    static constexpr std::size_t wireSize = 0;

    /// No bytes.
    VariableSizeType() = default;

    explicit VariableSizeType(std::vector<unsigned char> bytes) : bytes_(std::move(bytes)) {}

    /// Reads all that remains. Throws Exceptions::InvalidLength when the source ends before.
    explicit VariableSizeType(KLV::Value& value) : bytes_(value.readRemaining()) {}

    const unsigned char* rawBuffer() const override { return bytes_.data(); }
    std::size_t size() const override { return bytes_.size(); }

    /// The value's bytes.
    std::vector<unsigned char> const& bytes() const { return bytes_; }

    friend bool operator==(Derived const& a, Derived const& b) { return a.bytes_ == b.bytes_; }

protected:
    std::vector<unsigned char> bytes_;
};

/// Decimal text of an integer, and back. `typeName` is for the message of the exception:
/// Exceptions::InvalidFormat when the text is no integer between `smallest` and `largest`.
MXFZELM_EXPORT std::u16string integerToText(std::int64_t value);
MXFZELM_EXPORT std::u16string integerToText(std::uint64_t value);
MXFZELM_EXPORT std::int64_t integerFromText(std::u16string_view text, std::int64_t smallest,
                                            std::int64_t largest, std::string_view typeName);
MXFZELM_EXPORT std::uint64_t integerFromText(std::u16string_view text, std::uint64_t smallest,
                                             std::uint64_t largest, std::string_view typeName);

/// An integer, big-endian.
template <class Derived, Identifiers::Identifier Id, class Native>
class MXFZELM_EXPORT_TEMPLATE IntegerType : public FixedSizeType<Derived, Id, sizeof(Native)> {
    using Base = FixedSizeType<Derived, Id, sizeof(Native)>;
    using Widest = std::conditional_t<std::is_signed_v<Native>, std::int64_t, std::uint64_t>;

public:
    using Base::Base;
    IntegerType() = default;
    explicit IntegerType(Native number) { value(number); }

    Native value() const { return ByteCoders::decodeInteger<Native>(this->bytes_.data()); }
    void value(Native number) { ByteCoders::codeInteger(number, this->bytes_.data()); }
    operator Native() const { return value(); }

    std::u16string toString() const override { return integerToText(Widest{value()}); }

    /// Reads decimal text. Throws Exceptions::InvalidFormat.
    static Derived fromText(std::u16string_view text) {
        return Derived(static_cast<Native>(integerFromText(text, Widest{std::numeric_limits<Native>::min()},
                                                           Widest{std::numeric_limits<Native>::max()},
                                                           Identifiers::toText(Id))));
    }
};

} // namespace MXF::Zelm::Types
