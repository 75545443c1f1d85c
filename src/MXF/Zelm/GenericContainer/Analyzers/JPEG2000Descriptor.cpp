#include "MXF/Zelm/GenericContainer/Analyzers/JPEG2000Descriptor.h"

#include "MXF/Zelm/ByteCoders/BigEndian.h"
#include "MXF/Zelm/Essence/JPEG2000/CodestreamCutter.h"
#include "MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/RGBAEssenceDescriptor.h"
#include "MXF/Zelm/Metadata/Structural/SubDescriptors.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;
using namespace Metadata::Structural;
using Colour = JPEG2000Options::Colour;
using Essence::JPEG2000::CodestreamCutter;
using Essence::JPEG2000::CodestreamHeader;
using Essence::JPEG2000::Component;

// Values of Rsiz. Of the profiles of IMF, byte 0 is 4 to 9, byte 1 has sublevel and main level.
constexpr std::uint16_t cinema2K = 3, cinema4K = 4, broadcastSingleTile = 0x0100, firstIMF = 0x0400,
                        lastIMF = 0x09FF, withCapabilities = 0x4000;

constexpr auto undefinedProfile = "060E2B34.0401010A.04010202.0301017F"_key;
constexpr auto cinema2KLabel = "060E2B34.04010109.04010202.03010103"_key;
constexpr auto cinema4KLabel = "060E2B34.04010109.04010202.03010104"_key;
constexpr auto highThroughput = "060E2B34.0401010D.04010202.03010801"_key;

KLV::Key profileLabel(unsigned char family, unsigned level) {
    auto label = "060E2B34.0401010D.04010202.03010000"_key;
    label[14] = family;
    label[15] = static_cast<unsigned char>(level);
    return label;
}

/// The last byte of a label of IMF: sublevels count through the main levels, which have 1, 2, 2, 2, 3, 4, 5,
/// … of them. 0 for a level that does not exist.
unsigned levelOfIMF(unsigned mainLevel, unsigned sublevel) {
    constexpr unsigned highest = 11;
    auto const sublevels = [](unsigned level) { return level == 0 ? 1u : std::max(2u, level - 1); };
    if (mainLevel > highest || sublevel >= sublevels(mainLevel))
        return 0;
    unsigned before = 1;
    for (unsigned level = 0; level < mainLevel; ++level)
        before += sublevels(level);
    return before + sublevel;
}

unsigned bitsOf(Component const& component) { return std::min<unsigned>(component.depth, 32); }

Types::UInt32 greatestValue(Component const& component) {
    return Types::UInt32(std::numeric_limits<std::uint32_t>::max() >> (32 - bitsOf(component)));
}

Types::RGBALayout layoutOf(CodestreamHeader const& header, Colour colour) {
    static constexpr unsigned char rgb[] = {'R', 'G', 'B', 'A'}, xyz[] = {0xD8, 0xD9, 0xDA, 'A'},
                                   yuv[] = {'Y', 'U', 'V', 'A'}, luma[] = {'Y', 'A'};
    auto const& components = header.components;
    auto const* const codes = components.size() < 3     ? luma
                              : colour == Colour::YCbCr ? yuv
                              : colour == Colour::XYZ   ? xyz
                                                        : rgb;
    std::vector<Types::RGBALayout::Component> pairs;
    for (std::size_t i = 0; i < std::min(components.size(), std::size(rgb)); ++i)
        pairs.push_back({codes[i], static_cast<unsigned char>(bitsOf(components[i]))});
    return Types::RGBALayout(pairs);
}

/// The first lines of fields in the signal of their height.
constexpr struct {
    std::uint32_t height;
    std::int32_t lines[2];
} fieldRasters[] = {{540, {21, 584}}, {288, {23, 336}}, {243, {21, 283}}, {240, {23, 286}}};

/// Where the picture stands in the signal of its size. Pictures without a signal begin with their first line,
/// fields with the top one: that the numbers of lines are one even, one odd says so.
void describeLines(GenericPictureEssenceDescriptor& descriptor, JPEG2000Pictures const& pictures) {
    std::uint32_t const height = pictures.header.height();
    if (!pictures.isOfFields())
        return descriptor.videoLineMap(height == 1080 ? 42 : height == 720 ? 26 : 1, 0);
    for (auto const& raster : fieldRasters)
        if (raster.height == height)
            return descriptor.videoLineMap(raster.lines[0], raster.lines[1]);
    descriptor.videoLineMap(1, 2);
}

