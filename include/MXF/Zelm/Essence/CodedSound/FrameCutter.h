/// Takes coded sound frame by frame as it is.
#pragma once

#include "MXF/Zelm/DataIO/SliceSource.h"
#include "MXF/Zelm/Essence/CodedSound/FrameHeader.h"
#include "MXF/Zelm/Templates/Memory.h"

#include <optional>

namespace MXF::Zelm::Essence {
class ByteWindow;
}

namespace MXF::Zelm::Essence::CodedSound {

struct MXFZELM_EXPORT Frame {
    FrameHeader header;
    DataIO::Slice bytes;      ///< all of the frame
    std::uint64_t offset = 0; ///< in the source
};

/// Finds frames where they follow each other: the first one counts when another of the same sound, or the
/// end, stands behind it, as does the first behind bytes that are none. Tags of ID3 in front are passed over.
class MXFZELM_EXPORT FrameCutter : public Platform::Allocated {
public:
    static constexpr std::uint64_t defaultMostSearched = std::uint64_t{1} << 20;

    /// Bytes that are no frames.
    struct Passed {
        std::uint64_t count = 0;
        std::uint64_t offset = 0; ///< of the first of them
        bool isAtEnd = false;     ///< no frame followed the last of them
    };

    /// Reads `source` from where it stands. A frame is looked for in `mostSearched` bytes at most.
    FrameCutter(Templates::SharedPtr<DataIO::SliceSource> source, Format const& format,
                std::uint64_t mostSearched = defaultMostSearched);
    ~FrameCutter();

    /// The next whole frame; absent at the end, or when there is none in the bytes that may be searched.
    std::optional<Frame> next();

    /// Of the first frame; all zero before that was given.
    FrameHeader const& first() const { return first_; }

    /// What was passed over so far, in all; the tags are not counted.
    Passed const& passed() const { return passed_; }

private:
    void passTags();
    bool readHeader(std::size_t at, FrameHeader& header);
    bool begins(FrameHeader& header);
    void passByte();

    std::unique_ptr<ByteWindow> window_;
    Format const& format_;
    std::uint64_t mostSearched_;
    FrameHeader first_;
    Passed passed_;
    bool hasBegun_ = false;
    bool isInStep_ = false; // behind a frame
};

} // namespace MXF::Zelm::Essence::CodedSound
