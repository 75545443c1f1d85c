/// The licence hook: a host may install a licence manager that is asked before the library starts a job.
#pragma once

#include "MXF/Zelm/Platform/Export.h"

#include <string_view>

namespace MXF::Zelm::Platform {

/// What a host implements to grant or refuse features.
class MXFZELM_EXPORT LicenseManager {
public:
    virtual ~LicenseManager();

    /// True when `feature` may be used. Features: "MXFIO.Reader" (opening a file).
    virtual bool isLicensed(std::string_view feature) = 0;
};

/// Asks the installed licence manager.
class MXFZELM_EXPORT Licenser {
public:
    /// Installs a licence manager (null: none) and returns the one installed before. It is not owned.
    static LicenseManager* licenseManager(LicenseManager* manager) noexcept;

    /// Throws Exceptions::InvalidLicense when a licence manager is installed and refuses `feature`; without
    /// one nothing is refused.
    static void check(std::string_view feature);
};

} // namespace MXF::Zelm::Platform