void describeSizes(GenericPictureEssenceDescriptor& descriptor, JPEG2000Pictures const& pictures) {
    std::uint32_t const width = pictures.header.width(), height = pictures.header.height();
    descriptor.frameLayout(Types::UInt8(pictures.isOfFields()
                                            ? GenericPictureEssenceDescriptor::separateFields
                                            : GenericPictureEssenceDescriptor::fullFrame));
    descriptor.storedWidth(Types::UInt32(width));
    descriptor.storedHeight(Types::UInt32(height));
    descriptor.sampledWidth(Types::UInt32(width));
    descriptor.sampledHeight(Types::UInt32(height));
    descriptor.sampledXOffset(Types::Int32(0));
    descriptor.sampledYOffset(Types::Int32(0));
    descriptor.displayWidth(Types::UInt32(width));
    descriptor.displayHeight(Types::UInt32(height));
    descriptor.displayXOffset(Types::Int32(0));
    descriptor.displayYOffset(Types::Int32(0));
    describeLines(descriptor, pictures);
    if (pictures.isOfFields())
        descriptor.fieldDominance(Types::UInt8(1));
}

/// Of square pixels when nothing else is told; 0/0 where the numbers are too large for the property.
Templates::Rational<int> aspectRatioOf(JPEG2000Pictures const& pictures) {
    constexpr std::uint64_t most = std::numeric_limits<int>::max();
    if (pictures.options.aspectRatio.isKnown())
        return pictures.options.aspectRatio;
    std::uint64_t const width = pictures.header.width();
    std::uint64_t const height = std::uint64_t{pictures.header.height()} * (pictures.isOfFields() ? 2 : 1);
    auto const divisor = std::gcd(width, height);
    if (width / divisor > most || height / divisor > most)
        return {};
    return {static_cast<int>(width / divisor), static_cast<int>(height / divisor)};
}

void describeColours(GenericPictureEssenceDescriptor& descriptor, JPEG2000Pictures const& pictures) {
    constexpr auto sRGBCurve = "060E2B34.0401010D.04010101.010D0000"_key;
    constexpr auto bt709Primaries = "060E2B34.04010106.04010101.03030000"_key;
    constexpr auto cinemaCurve = "060E2B34.04010108.04010101.01070000"_key;
    constexpr auto cinemaPrimaries = "060E2B34.0401010D.04010101.03050000"_key;
    if (pictures.colour() == Colour::XYZ) {
        descriptor.transferCharacteristic(cinemaCurve);
        descriptor.colorPrimaries(cinemaPrimaries);
    } else if (pictures.colourSpace == CodestreamCutter::sRGB) {
        descriptor.transferCharacteristic(sRGBCurve);
        descriptor.colorPrimaries(bt709Primaries);
    }
}

/// Luma and colour differences have values below black and above white, but in the spaces of JP2 files.
void describeLevels(CDCIEssenceDescriptor& descriptor, JPEG2000Pictures const& pictures) {
    auto const& luma = pictures.header.components.front();
    unsigned const bits = bitsOf(luma);
    bool const isOfJP2 =
        pictures.colourSpace == CodestreamCutter::sYCC || pictures.colourSpace == CodestreamCutter::greyscale;
    if (isOfJP2 || bits < 8) {
        descriptor.blackRefLevel(Types::UInt32(0));
        descriptor.whiteRefLevel(greatestValue(luma));
        if (bits < 32)
            descriptor.colorRange(Types::UInt32(std::uint32_t{1} << bits));
        return;
    }
    unsigned const shift = bits - 8;
    descriptor.blackRefLevel(Types::UInt32(std::uint32_t{16} << shift));
    descriptor.whiteRefLevel(Types::UInt32(std::uint32_t{235} << shift));
    descriptor.colorRange(Types::UInt32((std::uint32_t{224} << shift) + 1));
}

