/// Arrays and batches: a 4-byte count, a 4-byte item size, then the items, all of one simple type (SMPTE
/// 377M). An array is ordered and may repeat items; a batch is neither. Both look alike in a file.
#pragma once

#include "MXF/Zelm/KLV/Value.h"
#include "MXF/Zelm/Types/BaseType.h"

#include <vector>

namespace MXF::Zelm::Types {

/// Owns its items.
class MXFZELM_EXPORT Collection : public BaseType {
public:
    ~Collection() override;

    /// The type of the items.
    Identifiers::Identifier subType() const { return subType_; }

    std::size_t count() const { return items_.size(); }
    bool empty() const { return items_.empty(); }

    /// Item `index`. Throws Exceptions::BaseException with "Trying to access a element beyond the end of
    /// data".
    SimpleDataType const& at(std::size_t index) const;

    /// Item `index` as a `T`, which must be the class of the sub type.
    template <class T>
    T const& at(std::size_t index) const {
        requireSubType(T::typeIdentifier);
        return static_cast<T const&>(at(index));
    }

    /// Appends an item. Throws Exceptions::InvalidType when it is not of the sub type.
    void add(SimpleDataType const& item);

    /// Replaces item `index`. Throws as `at` and `add` do.
    void set(std::size_t index, SimpleDataType const& item);

    /// Takes item `index` out. Throws as `at` does.
    void remove(std::size_t index);
    void clear() { items_.clear(); }

    /// True when an item equals `item`.
    bool contains(SimpleDataType const& item) const;

    /// Bytes of one item as the collection's header gives them. A collection without items keeps what it was
    /// read with.
    std::uint32_t itemSize() const;

    /// Replaces the items with those read from `value`. Throws Exceptions::InvalidLength, and keeps the old
    /// items, when they do not fit in the value or the item size is not that of the type.
    void load(KLV::Value& value);

    std::uint64_t serializedSize() const override;
    void serialize(DataIO::DataSink& sink) const override;

    /// The items' texts, each in brackets: "[…][…]".
    std::u16string toString() const override;
    bool equals(BaseType const& other) const override;

protected:
    explicit Collection(Identifiers::Identifier subType);
    Collection(Collection const& other);
    Collection& operator=(Collection const& other);

private:
    void requireSubType(Identifiers::Identifier identifier) const;

    Identifiers::Identifier subType_;
    std::uint32_t emptyItemSize_;
    std::vector<Templates::auto_ptr<SimpleDataType>> items_;
};

class MXFZELM_EXPORT Array final : public Collection {
public:
    static constexpr Identifiers::Identifier typeIdentifier = Identifiers::Array;

    /// Without items. Throws Exceptions::InvalidType when `subType` is itself a collection.
    explicit Array(Identifiers::Identifier subType) : Collection(subType) {}

    /// Reads the items. Throws as `load` does.
    Array(Identifiers::Identifier subType, KLV::Value& value) : Collection(subType) { load(value); }

    Identifiers::Identifier identifier() const override { return typeIdentifier; }
    void accept(Visitors::Visitor& visitor) const override { visitor.visit(*this); }
    void accept(Visitors::NonConstVisitor& visitor) override { visitor.visit(*this); }
    Templates::auto_ptr<BaseType> copy() const override {
        return Templates::auto_ptr<BaseType>(new Array(*this));
    }
};

class MXFZELM_EXPORT Batch final : public Collection {
public:
    static constexpr Identifiers::Identifier typeIdentifier = Identifiers::Batch;

    /// Without items. Throws Exceptions::InvalidType when `subType` is itself a collection.
    explicit Batch(Identifiers::Identifier subType) : Collection(subType) {}

    /// Reads the items. Throws as `load` does.
    Batch(Identifiers::Identifier subType, KLV::Value& value) : Collection(subType) { load(value); }

    Identifiers::Identifier identifier() const override { return typeIdentifier; }
    void accept(Visitors::Visitor& visitor) const override { visitor.visit(*this); }
    void accept(Visitors::NonConstVisitor& visitor) override { visitor.visit(*this); }
    Templates::auto_ptr<BaseType> copy() const override {
        return Templates::auto_ptr<BaseType>(new Batch(*this));
    }
};

} // namespace MXF::Zelm::Types
