/// What `zelm diff` compares two files by, and what it finds.
#pragma once

#include "Input.h"
#include "Json.h"
#include "PartitionSurvey.h"

#include <optional>
#include <string>
#include <vector>

namespace Zelm {

enum class DiffArea {
    Partitions,
    Metadata,
    Index,
    Essence,
    History, ///< Identification sets that only one file has
    Layout,  ///< offsets and byte counts, which follow from the rest
};

/// A value in words and as JSON.
struct DiffValue {
    std::string text;
    Json json;

    DiffValue(std::string words) : text(words), json(std::move(words)) {}
    DiffValue(std::string words, Json exact) : text(std::move(words)), json(std::move(exact)) {}
};

struct Difference {
    DiffArea area;
    std::string path;
    std::optional<DiffValue> a; ///< absent: the first file does not have it
    std::optional<DiffValue> b;
};

struct DiffOptions {
    bool identifiers = false;  ///< instance UIDs, generation UIDs, and UMIDs to the letter
    bool dates = false;        ///< values that are timestamps
    bool history = false;      ///< Identification sets that only one file has
    bool layout = false;       ///< offsets and byte counts
    bool essenceBytes = false; ///< what essence elements hold
    bool noEssence = false;    ///< nothing of the body
};

/// Gathers differences in the order in which they are found.
class DiffFindings {
public:
    explicit DiffFindings(DiffOptions const& options) : options_(options) {}

    DiffOptions const& options() const { return options_; }

    void add(DiffArea area, std::string path, std::optional<DiffValue> a, std::optional<DiffValue> b) {
        all_.push_back({area, std::move(path), std::move(a), std::move(b)});
    }

    /// Adds a difference when two texts are not the same.
    void compare(DiffArea area, std::string const& path, std::string const& a, std::string const& b) {
        if (a != b)
            add(area, path, DiffValue(a), DiffValue(b));
    }

    std::vector<Difference> const& all() const { return all_; }

    /// True for a difference that makes the files unequal, as the options have it.
    bool counts(Difference const& difference) const {
        return difference.area == DiffArea::Layout    ? options_.layout
               : difference.area == DiffArea::History ? options_.history
                                                      : true;
    }

private:
    DiffOptions options_;
    std::vector<Difference> all_;
};

/// One of the two files.
struct DiffSide {
    DiffSide(std::string const& file, SharedDictionary const& dictionary)
        : input(file, dictionary), survey(PartitionSurveyor(input, false).survey()) {}

    Input input;
    PartitionSurvey survey;
    std::vector<Fault> faults; ///< met after the survey
};

/// Partition packs, and which partitions of the two files stand for each other (returned as their numbers in
/// `survey.partitions`, in order).
std::vector<std::pair<std::size_t, std::size_t>> diffPartitions(DiffSide& a, DiffSide& b,
                                                                DiffFindings& findings);

/// The header metadata that a reader is to use, then the other partitions' as far as it differs otherwise.
void diffAllMetadata(DiffSide& a, DiffSide& b,
                     std::vector<std::pair<std::size_t, std::size_t>> const& partitions,
                     DiffFindings& findings);

/// The header metadata of one partition each; `place` begins the paths.
void diffMetadata(MXF::Zelm::Metadata::PartitionMetadata const& a,
                  MXF::Zelm::Metadata::PartitionMetadata const& b, std::string const& place,
                  DiffFindings& findings);

/// Index table segments, property by property.
void diffIndex(DiffSide& a, DiffSide& b, DiffFindings& findings);

/// The packets of the essence containers.
void diffEssence(DiffSide& a, DiffSide& b, DiffFindings& findings);

/// What was compared, for the two forms of the report.
struct DiffReport {
    DiffSide const& a;
    DiffSide const& b;
    DiffFindings const& findings;

    bool equal() const;
};

void printDiffText(DiffReport const& report, bool brief);
void printDiffJson(DiffReport const& report);

/// "metadata": what the program's JSON calls an area.
const char* areaName(DiffArea area);

} // namespace Zelm
