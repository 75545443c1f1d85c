#include "Interruption.h"

#include <csignal>

namespace Zelm {

namespace {

std::sig_atomic_t volatile wasInterrupted = 0;

extern "C" void noteInterruption(int) { wasInterrupted = 1; }

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
    if (wasInterrupted != 0)
        throw Interrupted();
}

} // namespace Zelm
