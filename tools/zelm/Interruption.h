/// The user's wish that the program end, as something that long work can look at.
#pragma once

#include <stdexcept>

namespace Zelm {

struct Interrupted : std::runtime_error {
    Interrupted() : std::runtime_error("interrupted") {}
};

/// While one of these lives, an interruption (SIGINT, SIGTERM) does not end the program: `check` throws.
class InterruptionGuard {
public:
    InterruptionGuard();
    ~InterruptionGuard();
    InterruptionGuard(InterruptionGuard const&) = delete;
    InterruptionGuard& operator=(InterruptionGuard const&) = delete;

    /// Throws Interrupted.
    static void check();

    /// For who ends in another way.
    static bool wasInterrupted();

private:
    using Handler = void (*)(int);
    Handler interrupt_, terminate_;
};

} // namespace Zelm
