/// Text, CSV and JSON of `zelm frames`.
#include "Frames.h"
#include "Json.h"
#include "RowOutput.h"
#include "Text.h"

#include <charconv>

namespace Zelm {

using namespace MXF::Zelm;

namespace {

/// A number as text, without an allocation.
class Digits {
public:
    template <class Integer>
    explicit Digits(Integer value, int base = 10)
        : size_(static_cast<std::size_t>(std::to_chars(text_, text_ + sizeof text_, value, base).ptr -
                                         text_)) {}

    std::string_view view() const { return {text_, size_}; }

private:
    char text_[24];
    std::size_t size_;
};

void appendTwo(std::string& out, unsigned number) {
    if (number >= 100)
        out += Digits(number / 100).view();
    out += static_cast<char>('0' + number / 10 % 10);
    out += static_cast<char>('0' + number % 10);
}

/// "10:00:00:00", as `Utils::TimeCode::toString` has it; nothing for an undefined one.
void appendTimecode(std::string& out, Utils::TimeCode const& timecode) {
    if (!timecode.isDefined())
        return;
    auto const address = timecode.address();
    appendTwo(out, address.hours);
    out += ':';
    appendTwo(out, address.minutes);
    out += ':';
    appendTwo(out, address.seconds);
    out += timecode.base().dropFrame() ? ';' : ':';
    appendTwo(out, address.frames);
}

class TextPrinter : public FramePrinter {
public:
    void begin(std::string const&) override {}

    void section(FrameSection const& section) override {
        auto& out = output_.text();
        if (!section.title.empty())
            out += (any_ ? "\n" : "") + section.title + "\n";
        any_ = true;
        unitWidth_ = std::max<std::size_t>(std::to_string(section.units).size(), 7);
        offsetWidth_ = std::max<std::size_t>(hex(section.fileSize).size(), 6) + 2;
        appendPadded(out, "stored", unitWidth_);
        appendPadded(out, "display", unitWidth_ + 2);
        out += "  timecode     key  type";
        appendPadded(out, "size", sizeWidth);
        appendPadded(out, "offset", offsetWidth_);
        out += "  flags\n";
    }

    void frame(Frame const& frame) override {
        auto& out = output_.text();
        appendPadded(out, Digits(frame.stored).view(), unitWidth_);
        appendPadded(out, frame.display ? Digits(*frame.display).view() : "-", unitWidth_ + 2);
        out += "  ";
        std::size_t const timecodeEnd = out.size() + 11;
        appendTimecode(out, frame.timecode);
        if (!frame.timecode.isDefined())
            out += '-';
        out.append(out.size() < timecodeEnd ? timecodeEnd - out.size() : 0, ' ');
        out += !frame.isKey ? "  -    " : *frame.isKey ? "  K    " : "  .    ";
        out += frame.type != 0 ? frame.type : '-';
        out += "   ";
        appendSize(frame.size);
        appendOffset(frame.offset);
        appendFlags(frame.flags);
        output_.rowEnded();
    }

    void end(FrameListEnd const&) override { output_.flush(); }

private:
    static constexpr std::size_t sizeWidth = 13;

    void appendSize(std::optional<std::uint64_t> size) {
        if (!size)
            return appendPadded(output_.text(), "-", sizeWidth);
        Digits const digits(*size);
        auto const text = digits.view();
        std::size_t const width = text.size() + (text.size() - 1) / 3;
        appendPadded(output_.text(), "", width < sizeWidth ? sizeWidth - width : 1);
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (i != 0 && (text.size() - i) % 3 == 0)
                output_.text() += ',';
            output_.text() += text[i];
        }
    }

    void appendOffset(std::optional<std::uint64_t> offset) {
        if (!offset)
            return appendPadded(output_.text(), "-", offsetWidth_);
        Digits const digits(*offset, 16);
        std::size_t const width = digits.view().size() + 2;
        appendPadded(output_.text(), "0x", offsetWidth_ - std::min(offsetWidth_, width) + 2);
        appendUpper(digits.view());
    }

