#include "MXF/Zelm/GenericContainer/SystemItemMetadataProvider.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/KLV/Key.h"

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;

constexpr KLV::Key setKey = "060E2B34.02430101.0D010301.04010200"_key;
constexpr std::size_t headSize = KLV::Key::size() + 4;
constexpr unsigned int itemHeadSize = 3; // tag and length
constexpr unsigned char umidTag = 0x83;
constexpr std::size_t mostItems = 0xFF, mostBytes = 0xFFFF;

void append(std::vector<unsigned char>& bytes, SystemItemMetadataProvider::Item const& item) {
    if (item.value.size() > mostBytes)
        throw Exceptions::InvalidLength("An item of a package metadata set has at most 65535 bytes, not " +
                                        std::to_string(item.value.size()));
    unsigned char head[itemHeadSize] = {item.tag};
    ByteCoders::codeInteger(static_cast<std::uint16_t>(item.value.size()), head + 1);
    bytes.insert(bytes.end(), head, head + itemHeadSize);
    bytes.insert(bytes.end(), item.value.begin(), item.value.end());
}

} // namespace

SystemItemMetadataProvider::~SystemItemMetadataProvider() = default;

UMIDMetadataProvider::~UMIDMetadataProvider() = default;

SystemItemMetadataProvider::Items UMIDMetadataProvider::nextItems() {
    return {{umidTag, {umid_.rawBuffer(), umid_.rawBuffer() + umid_.size()}}};
}

unsigned int UMIDMetadataProvider::maximumSize() const {
    return itemHeadSize + static_cast<unsigned int>(umid_.size());
}

DataIO::Slice packageMetadataSet(SystemItemMetadataProvider::Items const& items) {
    if (items.size() > mostItems)
        throw Exceptions::InvalidLength("A package metadata set has at most 255 items, not " +
                                        std::to_string(items.size()));
    std::vector<unsigned char> bytes(headSize);
    for (auto const& item : items)
        append(bytes, item);
    auto key = setKey;
    key[15] = static_cast<unsigned char>(items.size());
    std::copy_n(key.rawBuffer(), KLV::Key::size(), bytes.begin());
    ByteCoders::codeBER(bytes.size() - headSize, 4, bytes.data() + KLV::Key::size());
    return DataIO::Slice::adopt(std::move(bytes));
}

} // namespace MXF::Zelm::GenericContainer
