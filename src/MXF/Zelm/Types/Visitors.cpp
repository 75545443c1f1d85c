#include "MXF/Zelm/Types/Visitors.h"

#include "MXF/Zelm/Types/Collection.h"
#include "MXF/Zelm/Types/Integers.h"
#include "MXF/Zelm/Types/J2KTypes.h"
#include "MXF/Zelm/Types/LocalTag.h"
#include "MXF/Zelm/Types/RGBALayout.h"
#include "MXF/Zelm/Types/Rational.h"
#include "MXF/Zelm/Types/References.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/Zelm/Types/Timestamp.h"
#include "MXF/Zelm/Types/UMID.h"
#include "MXF/Zelm/Types/UniversalLabel.h"
#include "MXF/Zelm/Types/Versions.h"

namespace MXF::Zelm::Types::Visitors {

Visitor::~Visitor() = default;
void Visitor::visit(Int8 const& value) { visitOther(value); }
void Visitor::visit(Int16 const& value) { visitOther(value); }
void Visitor::visit(Int32 const& value) { visitOther(value); }
void Visitor::visit(Int64 const& value) { visitOther(value); }
void Visitor::visit(UInt8 const& value) { visitOther(value); }
void Visitor::visit(UInt16 const& value) { visitOther(value); }
void Visitor::visit(UInt32 const& value) { visitOther(value); }
void Visitor::visit(UInt64 const& value) { visitOther(value); }
void Visitor::visit(Boolean const& value) { visitOther(value); }
void Visitor::visit(ISO7String const& value) { visitOther(value); }
void Visitor::visit(UTF16String const& value) { visitOther(value); }
void Visitor::visit(Rational const& value) { visitOther(value); }
void Visitor::visit(Timestamp const& value) { visitOther(value); }
void Visitor::visit(Position const& value) { visitOther(value); }
void Visitor::visit(Length const& value) { visitOther(value); }
void Visitor::visit(ProductVersion const& value) { visitOther(value); }
void Visitor::visit(VersionType const& value) { visitOther(value); }
void Visitor::visit(UUID const& value) { visitOther(value); }
void Visitor::visit(UMID32 const& value) { visitOther(value); }
void Visitor::visit(UMID64 const& value) { visitOther(value); }
void Visitor::visit(UniversalLabel const& value) { visitOther(value); }
void Visitor::visit(LocalTag const& value) { visitOther(value); }
void Visitor::visit(StrongReference const& value) { visitOther(value); }
void Visitor::visit(WeakReference const& value) { visitOther(value); }
void Visitor::visit(RGBALayout const& value) { visitOther(value); }
void Visitor::visit(Orientation const& value) { visitOther(value); }
void Visitor::visit(SignalStandard const& value) { visitOther(value); }
void Visitor::visit(DataStream const& value) { visitOther(value); }
void Visitor::visit(DataValue const& value) { visitOther(value); }
void Visitor::visit(Unknown const& value) { visitOther(value); }
void Visitor::visit(J2KCodingStyleDefault const& value) { visitOther(value); }
void Visitor::visit(J2KPictureComponent const& value) { visitOther(value); }
void Visitor::visit(J2KQuantisationDefault const& value) { visitOther(value); }
void Visitor::visit(Array const& value) { visitOther(value); }
void Visitor::visit(Batch const& value) { visitOther(value); }
void Visitor::visitOther(BaseType const&) {}

NonConstVisitor::~NonConstVisitor() = default;
void NonConstVisitor::visit(Int8& value) { visitOther(value); }
void NonConstVisitor::visit(Int16& value) { visitOther(value); }
void NonConstVisitor::visit(Int32& value) { visitOther(value); }
void NonConstVisitor::visit(Int64& value) { visitOther(value); }
void NonConstVisitor::visit(UInt8& value) { visitOther(value); }
void NonConstVisitor::visit(UInt16& value) { visitOther(value); }
void NonConstVisitor::visit(UInt32& value) { visitOther(value); }
void NonConstVisitor::visit(UInt64& value) { visitOther(value); }
void NonConstVisitor::visit(Boolean& value) { visitOther(value); }
void NonConstVisitor::visit(ISO7String& value) { visitOther(value); }
void NonConstVisitor::visit(UTF16String& value) { visitOther(value); }
void NonConstVisitor::visit(Rational& value) { visitOther(value); }
void NonConstVisitor::visit(Timestamp& value) { visitOther(value); }
void NonConstVisitor::visit(Position& value) { visitOther(value); }
void NonConstVisitor::visit(Length& value) { visitOther(value); }
void NonConstVisitor::visit(ProductVersion& value) { visitOther(value); }
void NonConstVisitor::visit(VersionType& value) { visitOther(value); }
void NonConstVisitor::visit(UUID& value) { visitOther(value); }
void NonConstVisitor::visit(UMID32& value) { visitOther(value); }
void NonConstVisitor::visit(UMID64& value) { visitOther(value); }
void NonConstVisitor::visit(UniversalLabel& value) { visitOther(value); }
void NonConstVisitor::visit(LocalTag& value) { visitOther(value); }
void NonConstVisitor::visit(StrongReference& value) { visitOther(value); }
void NonConstVisitor::visit(WeakReference& value) { visitOther(value); }
void NonConstVisitor::visit(RGBALayout& value) { visitOther(value); }
void NonConstVisitor::visit(Orientation& value) { visitOther(value); }
void NonConstVisitor::visit(SignalStandard& value) { visitOther(value); }
void NonConstVisitor::visit(DataStream& value) { visitOther(value); }
void NonConstVisitor::visit(DataValue& value) { visitOther(value); }
void NonConstVisitor::visit(Unknown& value) { visitOther(value); }
void NonConstVisitor::visit(J2KCodingStyleDefault& value) { visitOther(value); }
void NonConstVisitor::visit(J2KPictureComponent& value) { visitOther(value); }
void NonConstVisitor::visit(J2KQuantisationDefault& value) { visitOther(value); }
void NonConstVisitor::visit(Array& value) { visitOther(value); }
void NonConstVisitor::visit(Batch& value) { visitOther(value); }
void NonConstVisitor::visitOther(BaseType&) {}

} // namespace MXF::Zelm::Types::Visitors
