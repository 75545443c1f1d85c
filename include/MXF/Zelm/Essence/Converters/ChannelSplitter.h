/// Some channels of interleaved samples each, as sources of their own, out of one that is read once.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <vector>

namespace MXF::Zelm::Essence::Converters {

/// Outputs that are read in turn, as a multiplexer does, keep about as many samples as are read at once. What
/// one output is read ahead of another waits in memory. An output that is no longer there keeps nothing.
/// Samples stay as they are.
///
///     input      L R C S | L R C S | …
///     range(0, 2)       L R | L R | …
///     group({3, 0})     S L | S L | …
///
/// Not locked: a splitter and all its outputs, one thread.
class MXFZELM_EXPORT ChannelSplitter : public Platform::Allocated {
public:
    static constexpr std::uint64_t defaultMostWaiting = std::uint64_t{64} << 20;

    /// Samples of 1 to 65535 channels, of 1 to 8 bytes each. `mostWaiting` is what may wait for all outputs
    /// together, in bytes. Throws Exceptions::InvalidValue for others.
    ChannelSplitter(Templates::SharedPtr<DataIO::SliceSource> samples, unsigned channels,
                    std::size_t sampleBytes, std::uint64_t mostWaiting = defaultMostWaiting);
    ~ChannelSplitter();

    /// The samples of `channels`, counted from 0, in this order, from what no output was given yet. A channel
    /// may be in several outputs. Bytes at the end that make no whole instant are left out. The output may
    /// outlive the splitter. Reading, and asking for its end, throw Exceptions::InvalidStructure when more
    /// than `mostWaiting` bytes wait for other outputs. Throws Exceptions::InvalidValue for none, or channels
    /// that are not there.
    Templates::SharedPtr<DataIO::SliceSource> group(std::vector<unsigned> const& channels);

    /// The same of `count` channels from `first` on.
    Templates::SharedPtr<DataIO::SliceSource> range(unsigned first, unsigned count);

private:
    class Input;
    class Output;

    Templates::SharedPtr<Input> input_;
};

} // namespace MXF::Zelm::Essence::Converters
