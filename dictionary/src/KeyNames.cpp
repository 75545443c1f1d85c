/// KLV keys in words: packs of the file structure (SMPTE 377M), essence elements (379M and the mapping
/// documents), system items (385M), generic streams (410M), fill items (336M), and the set classes of the
/// registers. Byte numbers are 0-based; the version (byte 7) is left out of account.
#include "MXF/ZelmDictionary/Names.h"

#include "NameTable.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"

#include <algorithm>

namespace MXF::ZelmDictionary {

using Zelm::KLV::Key;
using namespace Zelm::KLV::Literals;

namespace {

constexpr Key packMask = "FFFFFFFF.FF00FF00.FFFFFFFF.FFFFFFFF"_key; // any coding of the group, any version
constexpr Key partitionMask = "FFFFFFFF.FFFFFF00.FFFFFFFF.FF0000FF"_key;
constexpr Key streamMask = "FFFFFFFF.FFFFFF00.FFFFFF00.00FFFFFF"_key;
constexpr Key systemMask = "FFFFFFFF.FF00FF00.FFFFFFFF.00000000"_key;

constexpr Key partitionPack = "060E2B34.02050101.0D010201.01000000"_key;
constexpr Key genericStreamData = "060E2B34.0101010C.0D010500.00000000"_key;
constexpr Key essenceElement = "060E2B34.01020101.0D010301.00000000"_key;
constexpr Key systemItem = "060E2B34.02050101.0D010301.00000000"_key;
constexpr Key essenceElementMask = "FFFFFFFF.FFFFFF00.FFFFFFFF.00000000"_key;

struct NamedKey {
    Key key;
    const char* name;
};

constexpr NamedKey packs[] = {
    {"060E2B34.02050101.0D010201.01050100"_key, "primer pack"},
    {"060E2B34.02530101.0D010201.01100100"_key, "index table segment"},
    {"060E2B34.02050101.0D010201.01110100"_key, "random index pack"},
};

/// Byte 13 of partition packs, from 02 on.
constexpr const char* partitionKinds[] = {"header", "body", "footer"};
/// Byte 14, from 01 on.
constexpr const char* partitionStatuses[] = {"open and incomplete", "closed and incomplete",
                                             "open and complete", "closed and complete"};
constexpr unsigned char bodyPartition = 0x03, genericStreamStatus = 0x11;

/// Byte 12 of the keys of the generic container.
struct Item {
    unsigned char identifier;
    const char* name;
};

constexpr Item items[] = {
    {0x05, "CP picture"}, {0x06, "CP sound"}, {0x07, "CP data"},     {0x15, "GC picture"},
    {0x16, "GC sound"},   {0x17, "GC data"},  {0x18, "GC compound"},
};

/// Byte 14 of system items of the 385M scheme, from 01 on.
constexpr const char* systemElements[] = {"system metadata pack", "package metadata set",
                                          "picture metadata set", "sound metadata set", "data metadata set"};
constexpr unsigned char systemItemCP = 0x04, systemItemGC = 0x14;

std::string partitionName(Key const& key) {
    std::size_t const kind = key[13] - 2U, status = key[14] - 1U;
    if (key[13] == bodyPartition && key[14] == genericStreamStatus)
        return "generic stream partition pack";
    if (kind >= std::size(partitionKinds))
        return {};
    std::string name = std::string(partitionKinds[kind]) + " partition pack";
    if (status < std::size(partitionStatuses))
        return name + ", " + partitionStatuses[status];
    return name + ", status 0x" + Zelm::ByteCoders::toHexadecimal(key[14]);
}

/// Bytes 11 and 12: 01 with flags 0C (byte order) and 02 (intrinsic); 01 with flags 02 and
/// 04 (access units) and 08 (frame sync). SMPTE 410M.
std::string genericStreamName(Key const& key) {
    constexpr const char* orders[] = {"", ", little-endian", ", big-endian or bytes", ", byte order unknown"};
    auto const data = key[11], wrapping = key[12];
    std::string name = std::string("generic stream data") + orders[data >> 2 & 0x03];
    if ((data & 0x02) != 0)
        name += ", intrinsic";
    if ((wrapping & 0x06) != 0)
        name += ", access units";
    if ((wrapping & 0x08) != 0)
        name += ", frame synchronous";
    return name;
}

std::string systemItemName(Key const& key) {
    std::size_t const element = key[14] - 1U;
    if (key[12] == systemItemCP && element < std::size(systemElements))
        return systemElements[element];
    if (key[12] != systemItemCP && key[12] != systemItemGC)
        return {};
    return std::string(key[12] == systemItemCP ? "CP" : "GC") + " system item, element type 0x" +
           Zelm::ByteCoders::toHexadecimal(key[14]);
}

/// The register's name of an essence element, which holds 7F where count (byte 13) and number (byte 15) are
/// free.
std::string_view registeredElement(Key const& key) {
    constexpr unsigned char any = 0x7F;
    for (bool const anyCount : {false, true}) {
        for (bool const anyNumber : {false, true}) {
            Key wanted = key;
            wanted[13] = anyCount ? any : key[13];
            wanted[15] = anyNumber ? any : key[15];
            if (auto const name = findName(wanted); !name.empty())
                return name;
        }
    }
    return {};
}

/// "MPEG picture element 1 of 2, frame wrapped": number and count stand before what follows the comma.
std::string elementName(Key const& key) {
    auto const place = " " + std::to_string(key[15]) + " of " + std::to_string(key[13]);
    std::string name(registeredElement(key));
    if (!name.empty())
        return name.insert(std::min(name.find(','), name.size()), place);
    if (!Zelm::KLV::compareMasked(key, essenceElement, essenceElementMask))
        return {};
    auto const* const item = std::find_if(std::begin(items), std::end(items),
                                          [&](Item const& row) { return row.identifier == key[12]; });
    auto const kind = item != std::end(items) ? std::string(item->name)
                                              : "item 0x" + Zelm::ByteCoders::toHexadecimal(key[12]);
    return kind + " element" + place + ", type 0x" + Zelm::ByteCoders::toHexadecimal(key[14]);
}

std::string structuralName(Key const& key) {
    if (Zelm::KLV::isFillItem(key))
        return "fill item";
    if (Zelm::KLV::compareMasked(key, partitionPack, partitionMask))
        if (auto name = partitionName(key); !name.empty())
            return name;
    for (auto const& pack : packs)
        if (Zelm::KLV::compareMasked(key, pack.key, packMask))
            return pack.name;
    if (Zelm::KLV::compareMasked(key, genericStreamData, streamMask))
        return genericStreamName(key);
    if (Zelm::KLV::compareMasked(key, systemItem, systemMask))
        return systemItemName(key);
    return {};
}

bool isEssenceKey(Key const& key) {
    constexpr Key registry = "060E2B34.01020100.00000000.00000000"_key;
    constexpr Key registryMask = "FFFFFFFF.FFFFFF00.00000000.00000000"_key;
    return Zelm::KLV::compareMasked(key, registry, registryMask);
}

} // namespace

std::string keyName(Key const& key) {
    auto name = structuralName(key);
    if (name.empty() && isEssenceKey(key))
        name = elementName(key);
    if (name.empty())
        name = className(key);
    if (name.empty())
        name = findName(key);
    return name.empty() ? "unknown" : name;
}

std::string_view className(Key const& key) {
    if (!Zelm::KLV::isLocalSet(key))
        return {};
    constexpr unsigned char usualCoding = 0x53;
    Key wanted = key;
    wanted[5] = usualCoding;
    return findName(wanted);
}

} // namespace MXF::ZelmDictionary