void describeComponents(CDCIEssenceDescriptor& descriptor, JPEG2000Pictures const& pictures) {
    auto const& components = pictures.header.components;
    auto const& luma = components.front();
    auto const& colour = components[components.size() > 1 ? 1 : 0];
    descriptor.componentDepth(Types::UInt32(bitsOf(luma)));
    descriptor.horizontalSubsampling(
        Types::UInt32(colour.horizontalSampling / std::uint32_t{luma.horizontalSampling}));
    descriptor.verticalSubsampling(
        Types::UInt32(colour.verticalSampling / std::uint32_t{luma.verticalSampling}));
    if (components.size() > 3)
        descriptor.alphaSampleDepth(Types::UInt32(bitsOf(components[3])));
    describeLevels(descriptor, pictures);
}

void describeComponents(RGBAEssenceDescriptor& descriptor, JPEG2000Pictures const& pictures) {
    auto const& components = pictures.header.components;
    descriptor.pixelLayout(layoutOf(pictures.header, pictures.colour()));
    descriptor.componentMinRef(Types::UInt32(0));
    descriptor.componentMaxRef(greatestValue(components.front()));
    if (components.size() == 2 || components.size() > 3) {
        descriptor.alphaMinRef(Types::UInt32(0));
        descriptor.alphaMaxRef(greatestValue(components[components.size() == 2 ? 1 : 3]));
    }
    descriptor.scanningDirection(Types::Orientation(0));
}

/// The body of CAP as the property has it: a set of bits, then an array of words.
Types::DataValue capabilitiesOf(CodestreamHeader::Bytes const& body) {
    constexpr std::size_t bitsSize = 4, wordSize = 2;
    std::vector<unsigned char> bytes(body.begin(), body.begin() + bitsSize);
    bytes.resize(bitsSize + 8);
    auto const words = static_cast<std::uint32_t>((body.size() - bitsSize) / wordSize);
    ByteCoders::codeInteger(words, bytes.data() + bitsSize);
    ByteCoders::codeInteger(std::uint32_t{wordSize}, bytes.data() + bitsSize + 4);
    bytes.insert(bytes.end(), body.begin() + bitsSize, body.begin() + bitsSize + words * wordSize);
    return Types::DataValue(std::move(bytes));
}

Types::Array wordsOf(std::vector<std::uint16_t> const& words) {
    Types::Array array(Types::Identifiers::UInt16);
    for (auto const word : words)
        array.add(Types::UInt16(word));
    return array;
}

void describeOptional(JPEG2000PictureSubDescriptor& coding, CodestreamHeader const& header) {
    constexpr std::size_t capabilityBits = 4;
    if (!header.codingStyle.empty())
        coding.codingStyleDefault(Types::J2KCodingStyleDefault(header.codingStyle));
    if (!header.quantisation.empty())
        coding.quantizationDefault(Types::J2KQuantisationDefault(header.quantisation));
    if (header.capabilities.size() >= capabilityBits)
        coding.j2kExtendedCapabilities(capabilitiesOf(header.capabilities));
    if (!header.profile.empty())
        coding.j2kProfile(wordsOf(header.profile));
    if (!header.correspondingProfile.empty())
        coding.j2kCorrespondingProfile(wordsOf(header.correspondingProfile));
}

void describeCoding(JPEG2000PictureSubDescriptor& coding, JPEG2000Pictures const& pictures) {
    auto const& header = pictures.header;
    coding.rsiz(Types::UInt16(header.rsiz));
    coding.xsiz(Types::UInt32(header.xsiz));
    coding.ysiz(Types::UInt32(header.ysiz));
    coding.xOsiz(Types::UInt32(header.xOsiz));
    coding.yOsiz(Types::UInt32(header.yOsiz));
    coding.xTsiz(Types::UInt32(header.xTsiz));
    coding.yTsiz(Types::UInt32(header.yTsiz));
    coding.xTOsiz(Types::UInt32(header.xTOsiz));
    coding.yTOsiz(Types::UInt32(header.yTOsiz));
    coding.csiz(Types::UInt16(static_cast<std::uint16_t>(header.components.size())));
    Types::Array components(Types::Identifiers::J2KPictureComponent);
    for (auto const& each : header.components)
        components.add(Types::J2KPictureComponent(each.depth, each.isSigned, each.horizontalSampling,
                                                  each.verticalSampling));
    coding.pictureComponentSizing(components);
    coding.j2cLayout(layoutOf(header, pictures.colour()));
    describeOptional(coding, header);
}

