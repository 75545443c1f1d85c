/// What analyzers of coded video have in common, so that one more coding is a small class:
///
///     class Film : public VideoAnalyzer {
///         open, take                      cut the stream into pictures, tell its rate and what it reorders
///         universalLabel, fault           what it is in the container, what is amiss
///         describe, complete              its descriptor, from the headers and from what all pictures told
///     };
///
/// Waiting for pictures in display order, the index, timecode and the groups of pictures are seen to here.
#pragma once

#include "MXF/Zelm/Essence/PictureOrder.h"
#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"

namespace MXF::Zelm::GenericContainer {

class GroupStatistics;
class SizeStatistics;

/// One coded frame, or both fields of one, with the headers before it.
struct MXFZELM_EXPORT CodedPicture {
    DataIO::Chain data = {};
    Essence::Picture picture = {};

    /// Where it stands in the stream, in bytes.
    std::uint64_t offset = 0;

    /// Pictures before it that are shown behind it, at most, from here on.
    std::size_t mostReordered = 0;

    /// A group of pictures begins here, and is closed or not.
    std::optional<bool> closedGroup = std::nullopt;

    /// Absent where the stream does not say it with this picture.
    std::optional<bool> isProgressive = std::nullopt;

    /// Undefined when the stream does not tell.
    Utils::TimeCode timecode = {};

    /// The timecode is that of the group which begins with this picture, not of the picture.
    bool isTimecodeOfGroup = false;
};

class MXFZELM_EXPORT VideoAnalyzer : public BasicAnalyzer<PictureAnalyzer> {
public:
    ~VideoAnalyzer() override;

    Wrapping wrapping() const { return wrapping_; }

    using BasicAnalyzer::editRate;

    /// That of the stream, when it tells one; else the one that was set.
    Templates::Rational<int> editRate() const override;

    /// False when there is no picture with a known size and frame rate. Throws as `nextEditUnit`.
    bool preload() override;

    bool containsTemporalDependencies() const override;
    Utils::TimeCode currentTimeCode() const override;
    unsigned char itemTypeIdentifier() const override;

    /// MPEG pictures, which AVC is too.
    unsigned char essenceElementType() const override;

protected:
    /// `wrapping` tells labels and key alone: the edit units are the same, and the clip wrapper makes one
    /// element of them.
    explicit VideoAnalyzer(Wrapping wrapping);

    /// Finds the first picture, within `maximumToSkip`. False when the stream is not what the analyzer reads.
    virtual bool open() = 0;

    /// The next picture in stored order; false at the end. Throws Exceptions::InvalidFormat.
    virtual bool take(CodedPicture& picture) = 0;

    /// Of the stream, 0/0 when it does not tell; known behind `open`.
    virtual Templates::Rational<int> streamRate() const = 0;

    bool hasMore() const override;
    std::uint64_t read(EditUnit& unit) override;

    /// The first pictures are all intra coded.
    bool isIntraOnly() const;

    /// What the pictures given so far have in common.
    GroupStatistics const& groups() const;

    /// The sizes of the pictures read so far.
    SizeStatistics const& sizes() const;

private:
    struct State;

    bool fetch();
    void place(EditUnit& unit);

    Wrapping wrapping_;
    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::GenericContainer
