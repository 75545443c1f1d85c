/// JPEG 2000 codestreams, wrapped by frames or as a clip (SMPTE 422M).
#pragma once

#include "MXF/Zelm/Essence/JPEG2000/CodestreamHeader.h"
#include "MXF/Zelm/GenericContainer/Analyzers/BasicAnalyzer.h"
#include "MXF/Zelm/GenericContainer/Wrapping.h"

#include <functional>
#include <optional>

namespace MXF::Zelm::DataIO {
class SliceSource;
}

namespace MXF::Zelm::GenericContainer {

struct MXFZELM_EXPORT JPEG2000Options {
    /// What an edit unit is, when wrapped by frames.
    enum class Scan {
        Undefined,   ///< a picture, in one codestream (FU)
        Progressive, ///< the same, said to be progressive (P1)
        TwoFields,   ///< a frame of two fields, a codestream each (I2)
        Field        ///< one field of two, in one codestream; the edit rate is that of fields (F1)
    };

    /// What the components are.
    enum class Colour {
        Unknown, ///< by the codestream: see JPEG2000Analyzer
        RGB,     ///< also with alpha
        XYZ,
        YCbCr
    };

    Wrapping wrapping = Wrapping::Frame;
    Scan scan = Scan::Undefined;
    Colour colour = Colour::Unknown;

    /// Edit units a second, which codestreams do not tell; a multiplexer sets it.
    Templates::Rational<int> editRate = {};

    /// Width to height as displayed; not known for square pixels.
    Templates::Rational<int> aspectRatio = {};
};

/// An edit unit is a codestream, or two where they are fields; the boxes of JP2 files are left out. Pictures
/// are described by the first one, whose size and components all others must have. Components of unknown
/// colour are what a JP2 file says; else luma and colour differences when they are subsampled, X, Y and Z in
/// the profiles of digital cinema, and red, green and blue otherwise; one or two are luma and alpha.
class MXFZELM_EXPORT JPEG2000Analyzer : public BasicAnalyzer<PictureAnalyzer> {
public:
    /// Gives the source of the next edit unit; null at the end.
    using NextSource = std::function<Templates::SharedPtr<DataIO::SliceSource>()>;

    /// A stream of codestreams.
    JPEG2000Analyzer(Templates::SharedPtr<DataIO::SliceSource> stream, JPEG2000Options options);

    /// A source for each edit unit, with a codestream or two; when the first one has two, the frames are of
    /// two fields.
    JPEG2000Analyzer(NextSource next, JPEG2000Options options);
    ~JPEG2000Analyzer() override;

    /// False when there is no codestream. Throws as `nextEditUnit`.
    bool preload() override;

    Types::UniversalLabel universalLabel() const override;
    unsigned char itemTypeIdentifier() const override;
    unsigned char essenceElementType() const override;
    std::string fault() const override;

    /// The first main header. Throws Exceptions::InvalidStructure before `preload`.
    Essence::JPEG2000::CodestreamHeader const& header() const;

protected:
    Metadata::Structural::FileDescriptor& describe(Metadata::PartitionMetadata& metadata,
                                                   Metadata::Structural::FileDescriptor* present) override;
    bool hasMore() const override;
    std::uint64_t read(EditUnit& unit) override;

private:
    struct State;

    Templates::auto_ptr<State> state_;
};

} // namespace MXF::Zelm::GenericContainer
