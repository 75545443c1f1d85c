/// Where the flags of packed timecode stand and how frames above 30 a second share its numbers;
/// TimeCodeExtended draws the layout.
#pragma once

#include <cstddef>

namespace MXF::Zelm::Utils {

/// The packed form at one base. Its frame field counts at most 30 frames a second: at higher bases two frames
/// (up to 60) or more share a number, and the field mark tells the later half of them.
class PackedForm {
public:
    static constexpr unsigned char dropFrame = 0x40;   ///< in byte 0
    static constexpr unsigned char colourFrame = 0x80; ///< in byte 0
    static constexpr unsigned char group1 = 0x40;      ///< in byte 3
    static constexpr unsigned char flag = 0x80;        ///< in the bytes that the system decides

    explicit constexpr PackedForm(unsigned framesPerSecond)
        : sharing_((framesPerSecond + 29) / 30), is25_(framesPerSecond == 25 * sharing_) {}

    constexpr bool isShared() const { return sharing_ > 1; }
    constexpr unsigned number(unsigned frame) const { return frame / sharing_; }
    constexpr bool mark(unsigned frame) const { return isShared() && frame % sharing_ >= firstOfLater(); }

    /// The first of the frames that share number and mark.
    constexpr unsigned frame(unsigned number, bool mark) const {
        return number * sharing_ + (mark && isShared() ? firstOfLater() : 0);
    }

    /// The bytes whose bit 7 holds the field mark and the binary group flags 0 and 2.
    constexpr std::size_t markByte() const { return is25_ ? 3 : 1; }
    constexpr std::size_t group0Byte() const { return is25_ ? 1 : 2; }
    constexpr std::size_t group2Byte() const { return is25_ ? 2 : 3; }

private:
    constexpr unsigned firstOfLater() const { return (sharing_ + 1) / 2; }

    unsigned sharing_; ///< frames that share a number
    bool is25_;        ///< the 25-frame system has its flags elsewhere than those of 24 and 30
};

} // namespace MXF::Zelm::Utils
