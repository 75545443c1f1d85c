#include "MXF/Zelm/Essence/TimedText/Document.h"

#include "MXF/Zelm/Essence/TimedText/MarkupScanner.h"
#include "MXF/Zelm/Essence/TimedText/TimeExpression.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Platform/Text.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace MXF::Zelm::Essence::TimedText {

namespace {

using Item = MarkupScanner::Item;

constexpr std::string_view uuidPrefix = "urn:uuid:";
constexpr std::size_t uuidDigits = 36;

/// Half a document of digital cinema names its fonts and pictures so; more are not kept.
constexpr std::size_t mostResources = 65536;

enum class Dialect { None, TTML, Cinema };

struct Text {
    std::string utf8;
    const char* encoding;
};

std::u16string wide(std::string_view bytes, bool isBigEndian) {
    std::u16string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        auto const first = static_cast<unsigned char>(bytes[at]);
        auto const second = static_cast<unsigned char>(bytes[at + 1]);
        text += static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
}

/// By the byte order mark; without one, by the "<" that a document begins with.
Text decoded(std::string_view bytes) {
    using namespace std::string_view_literals;
    auto const beginsWith = [&](std::string_view start) { return bytes.substr(0, start.size()) == start; };
    bool const isMarked = beginsWith("\xFE\xFF"sv) || beginsWith("\xFF\xFE"sv);
    if (beginsWith("\xFE\xFF"sv) || beginsWith("\0<"sv))
        return {Platform::toUtf8(wide(bytes.substr(isMarked ? 2 : 0), true)), "UTF-16"};
    if (beginsWith("\xFF\xFE"sv) || beginsWith("<\0"sv))
        return {Platform::toUtf8(wide(bytes.substr(isMarked ? 2 : 0), false)), "UTF-16"};
    return {std::string(beginsWith("\xEF\xBB\xBF"sv) ? bytes.substr(3) : bytes), "UTF-8"};
}

std::string valueOf(MarkupScanner::Attributes const& attributes, std::string_view local) {
    for (auto const& [name, value] : attributes)
        if (localName(name) == local)
            return value;
    return {};
}

std::string namespaceOf(std::string_view element, MarkupScanner::Attributes const& attributes) {
    auto const colon = element.find(':');
    std::string const wanted =
        colon != std::string_view::npos ? "xmlns:" + std::string(element.substr(0, colon)) : "xmlns";
    for (auto const& [name, value] : attributes)
        if (name == wanted)
            return value;
    return {};
}

/// By the root element, which the scanner has just opened.
Dialect dialectOf(MarkupScanner const& scanner) {
    auto const name = localName(scanner.name());
    auto const space = namespaceOf(scanner.name(), scanner.attributes());
    if (name == "tt" && space.find("ttml") != std::string::npos)
        return Dialect::TTML;
    return name == "SubtitleReel" || name == "DCSubtitle" ? Dialect::Cinema : Dialect::None;
}

/// Two or three letters, and subtags behind hyphens.
bool isLanguageTag(std::string_view text) {
    auto const isLetter = [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
    };
    auto const first = text.substr(0, text.find('-'));
    return (first.size() == 2 || first.size() == 3) && std::all_of(first.begin(), first.end(), isLetter);
}

/// The digits of a UUID, in small letters; empty for what is none.
std::string uuidOf(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (text.substr(0, uuidPrefix.size()) == uuidPrefix)
        text.remove_prefix(uuidPrefix.size());
    std::string digits(text.substr(0, uuidDigits));
    for (std::size_t i = 0; i < digits.size(); ++i) {
        bool const isHyphen = i == 8 || i == 13 || i == 18 || i == 23;
        if (digits[i] >= 'A' && digits[i] <= 'F')
            digits[i] = static_cast<char>(digits[i] - 'A' + 'a');
        bool const isDigit = (digits[i] >= '0' && digits[i] <= '9') || (digits[i] >= 'a' && digits[i] <= 'f');
        if (isHyphen ? digits[i] != '-' : !isDigit)
            return {};
    }
    return digits.size() == uuidDigits ? digits : std::string();
}

std::string firstWord(std::string const& text) { return text.substr(0, text.find_first_of(" \t\r\n")); }

/// Reads a document that has been found to be one.
class Reading {
public:
    Reading(MarkupScanner& scanner, Dialect dialect, Document& document)
        : scanner_(scanner), dialect_(dialect), document_(document) {}

    void run() {
        takeRoot();
        for (Item item = Item::Open; item != Item::End; item = scanner_.next())
            take(item);
    }

private:
    void take(Item item) {
        if (item == Item::Open)
            open();
        else if (item == Item::Close)
            begins_.pop_back();
        else if (item == Item::Text)
            takeText();
    }

    void takeRoot() {
        auto const& attributes = scanner_.attributes();
        document_.namespaceURI = namespaceOf(scanner_.name(), attributes);
        if (dialect_ == Dialect::TTML)
            takeParameters(attributes);
        else
            units_.fourthPerSecond = ticksOfCinema;
    }

