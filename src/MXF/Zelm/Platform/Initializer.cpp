#include "MXF/Zelm/Platform/Initializer.h"

#include <vector>

namespace MXF::Zelm {

namespace {

/// Function statics: made on first use, so that the order of initialisation does not matter.
std::vector<void (*)()>& registered() {
    static std::vector<void (*)()> functions;
    return functions;
}

} // namespace

Initializer& Initializer::instance() {
    static Initializer initializer;
    return initializer;
}

std::recursive_mutex& Initializer::singletonMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

void Initializer::registerSingleton(void (*destroy)()) { registered().push_back(destroy); }

void Initializer::shutdown() {
    std::lock_guard const lock(singletonMutex());
    while (!registered().empty()) {
        auto const destroy = registered().back();
        registered().pop_back();
        destroy();
    }
}

} // namespace MXF::Zelm
