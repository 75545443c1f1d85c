/// What `zelm ancillary` prints: a report of what the tracks hold, a list of all packets, or captions.
#pragma once

#include "AncillaryWalk.h"
#include "RowOutput.h"

#include <memory>

namespace Zelm {

/// Prints on the way or at the end.
class AncillaryPrinter : public AncillaryUse {
public:
    virtual void begin(std::string const& file) = 0;
    virtual void end(std::vector<Fault> const& faults) = 0;

    /// Whether any packet or element had a fault.
    virtual bool foundFaults() const = 0;
};

/// What the tracks hold.
std::unique_ptr<AncillaryPrinter> makeAncillaryReport(bool asJson);

/// Each packet, with its bytes, to `sink`, null for standard output.
std::unique_ptr<AncillaryPrinter> makeAncillaryDump(bool asJson, TextSink sink = nullptr);

/// The text of CEA-608 captions, row by row, to `sink`, null for standard output.
std::unique_ptr<AncillaryPrinter> makeAncillaryCaptions(bool asJson, TextSink sink = nullptr);

} // namespace Zelm
