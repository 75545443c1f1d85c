/// MPEG-2 video elementary streams, wrapped by frames or as a clip (SMPTE 381M). MPEG-1 video is taken too.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/MPEG/SequenceHeader.h"
#include "MXF/Zelm/GenericContainer/Analyzers/VideoAnalyzer.h"

namespace MXF::Zelm::Metadata::Structural {
class CDCIEssenceDescriptor;
}

namespace MXF::Zelm::GenericContainer {

/// Reads a stream of any groups of pictures: intra alone or with predicted pictures, open and closed groups,
/// frame and field pictures. An edit unit is one coded frame with the headers before it, both fields of a
/// frame together. What the stream begins with before its first sequence header is passed over, up to
/// `maximumToSkip` bytes. A stream that ends amid a picture ends with the picture before; `fault` then says
/// so.
///
/// The coding label, and whether there are temporal dependencies, are told by the first pictures; `finalize`
/// corrects the label. The timecode of a group's header belongs to its first edit unit.
class MXFZELM_EXPORT MPEG2VideoAnalyzer : public VideoAnalyzer {
public:
    /// `wrapping` tells labels and key alone: the edit units are the same, and the clip wrapper makes one
    /// element of them.
    explicit MPEG2VideoAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source,
                                Wrapping wrapping = Wrapping::Frame);
    ~MPEG2VideoAnalyzer() override;

    Types::UniversalLabel universalLabel() const override;
    std::string fault() const override;

    /// The first sequence header. Throws Exceptions::InvalidStructure before `preload`.
    Essence::MPEG::SequenceHeader const& sequence() const;

    using VideoAnalyzer::isIntraOnly;

    /// The most pictures in a group so far.
    std::size_t longestGroup() const;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    void complete(Metadata::Structural::FileDescriptor& descriptor) override;
    bool open() override;
    bool take(CodedPicture& picture) override;
    Templates::Rational<int> streamRate() const override;

    /// What the pictures are like, in any descriptor of the kind.
    void describePictures(Metadata::Structural::CDCIEssenceDescriptor& descriptor) const;

private:
    struct State;

    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::GenericContainer
