/// Standard output, or what else takes text, for lists of any length.
#pragma once

#include <functional>
#include <iostream>
#include <string>
#include <string_view>

namespace Zelm {

/// Takes a piece of text.
using TextSink = std::function<void(std::string_view)>;

/// Gathers output, so that a row costs no call of the stream.
class RowOutput {
public:
    RowOutput() = default;

    /// Into `sink`, which is called by `flush` and `rowEnded` alone; null for standard output.
    explicit RowOutput(TextSink sink) : sink_(std::move(sink)) {}
    ~RowOutput() {
        if (!sink_)
            flush();
    }
    RowOutput(RowOutput const&) = delete;
    RowOutput& operator=(RowOutput const&) = delete;

    /// What a row is appended to.
    std::string& text() { return text_; }

    /// To be called after each row.
    void rowEnded() {
        if (text_.size() >= full)
            flush();
    }
    void flush() {
        if (sink_)
            sink_(text_);
        else
            std::cout.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        text_.clear();
    }

private:
    static constexpr std::size_t full = 64 * 1024;
    std::string text_;
    TextSink sink_;
};

/// Appends `text`, aligned to the right of `width` columns.
inline void appendPadded(std::string& out, std::string_view text, std::size_t width) {
    out.append(text.size() < width ? width - text.size() : 0, ' ');
    out += text;
}

} // namespace Zelm
