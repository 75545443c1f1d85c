/// Essence descriptors for `zelm info`.
#include "SetValues.h"

#include <MXF/Zelm/Platform/Text.h>
#include <MXF/Zelm/Types/RGBALayout.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;

namespace {

/// Levels of multiple descriptors and members of one that are followed; a file may hold circles.
constexpr int deepestDescriptor = 2;
constexpr std::size_t mostDescriptors = 256;

// FrameLayout (SMPTE 377M): heights count the lines of one field where fields are stored apart.
constexpr std::int64_t separateFields = 1;
constexpr std::int64_t singleField = 2;

std::string scanText(std::int64_t frameLayout) {
    constexpr const char* texts[] = {"progressive", "interlaced (separate fields)",
                                     "interlaced (single field)", "interlaced (mixed fields)",
                                     "segmented frames"};
    return frameLayout >= 0 && frameLayout < static_cast<std::int64_t>(std::size(texts)) ? texts[frameLayout]
                                                                                         : std::string();
}

std::string chromaText(std::optional<std::uint32_t> horizontal, std::optional<std::uint32_t> vertical) {
    if (!horizontal || *horizontal == 0)
        return {};
    std::uint32_t const lines = vertical.value_or(1);
    if (*horizontal == 1)
        return "4:4:4";
    if (*horizontal == 4)
        return lines == 1 ? "4:1:1" : "4:1:0";
    return lines == 2 ? "4:2:0" : "4:2:2";
}

/// "RGB" of an RGBA layout, fill left out, and the depth of its first component.
void takeLayout(Types::RGBALayout const& layout, PictureInfo& picture) {
    for (auto const& component : layout.components()) {
        if (component.code == 'F' || component.code == '0')
            continue;
        if (!picture.bitDepth)
            picture.bitDepth = component.depth;
        constexpr unsigned char firstXyz = 0xD8;
        if (component.code >= firstXyz && component.code < firstXyz + 3)
            picture.chroma += static_cast<char>('X' + component.code - firstXyz);
        else if (component.code > 0x20 && component.code < 0x7F)
            picture.chroma += static_cast<char>(component.code);
    }
}

/// A height of the descriptor as lines of a frame.
std::optional<std::uint32_t> frameHeight(std::optional<std::uint32_t> height, std::int64_t frameLayout) {
    bool const perField = frameLayout == separateFields || frameLayout == singleField;
    if (!height || !perField || *height > 0x7FFFFFFF)
        return height;
    return *height * 2;
}

PictureInfo gatherPicture(MetadataSet const& set) {
    PictureInfo picture;
    std::int64_t const layout = integer(set, u"FrameLayout").value_or(0);
    auto const height = [&](std::u16string_view name) { return frameHeight(count(set, name), layout); };
    picture.storedWidth = count(set, u"StoredWidth");
    picture.storedHeight = height(u"StoredHeight");
    picture.sampledWidth = count(set, u"SampledWidth");
    picture.sampledHeight = height(u"SampledHeight");
    picture.displayWidth = count(set, u"DisplayWidth");
    picture.displayHeight = height(u"DisplayHeight");
    picture.aspect = rational(set, u"ImageAspectRatio");
    if (findElement(set, u"FrameLayout") != nullptr)
        picture.scan = scanText(layout);
    picture.chroma = chromaText(count(set, u"HorizontalSubsampling"), count(set, u"VerticalSubsampling"));
    if (auto const depth = count(set, u"ComponentDepth"); depth && *depth != 0)
        picture.bitDepth = depth;
    if (auto const* const pixels = property<Types::RGBALayout>(set, u"PixelLayout"))
        takeLayout(*pixels, picture);
    picture.transferCharacteristic = label(set, u"TransferCharacteristic");
    picture.codingEquations = label(set, u"CodingEquations");
    picture.colorPrimaries = label(set, u"ColorPrimaries");
    return picture;
}

ChannelLabel gatherChannelLabel(MetadataSet const& set, std::string kind) {
    return {std::move(kind), text(set, u"MCATagSymbol"), text(set, u"MCATagName"),
            count(set, u"MCAChannelID"), text(set, u"RFC5646SpokenLanguage")};
}

SoundInfo gatherSound(MetadataSet const& set) {
    SoundInfo sound;
    sound.samplingRate = rational(set, u"AudioSampleRate");
    sound.channels = count(set, u"ChannelCount");
    sound.bits = count(set, u"QuantizationBits");
    if (auto const* const locked = property<Types::Boolean>(set, u"Locked"))
        sound.locked = locked->value();
    sound.channelAssignment = label(set, u"ChannelAssignment");
    for (auto const* const sub : references(set, u"SubDescriptors")) {
        if (sub->name() == u"AudioChannelLabelSubDescriptor")
            sound.labels.push_back(gatherChannelLabel(*sub, "channel"));
        else if (sub->name() == u"SoundfieldGroupLabelSubDescriptor" ||
                 sub->name() == u"IABSoundfieldLabelSubDescriptor")
            sound.labels.push_back(gatherChannelLabel(*sub, "soundfield group"));
        else if (sub->name() == u"GroupOfSoundfieldGroupsLabelSubDescriptor")
            sound.labels.push_back(gatherChannelLabel(*sub, "group of soundfield groups"));
    }
    std::stable_sort(sound.labels.begin(), sound.labels.end(), [](auto const& a, auto const& b) {
        return a.channel.value_or(0) < b.channel.value_or(0);
    });
    return sound;
}

std::string locatorText(MetadataSet const& set) {
    std::string const url = text(set, u"URL");
    return url.empty() ? text(set, u"LocationName") : url;
}

DescriptorInfo gather(MetadataSet const& set, MetaMetadata::Dictionary const& dictionary, int level) {
    DescriptorInfo info;
    info.className = Platform::toUtf8(set.name());
    info.linkedTrack = count(set, u"LinkedTrackID");
    info.sampleRate = rational(set, u"SampleRate");
    info.duration = known(set, u"EssenceLength");
    info.container = label(set, u"ContainerFormat");
    info.mimeType = text(set, u"MIMEType");
    for (auto const* const locator : references(set, u"Locators"))
        info.locators.push_back(locatorText(*locator));
    if (isA(set, u"PictureDescriptor", dictionary)) {
        info.coding = label(set, u"PictureCompression");
        info.picture = gatherPicture(set);
    } else if (isA(set, u"SoundDescriptor", dictionary)) {
        info.coding = label(set, u"SoundCompression");
        info.sound = gatherSound(set);
    } else {
        info.coding = label(set, u"DataEssenceCoding");
    }
    if (level < deepestDescriptor)
        for (auto const* const member : references(set, u"FileDescriptors"))
            if (info.descriptors.size() < mostDescriptors)
                info.descriptors.push_back(gather(*member, dictionary, level + 1));
    return info;
}

} // namespace

DescriptorInfo gatherDescriptor(MetadataSet const& set, MetaMetadata::Dictionary const& dictionary) {
    return gather(set, dictionary, 0);
}

} // namespace Zelm
