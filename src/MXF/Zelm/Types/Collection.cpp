#include "MXF/Zelm/Types/Collection.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Templates/SafeCast.h"
#include "MXF/Zelm/Types/BaseTypeFactory.h"

#include <algorithm>

namespace MXF::Zelm::Types {

namespace {

constexpr std::uint64_t headerSize = 8; // count and item size

} // namespace

Collection::Collection(Identifiers::Identifier subType)
    : subType_(subType),
      emptyItemSize_(static_cast<std::uint32_t>(Factories::BaseTypeFactory::wireSize(subType))) {}

Collection::Collection(Collection const& other)
    : subType_(other.subType_), emptyItemSize_(other.emptyItemSize_) {
    items_.reserve(other.items_.size());
    for (auto const& item : other.items_)
        items_.push_back(item->clone());
}

Collection& Collection::operator=(Collection const& other) {
    std::vector<Templates::auto_ptr<SimpleDataType>> items;
    items.reserve(other.items_.size());
    for (auto const& item : other.items_)
        items.push_back(item->clone());
    subType_ = other.subType_;
    emptyItemSize_ = other.emptyItemSize_;
    items_ = std::move(items);
    return *this;
}

Collection::~Collection() = default;

SimpleDataType const& Collection::at(std::size_t index) const {
    if (index >= items_.size())
        throw Exceptions::BaseException("Trying to access a element beyond the end of data");
    return *items_[index];
}

void Collection::requireSubType(Identifiers::Identifier identifier) const {
    if (identifier != subType_)
        throw Exceptions::InvalidType("A collection of " + std::string(Identifiers::toText(subType_)) +
                                      " has no items of type " +
                                      std::string(Identifiers::toText(identifier)));
}

void Collection::add(SimpleDataType const& item) {
    requireSubType(item.identifier());
    items_.push_back(item.clone());
}

void Collection::set(std::size_t index, SimpleDataType const& item) {
    requireSubType(item.identifier());
    at(index);
    items_[index] = item.clone();
}

void Collection::remove(std::size_t index) {
    at(index);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
}

bool Collection::contains(SimpleDataType const& item) const {
    return std::any_of(items_.begin(), items_.end(), [&item](auto const& own) { return own->equals(item); });
}

std::uint32_t Collection::itemSize() const {
    return items_.empty() ? emptyItemSize_ : Templates::safeCast<std::uint32_t>(items_.front()->size());
}

void Collection::load(KLV::Value& value) {
    std::uint64_t const offset = value.absoluteOffset();
    unsigned char header[headerSize];
    value.readValue(header, headerSize);
    auto const count = ByteCoders::decodeInteger<std::uint32_t>(header);
    auto const itemSize = ByteCoders::decodeInteger<std::uint32_t>(header + 4);
    value.requireItems(count, itemSize);
    auto const& factory = Factories::BaseTypeFactory::instance();
    std::size_t const expected = Factories::BaseTypeFactory::wireSize(subType_);
    if (count != 0 && expected != 0 && itemSize != expected)
        throw Exceptions::at(offset, Exceptions::InvalidLength("Items of type " +
                                                               std::string(Identifiers::toText(subType_)) +
                                                               " have " + std::to_string(expected) +
                                                               " bytes, not " + std::to_string(itemSize)));
    std::vector<Templates::auto_ptr<SimpleDataType>> items;
    items.reserve(std::min<std::uint32_t>(count, 1024)); // the value's length may lie as well as the count
    for (std::uint32_t i = 0; i < count; ++i) {
        KLV::Value item(value, itemSize);
        items.push_back(factory.create(subType_, item));
    }
    items_ = std::move(items);
    emptyItemSize_ = itemSize;
}

std::uint64_t Collection::serializedSize() const {
    std::uint64_t size = headerSize;
    for (auto const& item : items_)
        size += item->size();
    return size;
}

void Collection::serialize(DataIO::DataSink& sink) const {
    unsigned char header[headerSize];
    ByteCoders::codeInteger(Templates::safeCast<std::uint32_t>(items_.size()), header);
    ByteCoders::codeInteger(itemSize(), header + 4);
    sink.write(header, headerSize);
    for (auto const& item : items_)
        item->serialize(sink);
}

std::u16string Collection::toString() const {
    std::u16string text;
    for (auto const& item : items_)
        text += u"[" + item->toString() + u"]";
    return text;
}

bool Collection::equals(BaseType const& other) const {
    if (identifier() != other.identifier())
        return false;
    auto const& collection = static_cast<Collection const&>(other);
    return subType_ == collection.subType_ &&
           std::equal(items_.begin(), items_.end(), collection.items_.begin(), collection.items_.end(),
                      [](auto const& a, auto const& b) { return a->equals(*b); });
}

} // namespace MXF::Zelm::Types
