/// Timecode as streams of pictures tell it.
#pragma once

#include "MXF/Zelm/Templates/Rational.h"
#include "MXF/Zelm/Utils/TimeCode.h"

namespace MXF::Zelm::GenericContainer {

/// The timecode of a picture at `rate`; undefined when no clock shows it.
Utils::TimeCode streamTimecode(Utils::TimeAddress const& address, bool dropFrame,
                               Templates::Rational<int> const& rate);

} // namespace MXF::Zelm::GenericContainer
