#include "MXF/Zelm/Essence/TimedText/MarkupScanner.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>
#include <charconv>

namespace MXF::Zelm::Essence::TimedText {

namespace {

constexpr std::string_view space = " \t\r\n";
constexpr std::string_view endsOfNames = " \t\r\n/>=<\"'";

/// "#233" or "#xE9"; empty for no character.
std::string characterOf(std::string_view reference) {
    bool const isHexadecimal = reference.substr(0, 2) == "#x";
    reference.remove_prefix(isHexadecimal ? 2 : 1);
    std::uint32_t code = 0;
    auto const* const end = reference.data() + reference.size();
    auto const [stop, error] = std::from_chars(reference.data(), end, code, isHexadecimal ? 16 : 10);
    constexpr std::uint32_t last = 0x10FFFF, firstPair = 0x10000;
    if (error != std::errc() || stop != end || code == 0 || code > last)
        return {};
    std::u16string text;
    if (code >= firstPair)
        text = {static_cast<char16_t>(0xD800 + ((code - firstPair) >> 10)),
                static_cast<char16_t>(0xDC00 + ((code - firstPair) & 0x3FF))};
    else
        text = static_cast<char16_t>(code);
    return Platform::toUtf8(text);
}

std::string entityOf(std::string_view name) {
    static constexpr std::pair<std::string_view, const char*> entities[] = {
        {"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}};
    if (name.substr(0, 1) == "#")
        return characterOf(name);
    for (auto const& [known, character] : entities)
        if (name == known)
            return character;
    return {};
}

} // namespace

std::string_view localName(std::string_view name) {
    auto const colon = name.find(':');
    return colon != std::string_view::npos ? name.substr(colon + 1) : name;
}

std::string withoutEntities(std::string_view raw) {
    constexpr std::size_t longestReference = 12;
    std::string text;
    for (std::size_t at = 0; at < raw.size();) {
        auto const end = raw[at] == '&' ? raw.substr(at, longestReference).find(';') : std::string_view::npos;
        auto const found = end != std::string_view::npos ? entityOf(raw.substr(at + 1, end - 1)) : "";
        text += found.empty() ? std::string(1, raw[at]) : found;
        at += found.empty() ? 1 : end + 1;
    }
    return text;
}

void MarkupScanner::fail(std::string const& what) const {
    throw Exceptions::at(at_, Exceptions::InvalidFormat("XML: " + what));
}

/// What stands before `end`, which is passed over too.
std::string_view MarkupScanner::upTo(std::string_view end) {
    auto const found = text_.find(end, at_);
    if (found == std::string_view::npos)
        fail("it ends before \"" + std::string(end) + "\"");
    auto const before = text_.substr(at_, found - at_);
    at_ = found + end.size();
    return before;
}

void MarkupScanner::takeSpace() { at_ = std::min(text_.find_first_not_of(space, at_), text_.size()); }

std::string MarkupScanner::takeName() {
    auto const end = std::min(text_.find_first_of(endsOfNames, at_), text_.size());
    if (end == at_)
        fail("there is no name where one must be");
    std::string const name(text_.substr(at_, end - at_));
    at_ = end;
    return name;
}

/// Up to the ">" behind an inner part in brackets, if there is one.
void MarkupScanner::passDocumentType() {
    auto const end = text_.find('>', at_), inner = text_.find('[', at_);
    if (inner < end)
        upTo("]");
    upTo(">");
}

/// What is neither tag nor text; false when nothing such stands here.
bool MarkupScanner::passOver() {
    if (startsWith("<!--"))
        upTo("-->");
    else if (startsWith("<?"))
        upTo("?>");
    else if (startsWith("<!DOCTYPE"))
        passDocumentType();
    else
        return false;
    return true;
}

void MarkupScanner::takeAttribute() {
    std::string const name = takeName();
    takeSpace();
    if (!startsWith("="))
        fail("the attribute " + name + " has no value");
    ++at_;
    takeSpace();
    std::string const quote(text_.substr(at_, 1));
    if (quote != "\"" && quote != "'")
        fail("the value of the attribute " + name + " has no quotes");
    ++at_;
    if (attributes_.size() == mostAttributes)
        fail("an element has more than " + std::to_string(mostAttributes) + " attributes");
    attributes_.emplace_back(name, withoutEntities(upTo(quote)));
}

MarkupScanner::Item MarkupScanner::takeOpen() {
    ++at_;
    attributes_.clear();
    name_ = takeName();
    for (takeSpace(); !startsWith(">") && !startsWith("/>"); takeSpace())
        takeAttribute();
    isEmpty_ = startsWith("/>");
    at_ += isEmpty_ ? 2 : 1;
    if (open_.size() == deepestElement)
        fail("elements stand within each other more than " + std::to_string(deepestElement) + " deep");
    open_.push_back(name_);
    return Item::Open;
}

MarkupScanner::Item MarkupScanner::takeClose() {
    if (!std::exchange(isEmpty_, false)) {
        at_ += 2;
        name_ = takeName();
        takeSpace();
        if (open_.empty() || name_ != open_.back() || !startsWith(">"))
            fail("</" + name_ + "> closes no element");
        ++at_;
    }
    open_.pop_back();
    return Item::Close;
}

MarkupScanner::Item MarkupScanner::takeText(std::string_view raw, bool hasEntities) {
    value_ = hasEntities ? withoutEntities(raw) : std::string(raw);
    return Item::Text;
}

MarkupScanner::Item MarkupScanner::next() {
    if (isEmpty_)
        return takeClose();
    while (at_ < text_.size()) {
        constexpr std::string_view characters = "<![CDATA[";
        if (passOver())
            continue;
        if (startsWith(characters)) {
            at_ += characters.size();
            return takeText(upTo("]]>"), false);
        }
        if (startsWith("</"))
            return takeClose();
        if (startsWith("<"))
            return takeOpen();
        auto const from = at_;
        at_ = std::min(text_.find('<', at_), text_.size());
        if (!open_.empty())
            return takeText(text_.substr(from, at_ - from), true);
        if (text_.substr(from, at_ - from).find_first_not_of(space) != std::string_view::npos)
            fail("text stands outside of all elements");
    }
    if (!open_.empty())
        fail("the element " + open_.back() + " is not closed");
    return Item::End;
}

} // namespace MXF::Zelm::Essence::TimedText
