#include "MXF/Zelm/Exceptions/Exceptions.h"

#include "MXF/Zelm/Platform/Text.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

namespace MXF::Zelm::Exceptions {

namespace {

/// "/somewhere/src/MXF/Zelm/KLV/Reader.cpp" becomes "src/MXF/Zelm/KLV/Reader".
std::string shortSourceFile(std::string_view file) {
    // Folders above the project may have such names too: the last one counts.
    std::size_t begin = 0;
    for (std::string_view root : {"src/MXF/Zelm", "src\\MXF\\Zelm", "include/MXF/Zelm", "include\\MXF\\Zelm"})
        if (auto const found = file.rfind(root); found != std::string_view::npos)
            begin = std::max(begin, found);
    file.remove_prefix(begin);
    auto const dot = file.rfind('.');
    if (dot != std::string_view::npos && file.find_first_of("/\\", dot) == std::string_view::npos)
        file = file.substr(0, dot);
    return std::string(file);
}

} // namespace

struct BaseException::State {
    std::string message;
    std::string condition;
    std::string file;
    unsigned line;
    std::optional<std::uint64_t> offset;
};

BaseException::BaseException(std::string message, SourceLocation where)
    : state_(std::make_shared<State>(
          State{std::move(message), {}, shortSourceFile(where.file), where.line, std::nullopt})) {}

BaseException::BaseException(std::u16string const& message, SourceLocation where)
    : BaseException(Platform::toUtf8(message), where) {}

BaseException::BaseException(Condition condition, std::string message, SourceLocation where)
    : BaseException(std::move(message), where) {
    state_->condition = condition.text;
}

BaseException::~BaseException() = default;

const char* BaseException::what() const noexcept { return state_->message.c_str(); }
std::string const& BaseException::message() const noexcept { return state_->message; }
std::u16string BaseException::wideMessage() const { return Platform::toUtf16(state_->message); }
std::string const& BaseException::sourceFile() const noexcept { return state_->file; }
unsigned BaseException::sourceLine() const noexcept { return state_->line; }
std::string const& BaseException::condition() const noexcept { return state_->condition; }
std::optional<std::uint64_t> BaseException::offset() const noexcept { return state_->offset; }

void BaseException::offset(std::uint64_t absoluteOffset) noexcept {
    if (!state_->offset)
        state_->offset = absoluteOffset;
}

InvalidLength::InvalidLength(std::string message, SourceLocation where)
    : InvalidLength(std::move(message), {}, where) {}

InvalidLength::InvalidLength(std::string message, std::vector<unsigned char> bytes, SourceLocation where)
    : BaseException(std::move(message), where),
      bytes_(std::make_shared<std::vector<unsigned char> const>(std::move(bytes))) {}

InvalidLength::~InvalidLength() = default;

std::vector<unsigned char> const& InvalidLength::bytes() const noexcept { return *bytes_; }

SystemError::SystemError(std::string const& fileName, std::string const& action, long code,
                         SourceLocation where)
    : BaseException(fileName + ": " + action + ": " + std::system_category().message(static_cast<int>(code)),
                    where),
      code_(code) {}

} // namespace MXF::Zelm::Exceptions
