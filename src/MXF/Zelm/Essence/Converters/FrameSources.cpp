#include "MXF/Zelm/Essence/Converters/FrameSources.h"

#include "MXF/Zelm/Essence/AES3/SubframeWords.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <string>
#include <utility>

namespace MXF::Zelm::Essence::Converters {

namespace {

using AES3::elementChannels;

/// Up to `instants` whole instants.
DataIO::Chain readInstants(DataIO::SliceSource& source, std::uint64_t instants, std::size_t size) {
    DataIO::Chain pcm;
    source.read(instants * size, pcm);
    return pcm.splitFront(pcm.size() - pcm.size() % size);
}

} // namespace

PCMToS302M::PCMToS302M(Templates::SharedPtr<DataIO::SliceSource> source, AES3::S302M::PacketWriter writer)
    : source_(std::move(source)), writer_(std::move(writer)) {}

PCMToS302M::~PCMToS302M() = default;

bool PCMToS302M::produce(DataIO::Chain& chain) {
    auto const pcm = readInstants(*source_, writer_.nextSampleCount(), writer_.packing().pcmSize());
    if (!pcm.empty())
        chain.append(writer_.packet(pcm));
    return !pcm.empty();
}

PCMToS331M::PCMToS331M(Templates::SharedPtr<DataIO::SliceSource> source, AES3::EightChannelWriter writer)
    : source_(std::move(source)), writer_(std::move(writer)) {}

PCMToS331M::~PCMToS331M() = default;

bool PCMToS331M::produce(DataIO::Chain& chain) {
    auto const pcm = readInstants(*source_, writer_.nextSampleCount(), writer_.format().instantSize());
    if (!pcm.empty())
        chain.append(writer_.element(pcm));
    return !pcm.empty();
}

S331MToPCM::S331MToPCM(Templates::SharedPtr<DataIO::SliceSource> source, PCMFormat const& format)
    : source_(std::move(source)), format_(format) {
    requireValid(format);
    if (format.channels > elementChannels || format.bitsPerSample > 24 ||
        format.byteOrder != PCMFormat::ByteOrder::Little)
        throw Exceptions::InvalidValue(
            "An AES3 element of eight channels gives up to 8 of up to 24 bits, little-endian");
}

S331MToPCM::~S331MToPCM() = default;

DataIO::Slice S331MToPCM::readExactly(std::uint64_t size, std::uint64_t start) {
    DataIO::Chain bytes;
    if (std::uint64_t const count = source_->read(size, bytes); count < size)
        throw Exceptions::at(start,
                             Exceptions::InvalidLength(
                                 "An AES3 element of eight channels is cut off: " + std::to_string(size) +
                                 " bytes wanted, " + std::to_string(count) + " left"));
    return bytes.contiguous();
}

bool S331MToPCM::produce(DataIO::Chain& chain) {
    constexpr std::size_t headSize = 4;
    std::uint64_t const start = source_->absoluteOffset();
    if (source_->endOfStream())
        return false;
    auto const head = readExactly(headSize, start);
    auto const instants = static_cast<std::size_t>(head.data()[1] | head.data()[2] << 8);
    if (instants == 0)
        return true;
    auto const words = readExactly(std::uint64_t{instants} * elementChannels * AES3::subframeSize, start);
    std::size_t const size = instants * format_.instantSize();
    auto block = blocks_.block(size);
    AES3::unpackElement(format_, words.data(), instants, head.data()[3], block->bytes());
    chain.append(DataIO::Slice(std::move(block), 0, size));
    return true;
}

} // namespace MXF::Zelm::Essence::Converters
