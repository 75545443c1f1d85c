#include "MXF/Zelm/Essence/AES3/ChannelStatus.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

namespace MXF::Zelm::Essence::AES3 {

namespace {

using Rate = Templates::Rational<int>;

/// What a field's number stands for.
struct Code {
    unsigned code;
    int meaning;
};

constexpr Code ratesOfByte0[] = {{1, 44100}, {2, 48000}, {3, 32000}};
constexpr Code ratesOfByte4[] = {{1, 24000}, {2, 96000}, {3, 192000}, {9, 22050}, {10, 88200}, {11, 176400}};
constexpr Code lengthsUpTo24[] = {{1, 20}, {2, 22}, {4, 23}, {5, 24}, {6, 21}};
constexpr Code lengthsUpTo20[] = {{1, 16}, {2, 18}, {4, 19}, {5, 20}, {6, 17}};

/// 0 when the table does not have the code.
template <std::size_t count>
int meaningOf(Code const (&table)[count], unsigned code) {
    for (auto const& row : table)
        if (row.code == code)
            return row.meaning;
    return 0;
}

template <std::size_t count>
unsigned codeOf(Code const (&table)[count], int meaning) {
    for (auto const& row : table)
        if (row.meaning == meaning)
            return row.code;
    return 0;
}

Rate rateOf(int perSecond) { return perSecond == 0 ? Rate{} : Rate{perSecond, 1}; }

/// The codes of a rate, one of them 0.
struct RateCodes {
    unsigned byte0, byte4;
    bool isDivided; // by 1.001
};

std::optional<RateCodes> codesOf(Rate const& rate) {
    for (bool const isDivided : {false, true}) {
        auto const isRate = [&](Code const& row) {
            return rate == (isDivided ? Rate{row.meaning * 1000, 1001} : Rate{row.meaning, 1});
        };
        if (auto const* row = std::find_if(std::begin(ratesOfByte0), std::end(ratesOfByte0), isRate);
            row != std::end(ratesOfByte0))
            return RateCodes{row->code, 0, isDivided};
        if (auto const* row = std::find_if(std::begin(ratesOfByte4), std::end(ratesOfByte4), isRate);
            row != std::end(ratesOfByte4))
            return RateCodes{0, row->code, isDivided};
    }
    return std::nullopt;
}

bool isCoordinationOrUndefined(unsigned use) {
    return use == ChannelStatus::Undefined20Bits || use == ChannelStatus::Coordination20Bits;
}

} // namespace

ChannelStatus::ChannelStatus(const unsigned char* bytes) { std::copy_n(bytes, blockSize, bytes_.begin()); }

void ChannelStatus::serializeData(unsigned char* buffer) const {
    std::copy(bytes_.begin(), bytes_.end(), buffer);
}

void ChannelStatus::serializeData(DataIO::DataSink& sink) const { sink.write(bytes_.data(), blockSize); }

void ChannelStatus::bit(unsigned index, bool value) {
    field(index / 8 % blockSize, index % 8, 1, value ? 1 : 0);
}

unsigned ChannelStatus::field(std::size_t byte, unsigned shift, unsigned mask) const {
    return bytes_[byte] >> shift & mask;
}

void ChannelStatus::field(std::size_t byte, unsigned shift, unsigned mask, unsigned value) {
    bytes_[byte] = static_cast<unsigned char>((bytes_[byte] & ~(mask << shift)) | (value & mask) << shift);
}

ChannelStatus::AudioSignalEmphasis ChannelStatus::audioSignalEmphasis() const {
    return static_cast<AudioSignalEmphasis>(field(0, 2, 7));
}

void ChannelStatus::audioSignalEmphasis(AudioSignalEmphasis value) { field(0, 2, 7, value); }

ChannelStatus::ChannelMode ChannelStatus::channelMode() const {
    return static_cast<ChannelMode>(field(1, 0, 15));
}

void ChannelStatus::channelMode(ChannelMode value) { field(1, 0, 15, value); }

ChannelStatus::UseOfAuxiliarySampleBits ChannelStatus::useOfAuxiliarySampleBits() const {
    return static_cast<UseOfAuxiliarySampleBits>(field(2, 0, 7));
}

void ChannelStatus::useOfAuxiliarySampleBits(UseOfAuxiliarySampleBits value) { field(2, 0, 7, value); }

unsigned char ChannelStatus::sourceWordLength() const {
    auto const use = useOfAuxiliarySampleBits();
    if (use != MainAudio24Bits && !isCoordinationOrUndefined(use))
        return 0;
    unsigned const code = field(2, 3, 7);
    int const bits = use == MainAudio24Bits ? meaningOf(lengthsUpTo24, code) : meaningOf(lengthsUpTo20, code);
    return static_cast<unsigned char>(bits == 0 ? 16 : bits);
}

void ChannelStatus::sourceWordLength(unsigned char bits) {
    if (bits < 16 || bits > 24)
        throw Exceptions::InvalidValue("A source word of " + std::to_string(bits) + " bits, not of 16 to 24");
    auto const use = useOfAuxiliarySampleBits();
    if (bits > 20)
        useOfAuxiliarySampleBits(MainAudio24Bits);
    else if (!isCoordinationOrUndefined(use) && (bits < 20 || use != MainAudio24Bits))
        useOfAuxiliarySampleBits(Undefined20Bits);
    bool const upTo24 = useOfAuxiliarySampleBits() == MainAudio24Bits;
    field(2, 3, 7, upTo24 ? codeOf(lengthsUpTo24, bits) : codeOf(lengthsUpTo20, bits));
}

Rate ChannelStatus::samplingFrequencyFromByte0() const {
    return rateOf(meaningOf(ratesOfByte0, field(0, 6, 3)));
}

// The order of these bits is read with bit 3 as the least significant.
Rate ChannelStatus::samplingFrequencyFromByte4() const {
    return rateOf(meaningOf(ratesOfByte4, field(4, 3, 15)));
}

Rate ChannelStatus::samplingFrequency() const {
    auto rate = samplingFrequencyFromByte0();
    if (!rate.isKnown())
        rate = samplingFrequencyFromByte4();
    bool const isDivided = field(4, 7, 1) != 0;
    return rate.isKnown() && isDivided ? Rate{rate.numerator * 1000, 1001} : rate;
}

bool ChannelStatus::hasCode(Rate const& rate) { return codesOf(rate).has_value(); }

void ChannelStatus::samplingFrequency(Rate const& rate) {
    auto const codes = codesOf(rate);
    if (!codes && rate.isKnown())
        throw Exceptions::InvalidValue("AES3 has no code for a sampling frequency of " +
                                       std::to_string(rate.numerator) + "/" +
                                       std::to_string(rate.denominator));
    field(0, 6, 3, codes ? codes->byte0 : 0);
    field(4, 3, 15, codes ? codes->byte4 : 0);
    field(4, 7, 1, codes && codes->isDivided ? 1 : 0);
}

unsigned char ChannelStatus::crc() const {
    unsigned crc = 0xFF;
    for (unsigned index = 0; index < blockBits - 8; ++index)
        crc = crc >> 1 ^ ((crc & 1u) != static_cast<unsigned>(bit(index)) ? 0xB8u : 0u);
    return static_cast<unsigned char>(crc);
}

} // namespace MXF::Zelm::Essence::AES3
