#include "MXF/Zelm/GenericContainer/S436M/FrameElement.h"

#include "MXF/Zelm/DataIO/SliceReader.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Templates/SafeCast.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace MXF::Zelm::GenericContainer::S436M {

namespace {

constexpr std::size_t headSize = 14;
constexpr std::size_t countSize = 2;
constexpr std::size_t mostPadding = 3;

constexpr std::uint64_t filledUp(std::uint64_t size) { return (size + 3) / 4 * 4; }

/// Bytes that so many samples need; 0 for a coding that is unknown.
std::uint64_t bytesOfSamples(SampleCoding coding, std::uint16_t count) {
    switch (bitsOf(coding)) {
    case 1:
        return (count + 7u) / 8;
    case 8:
        return count;
    case 10:
        return (count + 2u) / 3 * 4;
    default:
        return 0;
    }
}

class ElementParser {
public:
    ElementParser(ElementKind kind, DataIO::Chain const& value, unsigned lines)
        : kind_(kind), reader_(value), lines_(lines) {}

    FrameElement parse() {
        if (reader_.remaining() >= countSize)
            element_.packetCount = reader_.readInteger<std::uint16_t>();
        element_.packets.reserve(static_cast<std::size_t>(
            std::min<std::uint64_t>(element_.packetCount, reader_.remaining() / headSize)));
        while (element_.packets.size() < element_.packetCount && reader_.remaining() >= headSize)
            parsePacket();
        if (element_.packets.size() < element_.packetCount && reader_.remaining() > 0)
            element_.packets.push_back({{}, reader_.absoluteOffset(), FoundPacket::CutOff});
        element_.bytesBehind = bytesBehind();
        return std::move(element_);
    }

private:
    void parsePacket() {
        FoundPacket found;
        passOverPadding();
        found.offset = reader_.absoluteOffset();
        auto& stored = found.stored;
        stored.lineNumber = reader_.readInteger<std::uint16_t>();
        stored.wrapping = static_cast<WrappingType>(reader_.readInteger<std::uint8_t>());
        stored.coding = static_cast<SampleCoding>(reader_.readInteger<std::uint8_t>());
        stored.sampleCount = reader_.readInteger<std::uint16_t>();
        found.faults = faultsOf(stored);
        stored.payload = std::move(*reader_.readAligned(payloadLength(found)));
        if (bytesOfSamples(stored.coding, stored.sampleCount) > stored.payload.size())
            found.faults |= FoundPacket::TooManySamples;
        element_.packets.push_back(std::move(found));
    }

    unsigned faultsOf(StoredPacket const& stored) const {
        return (isKnown(stored.wrapping, kind_) ? 0u : FoundPacket::UnknownWrapping) |
               (isKnown(stored.coding, kind_) ? 0u : FoundPacket::UnknownCoding) |
               (stored.line() <= lines_ ? 0u : FoundPacket::LineOutOfRange);
    }

    /// Reads the two fields of the payload's length.
    std::uint64_t payloadLength(FoundPacket& found) {
        std::uint64_t const count = reader_.readInteger<std::uint32_t>();
        std::uint64_t const itemSize = reader_.readInteger<std::uint32_t>();
        if (itemSize != 1)
            found.faults |= FoundPacket::WrongItemSize;
        std::uint64_t const length = count * std::max<std::uint64_t>(itemSize, 1); // 32 bits each
        if (length <= reader_.remaining())
            return length;
        found.faults |= FoundPacket::PayloadTooLarge;
        std::uint64_t const bySamples =
            filledUp(bytesOfSamples(found.stored.coding, found.stored.sampleCount));
        return bySamples != 0 && bySamples <= reader_.remaining() ? bySamples : reader_.remaining();
    }

