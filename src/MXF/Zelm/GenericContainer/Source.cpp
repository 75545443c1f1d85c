#include "MXF/Zelm/GenericContainer/Source.h"

namespace MXF::Zelm::GenericContainer {

Source::~Source() = default;

} // namespace MXF::Zelm::GenericContainer
