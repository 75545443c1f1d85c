#include "MXF/Zelm/GenericContainer/Analyzers/CodedSoundAnalyzer.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Analyzers/CodedSoundLabels.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"

#include <numeric>

namespace MXF::Zelm::GenericContainer {

using Essence::CodedSound::Format;
using Metadata::Structural::GenericSoundEssenceDescriptor;

CodedSoundAnalyzer::CodedSoundAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, Format const& format,
                                       CodedSoundOptions options)
    : format_(format),
      frames_(std::move(source), format, options.mostSearched),
      options_(options),
      begin_(options.start) {}

CodedSoundAnalyzer::~CodedSoundAnalyzer() = default;

void CodedSoundAnalyzer::editRate(Templates::Rational<int> const& rate) {
    BasicAnalyzer::editRate(rate);
    cadence_.reset();
}

Templates::Rational<int> CodedSoundAnalyzer::editRate() const {
    bool const isFrames = options_.wrapping == Wrapping::Clip || !BasicAnalyzer::editRate().isKnown();
    return isFrames && header().size != 0 ? frameRate() : BasicAnalyzer::editRate();
}

Templates::Rational<int> CodedSoundAnalyzer::frameRate() const {
    if (header().size == 0)
        throw Exceptions::InvalidStructure("The sound has not been looked at yet");
    auto const common = std::gcd(header().samplingRate, header().samples);
    return {static_cast<int>(header().samplingRate / common), static_cast<int>(header().samples / common)};
}

bool CodedSoundAnalyzer::preload() {
    if (!isLoaded_)
        advance();
    while (!isLoaded_ && ahead_ && begin_ + ahead_->header.samples / 2 < 0) {
        begin_ += ahead_->header.samples;
        advance();
    }
    isLoaded_ = true;
    if (!cadence_ && options_.wrapping != Wrapping::Clip && BasicAnalyzer::editRate().isKnown() &&
        header().samplingRate != 0)
        cadence_.emplace(header().samplingRate, BasicAnalyzer::editRate());
    return ahead_.has_value();
}

void CodedSoundAnalyzer::advance() {
    ahead_ = frames_.next();
    if (ahead_ && ahead_->header.channels != header().channels && change_.empty())
        change_ = std::string(format_.name) + " changes from " + std::to_string(header().channels) + " to " +
                  std::to_string(ahead_->header.channels) + " channels at 0x" +
                  ByteCoders::toHexadecimal(ahead_->offset);
}

std::string CodedSoundAnalyzer::fault() const {
    auto const& passed = frames_.passed();
    std::string text = change_;
    if (passed.count != 0)
        text += (text.empty() ? "" : "; ") + std::to_string(passed.count) + " bytes are no frames of " +
                std::string(format_.name) + ", the first at 0x" + ByteCoders::toHexadecimal(passed.offset);
    return text + (passed.isAtEnd ? ": the sound ends before them" : "");
}

Types::UniversalLabel CodedSoundAnalyzer::universalLabel() const {
    return codedSoundContainer(header().coding, options_.streamId, options_.wrapping);
}

unsigned char CodedSoundAnalyzer::itemTypeIdentifier() const { return ElementKey::Sound; }

unsigned char CodedSoundAnalyzer::essenceElementType() const {
    constexpr unsigned char frames = 0x05, clip = 0x06; // SMPTE 381M
    return options_.wrapping == Wrapping::Clip ? clip : frames;
}

Metadata::Structural::FileDescriptor&
CodedSoundAnalyzer::describe(Metadata::PartitionMetadata& metadata,
                             Metadata::Structural::FileDescriptor* present) {
    auto& descriptor = presentOrNew<GenericSoundEssenceDescriptor>(metadata, present);
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    descriptor.soundEssenceCompression(codedSoundCompression(header().coding));
    descriptor.audioSamplingRate(
        Types::Rational(Templates::Rational<int>{static_cast<int>(header().samplingRate), 1}));
    descriptor.locked(Types::Boolean(false)); // nothing in the frames tells
    descriptor.channelCount(Types::UInt32(header().channels));
    descriptor.quantizationBits(Types::UInt32(0));
    if (header().dialNorm != 0)
        descriptor.dialNorm(Types::Int8(header().dialNorm));
    return descriptor;
}

bool CodedSoundAnalyzer::belongsTo(std::uint64_t unit) const {
    return begin_ < static_cast<std::int64_t>(cadence_->samplesBefore(unit + 1));
}

std::uint64_t CodedSoundAnalyzer::read(EditUnit& unit) {
    if (!isLoaded_)
        throw Exceptions::InvalidStructure("The sound has not been looked at yet");
    bool isFirst = true;
    while (ahead_ && (isByFrames() ? isFirst : belongsTo(unitsGiven()))) {
        unit.data.append(std::move(ahead_->bytes));
        begin_ += ahead_->header.samples;
        isFirst = false;
        advance();
    }
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
