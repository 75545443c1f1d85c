#include "LayoutOptions.h"

#include "ClassTree.h"
#include "MetadataEditor.h"
#include "TrackLabels.h"
#include "Writer.h"

#include <MXF/Zelm/Exceptions/Exceptions.h>
#include <MXF/Zelm/Platform/Text.h>

#include <charconv>

namespace Zelm {

using namespace MXF::Zelm;
using Exceptions::InvalidValue;
using GenericContainer::Wrapping;

namespace {

struct IndexRow {
    const char* name;
    Layout::Index index;
};

constexpr IndexRow indexRows[] = {{"footer", Layout::Index::Footer},
                                  {"body", Layout::Index::Body},
                                  {"own", Layout::Index::OwnPartitions},
                                  {"header", Layout::Index::Header}};

/// Alignment grids above this help nobody, in bytes.
constexpr std::uint32_t largestKAG = 1u << 20;

constexpr std::uint64_t largestReserve = std::uint64_t{1} << 30;

/// Digits with a point among them as numerator and power of ten; none when it is something else.
std::optional<EditRate> parseDecimal(std::string const& text) {
    EditRate number{0, 1};
    bool isBehindPoint = false;
    if (text.empty() || text.size() > 8 || text.front() == '.' || text.back() == '.')
        return std::nullopt;
    for (char const c : text) {
        if (c == '.' && !isBehindPoint) {
            isBehindPoint = true;
            continue;
        }
        if (c < '0' || c > '9')
            return std::nullopt;
        number.numerator = number.numerator * 10 + (c - '0');
        number.denominator *= isBehindPoint ? 10 : 1;
    }
    return number;
}

/// Rates of television that people write as decimals are a thousandth less than whole ones.
EditRate exactRate(EditRate const& rate) {
    if (rate.denominator == 1)
        return rate;
    auto const whole = static_cast<int>(rate.toDouble() + 0.5);
    EditRate const television{whole * 1000, 1001};
    double const difference = television.toDouble() - rate.toDouble();
    return difference > -0.005 && difference < 0.005 ? television : rate;
}

void splitAtEquals(std::string const& text, std::string& name, std::string& value) {
    auto const equals = text.find('='); // the option's check found one
    name = text.substr(0, equals);
    value = text.substr(equals + 1);
}

} // namespace

EditRate parseRate(std::string const& text) {
    auto const slash = text.find('/');
    auto const numerator = parseDecimal(text.substr(0, slash));
    auto const denominator =
        slash == std::string::npos ? EditRate{1, 1} : parseDecimal(text.substr(slash + 1));
    bool const isFraction = slash != std::string::npos && numerator && denominator &&
                            numerator->denominator == 1 && denominator->denominator == 1;
    if (!numerator || !denominator || (slash != std::string::npos && !isFraction) ||
        numerator->numerator == 0 || denominator->numerator == 0)
        throw InvalidValue("\"" + text + "\" is no rate: 25, 30000/1001 and 29.97 are");
    return isFraction ? EditRate{numerator->numerator, denominator->numerator} : exactRate(*numerator);
}

void LayoutOptions::declare(CLI::App& parser) {
    auto const hasEquals = [](std::string const& text) {
        return text.find('=') != std::string::npos ? "" : "\"" + text + "\" has no =";
    };
    auto* const group = &parser;
    group->add_option("--pattern", pattern, "The operational pattern: " + patternNames() + " (op1a)")
        ->type_name("NAME");
    group
        ->add_option("--preset", preset,
                     "All that an application document settles, checked: " + presetNames())
        ->type_name("NAME");
    auto* const frames = group->add_flag("--frame", frame, "Wrap by edit units");
    group->add_flag("--clip", clip, "Wrap each track as one clip")->excludes(frames);
    group->add_option("--rate", rate, "Edit units a second where no picture tells: 25, 30000/1001, 29.97")
        ->type_name("RATE");
    group
        ->add_option("--start-timecode", startTimecode,
                     "HH:MM:SS:FF, or HH:MM:SS;FF for drop frame; else that of the essence")
        ->type_name("TIMECODE");
    group->add_flag("--drop", drop, "Timecode drops numbers (29.97 and 59.94)");
    group->add_option("--kag", kagSize, "Alignment grid of packets, in bytes")
        ->type_name("BYTES")
        ->check(CLI::Range(1u, largestKAG).description(""));
    group
        ->add_option("--partition-every", partitionEvery,
                     "A new body partition every so many edit units (250) or seconds (10s)")
        ->type_name("N|Ns");
    group
        ->add_option("--index", index,
                     "Where index tables go: footer, body (in body partitions, for what went before), own "
                     "(in partitions of their own), header (edit units of one size)")
        ->type_name("PLACE");
    group->add_flag("--system-item", systemItem, "A system item with timecode in each content package");
    group->add_option("--reserve", reserve, "Bytes left free behind the header metadata, for later edits")
        ->type_name("BYTES")
        ->check(CLI::Range(std::uint64_t{0}, largestReserve).description(""));
    group->add_flag("--repeat-header", repeatHeader,
                    "Repeat the header metadata in each body partition, as known by then");
    group
        ->add_option("--meta", metadata,
                     "Give a property of the header metadata a value, as zelm edit --set; "
                     "may be repeated")
        ->type_name("PATH=VALUE")
        ->allow_extra_args(false)
        ->check(hasEquals);
    group->add_option("--track-label", trackLabels, "Name a track: v1=Programme; may be repeated")
        ->type_name("TRACK=NAME")
        ->allow_extra_args(false)
        ->check(hasEquals);
}

Layout::Layout(LayoutOptions const& options)
    : systemItem_(options.systemItem),
      repeatHeader_(options.repeatHeader),
      startTimecode_(options.startTimecode),
      drop_(options.drop),
      metadata_(options.metadata) {
    if (!options.preset.empty())
        choosePreset(options);
    std::string const name = !options.pattern.empty() ? options.pattern
                             : preset_ != nullptr     ? preset_->pattern
                                                      : "op1a";
    pattern_ = findPattern(name);
    if (pattern_ == nullptr)
        throw InvalidValue("--pattern " + name + ": the patterns are " + patternNames());
    if (!options.rate.empty())
        rate_ = parseRate(options.rate);
    kagSize_ = options.kagSize.value_or(kagSize_);
    reserve_ = options.reserve.value_or(reserve_);
    chooseWrapping(options);
    choosePartitions(options.partitionEvery);
    chooseIndex(options.index);
    for (auto const& text : options.trackLabels) {
        std::string track, label;
        splitAtEquals(text, track, label);
        trackLabels_[track] = label;
    }
    if (preset_ != nullptr)
        checkAgainstPreset(options);
    if (systemItem_ && (isOneFilePerTrack() || wrapping_ == Wrapping::Clip))
        throw InvalidValue(
            "--system-item: goes with content packages of all tracks, not with clips or a file "
            "for each track");
}

void Layout::choosePreset(LayoutOptions const& options) {
    preset_ = findPreset(options.preset);
    if (preset_ == nullptr)
        throw InvalidValue("--preset " + options.preset + ": the presets are " + presetNames());
    wrapping_ = preset_->wrapping;
    kagSize_ = preset_->kagSize.value_or(kagSize_);
    index_ = preset_->index.value_or(index_);
    systemItem_ = systemItem_ || preset_->systemItem;
    reserve_ = preset_->reserve;
}

void Layout::chooseWrapping(LayoutOptions const& options) {
    if (options.frame)
        wrapping_ = Wrapping::Frame;
    else if (options.clip)
        wrapping_ = Wrapping::Clip;
}

void Layout::choosePartitions(std::string const& text) {
    if (text.empty())
        return;
    if (isAtom())
        throw InvalidValue("--partition-every: OP-Atom has one body partition");
    bool const isTime = text.back() == 's';
    auto const number = parseDecimal(text.substr(0, text.size() - (isTime ? 1 : 0)));
    if (!number || number->numerator == 0 || (!isTime && number->denominator != 1))
        throw InvalidValue("--partition-every " + text + ": give edit units (250) or seconds (10s)");
    partitions_.emplace();
    if (isTime)
        partitions_->seconds = {number->numerator, number->denominator};
    else
        partitions_->packages = static_cast<std::uint64_t>(number->numerator);
}

void Layout::chooseIndex(std::string const& name) {
    if (name.empty())
        return;
    for (auto const& row : indexRows)
        if (name == row.name) {
            index_ = row.index;
            return;
        }
    throw InvalidValue("--index " + name + ": the places are footer, body, own and header");
}

void Layout::checkAgainstPreset(LayoutOptions const& options) const {
    auto const require = [&](bool holds, std::string const& option, std::string const& wanted) {
        if (!holds)
            throw InvalidValue(option + " is against " + preset_->document + ", which asks for " + wanted);
    };
    require(findPattern(preset_->pattern) == pattern_, "--pattern", preset_->pattern);
    if (preset_->wrapping)
        require(wrapping_ == preset_->wrapping, "--clip", "frame wrapping");
    if (preset_->kagSize)
        require(kagSize_ == *preset_->kagSize, "--kag",
                "an alignment of " + std::to_string(*preset_->kagSize));
    if (preset_->index)
        require(options.index.empty() || index_ == *preset_->index, "--index", "index tables elsewhere");
    if (preset_->essenceInHeader)
        require(!partitions_, "--partition-every", "one partition with essence");
    require(!isAtom() || reserve_ >= preset_->reserve, "--reserve", "8192 bytes or more");
}

Utils::TimeCode Layout::startTimecode(EditRate const& rate, Utils::TimeCode const& told) const {
    auto const base = static_cast<unsigned>((rate.numerator + rate.denominator / 2) / rate.denominator);
    std::string const text = hasStartTimecode() ? startTimecode_ : "00:00:00:00";
    auto const plain = [&] {
        if (!hasStartTimecode() && told.isDefined())
            return told;
        try {
            return Utils::TimeCode::fromText(Platform::toUtf16(text), base);
        } catch (Exceptions::BaseException const& refusal) {
            throw InvalidValue("--start-timecode " + text + ": " + refusal.message());
        }
    }();
    bool const drops = drop_ || plain.base().dropFrame();
    if (!drops || plain.base().dropFrame())
        return plain;
    if (!Utils::TimeBase::canDrop(base) || rate.denominator != 1001)
        throw InvalidValue("--drop: no numbers are dropped at " + std::to_string(rate.numerator) + "/" +
                           std::to_string(rate.denominator) + " edit units a second");
    Utils::TimeBase const dropping(base, true);
    if (!Utils::TimeCode::isValid(dropping, plain.address()))
        throw InvalidValue("--drop: " + Platform::toUtf8(plain.toString()) + " is a number that is dropped");
    return {dropping, plain.address()};
}

OPBuilders::BuilderOptions Layout::builderOptions(EditRate const& rate, Utils::TimeCode const& start) const {
    OPBuilders::BuilderOptions options;
    options.product = thisProduct();
    options.startTimecode = start;
    options.timecodeRate = rate;
    auto& layout = options.layout;
    layout.index = index_;
    layout.kagSize = kagSize_;
    layout.metadataReserve = reserve_;
    layout.metadataInBody = repeatHeader_;
    layout.essenceInHeader = preset_ != nullptr && preset_->essenceInHeader;
    bool const isBodyIndexed = index_ == Index::Body || index_ == Index::BodyAndFooter;
    if (partitions_)
        layout.partitions = *partitions_;
    else if (preset_ != nullptr && preset_->partitionSeconds == 60)
        layout.partitions.seconds = {60, 1};
    else if (isBodyIndexed && !isAtom())
        layout.partitions.packages = packagesOfTenSeconds(rate);
    layout.interleaving = MXFIO::CreatorSettings::Interleaving::ByTime;
    return options;
}

std::vector<std::string> Layout::apply(Metadata::PartitionMetadata& metadata,
                                       SharedDictionary const& dictionary) const {
    auto const unused = labelTracks(metadata, trackLabels_);
    if (metadata_.empty())
        return unused;
    ClassTree const classes(*dictionary);
    MetadataEditor editor(metadata, classes);
    for (auto const& text : metadata_) {
        std::string path, value;
        splitAtEquals(text, path, value);
        editor.apply({path, value});
    }
    return unused;
}

} // namespace Zelm
