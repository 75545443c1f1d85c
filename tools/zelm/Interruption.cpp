#include "Interruption.h"

#include <csignal>

namespace Zelm {

namespace {

std::sig_atomic_t volatile interruption = 0;

/// The next one ends the program, which may be waiting for a pipe.
extern "C" void noteInterruption(int signal) {
    interruption = 1;
    std::signal(signal, SIG_DFL);
}

} // namespace

InterruptionGuard::InterruptionGuard()
    : interrupt_(std::signal(SIGINT, noteInterruption)), terminate_(std::signal(SIGTERM, noteInterruption)) {}

InterruptionGuard::~InterruptionGuard() {
    if (interrupt_ != SIG_ERR)
        std::signal(SIGINT, interrupt_);
    if (terminate_ != SIG_ERR)
        std::signal(SIGTERM, terminate_);
}

void InterruptionGuard::check() {
    if (wasInterrupted())
        throw Interrupted();
}

bool InterruptionGuard::wasInterrupted() { return interruption != 0; }

} // namespace Zelm
