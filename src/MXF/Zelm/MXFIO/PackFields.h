/// The fields of a partition pack where they stand in its bytes (SMPTE 377M), those of generic streams
/// included. Fields are changed in place; what is not changed stays as it was.
#pragma once

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/MXFIO/MetadataArea.h"
#include "MXF/Zelm/Packs/PartitionPack.h"

namespace MXF::Zelm::MXFIO {

class PackFields {
public:
    /// Bytes of a pack's value up to and without its essence containers.
    static constexpr std::uint64_t fixedSize = 80;

    /// Where fields stand in the value, and how long they are.
    struct Field {
        std::size_t at;
        std::size_t size;
    };
    static constexpr Field kagSize{4, 4}, thisPartition{8, 8}, previousPartition{16, 8},
        footerPartition{24, 8}, headerByteCount{32, 8}, indexByteCount{40, 8}, indexSID{48, 4},
        bodyOffset{52, 8}, bodySID{60, 4};

    PackFields() = default;

    /// `bytes` are key, length (of `berSize` bytes) and at least the fixed part of the value.
    PackFields(Bytes bytes, std::size_t berSize) : bytes_(std::move(bytes)), berSize_(berSize) {}

    Bytes const& bytes() const { return bytes_; }
    KLV::Key key() const { return KLV::Key(bytes_.data()); }
    bool isHeader() const { return bytes_[13] == Packs::PartitionPack::Header; }
    bool isFooter() const { return bytes_[13] == Packs::PartitionPack::Footer; }
    bool isGenericStream() const { return Packs::isGenericStreamPartitionPack(key()); }
    bool isOpen() const { return bytes_[14] % 2 != 0; }

    void status(Packs::PartitionPack::PartitionStatus status) { bytes_[14] = status; }

    std::uint64_t get(Field field) const {
        return field.size == 4 ? ByteCoders::decodeInteger<std::uint32_t>(at(field))
                               : ByteCoders::decodeInteger<std::uint64_t>(at(field));
    }
    std::uint32_t sid(Field field) const { return static_cast<std::uint32_t>(get(field)); }

    void set(Field field, std::uint64_t value) {
        unsigned char* const place = bytes_.data() + KLV::Key::size() + berSize_ + field.at;
        if (field.size == 4)
            ByteCoders::codeInteger(static_cast<std::uint32_t>(value), place);
        else
            ByteCoders::codeInteger(value, place);
    }

private:
    const unsigned char* at(Field field) const {
        return bytes_.data() + KLV::Key::size() + berSize_ + field.at;
    }

    Bytes bytes_;
    std::size_t berSize_ = 0;
};

} // namespace MXF::Zelm::MXFIO
