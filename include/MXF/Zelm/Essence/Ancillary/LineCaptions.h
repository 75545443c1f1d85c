/// The text of line 21 captions (CEA-608), row by row as it is shown. Position, colour and style are left
/// out, as are the text channels and extended data services.
#pragma once

#include "MXF/Zelm/Platform/Export.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Templates/Containers.h"

#include <array>
#include <cstdint>

namespace MXF::Zelm::Essence::Ancillary {

/// A row of text that was shown, or is complete.
struct CaptionRow {
    /// 1 to 4: CC1 and CC2 stand in field 1, CC3 and CC4 in field 2.
    unsigned channel = 0;
    Templates::wstring text = {};

    friend bool operator==(CaptionRow const&, CaptionRow const&) = default;
};

/// Follows both fields. Not locked: one object, one thread.
class MXFZELM_EXPORT LineCaptions : public Platform::Allocated {
public:
    static constexpr std::size_t mostColumns = 32;

    /// Takes the next pair of a field, 1 or 2, as it was sent, with odd parity. Appends to `rows` what it
    /// completes: rows that pop on when they are shown, those that roll up or are painted when they end. A
    /// byte of wrong parity becomes a block, a pair whose first byte would be control is passed over. Throws
    /// Exceptions::InvalidValue for another field.
    void take(unsigned field, std::array<unsigned char, 2> pair, Templates::vector<CaptionRow>& rows);

    /// Appends what stands incomplete at the end.
    void finish(Templates::vector<CaptionRow>& rows);

private:
    enum class Mode { PopOn, Direct, Text };

    struct Channel {
        Mode mode = Mode::Text; ///< until the first control code tells
        unsigned row = 15;
        Templates::map<unsigned, Templates::wstring> rows; ///< being filled, by their numbers 1 to 15
    };

    struct Field {
        std::array<unsigned char, 2> lastControl = {};
        unsigned channel = 0; ///< within the field: 0 or 1
        bool isExtendedData = false;
    };

    void control(unsigned field, unsigned char first, unsigned char second,
                 Templates::vector<CaptionRow>& rows);
    void command(unsigned number, unsigned char code, Templates::vector<CaptionRow>& rows);
    void startRow(unsigned number, unsigned char first, unsigned char second,
                  Templates::vector<CaptionRow>& rows);
    void show(unsigned number, Templates::vector<CaptionRow>& rows);
    void enter(unsigned number, Mode mode, Templates::vector<CaptionRow>& rows);

    Channel& current(unsigned field) { return channels_[field * 2 + fields_[field].channel]; }
    static void put(Channel& channel, char16_t character);
    static void takeBack(Channel& channel);

    std::array<Channel, 4> channels_;
    std::array<Field, 2> fields_;
};

} // namespace MXF::Zelm::Essence::Ancillary
