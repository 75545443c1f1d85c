/// What `zelm frames` prints of each edit unit, and the forms it prints it in.
#pragma once

#include "Faults.h"

#include <MXF/Zelm/Utils/TimeCode.h>

#include <memory>

namespace Zelm {

/// One edit unit. What is not known is absent.
struct Frame {
    std::uint32_t bodySID = 0;
    std::int64_t stored = 0; ///< position in stored order
    std::optional<std::int64_t> display;
    MXF::Zelm::Utils::TimeCode timecode; ///< when it is shown
    std::optional<bool> isKey;           ///< decoding can begin here
    char type = 0;                       ///< 'I', 'P' or 'B'; 0 when not known
    std::optional<std::uint64_t> size;
    std::optional<std::uint64_t> offset; ///< in the file
    std::optional<std::uint8_t> flags;   ///< of the index entry
};

/// What is listed together.
struct FrameSection {
    std::string title;            ///< "BodySID 1"; empty when it is the only one
    std::int64_t units = 0;       ///< about how many there are, for the widths of columns
    std::uint64_t fileSize = ~0u; ///< for the same
};

/// How a list ended.
struct FrameListEnd {
    bool endsEarly = false; ///< there is less essence than there should be
    std::optional<Fault> fault;
};

/// Rows are printed as they come: none is kept.
class FramePrinter {
public:
    virtual ~FramePrinter() = default;
    virtual void begin(std::string const& file) = 0;
    virtual void section(FrameSection const& section) = 0;
    virtual void frame(Frame const& frame) = 0;
    virtual void end(FrameListEnd const& end) = 0;
};

std::unique_ptr<FramePrinter> makeFrameTextPrinter();
std::unique_ptr<FramePrinter> makeFrameCsvPrinter();
std::unique_ptr<FramePrinter> makeFrameJsonPrinter();

} // namespace Zelm