    void takeParameters(MarkupScanner::Attributes const& attributes) {
        document_.language = valueOf(attributes, "lang");
        auto const profile = valueOf(attributes, "profile");
        document_.profile = firstWord(profile.empty() ? valueOf(attributes, "contentProfiles") : profile);
        auto const rate = parseRatio(valueOf(attributes, "frameRate"));
        auto const factor = parseRatio(valueOf(attributes, "frameRateMultiplier"));
        if (rate.isKnown())
            setRate(rate, factor.isKnown() ? factor : Templates::Rational<int>{1, 1});
        units_.ticksPerSecond = rate.isKnown() ? units_.framesPerSecond : 1;
        if (auto const ticks = parseRatio(valueOf(attributes, "tickRate")); ticks.isKnown())
            units_.ticksPerSecond = ticks.toDouble();
    }

    void setRate(Templates::Rational<int> const& rate, Templates::Rational<int> const& factor) {
        std::int64_t const numerator = std::int64_t{rate.numerator} * factor.numerator;
        std::int64_t const denominator = std::int64_t{rate.denominator} * factor.denominator;
        auto const divisor = std::gcd(numerator, denominator);
        constexpr std::int64_t most = std::numeric_limits<int>::max();
        if (numerator / divisor > most || denominator / divisor > most)
            return;
        document_.frameRate = {static_cast<int>(numerator / divisor),
                               static_cast<int>(denominator / divisor)};
        units_.framesPerSecond = units_.fourthPerSecond = document_.frameRate.toDouble();
    }

    void open() {
        auto const& attributes = scanner_.attributes();
        double const parent = begins_.empty() ? 0 : begins_.back();
        double begin = parent;
        if (dialect_ == Dialect::TTML) {
            begin = std::min(parent + timeIn("begin").value_or(0), longestTime);
            if (auto const end = timeIn("end"))
                reach(parent + *end);
            if (auto const length = timeIn("dur"))
                reach(begin + *length);
        } else if (auto const end = timeIn("TimeOut")) {
            reach(*end);
        }
        begins_.push_back(begin);
        for (auto const& [name, value] : attributes)
            takeReference(value);
    }

    std::optional<double> timeIn(std::string_view attribute) const {
        return parseTime(valueOf(scanner_.attributes(), attribute), units_);
    }

    void reach(double time) {
        document_.duration = std::max(document_.duration, std::min(time, longestTime));
    }

    /// Children of the root tell what the document is, in digital cinema.
    void takeText() {
        auto const& text = scanner_.text();
        if (scanner_.depth() != 2 || dialect_ != Dialect::Cinema)
            return takeReference(text);
        auto const name = localName(scanner_.name());
        if (name == "Id" || name == "SubtitleID")
            document_.id = uuidOf(text);
        else if (name == "Language")
            document_.language = isLanguageTag(text) ? text : "";
        else if (name == "EditRate")
            document_.frameRate = parseRatio(text);
        else if (name == "TimeCodeRate")
            units_.fourthPerSecond = std::max(parseRatio(text).toDouble(), 1.0);
        else
            takeReference(text);
    }

    void takeReference(std::string_view text) {
        auto const at = text.find(uuidPrefix);
        if (at == std::string_view::npos || document_.resources.size() == mostResources)
            return;
        if (auto const id = uuidOf(text.substr(at)); !id.empty())
            document_.resources.push_back(id);
    }

    /// Of documents without a rate: 250 ticks a second.
    static constexpr double ticksOfCinema = 250;

    MarkupScanner& scanner_;
    Dialect dialect_;
    Document& document_;
    TimeUnits units_;
    std::vector<double> begins_; // of the elements that are open
};

void sortUnique(std::vector<std::string>& texts, std::string const& without) {
    std::sort(texts.begin(), texts.end());
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    std::erase(texts, without);
}

} // namespace

bool Document::isDocument(std::string_view start) {
    if (start.empty() || start.find('<') == std::string_view::npos)
        return false;
    auto const text = decoded(start);
    MarkupScanner scanner(text.utf8);
    try {
        return scanner.next() == Item::Open && dialectOf(scanner) != Dialect::None;
    } catch (Exceptions::InvalidFormat const&) {
        return false;
    }
}

Document Document::read(DataIO::Chain const& bytes) {
    if (bytes.size() > largest)
        throw Exceptions::InvalidFormat("Timed text: the document has " + std::to_string(bytes.size()) +
                                        " bytes, more than " + std::to_string(largest));
    std::string raw(Templates::safeCast<std::size_t>(bytes.size()), '\0');
    bytes.copyTo(reinterpret_cast<unsigned char*>(raw.data()), raw.size());
    auto const text = decoded(raw);
    MarkupScanner scanner(text.utf8);
    bool const isElement = scanner.next() == Item::Open;
    auto const dialect = isElement ? dialectOf(scanner) : Dialect::None;
    if (dialect == Dialect::None)
        throw Exceptions::InvalidFormat("Timed text: the document is neither TTML nor a subtitle document");
    Document document;
    document.encoding = text.encoding;
    Reading(scanner, dialect, document).run();
    sortUnique(document.resources, document.id);
    return document;
}

} // namespace MXF::Zelm::Essence::TimedText
