#include "MXF/Zelm/Essence/JPEG2000/CodestreamCutter.h"

#include "MXF/Zelm/Essence/JPEG2000/CodestreamHeader.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <sstream>

namespace MXF::Zelm::Essence::JPEG2000 {

namespace {

constexpr std::uint64_t readSize = std::uint64_t{256} << 10;

constexpr std::uint64_t markerSize = 2;

/// SOT: marker, length, tile, length of the tile-part, its number, the number of tile-parts.
constexpr std::uint64_t tilePartHeaderSize = 12, tilePartLengthAt = 6;

/// What a codestream and a JP2 file begin with.
constexpr std::uint32_t codestreamStart = 0xFF4FFF51;

constexpr std::uint32_t boxType(const char (&name)[5]) {
    std::uint32_t type = 0;
    for (std::size_t i = 0; i < 4; ++i)
        type = type << 8 | static_cast<unsigned char>(name[i]);
    return type;
}

constexpr std::uint32_t codestreamBox = boxType("jp2c"), headerBox = boxType("jp2h"),
                        colourBox = boxType("colr");

/// Length and type; a length of 1 stands for eight bytes of length behind them, 0 for "to the end".
constexpr std::uint64_t boxHeaderSize = 8, longBoxHeaderSize = 16;

/// Types are four characters.
bool isBoxType(std::uint32_t type) {
    for (unsigned shift = 0; shift < 32; shift += 8)
        if (unsigned const letter = type >> shift & 0xFF; letter < 0x20 || letter > 0x7E)
            return false;
    return true;
}

} // namespace

CodestreamCutter::CodestreamCutter(Templates::SharedPtr<DataIO::SliceSource> source)
    : source_(std::move(source)), start_(source_->absoluteOffset()) {}

CodestreamCutter::~CodestreamCutter() = default;

bool CodestreamCutter::isCodestream(const unsigned char* bytes, std::size_t size) {
    static constexpr unsigned char codestream[] = {0xFF, 0x4F, 0xFF, 0x51};
    static constexpr unsigned char file[] = {0x00, 0x00, 0x00, 0x0C, 0x6A, 0x50, 0x20, 0x20};
    auto const beginsWith = [&](auto const& start) {
        return size >= sizeof start && std::equal(std::begin(start), std::end(start), bytes);
    };
    return beginsWith(codestream) || beginsWith(file);
}

/// Reads until `size` bytes are there; false when the stream ends before.
bool CodestreamCutter::require(std::uint64_t size) {
    if (size > largestUnit)
        throw Exceptions::at(start_, Exceptions::InvalidFormat("JPEG 2000: no codestream ends within " +
                                                               std::to_string(largestUnit) + " bytes"));
    while (bytes_.size() < size)
        if (source_->read(std::max(readSize, size - bytes_.size()), bytes_) == 0)
            return false;
    return true;
}

/// A number of up to four bytes, which are there.
std::uint32_t CodestreamCutter::integerAt(std::uint64_t position, unsigned bytes) const {
    unsigned char buffer[4] = {};
    bytes_.copyTo(buffer, bytes, position);
    std::uint32_t value = 0;
    for (unsigned i = 0; i < bytes; ++i)
        value = value << 8 | buffer[i];
    return value;
}

/// Passes over up to `size` bytes and returns how many; fewer only at the end of the stream.
std::uint64_t CodestreamCutter::drop(std::uint64_t size) {
    std::uint64_t dropped = std::min(size, bytes_.size());
    bytes_.splitFront(dropped);
    if (dropped < size)
        dropped += source_->skip(size - dropped);
    start_ += dropped;
    return dropped;
}

/// Ends the stream before what begins at `offset`.
bool CodestreamCutter::endAmid(const char* what, std::uint64_t offset) {
    std::ostringstream text;
    text << "JPEG 2000: the stream ends amid the " << what << " that begins at 0x" << std::hex
         << std::uppercase << offset;
    fault_ = text.str();
    drop(bytes_.size());
    return false;
}

/// Looks for the colour box among those in the header box.
void CodestreamCutter::takeHeaderBox(std::uint64_t begin, std::uint64_t end) {
    constexpr std::uint64_t methodToSpace = 3;
    constexpr std::uint32_t enumerated = 1;
    for (std::uint64_t at = begin; end - at >= boxHeaderSize;) {
        std::uint64_t const size = integerAt(at, 4);
        if (size < boxHeaderSize || size > end - at)
            return;
        std::uint64_t const body = at + boxHeaderSize;
        if (integerAt(at + 4, 4) == colourBox && size >= boxHeaderSize + methodToSpace + 4 &&
            integerAt(body, 1) == enumerated)
            colourSpace_ = integerAt(body + methodToSpace, 4);
        at += size;
    }
}

/// How many zeros and ones (0xFF) the bytes that are there begin with.
std::uint64_t CodestreamCutter::paddingSize() const {
    std::uint64_t size = 0;
    for (auto const& slice : bytes_) {
        auto const* const end = std::find_if(slice.begin(), slice.end(),
                                             [](unsigned char byte) { return byte != 0 && byte != 0xFF; });
        size += static_cast<std::uint64_t>(end - slice.begin());
        if (end != slice.end())
            break;
    }
    return size;
}

/// Passes over what writers fill up with behind a codestream, up to another one, a box or the end. The last
/// bytes of it may be the first ones of what follows.
void CodestreamCutter::passPadding() {
    while (require(1)) {
        bool const isWhole = require(boxHeaderSize);
        std::uint64_t const padding = paddingSize();
        if (padding == 0 || (isWhole && (integerAt(0, 4) == codestreamStart || isBoxType(integerAt(4, 4)))))
            return;
        drop(padding > boxHeaderSize ? padding - boxHeaderSize : 1);
    }
}

/// Passes over boxes up to the start of a codestream; false at the end.
bool CodestreamCutter::passBoxes() {
    if (isBehindCodestream_)
        passPadding();
    while (require(1)) {
        if (!require(boxHeaderSize))
            return endAmid("codestream", start_);
        if (integerAt(0, 4) == codestreamStart)
            return true;
        if (!passBox())
            return false;
    }
    return false;
}

/// Passes over a box, of that of a codestream over its head alone.
bool CodestreamCutter::passBox() {
    constexpr std::uint64_t largestHeader = std::uint64_t{1} << 20;
    std::uint32_t const word = integerAt(0, 4), type = integerAt(4, 4);
    std::uint64_t const begin = start_, head = word == 1 ? longBoxHeaderSize : boxHeaderSize;
    if (!isBoxType(type))
        throw Exceptions::at(
            begin, Exceptions::InvalidFormat("JPEG 2000: neither a codestream nor a box of a JP2 file"));
    if (!require(head))
        return endAmid("box", begin);
    if (type == codestreamBox)
        return drop(head) == head;
    std::uint64_t const size =
        word == 1 ? std::uint64_t{integerAt(8, 4)} << 32 | integerAt(12, 4) : std::uint64_t{word};
    if (word == 0) // to the end
        return drop(~std::uint64_t{0}) == 0;
    if (size < head)
        throw Exceptions::at(
            begin, Exceptions::InvalidFormat("JPEG 2000: a box of " + std::to_string(size) + " bytes"));
    if (type == headerBox && size <= largestHeader && require(size))
        takeHeaderBox(head, size);
    return drop(size) == size || endAmid("box", begin);
}

/// The end marker's end, from `position` on: no coded data hold a marker above 0xFF8F.
std::optional<std::uint64_t> CodestreamCutter::findEndMarker(std::uint64_t position) {
    bool isBehindFF = false;
    for (; require(position + 1); position = bytes_.size()) {
        std::uint64_t at = 0;
        for (auto const& slice : bytes_) {
            std::uint64_t const from = at;
            at += slice.size();
            for (std::uint64_t i = std::max(from, position); i < at; ++i) {
                unsigned char const byte = slice.data()[i - from];
                if (isBehindFF && byte == (endOfCodestream & 0xFF))
                    return i + 1;
                isBehindFF = byte == 0xFF;
            }
        }
    }
    return std::nullopt;
}

/// Where the tile-part at `position` ends; the end of the codestream when it does not tell.
std::optional<std::uint64_t> CodestreamCutter::endOfTilePart(std::uint64_t position) {
    if (!require(position + tilePartHeaderSize))
        return std::nullopt;
    std::uint32_t const length = integerAt(position + tilePartLengthAt, 4);
    if (length == 0)
        if (auto const end = findEndMarker(position + tilePartHeaderSize))
            return *end - markerSize;
    if (length < tilePartHeaderSize + markerSize && length != 0)
        throw Exceptions::at(start_ + position, Exceptions::InvalidFormat("JPEG 2000: SOT: a tile-part of " +
                                                                          std::to_string(length) + " bytes"));
    return length != 0 ? std::optional(position + length) : std::nullopt;
}

/// Where the codestream that begins the bytes ends; none when it is cut off.
std::optional<std::uint64_t> CodestreamCutter::endOfUnit() {
    for (std::uint64_t at = markerSize; require(at + markerSize);) {
        std::uint32_t const marker = integerAt(at, 2);
        if (marker == endOfCodestream)
            return at + markerSize;
        if (marker == startOfTilePart) {
            auto const end = endOfTilePart(at);
            if (!end)
                return std::nullopt;
            at = *end;
            continue;
        }
        if (!require(at + 2 * markerSize))
            return std::nullopt;
        std::uint32_t const length = integerAt(at + markerSize, 2);
        if (marker < startOfCodestream || length < markerSize)
            throw Exceptions::at(
                start_ + at, Exceptions::InvalidFormat("JPEG 2000: there is no marker where one must be"));
        at += markerSize + length;
    }
    return std::nullopt;
}

bool CodestreamCutter::next(Unit& unit) {
    unit = {};
    if (!passBoxes())
        return false;
    auto const end = endOfUnit();
    if (!end)
        return endAmid("codestream", start_);
    unit.offset = start_;
    unit.data = bytes_.splitFront(*end);
    start_ += *end;
    isBehindCodestream_ = true;
    return true;
}

} // namespace MXF::Zelm::Essence::JPEG2000
