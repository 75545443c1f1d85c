/// Visitors of the value types. A visitor overrides what it cares for; every other value ends in
/// `visitOther`.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

namespace MXF::Zelm::Types {

class BaseType;
class Int8;
class Int16;
class Int32;
class Int64;
class UInt8;
class UInt16;
class UInt32;
class UInt64;
class Boolean;
class ISO7String;
class UTF16String;
class Rational;
class Timestamp;
class Position;
class Length;
class ProductVersion;
class VersionType;
class UUID;
class UMID32;
class UMID64;
class UniversalLabel;
class LocalTag;
class StrongReference;
class WeakReference;
class RGBALayout;
class Orientation;
class SignalStandard;
class DataStream;
class DataValue;
class Unknown;
class J2KCodingStyleDefault;
class J2KPictureComponent;
class J2KQuantisationDefault;
class Array;
class Batch;

namespace Visitors {

/// Visits values that it does not change.
class MXFZELM_EXPORT Visitor {
public:
    virtual ~Visitor();
    virtual void visit(Int8 const& value);
    virtual void visit(Int16 const& value);
    virtual void visit(Int32 const& value);
    virtual void visit(Int64 const& value);
    virtual void visit(UInt8 const& value);
    virtual void visit(UInt16 const& value);
    virtual void visit(UInt32 const& value);
    virtual void visit(UInt64 const& value);
    virtual void visit(Boolean const& value);
    virtual void visit(ISO7String const& value);
    virtual void visit(UTF16String const& value);
    virtual void visit(Rational const& value);
    virtual void visit(Timestamp const& value);
    virtual void visit(Position const& value);
    virtual void visit(Length const& value);
    virtual void visit(ProductVersion const& value);
    virtual void visit(VersionType const& value);
    virtual void visit(UUID const& value);
    virtual void visit(UMID32 const& value);
    virtual void visit(UMID64 const& value);
    virtual void visit(UniversalLabel const& value);
    virtual void visit(LocalTag const& value);
    virtual void visit(StrongReference const& value);
    virtual void visit(WeakReference const& value);
    virtual void visit(RGBALayout const& value);
    virtual void visit(Orientation const& value);
    virtual void visit(SignalStandard const& value);
    virtual void visit(DataStream const& value);
    virtual void visit(DataValue const& value);
    virtual void visit(Unknown const& value);
    virtual void visit(J2KCodingStyleDefault const& value);
    virtual void visit(J2KPictureComponent const& value);
    virtual void visit(J2KQuantisationDefault const& value);
    virtual void visit(Array const& value);
    virtual void visit(Batch const& value);

    /// Does nothing unless overridden.
    virtual void visitOther(BaseType const& value);
};

/// Visits values that it may change.
class MXFZELM_EXPORT NonConstVisitor {
public:
    virtual ~NonConstVisitor();
    virtual void visit(Int8& value);
    virtual void visit(Int16& value);
    virtual void visit(Int32& value);
    virtual void visit(Int64& value);
    virtual void visit(UInt8& value);
    virtual void visit(UInt16& value);
    virtual void visit(UInt32& value);
    virtual void visit(UInt64& value);
    virtual void visit(Boolean& value);
    virtual void visit(ISO7String& value);
    virtual void visit(UTF16String& value);
    virtual void visit(Rational& value);
    virtual void visit(Timestamp& value);
    virtual void visit(Position& value);
    virtual void visit(Length& value);
    virtual void visit(ProductVersion& value);
    virtual void visit(VersionType& value);
    virtual void visit(UUID& value);
    virtual void visit(UMID32& value);
    virtual void visit(UMID64& value);
    virtual void visit(UniversalLabel& value);
    virtual void visit(LocalTag& value);
    virtual void visit(StrongReference& value);
    virtual void visit(WeakReference& value);
    virtual void visit(RGBALayout& value);
    virtual void visit(Orientation& value);
    virtual void visit(SignalStandard& value);
    virtual void visit(DataStream& value);
    virtual void visit(DataValue& value);
    virtual void visit(Unknown& value);
    virtual void visit(J2KCodingStyleDefault& value);
    virtual void visit(J2KPictureComponent& value);
    virtual void visit(J2KQuantisationDefault& value);
    virtual void visit(Array& value);
    virtual void visit(Batch& value);

    /// Does nothing unless overridden.
    virtual void visitOther(BaseType& value);
};

} // namespace Visitors
} // namespace MXF::Zelm::Types
