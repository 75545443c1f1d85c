#include "MXF/Zelm/GenericContainer/TimeCodeProvider.h"

namespace MXF::Zelm::GenericContainer {

TimeCodeProvider::~TimeCodeProvider() = default;

SequentialTimeCode::~SequentialTimeCode() = default;

void SequentialTimeCode::roundedFrameRate(unsigned framesPerSecond) {
    if (!next_.isDefined() || next_.base().framesPerSecond() == framesPerSecond)
        return;
    auto const& old = next_.base();
    Utils::TimeBase const base(framesPerSecond, old.dropFrame() && Utils::TimeBase::canDrop(framesPerSecond));
    auto address = next_.address();
    address.frames = address.frames * framesPerSecond / old.framesPerSecond();
    while (!Utils::TimeCode::isValid(base, address)) // a dropped number: the first one behind it
        ++address.frames;
    next_ = Utils::TimeCode(base, address);
}

Utils::TimeCodeExtended SequentialTimeCode::nextTimeCode() {
    Utils::TimeCodeExtended const timecode(next_);
    ++next_;
    return timecode;
}

} // namespace MXF::Zelm::GenericContainer
