/// AVC byte streams, wrapped by frames (SMPTE 381-3, RP 2027).
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/AVC/ParameterSets.h"
#include "MXF/Zelm/GenericContainer/Analyzers/VideoAnalyzer.h"

namespace MXF::Zelm::GenericContainer {

/// Reads streams of start codes, of intra pictures alone or with predicted ones, of frames and of fields. An
/// edit unit is one coded frame, or both fields of one, with the parameter sets and messages before it. What
/// the stream begins with before the first picture that has its parameter sets is passed over, up to
/// `maximumToSkip` bytes. A stream without a frame rate has the one that is set.
///
/// The descriptor has a sub-descriptor of AVC where the dictionary knows it. What all pictures tell, groups
/// and bit rates, `finalize` adds. Timecode is that of picture timing messages; between them it counts on.
class MXFZELM_EXPORT AVCAnalyzer : public VideoAnalyzer {
public:
    explicit AVCAnalyzer(Templates::SharedPtr<DataIO::SliceSource> source,
                         Wrapping wrapping = Wrapping::Frame);
    ~AVCAnalyzer() override;

    Types::UniversalLabel universalLabel() const override;

    /// The sets of the first picture. Throws Exceptions::InvalidStructure before `preload`.
    Essence::AVC::SequenceParameterSet const& sequence() const;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    void complete(Metadata::Structural::FileDescriptor& descriptor) override;
    bool open() override;
    bool take(CodedPicture& picture) override;
    Templates::Rational<int> streamRate() const override;

private:
    struct State;

    Types::UniversalLabel codingLabel(bool isIntra) const;

    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::GenericContainer
