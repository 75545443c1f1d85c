/// The file operations that serve when a host passes none.
#pragma once

#include "MXF/Zelm/MXFIO/FileOperations.h"

namespace MXF::Zelm::MXFIO {

/// `operations`, or those of the system when it is null.
FileOperations* orSystem(FileOperations* operations);

/// A name in the same folder that nobody else uses: eight hexadecimal digits are appended.
std::string temporaryNameFor(std::string const& name);

/// Removes a file that is no longer wanted. What the system says to that is of no interest: an error is on
/// its way already.
void removeQuietly(FileOperations& operations, std::string const& name) noexcept;

} // namespace MXF::Zelm::MXFIO
