#include "MXF/Zelm/GenericContainer/Analyzers/MPEG2VideoAnalyzer.h"

#include "MXF/Zelm/Essence/MPEG/VideoCutter.h"
#include "MXF/Zelm/Essence/MPEG/VideoPictures.h"
#include "MXF/Zelm/Exceptions/Exceptions.h"
#include "MXF/Zelm/GenericContainer/Analyzers/GroupStatistics.h"
#include "MXF/Zelm/GenericContainer/Analyzers/MPEGDescriptor.h"
#include "MXF/Zelm/GenericContainer/Analyzers/MPEGLabels.h"
#include "MXF/Zelm/GenericContainer/Analyzers/StreamTimecode.h"

namespace MXF::Zelm::GenericContainer {

namespace {

using Essence::MPEG::VideoCutter;
using Metadata::Structural::FileDescriptor;
using Metadata::Structural::MPEG2VideoDescriptor;

} // namespace

struct MPEG2VideoAnalyzer::State : Platform::Allocated {
    explicit State(Templates::SharedPtr<DataIO::SliceSource> source) : cutter(std::move(source)) {}

    VideoCutter cutter;
    VideoCutter::Unit unit = {};                           // read and, while it has data, not taken
    std::optional<Essence::MPEG::SequenceHeader> sequence; // the first
    Templates::Rational<int> rate = {};                    // that it tells
    Essence::MPEG::PictureHeader firstPicture;
    Essence::MPEG::VideoPictures pictures;
};

MPEG2VideoAnalyzer::MPEG2VideoAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source, Wrapping wrapping)
    : VideoAnalyzer(wrapping), state_(std::make_unique<State>(std::move(source))) {}

MPEG2VideoAnalyzer::~MPEG2VideoAnalyzer() = default;

bool MPEG2VideoAnalyzer::open() {
    auto& first = state_->unit;
    if (!state_->cutter.findStart(maximumToSkip()) || !state_->cutter.next(first))
        return false;
    auto const& sequence = first.headers.sequence;
    if (!sequence || !first.headers.picture || sequence->width() == 0 || sequence->height() == 0)
        return false;
    state_->sequence = sequence;
    state_->rate = sequence->frameRate();
    state_->firstPicture = *first.headers.picture;
    return true;
}

/// Of the pictures before a B picture only the anchor behind it is shown later.
bool MPEG2VideoAnalyzer::take(CodedPicture& coded) {
    auto& unit = state_->unit;
    if (unit.data.empty() && !state_->cutter.next(unit))
        return false;
    auto const& headers = unit.headers;
    auto const picture = state_->pictures.next(headers);
    if (!picture)
        throw Exceptions::at(unit.offset, Exceptions::InvalidFormat("A picture of MPEG video has no header"));
    bool const isLowDelay = sequence().extension && sequence().extension->lowDelay;
    coded.picture = *picture;
    coded.offset = unit.offset;
    coded.data = std::move(unit.data);
    coded.mostReordered = isLowDelay && picture->type != Essence::Picture::Type::B ? 0 : 1;
    if (headers.sequence)
        coded.isProgressive = headers.sequence->isProgressive();
    if (headers.group) {
        coded.closedGroup = headers.group->closed;
        auto const& time = *headers.group;
        coded.timecode = streamTimecode({time.hours, time.minutes, time.seconds, time.pictures},
                                        time.dropFrame, streamRate());
        coded.isTimecodeOfGroup = true;
    }
    return true;
}

Essence::MPEG::SequenceHeader const& MPEG2VideoAnalyzer::sequence() const {
    if (!state_->sequence)
        throw Exceptions::InvalidStructure("The video has not been looked at yet");
    return *state_->sequence;
}

Templates::Rational<int> MPEG2VideoAnalyzer::streamRate() const { return state_->rate; }

Types::UniversalLabel MPEG2VideoAnalyzer::universalLabel() const { return mpegLabel(wrapping()); }
std::size_t MPEG2VideoAnalyzer::longestGroup() const { return groups().longest(); }
std::string MPEG2VideoAnalyzer::fault() const { return state_->cutter.fault(); }

void MPEG2VideoAnalyzer::describePictures(Metadata::Structural::CDCIEssenceDescriptor& descriptor) const {
    descriptor.sampleRate(Types::Rational(editRate()));
    descriptor.essenceContainer(universalLabel());
    descriptor.pictureEssenceCoding(mpegCodingLabel(sequence(), isIntraOnly()));
    describeMPEGPictures(descriptor, sequence(), state_->firstPicture);
}

FileDescriptor& MPEG2VideoAnalyzer::describe(Metadata::PartitionMetadata& metadata, FileDescriptor* present) {
    auto& descriptor = presentOrNew<MPEG2VideoDescriptor>(metadata, present);
    describePictures(descriptor);
    describeMPEGSequence(descriptor, sequence());
    return descriptor;
}

void MPEG2VideoAnalyzer::complete(FileDescriptor& descriptor) {
    if (auto* const mpeg = dynamic_cast<MPEG2VideoDescriptor*>(&descriptor)) {
        describeMPEGGroups(*mpeg, groups());
        mpeg->pictureEssenceCoding(mpegCodingLabel(sequence(), groups().isIntraOnly()));
    }
}

} // namespace MXF::Zelm::GenericContainer