/// The sub-descriptor that is there, or a new one.
JPEG2000PictureSubDescriptor& codingOf(Metadata::PartitionMetadata& metadata, FileDescriptor& descriptor) {
    for (auto* const set : descriptor.subDescriptors())
        if (auto* const coding = dynamic_cast<JPEG2000PictureSubDescriptor*>(set))
            return *coding;
    auto& coding = create<JPEG2000PictureSubDescriptor>(metadata);
    descriptor.addSubDescriptor(coding);
    return coding;
}

template <class Descriptor>
FileDescriptor& describeAs(Metadata::PartitionMetadata& metadata, FileDescriptor* present,
                           JPEG2000Pictures const& pictures) {
    auto& descriptor = presentOrNew<Descriptor>(metadata, present);
    describeSizes(descriptor, pictures);
    describeColours(descriptor, pictures);
    describeComponents(descriptor, pictures);
    descriptor.aspectRatio(Types::Rational(aspectRatioOf(pictures)));
    descriptor.pictureEssenceCoding(jpeg2000CodingLabel(pictures.header.rsiz));
    describeCoding(codingOf(metadata, descriptor), pictures);
    return descriptor;
}

} // namespace

bool JPEG2000Pictures::isSubsampled() const {
    auto const& first = header.components.front();
    return std::any_of(header.components.begin(), header.components.end(), [&](Component const& each) {
        return each.horizontalSampling != first.horizontalSampling ||
               each.verticalSampling != first.verticalSampling;
    });
}

bool JPEG2000Pictures::isOfFields() const {
    return options.scan == JPEG2000Options::Scan::TwoFields || options.scan == JPEG2000Options::Scan::Field;
}

Colour JPEG2000Pictures::colour() const {
    if (header.components.size() < 3)
        return Colour::RGB;
    if (options.colour != Colour::Unknown)
        return options.colour;
    if (isSubsampled() || colourSpace == CodestreamCutter::sYCC)
        return Colour::YCbCr;
    bool const isCinema = header.rsiz == cinema2K || header.rsiz == cinema4K;
    return isCinema && colourSpace != CodestreamCutter::sRGB ? Colour::XYZ : Colour::RGB;
}

Types::UniversalLabel jpeg2000CodingLabel(std::uint16_t rsiz) {
    constexpr unsigned char broadcast = 0x01, broadcastLevels = 0x10;
    constexpr unsigned lastBroadcastLevel = 5;
    if (rsiz == cinema2K)
        return cinema2KLabel;
    if (rsiz == cinema4K)
        return cinema4KLabel;
    if ((rsiz & withCapabilities) != 0)
        return highThroughput;
    unsigned const high = rsiz >> 8u, low = rsiz & 0xFFu;
    if (high == broadcastSingleTile >> 8u && low >= 1 && low <= lastBroadcastLevel)
        return profileLabel(broadcast, broadcastLevels + low);
    if (rsiz == 0x0306 || rsiz == 0x0307) // multi-tile, reversible
        return profileLabel(broadcast, broadcastLevels + low);
    if (rsiz >= firstIMF && rsiz <= lastIMF)
        if (unsigned const level = levelOfIMF(low & 0xF, low >> 4); level != 0)
            return profileLabel(static_cast<unsigned char>(high - 2), level);
    return undefinedProfile;
}

FileDescriptor& describeJPEG2000(Metadata::PartitionMetadata& metadata, FileDescriptor* present,
                                 JPEG2000Pictures const& pictures) {
    return pictures.colour() == Colour::YCbCr
               ? describeAs<CDCIEssenceDescriptor>(metadata, present, pictures)
               : describeAs<RGBAEssenceDescriptor>(metadata, present, pictures);
}

} // namespace MXF::Zelm::GenericContainer
