#include "MXF/Zelm/Utils/TimeCodeExtended.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Utils/PackedForm.h"

namespace MXF::Zelm::Utils {

namespace {

constexpr unsigned notDecimal = 100; // beyond the range of every field

/// Two BCD digits, the tens in the bits that `tensMask` names.
unsigned decimal(unsigned char byte, unsigned tensMask) {
    unsigned const units = byte & 0x0Fu;
    return units > 9 ? notDecimal : (byte & tensMask) / 16 * 10 + units;
}

TimeCode unpackTime(std::span<unsigned char const> bytes, unsigned framesPerSecond) {
    PackedForm const form(framesPerSecond);
    TimeBase const base(framesPerSecond,
                        (bytes[0] & PackedForm::dropFrame) != 0 && TimeBase::canDrop(framesPerSecond));
    unsigned const number = decimal(bytes[0], 0x30);
    bool const mark = (bytes[form.markByte()] & PackedForm::flag) != 0;
    TimeAddress const address{decimal(bytes[3], 0x30), decimal(bytes[2], 0x70), decimal(bytes[1], 0x70),
                              form.frame(number, mark)};
    bool const valid = number != notDecimal && TimeCode::isValid(base, address);
    return valid ? TimeCode(base, address) : TimeCode();
}

std::size_t checkedIndex(unsigned group) {
    if (group < 1 || group > TimeCodeExtended::binaryGroupCount)
        throw Exceptions::InvalidValue("There are binary groups 1 to 8, not " + std::to_string(group));
    return group - 1;
}

} // namespace

TimeCodeExtended TimeCodeExtended::fromPacked(std::span<unsigned char const> bytes,
                                              unsigned framesPerSecond) {
    if (bytes.size() != 4 && bytes.size() != 8)
        throw Exceptions::InvalidLength("Packed timecode has 4 or 8 bytes, not " +
                                        std::to_string(bytes.size()));
    TimeCodeExtended read(unpackTime(bytes, framesPerSecond));
    PackedForm const form(framesPerSecond);
    auto const isSet = [bytes](std::size_t byte, unsigned char bit) { return (bytes[byte] & bit) != 0; };
    read.colourFrame_ = isSet(0, PackedForm::colourFrame);
    read.fieldMark_ = isSet(form.markByte(), PackedForm::flag);
    read.binaryGroupFlags(unsigned{isSet(form.group0Byte(), PackedForm::flag)} |
                          unsigned{isSet(3, PackedForm::group1)} << 1 |
                          unsigned{isSet(form.group2Byte(), PackedForm::flag)} << 2);
    for (std::size_t i = 4; i < bytes.size(); ++i) {
        read.binaryGroups_[(i - 4) * 2] = bytes[i] >> 4;
        read.binaryGroups_[(i - 4) * 2 + 1] = bytes[i] & 0x0F;
    }
    return read;
}

PackedTimeCode TimeCodeExtended::packed() const {
    PackedTimeCode bytes = TimeCode::packed();
    PackedForm const form(base().framesPerSecond());
    auto const add = [&bytes](bool set, std::size_t byte, unsigned char bit) {
        if (set)
            bytes[byte] |= bit;
    };
    add(colourFrame_, 0, PackedForm::colourFrame);
    add(fieldMark(), form.markByte(), PackedForm::flag);
    add((binaryGroupFlags_ & 1) != 0, form.group0Byte(), PackedForm::flag);
    add((binaryGroupFlags_ & 2) != 0, 3, PackedForm::group1);
    add((binaryGroupFlags_ & 4) != 0, form.group2Byte(), PackedForm::flag);
    for (std::size_t i = 4; i < bytes.size(); ++i)
        bytes[i] =
            static_cast<unsigned char>(binaryGroups_[(i - 4) * 2] << 4 | binaryGroups_[(i - 4) * 2 + 1]);
    return bytes;
}

bool TimeCodeExtended::fieldMark() const {
    if (!isDefined())
        return fieldMark_;
    PackedForm const form(base().framesPerSecond());
    return form.isShared() ? form.mark(address().frames) : fieldMark_;
}

void TimeCodeExtended::binaryGroupFlags(unsigned flags) {
    if (flags > 7)
        throw Exceptions::InvalidValue("Binary group flags are 0 to 7, not " + std::to_string(flags));
    binaryGroupFlags_ = static_cast<unsigned char>(flags);
}

unsigned TimeCodeExtended::binaryGroup(unsigned group) const { return binaryGroups_[checkedIndex(group)]; }

void TimeCodeExtended::binaryGroup(unsigned group, unsigned value) {
    if (value > 15)
        throw Exceptions::InvalidValue("A binary group holds 0 to 15, not " + std::to_string(value));
    binaryGroups_[checkedIndex(group)] = static_cast<unsigned char>(value);
}

} // namespace MXF::Zelm::Utils
