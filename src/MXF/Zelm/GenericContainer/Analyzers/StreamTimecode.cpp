#include "MXF/Zelm/GenericContainer/Analyzers/StreamTimecode.h"

namespace MXF::Zelm::GenericContainer {

Utils::TimeCode streamTimecode(Utils::TimeAddress const& address, bool dropFrame,
                               Templates::Rational<int> const& rate) {
    if (!rate.isKnown())
        return {};
    auto const frames = Utils::TimeBase::ofEditRate(rate, false).framesPerSecond();
    Utils::TimeBase const base(frames, dropFrame && Utils::TimeBase::canDrop(frames));
    return Utils::TimeCode::isValid(base, address) ? Utils::TimeCode(base, address) : Utils::TimeCode();
}

} // namespace MXF::Zelm::GenericContainer
