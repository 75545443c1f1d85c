#include "MXF/Zelm/Essence/Ancillary/ActiveFormat.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"

#include <initializer_list>

namespace MXF::Zelm::Essence::Ancillary {

namespace {

constexpr const char* texts[16] = {
    "undefined",
    "reserved",
    "16:9, top",
    "14:9, top",
    "wider than 16:9, centre",
    "reserved",
    "reserved",
    "reserved",
    "whole frame",
    "4:3 centre",
    "16:9 centre",
    "14:9 centre",
    "reserved",
    "4:3, protected to 14:9",
    "16:9, protected to 14:9",
    "16:9, protected to 4:3",
};

constexpr unsigned wideFlag = 0x04;
constexpr unsigned firstBarFlag = 0x80; // of the top bar; bottom, left and right follow
constexpr std::size_t flagByte = 3, firstValueByte = 4;

} // namespace

const char* ActiveFormat::text() const { return texts[code & 0x0F]; }

std::array<unsigned char, ActiveFormat::byteCount> ActiveFormat::bytes() const {
    std::array<unsigned char, byteCount> out{};
    out[0] = static_cast<unsigned char>((code & 0x0F) << 3 | (isWide ? wideFlag : 0));
    std::size_t at = firstValueByte;
    unsigned flag = firstBarFlag;
    for (auto const* const bar : {&top, &bottom, &left, &right}) {
        if (*bar && at < byteCount) {
            out[flagByte] = static_cast<unsigned char>(out[flagByte] | flag);
            ByteCoders::codeInteger(**bar, &out[at]);
            at += sizeof **bar;
        }
        flag >>= 1;
    }
    return out;
}

std::optional<ActiveFormat> readActiveFormat(std::span<unsigned char const> userData) {
    if (userData.size() < ActiveFormat::byteCount)
        return std::nullopt;
    ActiveFormat read;
    read.code = userData[0] >> 3 & 0x0Fu;
    read.isWide = (userData[0] & wideFlag) != 0;
    std::size_t at = firstValueByte;
    unsigned flag = firstBarFlag;
    for (auto* const bar : {&read.top, &read.bottom, &read.left, &read.right}) {
        if ((userData[flagByte] & flag) != 0 && at < ActiveFormat::byteCount) {
            *bar = ByteCoders::decodeInteger<std::uint16_t>(&userData[at]);
            at += sizeof **bar;
        }
        flag >>= 1;
    }
    return read;
}

} // namespace MXF::Zelm::Essence::Ancillary
