#include "MXF/Zelm/Metadata/Structural/ChannelMap.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorKeys.h"
#include "MXF/Zelm/Types/Strings.h"

#include <algorithm>
#include <charconv>
#include <set>

namespace MXF::Zelm::Metadata::Structural {

namespace {

using namespace KLV::Literals;

constexpr SoundLabel channelLabels[] = {
    {"L", "060E2B34.0401010D.03020101.00000000"_key, u"Left"},
    {"R", "060E2B34.0401010D.03020102.00000000"_key, u"Right"},
    {"C", "060E2B34.0401010D.03020103.00000000"_key, u"Center"},
    {"LFE", "060E2B34.0401010D.03020104.00000000"_key, u"LFE"},
    {"Ls", "060E2B34.0401010D.03020105.00000000"_key, u"Left Surround"},
    {"Rs", "060E2B34.0401010D.03020106.00000000"_key, u"Right Surround"},
    {"Lss", "060E2B34.0401010D.03020107.00000000"_key, u"Left Side Surround"},
    {"Rss", "060E2B34.0401010D.03020108.00000000"_key, u"Right Side Surround"},
    {"Lrs", "060E2B34.0401010D.03020109.00000000"_key, u"Left Rear Surround"},
    {"Rrs", "060E2B34.0401010D.0302010A.00000000"_key, u"Right Rear Surround"},
    {"Lc", "060E2B34.0401010D.0302010B.00000000"_key, u"Left Center"},
    {"Rc", "060E2B34.0401010D.0302010C.00000000"_key, u"Right Center"},
    {"Cs", "060E2B34.0401010D.0302010D.00000000"_key, u"Center Surround"},
    {"HI", "060E2B34.0401010D.0302010E.00000000"_key, u"Hearing Impaired"},
    {"VIN", "060E2B34.0401010D.0302010F.00000000"_key, u"Visually Impaired Narrative"},
    {"M1", "060E2B34.0401010D.03020120.01000000"_key, u"Mono One"},
    {"M2", "060E2B34.0401010D.03020120.02000000"_key, u"Mono Two"},
    {"Lt", "060E2B34.0401010D.03020120.03000000"_key, u"Left Total"},
    {"Rt", "060E2B34.0401010D.03020120.04000000"_key, u"Right Total"},
    {"Lst", "060E2B34.0401010D.03020120.05000000"_key, u"Left Surround Total"},
    {"Rst", "060E2B34.0401010D.03020120.06000000"_key, u"Right Surround Total"},
    {"S", "060E2B34.0401010D.03020120.07000000"_key, u"Surround"},
};

struct GroupRow {
    std::string_view channels; // in any order
    SoundLabel label;
};

constexpr GroupRow groupRows[] = {
    {"L,R,C,LFE,Ls,Rs", {"51", "060E2B34.0401010D.03020201.00000000"_key, u"5.1"}},
    {"L,R,C,LFE,Lss,Rss,Lrs,Rrs", {"71", "060E2B34.0401010D.03020202.00000000"_key, u"7.1DS"}},
    {"L,R,C,LFE,Ls,Rs,Lc,Rc", {"SDS", "060E2B34.0401010D.03020203.00000000"_key, u"7.1SDS"}},
    {"L,R,C,LFE,Ls,Rs,Cs", {"61", "060E2B34.0401010D.03020204.00000000"_key, u"6.1"}},
    {"C", {"M", "060E2B34.0401010D.03020205.00000000"_key, u"1.0 Monaural"}},
    {"M1", {"M", "060E2B34.0401010D.03020205.00000000"_key, u"1.0 Monaural"}},
    {"L,R", {"ST", "060E2B34.0401010D.03020220.01000000"_key, u"Standard Stereo"}},
    {"M1,M2", {"DM", "060E2B34.0401010D.03020220.02000000"_key, u"Dual Mono"}},
    {"L,R,C", {"30", "060E2B34.0401010D.03020220.04000000"_key, u"3.0"}},
    {"L,R,C,S", {"40", "060E2B34.0401010D.03020220.05000000"_key, u"4.0"}},
    {"L,R,C,Ls,Rs", {"50", "060E2B34.0401010D.03020220.06000000"_key, u"5.0"}},
    {"L,R,C,Ls,Rs,Cs", {"60", "060E2B34.0401010D.03020220.07000000"_key, u"6.0"}},
    {"L,R,C,Lss,Rss,Lrs,Rrs", {"70", "060E2B34.0401010D.03020220.08000000"_key, u"7.0DS"}},
    {"Lt,Rt", {"LtRt", "060E2B34.0401010D.03020220.09000000"_key, u"Lt-Rt"}},
    {"L,R,C,LFE,Lst,Rst", {"51EX", "060E2B34.0401010D.03020220.0A000000"_key, u"5.1EX"}},
    {"HI", {"HA", "060E2B34.0401010D.03020220.0B000000"_key, u"Hearing Accessibility"}},
    {"VIN", {"VA", "060E2B34.0401010D.03020220.0C000000"_key, u"Visual Accessibility"}},
};

constexpr SoundLabel numberedSources = {"DNS", "060E2B34.0401010D.03020220.03000000"_key,
                                        u"Discrete Numbered Sources"};
constexpr SoundLabel numberedSource = {"NSC", "060E2B34.0401010D.03020120.08000000"_key,
                                       u"Numbered Source Channel"};

std::vector<std::string_view> parts(std::string_view text, char separator) {
    std::vector<std::string_view> found;
    for (std::size_t at = 0; at <= text.size();) {
        std::size_t const end = std::min(text.find(separator, at), text.size());
        auto part = text.substr(at, end - at);
        while (!part.empty() && part.front() == ' ')
            part.remove_prefix(1);
        while (!part.empty() && part.back() == ' ')
            part.remove_suffix(1);
        found.push_back(part);
        at = end + 1;
    }
    return found;
}

/// "NSC12": its number stands in byte 13 of the label.
bool isNumbered(std::string_view symbol, SoundLabel& label) {
    unsigned number = 0;
    if (symbol.substr(0, numberedSource.symbol.size()) != numberedSource.symbol)
        return false;
    auto const digits = symbol.substr(numberedSource.symbol.size());
    auto const [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    label = numberedSource;
    label.label.rawBuffer()[13] = static_cast<unsigned char>(number);
    return error == std::errc() && end == digits.data() + digits.size() && number >= 1 && number <= 127;
}

SoundLabel labelOf(std::string_view symbol) {
    if (symbol.substr(0, 2) == "ch")
        symbol.remove_prefix(2);
    for (auto const& row : channelLabels)
        if (row.symbol == symbol)
            return row;
    if (SoundLabel label = numberedSource; isNumbered(symbol, label))
        return label;
    std::string known;
    for (auto const& row : channelLabels)
        known += std::string(row.symbol) + ", ";
    throw Exceptions::InvalidFormat("\"" + std::string(symbol) + "\" is no channel: " + known +
                                    "NSC1 to NSC127 are");
}

/// Null when the channels make no group that has a name.
SoundLabel const* groupOf(std::vector<SoundLabel> const& channels) {
    std::set<std::string_view> symbols;
    for (auto const& each : channels)
        symbols.insert(each.symbol);
    if (symbols == std::set{numberedSource.symbol})
        return &numberedSources;
    for (auto const& row : groupRows) {
        auto const wanted = parts(row.channels, ',');
        if (channels.size() == wanted.size() && symbols == std::set(wanted.begin(), wanted.end()))
            return &row.label;
    }
    return nullptr;
}

void setText(MetadataSet& set, std::u16string_view property, std::u16string const& text) {
    set.value(set.labelOf(property), Types::UTF16String(text));
}

/// What labels of channels and groups have in common.
void describe(MetadataSet& set, const char16_t* prefix, SoundLabel const& label, Types::UUID const& link) {
    std::u16string symbol = prefix;
    symbol.append(label.symbol.begin(), label.symbol.end());
    std::u16string name(label.name);
    if (label.symbol == numberedSource.symbol) {
        std::string const number = std::to_string(label.label.rawBuffer()[13]);
        symbol += std::u16string(3 - number.size(), u'0') + std::u16string(number.begin(), number.end());
        name += u' ' + std::u16string(number.begin(), number.end());
    }
    set.value(set.labelOf(u"MCALabelDictionaryID"), Types::UniversalLabel(label.label));
    set.value(set.labelOf(u"MCALinkID"), link);
    setText(set, u"MCATagSymbol", symbol);
    setText(set, u"MCATagName", name);
}

} // namespace

ChannelMap::ChannelMap(std::string_view text) {
    for (auto const group : parts(text, ';'))
        addGroup(group);
}

void ChannelMap::addGroup(std::string_view text) {
    std::vector<SoundLabel> labels;
    for (auto const symbol : parts(text, ','))
        labels.push_back(labelOf(symbol));
    for (auto const& label : labels)
        channels_.push_back({label, groups_.size()});
    groups_.push_back({groupOf(labels), Types::UUID::generate()});
}

bool ChannelMap::beginsGroup(std::size_t channel) const {
    channel %= channels_.size();
    return channel == 0 || channels_[channel].group != channels_[channel - 1].group;
}

void ChannelMap::addGroupLabel(PartitionMetadata& metadata, GenericSoundEssenceDescriptor& descriptor,
                               Group const& group) const {
    auto& set = metadata.createMetadataSet(DescriptorKeys::soundfieldGroupLabelSubDescriptor);
    describe(set, u"sg", *group.label, group.link);
    descriptor.addSubDescriptor(set);
}

void ChannelMap::label(PartitionMetadata& metadata, GenericSoundEssenceDescriptor& descriptor,
                       std::size_t first, std::size_t count) const {
    std::set<std::size_t> groups;
    for (std::size_t i = 0; i < count; ++i) {
        auto const& channel = channels_[(first + i) % channels_.size()];
        auto const& group = groups_[channel.group];
        auto& set = metadata.createMetadataSet(DescriptorKeys::audioChannelLabelSubDescriptor);
        describe(set, u"ch", channel.label, Types::UUID::generate());
        set.value(set.labelOf(u"MCAChannelID"), Types::UInt32(static_cast<std::uint32_t>(i + 1)));
        if (group.label != nullptr)
            set.value(set.labelOf(u"SoundfieldGroupLinkID"), group.link);
        descriptor.addSubDescriptor(set);
        if (group.label != nullptr && groups.insert(channel.group).second)
            addGroupLabel(metadata, descriptor, group);
    }
}

} // namespace MXF::Zelm::Metadata::Structural
