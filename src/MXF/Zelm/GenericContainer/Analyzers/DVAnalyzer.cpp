#include "MXF/Zelm/GenericContainer/Analyzers/DVAnalyzer.h"

#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Analyzers/PictureFacts.h"
#include "MXF/Zelm/GenericContainer/Analyzers/StreamTimecode.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"

#include <algorithm>
#include <iterator>

namespace MXF::Zelm::GenericContainer {

namespace {

using namespace KLV::Literals;
using Essence::DV::Format;
using Essence::DV::FrameHeader;
using Metadata::Structural::CDCIEssenceDescriptor;

constexpr unsigned char frameWrapped = 0x01, clipWrapped = 0x02;

/// Byte 14 of the container's label, counted from 0, and the label of the coding.
struct Labels {
    Format::Family family;
    unsigned megabits;
    unsigned lines; // 480 to 1080
    bool is50;
    unsigned char container;
    KLV::Key coding;
};

constexpr auto iec = Format::Family::IEC, based = Format::Family::DVBased;

constexpr Labels allLabels[] = {
    {iec, 25, 480, false, 0x01, "060E2B34.04010101.04010202.02010100"_key},
    {iec, 25, 576, true, 0x02, "060E2B34.04010101.04010202.02010200"_key},
    {based, 25, 480, false, 0x40, "060E2B34.04010101.04010202.02020100"_key},
    {based, 25, 576, true, 0x41, "060E2B34.04010101.04010202.02020200"_key},
    {based, 50, 480, false, 0x50, "060E2B34.04010101.04010202.02020300"_key},
    {based, 50, 576, true, 0x51, "060E2B34.04010101.04010202.02020400"_key},
    {based, 100, 1080, false, 0x60, "060E2B34.04010101.04010202.02020500"_key},
    {based, 100, 1080, true, 0x61, "060E2B34.04010101.04010202.02020600"_key},
    {based, 100, 720, false, 0x62, "060E2B34.04010101.04010202.02020700"_key},
    {based, 100, 720, true, 0x63, "060E2B34.04010101.04010202.02020800"_key},
};

/// Every form has labels.
Labels const& labelsOf(Format const& format) {
    return *std::find_if(std::begin(allLabels), std::end(allLabels) - 1, [&](Labels const& each) {
        return each.family == format.family && each.megabits == format.megabits &&
               each.lines == format.height && each.is50 == format.is50;
    });
}

constexpr std::uint8_t bt709 = 1, bt601 = 6; // codes of transfer and matrix

/// Of 50 and 59.94 frames a second only every other one is counted: nothing tells which.
Utils::TimeCode timecodeOf(FrameHeader const& header) {
    auto const& time = header.timecode;
    if (!time || header.format->isProgressive)
        return {};
    return streamTimecode({time->hours, time->minutes, time->seconds, time->frames}, time->dropFrame,
                          header.format->rate);
}

/// Sizes are those of the signal, of which fewer samples may be coded.
void describeForm(CDCIEssenceDescriptor& descriptor, FrameHeader const& header) {
    auto const& format = *header.format;
    bool const isHD = format.height > 576, is420 = format.verticalSubsampling == 2;
    PictureFacts facts;
    facts.isProgressive = format.isProgressive;
    facts.width = facts.codedWidth = format.width;
    facts.height = facts.codedHeight = format.height;
    facts.macroblock = 1;
    facts.chromaFormat = is420 ? 1 : 2;
    facts.colorSiting = is420 ? CDCIEssenceDescriptor::lineAlternating : CDCIEssenceDescriptor::rec601;
    if (!format.isProgressive)
        facts.isTopFirst = isHD;
    facts.aspectRatio = header.isWide ? Templates::Rational<int>{16, 9} : Templates::Rational<int>{4, 3};
    facts.colours = {ColourCodes::unknown, bt709, isHD ? bt709 : bt601};
    describePictureFacts(descriptor, facts);
    descriptor.horizontalSubsampling(Types::UInt32(format.horizontalSubsampling));
}

} // namespace

DVAnalyzer::DVAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, DVOptions const& options)
    : source_(std::move(source)), options_(options) {}

bool DVAnalyzer::preload() {
    if (header_)
        return true;
    source_->read(FrameHeader::size, next_);
    header_ = FrameHeader::read(next_);
    if (!header_)
        return false;
    source_->read(header_->format->frameSize() - next_.size(), next_);
    if (next_.size() < header_->format->frameSize()) {
        header_.reset();
        next_.clear();
        return false;
    }
    timecode_ = timecodeOf(*header_);
    return true;
}

FrameHeader const& DVAnalyzer::header() const {
    if (!header_)
        throw Exceptions::InvalidStructure("The DV stream has not been looked at yet");
    return *header_;
}

Templates::Rational<int> DVAnalyzer::editRate() const {
    return header_ ? header_->format->rate : Templates::Rational<int>{};
}

Types::UniversalLabel DVAnalyzer::universalLabel() const {
    KLV::Key label = "060E2B34.04010101.0D010301.02020000"_key;
    label[14] = labelsOf(*header().format).container;
    label[15] = options_.wrapping == Wrapping::Clip ? clipWrapped : frameWrapped;
    return label;
}

unsigned int DVAnalyzer::boundedEditUnitSize() const { return header().format->frameSize(); }
unsigned char DVAnalyzer::itemTypeIdentifier() const { return ElementKey::Compound; }

unsigned char DVAnalyzer::essenceElementType() const {
    return options_.wrapping == Wrapping::Clip ? clipWrapped : frameWrapped;
}

/// Whole frames, when there is no time limit.
std::optional<std::uint64_t> DVAnalyzer::byteCount() const {
    if (!header_ || !options_.byteCount)
        return std::nullopt;
    std::uint64_t const size = header_->format->frameSize();
    return std::min(*options_.byteCount / size, limit()) * size;
}

Metadata::Structural::FileDescriptor& DVAnalyzer::describe(Metadata::PartitionMetadata& metadata,
                                                           Metadata::Structural::FileDescriptor* present) {
    auto& descriptor = presentOrNew<CDCIEssenceDescriptor>(metadata, present);
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    descriptor.pictureEssenceCoding(labelsOf(*header().format).coding);
    describeForm(descriptor, header());
    return descriptor;
}

void DVAnalyzer::fetch() {
    std::uint64_t const size = header_->format->frameSize();
    next_.clear();
    std::uint64_t const count = source_->read(size, next_);
    if (count == 0 || count == size)
        return;
    next_.clear();
    fault_ = "The DV stream ends amid frame " + std::to_string(unitsGiven() + 1);
}

std::uint64_t DVAnalyzer::read(EditUnit& unit) {
    auto const header = FrameHeader::read(next_);
    if (!header || header->format != header_->format)
        throw Exceptions::InvalidFormat("Frame " + std::to_string(unitsGiven()) +
                                        " of the DV stream is none, or has another form than the first");
    auto const told = timecodeOf(*header);
    timecode_ = told.isDefined() || unitsGiven() == 0 ? told : Utils::TimeCode(timecode_) += 1;
    if (timecode_.isDefined())
        unit.timecode = std::make_shared<Utils::TimeCode>(timecode_);
    unit.data = std::move(next_);
    fetch();
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
