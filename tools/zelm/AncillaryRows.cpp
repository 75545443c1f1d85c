#include "AncillaryRows.h"

namespace Zelm {

void AncillaryRows::begin(std::string const& file) {
    if (asJson_)
        output_.text() += "{\n  \"schema_version\": " + std::to_string(jsonSchemaVersion) +
                          ",\n  \"file\": " + dump(file) + ",\n  \"" + arrayName_ + "\": [";
}

void AncillaryRows::add(std::string const& line) {
    output_.text() += line;
    output_.text() += '\n';
    output_.rowEnded();
}

void AncillaryRows::add(Json const& row) {
    output_.text() += hasRows_ ? ",\n    " : "\n    ";
    output_.text() += dump(row);
    hasRows_ = true;
    output_.rowEnded();
}

void AncillaryRows::end(std::vector<Fault> const& faults, Json const& further) {
    if (asJson_) {
        Json list = Json::array();
        for (auto const& fault : faults)
            list.push_back(toJson(std::optional(fault)));
        output_.text() += std::string(hasRows_ ? "\n  " : "") + "]";
        for (auto const& [name, value] : further.items())
            output_.text() += ",\n  " + dump(name) + ": " + dump(value);
        output_.text() += ",\n  \"faults\": " + dump(list) + "\n}\n";
    }
    output_.flush();
}

} // namespace Zelm
