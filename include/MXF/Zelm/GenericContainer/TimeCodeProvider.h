/// Where the timecode of a system item comes from.
#pragma once

#include "MXF/Zelm/Utils/TimeCodeExtended.h"

namespace MXF::Zelm::GenericContainer {

/// A host may write its own, for timecode that is read from somewhere.
class MXFZELM_EXPORT TimeCodeProvider : public Platform::Allocated {
public:
    TimeCodeProvider() = default;
    TimeCodeProvider(TimeCodeProvider const&) = delete;
    TimeCodeProvider& operator=(TimeCodeProvider const&) = delete;
    virtual ~TimeCodeProvider();

    /// The timecode of the next content package; undefined for none.
    virtual Utils::TimeCodeExtended nextTimeCode() = 0;
};

/// Timecode that counts on from a start.
class MXFZELM_EXPORT SequentialTimeCode : public TimeCodeProvider {
public:
    /// An undefined start gives undefined timecodes for ever.
    explicit SequentialTimeCode(Utils::TimeCode const& start) : next_(start) {}
    ~SequentialTimeCode() override;

    /// The frame count base, 1 to 65535 frames a second: the time is kept, and the frame as the same part of
    /// the second. Numbers are dropped as before where the base can. Throws Exceptions::InvalidValue for a
    /// base that is none.
    void roundedFrameRate(unsigned framesPerSecond);

    /// The start, then one frame on at each call.
    Utils::TimeCodeExtended nextTimeCode() override;

private:
    Utils::TimeCode next_;
};

} // namespace MXF::Zelm::GenericContainer
