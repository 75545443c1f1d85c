#include "Progress.h"

#include "Text.h"

#include <algorithm>
#include <iostream>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace Zelm {

namespace {

bool errorsGoToTerminal() {
#if defined(_WIN32)
    return ::_isatty(2) != 0;
#else
    return ::isatty(2) != 0;
#endif
}

} // namespace

Progress::Progress(std::string action, std::uint64_t total, bool ofBytes)
    : action_(std::move(action)),
      total_(total),
      ofBytes_(ofBytes),
      active_(total != 0 && errorsGoToTerminal()),
      start_(Clock::now()),
      next_(start_ + std::chrono::seconds(1)) {}

Progress::~Progress() {
    if (width_ != 0)
        std::cerr << "\r" << std::string(width_, ' ') << "\r" << std::flush;
}

void Progress::look(std::uint64_t done) {
    auto const now = Clock::now();
    if (now < next_)
        return;
    next_ = now + std::chrono::milliseconds(200);
    auto const percent =
        static_cast<unsigned>(std::min(100.0, 100 * static_cast<double>(done) / static_cast<double>(total_)));
    std::string line = action_ +
                       (percent < 10    ? "   "
                        : percent < 100 ? "  "
                                        : " ") +
                       std::to_string(percent) + "%" + pace(now, done);
    std::size_t const width = displayWidth(line);
    line.append(width_ > width ? width_ - width : 0, ' ');
    width_ = std::max(width, width_);
    std::cerr << "\r" << line << std::flush;
}

/// Speed and time left, where bytes are counted.
std::string Progress::pace(Clock::time_point now, std::uint64_t done) const {
    std::chrono::duration<double> const spent = now - start_;
    if (!ofBytes_ || done == 0 || done > total_)
        return {};
    double const speed = static_cast<double>(done) / spent.count();
    auto const left = static_cast<std::uint64_t>(static_cast<double>(total_ - done) / speed);
    return "  " + humanSize(static_cast<std::uint64_t>(speed)) + "/s  " + std::to_string(left / 60) + ":" +
           (left % 60 < 10 ? "0" : "") + std::to_string(left % 60) + " left";
}

} // namespace Zelm
