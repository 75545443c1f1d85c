#include "MXF/Zelm/Essence/Converters/PCMConverter.h"

#include "MXF/Zelm/Essence/Converters/SampleMover.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace MXF::Zelm::Essence::Converters {

namespace {

void requireChannels(std::size_t found, unsigned wanted) {
    if (found != wanted)
        throw Exceptions::InvalidValue(std::to_string(found) + " channels for a format of " +
                                       std::to_string(wanted));
}

} // namespace

PCMConverter::PCMConverter(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& from,
                           PCMFormat const& to)
    : BlockConverter(std::move(source), from.instantSize(), to.instantSize()),
      to_(to),
      mover_(std::make_unique<SampleMover>(from, to)) {
    requireChannels(from.channels, to.channels);
}

PCMConverter::PCMConverter(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& from,
                           PCMFormat const& to, std::vector<unsigned> channels)
    : BlockConverter(std::move(source), from.instantSize(), to.instantSize()),
      to_(to),
      channels_(std::move(channels)),
      mover_(std::make_unique<SampleMover>(from, to)) {
    requireChannels(channels_.size(), to.channels);
    for (unsigned const channel : channels_)
        if (channel >= from.channels && channel != silence)
            throw Exceptions::InvalidValue("Channel " + std::to_string(channel) + " of " +
                                           std::to_string(from.channels));
}

PCMConverter::~PCMConverter() = default;

void PCMConverter::convert(const unsigned char* in, std::size_t units, unsigned char* out) {
    if (channels_.empty())
        return mover_->moveAll(in, units, out);
    if (std::find(channels_.begin(), channels_.end(), silence) != channels_.end())
        std::memset(out, 0, units * to_.instantSize());
    for (std::size_t i = 0; i < channels_.size(); ++i)
        if (channels_[i] != silence)
            mover_->move(in, channels_[i], units, out, static_cast<unsigned>(i));
}

} // namespace MXF::Zelm::Essence::Converters
