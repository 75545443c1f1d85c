/// One sound as several.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/PCMFormat.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <vector>

namespace MXF::Zelm::Essence::Converters {

/// Splits the channels of one source into groups, each a source of its own, so that what is read from one
/// file goes into several tracks. The file is read once: what one group is read ahead of another waits in
/// memory. A group whose source is let go takes no part any more. Used by one thread.
class MXFZELM_EXPORT ChannelSplitter : public Platform::Allocated {
public:
    static constexpr std::uint64_t defaultMostWaiting = std::uint64_t{64} << 20;

    /// Groups of channels of `source`, counted from 0; a channel may be in several. Reading a group throws
    /// Exceptions::InvalidChange when more than `mostWaiting` bytes wait for others. Throws
    /// Exceptions::InvalidValue for a format that is not valid, a group that is empty, or a channel that is
    /// not there.
    ChannelSplitter(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& format,
                    std::vector<std::vector<unsigned>> groups,
                    std::uint64_t mostWaiting = defaultMostWaiting);
    ~ChannelSplitter();

    /// Groups of one channel each.
    static std::vector<std::vector<unsigned>> single(unsigned channels);

    /// The source of a group, which the splitter hands over: to be taken once, null afterwards. It lives on
    /// without the splitter.
    Templates::SharedPtr<DataIO::SliceSource> take(std::size_t group);

private:
    class Shared;
    class Output;

    std::vector<Templates::SharedPtr<DataIO::SliceSource>> outputs_;
};

} // namespace MXF::Zelm::Essence::Converters
