#include "MXF/Zelm/GenericContainer/SystemMetadataPack.h"

#include "MXF/Zelm/ByteCoders/BER.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;

constexpr KLV::Key packKey = "060E2B34.02050101.0D010301.04010100"_key;

// Places of the fields in the value, and sizes.
constexpr std::size_t rateByte = 1, countByte = 5, labelByte = 7, creationByte = 23, userByte = 40;
constexpr std::size_t stampSize = 17, labelSize = 16;

/// The type of a stamp that holds SMPTE 12M timecode.
constexpr unsigned char timecodeStamp = 0x81;

/// By rate index: content packages a second.
constexpr int baseRates[] = {0, 24, 25, 30, 48, 50, 60, 72, 75, 90, 96, 100, 120};

// In the packed form of a timecode: where the flags stand here.
constexpr std::size_t minutesByte = 2, hoursByte = 3;
constexpr unsigned char highBit = 0x80, secondBit = 0x40;

/// From here on timecode counts pairs of frames.
constexpr unsigned mostFramesUnpaired = 30;

unsigned char rateCode(Templates::Rational<int> const& rate) {
    bool const isDropped = rate.denominator == 1001;
    std::int64_t const numerator = std::int64_t{rate.numerator} * (isDropped ? 1001 : 1);
    std::int64_t const denominator = std::int64_t{rate.denominator} * (isDropped ? 1000 : 1);
    unsigned char index = 0;
    if (denominator > 0 && numerator > 0 && numerator % denominator == 0) {
        auto const* const found =
            std::find(std::begin(baseRates), std::end(baseRates), numerator / denominator);
        index = static_cast<unsigned char>(found != std::end(baseRates) ? found - std::begin(baseRates) : 0);
    }
    return static_cast<unsigned char>(index << 1 | (isDropped ? 1 : 0));
}

/// The place that 25-frame systems have for BGF2 marks the second frame of a pair.
bool hasPairMark(unsigned framesPerSecond) {
    return framesPerSecond > mostFramesUnpaired && framesPerSecond % 25 == 0;
}

Utils::PackedTimeCode packed(Utils::TimeCode const& timecode) {
    auto bytes = Utils::TimeCode(timecode).packed();
    auto const* const extended = dynamic_cast<Utils::TimeCodeExtended const*>(&timecode);
    if (extended == nullptr)
        return bytes;
    auto const groups = extended->packed();
    std::copy(groups.begin() + 4, groups.end(), bytes.begin() + 4);
    unsigned const flags = extended->binaryGroupFlags();
    auto const put = [&bytes](std::size_t at, unsigned char bit, bool isSet) {
        bytes[at] = static_cast<unsigned char>(bytes[at] | (isSet ? bit : 0));
    };
    put(minutesByte, highBit, (flags & 1) != 0);
    put(hoursByte, secondBit, (flags & 2) != 0);
    put(hoursByte, highBit, (flags & 4) != 0 && !hasPairMark(timecode.base().framesPerSecond()));
    return bytes;
}

Utils::TimeCodeExtended unpacked(Utils::PackedTimeCode bytes, unsigned framesPerSecond) {
    bool const isPaired = hasPairMark(framesPerSecond);
    unsigned const flags = ((bytes[minutesByte] & highBit) != 0 ? 1u : 0u) |
                           ((bytes[hoursByte] & secondBit) != 0 ? 2u : 0u) |
                           ((bytes[hoursByte] & highBit) != 0 && !isPaired ? 4u : 0u);
    bytes[minutesByte] &= static_cast<unsigned char>(~highBit);
    bytes[hoursByte] &= static_cast<unsigned char>(isPaired ? ~secondBit : ~(secondBit | highBit));
    auto timecode = Utils::TimeCodeExtended::fromPacked(bytes, framesPerSecond);
    timecode.binaryGroupFlags(flags);
    return timecode;
}

} // namespace

KLV::Key const& SystemMetadataPack::key() { return packKey; }

SystemMetadataPack::SystemMetadataPack(Templates::Rational<int> const& packageRate) {
    value_[rateByte] = rateCode(packageRate);
}

SystemMetadataPack::SystemMetadataPack(DataIO::SliceReader& reader) {
    std::uint64_t const offset = reader.absoluteOffset();
    auto const slice = reader.readAligned(valueSize);
    if (slice->size() != valueSize)
        throw Exceptions::at(offset, Exceptions::InvalidStructure(
                                         Exceptions::Condition{"slice -> size () == sizeof (WholePack)"},
                                         "Not enough data to read SystemMetadataPack"));
    std::copy_n(slice->data(), valueSize, value_.begin());
}

Types::UniversalLabel SystemMetadataPack::universalLabel() const {
    return has(Label) ? Types::UniversalLabel(KLV::Key(value_.data() + labelByte)) : Types::UniversalLabel();
}

void SystemMetadataPack::universalLabel(Types::UniversalLabel const& label) {
    std::copy_n(label.rawBuffer(), labelSize, value_.begin() + labelByte);
    set(Label, true);
}

std::uint16_t SystemMetadataPack::continuityCount() const {
    return ByteCoders::decodeInteger<std::uint16_t>(value_.data() + countByte);
}

void SystemMetadataPack::continuityCount(std::uint16_t count) {
    ByteCoders::codeInteger(count, value_.data() + countByte);
}

Templates::Rational<int> SystemMetadataPack::packageRate() const {
    std::size_t const index = value_[rateByte] >> 1 & 0x1F;
    int const base = index < std::size(baseRates) ? baseRates[index] : 0;
    if (base == 0 || (value_[rateByte] & 1) == 0)
        return {base, 1};
    return {base * 1000, 1001};
}

unsigned SystemMetadataPack::roundedRate() const {
    auto const rate = packageRate();
    return static_cast<unsigned>(rate.denominator == 1 ? rate.numerator : rate.numerator / 1000);
}

Utils::TimeCodeExtended SystemMetadataPack::timecode(Bit which) const {
    unsigned char const* const stamp = value_.data() + (which == UserStamp ? userByte : creationByte);
    if (!has(which) || stamp[0] != timecodeStamp || roundedRate() == 0)
        return {};
    Utils::PackedTimeCode bytes;
    std::copy_n(stamp + 1, bytes.size(), bytes.begin());
    return unpacked(bytes, roundedRate());
}

void SystemMetadataPack::stamp(Bit which, Utils::TimeCode const& timecode) {
    auto* const stamp = value_.data() + (which == UserStamp ? userByte : creationByte);
    std::fill_n(stamp, stampSize, static_cast<unsigned char>(0));
    set(which, timecode.isDefined());
    if (!timecode.isDefined())
        return;
    auto const bytes = packed(timecode);
    stamp[0] = timecodeStamp;
    std::copy(bytes.begin(), bytes.end(), stamp + 1);
}

Templates::auto_ptr<DataIO::Slice> SystemMetadataPack::serialize() const {
    std::array<unsigned char, serializedSize()> bytes;
    std::copy_n(packKey.rawBuffer(), KLV::Key::size(), bytes.begin());
    ByteCoders::codeBER(valueSize, 4, bytes.data() + KLV::Key::size());
    std::copy(value_.begin(), value_.end(), bytes.begin() + KLV::Key::size() + 4);
    return std::make_unique<DataIO::Slice>(DataIO::Slice::copyOf(bytes.data(), bytes.size()));
}

} // namespace MXF::Zelm::GenericContainer
