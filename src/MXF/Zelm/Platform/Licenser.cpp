#include "MXF/Zelm/Platform/Licenser.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <atomic>
#include <string>

namespace MXF::Zelm::Platform {

namespace {
std::atomic<LicenseManager*> installed{nullptr};
}

LicenseManager::~LicenseManager() = default;

LicenseManager* Licenser::licenseManager(LicenseManager* manager) noexcept {
    return installed.exchange(manager);
}

void Licenser::check(std::string_view feature) {
    LicenseManager* const manager = installed.load(std::memory_order_acquire);
    if (manager != nullptr && !manager->isLicensed(feature))
        throw Exceptions::InvalidLicense("The licence does not cover " + std::string(feature));
}

} // namespace MXF::Zelm::Platform
