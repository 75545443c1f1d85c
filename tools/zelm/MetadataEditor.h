/// Changes properties of header metadata by their paths, and records that it did.
#pragma once

#include "PathResolver.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Zelm {

/// What is to be done with a property.
struct PropertyEdit {
    std::string path;
    std::optional<std::string> value; ///< absent: the property is taken away
};

class MetadataEditor {
public:
    /// Both must outlive it.
    MetadataEditor(MXF::Zelm::Metadata::PartitionMetadata& metadata, ClassTree const& classes)
        : metadata_(metadata), paths_(metadata, classes), resolver_(metadata, paths_) {}

    /// Throws Exceptions::InvalidValue, with the path, when it names nothing, the value is not one of the
    /// property's type, or the property must not be changed so.
    void apply(PropertyEdit const& edit);

    /// Adds a descriptive framework (see FrameworkEdit.h). Throws Exceptions::InvalidValue.
    void addFramework(std::string const& text);

    /// True when a value is now another one than before.
    bool hasChanged() const { return !touched_.empty(); }

    /// Adds an Identification set of this program, and sets the dates of modification of the Preface and the
    /// packages that were changed (SMPTE 377M), unless an edit set them.
    void addHistory();

private:
    using MetadataSet = MXF::Zelm::Metadata::MetadataSet;

    void change(PathTarget const& target, std::optional<std::string> const& value);
    void setDate(MetadataSet& set, const char* property);
    bool isNamed(MetadataSet const& set, MXF::Zelm::Types::UniversalLabel const& label) const;
    bool isTouchedBelow(std::size_t place) const;

    MXF::Zelm::Metadata::PartitionMetadata& metadata_;
    SetPaths paths_;
    PathResolver resolver_;

    using Properties = std::vector<std::pair<MetadataSet*, MXF::Zelm::Types::UniversalLabel>>;
    Properties named_;   // by the edits
    Properties touched_; // those that have another value than before
};

} // namespace Zelm
