#include "Svg.h"

#include "Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Zelm {

namespace {

/// No coordinate lies beyond.
constexpr double farthest = 1e7;

const char* anchorName(Svg::Anchor anchor) {
    return anchor == Svg::Anchor::Start ? "start" : anchor == Svg::Anchor::Middle ? "middle" : "end";
}

/// Bytes of the UTF-8 sequence that begins `text`; 0 when it is none that XML takes.
std::size_t sequenceLength(std::string_view text) {
    auto const first = static_cast<unsigned char>(text.front());
    std::size_t const length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length == 0 || length > text.size() || (first < 0x20 && first != '\t' && first != '\n'))
        return 0;
    auto const isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    if (!std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length), isContinuation))
        return 0;
    auto const second = length > 1 ? static_cast<unsigned char>(text[1]) : 0u;
    bool const isOther = (first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) ||
                         (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90) ||
                         (first == 0xEF && second == 0xBF && static_cast<unsigned char>(text[2]) >= 0xBE);
    return isOther ? 0 : length;
}

} // namespace

std::string svgNumber(double value) {
    if (!std::isfinite(value))
        value = 0;
    char text[32];
    auto const end = std::to_chars(text, text + sizeof text, std::clamp(value, -farthest, farthest),
                                   std::chars_format::fixed, 2)
                         .ptr;
    std::string number(text, end);
    number.erase(number.find_last_not_of('0') + 1);
    if (number.back() == '.')
        number.pop_back();
    return number == "-0" ? "0" : number;
}

std::string xmlText(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        std::size_t const length = sequenceLength(text);
        char const c = text.front();
        if (length == 0)
            out += "\xEF\xBF\xBD";
        else if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '"')
            out += "&quot;";
        else
            out += text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return out;
}

SvgPath& SvgPath::rectangle(double x, double y, double width, double height) {
    moveTo(x, y).lineTo(x + width, y).lineTo(x + width, y + height).lineTo(x, y + height);
    text_ += 'Z';
    return *this;
}

SvgPath& SvgPath::add(char command, double x, double y) {
    text_ += command;
    text_ += svgNumber(x);
    text_ += ' ';
    text_ += svgNumber(y);
    return *this;
}

Svg::Svg(double width, double height, std::string_view title, std::string_view style) {
    std::string const w = svgNumber(width), h = svgNumber(height);
    text_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
            w + "\" height=\"" + h + "\" viewBox=\"0 0 " + w + " " + h + "\" role=\"img\">\n<title>" +
            xmlText(title) + "</title>\n<style>\n" + std::string(style) + "</style>\n";
}

void Svg::attribute(const char* name, double value) {
    text_ += std::string(" ") + name + "=\"" + svgNumber(value) + "\"";
}

void Svg::rectangle(double x, double y, double width, double height, std::string_view styleClass) {
    text_ += "<rect class=\"" + std::string(styleClass) + "\"";
    attribute("x", x);
    attribute("y", y);
    attribute("width", width);
    attribute("height", height);
    text_ += "/>\n";
}

void Svg::path(SvgPath const& path, std::string_view styleClass, std::string_view tip) {
    if (path.empty())
        return;
    text_ += "<path class=\"" + std::string(styleClass) + "\" d=\"" + path.text() + "\"";
    text_ += tip.empty() ? "/>\n" : "><title>" + xmlText(tip) + "</title></path>\n";
}

void Svg::text(double x, double y, std::string_view text, std::string_view styleClass, Anchor anchor) {
    text_ += "<text class=\"" + std::string(styleClass) + "\"";
    attribute("x", x);
    attribute("y", y);
    text_ += std::string(" text-anchor=\"") + anchorName(anchor) + "\">" + xmlText(text) + "</text>\n";
}

} // namespace Zelm
