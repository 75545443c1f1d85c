/// The bases of all value types. A simple value holds the very bytes that it has in a file, so that what was
/// read is written again unchanged; its accessors decode them.
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Templates/Memory.h"
#include "MXF/Zelm/Types/Identifiers.h"
#include "MXF/Zelm/Types/Visitors.h"

#include <cstdint>
#include <string>

namespace MXF::Zelm::Types {

/// A value of any type: simple or a collection.
class MXFZELM_EXPORT BaseType : public Platform::Allocated {
public:
    virtual ~BaseType();

    virtual Identifiers::Identifier identifier() const = 0;
    virtual void accept(Visitors::Visitor& visitor) const = 0;
    virtual void accept(Visitors::NonConstVisitor& visitor) = 0;

    /// A copy, owned by the caller.
    virtual Templates::auto_ptr<BaseType> copy() const = 0;

    /// Bytes that `serialize` writes.
    virtual std::uint64_t serializedSize() const = 0;

    /// Writes the value as it stands in a file.
    virtual void serialize(DataIO::DataSink& sink) const = 0;

    /// A text that people can read; `Factories::BaseTypeFactory` reads it again.
    virtual std::u16string toString() const = 0;

    /// The same type and the same bytes.
    virtual bool equals(BaseType const& other) const = 0;

    friend bool operator==(BaseType const& a, BaseType const& b) { return a.equals(b); }

protected:
    BaseType() = default;
    BaseType(BaseType const&) = default;
    BaseType& operator=(BaseType const&) = default;
};

/// A value that is not a collection.
class MXFZELM_EXPORT SimpleDataType : public BaseType {
public:
    ~SimpleDataType() override;

    /// A copy, owned by the caller.
    virtual Templates::auto_ptr<SimpleDataType> clone() const = 0;

    /// The value's bytes as they stand in a file.
    virtual const unsigned char* rawBuffer() const = 0;

    /// Number of those bytes.
    virtual std::size_t size() const = 0;

    std::uint64_t serializedSize() const override { return size(); }
    void serialize(DataIO::DataSink& sink) const override { sink.write(rawBuffer(), size()); }
    Templates::auto_ptr<BaseType> copy() const override { return clone(); }
    bool equals(BaseType const& other) const override;

protected:
    SimpleDataType() = default;
    SimpleDataType(SimpleDataType const&) = default;
    SimpleDataType& operator=(SimpleDataType const&) = default;
};

/// `value` as a `T` when it is one, else null.
template <class T>
T const* valueCast(BaseType const* value) {
    return value != nullptr && value->identifier() == T::typeIdentifier ? static_cast<T const*>(value)
                                                                        : nullptr;
}

} // namespace MXF::Zelm::Types
