/// A scanner of XML as far as timed text needs it: tags with their attributes, and text between them.
///
/// Comments, processing instructions and the document type are passed over; entities of the document type
/// are not known, so that nothing expands. Namespaces are left to the caller.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace MXF::Zelm::Essence::TimedText {

class MarkupScanner {
public:
    enum class Item { Open, Close, Text, End };

    using Attributes = std::vector<std::pair<std::string, std::string>>;

    static constexpr std::size_t mostAttributes = 256, deepestElement = 256;

    /// `text` in UTF-8, which must stay.
    explicit MarkupScanner(std::string_view text) : text_(text) {}

    /// The next item. An empty element is an Open and a Close. Throws Exceptions::InvalidFormat with the
    /// offset where the text is no XML, or nests or lists more than the limits.
    Item next();

    /// Of the element that was opened or closed last, with its prefix.
    std::string const& name() const { return name_; }

    /// Of the element that was opened last.
    Attributes const& attributes() const { return attributes_; }

    /// Of the last Text, entities replaced.
    std::string const& text() const { return value_; }

    /// Elements that are open.
    std::size_t depth() const { return open_.size(); }

    /// Behind the last item.
    std::size_t offset() const { return at_; }

private:
    bool startsWith(std::string_view what) const { return text_.substr(at_, what.size()) == what; }
    std::string_view upTo(std::string_view end);
    bool passOver();
    void passDocumentType();
    std::string takeName();
    void takeSpace();
    void takeAttribute();
    Item takeOpen();
    Item takeClose();
    Item takeText(std::string_view raw, bool hasEntities);
    [[noreturn]] void fail(std::string const& what) const;

    std::string_view text_;
    std::size_t at_ = 0;
    std::string name_, value_;
    Attributes attributes_;
    std::vector<std::string> open_;
    bool isEmpty_ = false; // the element that was opened last is to be closed at once
};

/// The name without its prefix.
std::string_view localName(std::string_view name);

/// Text with the five entities of XML and character references replaced; others stay as they are.
std::string withoutEntities(std::string_view raw);

} // namespace MXF::Zelm::Essence::TimedText
