#include "MXF/Zelm/Essence/Ancillary/LineCaptions.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <bit>
#include <string>
#include <string_view>

namespace MXF::Zelm::Essence::Ancillary {

namespace {

using Rows = Templates::vector<CaptionRow>;

constexpr char16_t block = u'\u2588';

/// From 20 to 7F: ASCII but for some places.
constexpr std::u16string_view basicCharacters =
    u" !\"#$%&'()\u00E1+,-./0123456789:;<=>?"
    u"@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\u00E9]\u00ED\u00F3"
    u"\u00FAabcdefghijklmnopqrstuvwxyz\u00E7\u00F7\u00D1\u00F1\u2588";

/// Behind 11: from 30 to 3F.
constexpr std::u16string_view specialCharacters =
    u"\u00AE\u00B0\u00BD\u00BF\u2122\u00A2\u00A3\u266A\u00E0\u00A0\u00E8\u00E2\u00EA\u00EE\u00F4\u00FB";

/// Behind 12 and 13, from 20 to 3F. They take the place of the character before them, which decoders without
/// them show.
constexpr std::u16string_view extendedCharacters[2] = {
    u"\u00C1\u00C9\u00D3\u00DA\u00DC\u00FC\u2018\u00A1*'\u2014\u00A9\u2120\u2022\u201C\u201D"
    u"\u00C0\u00C2\u00C7\u00C8\u00CA\u00CB\u00EB\u00CE\u00CF\u00EF\u00D4\u00D9\u00F9\u00DB\u00AB\u00BB",
    u"\u00C3\u00E3\u00CD\u00CC\u00EC\u00D2\u00F2\u00D5\u00F5{}\\^_|~"
    u"\u00C4\u00E4\u00D6\u00F6\u00DF\u00A5\u00A4\u00A6\u00C5\u00E5\u00D8\u00F8\u250C\u2510\u2514\u2518"};

static_assert(basicCharacters.size() == 0x60 && specialCharacters.size() == 0x10);
static_assert(extendedCharacters[0].size() == 0x20 && extendedCharacters[1].size() == 0x20);

/// The row that a code names, by the low three bits of its first byte and bit 5 of its second.
constexpr unsigned rowNumbers[8][2] = {{11, 11}, {1, 2}, {3, 4}, {12, 13}, {14, 15}, {5, 6}, {7, 8}, {9, 10}};

/// The second byte of codes that begin with 14.
enum Command : unsigned char {
    ResumeCaptionLoading = 0x20,
    Backspace = 0x21,
    RollUp2 = 0x25,
    RollUp4 = 0x27,
    ResumeDirectCaptioning = 0x29,
    TextRestart = 0x2A,
    ResumeTextDisplay = 0x2B,
    EraseDisplayedMemory = 0x2C,
    CarriageReturn = 0x2D,
    EraseNonDisplayedMemory = 0x2E,
    EndOfCaption = 0x2F,
};

bool hasOddParity(unsigned char byte) { return std::popcount(byte) % 2 != 0; }

Templates::wstring trimmed(Templates::wstring const& text) {
    auto const first = text.find_first_not_of(u' ');
    return first == text.npos ? Templates::wstring()
                              : text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

} // namespace

void LineCaptions::take(unsigned field, std::array<unsigned char, 2> pair, Rows& rows) {
    if (field < 1 || field > fields_.size())
        throw Exceptions::InvalidValue("There are fields 1 and 2, not " + std::to_string(field));
    auto& state = fields_[--field];
    auto const first = static_cast<unsigned char>(pair[0] & 0x7F);
    auto const second = static_cast<unsigned char>(pair[1] & 0x7F);
    if (first >= 0x10 && first < 0x20) {
        bool const isRepeat = pair == state.lastControl; // each is sent twice
        state.lastControl = isRepeat ? std::array<unsigned char, 2>{} : pair;
        if (!isRepeat && hasOddParity(pair[0]) && hasOddParity(pair[1]))
            control(field, first, second, rows);
        return;
    }
    state.lastControl = {};
    if (field == 1 && first != 0 && first < 0x10)
        state.isExtendedData = first != 0x0F; // which ends them
    else if (!state.isExtendedData)
        for (auto const byte : pair)
            if (unsigned const code = byte & 0x7Fu; code >= 0x20)
                put(current(field), hasOddParity(byte) ? basicCharacters[code - 0x20] : block);
}

void LineCaptions::control(unsigned field, unsigned char first, unsigned char second, Rows& rows) {
    fields_[field].isExtendedData = false;
    fields_[field].channel = (first & 0x08) != 0 ? 1 : 0;
    auto const number = field * 2 + fields_[field].channel;
    auto& channel = channels_[number];
    unsigned const group = first & 0x07u;
    if (second >= 0x40)
        return startRow(number, first, second, rows);
    if ((group == 4 || group == 5) && second >= 0x20 && second < 0x30)
        return command(number, second, rows);
    if (group == 1 && second >= 0x30)
        return put(channel, specialCharacters[second - 0x30u]);
    if (group == 1 && second >= 0x20)
        return put(channel, u' '); // a change of style takes a column
    if ((group == 2 || group == 3) && second >= 0x20) {
        takeBack(channel);
        put(channel, extendedCharacters[group - 2][second - 0x20u]);
    }
}

void LineCaptions::command(unsigned number, unsigned char code, Rows& rows) {
    auto& channel = channels_[number];
    switch (code) {
    case ResumeCaptionLoading:
        return enter(number, Mode::PopOn, rows);
    case ResumeDirectCaptioning:
        return enter(number, Mode::Direct, rows);
    case TextRestart:
    case ResumeTextDisplay:
        return enter(number, Mode::Text, rows);
    case EndOfCaption:
        enter(number, Mode::PopOn, rows);
        return show(number, rows);
    case CarriageReturn:
    case EraseDisplayedMemory:
        return channel.mode == Mode::Direct ? show(number, rows) : void();
    case EraseNonDisplayedMemory:
        return channel.mode == Mode::PopOn ? channel.rows.clear() : void();
    case Backspace:
        return takeBack(channel);
    default:
        if (code >= RollUp2 && code <= RollUp4)
            enter(number, Mode::Direct, rows);
    }
}

void LineCaptions::startRow(unsigned number, unsigned char first, unsigned char second, Rows& rows) {
    auto& channel = channels_[number];
    unsigned const row = rowNumbers[first & 0x07][(second & 0x20) != 0 ? 1 : 0];
    if (channel.mode == Mode::Direct && row != channel.row)
        show(number, rows);
    channel.row = row;
}

void LineCaptions::enter(unsigned number, Mode mode, Rows& rows) {
    auto& channel = channels_[number];
    if (channel.mode == Mode::Direct && mode != Mode::Direct)
        show(number, rows);
    if (channel.mode != Mode::Direct && mode == Mode::Direct)
        channel.rows.clear(); // what was loaded and never shown
    channel.mode = mode;
}

void LineCaptions::show(unsigned number, Rows& rows) {
    for (auto const& [row, text] : channels_[number].rows)
        if (auto shown = trimmed(text); !shown.empty())
            rows.push_back({number + 1, std::move(shown)});
    channels_[number].rows.clear();
}

void LineCaptions::finish(Rows& rows) {
    for (unsigned number = 0; number < channels_.size(); ++number)
        if (channels_[number].mode == Mode::Direct)
            show(number, rows);
}

/// Beyond the last column the last character is replaced.
void LineCaptions::put(Channel& channel, char16_t character) {
    if (channel.mode == Mode::Text)
        return;
    auto& text = channel.rows[channel.row];
    if (text.size() == mostColumns)
        text.pop_back();
    text.push_back(character);
}

void LineCaptions::takeBack(Channel& channel) {
    if (auto const row = channel.rows.find(channel.row); row != channel.rows.end() && !row->second.empty())
        row->second.pop_back();
}

} // namespace MXF::Zelm::Essence::Ancillary
