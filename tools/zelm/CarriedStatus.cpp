#include "CarriedStatus.h"

#include "PacketUnits.h"

#include <MXF/Zelm/DataIO/BufferSliceSource.h>
#include <MXF/Zelm/Essence/AES3/ChannelStatusLoader.h>
#include <MXF/Zelm/Essence/AES3/EightChannelElement.h>
#include <MXF/Zelm/Essence/AES3/S302M/Source.h>
#include <MXF/Zelm/Exceptions/Exceptions.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using namespace Essence::AES3;

namespace {

using Statuses = std::vector<ChannelStatus>;

/// The block start stands in both words of a pair of channels, or in the first one alone, as the preamble of
/// AES3 does.
Statuses statusesOfWords(DataIO::Chain const& element, unsigned channels) {
    constexpr std::size_t headSize = 4, wordSize = 4, words = EightChannelElement::channelCount;
    constexpr unsigned blockStart = 3, statusBit = 30, bitsAreValid = 0x80;
    auto const bytes = element.contiguous();
    if (bytes.size() < headSize || (bytes.data()[0] & bitsAreValid) == 0)
        return {};
    ChannelStatusLoader loaders[words];
    bool startsBlock = false;
    for (std::size_t at = headSize, i = 0; at + wordSize <= bytes.size(); at += wordSize, ++i) {
        auto& loader = loaders[i % words];
        auto const bit = [&](unsigned n) { return (bytes.data()[at + n / 8] >> n % 8 & 1u) != 0; };
        startsBlock = bit(blockStart) || (startsBlock && i % 2 != 0);
        if (!loader.isComplete())
            loader.push(bit(statusBit), startsBlock);
    }
    Statuses statuses;
    for (unsigned i = 0; i < channels && i < words && loaders[i].isComplete(); ++i)
        statuses.push_back(loaders[i].channelStatus());
    return statuses;
}

Statuses statusesOfPackets(DataIO::Chain const& unit, unsigned channels) {
    Statuses statuses;
    try {
        S302M::Source source(std::make_shared<DataIO::BufferSliceSource>(packetsOf(unit)),
                             S302M::Source::TwentyBits::In24Bits);
        source.skip(~std::uint64_t{0});
        for (unsigned i = 0; i < channels; ++i)
            if (auto const* const status = source.channelStatus(i))
                statuses.push_back(*status);
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const&) {
        return {}; // what reads the samples will tell
    }
    return statuses;
}

} // namespace

Statuses carriedStatuses(EssenceForm const& form, GenericContainer::Element const& element) {
    using Shape = EssenceForm::Shape;
    bool const isInPackets = form.isPackets() || form.shape == Shape::PacketSamples;
    if (element.data.size() != element.length || (form.shape != Shape::EightChannels && !isInPackets))
        return {};
    auto statuses = isInPackets ? statusesOfPackets(element.data, form.wave.channels)
                                : statusesOfWords(element.data, form.wave.channels);
    bool const isTold = std::any_of(statuses.begin(), statuses.end(),
                                    [](auto const& status) { return !(status == ChannelStatus()); });
    return isTold && statuses.size() == form.wave.channels ? statuses : Statuses();
}

} // namespace Zelm
