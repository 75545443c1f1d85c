/// A date and time (UTC): year (2 bytes), month, day, hour, minute, second, and a count of 4 milliseconds (1
/// byte each). All zero is unknown.
#pragma once

#include "MXF/Zelm/Types/Shapes.h"

namespace MXF::Zelm::Types {

class MXFZELM_EXPORT Timestamp final : public FixedSizeType<Timestamp, Identifiers::Timestamp, 8> {
public:
    using FixedSizeType::FixedSizeType;
    Timestamp() = default;

    /// `month` 1 to 12, `day` 1 to 31, `hour` 0 to 23, `minute` and `second` 0 to 59, `millisecond` 0 to 999,
    /// which loses what is below 4 ms. Throws Exceptions::InvalidValue for anything else.
    Timestamp(int year, int month, int day, int hour, int minute, int second, int millisecond);

    /// The system's time.
    static Timestamp now();

    std::int16_t year() const { return ByteCoders::decodeInteger<std::int16_t>(bytes_.data()); }
    unsigned month() const { return bytes_[2]; }
    unsigned day() const { return bytes_[3]; }
    unsigned hour() const { return bytes_[4]; }
    unsigned minute() const { return bytes_[5]; }
    unsigned second() const { return bytes_[6]; }

    /// 0 to 1020 in steps of 4 (a file may hold more than the 996 that there are).
    unsigned millisecond() const { return bytes_[7] * 4u; }

    bool isKnown() const { return bytes_ != std::array<unsigned char, 8>{}; }

    /// "2024-09-10T21:52:12.420Z", "unknown" when all bytes are zero. A file's fields are printed as they
    /// are, also where they are no date.
    std::u16string toString() const override;

    /// Reads the same forms, the time of day and its parts being optional. Throws Exceptions::InvalidFormat.
    static Timestamp fromText(std::u16string_view text);
};

} // namespace MXF::Zelm::Types
