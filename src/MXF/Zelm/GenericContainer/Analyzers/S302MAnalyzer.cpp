#include "MXF/Zelm/GenericContainer/Analyzers/S302MAnalyzer.h"

#include "MXF/Zelm/ByteCoders/Hexadecimal.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/ElementKey.h"
#include "MXF/Zelm/Metadata/Structural/SoundDescriptors.h"

namespace MXF::Zelm::GenericContainer {

using namespace KLV::Literals;
using Metadata::Structural::GenericSoundEssenceDescriptor;

namespace {

/// Frame-wrapped elements of MPEG sound (SMPTE 381M).
constexpr unsigned char frameWrappedMPEG = 0x05;

} // namespace

/// Of private stream 1: byte 14 is its stream_id, BD, without the uppermost bit.
Types::UniversalLabel s302mLabel() { return "060E2B34.04010102.0D010301.02043D01"_key; }

S302MAnalyzer::S302MAnalyzer(Templates::SharedPtr<DataIO::SliceSource> packets, std::int64_t start)
    : packets_(std::move(packets)), begin_(start) {}

S302MAnalyzer::~S302MAnalyzer() = default;

void S302MAnalyzer::editRate(Templates::Rational<int> const& rate) {
    BasicAnalyzer::editRate(rate);
    cadence_.reset();
}

unsigned char S302MAnalyzer::itemTypeIdentifier() const { return ElementKey::Sound; }
unsigned char S302MAnalyzer::essenceElementType() const { return frameWrappedMPEG; }

bool S302MAnalyzer::preload() {
    if (!isLoaded_)
        advance();
    while (!isLoaded_ && ahead_ && middle() < 0) {
        begin_ += ahead_->instants;
        advance();
    }
    isLoaded_ = true;
    if (!cadence_ && editRate().isKnown() && info().channels != 0)
        cadence_.emplace(info().samplingRate, editRate());
    if (cadence_ && unitsGiven() == 0 && ahead_)
        requireFitting();
    return ahead_.has_value();
}

void S302MAnalyzer::requireFitting() const {
    if (ahead_->instants > cadence_->mostSamples())
        throw Exceptions::InvalidValue("Packets of SMPTE 302M with " + std::to_string(ahead_->instants) +
                                       " samples do not go into edit units of " +
                                       std::to_string(cadence_->mostSamples()));
    if (!belongsTo(0))
        throw Exceptions::InvalidValue("The packets of SMPTE 302M begin " + std::to_string(begin_) +
                                       " samples late, behind the first edit unit");
}

/// Reads the next packet. What is none ends the sound.
void S302MAnalyzer::advance() {
    ahead_.reset();
    try {
        ahead_ = packets_.next();
    } catch (Exceptions::SystemError const&) {
        throw;
    } catch (Exceptions::BaseException const& failure) {
        fault_ = "The packets of SMPTE 302M end early: " + failure.message() + " at 0x" +
                 ByteCoders::toHexadecimal(failure.offset().value_or(0));
    }
}

bool S302MAnalyzer::belongsTo(std::uint64_t unit) const {
    return middle() < static_cast<std::int64_t>(cadence_->samplesBefore(unit + 1));
}

Metadata::Structural::FileDescriptor& S302MAnalyzer::describe(Metadata::PartitionMetadata& metadata,
                                                              Metadata::Structural::FileDescriptor* present) {
    auto& descriptor = presentOrNew<GenericSoundEssenceDescriptor>(metadata, present);
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    descriptor.audioSamplingRate(Types::Rational(info().samplingRate));
    descriptor.locked(Types::Boolean(true));
    descriptor.channelCount(Types::UInt32(info().channels));
    descriptor.quantizationBits(Types::UInt32(info().bitsPerSample));
    return descriptor;
}

std::uint64_t S302MAnalyzer::read(EditUnit& unit) {
    if (!cadence_)
        throw Exceptions::InvalidStructure("The sound has not been looked at yet");
    while (ahead_ && belongsTo(unitsGiven())) {
        unit.data.append(std::move(ahead_->bytes));
        begin_ += ahead_->instants;
        advance();
    }
    if (unit.data.empty())
        throw Exceptions::InvalidStructure("Edit unit " + std::to_string(unitsGiven()) +
                                           " has no packet of SMPTE 302M: they are not at its rate");
    return 1;
}

} // namespace MXF::Zelm::GenericContainer