    void appendFlags(std::optional<std::uint8_t> flags) {
        output_.text() += flags ? *flags < 0x10 ? "  0x0" : "  0x" : "  -";
        if (flags)
            appendUpper(Digits(*flags, 16).view());
        output_.text() += '\n';
    }

    void appendUpper(std::string_view digits) {
        for (char const c : digits)
            output_.text() += c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c;
    }

    RowOutput output_;
    bool any_ = false;
    std::size_t unitWidth_ = 0;
    std::size_t offsetWidth_ = 0;
};

template <class Integer>
void appendOr(std::string& out, std::optional<Integer> const& value, std::string_view none) {
    out += value ? Digits(*value).view() : none;
}

class CsvPrinter : public FramePrinter {
public:
    void begin(std::string const&) override {
        output_.text() += "body_sid,edit_unit,display,timecode,key,type,size,offset,flags\n";
    }
    void section(FrameSection const&) override {}

    void frame(Frame const& frame) override {
        auto& out = output_.text();
        out += Digits(frame.bodySID).view();
        out += ',';
        out += Digits(frame.stored).view();
        out += ',';
        appendOr(out, frame.display, "");
        out += ',';
        appendTimecode(out, frame.timecode);
        out += !frame.isKey ? ",," : *frame.isKey ? ",1," : ",0,";
        if (frame.type != 0)
            out += frame.type;
        out += ',';
        appendOr(out, frame.size, "");
        out += ',';
        appendOr(out, frame.offset, "");
        out += ',';
        appendOr(out, frame.flags, "");
        out += '\n';
        output_.rowEnded();
    }

    void end(FrameListEnd const&) override { output_.flush(); }

private:
    RowOutput output_;
};

class JsonPrinter : public FramePrinter {
public:
    void begin(std::string const& file) override {
        output_.text() += "{\n  \"schema_version\": " + std::to_string(jsonSchemaVersion) +
                          ",\n  \"file\": " + dump(file) + ",\n  \"frames\": [";
    }
    void section(FrameSection const&) override {}

    void frame(Frame const& frame) override {
        auto& out = output_.text();
        out += first_ ? "\n    {\"body_sid\": " : ",\n    {\"body_sid\": ";
        first_ = false;
        out += Digits(frame.bodySID).view();
        out += ", \"edit_unit\": ";
        out += Digits(frame.stored).view();
        out += ", \"display\": ";
        appendOr(out, frame.display, "null");
        out += frame.timecode.isDefined() ? ", \"timecode\": \"" : ", \"timecode\": null";
        appendTimecode(out, frame.timecode);
        out += frame.timecode.isDefined() ? "\", \"key\": " : ", \"key\": ";
        out += !frame.isKey ? "null" : *frame.isKey ? "true" : "false";
        out += frame.type != 0 ? ", \"type\": \"" : ", \"type\": null";
        if (frame.type != 0)
            (out += frame.type) += '"';
        out += ", \"size\": ";
        appendOr(out, frame.size, "null");
        out += ", \"offset\": ";
        appendOr(out, frame.offset, "null");
        out += ", \"flags\": ";
        appendOr(out, frame.flags, "null");
        out += '}';
        output_.rowEnded();
    }

    void end(FrameListEnd const& end) override {
        output_.text() += std::string(first_ ? "]" : "\n  ]") +
                          ",\n  \"ends_early\": " + (end.endsEarly ? "true" : "false") +
                          ",\n  \"fault\": " + dump(toJson(end.fault)) + "\n}\n";
        output_.flush();
    }

private:
    RowOutput output_;
    bool first_ = true;
};

} // namespace

std::unique_ptr<FramePrinter> makeFrameTextPrinter() { return std::make_unique<TextPrinter>(); }
std::unique_ptr<FramePrinter> makeFrameCsvPrinter() { return std::make_unique<CsvPrinter>(); }
std::unique_ptr<FramePrinter> makeFrameJsonPrinter() { return std::make_unique<JsonPrinter>(); }

} // namespace Zelm
