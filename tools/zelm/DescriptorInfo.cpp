/// Essence descriptors for `zelm info`.
#include "SetValues.h"

#include <MXF/Zelm/Metadata/Structural/CDCIEssenceDescriptor.h>
#include <MXF/Zelm/Metadata/Structural/DataDescriptors.h>
#include <MXF/Zelm/Metadata/Structural/DescriptorKeys.h>
#include <MXF/Zelm/Metadata/Structural/Locators.h>
#include <MXF/Zelm/Metadata/Structural/RGBAEssenceDescriptor.h>
#include <MXF/Zelm/Metadata/Structural/SoundDescriptors.h>
#include <MXF/Zelm/Platform/Text.h>
#include <MXF/Zelm/Types/RGBALayout.h>

#include <algorithm>

namespace Zelm {

using namespace MXF::Zelm;
using Metadata::MetadataSet;
namespace Structural = Metadata::Structural;

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

void takeComponents(Structural::CDCIEssenceDescriptor const& set, PictureInfo& picture) {
    picture.chroma = chromaText(count(set.horizontalSubsampling()), count(set.verticalSubsampling()));
    if (auto const depth = count(set.componentDepth()); depth && *depth != 0)
        picture.bitDepth = depth;
}

PictureInfo gatherPicture(Structural::GenericPictureEssenceDescriptor const& set) {
    PictureInfo picture;
    auto const layout = count(set.frameLayout());
    auto const height = [&](Types::UInt32 const* lines) {
        return frameHeight(count(lines), layout.value_or(0));
    };
    picture.storedWidth = count(set.storedWidth());
    picture.storedHeight = height(set.storedHeight());
    picture.sampledWidth = count(set.sampledWidth());
    picture.sampledHeight = height(set.sampledHeight());
    picture.displayWidth = count(set.displayWidth());
    picture.displayHeight = height(set.displayHeight());
    picture.aspect = rational(set.aspectRatio());
    if (layout)
        picture.scan = scanText(*layout);
    if (auto const* const cdci = dynamic_cast<Structural::CDCIEssenceDescriptor const*>(&set))
        takeComponents(*cdci, picture);
    if (auto const* const rgba = dynamic_cast<Structural::RGBAEssenceDescriptor const*>(&set))
        if (auto const* const pixels = rgba->pixelLayout())
            takeLayout(*pixels, picture);
    picture.transferCharacteristic = label(set.transferCharacteristic());
    picture.codingEquations = label(set.codingEquations());
    picture.colorPrimaries = label(set.colorPrimaries());
    return picture;
}

/// The text of a property of a set that has no class of its own.
std::string textOf(MetadataSet const& set, std::u16string_view name) {
    auto const* const element = set.findElement(name);
    return element != nullptr ? text(element->baseValue()) : std::string();
}

/// What a sub-descriptor labels; null when it is no label.
const char* labelKind(KLV::Key const& key) {
    namespace Keys = Structural::DescriptorKeys;
    if (key == Keys::audioChannelLabelSubDescriptor)
        return "channel";
    if (key == Keys::soundfieldGroupLabelSubDescriptor || key == Keys::iabSoundfieldLabelSubDescriptor)
        return "soundfield group";
    return key == Keys::groupOfSoundfieldGroupsLabelSubDescriptor ? "group of soundfield groups" : nullptr;
}

SoundInfo gatherSound(Structural::GenericSoundEssenceDescriptor const& set) {
    SoundInfo sound;
    sound.samplingRate = rational(set.audioSamplingRate());
    sound.channels = count(set.channelCount());
    sound.bits = count(set.quantizationBits());
    if (auto const* const locked = set.locked())
        sound.locked = locked->value();
    if (auto const* const wave = dynamic_cast<Structural::WAVEAudioEssenceDescriptor const*>(&set))
        sound.channelAssignment = label(wave->channelAssignment());
    for (auto const* const sub : set.subDescriptors())
        if (auto const* const kind = labelKind(sub->key()))
            sound.labels.push_back({kind, textOf(*sub, u"MCATagSymbol"), textOf(*sub, u"MCATagName"),
                                    count(sub->value<Types::UInt32>(u"MCAChannelID")),
                                    textOf(*sub, u"RFC5646SpokenLanguage")});
    std::stable_sort(sound.labels.begin(), sound.labels.end(), [](auto const& a, auto const& b) {
        return a.channel.value_or(0) < b.channel.value_or(0);
    });
    return sound;
}

std::string locatorText(Structural::Locator const& locator) {
    if (auto const* const network = dynamic_cast<Structural::NetworkLocator const*>(&locator))
        return text(network->urlString());
    auto const* const words = dynamic_cast<Structural::TextLocator const*>(&locator);
    return words != nullptr ? text(words->locatorName()) : std::string();
}

DescriptorInfo gather(Structural::GenericDescriptor const& set, int level);

void takeFileDescriptor(Structural::FileDescriptor const& set, DescriptorInfo& info) {
    info.linkedTrack = count(set.linkedTrackID());
    info.sampleRate = rational(set.sampleRate());
    info.duration = known(set.containerDuration());
    info.container = label(set.essenceContainer());
    if (auto const* const picture = dynamic_cast<Structural::GenericPictureEssenceDescriptor const*>(&set)) {
        info.coding = label(picture->pictureEssenceCoding());
        info.picture = gatherPicture(*picture);
    } else if (auto const* const sound =
                   dynamic_cast<Structural::GenericSoundEssenceDescriptor const*>(&set)) {
        info.coding = label(sound->soundEssenceCompression());
        info.sound = gatherSound(*sound);
    } else if (auto const* const data = dynamic_cast<Structural::GenericDataEssenceDescriptor const*>(&set)) {
        info.coding = label(data->dataEssenceCoding());
    }
}

DescriptorInfo gather(Structural::GenericDescriptor const& set, int level) {
    DescriptorInfo info;
    info.className = Platform::toUtf8(set.name());
    info.mimeType = textOf(set, u"MIMEType");
    for (auto const* const locator : set.locators())
        info.locators.push_back(locatorText(*locator));
    if (auto const* const file = dynamic_cast<Structural::FileDescriptor const*>(&set))
        takeFileDescriptor(*file, info);
    auto const* const multiple = dynamic_cast<Structural::MultipleDescriptor const*>(&set);
    if (multiple != nullptr && level < deepestDescriptor)
        for (auto const* const member : multiple->fileDescriptors())
            if (info.descriptors.size() < mostDescriptors)
                info.descriptors.push_back(gather(*member, level + 1));
    return info;
}

} // namespace

DescriptorInfo gatherDescriptor(Structural::GenericDescriptor const& set) { return gather(set, 0); }

} // namespace Zelm
