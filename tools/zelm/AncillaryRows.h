/// Rows of `zelm ancillary --dump` and `--captions`, printed as they come.
#pragma once

#include "AncillaryReport.h"
#include "Json.h"
#include "RowOutput.h"

namespace Zelm {

/// Rows as text or as JSON, in an array that is a member of the object. `Row` makes one of each.
class AncillaryRows {
public:
    /// `arrayName` is the member's.
    AncillaryRows(const char* arrayName, bool asJson) : arrayName_(arrayName), asJson_(asJson) {}

    bool isJson() const { return asJson_; }
    void begin(std::string const& file);
    void add(std::string const& line);
    void add(Json const& row);

    /// The members of `further`, an object, stand behind the array.
    void end(std::vector<Fault> const& faults, Json const& further = Json::object());

private:
    const char* arrayName_;
    bool asJson_;
    bool hasRows_ = false;
    RowOutput output_;
};

} // namespace Zelm
