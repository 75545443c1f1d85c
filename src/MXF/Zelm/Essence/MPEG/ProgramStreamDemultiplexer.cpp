#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Essence/MPEG/Demultiplexer.h"
#include "MXF/Zelm/Essence/MPEG/DemultiplexerCore.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <utility>

namespace MXF::Zelm::Essence::MPEG {

namespace {

constexpr std::size_t codeSize = 4, lengthSize = 2;
constexpr std::size_t packSizeMPEG1 = 12, packSizeMPEG2 = 14;
constexpr std::size_t largestPacket = codeSize + lengthSize + 0xFFFF;

/// A start code of the system layer, not of video.
bool isSystemCode(const unsigned char* bytes) {
    return bytes[0] == 0 && bytes[1] == 0 && bytes[2] == 1 && bytes[3] >= ProgramEnd;
}

bool isVideo(std::uint8_t streamId) { return streamId >= 0xE0 && streamId <= 0xEF; }
bool isSound(std::uint8_t streamId) { return streamId >= 0xC0 && streamId <= 0xDF; }

bool isElementary(std::uint8_t streamId) {
    return isVideo(streamId) || isSound(streamId) || streamId == PrivateStream1 || streamId == 0xFD;
}

/// Stream types of a program stream map, by stream_id; nothing behind what does not fit in it.
///
///     00 00 01 BC    length (2)    flags (2)    info length (2), info    map length (2), map    CRC (4)
///     map: type (1), stream_id (1), info length (2), info
void readMap(const unsigned char* bytes, std::size_t size, std::uint8_t (&types)[256]) {
    auto const number = [&](std::size_t at) -> std::size_t {
        return at + 2 <= size ? ByteCoders::decodeInteger<std::uint16_t>(bytes + at) : 0;
    };
    constexpr std::size_t infoLengthAt = 8;
    std::size_t at = infoLengthAt + 2 + number(infoLengthAt);
    std::size_t const end = std::min(at + 2 + number(at), size);
    for (at += 2; at + 4 <= end; at += 4 + number(at + 2))
        types[bytes[at + 1]] = bytes[at];
}

/// The head of a sub-stream in private stream 1, as discs have it: the number of the sub-stream, 80 to 87 for
/// AC-3, that of frames that begin in the payload, and where the first of them does, 0 for nowhere.
///
///     sub-stream (1)    frames (1)    place (2), 1 for the byte behind it
constexpr std::size_t subStreamHeadSize = 4;

bool isAC3SubStream(std::uint8_t number) { return number >= 0x80 && number <= 0x87; }

/// Whether the payload begins with a head and has a frame of AC-3 where it says.
bool hasAC3Head(const unsigned char* payload, std::size_t size) {
    if (size < subStreamHeadSize || !isAC3SubStream(payload[0]))
        return false;
    std::size_t const at = subStreamHeadSize - 1 + ByteCoders::decodeInteger<std::uint16_t>(payload + 2);
    return at >= subStreamHeadSize && at + 2 <= size && payload[at] == 0x0B && payload[at + 1] == 0x77;
}

class ProgramStreamCore : public DemultiplexerCore {
public:
    ProgramStreamCore(Templates::SharedPtr<DataIO::SliceSource> source, std::size_t searchLimit,
                      std::uint64_t mostWaiting)
        : DemultiplexerCore(std::move(source), mostWaiting) {
        window().require(searchLimit);
        findStreams(window().data(), std::min(window().size(), searchLimit));
    }

private:
    /// Bytes of the unit that begins with a start code, as far as the `size` bytes say; 0 when they are too
    /// few.
    static std::size_t unitSize(const unsigned char* bytes, std::size_t size);
    void findStreams(const unsigned char* bytes, std::size_t size);
    void findSubStream(const unsigned char* packet, std::size_t size);
    void listStreams(std::vector<std::uint8_t> const& order, std::uint8_t const (&types)[256]);
    StreamInfo infoOf(std::uint8_t streamId, std::uint8_t type) const;

