/// Drawings as SVG: text that every browser shows, in one file without references to others.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Zelm {

/// A shape of lines, in pixels from the left and the top.
class SvgPath {
public:
    SvgPath& moveTo(double x, double y) { return add('M', x, y); }
    SvgPath& lineTo(double x, double y) { return add('L', x, y); }

    /// A line from the left to the right, or from the top to the bottom.
    SvgPath& horizontal(double x1, double x2, double y) { return moveTo(x1, y).lineTo(x2, y); }
    SvgPath& vertical(double x, double y1, double y2) { return moveTo(x, y1).lineTo(x, y2); }
    SvgPath& rectangle(double x, double y, double width, double height);

    bool empty() const { return text_.empty(); }
    std::string const& text() const { return text_; }

private:
    SvgPath& add(char command, double x, double y);

    std::string text_;
};

/// Shapes are drawn in the order in which they are added, the later over the earlier. Their looks come from
/// the classes of the style sheet. Texts may hold anything.
class Svg {
public:
    enum class Anchor { Start, Middle, End };

    /// `style` is CSS, from the program: it is not escaped. `title` tells readers that cannot see.
    Svg(double width, double height, std::string_view title, std::string_view style);

    void rectangle(double x, double y, double width, double height, std::string_view styleClass);

    /// With a text that shows where the pointer rests on the shape, if there is one.
    void path(SvgPath const& path, std::string_view styleClass, std::string_view tip = {});

    /// `y` is the base line.
    void text(double x, double y, std::string_view text, std::string_view styleClass,
              Anchor anchor = Anchor::Start);

    /// The whole document.
    std::string document() const { return text_ + "</svg>\n"; }

private:
    void attribute(const char* name, double value);

    std::string text_;
};

/// A number with two digits behind the point at most: "12.5".
std::string svgNumber(double value);

/// `text`, UTF-8 or not, as it may stand in XML.
std::string xmlText(std::string_view text);

} // namespace Zelm
