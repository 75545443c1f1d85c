/// The channel status block of AES3 sound: 192 bits, one in each subframe of a channel.
///
///     byte 0    bit 0 professional, 1 not linear PCM, 2 to 4 emphasis, 5 not locked, 6 and 7 sampling
///     frequency byte 1    bits 0 to 3 channel mode, 4 to 7 use of the user bits byte 2    bits 0 to 2 use of
///     the auxiliary bits, 3 to 5 word length, 6 and 7 alignment level byte 4    bits 0 and 1 reference, 3 to
///     6 further sampling frequencies, 7 divided by 1.001 byte 23   CRC of the others
///
/// Bit 0, the least significant, travels first. The standard writes a field's bits in the order in which they
/// travel; the values here are the masked numbers, whose least significant bit travels first.
#pragma once

#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/Platform/MemoryManager.h"
#include "MXF/Zelm/Templates/Rational.h"

#include <array>
#include <cstddef>

namespace MXF::Zelm::Essence::AES3 {

/// A block of the professional kind. A value; a new one is all zero.
class MXFZELM_EXPORT ChannelStatus : public Platform::Allocated {
public:
    static constexpr std::size_t blockSize = 24;
    static constexpr unsigned blockBits = 192;

    /// Byte 1, bits 0 to 3.
    enum ChannelMode : unsigned char {
        ModeNotIndicated = 0,
        StereoLeftDoubleFrequency = 1,
        Stereophonic = 2,
        SingleChannel = 4,
        UserDefinedMode2 = 6,
        TwoChannel = 8,
        StereoRightDoubleFrequency = 9,
        UserDefinedMode1 = 10,
        PrimarySecondary = 12,
        SingleChannelDoubleFrequency = 14,
        Multichannel = 15
    };

    /// Byte 0, bits 2 to 4.
    enum AudioSignalEmphasis : unsigned char {
        EmphasisNotIndicated = 0,
        NoEmphasis = 1,
        Emphasis50_15 = 3, ///< 50 and 15 microseconds
        EmphasisJ17 = 7    ///< CCITT J.17
    };

    /// Byte 2, bits 0 to 2.
    enum UseOfAuxiliarySampleBits : unsigned char {
        Undefined20Bits = 0,    ///< samples of 20 bits at most
        Coordination20Bits = 2, ///< beside samples of 20 bits at most, a coordination signal
        MainAudio24Bits = 4,    ///< samples of 24 bits at most
        UserDefined20Bits = 6   ///< samples of 20 bits at most
    };

    ChannelStatus() = default;

    /// Takes the 24 bytes at `bytes`.
    explicit ChannelStatus(const unsigned char* bytes);

    static constexpr std::size_t serializedSize() { return blockSize; }
    const unsigned char* rawBuffer() const { return bytes_.data(); }

    /// Copies the block into the 24 bytes at `buffer`.
    void serializeData(unsigned char* buffer) const;
    void serializeData(DataIO::DataSink& sink) const;

    /// Sets every bit to 0.
    void reset() { bytes_ = {}; }

    /// Bit `index`, 0 to 191, in the order of travel.
    bool bit(unsigned index) const { return (bytes_[index / 8 % blockSize] >> index % 8 & 1u) != 0; }
    void bit(unsigned index, bool value);

    /// Byte 0 bit 0.
    bool isProfessional() const { return bit(0); }
    void isProfessional(bool value) { bit(0, value); }

    /// Byte 0 bit 1: anything but linear PCM.
    bool isNotLinear() const { return bit(1); }
    void isNotLinear(bool value) { bit(1, value); }

    AudioSignalEmphasis audioSignalEmphasis() const;
    void audioSignalEmphasis(AudioSignalEmphasis value);

    /// Byte 0 bit 5, set when the source's sampling frequency is not locked.
    bool lockIndication() const { return bit(5); }
    void lockIndication(bool value) { bit(5, value); }

    ChannelMode channelMode() const;
    void channelMode(ChannelMode value);

    UseOfAuxiliarySampleBits useOfAuxiliarySampleBits() const;
    void useOfAuxiliarySampleBits(UseOfAuxiliarySampleBits value);

    /// Bits of the source's words, by the word length and the use of the auxiliary bits; 16 when the length
    /// is not indicated, 0 for a use that defines none.
    unsigned char sourceWordLength() const;

    /// 16 to 24. Changes the use of the auxiliary bits where that cannot say so many: to 24 bits of main
    /// sound above 20, to undefined below. Throws Exceptions::InvalidValue for others.
    void sourceWordLength(unsigned char bits);

    /// The rate of byte 0, if that indicates none the one of byte 4, divided by 1.001 where byte 4 says so;
    /// 0/0 when neither indicates one.
    Templates::Rational<int> samplingFrequency() const;

    /// 44100, 48000 or 32000, each over 1; 0/0 for not indicated.
    Templates::Rational<int> samplingFrequencyFromByte0() const;

    /// 24000, 96000, 192000, 22050, 88200 or 176400, over 1; 0/0 for not indicated, user defined and
    /// reserved. Without the division by 1.001.
    Templates::Rational<int> samplingFrequencyFromByte4() const;

    /// Whether there is a code for a rate.
    static bool hasCode(Templates::Rational<int> const& rate);

    /// Sets both bytes; 0/0 for not indicated. Throws Exceptions::InvalidValue for a rate without a code.
    void samplingFrequency(Templates::Rational<int> const& rate);

    /// CRC of bytes 0 to 22: x^8 + x^4 + x^3 + x^2 + 1, preset to ones, least significant bits first.
    unsigned char crc() const;

    /// Whether byte 23 is the CRC. Blocks of a minimum implementation leave it 0.
    bool hasValidCRC() const { return bytes_.back() == crc(); }

    /// Sets byte 23. No other setter does.
    void updateCRC() { bytes_.back() = crc(); }

    friend bool operator==(ChannelStatus const& a, ChannelStatus const& b) { return a.bytes_ == b.bytes_; }

private:
    unsigned field(std::size_t byte, unsigned shift, unsigned mask) const;
    void field(std::size_t byte, unsigned shift, unsigned mask, unsigned value);

    std::array<unsigned char, blockSize> bytes_ = {};
};

} // namespace MXF::Zelm::Essence::AES3
