#include "MXF/Zelm/GenericContainer/Analyzers/AVCAnalyzer.h"

#include "MXF/Zelm/Essence/AVC/AccessUnitCutter.h"
#include "MXF/Zelm/Essence/AVC/CodedPictures.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Analyzers/AVCDescriptor.h"
#include "MXF/Zelm/GenericContainer/Analyzers/AVCLabels.h"
#include "MXF/Zelm/GenericContainer/Analyzers/StreamTimecode.h"

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::AVC::AccessUnit;
using Essence::AVC::AccessUnitCutter;
using Metadata::Structural::CDCIEssenceDescriptor;
using Metadata::Structural::FileDescriptor;

/// The first picture of a class has so many bytes more, for its parameter sets (RP 2027).
constexpr std::uint64_t roomForSets = 512;

} // namespace

struct AVCAnalyzer::State : Platform::Allocated {
    explicit State(Templates::SharedPtr<DataIO::SliceSource> source) : cutter(std::move(source)) {}

    void takeFacts(AccessUnit const& headers, CodedPicture& coded);

    AccessUnitCutter cutter;
    AccessUnitCutter::Unit next = {}; // until it is taken
    AccessUnit first = {};
    Essence::AVC::CodedPictures pictures;
    bool hasFields = false, hasFrames = false;
};

AVCAnalyzer::AVCAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, Wrapping wrapping)
    : VideoAnalyzer(wrapping), state_(std::make_unique<State>(std::move(source))) {}

AVCAnalyzer::~AVCAnalyzer() = default;

bool AVCAnalyzer::open() {
    if (!state_->cutter.findStart(maximumToSkip(), state_->next))
        return false;
    state_->first = state_->next.headers;
    return true;
}

void AVCAnalyzer::State::takeFacts(AccessUnit const& headers, CodedPicture& coded) {
    coded.mostReordered = headers.sequence->mostReordered();
    coded.isProgressive = isProgressive(headers);
    if (coded.picture.isKey)
        coded.closedGroup = coded.picture.isClosed;
    if (!*coded.isProgressive)
        (headers.slice->isField ? hasFields : hasFrames) = true;
}

bool AVCAnalyzer::take(CodedPicture& coded) {
    auto unit = std::exchange(state_->next, {});
    if (unit.data.empty() && !state_->cutter.next(unit))
        return false;
    auto const picture = state_->pictures.next(unit.headers);
    if (!picture)
        throw Exceptions::at(unit.offset, Exceptions::InvalidFormat("A picture of AVC cannot be read"));
    coded.picture = *picture;
    state_->takeFacts(unit.headers, coded);
    auto const clock = unit.headers.timing ? unit.headers.timing->clock : std::nullopt;
    if (clock && clock->isFull)
        coded.timecode = streamTimecode({clock->hours, clock->minutes, clock->seconds, clock->frames},
                                        clock->dropFrame, editRate());
    coded.offset = unit.offset;
    coded.data = std::move(unit.data);
    return true;
}

Essence::AVC::SequenceParameterSet const& AVCAnalyzer::sequence() const {
    if (!state_->first.sequence)
        throw Exceptions::InvalidStructure("The video has not been looked at yet");
    return *state_->first.sequence;
}

Templates::Rational<int> AVCAnalyzer::streamRate() const {
    return state_->first.sequence ? frameRateOf(sequence()) : Templates::Rational<int>{};
}

Types::UniversalLabel AVCAnalyzer::universalLabel() const { return avcLabel(wrapping()); }

Types::UniversalLabel AVCAnalyzer::codingLabel(bool isIntra) const {
    return avcCodingLabel(sequence(), {.isIntra = isIntra,
                                       .isProgressive = isProgressive(state_->first),
                                       .rate = editRate(),
                                       .pictureSize = sizes().constantSize(roomForSets)});
}

FileDescriptor& AVCAnalyzer::describe(Metadata::PartitionMetadata& metadata, FileDescriptor* present) {
    auto& descriptor = presentOrNew<CDCIEssenceDescriptor>(metadata, present);
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    descriptor.pictureEssenceCoding(codingLabel(isIntraOnly()));
    describeAVCPictures(descriptor, state_->first);
    describeAVCSequence(metadata, descriptor, state_->first);
    return descriptor;
}

void AVCAnalyzer::complete(FileDescriptor& descriptor) {
    auto* const pictures = dynamic_cast<CDCIEssenceDescriptor*>(&descriptor);
    if (pictures == nullptr)
        return;
    pictures->pictureEssenceCoding(codingLabel(groups().isIntraOnly()));
    describeAVCGroups(*pictures, {.groups = groups(),
                                  .sizes = sizes(),
                                  .rate = editRate(),
                                  .hasFields = state_->hasFields,
                                  .hasFrames = state_->hasFrames});
}

} // namespace MXF::Zelm::GenericContainer