    bool step() override;
    bool passUnknown();
    void takeUnit(std::size_t size);
    bool continueOpen();
    PESCollector* collectorOf(std::uint8_t streamId, std::uint8_t subStream);
    void takePrivate(std::size_t size);

    bool isMPEG1_ = false;
    std::vector<std::uint8_t> subStreams_; // of AC-3, in the order of their finding
    PESCollector* open_ = nullptr;         // takes a packet that does not say where it ends
};

std::size_t ProgramStreamCore::unitSize(const unsigned char* bytes, std::size_t size) {
    std::uint8_t const code = bytes[codeSize - 1];
    if (code == ProgramEnd)
        return codeSize;
    if (code != PackHeader)
        return size < codeSize + lengthSize
                   ? 0
                   : codeSize + lengthSize + ByteCoders::decodeInteger<std::uint16_t>(bytes + codeSize);
    if (size <= codeSize)
        return 0;
    if (bytes[codeSize] >> 6 != 1)
        return packSizeMPEG1;
    return size < packSizeMPEG2 ? 0 : packSizeMPEG2 + (bytes[packSizeMPEG2 - 1] & 7u);
}

void ProgramStreamCore::findStreams(const unsigned char* bytes, std::size_t size) {
    bool found[256] = {};
    std::uint8_t types[256] = {};
    std::vector<std::uint8_t> order;
    for (std::size_t at = 0; size - at >= codeSize;) {
        std::size_t const unit = isSystemCode(bytes + at) ? unitSize(bytes + at, size - at) : 0;
        std::uint8_t const code = bytes[at + codeSize - 1];
        if (unit == 0) {
            ++at;
            continue;
        }
        if (code == PackHeader)
            isMPEG1_ = bytes[at + codeSize] >> 6 != 1;
        if (code == ProgramStreamMap)
            readMap(bytes + at, std::min(unit, size - at), types);
        if (isElementary(code) && !std::exchange(found[code], true))
            order.push_back(code);
        if (code == PrivateStream1 && types[code] == 0)
            findSubStream(bytes + at, std::min(unit, size - at));
        at += std::min(unit, size - at);
    }
    if (order.empty())
        throw Exceptions::InvalidFormat("There is no packet of an elementary stream in the first " +
                                        std::to_string(size) + " bytes");
    listStreams(order, types);
}

/// The payload of a packet; its size is 0 where it cannot be told.
std::pair<const unsigned char*, std::size_t> payloadOf(const unsigned char* packet, std::size_t size) {
    try {
        auto const header = PESHeader::read(packet, size);
        if (header && !header->isScrambled)
            return {packet + header->size, size - header->size};
    } catch (Exceptions::InvalidFormat const&) {
        // Told when the packet is read.
    }
    return {packet, 0};
}

void ProgramStreamCore::findSubStream(const unsigned char* packet, std::size_t size) {
    auto const [payload, count] = payloadOf(packet, size);
    if (hasAC3Head(payload, count) &&
        std::find(subStreams_.begin(), subStreams_.end(), payload[0]) == subStreams_.end())
        subStreams_.push_back(payload[0]);
}

void ProgramStreamCore::listStreams(std::vector<std::uint8_t> const& order,
                                    std::uint8_t const (&types)[256]) {
    std::vector<StreamInfo> list;
    for (std::uint8_t const streamId : order) {
        list.push_back(infoOf(streamId, types[streamId]));
        if (streamId != PrivateStream1 || subStreams_.empty())
            continue;
        list.back().coding = Coding::AC3;
        for (std::uint8_t const number : subStreams_) {
            if (number != subStreams_.front())
                list.push_back(list.back());
            list.back().subStream = number;
        }
    }
    streams(std::move(list));
}

/// Without a map, the stream_id and the kind of packs say what it is.
StreamInfo ProgramStreamCore::infoOf(std::uint8_t streamId, std::uint8_t type) const {
    StreamInfo info;
    info.id = streamId;
    info.streamType = type;
    info.coding = codingOf(type, 0);
    if (info.coding == Coding::Unknown && isVideo(streamId))
        info.coding = isMPEG1_ ? Coding::MPEG1Video : Coding::MPEG2Video;
    else if (info.coding == Coding::Unknown && isSound(streamId))
        info.coding = Coding::MPEGAudio;
    return info;
}

PESCollector* ProgramStreamCore::collectorOf(std::uint8_t streamId, std::uint8_t subStream) {
    for (std::size_t i = 0; i < streams().size(); ++i)
        if (streams()[i].id == streamId && streams()[i].subStream == subStream)
            return &collector(i);
    return nullptr;
}

bool ProgramStreamCore::step() {
    if (open_ != nullptr)
        return continueOpen();
    if (!window().require(largestPacket) && window().size() == 0)
        return false;
    if (window().size() < codeSize || !isSystemCode(window().data()))
        return passUnknown();
    std::size_t const size = unitSize(window().data(), window().size());
    if (size == 0 || size > window().size())
        fault(window().offset(), "A unit of the program stream is cut off");
    takeUnit(size == 0 ? window().size() : std::min(size, window().size()));
    return true;
}

/// Passes over bytes up to the next start code.
bool ProgramStreamCore::passUnknown() {
    std::size_t count = 1;
    while (count < window().size() &&
           (window().size() - count < codeSize || !isSystemCode(window().data() + count)))
        ++count;
    fault(window().offset(), std::to_string(count) + " bytes are no part of a program stream");
    window().advance(count);
    return true;
}

void ProgramStreamCore::takeUnit(std::size_t size) {
    auto const* const bytes = window().data();
    std::uint8_t const code = bytes[codeSize - 1];
    if (code == PrivateStream1 && !subStreams_.empty())
        takePrivate(size);
    else if (auto* const collector = isElementary(code) ? collectorOf(code, 0) : nullptr) {
        collector->begin(window().offset(), faultSink());
        collector->push(bytes, size, faultSink());
        bool const isOpen = isVideo(code) && size == codeSize + lengthSize;
        if (isOpen)
            open_ = collector;
        else
            collector->end(faultSink());
    }
    window().advance(size);
}

/// A packet of a sub-stream, whose head is left out. Those that are no AC-3 are passed over.
void ProgramStreamCore::takePrivate(std::size_t size) {
    auto const* const packet = window().data();
    auto const [payload, count] = payloadOf(packet, size);
    if (count < subStreamHeadSize)
        return fault(window().offset(), "A packet of private stream 1 has no head of a sub-stream");
    auto* const collector = collectorOf(PrivateStream1, payload[0]);
    if (collector == nullptr)
        return;
    collector->begin(window().offset(), faultSink());
    collector->push(packet, size - count, faultSink());
    collector->pass(subStreamHeadSize);
    collector->push(payload + subStreamHeadSize, count - subStreamHeadSize, faultSink());
    collector->end(faultSink());
}

/// Goes on with a packet without a length, which ends where the next unit begins.
bool ProgramStreamCore::continueOpen() {
    bool const isLast = !window().require(largestPacket);
    std::size_t const size = window().size();
    std::size_t end = 0;
    while (end + codeSize <= size && !isSystemCode(window().data() + end))
        ++end;
    bool const endsHere = end + codeSize <= size;
    if (!endsHere && isLast)
        end = size;
    open_->push(window().data(), end, faultSink());
    window().advance(end);
    if (endsHere || isLast) {
        open_->end(faultSink());
        open_ = nullptr;
    }
    return true;
}

} // namespace

ProgramStreamDemultiplexer::ProgramStreamDemultiplexer(Templates::SharedPtr<DataIO::SliceSource> source,
                                                       std::size_t searchLimit, std::uint64_t mostWaiting)
    : Demultiplexer(std::make_shared<ProgramStreamCore>(std::move(source), searchLimit, mostWaiting)) {}

} // namespace MXF::Zelm::Essence::MPEG