    std::uint64_t bytesBehind() {
        auto const rest = reader_.readChain(reader_.remaining());
        auto const isFill = [](DataIO::Slice const& slice) {
            return std::all_of(slice.begin(), slice.end(), [](unsigned char byte) { return byte == 0; });
        };
        return std::all_of(rest.begin(), rest.end(), isFill) ? 0 : rest.size();
    }

    /// Bytes that fill up behind a packet but are not counted: where no packet can begin here but one can
    /// right behind them.
    void passOverPadding() {
        if (isHead(0))
            return;
        for (std::size_t gap = 1; gap <= mostPadding; ++gap)
            if (isHead(gap)) {
                reader_.skip(gap);
                return;
            }
    }

    /// Whether a packet may begin so many bytes further on.
    bool isHead(std::size_t at) const {
        unsigned char head[mostPadding + headSize];
        if (reader_.peek(head, at + headSize) != at + headSize)
            return false;
        return isKnown(static_cast<WrappingType>(head[at + 2]), kind_) &&
               isKnown(static_cast<SampleCoding>(head[at + 3]), kind_) &&
               ByteCoders::decodeInteger<std::uint32_t>(head + at + 10) == 1;
    }

    ElementKind kind_;
    DataIO::SliceReader reader_;
    unsigned lines_;
    FrameElement element_;
};

void appendHead(StoredPacket const& packet, std::uint32_t payloadSize, unsigned char* out) {
    ByteCoders::codeInteger(packet.lineNumber, out);
    out[2] = static_cast<unsigned char>(packet.wrapping);
    out[3] = static_cast<unsigned char>(packet.coding);
    ByteCoders::codeInteger(packet.sampleCount, out + 4);
    ByteCoders::codeInteger(payloadSize, out + 6);
    ByteCoders::codeInteger(std::uint32_t{1}, out + 10);
}

std::uint64_t sizeOf(std::span<StoredPacket const> packets) {
    constexpr std::uint64_t mostBytes = std::numeric_limits<std::uint32_t>::max() - 3;
    std::uint64_t size = countSize;
    for (auto const& packet : packets) {
        if (packet.payload.size() > mostBytes)
            throw Exceptions::InvalidLength("A payload of " + std::to_string(packet.payload.size()) +
                                            " bytes is too large");
        size += headSize + filledUp(packet.payload.size());
    }
    return size;
}

} // namespace

const char* FoundPacket::faultText(Fault fault) {
    switch (fault) {
    case UnknownWrapping:
        return "has an unknown wrapping type";
    case UnknownCoding:
        return "has an unknown sample coding";
    case LineOutOfRange:
        return "has a line number out of range";
    case WrongItemSize:
        return "has payload items of another size than one byte";
    case PayloadTooLarge:
        return "has a payload that goes beyond the element";
    case TooManySamples:
        return "has more samples than its payload holds";
    case CutOff:
        return "is cut off";
    }
    return "";
}

FrameElement readFrameElement(ElementKind kind, DataIO::Chain const& value, unsigned lines) {
    return ElementParser(kind, value, lines).parse();
}

/// Packets are small: one block with all of them costs less than slices for each.
DataIO::Chain writeFrameElement(std::span<StoredPacket const> packets) {
    if (packets.size() > std::numeric_limits<std::uint16_t>::max())
        throw Exceptions::InvalidLength("An element holds 65535 packets at most, not " +
                                        std::to_string(packets.size()));
    std::vector<unsigned char> bytes(Templates::safeCast<std::size_t>(sizeOf(packets)));
    ByteCoders::codeInteger(static_cast<std::uint16_t>(packets.size()), bytes.data());
    unsigned char* out = bytes.data() + countSize;
    for (auto const& packet : packets) {
        auto const size = static_cast<std::uint32_t>(filledUp(packet.payload.size()));
        appendHead(packet, size, out);
        std::copy(packet.payload.begin(), packet.payload.end(), out + headSize);
        out += headSize + size;
    }
    return DataIO::Slice::adopt(std::move(bytes));
}

} // namespace MXF::Zelm::GenericContainer::S436M
