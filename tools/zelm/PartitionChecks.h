/// Holds what the partition packs and the random index pack of a file say against each other and against what
/// really stands in the file (SMPTE 377M).
#pragma once

#include "PartitionSurvey.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Zelm {

/// A value that does not agree with the file. Fields are called as in the program's JSON.
struct Disagreement {
    std::optional<std::uint64_t> partitionOffset; ///< in the file; none when it is about the whole file
    std::string field;
    std::string message;
};

class PartitionChecks {
public:
    PartitionChecks(Input& input, PartitionSurvey const& survey) : input_(input), survey_(survey) {}

    /// Makes all checks. Throws Exceptions::SystemError.
    void run();

    std::vector<Disagreement> const& disagreements() const { return disagreements_; }

    /// What a user may want to know though nothing is wrong with it.
    std::vector<std::string> const& notes() const { return notes_; }

private:
    /// What stands in one of the areas of a partition whose bytes are counted.
    struct Area {
        const char* field;
        const char* name;
        std::uint64_t start;
        std::uint64_t count;
        bool (*begins)(MXF::Zelm::KLV::Key const&);
        bool (*belongs)(MXF::Zelm::KLV::Key const&);
        bool (*onlyHere)(MXF::Zelm::KLV::Key const&); ///< what never follows the area
    };

    void checkOrder();
    void checkOffsets(std::size_t index);
    void checkFooterOffset(SurveyedPartition const& partition);
    void checkStatus(SurveyedPartition const& partition);
    bool checkAreas(SurveyedPartition const& partition);
    bool checkArea(SurveyedPartition const& partition, Area const& area);
    void checkBody(SurveyedPartition const& partition);
    void checkBodyOffsets();
    void checkLabels();
    void checkFooterIsThere();
    void checkRandomIndex();
    void checkRandomIndexEntries(RandomIndex const& index);

    std::optional<MXF::Zelm::KLV::Key> keyAt(std::uint64_t offset);
    std::uint64_t contentEnd(SurveyedPartition const& partition);
    std::uint64_t relative(std::uint64_t offset) const { return offset - input_.reader.runInLength(); }
    void disagree(SurveyedPartition const& partition, const char* field, std::string message);

    Input& input_;
    PartitionSurvey const& survey_;
    std::vector<Disagreement> disagreements_;
    std::vector<std::string> notes_;
    std::set<SurveyedPartition const*> miscounted_; // where the body begins is not known
};

} // namespace Zelm
