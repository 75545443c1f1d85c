/// Some channels of interleaved samples each, as sources of their own, out of one that is read once.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

namespace MXF::Zelm::Essence::Converters {

/// Outputs that are read in turn, as a multiplexer does, keep about as many samples as are read at once. What
/// one output is read ahead of another waits in memory. An output that is no longer there keeps nothing.
///
///     input      L R C S | L R C S | …
///     channels(0, 2)       L R | L R | …
///     channels(3, 1)       S | S | …
///
/// Not locked: a splitter and all its outputs, one thread.
class MXFZELM_EXPORT ChannelSplitter : public Platform::Allocated {
public:
    /// What one output may be ahead of another, in bytes of the other's samples.
    static constexpr std::uint64_t largestLead = std::uint64_t{64} << 20;

    /// Samples of `channels` channels of `sampleBytes` bytes, 1 or more each. Throws Exceptions::InvalidValue
    /// for none.
    ChannelSplitter(Templates::SharedPtr<DataIO::SliceSource> samples, unsigned channels,
                    unsigned sampleBytes);
    ~ChannelSplitter();

    /// The samples of `count` channels from `first` on, counted from 0, from what is read next. Bytes at the
    /// end that make no whole instant are left out. The output may outlive the splitter. Reading throws
    /// Exceptions::InvalidStructure when it would be further ahead than `largestLead`. Throws
    /// Exceptions::InvalidValue for channels that are not there.
    Templates::SharedPtr<DataIO::SliceSource> channels(unsigned first, unsigned count);

private:
    class Input;
    class Output;

    Templates::SharedPtr<Input> input_;
};

} // namespace MXF::Zelm::Essence::Converters
