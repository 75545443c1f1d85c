#include "MXF/Zelm/GenericContainer/FutureUpdater.h"

namespace MXF::Zelm::MXFIO {

FutureUpdater::~FutureUpdater() = default;

} // namespace MXF::Zelm::MXFIO
