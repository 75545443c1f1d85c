/// The pack that opens the system item of a content package (SMPTE 385M): what is in the package, its rate,
/// its number and its timecode.
///
///     key     16    06 0E 2B 34 02 05 01 01 0D 01 03 01 04 01 01 00
///     length   4    83 00 00 39
///     value    1    bitmap of what is present
///              1    content package rate: 0 0 rate index (5 bits), 1 for the rate times 1000/1001
///              1    content package type, 0
///              2    channel handle, 0
///              2    continuity count
///             16    label
///             17    creation date and time stamp
///             17    user date and time stamp
///
/// A stamp is 81 (SMPTE 12M timecode), 4 bytes of timecode and 4 of binary groups, zeros; all of it zero when
/// it is absent. The binary group flags are bits 7 of the minutes (BGF0) and 6 and 7 of the hours (BGF1,
/// BGF2) at every rate; from 50 frames a second on, where frames are counted in pairs, 25-frame systems have
/// the mark of the second of a pair in place of BGF2.
#pragma once

#include "MXF/Zelm/DataIO/SliceReader.h"
#include "MXF/Zelm/KLV/Key.h"
#include "MXF/Zelm/Templates/Rational.h"
#include "MXF/Zelm/Types/UniversalLabel.h"
#include "MXF/Zelm/Utils/TimeCodeExtended.h"

namespace MXF::Zelm::GenericContainer {

/// A value.
class MXFZELM_EXPORT SystemMetadataPack : public Platform::Allocated {
public:
    static constexpr std::size_t valueSize = 57;

    /// The key and length that are written.
    static KLV::Key const& key();

    /// Nothing is present. A rate that has no index, such as 12 or 29.5, is coded as index 0.
    explicit SystemMetadataPack(Templates::Rational<int> const& packageRate);

    /// Reads a value. Throws Exceptions::InvalidStructure with "Not enough data to read SystemMetadataPack"
    /// when there are fewer than 57 bytes.
    explicit SystemMetadataPack(DataIO::SliceReader& reader);

    /// The label of the essence container; all zero when it is absent.
    Types::UniversalLabel universalLabel() const;
    void universalLabel(Types::UniversalLabel const& label);

    /// Undefined when they are absent, no SMPTE 12M timecode, or no valid one. An undefined timecode takes
    /// the stamp away. Timecode counts as many frames a second as the package rate rounds to.
    Utils::TimeCodeExtended creationTimecode() const { return timecode(CreationStamp); }
    void creationTimecode(Utils::TimeCode const& timecode) { stamp(CreationStamp, timecode); }
    Utils::TimeCodeExtended userTimecode() const { return timecode(UserStamp); }
    void userTimecode(Utils::TimeCode const& timecode) { stamp(UserStamp, timecode); }

    /// Whether the content package has such an item, and a control element.
    bool pictureItem() const { return has(PictureItem); }
    void pictureItem(bool isPresent) { set(PictureItem, isPresent); }
    bool soundItem() const { return has(SoundItem); }
    void soundItem(bool isPresent) { set(SoundItem, isPresent); }
    bool dataItem() const { return has(DataItem); }
    void dataItem(bool isPresent) { set(DataItem, isPresent); }
    bool controlElement() const { return has(ControlElement); }
    void controlElement(bool isPresent) { set(ControlElement, isPresent); }

    /// The number of the content package, modulo 65536.
    std::uint16_t continuityCount() const;
    void continuityCount(std::uint16_t count);
    void incrementContinuityCount() { continuityCount(static_cast<std::uint16_t>(continuityCount() + 1)); }

    /// 0/1 for a rate index that stands for none.
    Templates::Rational<int> packageRate() const;

    /// Bytes that `serialize` gives: key, length and value.
    static constexpr std::size_t serializedSize() { return KLV::Key::size() + 4 + valueSize; }
    Templates::auto_ptr<DataIO::Slice> serialize() const;

private:
    enum Bit : unsigned char {
        Label = 0x40,
        CreationStamp = 0x20,
        UserStamp = 0x10,
        PictureItem = 0x08,
        SoundItem = 0x04,
        DataItem = 0x02,
        ControlElement = 0x01,
    };

    bool has(Bit bit) const { return (value_[0] & bit) != 0; }
    void set(Bit bit, bool isSet) {
        value_[0] = static_cast<unsigned char>(isSet ? value_[0] | bit : value_[0] & ~bit);
    }
    unsigned roundedRate() const;
    Utils::TimeCodeExtended timecode(Bit which) const;
    void stamp(Bit which, Utils::TimeCode const& timecode);

    std::array<unsigned char, valueSize> value_{};
};

} // namespace MXF::Zelm::GenericContainer
