#include "Progress.h"

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

Progress::Progress(std::string action, std::uint64_t total)
    : action_(std::move(action)),
      total_(total),
      active_(total != 0 && errorsGoToTerminal()),
      next_(Clock::now() + std::chrono::seconds(1)) {}

Progress::~Progress() {
    if (shown_)
        std::cerr << "\r" << std::string(action_.size() + 6, ' ') << "\r" << std::flush;
}

void Progress::look(std::uint64_t done) {
    auto const now = Clock::now();
    if (now < next_)
        return;
    next_ = now + std::chrono::milliseconds(200);
    shown_ = true;
    auto const percent = static_cast<unsigned>(100 * static_cast<double>(done) / static_cast<double>(total_));
    std::cerr << "\r" << action_
              << (percent < 10    ? "   "
                  : percent < 100 ? "  "
                                  : " ")
              << percent << "%" << std::flush;
}

} // namespace Zelm
