#include "MXF/Zelm/Essence/AES3/S302M/Source.h"

#include "MXF/Zelm/Essence/AES3/S302M/SamplePacking.h"
#include "MXF/Zelm/Essence/AES3/TwentyBits.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>
#include <utility>

namespace MXF::Zelm::Essence::AES3::S302M {

Source::Source(Templates::SharedPtr<DataIO::SliceSource, Templates::LockedCounter> source,
               TwentyBits twentyBits)
    : source_(std::move(source)), twentyBits_(twentyBits) {}

Source::~Source() = default;

bool Source::preload() { return packing_ || readHeader(); }

std::size_t Source::sampleSize() const { return packing_ ? packing_->pcmSize() : 0; }

std::uint64_t Source::readSamples(std::uint64_t count, DataIO::Chain& chain) {
    if (count == 0 || !preload())
        return 0;
    std::uint64_t const size = sampleSize();
    std::uint64_t const most = ~std::uint64_t{0} / size;
    return read((count < most ? count : most) * size, chain) / size;
}

ChannelStatus const* Source::channelStatus(unsigned channel) const {
    return channel < statuses_.size() && statuses_[channel] ? &*statuses_[channel] : nullptr;
}

/// Reads the next header; false at the end of the stream.
bool Source::readHeader() {
    nextOffset_ = source_->absoluteOffset();
    DataIO::Chain bytes;
    std::uint64_t const count = source_->read(Header::size(), bytes);
    if (count == 0)
        return false;
    if (count < Header::size())
        throw Exceptions::at(nextOffset_, Exceptions::InvalidLength("An AES3 data header of " +
                                                                    std::to_string(count) + " bytes"));
    Header const header(bytes.contiguous().data());
    try {
        packing_ ? checkHeader(header) : takeFormat(header);
    } catch (Exceptions::BaseException& failure) {
        failure.offset(nextOffset_);
        throw;
    }
    next_ = header;
    return true;
}

void Source::checkHeader(Header const& header) const {
    if (header.numberOfChannels() != info_.channels || header.bitsPerSample() != info_.bitsPerSample)
        throw Exceptions::InvalidStructure("An AES3 packet of " + std::to_string(header.numberOfChannels()) +
                                           " channels of " + std::to_string(header.bitsPerSample()) +
                                           " bits, the first had " + std::to_string(info_.channels) + " of " +
                                           std::to_string(info_.bitsPerSample));
}

void Source::takeFormat(Header const& header) {
    AES3Info const info = {header.numberOfChannels(), header.bitsPerSample(), {48000, 1}};
    if (info.bitsPerSample == 20 && twentyBits_ == TwentyBits::Refuse)
        refuseTwentyBits();
    packing_ = std::make_unique<SamplePacking>(info.bitsPerSample, info.channels);
    info_ = info;
    loaders_.resize(info.channels);
    statuses_.resize(info.channels);
}

bool Source::produce(DataIO::Chain& chain) {
    if (!next_ && !readHeader())
        return false;
    std::uint64_t const payloadLength = std::exchange(next_, std::nullopt)->audioPacketSize();
    if (payloadLength % packing_->packedSize() != 0)
        throw Exceptions::at(
            nextOffset_,
            Exceptions::InvalidStructure(
                Exceptions::Condition{"payloadLength % bytesPerSample_ == 0"},
                "A AES packet contains a number of bytes that is not a multiple of the sample size."));
    if (payloadLength == 0)
        return true;
    DataIO::Chain payload;
    if (std::uint64_t const count = source_->read(payloadLength, payload); count < payloadLength)
        throw Exceptions::at(nextOffset_,
                             Exceptions::InvalidLength("An AES3 packet of " + std::to_string(payloadLength) +
                                                       " bytes, " + std::to_string(count) + " left"));
    auto const packed = payload.contiguous();
    std::size_t const instants = packed.size() / packing_->packedSize();
    auto block = blocks_.block(instants * packing_->pcmSize());
    packing_->unpack(packed.data(), instants, block->bytes());
    loadChannelStatus(packed.data(), instants);
    chain.append(DataIO::Slice(std::move(block), 0, instants * packing_->pcmSize()));
    return true;
}

/// Gathers channel status until a block is whole. The block start stands in the first subframe of a pair.
void Source::loadChannelStatus(const unsigned char* packed, std::size_t instants) {
    for (unsigned channel = 0; channel < info_.channels; ++channel) {
        auto& loader = loaders_[channel];
        for (std::size_t i = 0; i < instants && !loader.isComplete(); ++i)
            loader.push(packing_->flag(packed, i, channel, SamplePacking::ChannelStatusBit),
                        packing_->flag(packed, i, channel & ~1u, SamplePacking::BlockStart));
        if (!loader.isComplete())
            continue;
        statuses_[channel] = loader.channelStatus();
        loader.reset();
    }
}

} // namespace MXF::Zelm::Essence::AES3::S302M
