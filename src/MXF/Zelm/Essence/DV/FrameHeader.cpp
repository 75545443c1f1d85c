#include "MXF/Zelm/Essence/DV/FrameHeader.h"

#include <array>
#include <iterator>

namespace MXF::Zelm::Essence::DV {

namespace {

enum BlockType : unsigned { HeaderBlock, SubcodeBlock, VideoAuxiliaryBlock, AudioBlock, VideoBlock };

enum PackType : unsigned char {
    TimecodePack = 0x13,
    SoundSourcePack = 0x50,
    VideoSourcePack = 0x60,
    VideoControlPack = 0x61
};

constexpr std::uint32_t idSize = 3, packSize = 5;

/// Where the packs stand in the blocks of a kind: `first` with `count` of them, each `step` bytes behind the
/// one before, `from` the start of the block.
struct Packs {
    std::uint32_t firstBlock, blocks, blockStep;
    std::uint32_t from, count, step;
};

constexpr Packs subcode{1, 2, 1, idSize + 3, 6, 8};
constexpr Packs videoAuxiliary{3, 3, 1, idSize, 15, packSize};
constexpr Packs soundAuxiliary{6, 9, 16, idSize, 1, packSize};

using Pack = std::array<unsigned char, packSize>;

unsigned blockType(unsigned char id) { return id >> 5; }

/// The first pack of this type in a sequence.
std::optional<Pack> findPack(unsigned char const* sequence, Packs const& packs, PackType type) {
    for (std::uint32_t block = 0; block < packs.blocks; ++block) {
        auto const* const start = sequence + (packs.firstBlock + block * packs.blockStep) * blockSize;
        for (std::uint32_t i = 0; i < packs.count; ++i) {
            auto const* const pack = start + packs.from + i * packs.step;
            if (pack[0] == type)
                return Pack{pack[0], pack[1], pack[2], pack[3], pack[4]};
        }
    }
    return std::nullopt;
}

/// Whether the first blocks are those that a sequence begins with.
bool isSequence(unsigned char const* bytes) {
    constexpr BlockType types[] = {HeaderBlock,         SubcodeBlock,        SubcodeBlock,
                                   VideoAuxiliaryBlock, VideoAuxiliaryBlock, VideoAuxiliaryBlock,
                                   AudioBlock,          VideoBlock};
    for (std::uint32_t i = 0; i < std::size(types); ++i)
        if (blockType(bytes[i * blockSize]) != types[i])
            return false;
    return true;
}

/// Two digits, of which the first has `bits` bits; above 99 for what is none.
std::uint8_t decimal(unsigned char byte, unsigned bits) {
    unsigned const tens = byte >> 4 & ((1u << bits) - 1), units = byte & 0x0F;
    return static_cast<std::uint8_t>(units > 9 ? 0xFF : tens * 10 + units);
}

std::optional<ClockTime> timecodeOf(Pack const& pack) {
    ClockTime time{decimal(pack[4], 2), decimal(pack[3], 3), decimal(pack[2], 3), decimal(pack[1], 2),
                   (pack[1] & 0x40) != 0};
    bool const isTime = time.hours < 24 && time.minutes < 60 && time.seconds < 60 && time.frames < 30;
    return isTime ? std::optional(time) : std::nullopt;
}

/// Frames have at least so many samples, at 525 and at 625 lines.
struct SamplingRate {
    std::uint32_t rate, least525, least625;
};

constexpr SamplingRate samplingRates[] = {{48000, 1580, 1896}, {44100, 1452, 1742}, {32000, 1053, 1264}};
constexpr std::uint8_t quantizations[] = {16, 12, 20};

std::optional<Sound> soundOf(Pack const& pack, bool is50) {
    unsigned const rate = pack[4] >> 3 & 7u, quantization = pack[4] & 7u;
    if (rate >= std::size(samplingRates) || quantization >= std::size(quantizations))
        return std::nullopt;
    auto const& row = samplingRates[rate];
    return Sound{row.rate, quantizations[quantization], (pack[1] & 0x80) == 0,
                 (is50 ? row.least625 : row.least525) + (pack[1] & 0x3Fu)};
}

/// Both standards have 2 for 16:9; IEC 61834 has 7 too.
bool tellsWide(Pack const& control, bool isIEC) {
    unsigned const display = control[2] & 7u;
    return display == 2 || (isIEC && display == 7);
}

} // namespace

std::optional<bool> FrameHeader::is50(DataIO::Chain const& frame) {
    unsigned char head[4] = {};
    bool const isHeader = frame.copyTo(head, sizeof head) == sizeof head &&
                          blockType(head[0]) == HeaderBlock && head[1] >> 4 == 0 && head[2] == 0 &&
                          (head[3] & 0x40) == 0;
    return isHeader ? std::optional((head[3] & 0x80) != 0) : std::nullopt;
}

std::optional<FrameHeader> FrameHeader::read(DataIO::Chain const& frame) {
    auto const is50Fields = is50(frame);
    if (!is50Fields || frame.size() < size)
        return std::nullopt;
    auto const sequence = frame.part(0, size).contiguous();
    if (!isSequence(sequence.data()))
        return std::nullopt;
    constexpr std::uint32_t applicationID = 4;
    bool const isIEC = (sequence.data()[applicationID] & 7) == 0;
    auto const source = findPack(sequence.data(), videoAuxiliary, VideoSourcePack);
    auto const control = findPack(sequence.data(), videoAuxiliary, VideoControlPack);
    FrameHeader header;
    header.format = Format::find(isIEC, *is50Fields,
                                 source ? static_cast<std::uint8_t>((*source)[3] & 0x1F) : std::uint8_t{0});
    if (header.format == nullptr)
        return std::nullopt;
    header.isWide = header.format->megabits == 100 || (control && tellsWide(*control, isIEC));
    if (auto const pack = findPack(sequence.data(), subcode, TimecodePack))
        header.timecode = timecodeOf(*pack);
    if (auto const pack = findPack(sequence.data(), soundAuxiliary, SoundSourcePack))
        header.sound = soundOf(*pack, *is50Fields);
    return header;
}

} // namespace MXF::Zelm::Essence::DV
